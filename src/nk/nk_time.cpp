#include "nk/nk_time.h"

#include <chrono>
#include <cmath>
#include <cwchar>
#include <limits>

#include "nk/nk_random.h"
#include "nk/platform/platform_clock.h"

namespace NK {

std::int64_t CurrentTime() {
    return Platform::GetWallClockMs() / 1000;
}

void CurrentTimeB(TTimeB& buffer) {
    const std::int64_t nowMs = Platform::GetWallClockMs();
    buffer.time = nowMs / 1000;
    buffer.millitm = static_cast<std::uint16_t>(nowMs % 1000);
    buffer.timezone = Platform::GetTimeZoneMinutesWest();
    Platform::TLocalTime local;
    buffer.dstflag = Platform::ToLocalTime(buffer.time, local) && local.time.tm_isdst > 0 ? 1 : 0;
}

std::int64_t MakeTime(std::tm& local) {
    return std::mktime(&local);
}

std::int64_t FileTimeToTime(const TFileTime& fileTime) {
    using namespace std::chrono;
    using CFileTicks = duration<std::int64_t, std::ratio<1, 10'000'000>>;
    const std::uint64_t raw = (std::uint64_t{fileTime.highDateTime} << 32) | fileTime.lowDateTime;
    if (raw > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        return -1;
    }
    const auto sinceEpoch = floor<seconds>(CFileTicks(static_cast<std::int64_t>(raw)));
    const auto wholeDays = floor<days>(sinceEpoch);
    constexpr sys_days kFirstDay = sys_days(year(1601) / January / 1);
    const year_month_day date(kFirstDay + wholeDays);
    const hh_mm_ss clock(sinceEpoch - wholeDays);
    std::tm fields{};
    fields.tm_year = static_cast<int>(date.year()) - 1900;
    fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    fields.tm_hour = static_cast<int>(clock.hours().count());
    fields.tm_min = static_cast<int>(clock.minutes().count());
    fields.tm_sec = static_cast<int>(clock.seconds().count());
    fields.tm_isdst = -1;
    return MakeTime(fields);
}

wchar_t* FormatTimeOfDay(double seconds, wchar_t* buffer) {
    constexpr double kLimit = std::numeric_limits<std::int32_t>::max();
    const double inRange = seconds > kLimit ? kLimit : seconds > -kLimit ? seconds : -kLimit;
    const int whole = static_cast<int>(inRange);
    int milliseconds = static_cast<int>(std::trunc((inRange - whole) * 1000.0 + 0.5));
    int second = whole % 60;
    if (milliseconds >= 1000) {
        milliseconds -= 1000;
        ++second;
    }
    std::swprintf(buffer, kTimeOfDaySize, L"%02d:%02d:%02d.%03d", whole / 3600, whole % 3600 / 60, second,
                  milliseconds);
    return buffer;
}

void SeedRandom() {
    TTimeB now;
    CurrentTimeB(now);
    const auto fraction = static_cast<std::uint32_t>(now.millitm * 0.001 * 3.2767e7);
    SeedRandomGenerator(static_cast<std::uint32_t>(CurrentTime()) ^ fraction);
}

}  // namespace NK
