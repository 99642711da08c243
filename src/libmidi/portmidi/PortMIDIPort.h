// What PortMidi's input and output ports share. [base]
#pragma once

#include "libmidi/MIDIPortImpl.h"
#include "libmidi/portmidi/DeviceWatch.h"
#include "libmidi/portmidi/PortMidiApi.h"

namespace LibMidi {

class PortMIDIImpl;

/// A port of one of PortMidi's devices. The implementation that made it outlives it.
class PortMIDIPort : public virtual MIDIPortImpl {
protected:
    PortMIDIPort(PortMIDIImpl& implementation, PmDeviceID device);

    void CloseDevice() override NK_REQUIRES(deviceLock_);
    PortMIDIImpl& GetImplementation() const { return implementation_; }
    PortMidiApi& GetApi() const { return api_; }

    DeviceWatch watch_;  ///< of the thread that opens and closes
    PortMidiStream* stream_ NK_GUARDED_BY(deviceLock_) = nullptr;

private:
    PortMIDIImpl& implementation_;
    PortMidiApi& api_;
};

}  // namespace LibMidi
