#include "engine/values/HeldKeys.h"

#include <algorithm>

namespace Kivora {

using NK::MIDI::TMIDIMessage;

bool HeldKeys::IsPedal(TMIDIMessage message) noexcept {
    return message.status == TMIDIMessage::kControlChange &&
           std::find(kPedals.begin(), kPedals.end(), message.data1) != kPedals.end();
}

void HeldKeys::Follow(TMIDIMessage message) noexcept {
    if (IsPedal(message)) {
        pedals_[message.data1] = message.data2 != 0;
    } else if (message.status == TMIDIMessage::kControlChange &&
               message.data1 == NK::MIDI::Controller::kResetControllers) {
        pedals_.reset();
    } else if ((message.status == TMIDIMessage::kNoteOn || message.status == TMIDIMessage::kNoteOff) &&
               message.data1 < NK::MIDI::kNoteCount) {
        notes_[message.data1] = message.status == TMIDIMessage::kNoteOn && message.data2 != 0;
    }
}

bool HeldKeys::IsPedalDown(std::uint8_t controller) const noexcept {
    return controller < 128 && pedals_[controller];
}

void HeldKeys::LiftPedal(std::uint8_t controller) noexcept {
    if (controller < 128) {
        pedals_[controller] = false;
    }
}

void HeldKeys::Clear() noexcept {
    notes_.reset();
    pedals_.reset();
}

}  // namespace Kivora
