#include "nk/platform/platform_thread.h"

#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "nk/platform/platform_futex.h"
#include "nk/platform/platform_library_ranges.h"
#include "nk/platform/platform_priority.h"
#include "nk/platform/platform_sleep.h"

namespace NK::Platform {
namespace {

constexpr std::int64_t kPoliteNs = 100'000'000;
constexpr std::int64_t kPatienceNs = 1'000'000'000;

int ParkSignal() {
    return SIGRTMIN + 5;
}

std::int64_t MonotonicNs() noexcept {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

// The calling thread's own handle. Read by the signal handler.
constinit thread_local std::atomic<CThreadHandle*> ownHandle{nullptr};

}  // namespace

struct CThreadHandle::TStart {
    std::shared_ptr<CThreadHandle> handle;
    Procedure procedure;
    void* argument;
};

std::shared_ptr<CThreadHandle> CThreadHandle::CreateSuspended(Procedure procedure, void* argument) {
    static const bool ready = [] {
        RecordLibraryRanges();
        struct sigaction action {};
        action.sa_sigaction = &CThreadHandle::OnSignal;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        sigfillset(&action.sa_mask);
        return sigaction(ParkSignal(), &action, nullptr) == 0;
    }();
    if (!ready) {
        return nullptr;
    }
    auto handle = std::make_shared<CThreadHandle>(TPrivate{});
    auto start = std::make_unique<TStart>(TStart{handle, procedure, argument});
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    int result = 0;
    {
        const CLockGuard guard(handle->control_);
        result = pthread_create(&handle->thread_, &attributes, &Trampoline, start.get());
    }
    pthread_attr_destroy(&attributes);
    if (result != 0) {
        return nullptr;
    }
    static_cast<void>(start.release());  // the thread has it
    while (handle->tid_.load() == 0) {
        FutexWait(handle->tid_, 0, -1);
    }
    return handle;
}

void* CThreadHandle::Trampoline(void* start) {
    const std::unique_ptr<TStart> owned(static_cast<TStart*>(start));
    CThreadHandle& handle = *owned->handle;
    ownHandle.store(&handle);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
    SetSmallestTimerSlack();
    handle.tid_.store(static_cast<std::uint32_t>(gettid()));
    FutexWakeAll(handle.tid_);
    handle.WaitUntilResumed();
    owned->procedure(owned->argument);
    handle.MarkEnded();
    return nullptr;
}

void CThreadHandle::MarkEnded() {
    {
        const CLockGuard guard(control_);
        ended_ = true;
    }
    ownHandle.store(nullptr);
}

void CThreadHandle::OnSignal(int, siginfo_t*, void* context) {
    const int savedErrno = errno;
    if (CThreadHandle* const handle = ownHandle.load()) {
        handle->Answer(WasLibraryInterrupted(context) && !IsInsideSleep());
    }
    errno = savedErrno;
}

void CThreadHandle::Answer(bool insideLibrary) noexcept {
    std::uint32_t question = state_.load();
    if (question != kAsked && question != kTold) {
        return;
    }
    const EState answer = question == kAsked && insideLibrary ? kRefused : kParked;
    if (!state_.compare_exchange_strong(question, answer)) {
        return;
    }
    FutexWakeAll(state_);
    if (answer == kParked) {
        WaitUntilResumed();
    }
}

void CThreadHandle::WaitUntilResumed() noexcept {
    while (state_.load() == kParked) {
        FutexWait(state_, kParked, -1);
    }
}

bool CThreadHandle::SendSignal() {
    return pthread_kill(thread_, ParkSignal()) == 0;
}

bool CThreadHandle::AwaitAnswer(EState question, std::int64_t untilNs) noexcept {
    while (state_.load() == question) {
        const std::int64_t leftNs = untilNs - MonotonicNs();
        if (leftNs <= 0) {
            return false;
        }
        FutexWait(state_, question, leftNs);
    }
    return true;
}

// Leaves the state kParked and returns true, or kTold (kRunning with `withdraw`) and returns false.
bool CThreadHandle::Park(bool withdraw) {
    const std::int64_t politeUntilNs = MonotonicNs() + kPoliteNs;
    do {
        state_.store(kAsked);
        SendSignal();
        if (AwaitAnswer(kAsked, politeUntilNs)) {
            if (state_.load() == kParked) {
                return true;
            }
            Sleep(1);
        }
    } while (MonotonicNs() < politeUntilNs);

    std::uint32_t present = state_.load();
    while (present != kParked && !state_.compare_exchange_weak(present, kTold)) {
    }
    if (present == kParked) {
        return true;
    }
    SendSignal();
    if (AwaitAnswer(kTold, MonotonicNs() + kPatienceNs)) {
        return true;
    }
    std::uint32_t question = kTold;
    return withdraw && !state_.compare_exchange_strong(question, kRunning);
}

bool CThreadHandle::Resume() {
    const CLockGuard guard(control_);
    if (ended_ || terminated_) {
        return false;
    }
    state_.store(kRunning);
    FutexWakeAll(state_);
    return true;
}

bool CThreadHandle::Suspend() {
    const CLockGuard guard(control_);
    return !ended_ && !terminated_ && (state_.load() == kParked || Park(true));
}

bool CThreadHandle::Terminate() {
    const CLockGuard guard(control_);
    if (ended_ || terminated_) {
        return false;
    }
    terminated_ = true;
    if (state_.load() != kParked) {
        Park(false);
    }
    return true;
}

void CThreadHandle::BeginOwnSuspension() {
    const CLockGuard guard(control_);
    state_.store(kParked);
}

void CThreadHandle::ParkForEver() noexcept {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    const std::atomic<std::uint32_t> never{0};
    for (;;) {
        FutexWait(never, 0, -1);
    }
}

bool CThreadHandle::SetPriority(int level) {
    const CLockGuard guard(control_);
    return !ended_ && SetThreadPriority(static_cast<std::int32_t>(tid_.load()), level);
}

void CThreadHandle::SetName(const char* utf8) {
    constexpr std::size_t kSystemLimit = 15;
    std::string name(utf8);
    if (name.size() > kSystemLimit) {
        name.resize(kSystemLimit);
        // Not in the middle of a character.
        while (!name.empty() && (static_cast<unsigned char>(utf8[name.size()]) & 0xC0U) == 0x80U) {
            name.pop_back();
        }
    }
    const CLockGuard guard(control_);
    if (!ended_) {
        pthread_setname_np(thread_, name.c_str());
    }
}

}  // namespace NK::Platform
