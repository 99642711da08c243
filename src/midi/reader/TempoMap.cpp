#include "midi/reader/TempoMap.h"

#include <algorithm>

namespace NK::MIDI {

namespace {
constexpr std::uint16_t kFilmFlag = 0x8000;
}

std::optional<TempoMap> TempoMap::FromDivision(std::uint16_t division) {
    if ((division & kFilmFlag) == 0) {
        return division == 0 ? std::nullopt : std::optional(TempoMap(division, kDefaultTempo, true));
    }
    const int framesPerSecond = 256 - (division >> 8);
    const std::uint32_t ticksPerFrame = division & 0xFFU;
    if (ticksPerFrame == 0) {
        return std::nullopt;
    }
    switch (framesPerSecond) {
        case 24:
        case 25:
        case 30:
            return TempoMap(static_cast<std::uint32_t>(framesPerSecond) * ticksPerFrame, 1000000, false);
        case 29:  // stands for 30000 / 1001 frames a second: 100100 / 3 microseconds each
            return TempoMap(3 * ticksPerFrame, 100100, false);
        default:
            return std::nullopt;
    }
}

void TempoMap::Add(Change change) {
    if (!countsQuarterNotes_) {
        return;
    }
    const Run& last = runs_.back();
    const Run run{change.tick, change.tempo,
                  last.time + static_cast<std::int64_t>(change.tick - last.tick) * last.tickLength};
    if (last.tick == change.tick) {
        runs_.back() = run;
    } else {
        runs_.push_back(run);
    }
}

std::vector<TempoMap::Change> TempoMap::GetChanges() const {
    std::vector<Change> changes;
    if (countsQuarterNotes_) {
        for (const Run& run : runs_) {
            changes.push_back({run.tick, run.tickLength});
        }
    }
    return changes;
}

std::int64_t TempoMap::GetTimeUs(std::uint32_t tick) const {
    const auto later = std::upper_bound(runs_.begin(), runs_.end(), tick,
                                        [](std::uint32_t sought, const Run& run) { return sought < run.tick; });
    const Run& run = *(later - 1);
    return (run.time + static_cast<std::int64_t>(tick - run.tick) * run.tickLength) / denominator_;
}

}  // namespace NK::MIDI
