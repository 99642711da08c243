// What the output ports of every backend share. [base]
#pragma once

#include "libmidi/MIDIPortImpl.h"

namespace LibMidi {

/// An output port whose subclass sends one event at a time. A subclass's destructor closes the port.
class MIDIOutPortImpl : public virtual MIDIPortImpl, public MIDIOutPort {
public:
    Result Write(const MIDIEvent* events, std::int32_t count) final;

protected:
    /// Sends one event to the open device; false when that fails.
    virtual bool WriteEvent(const MIDIEvent& event) NK_REQUIRES(deviceLock_) = 0;
};

}  // namespace LibMidi
