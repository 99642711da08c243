// Files that the desktop opens: named on the command line, dropped on the window, handed over by another program.
#pragma once

#include <functional>
#include <QString>

struct SongFile;

namespace Kivora {

class EngineControls;

/// Loads the file of a preset, or hands a MIDI file to `play`. Empty on success; otherwise a sentence in the user's
/// language that names the file and says why nothing was opened, what is damaged, huge, no regular file or out of reach
/// included. Never waits for what is no regular file. Null where there is no engine. [gui]
QString OpenFile(EngineControls* controls, const QString& path, const std::function<void(const SongFile& song)>& play);

}  // namespace Kivora
