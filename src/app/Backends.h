// Puts the parts together that the engine knows only by their interfaces.
#pragma once

#include "engine/EngineDependencies.h"

namespace Kivora {

/// PortMidi's ports first, then the built-in synthesizer; the real player, clock and sleep.
EngineDependencies CreateEngineDependencies();

}  // namespace Kivora
