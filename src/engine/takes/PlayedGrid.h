// The bars and beats that were played to while nothing was recorded. [owner]
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/takes/TakeGrid.h"

namespace Kivora {

/// The musical clock along what LibMidi::PlayedHistory keeps, by the history's time. Plain value.
class PlayedGrid {
public:
    static constexpr std::size_t kMostChanges = 10000;

    /// As TakeGrid::Add(). What is older than the history is forgotten, and of more than kMostChanges the oldest.
    void Add(std::int64_t timeMs, const NK::MIDI::MusicalClock& clock, bool beginsBar);
    /// Of a take that begins at that time; empty before anything was added.
    TakeGrid GetFrom(std::int64_t timeMs) const;

private:
    struct Change {
        std::int64_t timeMs;
        NK::MIDI::MusicalClock clock;
        bool beginsBar;
    };

    std::vector<Change> changes_;  ///< in the order of their times; the first holds for all before it too
};

}  // namespace Kivora
