// The operating system's threads: created suspended, suspended, resumed and ended by force.
#pragma once

#include <pthread.h>
#include <signal.h>
#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <memory>

#include "nk/nk_critical_section.h"

namespace NK::Platform {

/// One detached thread. It shares ownership of this object, so a handle outlives its thread or the other way round.
///
/// A thread is stopped where it stands by a real-time signal whose handler waits. While the interrupted instruction
/// lies in the C or C++ library the handler lets it go on and the stop is tried again each millisecond, for 100 ms;
/// then it stands wherever it is. So a body that computes, or sleeps by Sleep(), is stopped without a lock of the
/// library in its hands. What cannot be promised: a lock of the program's own, held by the body at that moment, stays
/// locked; so may a lock of the library when the body waits in a call of it for longer than 100 ms, or when the library
/// was calling the program back with a lock held. The body must not block the signal.
class CThreadHandle {
    struct TPrivate {};

public:
    using Procedure = void (*)(void* argument);

    /// A thread that waits at a gate before it calls `procedure`; Resume() opens it. Null when the system refuses.
    /// Signals that are blocked at the caller do not pass on, nor does a real-time priority. [any]
    static std::shared_ptr<CThreadHandle> CreateSuspended(Procedure procedure, void* argument);
    explicit CThreadHandle(TPrivate) {}
    CThreadHandle(const CThreadHandle&) = delete;
    CThreadHandle& operator=(const CThreadHandle&) = delete;

    /// False once the thread has ended, also by force. [any]
    bool Resume() NK_EXCLUDES(control_);
    /// Returns when the thread stands still. False when it has ended, or does not react within about a second. Not for
    /// the thread itself. [any]
    bool Suspend() NK_EXCLUDES(control_);
    /// The thread's stack stays allocated, nothing is unwound, no destructor of it runs. True as well when the thread
    /// has not reacted within about a second: then it stands before its next instruction outside the kernel. False when
    /// it has ended. Not for the thread itself. [any]
    bool Terminate() NK_EXCLUDES(control_);

    /// A thread suspends itself in two steps, between which it lets its locks go: Resume() counts from the first on.
    void BeginOwnSuspension() NK_EXCLUDES(control_);
    void WaitUntilResumed() noexcept;
    /// Ends the calling thread as Terminate() does.
    [[noreturn]] static void ParkForEver() noexcept;

    /// Level 0..6, any other is taken as 3. Whether the system agreed. [any]
    bool SetPriority(int level) NK_EXCLUDES(control_);
    /// The name that debuggers show; the system keeps 15 bytes of it. [any]
    void SetName(const char* utf8) NK_EXCLUDES(control_);

private:
    struct TStart;
    enum EState : std::uint32_t {
        kRunning,  ///< goes on
        kAsked,    ///< the handler shall park unless it interrupted the library
        kTold,     ///< the handler shall park
        kRefused,  ///< it did not, as the library was interrupted
        kParked,   ///< stands still, also at the gate
    };

    static void* Trampoline(void* start);
    static void OnSignal(int signal, siginfo_t* info, void* context);
    void Answer(bool insideLibrary) noexcept;
    bool Park(bool withdraw) NK_REQUIRES(control_);
    bool AwaitAnswer(EState question, std::int64_t untilNs) noexcept;
    bool SendSignal() NK_REQUIRES(control_);
    void MarkEnded() NK_EXCLUDES(control_);

    // Futex words.
    std::atomic<std::uint32_t> state_{kParked};
    std::atomic<std::uint32_t> tid_{0};

    /// Held by a controlling thread while it needs the thread alive, and by the thread while it says that it ends.
    CCriticalSection control_;
    pthread_t thread_ NK_GUARDED_BY(control_){};
    bool ended_ NK_GUARDED_BY(control_) = false;
    bool terminated_ NK_GUARDED_BY(control_) = false;
};

}  // namespace NK::Platform
