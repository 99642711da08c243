// The arpeggiators, and whose notes each of them plays.
#pragma once

#include <array>
#include <cstddef>

#include "engine/values/VoiceSlots.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "midi/MusicalClock.h"

namespace Kivora {

/// What another arpeggiator would change is here: kCount and GetIndexOfSlot(). Whoever owns one says what guards it.
/// Indices outside 0..kCount-1 throw NK::CBadIndexException. [any]
class Arpeggiators {
public:
    static constexpr int kCount = 2;
    /// The main voice has one of its own; the layer and the bass, of which one sounds at a time, share the other.
    static constexpr int GetIndexOfSlot(int slot) noexcept { return slot == VoiceSlots::kMain ? 0 : 1; }

    NK::MIDI::CArpeggiator1& At(int index) { return all_[ToPlace(index)]; }
    const NK::MIDI::CArpeggiator1& At(int index) const { return all_[ToPlace(index)]; }
    NK::MIDI::CArpeggiator1& OfSlot(int slot) { return At(GetIndexOfSlot(slot)); }

    /// Whether steps go by in any of them.
    bool HasNotes() const;
    /// The same where none of those that are bypassed count.
    bool IsPlaying() const;
    void Reset();
    void EndLatched();
    /// They go on from the clock's position.
    void SyncTo(const NK::MIDI::MusicalClock& clock);
    /// What is due at the clock's position goes to `output`. Allocates nothing once warm.
    void Play(const NK::MIDI::MusicalClock& clock, NK::MIDI::CMIDIOutputBase& output);

private:
    static std::size_t ToPlace(int index);

    std::array<NK::MIDI::CArpeggiator1, std::size_t{kCount}> all_;
};

}  // namespace Kivora
