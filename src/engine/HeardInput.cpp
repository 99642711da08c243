#include "engine/HeardInput.h"

#include <algorithm>

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
    return found != keyboards_.end() ? *found : keyboards_.emplace_back(Keyboard{source, {}});
}

bool HeardInput::Follow(const LibMidi::MIDIEvent& event) {
    const TMIDIMessage message = event.ToMessage();
    Find(event.source).held.Follow(message);
    if (message.status == TMIDIMessage::kControlChange && message.data1 < moved_.size()) {
        moved_.set(message.data1);
    }
    return !EndsNote(message) || std::none_of(keyboards_.begin(), keyboards_.end(), [&](const Keyboard& keyboard) {
        return keyboard.source != event.source && keyboard.held.IsNoteOpen(message.data1);
    });
}

bool HeardInput::Holds(const LibMidi::MIDIEvent& event) const {
    return std::any_of(keyboards_.begin(), keyboards_.end(), [&event](const Keyboard& keyboard) {
        return keyboard.source == event.source && keyboard.held.IsNoteOpen(event.data1, event.status & 0x0F);
    });
}

void HeardInput::ForgetNotes() {
    for (Keyboard& keyboard : keyboards_) {
        keyboard.held = {};
    }
}

bool HeardInput::TakeMoved(std::uint8_t controller) {
    const bool wasMoved = controller < moved_.size() && moved_[controller];
    if (wasMoved) {
        moved_.reset(controller);
    }
    return wasMoved;
}

}  // namespace Kivora
