// PortMidi's input port. [base]
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "libmidi/portmidi/MIDIPortContext.h"
#include "libmidi/portmidi/PortMIDIPort.h"
#include "libmidi/QueuedInPort.h"
#include "libmidi/RoundThread.h"

namespace LibMidi {

/// Receives through a queue: the input timer of the implementation fills it, the port's own thread empties it.
class PortMIDIInPort : public QueuedInPort, public PortMIDIPort, public MIDIPortContext {
public:
    class InPortThread;

    /// After the first round without data, and then each time after so many, the device is read although it reports
    /// no data: PortMidi tells of an overrun buffer by a read only, and takes in nothing more until it has.
    static constexpr std::uint32_t kProbeRounds = 128;

    PortMIDIInPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name);
    ~PortMIDIInPort() override;

    void ReceiveRound() override;
    void DeliverRound() override;
    DeviceState LookAtDevice() override;

private:
    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    bool OnOpened() override;
    void OnClosing() override;
    void CloseDevice() override NK_REQUIRES(deviceLock_);

    bool IsReadDue() NK_REQUIRES(deviceLock_);

    std::uint32_t quietRounds_ NK_GUARDED_BY(deviceLock_) = 0;  ///< since the device last had data
    std::atomic<bool> isBroken_{false};                         ///< the device has failed since it was opened
    std::unique_ptr<InPortThread> thread_;
};

/// Calls the port's DeliverRound() each millisecond. Logs and ends at once without a port or an implementation.
class PortMIDIInPort::InPortThread : public RoundThread {
public:
    InPortThread(PortMIDIInPort* port, PortMIDIImpl* implementation);

private:
    void RunRounds() override;

    PortMIDIInPort* port_;
    PortMIDIImpl* implementation_;
};

}  // namespace LibMidi
