// What an arpeggiator keeps between runs. [owner]
#pragma once

#include <cstdint>

#include "midi/MusicalClock.h"
#include "nk/nk_ini_file.h"

namespace NK::MIDI {

/// The settings of an arpeggiator, its bypass apart. Plain values; each Check throws when its field is out of range.
struct ArpeggiatorSettings {
    /// Order of the notes. The first five play all held notes, the others one of them.
    enum Direction : int {
        kUp,
        kDown,
        kUpDown,
        kDownUp,
        kRandom,
        kLowestNote,
        kHighestNote,
        kFirstNote,  ///< the first key of the chord
        kLastNote,   ///< the key pressed last
        kDirections
    };
    /// Where the velocity of a note comes from.
    enum VelocityMode : int { kFirstVelocity, kLastVelocity, kKeyVelocity, kFixedVelocity, kVelocityModes };
    /// Octave copies: of the chord's notes in the list (extension), or beside each played note (multiplication).
    enum OctaveMode : int { kNone, kOneUp, kOneDownTwoUp, kOneDownOneUp, kOctaveModes };

    int inChannel = -1;        ///< 1..16; negative: any
    int outChannel = -1;       ///< 1..16; negative: the channel of the last accepted message
    double noteLength = 32.0;  ///< in 1/32 of a quarter note (6 ticks), not negative
    int noteStep = 96;         ///< grid step in ticks, 1 or more
    int direction = kUp;
    bool repeat = false;  ///< the end notes sound twice in Up-Down and Down-Up
    int multiplication = kNone;
    int extension = kNone;
    int velocityMode = kKeyVelocity;
    std::uint8_t velocity = 100;  ///< of kFixedVelocity
    bool latch = false;           ///< a chord stays until the next one begins
    int swing = kStraight;        ///< where the second of two steps stands, in percent of both

    static constexpr int kStraight = 50;
    static constexpr int kMostSwing = 75;

    /// Note length in percent of the step.
    double GetDurationPercent() const { return noteLength * 6 * 100 / noteStep; }
    static double ToNoteLength(int noteStep, double durationPercent) { return noteStep * durationPercent / 100 / 6; }

    // CInvalidMIDIChannelException "Invalid MIDI channel number." unless negative or 1..16.
    static void CheckChannel(int channel);
    // CInvalidParameterException with the texts
    static void CheckNoteLength(double noteLength);       ///< "Note length cannot be negative.", also for a NaN
    static void CheckNoteStep(int noteStep);              ///< "Note step must be positive."
    static void CheckDirection(int direction);            ///< "Invalid arpeggiator direction."
    static void CheckMultiplication(int multiplication);  ///< "Invalid arpeggiator multiplication mode."
    static void CheckExtension(int extension);            ///< "Invalid arpeggiator range extension mode."
    static void CheckVelocityMode(int velocityMode);      ///< "Invalid arpeggiator velocity mode."
    /// Every field in the order above.
    void Check() const;

    /// Both work on the section that the file's cursor stands on. A missing or unreadable key takes the default above.
    /// Latch and swing are written where they are not the default or the section has them; a swing out of range is
    /// brought into it.
    void Save(CIniFile& section) const;
    static ArpeggiatorSettings Load(CIniFile& section);
};

/// Calls visit(note) for every octave copy of `note` (0..127) that an octave mode asks for and that is at most 127:
/// one octave up, two up, one down.
template <class Visitor>
void ForEachOctaveCopy(int octaveMode, int note, Visitor visit) {
    if (octaveMode == ArpeggiatorSettings::kNone) {
        return;
    }
    if (note < 116) {
        visit(note + 12);
    }
    if (octaveMode == ArpeggiatorSettings::kOneDownTwoUp && note < 104) {
        visit(note + 24);
    }
    if (octaveMode != ArpeggiatorSettings::kOneUp && note >= 12) {
        visit(note - 12);
    }
}

}  // namespace NK::MIDI
