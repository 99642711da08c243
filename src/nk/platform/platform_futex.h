// Waiting on a word of memory; usable in signal handlers. [any]
#pragma once

#include <atomic>
#include <cstdint>

namespace NK::Platform {

/// Returns when woken, when `word` is not `expected`, after `timeoutNs` (below 0: no limit), or for no reason.
void FutexWait(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t timeoutNs) noexcept;
/// The same with an end on the clock of GetSteadyClockNs(); INT64_MAX means no end.
void FutexWaitUntil(const std::atomic<std::uint32_t>& word, std::uint32_t expected, std::int64_t untilNs) noexcept;
void FutexWakeAll(const std::atomic<std::uint32_t>& word) noexcept;

}  // namespace NK::Platform
