// On which display a program's windows are. [gui]
#pragma once

#include <QString>
#include <QStringList>

namespace Kivora {

/// Names the display on which the toolkit opens the windows of a program with these arguments, its own name first, and
/// this process's environment: X11's, Wayland's, or both where it tries the one and then the other. The same text for
/// the same display. Empty where others have no part in what the program shows, such as on a display in memory.
/// An application object need not exist.
QString FindWindowDisplay(const QStringList& arguments);

/// False where the toolkit would look for a display of X11's or Wayland's, and none is named, handed down or found by
/// the usual socket.
bool HasWindowDisplay(const QStringList& arguments);

}  // namespace Kivora
