#include "nk/platform/platform_mutex.h"

#include <time.h>

#include <cerrno>

#include "nk/nk_exception.h"

namespace NK::Platform {

CRecursiveMutex::CRecursiveMutex() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    int result = pthread_mutex_init(&mutex_, &attributes);
    if (result != 0) {
        pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_NONE);
        result = pthread_mutex_init(&mutex_, &attributes);
    }
    pthread_mutexattr_destroy(&attributes);
    if (result != 0) {
        throw CException(L"Cannot create a mutex.");
    }
}

bool CRecursiveMutex::TryLockFor(std::uint32_t milliseconds) noexcept {
    const auto lockUntil = [&](clockid_t clock) {
        constexpr long kNsPerSecond = 1'000'000'000;
        timespec end{};
        clock_gettime(clock, &end);
        const std::int64_t ns = end.tv_nsec + std::int64_t{milliseconds} * 1'000'000;
        end.tv_sec += static_cast<time_t>(ns / kNsPerSecond);
        end.tv_nsec = static_cast<long>(ns % kNsPerSecond);
#ifdef __SANITIZE_THREAD__
        // ThreadSanitizer does not know the other call, nor that it has locked.
        return clock == CLOCK_REALTIME ? pthread_mutex_timedlock(&mutex_, &end) : EINVAL;
#else
        return pthread_mutex_clocklock(&mutex_, clock, &end);
#endif
    };
    const int result = lockUntil(CLOCK_MONOTONIC);
    // Kernels before 5.14 know for such a mutex only the clock that may be set.
    return result == 0 || (result == EINVAL && lockUntil(CLOCK_REALTIME) == 0);
}

CRecursiveMutex::~CRecursiveMutex() {
    pthread_mutex_destroy(&mutex_);
}

}  // namespace NK::Platform
