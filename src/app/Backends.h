// Puts the parts together that the engine knows only by their interfaces. [gui]
#pragma once

#include <memory>
#include <QString>

#include "engine/EngineDependencies.h"

namespace LibMidi {
class Synthesizer;
}

namespace Kivora {

/// The built-in synthesizer with its saved settings. A font that is given is played in this run instead of the one in
/// the settings.
std::shared_ptr<LibMidi::Synthesizer> CreateSynthesizer(const QString& soundFont = {});

/// The devices' ports first, then the synthesizer's; the real player, clock and sleep.
EngineDependencies CreateEngineDependencies(const std::shared_ptr<LibMidi::Synthesizer>& synthesizer);

/// Why the file cannot be played as a sound font, in a sentence; empty if it can.
QString ExplainSoundFont(const QString& path);

}  // namespace Kivora
