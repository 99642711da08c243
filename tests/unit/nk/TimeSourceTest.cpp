#include "nk/nk_time_source.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "nk/nk_exception.h"

namespace {

std::int64_t fakeNowNs = 0;
std::int64_t FakeNow() {
    return fakeNowNs;
}

constexpr std::int64_t kSecondNs = 1'000'000'000;

TEST(SystemNow, IsAWholeNumberOfMilliseconds) {
    const std::int64_t now = NK::GetSystemNowNs();
    EXPECT_EQ(now % 1'000'000, 0);
    EXPECT_GT(now, 1'700'000'000 * kSecondNs);
}

TEST(SysTimeSource, StartsAtZeroAndCountsFromTheLastReset) {
    fakeNowNs = 5 * kSecondNs;
    NK::CSysTimeSource source(&FakeNow);
    EXPECT_EQ(source.GetTimeNs(), 0);
    fakeNowNs += 1'234'000'000;
    EXPECT_EQ(source.GetTimeNs(), 1'234'000'000);
    EXPECT_EQ(source.GetTimeMs(), 1234);
    source.Reset();
    EXPECT_EQ(source.GetTimeNs(), 0);
}

TEST(SysTimeSource, FollowsAClockThatIsSetBack) {
    fakeNowNs = 5 * kSecondNs;
    NK::CSysTimeSource source(&FakeNow);
    fakeNowNs -= kSecondNs + 999'999;
    EXPECT_EQ(source.GetTimeNs(), -kSecondNs - 999'999);
    EXPECT_EQ(source.GetTimeMs(), -1000) << "truncated toward zero";
}

TEST(SysTimeSource, MovesWithTheSystemsClock) {
    NK::CSysTimeSource source;
    EXPECT_GE(source.GetTimeNs(), 0);
    EXPECT_LT(source.GetTimeNs(), 3600 * kSecondNs);
}

TEST(TimeSource, ConvertsToFramesAndScaledUnits) {
    fakeNowNs = 0;
    NK::CSysTimeSource source(&FakeNow);
    fakeNowNs = 2 * kSecondNs;
    EXPECT_DOUBLE_EQ(source.GetFrameRate(), 44100.0);
    EXPECT_DOUBLE_EQ(source.GetTimeFrames(), 88200.0);
    EXPECT_DOUBLE_EQ(source.GetTimeScaled(1e-9), 2.0);
    source.SetFrameRate(1000.0);
    EXPECT_DOUBLE_EQ(source.GetTimeFrames(), 2000.0);
}

template <class CSource>
void ExpectRefused(CSource& source, double rate) {
    try {
        source.SetFrameRate(rate);
        ADD_FAILURE() << "accepted " << rate;
    } catch (const NK::CException& exception) {
        EXPECT_STREQ(exception.what(), "Non-positive frame rate.");
    }
}

TEST(TimeSource, RefusesARateThatIsNotPositiveButNotANumberPasses) {
    NK::CSysTimeSource source(&FakeNow);
    ExpectRefused(source, 0.0);
    ExpectRefused(source, -1.0);
    EXPECT_DOUBLE_EQ(source.GetFrameRate(), 44100.0);
    EXPECT_NO_THROW(source.SetFrameRate(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(std::isnan(source.GetFrameRate()));
}

TEST(WorldClockSource, IsTheWallClock) {
    fakeNowNs = 1'500'000'000'123'000'000;
    NK::CWorldClockSource source(&FakeNow);
    EXPECT_EQ(source.GetTimeNs(), 1'500'000'000'123'000'000);
    EXPECT_EQ(source.GetTimeMs(), 1'500'000'000'123);
    source.Reset();
    EXPECT_EQ(source.GetTimeMs(), 1'500'000'000'123);
}

TEST(WorldClockSource, AcceptsItsOwnFrameRateAndNoOther) {
    NK::CWorldClockSource& source = NK::CWorldClockSource::Instance();
    EXPECT_NO_THROW(source.SetFrameRate(44100.0));
    for (const double rate : {48000.0, 0.0, std::numeric_limits<double>::quiet_NaN()}) {
        try {
            source.SetFrameRate(rate);
            ADD_FAILURE() << "accepted " << rate;
        } catch (const NK::CCoderException& exception) {
            EXPECT_STREQ(exception.what(), "Cannot change frame rate of World Clock.");
        }
    }
    EXPECT_DOUBLE_EQ(source.GetFrameRate(), 44100.0);
}

TEST(WorldClockSource, HasOneSharedInstance) {
    EXPECT_EQ(&NK::CWorldClockSource::Instance(), &NK::CWorldClockSource::Instance());
    EXPECT_GT(NK::CWorldClockSource::Instance().GetTimeNs(), 1'700'000'000 * kSecondNs);
}

TEST(FrameCounterTimeSource, CountsTheFramesThatItsOwnerWrites) {
    NK::CFrameCounterTimeSource source(44100.0);
    EXPECT_EQ(source.GetTimeNs(), 0);
    source.frames = 44100;
    EXPECT_EQ(source.GetTimeNs(), kSecondNs);
    source.frames = 1;
    EXPECT_EQ(source.GetTimeNs(), 22676) << "22675.74 ns, rounded half up";
    source.Reset();
    EXPECT_EQ(source.frames, 0U);
    EXPECT_EQ(source.GetTimeNs(), 0);
}

TEST(FrameCounterTimeSource, ReckonsTheOldFramesOnceMoreAtANewRate) {
    NK::CFrameCounterTimeSource source(1000.0);
    source.frames = 500;
    source.SetFrameRate(2000.0);
    EXPECT_EQ(source.frames, 500U);
    EXPECT_EQ(source.GetTimeNs(), 500'000'000 + 250'000'000);
    source.frames = 0;
    EXPECT_EQ(source.GetTimeNs(), 500'000'000);
    source.Reset();
    EXPECT_EQ(source.GetTimeNs(), 0);
}

TEST(FrameCounterTimeSource, CarriesTheTimeOverEvenWhenItRefusesTheRate) {
    NK::CFrameCounterTimeSource source(1000.0);
    source.frames = 500;
    ExpectRefused(source, 0.0);
    EXPECT_EQ(source.GetTimeNs(), 1'000'000'000);
    EXPECT_DOUBLE_EQ(source.GetFrameRate(), 1000.0);
}

TEST(FrameCounterTimeSource, RefusesToBeMadeWithoutAPositiveRate) {
    EXPECT_THROW(NK::CFrameCounterTimeSource(0.0), NK::CException);
    EXPECT_THROW(NK::CFrameCounterTimeSource(-44100.0), NK::CException);
}

TEST(FrameCounterTimeSource, StaysDefinedBeyondTheRangeOfItsTime) {
    NK::CFrameCounterTimeSource source(1.0);
    source.frames = std::numeric_limits<std::uint64_t>::max();
    EXPECT_GT(source.GetTimeNs(), 1'000'000'000'000'000'000);
}

}  // namespace
