// The latch and the swing.
#include "ArpeggiatorFixture.h"

using namespace KivoraTest;
using NK::MIDI::ArpeggiatorSettings;

namespace {

class ArpeggiatorLatch : public ArpeggiatorTest {
protected:
    ArpeggiatorLatch() { arpeggiator.SetLatch(true); }

    void PressAll(std::initializer_list<int> notes) {
        for (const int note : notes) {
            Press(note);
        }
    }
    void ReleaseAll(std::initializer_list<int> notes) {
        for (const int note : notes) {
            Release(note);
        }
    }
};

class ArpeggiatorSwing : public ArpeggiatorTest {
protected:
    /// The times at which notes begin within two bars, and their lengths, once a key is held.
    std::vector<std::pair<int, int>> Play() {
        Press(60);
        std::vector<std::pair<int, int>> steps;
        for (int ms = 2000; ms < 3990; ++ms) {
            RunTo(ms);
            for (const PlayedNote& note : std::exchange(output.played, {})) {
                steps.emplace_back(ms - 2000, note.duration);
            }
        }
        return steps;
    }
};

}  // namespace

TEST_F(ArpeggiatorLatch, IsOffByDefaultAndAfterSetDefaults) {
    EXPECT_FALSE(Settings().latch);
    arpeggiator.SetDefaults();
    EXPECT_FALSE(arpeggiator.GetSettings().latch);
    EXPECT_EQ(arpeggiator.GetSettings().swing, 50);
}

TEST_F(ArpeggiatorLatch, TheChordStaysUntilTheNextOneBegins) {
    PressAll({60, 64});
    EXPECT_EQ(Steps(2), (Notes{60, 64}));
    ReleaseAll({60, 64});
    EXPECT_EQ(Steps(3), (Notes{60, 64, 60}));
    EXPECT_TRUE(arpeggiator.IsPlaying());
    Press(67);
    EXPECT_EQ(Steps(2), (Notes{67, 67}));
    Release(67);
    EXPECT_EQ(Steps(1), (Notes{67}));
}

TEST_F(ArpeggiatorLatch, KeysAddToTheChordWhileOneIsDown) {
    PressAll({60, 64});
    Release(60);
    Press(67);
    Release(64);
    Release(67);
    EXPECT_EQ(Steps(3), (Notes{60, 64, 67}));
}

TEST_F(ArpeggiatorLatch, TheKeysAreTakenOverUpAndDown) {
    EXPECT_EQ(Send({{Message::kNoteOn, 1, 60, 100}})[0].status, 0);
    EXPECT_EQ(Send({{Message::kNoteOff, 1, 60, 0}})[0].status, 0);
    EXPECT_EQ(Send({{Message::kNoteOn, 1, 60, 0}})[0].status, 0);
}

TEST_F(ArpeggiatorLatch, AResetEndsIt) {
    PressAll({60, 64});
    ReleaseAll({60, 64});
    arpeggiator.Reset();
    EXPECT_FALSE(arpeggiator.IsPlaying());
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorLatch, ReleasingWhatIsLatchedLeavesTheKeysThatAreDown) {
    PressAll({60, 64});
    Release(60);
    arpeggiator.ReleaseLatched();
    EXPECT_EQ(Steps(2), (Notes{64, 64}));
    Release(64);
    EXPECT_EQ(Steps(1), (Notes{64}));
    arpeggiator.ReleaseLatched();
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorLatch, OffEndsAChordWhoseKeysAreUp) {
    PressAll({60, 64});
    Release(60);
    arpeggiator.SetLatch(false);
    EXPECT_EQ(Steps(1), (Notes{64}));
    Release(64);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorLatch, ABypassedOneLatchesNothing) {
    arpeggiator.SetBypassed(true);
    PressAll({60});
    ReleaseAll({60});
    arpeggiator.SetBypassed(false);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorLatch, SettingsThatAreLoadedWithoutItEndIt) {
    PressAll({60});
    ReleaseAll({60});
    NK::CIniFile file;
    file.SelectOrAddSection(L"Arpeggiator");
    arpeggiator.LoadSettings(file);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorLatch, TheFirstNoteOfTheNextChordIsItsFirst) {
    arpeggiator.SetDirection(Settings::kFirstNote);
    PressAll({64, 60});
    ReleaseAll({60, 64});
    EXPECT_EQ(Steps(1), (Notes{64}));
    PressAll({67, 50});
    EXPECT_EQ(Steps(2), (Notes{67, 67}));
}

TEST_F(ArpeggiatorLatch, BothAreSavedWhereTheyAreNotTheDefaultAndLoadedInTheirRange) {
    NK::CIniFile file;
    file.SelectOrAddSection(L"Arpeggiator");
    arpeggiator.SetLatch(false);
    arpeggiator.SaveSettings(file);
    EXPECT_FALSE(file.GetString(L"Latch").has_value());
    EXPECT_FALSE(file.GetString(L"Swing").has_value());
    arpeggiator.SetLatch(true);
    arpeggiator.SetSwing(66);
    arpeggiator.SaveSettings(file);
    arpeggiator.SetLatch(false);
    arpeggiator.SetSwing(50);
    arpeggiator.LoadSettings(file);
    EXPECT_TRUE(arpeggiator.GetSettings().latch);
    EXPECT_EQ(arpeggiator.GetSettings().swing, 66);
    arpeggiator.SetDefaults();
    arpeggiator.SaveSettings(file);
    EXPECT_EQ(file.GetInt(L"Latch", 9), 0);
    EXPECT_EQ(file.GetInt(L"Swing", 9), 50);
    for (const auto& [stored, kept] : {std::pair{49, 50}, std::pair{76, 75}, std::pair{-2000000000, 50}}) {
        file.SetInt(L"Swing", stored);
        arpeggiator.LoadSettings(file);
        EXPECT_EQ(arpeggiator.GetSettings().swing, kept);
    }
}

TEST_F(ArpeggiatorSwing, TheSecondOfTwoStepsComesLater) {
    using Steps = std::vector<std::pair<int, int>>;
    arpeggiator.SetDurationPercent(50);
    EXPECT_EQ(Play(),
              (Steps{{0, 125}, {249, 125}, {499, 125}, {749, 125}, {999, 125}, {1249, 125}, {1499, 125}, {1749, 125}}))
        << "straight";
}

TEST_F(ArpeggiatorSwing, AndBothTogetherAreAsLongAsWithoutIt) {
    using Steps = std::vector<std::pair<int, int>>;
    arpeggiator.SetDurationPercent(50);
    arpeggiator.SetSwing(75);
    EXPECT_EQ(Play(),
              (Steps{{0, 188}, {374, 63}, {499, 188}, {874, 63}, {999, 188}, {1374, 63}, {1499, 188}, {1874, 63}}));
    arpeggiator.SetSwing(80);
    EXPECT_EQ(arpeggiator.GetSettings().swing, 75);
    arpeggiator.SetSwing(0);
    EXPECT_EQ(arpeggiator.GetSettings().swing, 50);
}

TEST_F(ArpeggiatorSwing, TheLongestStepFits) {
    arpeggiator.SetNoteStep(2147483647, 100);
    arpeggiator.SetSwing(75);
    Press(60);
    RunTo(100000);
    EXPECT_LE(output.played.size(), 1U);
}
