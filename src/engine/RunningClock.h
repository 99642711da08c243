// The musical clock as time goes by.
#pragma once

#include <cstdint>
#include <optional>

#include "midi/MusicalClock.h"

namespace Kivora {

/// Where the music stands, by the wall clock: bar 0 began at a moment, and the tempo says how far it has come since.
/// Moments and times are milliseconds of the wall clock. Whoever owns one says what guards it. [any]
class RunningClock {
public:
    static constexpr int kMinTempo = 40;   ///< beats per minute
    static constexpr int kMaxTempo = 220;  ///< beats per minute

    /// The position as it was last advanced to.
    const NK::MIDI::MusicalClock& Get() const noexcept { return clock_; }
    int GetTempo() const noexcept { return tempo_; }  ///< beats per minute

    /// Clamped to kMinTempo..kMaxTempo. False when that is the tempo; else whoever sets it says where the clock goes
    /// on.
    bool SetTempo(int beatsPerMinute) noexcept;
    /// The same, and the clock goes on from the place in the bar where it stands at `now`, to which it was advanced. A
    /// beat that has begun does not begin again.
    bool SetTempoInBar(int beatsPerMinute, std::int64_t now) noexcept;
    /// False when that is the number of beats.
    bool SetBeatsPerBar(int beats) noexcept;

    /// Bar 0 begins at `now`, and nobody has seen it.
    void Restart(std::int64_t now) noexcept;
    /// Where it has run for so long that a position in ticks would not fit an int: how long it would have run if it had
    /// been restarted each time. Then it is to be restarted, and brought to that time by RunFor().
    std::optional<std::int64_t> FindOverrun(std::int64_t now) const noexcept;
    /// Bar 0 has begun so much earlier.
    void RunFor(std::int64_t elapsed) noexcept { start_ -= elapsed; }
    /// To where the clock stands at `now`; to bar 0 when that is before it began. True when it went back by a tick or
    /// more: who follows it has to be told.
    bool Advance(std::int64_t now) noexcept;
    /// Where it would stand, restarted as often as it would have been.
    NK::MIDI::MusicalClock GetAt(std::int64_t now) const noexcept;

    struct Begun {
        bool bar;
        bool beat;
    };
    /// What began since the last call, or since the restart.
    Begun TakeBegun() noexcept;

private:
    std::int64_t start_ = 0;  ///< of bar 0
    NK::MIDI::MusicalClock clock_;
    int tempo_ = 120;
    /// How far the clock, which counts whole milliseconds, stands before where the changes of the tempo within its bars
    /// have taken it; negative where it stands behind.
    double aheadMs_ = 0;
    int lastBarSeen_ = -1;
    int lastBeatSeen_ = -1;
};

}  // namespace Kivora
