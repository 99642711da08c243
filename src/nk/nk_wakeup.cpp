#include "nk/nk_wakeup.h"

#include "nk/nk_sleep.h"
#include "nk/platform/platform_clock.h"
#include "nk/platform/platform_futex.h"
#include "nk/platform/platform_sleep.h"

namespace NK {

void CWakeup::Wake() noexcept {
    if (state_.exchange(kWoken) == kWaiting) {
        Platform::FutexWakeAll(state_);
    }
}

void CWakeup::WaitUntil(std::int64_t untilNs) noexcept {
    std::uint32_t expected = kIdle;
    if (state_.compare_exchange_strong(expected, kWaiting)) {
        Platform::SleepOnWord(state_, kWaiting, untilNs);
    }
    state_.exchange(kIdle);  // acquires what the wakers have done
}

bool CWakeup::Take() noexcept {
    return state_.exchange(kIdle) == kWoken;
}

std::int64_t CWakeup::NowNs() noexcept {
    return Platform::GetSteadyClockNs();
}

void CSleeper::Wait(CWakeup& wakeup, std::int64_t) {
    if (!wakeup.Take()) {
        Sleep(1);
    }
}

}  // namespace NK
