// The keys and the pedal that one source holds down.
#pragma once

#include <bitset>
#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace Kivora {

/// Follows the notes and the sustain pedal in a stream of messages, whatever their channel. Plain value; whoever owns
/// one says what guards it.
class HeldKeys {
public:
    static constexpr std::uint8_t kSustainController = 64;  ///< MIDI 1.0, table III

    void Follow(NK::MIDI::TMIDIMessage message) noexcept;
    bool IsHeld(std::uint8_t note) const noexcept { return note < 128 && notes_[note]; }
    bool IsPedalDown() const noexcept { return pedalDown_; }
    bool IsAnyHeld() const noexcept { return pedalDown_ || notes_.any(); }
    void Clear() noexcept;

private:
    std::bitset<128> notes_;
    bool pedalDown_ = false;
};

}  // namespace Kivora
