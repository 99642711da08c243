// The operating system's sleep.
#pragma once

#include <atomic>
#include <cstdint>

namespace NK::Platform {

/// Sleeps at least `milliseconds`; a signal does not shorten it. 0 gives the processor away once. [any]
void Sleep(std::uint32_t milliseconds) noexcept;

/// As FutexWaitUntil(), and counts as sleeping. [any]
void SleepOnWord(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t untilNs) noexcept;

/// Whether the calling thread is inside Sleep() or SleepOnWord(), where it holds nothing of the C library. Safe in a
/// signal handler.
bool IsInsideSleep() noexcept;

/// Lets the calling thread's sleeps end as close to their time as the system can. Inherited by nobody.
void SetSmallestTimerSlack() noexcept;

}  // namespace NK::Platform
