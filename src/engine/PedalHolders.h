// Who holds the sustain pedal. [owner]
#pragma once

#include <cstdint>

#include "midi/MIDIControllers.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

/// The pedal is down while one of them holds it: a key of the computer, which whoever reads the keys tells, the panel's
/// own pedal, or the keyboard of the input port. Nobody does at first, and where nobody tells, the first two hold
/// nothing. Plain value.
struct PedalHolders {
    bool key = false;
    bool strip = false;
    std::uint8_t input = 0;  ///< the value of the keyboard's

    bool IsHeldByPanel() const noexcept { return key || strip; }
    std::uint8_t GetValue() const noexcept { return IsHeldByPanel() ? 127 : input; }

    /// Follows what comes from the input port. True for a movement of its pedal under the others', which
    /// changes nothing.
    bool FollowInput(NK::MIDI::TMIDIMessage message) noexcept {
        if (message.status != NK::MIDI::TMIDIMessage::kControlChange) {
            return false;
        }
        if (message.data1 == NK::MIDI::Controller::kResetControllers) {
            *this = {};
        }
        if (message.data1 != NK::MIDI::Controller::kSustain) {
            return false;
        }
        input = message.data2;
        return IsHeldByPanel();
    }
};

}  // namespace Kivora
