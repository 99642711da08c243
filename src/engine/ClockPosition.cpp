#include "engine/ClockPosition.h"

#include <cmath>

namespace Kivora {

void SetClockPosition(NK::MIDI::MusicalClock& clock, std::int64_t elapsedMs) noexcept {
    const double elapsed = static_cast<double>(elapsedMs);
    const double beatLength = clock.BeatLength();
    const double beats = std::floor(elapsed / beatLength);
    clock.bar = static_cast<int>(std::floor(elapsed / (beatLength * clock.beatsPerBar)));
    clock.beat = static_cast<int>(static_cast<std::int64_t>(beats) % clock.beatsPerBar);
    clock.offset = static_cast<int>(elapsed - beats * beatLength);
}

}  // namespace Kivora
