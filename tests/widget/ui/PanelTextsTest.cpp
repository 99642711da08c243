// The texts that the panel makes: patch labels and names, the recorder's times and reasons.
#include <gtest/gtest.h>

#include "nk/nk_exception.h"
#include "ui/PatchTexts.h"
#include "ui/RecordingTexts.h"

namespace {

TEST(PatchTexts, ProgramsAreShownOneBased) {
    EXPECT_EQ(PatchTexts::Label(0), "1");
    EXPECT_EQ(PatchTexts::Label(52), "53");
    EXPECT_EQ(PatchTexts::Label(127), "128");
}

TEST(PatchTexts, NegativeValues) {
    EXPECT_EQ(PatchTexts::Label(-1), "DK");
    EXPECT_EQ(PatchTexts::Label(-100000), "");
    EXPECT_EQ(PatchTexts::Label(-100001), "Err");
    EXPECT_EQ(PatchTexts::Label(-2), "Err");
    EXPECT_EQ(PatchTexts::Label(-99999), "Err");
}

TEST(PatchTexts, EveryProgramHasAFamilyOfEight) {
    for (int program = 0; program < 128; ++program) {
        EXPECT_FALSE(PatchTexts::NameOf(program, false).program.isEmpty());
        EXPECT_EQ(PatchTexts::NameOf(program, false).family, PatchTexts::NameOf(program / 8 * 8, false).family);
        if (program >= 8) {
            EXPECT_NE(PatchTexts::NameOf(program, false).family, PatchTexts::NameOf(program - 8, false).family);
        }
    }
    EXPECT_EQ(PatchTexts::NameOf(127, false).family, "Sound Effects");
}

TEST(PatchTexts, AnyNegativeProgramIsTheDrumKit) {
    for (const int program : {-1, -2, -100000}) {
        EXPECT_EQ(PatchTexts::NameOf(program, false).family, "Percussions");
        EXPECT_EQ(PatchTexts::NameOf(program, false).program, "Standard Drum Kit");
    }
}

TEST(PatchTexts, AProgramAbove127IsRefused) {
    for (const int program : {128, 1000000}) {
        try {
            PatchTexts::NameOf(program, true);
            FAIL();
        } catch (const NK::CException& error) {
            EXPECT_STREQ(error.GetMessage(), L"Invalid MIDI patch number.");
        }
    }
}

TEST(RecordingTexts, TimesAreRoundedToTheSecond) {
    EXPECT_EQ(RecordingTexts::Elapsed(0), "00:00");
    EXPECT_EQ(RecordingTexts::Elapsed(499), "00:00");
    EXPECT_EQ(RecordingTexts::Elapsed(500), "00:01");
    EXPECT_EQ(RecordingTexts::Elapsed(59400), "00:59");
    EXPECT_EQ(RecordingTexts::Elapsed(59499), "00:59");
    EXPECT_EQ(RecordingTexts::Elapsed(59500), "01:00");
    EXPECT_EQ(RecordingTexts::Elapsed(3600000), "60:00");
    EXPECT_EQ(RecordingTexts::Elapsed(100 * 60 * 1000), "00:00") << "minutes modulo 100";
}

TEST(RecordingTexts, TheLimitsThemselvesDoNotStop) {
    EXPECT_EQ(RecordingTexts::ReasonToStop(3600000, 30000), "");
    EXPECT_EQ(RecordingTexts::ReasonToStop(0, -1), "");
    EXPECT_EQ(RecordingTexts::ReasonToStop(3600001, 30000),
              "Recording has been automatically stopped because the recording is too long.");
    EXPECT_EQ(RecordingTexts::ReasonToStop(30001, 30001),
              "Recording has been automatically stopped because you were not playing anything for too long.");
    EXPECT_EQ(RecordingTexts::ReasonToStop(3600001, 30001), RecordingTexts::ReasonToStop(0, 30001)) << "idle wins";
}

}  // namespace
