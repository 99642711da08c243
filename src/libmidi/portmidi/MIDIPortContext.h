// The side of an input port that faces the threads of its backend.
#pragma once

namespace LibMidi {

/// One round of each of the two threads that move incoming events: from the device to the port's queue, and from there
/// to the listeners.
class MIDIPortContext {
public:
    virtual ~MIDIPortContext() = default;
    /// Reads at most one event of the device if the port is open. [input-timer]
    virtual void ReceiveRound() = 0;
    /// Gives everything that is queued to the listeners, with no lock held meanwhile. [input]
    virtual void DeliverRound() = 0;
};

}  // namespace LibMidi
