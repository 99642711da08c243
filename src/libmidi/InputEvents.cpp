#include "libmidi/InputEvents.h"

namespace LibMidi {

using NK::MIDI::TMIDIMessage;

std::optional<MIDIEvent> ToInputEvent(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    const std::uint8_t command = TMIDIMessage::CommandOf(status);
    const std::uint8_t channel = TMIDIMessage::ChannelOf(status);
    const std::uint8_t first = TMIDIMessage::DataOf(data1);
    const std::uint8_t second = TMIDIMessage::DataOf(data2);
    switch (command) {
        case TMIDIMessage::kNoteOff:
        case TMIDIMessage::kNoteOn:
            return NoteEvent(0, channel, first, second, command);
        case TMIDIMessage::kKeyPressure:
            return KATEvent(0, channel, first, second);
        case TMIDIMessage::kControlChange:
            return CtrlEvent(0, channel, first, second);
        case TMIDIMessage::kProgramChange:
            return PatchEvent(0, channel, first);
        case TMIDIMessage::kChannelPressure:
            return CATEvent(0, channel, first);
        case TMIDIMessage::kPitchWheel:
            return WheelEvent(0, channel, first, second);
        default:
            return std::nullopt;
    }
}

}  // namespace LibMidi
