// The grid of a recording that runs.
#pragma once

#include <cstdint>

#include "engine/takes/TakeGrid.h"
#include "nk/nk_critical_section.h"

namespace Kivora {

/// A TakeGrid for whoever records and those who look meanwhile. [any]
class RunningGrid {
public:
    void Add(std::uint32_t timeMs, const NK::MIDI::MusicalClock& clock, bool beginsBar) {
        const CLockGuard guard(lock_);
        grid_.Add(timeMs, clock, beginsBar);
    }
    TakeGrid Get() const {
        const CLockGuard guard(lock_);
        return grid_;
    }

private:
    mutable CCriticalSection lock_;
    TakeGrid grid_ NK_GUARDED_BY(lock_);
};

}  // namespace Kivora
