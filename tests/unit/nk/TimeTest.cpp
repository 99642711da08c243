#include "nk/nk_time.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

#include "nk/nk_random.h"
#include "nk/nk_time_source.h"

namespace {

std::wstring Format(double seconds) {
    wchar_t buffer[NK::kTimeOfDaySize];
    wchar_t* const result = NK::FormatTimeOfDay(seconds, buffer);
    EXPECT_EQ(result, buffer);
    return result;
}

TEST(FormatTimeOfDay, WritesHoursMinutesSecondsMilliseconds) {
    EXPECT_EQ(Format(3661.5), L"01:01:01.500");
    EXPECT_EQ(Format(0.0), L"00:00:00.000");
    EXPECT_EQ(Format(86399.25), L"23:59:59.250");
}

TEST(FormatTimeOfDay, CarriesRoundedMillisecondsIntoTheSecondsOnly) {
    EXPECT_EQ(Format(59.9996), L"00:00:60.000");
    EXPECT_EQ(Format(1.9994), L"00:00:01.999");
    EXPECT_EQ(Format(1.9996), L"00:00:02.000");
}

TEST(FormatTimeOfDay, RoundsMillisecondsHalfUp) {
    EXPECT_EQ(Format(0.0625), L"00:00:00.063");
    EXPECT_EQ(Format(0.0004), L"00:00:00.000");
}

TEST(FormatTimeOfDay, FitsItsBufferForAnyNumber) {
    EXPECT_EQ(Format(360000.0), L"100:00:00.000");
    EXPECT_EQ(Format(1e300), L"596523:14:07.000");
    EXPECT_FALSE(Format(-1e300).empty());
    EXPECT_FALSE(Format(std::numeric_limits<double>::quiet_NaN()).empty());
}

TEST(CurrentTime, AgreesWithTheWallClock) {
    const std::int64_t before = NK::GetSystemNowNs() / 1'000'000'000;
    const std::int64_t now = NK::CurrentTime();
    const std::int64_t after = NK::GetSystemNowNs() / 1'000'000'000;
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

class TimeZone : public testing::Test {
protected:
    ~TimeZone() override { Use("UTC"); }
    static void Use(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
};

TEST_F(TimeZone, CurrentTimeBTellsTheZoneWithoutDaylightSaving) {
    NK::TTimeB buffer;
    Use("AAA5BBB,J1/0,J365/23");
    NK::CurrentTimeB(buffer);
    EXPECT_EQ(buffer.timezone, 300);
    EXPECT_EQ(buffer.dstflag, 1);
    EXPECT_LT(buffer.millitm, 1000);
    EXPECT_GT(buffer.time, 1'700'000'000);
    Use("UTC");
    NK::CurrentTimeB(buffer);
    EXPECT_EQ(buffer.timezone, 0);
    EXPECT_EQ(buffer.dstflag, 0);
}

TEST_F(TimeZone, MakeTimeReadsLocalTimeAndBringsFieldsIntoTheirRanges) {
    Use("AAA5");
    std::tm fields{};
    fields.tm_year = 70;
    fields.tm_mday = 1;
    fields.tm_min = 90;
    EXPECT_EQ(NK::MakeTime(fields), 5 * 3600 + 90 * 60);
    EXPECT_EQ(fields.tm_hour, 1);
    EXPECT_EQ(fields.tm_min, 30);
}

NK::TFileTime FileTime(std::uint64_t value) {
    return {static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)};
}

constexpr std::uint64_t kUnixEpoch = 116'444'736'000'000'000;  // 1970-01-01 in 100 ns since 1601

TEST_F(TimeZone, FileTimeToTimeDropsTheFractionOfASecond) {
    Use("UTC");
    EXPECT_EQ(NK::FileTimeToTime(FileTime(kUnixEpoch)), 0);
    EXPECT_EQ(NK::FileTimeToTime(FileTime(kUnixEpoch + 951'826'554ULL * 10'000'000 + 9'999'999)), 951'826'554)
        << "2000-02-29 12:15:54";
}

TEST_F(TimeZone, FileTimeToTimeReadsTheUtcFieldsAsLocalTime) {
    Use("AAA5");
    EXPECT_EQ(NK::FileTimeToTime(FileTime(kUnixEpoch)), 5 * 3600);
}

TEST_F(TimeZone, FileTimeToTimeRefusesWhatCannotBeConverted) {
    Use("UTC");
    EXPECT_EQ(NK::FileTimeToTime(FileTime(0x8000'0000'0000'0000U)), -1);
    EXPECT_GT(NK::FileTimeToTime(FileTime(0x7FFF'FFFF'FFFF'FFFFU)), 0);
}

TEST(SeedRandom, StartsASequenceWithinTheRange) {
    NK::SeedRandom();
    int largest = 0;
    for (int i = 0; i < 1000; ++i) {
        const int value = NK::Random();
        ASSERT_GE(value, 0);
        ASSERT_LE(value, NK::kRandomMax);
        largest = std::max(largest, value);
    }
    EXPECT_GT(largest, NK::kRandomMax / 2);
}

}  // namespace
