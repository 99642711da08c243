// PortMidi's input port.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "libmidi/MIDIInPortImpl.h"
#include "libmidi/portmidi/MIDIPortContext.h"
#include "libmidi/portmidi/PortMIDIPort.h"
#include "libmidi/RoundThread.h"

namespace LibMidi {

/// Receives through a queue: the input timer of the implementation fills it, the port's own thread empties it.
class PortMIDIInPort : public MIDIInPortImpl, public PortMIDIPort, public MIDIPortContext {
public:
    class InPortThread;

    /// A queue with more events than this counts as corrupt and is left alone.
    static constexpr std::size_t kMaxQueueSize = 100000000;
    /// After the first round without data, and then each time after so many, the device is read although it reports
    /// no data: PortMidi tells of an overrun buffer by a read only, and takes in nothing more until it has.
    static constexpr std::uint32_t kProbeRounds = 128;

    PortMIDIInPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name);
    ~PortMIDIInPort() override;

    void ReceiveRound() override;
    void DeliverRound() override;
    DeviceState LookAtDevice() override;

protected:
    /// The number of queued events.
    virtual std::size_t GetQueueSize() const NK_REQUIRES(queueLock_) { return queue_.size(); }

    mutable CCriticalSection queueLock_;

private:
    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    bool OnOpened() override;
    void OnClosing() override;
    void CloseDevice() override NK_REQUIRES(deviceLock_);

    bool IsReadDue() NK_REQUIRES(deviceLock_);
    void QueueMessage(PmMessage message);
    void QueueLoss();
    bool TakeQueue(std::uint32_t& lost, std::size_t& lostAfter);
    void ClearQueue();
    void Notify(std::size_t from, std::size_t to);

    std::uint32_t quietRounds_ NK_GUARDED_BY(deviceLock_) = 0;  ///< since the device last had data
    std::atomic<bool> isBroken_{false};                         ///< the device has failed and has sent nothing since
    std::vector<MIDIEvent> queue_ NK_GUARDED_BY(queueLock_);
    std::uint32_t lost_ NK_GUARDED_BY(queueLock_) = 0;     ///< overruns not told to the listeners yet
    std::size_t lostAfter_ NK_GUARDED_BY(queueLock_) = 0;  ///< queued events that came before the last overrun
    std::atomic<bool> hasQueued_{false};                   ///< the queue or lost_ holds something

    std::vector<MIDIEvent> batch_;  ///< of the port's thread; kept so that a round allocates nothing
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
