// The keys and the pedals that one source holds down. [owner]
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "midi/MIDIControllers.h"
#include "midi/MIDINotes.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

/// Follows the notes and the pedals that hold notes in a stream of messages, whatever their channel. Plain value;
/// whoever owns one says what guards it.
class HeldKeys {
public:
    static constexpr std::array kPedals{NK::MIDI::Controller::kSustain, NK::MIDI::Controller::kSostenuto,
                                        NK::MIDI::Controller::kHold2};

    /// Whether a message moves one of these pedals.
    static bool IsPedal(NK::MIDI::TMIDIMessage message) noexcept;

    void Follow(NK::MIDI::TMIDIMessage message) noexcept;
    bool IsHeld(std::uint8_t note) const noexcept { return note < NK::MIDI::kNoteCount && notes_[note]; }
    /// False for a controller that is no pedal.
    bool IsPedalDown(std::uint8_t controller) const noexcept;
    bool IsAnyHeld() const noexcept { return pedals_.any() || notes_.any(); }
    void LiftPedal(std::uint8_t controller) noexcept;
    void Clear() noexcept;

private:
    std::bitset<NK::MIDI::kNoteCount> notes_;
    std::bitset<128> pedals_;  ///< by controller
};

}  // namespace Kivora
