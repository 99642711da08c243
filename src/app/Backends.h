// Puts the parts together that the engine knows only by their interfaces.
#pragma once

#include <QString>

#include "engine/EngineDependencies.h"

namespace Kivora {

/// PortMidi's ports first, then the built-in synthesizer with its saved settings; the real player, clock and sleep. A
/// font that is given is played in this run instead of the one in the settings.
EngineDependencies CreateEngineDependencies(const QString& soundFont = {});

/// Why the file cannot be played as a sound font, in a sentence; empty if it can.
QString ExplainSoundFont(const QString& path);

}  // namespace Kivora
