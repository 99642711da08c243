// The runs of the program that need no window, or find no display for it. [gui]
#pragma once

namespace Kivora {

struct CommandLine;

/// Does what the command line says, in a process without an application object, which it makes. Results go to the
/// standard output; what went wrong is told in one sentence on the standard error. The exit code: 0, 1 for a failure,
/// 2 for arguments that cannot be followed.
int RunWithoutWindow(int& argc, char** argv);

/// Tells what is wrong with the arguments; the exit code.
int RefuseArguments(const CommandLine& line);

/// The program's names, for the application object.
void SetIdentity();

}  // namespace Kivora
