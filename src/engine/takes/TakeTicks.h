// The times of a take as ticks on its bars and beats. [any]
#pragma once

#include <cstdint>
#include <vector>

#include "engine/takes/TakeGrid.h"

namespace Kivora {

/// Tick 0 is the bar line before the first note, or on it. Where the clock was set to the beginning of a bar in the
/// middle of one, that bar is one of fewer beats, of which the last is as long as it takes. Several such moments within
/// half a beat are one. Immutable.
class TakeTicks {
public:
    static constexpr int kTicksPerBeat = 960;

    struct Tempo {
        std::int32_t tick;
        std::uint32_t usPerBeat;
    };
    struct Meter {
        std::int32_t tick;
        int beatsPerBar;
    };

    /// The grid is not empty.
    TakeTicks(const TakeGrid& grid, std::uint32_t firstNoteMs);

    /// At most half a tick from that time; 0 for what comes before tick 0.
    std::int32_t GetTick(std::uint32_t timeMs) const;
    /// From tick 0 on, in order.
    std::vector<Tempo> GetTempi() const;
    const std::vector<Meter>& GetMeters() const { return meters_; }

private:
    /// Times count in the 960th part of a microsecond from tick 0, in which a tick lasts a whole number.
    struct Piece {
        std::int64_t tick;
        std::int64_t time;
        std::int64_t tickLength;
    };

    std::int64_t ToTime(std::uint32_t timeMs) const;
    std::int64_t TickAt(std::int64_t time) const;
    void AddPiece(std::int64_t tick, std::int64_t tickLength);
    void AddMeter(std::int64_t tick, std::int64_t beats);
    void BeginBar(const TakeGrid::Mark& mark);

    std::int64_t originUs_ = 0;  ///< of tick 0, from the start of the recording
    std::vector<Piece> pieces_;
    std::vector<Meter> meters_;
};

}  // namespace Kivora
