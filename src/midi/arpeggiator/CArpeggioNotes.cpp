#include "midi/arpeggiator/CArpeggioNotes.h"

#include <bitset>

namespace NK::MIDI {

namespace {

constexpr int kNotes = Piano::CKeyboardStateBase::kNotes;
constexpr std::uint32_t kInitialCapacity = 64;
constexpr std::uint8_t kMaximumVelocity = 127;

std::uint8_t GetBaseVelocity(const ArpeggiatorSettings& settings, const HeldChord& chord) {
    switch (settings.velocityMode) {
        case ArpeggiatorSettings::kFirstVelocity:
            return chord.firstVelocity;
        case ArpeggiatorSettings::kLastVelocity:
            return chord.lastVelocity;
        default:
            return std::min(settings.velocity, kMaximumVelocity);
    }
}

bool IsHeld(const HeldChord& chord, int note) {
    return chord.keys.IsPressed(static_cast<std::uint8_t>(note));
}

}  // namespace

CArpeggioNotes::CArpeggioNotes() {
    notes_.SetSize(0, false, kInitialCapacity);
}

void CArpeggioNotes::Rebuild(const ArpeggiatorSettings& settings, const HeldChord& chord) {
    notes_.Clear();
    channel_ =
        static_cast<std::uint8_t>(std::max(settings.outChannel >= 1 ? settings.outChannel : chord.lastChannel, 0));
    AddHeld(settings, chord);
    if (settings.extension != ArpeggiatorSettings::kNone) {
        AddOctaveCopies(settings.extension);
        notes_.Sort(TMIDIMessage::CNoteSortingComparator());
    }
}

void CArpeggioNotes::Add(int note, std::uint8_t velocity) {
    notes_.Push({TMIDIMessage::kNoteOn, channel_, static_cast<std::uint8_t>(note), velocity});
}

void CArpeggioNotes::AddHeld(const ArpeggiatorSettings& settings, const HeldChord& chord) {
    const bool usesKeyVelocity = settings.velocityMode == ArpeggiatorSettings::kKeyVelocity;
    const std::uint8_t base = GetBaseVelocity(settings, chord);
    const auto addHeld = [&](int note) { Add(note, usesKeyVelocity ? chord.velocities[note] : base); };
    const auto addRemembered = [&](std::uint8_t note, std::uint8_t velocity) {
        if (velocity > 0 && note < kNotes && IsHeld(chord, note)) {
            Add(note, usesKeyVelocity ? velocity : base);
        }
    };
    switch (settings.direction) {
        case ArpeggiatorSettings::kLowestNote:
            for (int note = 0; note < kNotes && IsEmpty(); ++note) {
                if (IsHeld(chord, note)) {
                    addHeld(note);
                }
            }
            break;
        case ArpeggiatorSettings::kHighestNote:
            for (int note = kNotes - 1; note >= 0 && IsEmpty(); --note) {
                if (IsHeld(chord, note)) {
                    addHeld(note);
                }
            }
            break;
        case ArpeggiatorSettings::kFirstNote:
            addRemembered(chord.firstNote, chord.firstVelocity);
            break;
        case ArpeggiatorSettings::kLastNote:
            addRemembered(chord.lastNote, chord.lastVelocity);
            break;
        default:
            for (int note = 0; note < kNotes; ++note) {
                if (IsHeld(chord, note)) {
                    addHeld(note);
                }
            }
            break;
    }
}

void CArpeggioNotes::AddOctaveCopies(int octaveMode) {
    std::bitset<kNotes> present;
    for (const TMIDIMessage& entry : notes_) {
        present.set(entry.data1);
    }
    const std::uint32_t held = notes_.GetSize();
    for (std::uint32_t i = 0; i < held; ++i) {
        const TMIDIMessage entry = notes_[i];
        ForEachOctaveCopy(octaveMode, entry.data1, [&](int note) {
            const auto index = static_cast<std::size_t>(note);
            if (!present[index]) {
                present.set(index);
                Add(note, entry.data2);
            }
        });
    }
}

}  // namespace NK::MIDI
