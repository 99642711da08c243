#include "piano/CRolloverTest.h"

#include <gtest/gtest.h>

#include "piano/PCKeyPlaces.h"

namespace {
using NK::Piano::CRolloverTest;

const std::uint32_t kZ = NK::Piano::GetScanCodeOfPlace('z');
const std::uint32_t kC = NK::Piano::GetScanCodeOfPlace('c');
const std::uint32_t kB = NK::Piano::GetScanCodeOfPlace('b');
const std::uint32_t kX = NK::Piano::GetScanCodeOfPlace('x');

class Rollover : public testing::Test {
protected:
    void Press(std::uint32_t key, std::uint64_t afterMs = 100) { test.Press(key, now += afterMs); }
    void Release(std::uint32_t key, std::uint64_t afterMs = 100) { test.Release(key, now += afterMs); }

    CRolloverTest test;
    std::uint64_t now = 5000;
};

TEST_F(Rollover, BeginsWithACMajorChord) {
    EXPECT_EQ(test.GetChord(), (CRolloverTest::CChord{kZ, kC, kB}));
    EXPECT_EQ(test.GetNumber(), 0U);
    EXPECT_EQ(test.GetChordCount(), 12U);
}

TEST_F(Rollover, AChordThatIsReportedWholeIsPassedWhenAllKeysAreUp) {
    Press(kZ);
    Press(kC);
    EXPECT_TRUE(test.CanBeDropped());
    Press(kB);
    EXPECT_TRUE(test.IsWholeChordDown());
    EXPECT_FALSE(test.CanBeDropped());
    EXPECT_EQ(test.GetDownCount(), 3U);
    Release(kC);
    Release(kZ);
    EXPECT_EQ(test.GetNumber(), 0U);
    Release(kB);
    EXPECT_EQ(test.GetNumber(), 1U);
    EXPECT_TRUE(test.GetDropped().empty());
    EXPECT_EQ(test.GetMostDown(), 3U);
}

TEST_F(Rollover, AKeyThatComesAsAnotherGoesWasDropped) {
    Press(kZ);
    Press(kC);
    // B is down and not reported, until Z is let go.
    Release(kZ);
    Press(kB, 0);
    EXPECT_EQ(test.GetDropped(), (std::vector{CRolloverTest::TDropped{{kZ, kC, kB}, kB}}));
    Release(kC);
    Release(kB);
    EXPECT_EQ(test.GetNumber(), 1U);
    EXPECT_EQ(test.GetDropped().size(), 1U);
}

TEST_F(Rollover, InOneReportThePressMayStandBeforeTheRelease) {
    Press(kZ);
    Press(kC);
    Press(kB);
    Release(kZ, 0);
    EXPECT_EQ(test.GetDropped(), (std::vector{CRolloverTest::TDropped{{kZ, kC, kB}, kB}}));
}

TEST_F(Rollover, AKeyThatComesLaterWasNot) {
    Press(kZ);
    Press(kC);
    Release(kZ);
    Press(kB, CRolloverTest::kReportMs + 1);
    EXPECT_TRUE(test.GetDropped().empty());
    EXPECT_EQ(test.GetNumber(), 0U) << "it is tried again";
    Press(kZ);
    Release(kB);
    EXPECT_TRUE(test.GetDropped().empty());
}

TEST_F(Rollover, TimesThatAreNotKnownTellNothing) {
    for (const std::uint32_t key : {kZ, kC}) {
        test.Press(key, 0);
    }
    test.Release(kZ, 0);
    test.Press(kB, 0);
    test.Press(kZ, 0);
    test.Release(kC, 0);
    EXPECT_TRUE(test.GetDropped().empty());
}

TEST_F(Rollover, TheUserMayTellThatTheThirdStaysDark) {
    test.TellDropped();
    Press(kZ);
    test.TellDropped();
    EXPECT_TRUE(test.GetDropped().empty()) << "one key is down only";
    Press(kB);
    test.TellDropped();
    test.TellDropped();
    EXPECT_EQ(test.GetDropped(), (std::vector{CRolloverTest::TDropped{{kZ, kC, kB}, kC}}));
    Release(kZ);
    Press(kC, 0);
    Release(kC);
    Release(kB);
    EXPECT_EQ(test.GetDropped().size(), 1U) << "once a chord";
    EXPECT_EQ(test.GetNumber(), 1U);
}

TEST_F(Rollover, KeysOutsideTheChordOnlyCount) {
    Press(kX);
    Press(kZ);
    Release(kX);
    Press(kC, 0);
    EXPECT_TRUE(test.GetDropped().empty());
    EXPECT_TRUE(test.IsDown(kZ));
    EXPECT_FALSE(test.IsDown(kX));
    EXPECT_EQ(test.GetMostDown(), 2U);
}

TEST_F(Rollover, RepeatsOfAHeldKeyTellNothing) {
    Press(kZ);
    Press(kC);
    for (int repeat = 0; repeat < 10; ++repeat) {
        Release(kC, 30);
        Press(kC, 0);
        Press(kC, 0);
    }
    EXPECT_TRUE(test.GetDropped().empty());
    EXPECT_EQ(test.GetDownCount(), 2U);
    EXPECT_EQ(test.GetNumber(), 0U);
}

TEST_F(Rollover, WhatIsLostWithTheFocusIsTriedAgain) {
    Press(kZ);
    Press(kC);
    test.ReleaseAll();
    EXPECT_EQ(test.GetDownCount(), 0U);
    EXPECT_EQ(test.GetNumber(), 0U);
    Release(kZ);
    EXPECT_EQ(test.GetNumber(), 0U);
}

TEST_F(Rollover, EndsAfterTheLastChordAndMayBeStartedAgain) {
    while (!test.IsFinished()) {
        const CRolloverTest::CChord chord = test.GetChord();
        for (const std::uint32_t key : chord) {
            ASSERT_NE(key, 0U);
            Press(key);
        }
        for (const std::uint32_t key : chord) {
            Release(key);
        }
    }
    EXPECT_EQ(test.GetNumber(), 12U);
    EXPECT_EQ(test.GetChord(), CRolloverTest::CChord{});
    Press(kZ);
    Release(kZ);
    EXPECT_TRUE(test.IsFinished());
    EXPECT_FALSE(test.CanBeDropped());
    test.StartAgain();
    EXPECT_EQ(test.GetNumber(), 0U);
    EXPECT_EQ(test.GetMostDown(), 0U);
}

}  // namespace
