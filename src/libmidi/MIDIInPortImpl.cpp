#include "libmidi/MIDIInPortImpl.h"

namespace LibMidi {

void MIDIInPortImpl::NotifyData(const MIDIEvent* events, std::int32_t count) {
    listeners_.ForEach([=](MIDIPortDataListener& listener) { listener.OnMIDIData(events, count); });
}

void MIDIInPortImpl::NotifyDataLost(std::uint32_t lostCount) {
    listeners_.ForEach([=](MIDIPortDataListener& listener) { listener.OnMIDIDataLost(lostCount); });
}

}  // namespace LibMidi
