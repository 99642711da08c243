#include "nk/nk_sleeping_timer.h"

#include <algorithm>

namespace NK {

CThreadSleepingTimer::CThreadSleepingTimer(CTimerListener* listener, std::uint32_t timerId, std::uint32_t periodMs,
                                           bool enabled, int level)
    : CThread(true, level),
      listener_(listener),
      timerId_(timerId),
      periodMs_(periodMs),
      setting_(enabled ? kEnabled : 0) {
    CThread::Start();
}

CThreadSleepingTimer::~CThreadSleepingTimer() {
    SetEnabled(false);
    WaitForExit(-1);
}

void CThreadSleepingTimer::SetEnabled(bool enabled) {
    std::uint32_t before = setting_;
    do {
        if (((before & kEnabled) != 0) == enabled) {
            return;
        }
    } while (!setting_.compare_exchange_weak(before, (before + kChange) ^ kEnabled));
    wakeup_.Wake();
}

void CThreadSleepingTimer::RequestStop() {
    CThread::RequestStop();
    wakeup_.Wake();
}

void CThreadSleepingTimer::Run() {
    const std::int64_t periodNs = std::int64_t{periodMs_} * 1'000'000;
    std::int64_t nextNs = CWakeup::NowNs() + periodNs;
    std::uint32_t known = 0;
    while (!IsStopRequested()) {
        const std::int64_t nowNs = CWakeup::NowNs();
        const std::uint32_t setting = setting_;
        if ((setting | kEnabled) != (known | kEnabled)) {
            known = setting;
            nextNs = nowNs + periodNs;
        } else if ((setting & kEnabled) == 0 || listener_ == nullptr) {
            wakeup_.WaitUntil(CWakeup::kNever);
        } else if (nowNs < nextNs) {
            wakeup_.WaitUntil(nextNs);
        } else if (!Tick(nowNs, nextNs)) {
            return;
        }
    }
}

bool CThreadSleepingTimer::Tick(std::int64_t nowNs, std::int64_t& nextNs) {
    const std::int64_t periodNs = std::int64_t{periodMs_} * 1'000'000;
    if (periodNs > 0) {
        nextNs += periodNs * std::max<std::int64_t>(1, (nowNs - nextNs) / periodNs);
    }
    listener_->OnTimer(timerId_);
    if (HasDeletedItself()) {
        return false;
    }
    const std::int64_t endNs = CWakeup::NowNs();
    if (periodNs > 0 && endNs - nowNs >= periodNs) {
        nextNs = endNs + periodNs;
    }
    return true;
}

}  // namespace NK
