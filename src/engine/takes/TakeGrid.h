// The bars and beats that a take was played to. [owner]
#pragma once

#include <cstdint>
#include <vector>

#include "midi/MusicalClock.h"

namespace Kivora {

/// The musical clock along a recording: how it stood at its start, and each change of it. Plain value.
class TakeGrid {
public:
    struct Mark {
        std::uint32_t timeMs;  ///< from the start of the recording
        int tempo;             ///< beats a minute, from here on
        int beatsPerBar;
        double beat;     ///< where the bar stands: 0 or more, and less than beatsPerBar
        bool beginsBar;  ///< whatever stood before: the clock was set to the beginning of a bar

        bool operator==(const Mark&) const = default;
    };

    /// The clock has another tempo, goes on from its place or from the beginning of a bar.
    void Add(std::uint32_t timeMs, const NK::MIDI::MusicalClock& clock, bool beginsBar);
    /// False, nothing added, for one that is not after all the others.
    bool Append(const Mark& mark);
    /// In the order of their times; of several at one time the last.
    const std::vector<Mark>& GetMarks() const { return marks_; }
    bool IsEmpty() const { return marks_.empty(); }

    bool operator==(const TakeGrid&) const = default;

private:
    std::vector<Mark> marks_;
};

}  // namespace Kivora
