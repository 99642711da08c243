// The operating system's recursive mutex.
#pragma once

#include <pthread.h>

#include <cstdint>

namespace NK::Platform {

/// A recursive mutex with priority inheritance where the system has it: a thread that holds it runs at the priority of
/// the most urgent thread that waits for it. [any]
class CRecursiveMutex {
public:
    /// Throws NK::CException "Cannot create a mutex." when the system refuses.
    CRecursiveMutex();
    ~CRecursiveMutex();
    CRecursiveMutex(const CRecursiveMutex&) = delete;
    CRecursiveMutex& operator=(const CRecursiveMutex&) = delete;

    void Lock() noexcept { pthread_mutex_lock(&mutex_); }
    void Unlock() noexcept { pthread_mutex_unlock(&mutex_); }
    bool TryLock() noexcept { return pthread_mutex_trylock(&mutex_) == 0; }
    /// Waits at most so long.
    bool TryLockFor(std::uint32_t milliseconds) noexcept;

private:
    pthread_mutex_t mutex_;
};

}  // namespace NK::Platform
