#include "nk/platform/platform_sleep.h"

#include <sched.h>
#include <sys/prctl.h>
#include <time.h>

#include <atomic>
#include <cerrno>

#include "nk/nk_sleep.h"
#include "nk/nk_wakeup.h"
#include "nk/platform/platform_futex.h"

namespace NK::Platform {
namespace {

// Written by its thread, read by a signal handler on that thread.
constinit thread_local std::atomic<bool> insideSleep{false};

class CSystemSleeper : public CSleeper {
public:
    void Sleep(std::uint32_t milliseconds) override { Platform::Sleep(milliseconds); }
    void Wait(CWakeup& wakeup, std::int64_t untilNs) override { wakeup.WaitUntil(untilNs); }
};

}  // namespace

void Sleep(std::uint32_t milliseconds) noexcept {
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    constexpr long kNsPerMs = 1'000'000;
    timespec left{static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * kNsPerMs};
    insideSleep.store(true);
    // Not clock_nanosleep, in which ThreadSanitizer would hold back the signal that parks the thread.
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
    insideSleep.store(false);
}

void SleepOnWord(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t untilNs) noexcept {
    insideSleep.store(true);
    FutexWaitUntil(word, expected, untilNs);
    insideSleep.store(false);
}

bool IsInsideSleep() noexcept {
    return insideSleep.load();
}

void SetSmallestTimerSlack() noexcept {
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

}  // namespace NK::Platform

namespace NK {

CSleeper& SystemSleeper() {
    static Platform::CSystemSleeper sleeper;
    return sleeper;
}

}  // namespace NK
