// The framework's worker thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "nk/nk_critical_section.h"
#include "nk/nk_string.h"

namespace NK {

namespace Platform {
class CThreadHandle;
}

/// A worker thread with start, suspend, resume, cooperative stop with a time-out, forced end, priority levels, a name
/// and optional self-deletion. Owners call WaitForExit(-1) before they delete one, and start one once: a Start() made
/// again before the new thread has begun its body creates a second thread.
///
/// What the forced end cannot promise: nothing of the body is unwound, so a lock that it holds at that moment stays
/// locked and its stack stays allocated. Locks of the C library are let go first where this can be done within 100 ms.
/// The same holds for a lock held by a suspended thread, until it is resumed.
///
/// Operations are for [any] thread other than the object's own unless they say more.
class CThread {
public:
    static constexpr int kLevelNormal = 3;
    static constexpr int kLevelAboveNormal = 4;
    static constexpr int kLevelHighest = 5;
    static constexpr int kLevelTimeCritical = 6;
    static constexpr int kNameSize = 32;  ///< wide characters, the terminator included

    /// Creates no thread when `deferStart` is set, else calls Start(), so that the body may begin before the derived
    /// class is constructed. Levels 0..6; any other means normal (3).
    explicit CThread(bool deferStart = true, int level = kLevelNormal);
    /// Unless self-deletion is under way: a running thread is stopped with 10 s granted, then ended by force. On the
    /// object's own thread it does nothing of this: Run() goes on without the object.
    virtual ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    /// False without a thread or after Stop(); true also when already suspended. On the object's own thread it returns
    /// when another thread has resumed it.
    virtual bool Suspend();
    /// Creates the thread, or resumes it if suspended. False after Stop() and during destruction.
    virtual bool Start();
    /// Start() if suspended, else whether the body runs.
    virtual bool Resume();
    /// Start() unless the body has finished; then false.
    virtual bool StartOnce();
    /// Sets the flag that the body polls; nothing else. Cleared when a body begins. [any], its own thread included.
    virtual void RequestStop();
    /// Cooperative stop of up to `timeoutMs` (0 grants nothing), then the forced end. The object can never be started
    /// again; a second call returns false. Never throws. On the object's own thread it waits for nothing and does not
    /// return: the thread ends in it.
    virtual bool Stop(std::uint32_t timeoutMs);

    /// At most 31 characters are kept; a null pointer stands for an empty text.
    void SetName(const wchar_t* text);
    /// Levels 0 (idle) to 6 (time critical). Without `force` the level in force returns false and does nothing.
    /// Before the start it is stored and true; a refusal by the system returns false and harms nothing.
    /// May take about 100 ms, with the object's lock held. [any], its own thread included.
    bool SetPriority(int level, bool force = false);
    /// SetPriority() with the requested level if that is not the one in force, else false.
    bool ReapplyPriority();
    /// Gives the calling thread, whoever made it, a level as of SetPriority(). Whether the system agreed. Threads
    /// and programs that it starts afterwards inherit levels 0 to 4, unless it was a service that granted them.
    static bool SetCallersLevel(int level);
    /// Requests the stop, then polls every 10 ms; below 1 without limit. True once the body has ended. On the object's
    /// own thread it requests the stop and returns false at once.
    bool WaitForExit(std::int32_t timeoutMs);
    bool IsRunning() const { return running_.load(std::memory_order_acquire); }

protected:
    /// The body. Called without the lock. An exception that leaves it ends the process.
    virtual void Run() = 0;

    bool IsStopRequested() const { return stopRequested_.load(std::memory_order_acquire); }
    /// For use inside Run(): sleeps in steps of at most `quantumMs`; false as soon as a stop request is seen.
    bool SleepInterruptible(std::uint32_t ms, std::uint32_t quantumMs);
    /// For use inside Run(): whether something that the body called has deleted this object. Then Run() returns without
    /// touching it.
    static bool HasDeletedItself();
    /// The object deletes itself when its body ends or it is ended by force; if another thread is inside Stop() or
    /// WaitForExit() then, when that call returns. Set before Start(). Only for an object made by `new`.
    void SetDeleteOnExit(bool on);
    CString GetName() const;

    std::uint32_t stopTimeoutMs_ = 10000;  ///< granted by the destructor

private:
    static void ThreadProcedure(void* self);
    bool IsOwnThread() const;
    void WaitWhileStarting();
    void WaitWhileRunning(std::int32_t timeoutMs);
    bool StopUnguarded(std::uint32_t timeoutMs);
    void Enter();
    void Leave();

    mutable CCriticalSection lock_{1, 100, 100};
    wchar_t name_[kNameSize] NK_GUARDED_BY(lock_) = L"[UnnamedThread]";
    std::shared_ptr<Platform::CThreadHandle> handle_ NK_GUARDED_BY(lock_);
    int priority_ NK_GUARDED_BY(lock_);
    int requestedPriority_ NK_GUARDED_BY(lock_);
    std::atomic<bool> running_{false};
    std::atomic<bool> stopRequested_{false};
    std::atomic<bool> finished_{false};
    std::atomic<bool> deleteOnExit_{false};
    std::atomic<bool> destroying_{false};
    bool suspended_ NK_GUARDED_BY(lock_) = true;
    std::atomic<bool> stopping_{false};
    /// Threads inside Stop() or WaitForExit(); the last one deletes the object if that has come due.
    std::uint32_t waiters_ NK_GUARDED_BY(lock_) = 0;
    bool deletionDue_ NK_GUARDED_BY(lock_) = false;
};

}  // namespace NK
