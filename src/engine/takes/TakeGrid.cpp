#include "engine/takes/TakeGrid.h"

namespace Kivora {

void TakeGrid::Add(std::uint32_t timeMs, const NK::MIDI::MusicalClock& clock, bool beginsBar) {
    const Mark mark{timeMs, static_cast<int>(clock.tempo), clock.beatsPerBar,
                    beginsBar ? 0.0 : clock.beat + clock.offset / clock.BeatLength(), beginsBar};
    if (!marks_.empty() && marks_.back().timeMs == timeMs) {
        const bool began = marks_.back().beginsBar;
        marks_.back() = mark;
        marks_.back().beginsBar = beginsBar || began;
    } else {
        marks_.push_back(mark);
    }
}

bool TakeGrid::Append(const Mark& mark) {
    if (!marks_.empty() && marks_.back().timeMs >= mark.timeMs) {
        return false;
    }
    marks_.push_back(mark);
    return true;
}

}  // namespace Kivora
