#include "libmidi/portmidi/PortMIDIOutPort.h"

#include "libmidi/portmidi/TickCounter.h"

namespace LibMidi {

PortMIDIOutPort::PortMIDIOutPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name)
    : MIDIPortImpl(device, name, kOutput), PortMIDIPort(implementation, device) {
}

PortMIDIOutPort::~PortMIDIOutPort() {
    Close();
}

bool PortMIDIOutPort::OpenDevice() {
    constexpr std::int32_t kBufferSize = 1024;
    constexpr std::int32_t kLatency = 0;
    watch_.BeforeOpening();
    if (GetApi().OpenOutput(&stream_, GetDevice(), nullptr, kBufferSize, &TickCounter::TimeProcedure, nullptr,
                            kLatency) != pmNoError) {
        stream_ = nullptr;
        return false;
    }
    watch_.AfterOpening();
    return true;
}

bool PortMIDIOutPort::WriteEvent(const MIDIEvent& event) {
    PmEvent message{Pm_Message(event.status, event.data1, event.data2), TickCounter::TimeProcedure(nullptr)};
    const bool isWritten = GetApi().Write(stream_, &message, 1) == pmNoError;
    if (!isWritten) {
        hasFailed_ = true;
    }
    return isWritten;
}

DeviceState PortMIDIOutPort::LookAtDevice() {
    switch (watch_.Look()) {
        case DeviceWatch::Presence::kAway:
            return DeviceState::kLost;
        case DeviceWatch::Presence::kReturned:
            return hasFailed_ ? DeviceState::kElsewhere : DeviceState::kBack;
        case DeviceWatch::Presence::kElsewhere:
            return DeviceState::kElsewhere;
        default:
            return hasFailed_ ? DeviceState::kElsewhere : DeviceState::kWorks;
    }
}

}  // namespace LibMidi
