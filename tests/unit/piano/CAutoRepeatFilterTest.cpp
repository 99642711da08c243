#include "piano/CAutoRepeatFilter.h"

#include <gtest/gtest.h>

namespace {
using NK::Piano::EKeyVerdict;
using CFilter = NK::Piano::CAutoRepeatFilter<int>;

constexpr std::uint32_t kZ = 52;
constexpr std::uint32_t kX = 53;

TEST(AutoRepeatFilter, PressAndLaterReleaseAreTheKeysOwn) {
    CFilter filter;
    EXPECT_EQ(filter.Press(kZ, 100, false), EKeyVerdict::kPlay);
    EXPECT_EQ(filter.Release(kZ, 200, false, 7), EKeyVerdict::kWait);
    EXPECT_TRUE(filter.IsWaiting());
    EXPECT_EQ(filter.TakeWaiting(), 7);
    EXPECT_FALSE(filter.IsWaiting());
    EXPECT_EQ(filter.TakeWaiting(), std::nullopt);
}

TEST(AutoRepeatFilter, UnflaggedReleaseAndPressWithOneTimeStampAreARepeat) {
    CFilter filter;
    filter.Press(kZ, 100, false);
    EXPECT_EQ(filter.Release(kZ, 600, false, 7), EKeyVerdict::kWait);
    EXPECT_EQ(filter.Press(kZ, 600, false), EKeyVerdict::kRepeat);
    EXPECT_FALSE(filter.IsWaiting()) << "the release is void";
}

TEST(AutoRepeatFilter, FlaggedEventsAreRepeats) {
    CFilter filter;
    EXPECT_EQ(filter.Release(kZ, 600, true, 7), EKeyVerdict::kRepeat);
    EXPECT_EQ(filter.Press(kZ, 600, true), EKeyVerdict::kRepeat);
    EXPECT_FALSE(filter.IsWaiting());
}

TEST(AutoRepeatFilter, FlaggedPressVoidsTheUnflaggedReleaseOfItsKey) {
    CFilter filter;
    filter.Release(kZ, 600, false, 7);
    EXPECT_EQ(filter.Press(kZ, 601, true), EKeyVerdict::kRepeat);
    EXPECT_FALSE(filter.IsWaiting());
}

TEST(AutoRepeatFilter, AnotherKeyWithTheSameTimeStampIsNoRepeat) {
    CFilter filter;
    filter.Release(kZ, 600, false, 7);
    EXPECT_EQ(filter.Press(kX, 600, false), EKeyVerdict::kPlay);
    EXPECT_TRUE(filter.IsWaiting()) << "the release is the caller's to carry out first";
}

TEST(AutoRepeatFilter, SameKeyPressedAgainLaterIsNoRepeat) {
    CFilter filter;
    filter.Release(kZ, 600, false, 7);
    EXPECT_EQ(filter.Press(kZ, 601, false), EKeyVerdict::kPlay);
    EXPECT_TRUE(filter.IsWaiting());
}

TEST(AutoRepeatFilter, UnknownTimeOrScanCodeGoesByTheFlagAlone) {
    CFilter filter;
    EXPECT_EQ(filter.Release(kZ, 0, false, 7), EKeyVerdict::kPlay);
    EXPECT_EQ(filter.Press(kZ, 0, false), EKeyVerdict::kPlay);
    EXPECT_EQ(filter.Release(0, 600, false, 7), EKeyVerdict::kPlay);
    EXPECT_EQ(filter.Press(0, 600, false), EKeyVerdict::kPlay);
    EXPECT_EQ(filter.Press(0, 0, true), EKeyVerdict::kRepeat);
}

}  // namespace
