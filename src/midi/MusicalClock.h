// The musical position that drives effects in time. [owner]
#pragma once

#include "nk/nk_rounding.h"

namespace NK::MIDI {

/// A bar and beat position at a tempo. Plain record; whoever owns one says what guards it.
struct MusicalClock {
    int beatsPerBar = 4;
    int beatUnit = 4;         ///< denominator of the time signature
    int bar = 0;              ///< bars since the start
    int beat = 0;             ///< 0-based, within the bar
    int offset = 0;           ///< clock units (milliseconds) since the start of the beat
    double tempo = 120.0;     ///< beats per minute
    double timeUnit = 0.001;  ///< seconds per clock unit

    static constexpr int kTicksPerQuarter = 192;

    /// Length of one beat in clock units.
    double BeatLength() const { return 60 / tempo / timeUnit; }
    /// The position in ticks, rounded to nearest with halves down.
    int ToTick() const {
        const double ticksPerBeat = 4.0 / beatUnit * kTicksPerQuarter;
        const double beats = static_cast<double>(beatsPerBar) * bar + beat;
        return RoundHalfDown(ticksPerBeat * beats + offset / (60 / tempo / timeUnit / ticksPerBeat));
    }
};

}  // namespace NK::MIDI
