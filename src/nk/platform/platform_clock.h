// The operating system's wall clock and local time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace NK::Platform {

/// Milliseconds since 1970-01-01 UTC, truncated. [any]
std::int64_t GetWallClockMs() noexcept;

/// Milliseconds of the system's monotonic clock, which stands still while the computer sleeps. [any]
std::int64_t GetSteadyClockMs() noexcept;

/// The same in nanoseconds. [any]
std::int64_t GetSteadyClockNs() noexcept;

/// A point of time in the user's time zone. [any]
struct TLocalTime {
    std::tm time{};
    std::int32_t secondsEastOfUtc = 0;  ///< daylight saving included
};
/// False when the calendar cannot hold it.
bool ToLocalTime(std::int64_t secondsSince1970, TLocalTime& local) noexcept;

/// Writes the text of ISO C's asctime(), line end included, whatever the locale; returns its length, 0 if `size` is too
/// small. [any]
std::size_t FormatCTime(const TLocalTime& local, wchar_t* buffer, std::size_t size) noexcept;

/// Minutes that the user's time zone lies west of UTC while daylight saving is off. [any]
std::int16_t GetTimeZoneMinutesWest() noexcept;

}  // namespace NK::Platform
