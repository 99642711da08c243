#include "libmidi/MIDIEvent.h"

namespace LibMidi {

NK::MIDI::TMIDIMessage MIDIEvent::ToMessage() const noexcept {
    if (!IsOfChannel()) {
        return {status, 0, data1, data2};
    }
    return {GetCommand(), static_cast<std::uint8_t>(GetChannel() + 1), data1, data2};
}

MIDIEvent MIDIEvent::FromMessage(NK::MIDI::TMIDIMessage message, std::uint32_t timeStamp) noexcept {
    const int channel = message.channel != 0 ? message.channel - 1 : 0;
    return {timeStamp, static_cast<std::uint8_t>(message.status | channel), message.data1, message.data2};
}

}  // namespace LibMidi
