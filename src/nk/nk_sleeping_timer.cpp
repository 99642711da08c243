#include "nk/nk_sleeping_timer.h"

#include "nk/platform/platform_sleep.h"

namespace NK {

CThreadSleepingTimer::CThreadSleepingTimer(CTimerListener* listener, std::uint32_t timerId, std::uint32_t periodMs,
                                           bool enabled, int level)
    : CThread(true, level), listener_(listener), timerId_(timerId), periodMs_(periodMs), enabled_(enabled) {
    CThread::Start();
}

CThreadSleepingTimer::~CThreadSleepingTimer() {
    SetEnabled(false);
    WaitForExit(-1);
}

void CThreadSleepingTimer::SetEnabled(bool enabled) {
    if (enabled != enabled_) {
        changed_ = true;
        enabled_ = enabled;
    }
}

void CThreadSleepingTimer::Run() {
    while (!IsStopRequested()) {
        for (std::uint32_t slept = 0; slept < periodMs_ && !changed_; ++slept) {
            if (IsStopRequested()) {
                return;
            }
            Platform::Sleep(1);
        }
        if (changed_.exchange(false) || !enabled_ || listener_ == nullptr) {
            continue;
        }
        listener_->OnTimer(timerId_);
        if (HasDeletedItself()) {
            return;
        }
    }
}

}  // namespace NK
