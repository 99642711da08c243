#include "libmidi/portmidi/PortMIDIPort.h"

#include "libmidi/portmidi/PortMIDIImpl.h"

namespace LibMidi {

PortMIDIPort::PortMIDIPort(PortMIDIImpl& implementation, PmDeviceID device)
    : watch_(implementation.MakeWatch(device)), implementation_(implementation), api_(implementation.GetApi()) {
}

void PortMIDIPort::CloseDevice() {
    api_.Close(stream_);
    stream_ = nullptr;
}

}  // namespace LibMidi
