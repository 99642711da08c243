// The streams that a program is started with. [gui]
#pragma once

namespace NK {

/// A line that nobody reads must not end the program, and a file must not get the number of a stream that was closed
/// before the start, as it would get the lines too. Afterwards all three streams are open, and writing to a pipe that
/// nobody reads fails like any other write. Programs that are started get the usual behaviour. First thing in main().
void SecureStandardStreams();

}  // namespace NK
