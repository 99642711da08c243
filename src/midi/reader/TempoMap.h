// How long the ticks of a Standard MIDI File are. [owner]
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace NK::MIDI {

/// Turns ticks into time. A file counts its ticks in quarter notes, whose tempo changes along it, or in parts of the
/// frames of a film, which are as long all along. The time of a tick is exact, rounded down to a microsecond. Value
/// semantics.
class TempoMap {
public:
    static constexpr std::uint32_t kDefaultTempo = 500000;  ///< microseconds a quarter note
    static constexpr std::uint32_t kSlowestTempo = 0xFFFFFF;
    static constexpr std::uint32_t kLatestTick = 0x7FFFFFFF;

    /// From where on a tempo holds.
    struct Change {
        std::uint32_t tick;
        std::uint32_t tempo;  ///< microseconds a quarter note
    };

    /// 120 quarter notes a minute of 500 ticks each.
    TempoMap() : TempoMap(500, kDefaultTempo, true) {}
    /// From the third number of a file's header. Nothing for one that gives no length.
    static std::optional<TempoMap> FromDivision(std::uint16_t division);

    /// Whether ticks are parts of a quarter note; if not, Add() changes nothing.
    bool CountsQuarterNotes() const noexcept { return countsQuarterNotes_; }
    /// 0 where CountsQuarterNotes() is false.
    std::uint32_t GetTicksPerQuarter() const noexcept { return countsQuarterNotes_ ? denominator_ : 0; }

    /// A tempo of 1..kSlowestTempo from a tick 0..kLatestTick on; not before the tick of the last one added. Of several
    /// at one tick the last holds.
    void Add(Change change);
    /// In order, one a tick, the first at tick 0; none where CountsQuarterNotes() is false.
    std::vector<Change> GetChanges() const;

    /// For 0..kLatestTick.
    std::int64_t GetTimeUs(std::uint32_t tick) const;

private:
    /// A run of ticks of equal length. A time is kept as a multiple of the denominator's part of a microsecond, which
    /// loses nothing: 31 bits of ticks by 24 bits of a tick's length fit.
    struct Run {
        std::uint32_t tick;
        std::uint32_t tickLength;
        std::int64_t time;
    };

    TempoMap(std::uint32_t denominator, std::uint32_t tickLength, bool countsQuarterNotes)
        : denominator_(denominator), countsQuarterNotes_(countsQuarterNotes), runs_{{0, tickLength, 0}} {}

    std::uint32_t denominator_;
    bool countsQuarterNotes_;
    std::vector<Run> runs_;  ///< never empty; the first one begins at tick 0
};

}  // namespace NK::MIDI
