// From a key of the X server to the bytes that reach the MIDI library.
#include <gmock/gmock.h>

#include "e2e/InstrumentProcess.h"

using testing::ElementsAre;

namespace {

class Keys : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(instrument.Start()); }
    void TearDown() override { EXPECT_EQ(instrument.Close(), 0); }
    InstrumentProcess instrument;
};

TEST_F(Keys, ZPlaysMiddleCAtTheNormalLevel) {
    ASSERT_TRUE(instrument.Xdotool({"key", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(2));
    EXPECT_THAT(instrument.GetNoteMessages(), ElementsAre("90 3C 50", "80 3C 00"));
}

TEST_F(Keys, ShiftPlaysAtTheHighLevelAndCtrlAtTheLowOne) {
    ASSERT_TRUE(instrument.Xdotool({"keydown", "shift", "keydown", "z", "keyup", "z", "keyup", "shift"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(2));
    ASSERT_TRUE(instrument.Xdotool({"keydown", "ctrl", "keydown", "z", "keyup", "z", "keyup", "ctrl"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_THAT(instrument.GetNoteMessages(), ElementsAre("90 3C 7F", "80 3C 00", "90 3C 28", "80 3C 00"));
}

TEST_F(Keys, AKeyHeldWithAutoRepeatPlaysOnce) {
    // The X server repeats a held key by itself after its delay; the hold is long enough for dozens of repeats.
    ASSERT_TRUE(instrument.Xdotool({"keydown", "z", "sleep", "3", "keyup", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(2));
    ASSERT_TRUE(instrument.Xdotool({"key", "x"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_THAT(instrument.GetNoteMessages(), ElementsAre("90 3C 50", "80 3C 00", "90 3E 50", "80 3E 00"));
}

/// Repeats a second.
class KeysAtRates : public Keys, public testing::WithParamInterface<const char*> {};

TEST_P(KeysAtRates, AHeldKeyPlaysOnceAndItsReleaseEndsIt) {
    ASSERT_TRUE(instrument.RunOnDisplay("xset", {"r", "rate", "200", GetParam()}).isEmpty());
    ASSERT_TRUE(instrument.Xdotool({"keydown", "z", "sleep", "3", "keyup", "z", "keydown", "z", "keyup", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_THAT(instrument.GetNoteMessages(), ElementsAre("90 3C 50", "80 3C 00", "90 3C 50", "80 3C 00"));
}

INSTANTIATE_TEST_SUITE_P(Each, KeysAtRates, testing::Values("5", "25", "100"));

TEST_F(Keys, AKeyStruckAgainRightAfterItsReleasePlaysEachTime) {
    constexpr std::uint8_t kScanX = 53;
    for (std::size_t count = 0; count < 400; count += 2) {  // some of them within the millisecond of the release
        instrument.MoveKey(kScanX, true);
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 1)) << count;
        instrument.MoveKey(kScanX, false);
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 2)) << count;
    }
    EXPECT_EQ(instrument.GetNoteMessages().size(), 400U);
}

TEST_F(Keys, AChordHoldsEachNoteUntilItsOwnKeyIsReleased) {
    ASSERT_TRUE(instrument.Xdotool({"keydown", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(1));
    ASSERT_TRUE(instrument.Xdotool({"keydown", "c"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(2));
    ASSERT_TRUE(instrument.Xdotool({"keyup", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(3));
    ASSERT_TRUE(instrument.Xdotool({"keyup", "c"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_THAT(instrument.GetNoteMessages(), ElementsAre("90 3C 50", "90 40 50", "80 3C 00", "80 40 00"));
}

TEST_F(Keys, AKeyHeldWhenTheFocusLeavesIsReleased) {
    ASSERT_TRUE(instrument.Xdotool({"keydown", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(1));
    const QString other = instrument.RunOnDisplay("xdotool", {"search", "--maxdepth", "0", ".*"}).section('\n', 0, 0);
    ASSERT_TRUE(instrument.Xdotool({"windowfocus", other.trimmed()}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(2));
    EXPECT_EQ(instrument.GetNoteMessages()[1], "80 3C 00");
    ASSERT_TRUE(instrument.Xdotool({"keyup", "z"}));
}

}  // namespace
