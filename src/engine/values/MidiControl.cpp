#include "engine/values/MidiControl.h"

#include <algorithm>

#include "engine/values/HeldKeys.h"
#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;

std::optional<MidiControl> MidiControl::Of(const LibMidi::MIDIEvent& event) {
    const auto made = [&event](Kind ofMessage) {
        return MidiControl{ofMessage, event.GetChannel(), TMIDIMessage::DataOf(event.data1)};
    };
    switch (event.GetCommand()) {
        case TMIDIMessage::kNoteOff:
        case TMIDIMessage::kNoteOn:
        case TMIDIMessage::kKeyPressure:
            return made(Kind::kNote);
        case TMIDIMessage::kControlChange:
            return made(Kind::kController);
        case TMIDIMessage::kProgramChange:
            return made(Kind::kProgram);
        default:
            return std::nullopt;
    }
}

bool MidiControl::IsReserved() const {
    return kind == Kind::kController &&
           (number >= NK::MIDI::Controller::kFirstMode ||
            std::find(HeldKeys::kPedals.begin(), HeldKeys::kPedals.end(), number) != HeldKeys::kPedals.end());
}

}  // namespace Kivora
