// A MIDI file made into a sound file or another MIDI file. [gui]
#pragma once

#include "engine/EngineDependencies.h"

namespace Kivora {

struct CommandLine;

/// Sends the notes of the file `renderFrom` through an engine with the preset, and writes what comes out to `renderTo`.
/// A file that is not whole is refused, with the place of the damage; then nothing is written. The sound is the
/// built-in synthesizer's with the font and the settings in force. Prints what went wrong. The exit code.
int Render(const CommandLine& line, const EngineDependencies& dependencies);

}  // namespace Kivora
