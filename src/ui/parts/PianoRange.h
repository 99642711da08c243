// Which keys the panel's piano shows. [owner]
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "midi/MIDINotes.h"

/// A piano of one of the usual sizes. Plain value.
struct PianoRange {
    static constexpr int kDefaultKeys = 61;
    static constexpr std::array<int, 6> kSizes{25, 37, 49, kDefaultKeys, 76, 88};

    std::uint8_t first = 36;
    std::uint8_t count = kDefaultKeys;

    bool operator==(const PianoRange&) const = default;

    static constexpr bool IsSize(int keys) { return std::find(kSizes.begin(), kSizes.end(), keys) != kSizes.end(); }

    /// The piano with that many keys, one of kSizes. It is moved by the octaves, and no more of them, that bring the
    /// lower manual of the computer's keys onto it, which begins `octaveShift` semitones above middle C. The one of 61
    /// keys stands still.
    static constexpr PianoRange Of(int keys, int octaveShift) {
        using NK::MIDI::kOctave;
        constexpr int kManualFirst = NK::MIDI::kMiddleC;
        constexpr int kManualLast = kManualFirst + kOctave + 4;
        int first = FirstOf(keys);
        if (keys != kDefaultKeys) {
            while (kManualFirst + octaveShift < first && first >= kOctave) {
                first -= kOctave;
            }
            while (kManualLast + octaveShift >= first + keys && first + keys + kOctave <= NK::MIDI::kNoteCount) {
                first += kOctave;
            }
        }
        return {static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(keys)};
    }

private:
    /// Each begins and ends on a white key: C4 for the smallest, under the computer's keys, then C3, C2, C2, E1 and A0.
    static constexpr int FirstOf(int keys) {
        switch (keys) {
            case 25:
                return NK::MIDI::kMiddleC;
            case 37:
                return 48;
            case 76:
                return 28;
            case 88:
                return 21;
            default:
                return 36;
        }
    }
};
