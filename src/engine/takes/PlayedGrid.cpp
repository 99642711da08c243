#include "engine/takes/PlayedGrid.h"

#include <algorithm>
#include <cmath>

#include "libmidi/PlayedHistory.h"

namespace Kivora {

using NK::MIDI::MusicalClock;

namespace {

/// Where the clock stands so many milliseconds later, or earlier where that is negative.
MusicalClock Move(MusicalClock clock, std::int64_t milliseconds) {
    const double units = static_cast<double>(milliseconds) / 1000 / clock.timeUnit;
    const double beats = clock.beat + (clock.offset + units) / clock.BeatLength();
    const double inBar = beats - clock.beatsPerBar * std::floor(beats / clock.beatsPerBar);
    clock.beat = std::min(static_cast<int>(inBar), clock.beatsPerBar - 1);
    clock.offset = static_cast<int>((inBar - clock.beat) * clock.BeatLength());
    return clock;
}

}  // namespace

void PlayedGrid::Add(std::int64_t timeMs, const MusicalClock& clock, bool beginsBar) {
    const auto kept = std::find_if(changes_.begin(), changes_.end(), [timeMs](const Change& change) {
        return change.timeMs >= timeMs - LibMidi::PlayedHistory::kKeptMs;
    });
    if (kept - changes_.begin() > 1) {
        changes_.erase(changes_.begin(), kept - 1);
    }
    if (changes_.size() == kMostChanges) {
        changes_.erase(changes_.begin());
    }
    changes_.push_back({timeMs, clock, beginsBar});
}

TakeGrid PlayedGrid::GetFrom(std::int64_t timeMs) const {
    TakeGrid grid;
    if (changes_.empty()) {
        return grid;
    }
    auto next = std::find_if(changes_.begin(), changes_.end(),
                             [timeMs](const Change& change) { return change.timeMs > timeMs; });
    const Change& first = next == changes_.begin() ? *next : *(next - 1);
    grid.Add(0, Move(first.clock, timeMs - first.timeMs), false);
    for (; next != changes_.end(); ++next) {
        grid.Add(static_cast<std::uint32_t>(next->timeMs - timeMs), next->clock, next->beginsBar);
    }
    return grid;
}

}  // namespace Kivora
