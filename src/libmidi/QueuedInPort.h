// The way of incoming events from whoever reads a device to the listeners of its port.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "libmidi/MIDIInPortImpl.h"

namespace LibMidi {

/// An input port with a queue: one thread appends what its device sends, one gives it to the listeners in order. They
/// may be one and the same. A loss keeps its place between the events.
class QueuedInPort : public MIDIInPortImpl {
public:
    /// A queue with more events than this counts as corrupt and is left alone.
    static constexpr std::size_t kMaxQueueSize = 100000000;

protected:
    explicit QueuedInPort(NK::CSleeper& sleeper) : MIDIInPortImpl(sleeper), sleeper_(sleeper) {}

    /// For the opening: nothing is lost yet, and the port is not closing.
    void BeginReceiving();
    void QueueEvent(const MIDIEvent& event);
    void QueueLoss();
    void ClearQueue();
    /// Gives everything that is queued to the listeners in one array, in two around a loss, with no lock held
    /// meanwhile. Allocates nothing once warm. [input]
    void DeliverQueued();

    /// The number of queued events.
    virtual std::size_t GetQueueSize() const NK_REQUIRES(queueLock_) { return queue_.size(); }

    mutable CCriticalSection queueLock_;

private:
    bool TakeQueue(std::uint32_t& lost, std::size_t& lostAfter);
    void Notify(std::size_t from, std::size_t to);

    NK::CSleeper& sleeper_;
    std::vector<MIDIEvent> queue_ NK_GUARDED_BY(queueLock_);
    std::uint32_t lost_ NK_GUARDED_BY(queueLock_) = 0;     ///< losses not told to the listeners yet
    std::size_t lostAfter_ NK_GUARDED_BY(queueLock_) = 0;  ///< queued events that came before the last loss
    std::atomic<bool> hasQueued_{false};                   ///< the queue or lost_ holds something
    std::vector<MIDIEvent> batch_;                         ///< of the thread that delivers
};

}  // namespace LibMidi
