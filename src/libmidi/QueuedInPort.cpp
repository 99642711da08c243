#include "libmidi/QueuedInPort.h"

#include <utility>

#include "libmidi/EventLog.h"
#include "nk/nk_logger.h"
#include "nk/nk_thread_role.h"

namespace LibMidi {

void QueuedInPort::BeginReceiving() {
    SetLostCount(0);
    SetClosing(false);
}

void QueuedInPort::QueueEvent(const MIDIEvent& event) {
    const CLockGuard guard(queueLock_);
    queue_.push_back(event);
    hasQueued_.store(true, std::memory_order_release);
    LogEvent(L"MIDI in", GetName(), event);
}

void QueuedInPort::QueueLoss() {
    const CLockGuard guard(queueLock_);
    ++lost_;
    lostAfter_ = queue_.size();
    hasQueued_.store(true, std::memory_order_release);
    SetLostCount(GetLostCount() + 1);
}

void QueuedInPort::ClearQueue() {
    const CLockGuard guard(queueLock_);
    queue_.clear();
    lost_ = 0;
    hasQueued_.store(false, std::memory_order_release);
}

bool QueuedInPort::TakeQueue(std::uint32_t& lost, std::size_t& lostAfter) {
    const CLockGuard guard(queueLock_);
    if (GetQueueSize() > kMaxQueueSize) {
        if (NK::IsEventLogEnabled()) {
            NK::Log(L"WARNING: MIDI input port thread - bogus queue size detected / " + GetName());
        }
        sleeper_.Sleep(200);
        return false;
    }
    batch_.clear();
    batch_.swap(queue_);
    lost = std::exchange(lost_, 0);
    lostAfter = lostAfter_;
    hasQueued_.store(false, std::memory_order_release);
    return true;
}

void QueuedInPort::DeliverQueued() {
    NK_ASSERT_THREAD_ROLE(input);
    std::uint32_t lost = 0;
    std::size_t lostAfter = 0;
    if (!hasQueued_.load(std::memory_order_acquire) || !TakeQueue(lost, lostAfter)) {
        return;
    }
    if (lost != 0) {
        Notify(0, lostAfter);
        NotifyDataLost(lost);
        Notify(lostAfter, batch_.size());
    } else {
        Notify(0, batch_.size());
    }
}

void QueuedInPort::Notify(std::size_t from, std::size_t to) {
    if (from < to) {
        NotifyData(batch_.data() + from, static_cast<std::int32_t>(to - from));
    }
}

}  // namespace LibMidi
