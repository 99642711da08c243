// The wall clock, calendar time, and how a time of day is written.
#pragma once

#include <cstdint>
#include <ctime>

namespace NK {

/// Seconds since 1970-01-01 UTC. [any]
std::int64_t CurrentTime();

/// The wall clock with its time zone.
struct TTimeB {
    std::int64_t time = 0;      ///< seconds since 1970-01-01 UTC
    std::uint16_t millitm = 0;  ///< 0..999
    std::int16_t timezone = 0;  ///< minutes west of UTC, daylight saving left out
    std::int16_t dstflag = 0;   ///< 1 while daylight saving is in force
};
/// [any]
void CurrentTimeB(TTimeB& buffer);

/// Seconds since 1970-01-01 UTC of a local time, or -1. Brings the fields of `local` into their ranges, as the C
/// library's mktime() does. [any]
std::int64_t MakeTime(std::tm& local);

/// A file's time as Windows counts it: 100 ns steps since 1601-01-01 UTC.
struct TFileTime {
    std::uint32_t lowDateTime = 0;
    std::uint32_t highDateTime = 0;
};
/// MakeTime() of the UTC fields of `fileTime`: they are read as local time. -1 when the highest bit is set. [any]
std::int64_t FileTimeToTime(const TFileTime& fileTime);

/// Wide characters that FormatTimeOfDay() needs, the terminator included.
constexpr std::uint32_t kTimeOfDaySize = 32;
/// Writes "hh:mm:ss.mmm" and returns `buffer`, which holds kTimeOfDaySize. The milliseconds are rounded; when they come
/// to 1000 the seconds alone take the carry, so that 59.9996 gives 00:00:60.000. [any]
wchar_t* FormatTimeOfDay(double seconds, wchar_t* buffer);

/// Seeds Random() from the wall clock. [any]
void SeedRandom();

}  // namespace NK
