#include "nk/platform/platform_futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <climits>

namespace NK::Platform {

static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

void FutexWait(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t timeoutNs) noexcept {
    timespec limit{};
    if (timeoutNs >= 0) {
        limit.tv_sec = static_cast<time_t>(timeoutNs / 1'000'000'000);
        limit.tv_nsec = static_cast<long>(timeoutNs % 1'000'000'000);
    }
    syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, expected, timeoutNs < 0 ? nullptr : &limit, nullptr, 0);
}

void FutexWakeAll(const std::atomic<std::uint32_t>& word) noexcept {
    syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

}  // namespace NK::Platform
