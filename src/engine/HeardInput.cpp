#include "engine/HeardInput.h"

#include <algorithm>
#include <utility>

#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;

namespace {
bool EndsNote(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOff || (message.status == TMIDIMessage::kNoteOn && message.data2 == 0);
}
}  // namespace

HeardInput::Keyboard& HeardInput::Find(std::uint8_t source) {
    const auto found = std::find_if(keyboards_.begin(), keyboards_.end(),
                                    [source](const Keyboard& keyboard) { return keyboard.source == source; });
    return found != keyboards_.end() ? *found : keyboards_.emplace_back(Keyboard{source, {}, {}});
}

std::size_t HeardInput::IndexOf(std::uint8_t pedal) {
    return static_cast<std::size_t>(std::find(HeldKeys::kPedals.begin(), HeldKeys::kPedals.end(), pedal) -
                                    HeldKeys::kPedals.begin());
}

HeardInput::Mover HeardInput::MoverOf(const LibMidi::MIDIEvent& event) {
    return {event.source, event.GetChannel()};
}

std::optional<TMIDIMessage> HeardInput::Follow(const LibMidi::MIDIEvent& event) {
    const TMIDIMessage message = event.ToMessage();
    Find(event.source).held.Follow(message);
    if (message.status == TMIDIMessage::kControlChange && message.data1 < movers_.size()) {
        movers_[message.data1] = MoverOf(event);
    }
    if (HeldKeys::IsPedal(message)) {
        return MovePedal(event.source, message);
    }
    if (message.status == TMIDIMessage::kControlChange && message.data1 == NK::MIDI::Controller::kResetControllers) {
        for (Keyboard& keyboard : keyboards_) {
            keyboard.pedals = {};  // it lifts the voices' pedals, whoever holds them
        }
    }
    const bool isHeldByAnother =
        EndsNote(message) && std::any_of(keyboards_.begin(), keyboards_.end(), [&](const Keyboard& keyboard) {
            return keyboard.source != event.source && keyboard.held.IsNoteOpen(message.data1);
        });
    return isHeldByAnother ? std::nullopt : std::optional(message);
}

std::optional<TMIDIMessage> HeardInput::MovePedal(std::uint8_t source, TMIDIMessage message) {
    const std::size_t pedal = IndexOf(message.data1);
    const std::uint8_t before = std::exchange(Find(source).pedals[pedal], message.data2);
    std::uint8_t others = 0;
    for (const Keyboard& keyboard : keyboards_) {
        others = keyboard.source == source ? others : std::max(others, keyboard.pedals[pedal]);
    }
    if (message.data2 < others && before <= others) {
        return std::nullopt;
    }
    message.data2 = std::max(message.data2, others);
    return message;
}

bool HeardInput::Holds(const LibMidi::MIDIEvent& event) const {
    return std::any_of(keyboards_.begin(), keyboards_.end(), [&event](const Keyboard& keyboard) {
        return keyboard.source == event.source && keyboard.held.IsNoteOpen(event.data1, event.status & 0x0F);
    });
}

void HeardInput::ForgetHeld() {
    for (Keyboard& keyboard : keyboards_) {
        keyboard.held = {};
        keyboard.pedals = {};
    }
}

void HeardInput::ForgetPedal(std::uint8_t controller) {
    for (Keyboard& keyboard : keyboards_) {
        keyboard.pedals[IndexOf(controller)] = 0;
    }
}

bool HeardInput::TakeMoved(const LibMidi::MIDIEvent& event) {
    const TMIDIMessage message = event.ToMessage();
    const bool isItsOwn = message.status == TMIDIMessage::kControlChange && message.data1 < movers_.size() &&
                          movers_[message.data1] == MoverOf(event);
    if (isItsOwn) {
        movers_[message.data1].reset();
    }
    return isItsOwn;
}

}  // namespace Kivora
