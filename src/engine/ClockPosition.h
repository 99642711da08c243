// Where the musical clock stands after a time.
#pragma once

#include <cstdint>

#include "midi/MusicalClock.h"

namespace Kivora {

/// Sets bar, beat and offset of `clock` for `elapsedMs` (0 or more) since bar 0, at the clock's tempo and metre. [any]
void SetClockPosition(NK::MIDI::MusicalClock& clock, std::int64_t elapsedMs) noexcept;

}  // namespace Kivora
