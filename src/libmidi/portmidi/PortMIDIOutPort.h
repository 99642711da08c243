// PortMidi's output port. [base]
#pragma once

#include <atomic>

#include "libmidi/MIDIOutPortImpl.h"
#include "libmidi/portmidi/PortMIDIPort.h"

namespace LibMidi {

/// Writes straight to PortMidi on the caller's thread; with latency 0 every message goes out at once.
class PortMIDIOutPort final : public PortMIDIPort, public MIDIOutPortImpl {
public:
    PortMIDIOutPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name);
    ~PortMIDIOutPort() override;

    /// On the sequencer the library keeps a message that failed and sends none after it, to whatever port: then it has
    /// to be started anew.
    DeviceState LookAtDevice() override;

private:
    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    bool WriteEvent(const MIDIEvent& event) override NK_REQUIRES(deviceLock_);

    std::atomic<bool> hasFailed_{false};
};

}  // namespace LibMidi
