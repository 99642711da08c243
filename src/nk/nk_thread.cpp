#include "nk/nk_thread.h"

#include <algorithm>
#include <cwchar>
#include <limits>

#include "nk/platform/platform_priority.h"
#include "nk/platform/platform_sleep.h"
#include "nk/platform/platform_thread.h"

namespace NK {
namespace {

constexpr std::uint32_t kStartPollMs = 1;
constexpr std::int32_t kExitPollMs = 10;

/// The object whose body the calling thread runs; null again once that object is gone.
thread_local const CThread* ownThread = nullptr;

}  // namespace

CThread::CThread(bool deferStart, int level) : priority_(level), requestedPriority_(level) {
    if (!deferStart) {
        CThread::Start();
    }
}

CThread::~CThread() {
    if (IsOwnThread()) {
        ownThread = nullptr;
        return;
    }
    if (!destroying_.exchange(true)) {
        WaitWhileStarting();
        if (running_ && !stopping_) {
            CThread::Stop(stopTimeoutMs_);
        }
    }
    // The thread clears the flags with the lock held: it has left the object when the lock is free.
    const CLockGuard guard(lock_);
    if (handle_) {
        handle_->Terminate();
    }
}

void CThread::ThreadProcedure(void* object) {
    auto* const self = static_cast<CThread*>(object);
    {
        const CLockGuard guard(self->lock_);
        if (self->destroying_) {
            self->handle_.reset();
            return;
        }
        self->running_ = true;
        self->stopRequested_ = false;
        self->finished_ = false;
    }
    ownThread = self;
    self->Run();
    if (HasDeletedItself()) {
        return;
    }
    ownThread = nullptr;
    bool deleteNow = false;
    {
        const CLockGuard guard(self->lock_);
        self->finished_ = true;
        self->handle_.reset();
        if (self->deleteOnExit_ && !self->destroying_) {
            self->stopping_ = true;
            deleteNow = self->waiters_ == 0;
            self->deletionDue_ = !deleteNow;
        }
        self->running_ = false;
    }
    if (deleteNow) {
        delete self;
    }
}

bool CThread::Start() {
    const CLockGuard guard(lock_);
    if (destroying_ || stopping_) {
        return false;
    }
    if (handle_ && suspended_) {
        suspended_ = !handle_->Resume();
        return !suspended_;
    }
    if (running_) {
        return true;
    }
    std::shared_ptr<Platform::CThreadHandle> created = Platform::CThreadHandle::CreateSuspended(&ThreadProcedure, this);
    if (!created) {
        return false;
    }
    handle_ = std::move(created);
    handle_->SetName(CString(name_).ToUtf8().c_str());
    SetPriority(priority_, true);
    suspended_ = false;
    stopRequested_ = false;
    finished_ = false;
    return handle_->Resume();
}

bool CThread::Suspend() {
    std::shared_ptr<Platform::CThreadHandle> own;
    {
        const CLockGuard guard(lock_);
        if (stopping_ || !handle_) {
            return false;
        }
        if (suspended_) {
            return true;
        }
        if (IsOwnThread()) {
            handle_->BeginOwnSuspension();
            own = handle_;
        } else if (!handle_->Suspend()) {
            return false;
        }
        suspended_ = true;
    }
    if (own) {
        own->WaitUntilResumed();
    }
    return true;
}

bool CThread::Resume() {
    {
        const CLockGuard guard(lock_);
        if (!suspended_) {
            return running_;
        }
    }
    return Start();
}

bool CThread::StartOnce() {
    if (finished_) {
        return running_;
    }
    return Start();
}

void CThread::RequestStop() {
    stopRequested_.store(true, std::memory_order_release);
}

bool CThread::Stop(std::uint32_t timeoutMs) {
    const bool own = IsOwnThread();
    Enter();
    bool stopped = false;
    try {
        stopped = StopUnguarded(timeoutMs);
    } catch (...) {
        stopped = false;
    }
    Leave();
    if (own && stopped) {
        Platform::CThreadHandle::ParkForEver();
    }
    return stopped;
}

bool CThread::StopUnguarded(std::uint32_t timeoutMs) {
    if (stopping_.exchange(true)) {
        return false;
    }
    const bool own = IsOwnThread();
    WaitWhileStarting();
    if (!running_) {
        return true;
    }
    RequestStop();
    if (timeoutMs > 0 && !own) {
        constexpr std::uint32_t kLongest = std::numeric_limits<std::int32_t>::max();
        WaitWhileRunning(static_cast<std::int32_t>(std::min(timeoutMs, kLongest)));
    }
    // With the lock held, so that the thread cannot be ended while it has it.
    const CLockGuard guard(lock_);
    if (!running_) {
        return true;
    }
    if (!handle_ || (!own && !handle_->Terminate())) {
        return false;
    }
    finished_ = true;
    stopRequested_ = true;
    handle_.reset();
    if (deleteOnExit_.exchange(false) && !destroying_) {
        deletionDue_ = true;
    }
    running_ = false;
    return true;
}

void CThread::Enter() {
    const CLockGuard guard(lock_);
    ++waiters_;
}

void CThread::Leave() {
    {
        const CLockGuard guard(lock_);
        --waiters_;
        if (!deletionDue_ || waiters_ > 0) {
            return;
        }
        deletionDue_ = false;
        destroying_ = true;
    }
    delete this;
}

void CThread::SetName(const wchar_t* text) {
    const CLockGuard guard(lock_);
    std::wcsncpy(name_, text == nullptr ? L"" : text, kNameSize - 1);
    name_[kNameSize - 1] = L'\0';
    if (handle_) {
        handle_->SetName(CString(name_).ToUtf8().c_str());
    }
}

CString CThread::GetName() const {
    const CLockGuard guard(lock_);
    return CString(name_);
}

bool CThread::SetPriority(int level, bool force) {
    const CLockGuard guard(lock_);
    if (stopping_ || (!force && level == priority_)) {
        return false;
    }
    priority_ = level;
    requestedPriority_ = level;
    return !handle_ || handle_->SetPriority(level);
}

bool CThread::SetCallersLevel(int level) {
    return Platform::SetCallersPriority(level);
}

bool CThread::ReapplyPriority() {
    const CLockGuard guard(lock_);
    if (requestedPriority_ == priority_) {
        return false;
    }
    priority_ = requestedPriority_;
    return SetPriority(priority_, true);
}

bool CThread::WaitForExit(std::int32_t timeoutMs) {
    if (IsOwnThread()) {
        RequestStop();
        return false;
    }
    Enter();
    WaitWhileStarting();
    if (running_) {
        RequestStop();
        WaitWhileRunning(timeoutMs);
    }
    const bool ended = !running_;
    Leave();
    return ended;
}

void CThread::WaitWhileStarting() {
    const auto isStarting = [this] {
        const CLockGuard guard(lock_);
        return handle_ != nullptr && !suspended_ && !running_;
    };
    while (isStarting()) {
        Platform::Sleep(kStartPollMs);
    }
}

void CThread::WaitWhileRunning(std::int32_t timeoutMs) {
    std::int64_t waitedMs = 0;
    while (running_ && (timeoutMs < 1 || waitedMs < timeoutMs)) {
        Platform::Sleep(kExitPollMs);
        waitedMs += kExitPollMs;
    }
}

bool CThread::SleepInterruptible(std::uint32_t ms, std::uint32_t quantumMs) {
    const std::uint32_t step = std::max(quantumMs, 1U);
    while (ms > step) {
        if (IsStopRequested()) {
            return false;
        }
        Platform::Sleep(step);
        ms -= step;
    }
    if (ms == 0) {
        return true;
    }
    if (IsStopRequested()) {
        return false;
    }
    Platform::Sleep(ms);
    return true;
}

void CThread::SetDeleteOnExit(bool on) {
    deleteOnExit_ = on;
}

bool CThread::IsOwnThread() const {
    return ownThread == this;
}

bool CThread::HasDeletedItself() {
    return ownThread == nullptr;
}

}  // namespace NK
