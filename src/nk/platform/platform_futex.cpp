#include "nk/platform/platform_futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <climits>

namespace NK::Platform {

static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

namespace {
timespec ToTimespec(std::int64_t ns) noexcept {
    return {static_cast<time_t>(ns / 1'000'000'000), static_cast<long>(ns % 1'000'000'000)};
}
}  // namespace

void FutexWait(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t timeoutNs) noexcept {
    const timespec limit = ToTimespec(timeoutNs < 0 ? 0 : timeoutNs);
    syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, expected, timeoutNs < 0 ? nullptr : &limit, nullptr, 0);
}

void FutexWaitUntil(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t untilNs) noexcept {
    const timespec end = ToTimespec(untilNs < 0 ? 0 : untilNs);
    syscall(SYS_futex, &word, FUTEX_WAIT_BITSET_PRIVATE, expected, untilNs == INT64_MAX ? nullptr : &end, nullptr,
            FUTEX_BITSET_MATCH_ANY);
}

void FutexWakeAll(const std::atomic<std::uint32_t>& word) noexcept {
    syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

}  // namespace NK::Platform
