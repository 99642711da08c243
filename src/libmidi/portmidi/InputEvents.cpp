#include "libmidi/portmidi/InputEvents.h"

namespace LibMidi {

std::optional<MIDIEvent> ToInputEvent(PmMessage message) {
    const auto status = static_cast<std::uint8_t>(Pm_MessageStatus(message));
    const auto command = static_cast<std::uint8_t>(status & 0xF0);
    const auto channel = static_cast<std::uint8_t>(status & 0x0F);
    const auto data1 = static_cast<std::uint8_t>(Pm_MessageData1(message) & 0x7F);
    const auto data2 = static_cast<std::uint8_t>(Pm_MessageData2(message) & 0x7F);
    switch (command) {
        case 0x80:
        case 0x90:
            return NoteEvent(0, channel, data1, data2, command);
        case 0xA0:
            return KATEvent(0, channel, data1, data2);
        case 0xB0:
            return CtrlEvent(0, channel, data1, data2);
        case 0xC0:
            return PatchEvent(0, channel, data1);
        case 0xD0:
            return CATEvent(0, channel, data1 & 0x0F);
        case 0xE0:
            return WheelEvent(0, channel, data1, data2);
        default:
            return std::nullopt;
    }
}

}  // namespace LibMidi
