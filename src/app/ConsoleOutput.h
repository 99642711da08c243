// Lines on the standard streams. [gui]
#pragma once

#include <QString>

namespace Kivora {

inline constexpr int kSuccessExit = 0;
inline constexpr int kFailureExit = 1;
inline constexpr int kRefusedExit = 2;

/// False when not all of it could be written.
bool PrintLines(const QString& text);
/// On the standard error, after the program's name.
void PrintError(const QString& sentence);
/// `what` with the path for its "%1" and, where it is known, why the file that failed last did so.
QString WithFileFailure(const QString& what, const QString& path);

}  // namespace Kivora
