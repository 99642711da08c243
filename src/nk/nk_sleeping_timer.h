// A thread that calls a listener at a fixed period.
#pragma once

#include <atomic>
#include <cstdint>

#include "nk/nk_thread.h"
#include "nk/nk_wakeup.h"

namespace NK {

/// Receives the ticks of a timer, on the timer's own thread.
class CTimerListener {
public:
    virtual ~CTimerListener() = default;
    virtual void OnTimer(std::uint32_t timerId) = 0;
};

/// Calls its listener every `periodMs` while enabled, and waits without waking otherwise; a period of 0 calls in a
/// tight loop. Ticks stand on a grid of the system's clock, so a wait that ends late moves none of those that follow:
/// one missed tick is made up, any more are left out. A call that lasts a period begins a new grid, so that there is a
/// whole period without a call after it. The first tick after any change of `enabled` is swallowed.
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

    void RequestStop() override;

private:
    void Run() override;
    /// False when the listener has deleted the timer.
    bool Tick(std::int64_t nowNs, std::int64_t& nextNs);

    CTimerListener* listener_;
    std::uint32_t timerId_;
    std::uint32_t periodMs_;
    static constexpr std::uint32_t kEnabled = 1;
    static constexpr std::uint32_t kChange = 2;
    std::atomic<std::uint32_t> setting_;  ///< whether enabled, and above it how many changes of that
    CWakeup wakeup_;
};

}  // namespace NK
