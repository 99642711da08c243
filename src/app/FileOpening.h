// Files that the desktop opens: named on the command line, dropped on the window, handed over by another program.
#pragma once

#include <QString>

namespace Kivora {

class EngineFront;

bool HasMIDIFileName(const QString& path);

/// Loads the file of a preset. Empty on success; otherwise a sentence in the user's language that names the file and
/// says why nothing was loaded, MIDI files and what is damaged, huge, no regular file or out of reach included. Never
/// waits for what is no regular file. Null where there is no engine. [gui]
QString OpenFile(EngineFront* front, const QString& path);

}  // namespace Kivora
