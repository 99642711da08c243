// The framework's lock. [any]
#pragma once

#include <cstdint>
#include <memory>

#include "nk/nk_thread_annotations.h"

namespace NK::Platform {
class CRecursiveMutex;
}

/// A recursive lock with priority inheritance and a bounded, polling try-lock.
class NK_CAPABILITY("mutex") CCriticalSection {
public:
    /// Milliseconds slept between two attempts of TryLock(), the number of attempts, and a reserve value that is kept
    /// and read by nothing. Throws NK::CException "Bad critical section initialization parameters." if any is 0.
    explicit CCriticalSection(std::uint32_t trySleepMs = 1, std::uint32_t tryAttempts = 100,
                              std::uint32_t reserve = 100);
    ~CCriticalSection();
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Lock() NK_ACQUIRE();
    void Unlock() NK_RELEASE();
    /// Gives up after `tryAttempts` attempts with `trySleepMs` slept after each.
    bool TryLock() NK_TRY_ACQUIRE(true);
    /// Waits for the lock, `milliseconds` at most.
    bool TryLockFor(std::uint32_t milliseconds) NK_TRY_ACQUIRE(true);

private:
    std::unique_ptr<NK::Platform::CRecursiveMutex> section_;
    std::uint32_t tryAttempts_;
    std::uint32_t trySleepMs_;
    [[maybe_unused]] std::uint32_t reserve_;
};

/// Holds a CCriticalSection for a scope.
class NK_SCOPED_CAPABILITY CLockGuard {
public:
    explicit CLockGuard(CCriticalSection& section) NK_ACQUIRE(section) : section_(section) { section_.Lock(); }
    ~CLockGuard() NK_RELEASE() { section_.Unlock(); }
    CLockGuard(const CLockGuard&) = delete;
    CLockGuard& operator=(const CLockGuard&) = delete;

private:
    CCriticalSection& section_;
};

namespace NK {
using ::CCriticalSection;
using ::CLockGuard;

/// The one framework-wide lock.
void GlobalLock();
void GlobalUnlock();

/// Holds the framework-wide lock for a scope.
class CGlobalLockGuard {
public:
    CGlobalLockGuard() { GlobalLock(); }
    ~CGlobalLockGuard() { GlobalUnlock(); }
    CGlobalLockGuard(const CGlobalLockGuard&) = delete;
    CGlobalLockGuard& operator=(const CGlobalLockGuard&) = delete;
};
}  // namespace NK
