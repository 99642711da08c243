#include "libmidi/portmidi/PortMIDIOutPort.h"

#include "libmidi/portmidi/TickCounter.h"

namespace LibMidi {

PortMIDIOutPort::PortMIDIOutPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name)
    : MIDIPortImpl(device, name, kOutput), PortMIDIPort(implementation) {
}

PortMIDIOutPort::~PortMIDIOutPort() {
    Close();
}

bool PortMIDIOutPort::OpenDevice() {
    constexpr std::int32_t kBufferSize = 1024;
    constexpr std::int32_t kLatency = 0;
    if (GetApi().OpenOutput(&stream_, GetDevice(), nullptr, kBufferSize, &TickCounter::TimeProcedure, nullptr,
                            kLatency) != pmNoError) {
        stream_ = nullptr;
        return false;
    }
    return true;
}

bool PortMIDIOutPort::WriteEvent(const MIDIEvent& event) {
    PmEvent message{Pm_Message(event.status, event.data1, event.data2), TickCounter::TimeProcedure(nullptr)};
    return GetApi().Write(stream_, &message, 1) == pmNoError;
}

}  // namespace LibMidi
