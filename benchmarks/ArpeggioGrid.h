// Where on the clock the steps of an arpeggiator fall due.
#pragma once

#include <cstdint>

#include "engine/ClockPosition.h"
#include "midi/MusicalClock.h"

namespace KivoraBench {

/// How many microseconds a note that was played `elapsedUs` after the clock's start is later than the first whole
/// millisecond in which its step was due. The clock holds the tempo; `step` is in ticks.
inline double GetLateness(NK::MIDI::MusicalClock clock, std::int64_t elapsedUs, int step) {
    const auto tickAt = [&clock](std::int64_t elapsedMs) {
        Kivora::SetClockPosition(clock, elapsedMs);
        return clock.ToTick();
    };
    std::int64_t dueMs = elapsedUs / 1000;
    const int tick = tickAt(dueMs);
    const int due = tick - tick % step;
    while (dueMs > 0 && tickAt(dueMs - 1) >= due) {
        --dueMs;
    }
    return static_cast<double>(elapsedUs - dueMs * 1000);
}

}  // namespace KivoraBench
