// The framework's worker thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "nk/nk_critical_section.h"

namespace NK {

namespace Platform {
class CThreadHandle;
}

/// A worker thread with start, suspend, resume, cooperative stop with a time-out, forced end, priority levels, a name
/// and optional self-deletion. Owners call WaitForExit(-1) before they delete one, and start one once: a Start() made
/// again before the new thread has begun its body creates a second thread.
class CThread {
public:
    static constexpr int kLevelNormal = 3;
    static constexpr int kLevelHighest = 5;
    static constexpr int kLevelTimeCritical = 6;
    static constexpr int kNameSize = 32;  ///< wide characters, the terminator included

    /// Creates no thread when `deferStart` is set, else calls Start(). Levels 0..6; any other means normal (3).
    explicit CThread(bool deferStart = true, int level = kLevelNormal);
    /// Unless self-deletion is under way: a running thread is stopped with 10 s granted, then ended by force.
    virtual ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    /// False without a thread or after Stop(); true also when already suspended.
    virtual bool Suspend();
    /// Creates the thread, or resumes it if suspended. False after Stop() and during destruction.
    virtual bool Start();
    /// Start() if suspended, else whether the body runs.
    virtual bool Resume();
    /// Start() unless the body has finished; then false.
    virtual bool StartOnce();
    /// Sets the flag that the body polls; nothing else.
    virtual void RequestStop();
    /// Cooperative stop of up to `timeoutMs` (0 grants nothing), then the forced end. The object can never be started
    /// again; a second call returns false. Never throws.
    virtual bool Stop(std::uint32_t timeoutMs);

    /// At most 31 characters are kept.
    void SetName(const wchar_t* text);
    /// Levels 0 (idle) to 6 (time critical). Without `force` the level in force returns false and does nothing.
    /// Before the start it is stored and true; a refusal by the system returns false and harms nothing.
    bool SetPriority(int level, bool force = false);
    bool ReapplyPriority();
    /// Requests the stop, then polls every 10 ms; below 1 without limit. True once the body has ended.
    bool WaitForExit(std::int32_t timeoutMs);
    bool IsRunning() const { return running_.load(std::memory_order_acquire); }

protected:
    /// The body. Called without the lock.
    virtual void Run() = 0;

    bool IsStopRequested() const { return stopRequested_.load(std::memory_order_acquire); }
    /// For use inside Run(): sleeps in steps of at most `quantumMs`; false as soon as a stop request is seen.
    bool SleepInterruptible(std::uint32_t ms, std::uint32_t quantumMs);
    /// The object deletes itself when its body ends or it is ended by force. Set before Start().
    void SetDeleteOnExit(bool on);
    const wchar_t* GetName() const { return name_; }

private:
    static void ThreadProcedure(CThread* self);
    void WaitWhileRunning(std::int32_t timeoutMs);
    bool StopUnguarded(std::uint32_t timeoutMs);

    mutable CCriticalSection lock_{1, 100, 100};
    wchar_t name_[kNameSize];
    std::shared_ptr<Platform::CThreadHandle> handle_;
    int priority_;
    int requestedPriority_;
    std::uint32_t stopTimeoutMs_ = 10000;
    std::atomic<bool> running_{false};
    std::atomic<bool> stopRequested_{false};
    std::atomic<bool> finished_{false};
    std::atomic<bool> deleteOnExit_{false};
    std::atomic<bool> destroying_{false};
    bool suspended_ = true;
    std::atomic<bool> stopping_{false};
};

}  // namespace NK
