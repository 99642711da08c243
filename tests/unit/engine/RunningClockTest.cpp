// The musical clock as time goes by.
#include "engine/RunningClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using Kivora::RunningClock;
using testing::ElementsAre;

constexpr std::int64_t kStart = 1'000'000;
constexpr std::int64_t kLongestRun = std::int64_t{24} * 24 * 60 * 60 * 1000;

std::vector<int> Position(const NK::MIDI::MusicalClock& clock) {
    return {clock.bar, clock.beat, clock.offset};
}

class TheRunningClock : public testing::Test {
protected:
    TheRunningClock() { clock.Restart(kStart); }
    std::vector<int> PositionAfter(std::int64_t elapsed) {
        clock.Advance(kStart + elapsed);
        return Position(clock.Get());
    }

    RunningClock clock;
};

TEST_F(TheRunningClock, FollowsTheWallClockAtItsTempo) {
    EXPECT_EQ(clock.GetTempo(), 120);
    EXPECT_THAT(PositionAfter(0), ElementsAre(0, 0, 0));
    EXPECT_THAT(PositionAfter(2499), ElementsAre(1, 0, 499));
    EXPECT_TRUE(clock.SetTempo(60));
    EXPECT_THAT(PositionAfter(2499), ElementsAre(0, 2, 499));
}

TEST_F(TheRunningClock, TheTempoIsClampedAndSettingTheSameIsTold) {
    EXPECT_FALSE(clock.SetTempo(120));
    EXPECT_TRUE(clock.SetTempo(1000));
    EXPECT_EQ(clock.GetTempo(), RunningClock::kMaxTempo);
    EXPECT_EQ(clock.Get().tempo, 220.0);
    EXPECT_FALSE(clock.SetTempo(221));
    EXPECT_TRUE(clock.SetTempo(-1));
    EXPECT_EQ(clock.GetTempo(), RunningClock::kMinTempo);
}

TEST_F(TheRunningClock, ATempoInTheBarKeepsThePlace) {
    PositionAfter(750);  // a beat and a half
    EXPECT_TRUE(clock.SetTempoInBar(60, kStart + 750));
    EXPECT_THAT(Position(clock.Get()), ElementsAre(0, 1, 500));
    EXPECT_THAT(PositionAfter(1250), ElementsAre(0, 2, 0));
    EXPECT_FALSE(clock.SetTempoInBar(60, kStart + 1250));
}

TEST_F(TheRunningClock, ManyChangesInTheBarDriftByNoMillisecond) {
    // To and fro at one moment: what rounding has taken comes back.
    PositionAfter(1234);
    for (int i = 0; i < 1000; ++i) {
        clock.SetTempoInBar(121 + i % 97, kStart + 1234);
    }
    clock.SetTempoInBar(120, kStart + 1234);
    const NK::MIDI::MusicalClock now = clock.Get();
    EXPECT_NEAR(now.beat * now.BeatLength() + now.offset, 1234.0, 1.0);
}

TEST_F(TheRunningClock, AnotherNumberOfBeatsIsTold) {
    EXPECT_FALSE(clock.SetBeatsPerBar(4));
    EXPECT_TRUE(clock.SetBeatsPerBar(3));
    EXPECT_THAT(PositionAfter(1500), ElementsAre(1, 0, 0));
}

TEST_F(TheRunningClock, GoingBackIsToldToWhoFollowsIt) {
    EXPECT_FALSE(clock.Advance(kStart + 5000));
    EXPECT_TRUE(clock.Advance(kStart + 700));
    EXPECT_THAT(Position(clock.Get()), ElementsAre(0, 1, 200));
    EXPECT_TRUE(clock.Advance(kStart - 5000)) << "before it began: it begins there";
    EXPECT_THAT(Position(clock.Get()), ElementsAre(0, 0, 0));
    EXPECT_FALSE(clock.Advance(kStart - 4400));
    EXPECT_THAT(Position(clock.Get()), ElementsAre(0, 1, 100));
}

TEST_F(TheRunningClock, AnOverrunSaysHowLongItWouldHaveRun) {
    EXPECT_FALSE(clock.FindOverrun(kStart + kLongestRun));
    EXPECT_EQ(clock.FindOverrun(kStart + kLongestRun + 1), 0);
    EXPECT_EQ(clock.FindOverrun(kStart + kLongestRun + 751), 750);
    const std::int64_t now = kStart + kLongestRun + 751;
    const std::vector<int> shown = Position(clock.GetAt(now));
    EXPECT_THAT(shown, ElementsAre(0, 1, 250));
    clock.Restart(now);
    clock.RunFor(750);
    clock.Advance(now);
    EXPECT_EQ(Position(clock.Get()), shown);
}

TEST_F(TheRunningClock, LookingAtAMomentMovesNothing) {
    PositionAfter(700);
    EXPECT_THAT(Position(clock.GetAt(kStart + 2499)), ElementsAre(1, 0, 499));
    EXPECT_THAT(Position(clock.GetAt(kStart - 1)), ElementsAre(0, 0, 0));
    EXPECT_THAT(Position(clock.Get()), ElementsAre(0, 1, 200));
}

TEST_F(TheRunningClock, WhatBeginsIsToldOnce) {
    const auto begun = [this] {
        const RunningClock::Begun taken = clock.TakeBegun();
        return std::vector{taken.bar, taken.beat};
    };
    EXPECT_THAT(begun(), ElementsAre(true, true)) << "the first bar";
    EXPECT_THAT(begun(), ElementsAre(false, false));
    PositionAfter(500);
    EXPECT_THAT(begun(), ElementsAre(false, true));
    PositionAfter(2000);
    EXPECT_THAT(begun(), ElementsAre(true, true));
    clock.Restart(kStart + 2000);
    EXPECT_THAT(begun(), ElementsAre(true, true));
}

}  // namespace
