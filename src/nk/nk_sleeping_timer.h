// A thread that calls a listener at a fixed period counted in sleeps.
#pragma once

#include <atomic>
#include <cstdint>

#include "nk/nk_thread.h"

namespace NK {

/// Receives the ticks of a timer, on the timer's own thread.
class CTimerListener {
public:
    virtual ~CTimerListener() = default;
    virtual void OnTimer(std::uint32_t timerId) = 0;
};

/// Calls its listener every `periodMs` sleeps of 1 ms while enabled; a period of 0 calls in a tight loop. Ticks are
/// counted by sleeps, not against a clock. The first tick after any change of `enabled` is swallowed.
/// The destructor waits, without limit, for a call in progress; a listener may also delete its timer from OnTimer().
class CThreadSleepingTimer : private CThread {
public:
    /// Starts at once. The listener is not owned and may be null. Level as in CThread.
    CThreadSleepingTimer(CTimerListener* listener, std::uint32_t timerId, std::uint32_t periodMs, bool enabled,
                         int level);
    ~CThreadSleepingTimer() override;

    /// A call in progress goes on. [any]
    void SetEnabled(bool enabled);
    using CThread::IsRunning;
    using CThread::SetName;

private:
    void Run() override;

    CTimerListener* listener_;
    std::uint32_t timerId_;
    std::uint32_t periodMs_;
    std::atomic<bool> enabled_;
    std::atomic<bool> changed_{false};
};

}  // namespace NK
