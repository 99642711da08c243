#include "libmidi/portmidi/PortMIDIEvents.h"

#include "libmidi/InputEvents.h"

namespace LibMidi {

using NK::MIDI::TMIDIMessage;

std::optional<MIDIEvent> ToInputEvent(PmMessage message) {
    const auto status = static_cast<std::uint8_t>(Pm_MessageStatus(message));
    const int kept = TMIDIMessage::CommandOf(status) == TMIDIMessage::kChannelPressure ? 0x0F : 0x7F;
    return ToInputEvent(status, static_cast<std::uint8_t>(Pm_MessageData1(message) & kept),
                        static_cast<std::uint8_t>(Pm_MessageData2(message)));
}

}  // namespace LibMidi
