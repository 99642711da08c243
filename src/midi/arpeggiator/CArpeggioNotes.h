// The list of notes that an arpeggiator steps through. [owner]
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "midi/arpeggiator/ArpeggiatorSettings.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_sortable_array.h"
#include "piano/CKeyboardStateBase.h"

namespace NK::MIDI {

/// What is known of the keys that are held. Notes 0..127 and velocities 1..127, or the marks for none.
struct HeldChord {
    static constexpr std::uint8_t kNoNote = 255;
    static constexpr std::uint8_t kNoVelocity = 0;
    static constexpr std::uint8_t kDefaultVelocity = 100;

    HeldChord() { ForgetVelocities(); }
    /// kDefaultVelocity for every note.
    void ForgetVelocities() { std::fill(std::begin(velocities), std::end(velocities), kDefaultVelocity); }
    void ForgetFirstNote() {
        firstNote = kNoNote;
        firstVelocity = kNoVelocity;
    }
    void ForgetLastNote() {
        lastNote = kNoNote;
        lastVelocity = kNoVelocity;
    }

    Piano::CKeyboardStateBase keys;
    std::uint8_t velocities[Piano::CKeyboardStateBase::kNotes];  ///< by note
    std::uint8_t firstNote = kNoNote;
    std::uint8_t firstVelocity = kNoVelocity;
    std::uint8_t lastNote = kNoNote;
    std::uint8_t lastVelocity = kNoVelocity;
    int lastChannel = -1;  ///< 1..16 once a message was accepted
};

/// Note-on records, ascending where there are several; no note stands twice. Rebuild() allocates nothing once as many
/// notes were in the list.
class CArpeggioNotes {
public:
    CArpeggioNotes();
    void Rebuild(const ArpeggiatorSettings& settings, const HeldChord& chord);
    int GetSize() const { return static_cast<int>(notes_.GetSize()); }
    bool IsEmpty() const { return notes_.IsEmpty(); }
    const TMIDIMessage& operator[](int index) const { return notes_[static_cast<std::uint32_t>(index)]; }

private:
    void Add(int note, std::uint8_t velocity);
    void AddHeld(const ArpeggiatorSettings& settings, const HeldChord& chord);
    void AddOctaveCopies(int octaveMode);

    CSortableArray<TMIDIMessage> notes_;
    std::uint8_t channel_ = 0;  ///< of the entries; 0 = none
};

}  // namespace NK::MIDI
