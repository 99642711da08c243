#include "libmidi/InputEvents.h"

namespace LibMidi {

std::optional<MIDIEvent> ToInputEvent(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    const auto command = static_cast<std::uint8_t>(status & 0xF0);
    const auto channel = static_cast<std::uint8_t>(status & 0x0F);
    const auto first = static_cast<std::uint8_t>(data1 & 0x7F);
    const auto second = static_cast<std::uint8_t>(data2 & 0x7F);
    switch (command) {
        case 0x80:
        case 0x90:
            return NoteEvent(0, channel, first, second, command);
        case 0xA0:
            return KATEvent(0, channel, first, second);
        case 0xB0:
            return CtrlEvent(0, channel, first, second);
        case 0xC0:
            return PatchEvent(0, channel, first);
        case 0xD0:
            return CATEvent(0, channel, first);
        case 0xE0:
            return WheelEvent(0, channel, first, second);
        default:
            return std::nullopt;
    }
}

}  // namespace LibMidi
