#include "nk/platform/platform_clock.h"

#include <time.h>

#include <array>

namespace NK::Platform {

namespace {

std::int64_t ReadNs(clockid_t clock) noexcept {
    timespec now{};
    clock_gettime(clock, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

std::int64_t ReadMs(clockid_t clock) noexcept {
    return ReadNs(clock) / 1'000'000;
}

}  // namespace

std::int64_t GetWallClockMs() noexcept {
    return ReadMs(CLOCK_REALTIME);
}

std::int64_t GetSteadyClockMs() noexcept {
    return ReadMs(CLOCK_MONOTONIC);
}

std::int64_t GetSteadyClockNs() noexcept {
    return ReadNs(CLOCK_MONOTONIC);
}

bool ToLocalTime(std::int64_t secondsSince1970, TLocalTime& local) noexcept {
    const time_t time = secondsSince1970;
    if (localtime_r(&time, &local.time) == nullptr) {
        return false;
    }
    local.secondsEastOfUtc = static_cast<std::int32_t>(local.time.tm_gmtoff);
    return true;
}

std::size_t FormatCTime(const TLocalTime& local, wchar_t* buffer, std::size_t size) noexcept {
    std::array<char, 80> text{};
    if (asctime_r(&local.time, text.data()) == nullptr) {
        return 0;
    }
    std::size_t length = 0;
    while (text[length] != '\0') {
        if (length + 1 >= size) {
            return 0;
        }
        buffer[length] = static_cast<wchar_t>(text[length]);
        ++length;
    }
    buffer[length] = L'\0';
    return length;
}

std::int16_t GetTimeZoneMinutesWest() noexcept {
    tzset();
    return static_cast<std::int16_t>(timezone / 60);
}

}  // namespace NK::Platform
