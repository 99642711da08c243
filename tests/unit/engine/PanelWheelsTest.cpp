// The panel's wheels and pedals: whom they move, and what brings them to rest.
#include "engine/PanelWheels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/EngineControls.h"
#include "engine/SongPlayer.h"
#include "engine/values/ExtraKey.h"
#include "support/Files.h"
#include "support/SynthModel.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/SavedTake.h"
#include "unit/engine/SongRig.h"

using namespace KivoraTest;
using Kivora::EWheel;
using Kivora::PanelWheels;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class Wheels : public testing::Test {
protected:
    Wheels() {
        Listen(kSynth, synth);
        Listen(kOtherSynth, otherSynth);
        engine.SetInputPortByName(kKeyboard);
        rig.TakeWritten();
    }
    void Listen(const wchar_t* name, SynthModel& model) {
        rig.GetDevice(name).onWrite = [&model](const LibMidi::MIDIEvent& event) { model.Play(event); };
    }
    int Bend(int channel) {
        rig.RunPlayer();
        return synth.GetControls(channel).wheel;
    }
    int Value(int channel, int controller) {
        rig.RunPlayer();
        return synth.GetControls(channel).controller[static_cast<std::size_t>(controller)];
    }
    void LoseOutput() {
        rig.GetDevice(kSynth).failsToWrite = true;
        engine.PlayNoteOn(60, 100);
        rig.Run(2);
        ASSERT_TRUE(engine.IsOutputLost());
        rig.GetDevice(kSynth).failsToWrite = false;
    }
    std::vector<std::string> TakeRange() {
        std::vector<std::string> found;
        for (const std::string& line : rig.TakeWritten()) {
            if (line.starts_with("b0 06") || line.starts_with("b0 26") || line.starts_with("b0 64") ||
                line.starts_with("b0 65")) {
                found.push_back(line);
            }
        }
        return found;
    }

    EngineRig rig;
    SynthModel synth;
    SynthModel otherSynth;
    Kivora::CKivora& engine = rig.CreateOpen();
    Kivora::EngineControls controls{engine};
};

const std::vector<std::string> kRangeOf12{"b0 65 00", "b0 64 00", "b0 06 0c", "b0 26 00", "b0 65 7f", "b0 64 7f"};
const std::vector<std::string> kRangeOf2{"b0 65 00", "b0 64 00", "b0 06 02", "b0 26 00", "b0 65 7f", "b0 64 7f"};

}  // namespace

TEST(PanelWheelsValues, AMessageAndWhatItMovesAreOneAndTheSame) {
    for (const EWheel wheel : PanelWheels::kAll) {
        for (const int value : {0, 1, 64, 127}) {
            EXPECT_EQ(PanelWheels::FromMessage(PanelWheels::ToMessage(wheel, value)),
                      (PanelWheels::Move{wheel, value}));
        }
    }
    EXPECT_EQ(PanelWheels::FromMessage(PanelWheels::ToMessage(EWheel::kPitch, 20'000)),
              (PanelWheels::Move{EWheel::kPitch, PanelWheels::kPitchHighest}));
    EXPECT_EQ(PanelWheels::FromMessage({0xB0, 1, 7, 100}), std::nullopt);
    EXPECT_EQ(PanelWheels::FromMessage({0x90, 1, 1, 100}), std::nullopt);
}

TEST_F(Wheels, EachIsSentOnceToEachVoice) {
    controls.SetWheel(EWheel::kPitch, PanelWheels::kPitchHighest);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("e0 7f 7f", "e1 7f 7f", "e2 7f 7f"));
    controls.SetWheel(EWheel::kModulation, 64);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("b0 01 40", "b1 01 40", "b2 01 40"));
    controls.SetWheel(EWheel::kExpression, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("b0 0b 64", "b1 0b 64", "b2 0b 64"));
    controls.SetWheel(EWheel::kSostenuto, 127);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("b0 42 7f", "b1 42 7f", "b2 42 7f"));
    controls.SetWheel(EWheel::kSoft, 127);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("b0 43 7f", "b1 43 7f", "b2 43 7f"));
}

TEST_F(Wheels, IsShownOnceAsWhatComesFromAKeyboard) {
    SignalLog log(engine);
    controls.SetWheel(EWheel::kPitch, 0);
    EXPECT_THAT(log.TakeMessages(), ElementsAre("e0 00 00"));
    rig.GetKeyboard().Deliver(0xE0, 0, 0);
    EXPECT_THAT(log.TakeMessages(), ElementsAre("e0 00 00"));
}

TEST_F(Wheels, ManyMovesEndAtTheLast) {
    for (int value = 0; value <= 127; ++value) {
        controls.SetWheel(EWheel::kModulation, value);
        controls.SetWheel(EWheel::kPitch, value * 100);
    }
    EXPECT_EQ(Value(0, 1), 127);
    EXPECT_EQ(Bend(2), 12'700);
}

TEST_F(Wheels, RestBringsBackWhatTheStripHasMovedAndNothingElse) {
    controls.RestWheels();
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    controls.SetWheel(EWheel::kPitch, 100);
    controls.SetWheel(EWheel::kExpression, 3);
    rig.GetKeyboard().Deliver(0xB4, 1, 77);
    rig.TakeWritten();
    controls.RestWheels();
    EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
    EXPECT_EQ(Value(1, 11), 127);
    EXPECT_EQ(Value(0, 1), 77);
}

TEST_F(Wheels, WhatAKeyboardMovesIsNotTheStripsAnyMore) {
    controls.SetWheel(EWheel::kModulation, 50);
    controls.SetWheel(EWheel::kPitch, 50);
    rig.GetKeyboard().Deliver(0xB4, 1, 90);
    rig.GetKeyboard().Deliver(0xB4, 121, 0);
    rig.TakeWritten();
    controls.RestWheels();
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    rig.GetKeyboard().Deliver(0xB4, 1, 90);
    controls.AllNotesOff();
    EXPECT_EQ(Value(0, 1), 90);
}

TEST_F(Wheels, AChannelThatAVoiceLeavesIsNotLeftBent) {
    controls.SetWheel(EWheel::kPitch, 12'000);
    controls.SetWheel(EWheel::kModulation, 99);
    controls.SetPatch(-1, 0);
    EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
    EXPECT_EQ(Value(0, 1), 0);
    EXPECT_EQ(Bend(9), 12'000);
    EXPECT_EQ(Value(9, 1), 99);
    controls.SetWheel(EWheel::kPitch, PanelWheels::kPitchCentre);
    for (int channel = 0; channel < SynthModel::kChannels; ++channel) {
        EXPECT_EQ(Bend(channel), PanelWheels::kPitchCentre) << channel;
    }
}

TEST_F(Wheels, EndingAllNotesAndAPresetLeaveThemWhereTheyAre) {
    ASSERT_TRUE(engine.SavePreset(L"one"));
    controls.SetWheel(EWheel::kModulation, 99);
    controls.SetWheel(EWheel::kSostenuto, 127);
    controls.AllNotesOff();
    EXPECT_EQ(Value(0, 1), 99);
    EXPECT_EQ(Value(0, 66), 127);
    ASSERT_TRUE(controls.LoadPreset(L"one", false));
    EXPECT_EQ(Value(2, 1), 99);
    EXPECT_EQ(Value(2, 66), 127);
}

TEST_F(Wheels, ASongNeitherLiftsTheSostenutoPedalNorPressesItAgain) {
    Kivora::SongPlayer player(controls);
    controls.SetWheel(EWheel::kSostenuto, 127);
    for (const std::uint8_t channel : std::array<std::uint8_t, 2>{1, 6}) {
        for (const std::uint8_t controller : std::array<std::uint8_t, 2>{66, 121}) {
            rig.TakeWritten();
            player.Open(MakeSong({{0, {0xB0, channel, controller, 127}}, {10, {0xB0, channel, controller, 0}}}, 1000));
            ASSERT_TRUE(player.Play());
            rig.Run(20);
            player.Stop();
            const auto written = rig.TakeWritten();
            EXPECT_THAT(written, Not(Contains(testing::StartsWith("b0 42")))) << "it would catch other keys";
            EXPECT_THAT(written, Not(Contains("b0 79 00")));
            EXPECT_EQ(Value(0, 66), 127);
        }
    }
}

TEST_F(Wheels, APanicBringsThemToRestAndSoDoesTheEnd) {
    const std::vector<std::function<void()>> ways{[this] { controls.Panic(); }, [this] { controls.FallSilent(); },
                                                  [this] { controls.Close(); }};
    for (const auto& way : ways) {
        for (const EWheel wheel : PanelWheels::kAll) {
            controls.SetWheel(wheel, 33);
        }
        ASSERT_EQ(Bend(0), 33);
        way();
        rig.RunPlayer();
        EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
        EXPECT_EQ(Value(0, 1), 0);
        EXPECT_EQ(Value(1, 11), 127);
        EXPECT_EQ(Value(2, 66), 0);
        EXPECT_EQ(Value(2, 67), 0);
        rig.TakeWritten();
        controls.RestWheels();
        EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    }
}

TEST_F(Wheels, AnotherOutputTakesThemOverAndTheFormerIsAtRest) {
    controls.SetWheel(EWheel::kPitch, 9'000);
    controls.SetWheel(EWheel::kModulation, 44);
    ASSERT_TRUE(controls.SetOutputPortByIndex(1));
    rig.RunPlayer();
    EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
    EXPECT_EQ(Value(0, 1), 0);
    EXPECT_EQ(otherSynth.GetControls(0).wheel, 9'000);
    EXPECT_EQ(otherSynth.GetControls(2).controller[1], 44);
}

TEST_F(Wheels, OneThatSprangBackWhileTheOutputWasLostIsInItsCentreWhenThatIsBack) {
    controls.SetWheel(EWheel::kPitch, 9'000);
    ASSERT_EQ(Bend(0), 9'000);
    LoseOutput();
    controls.SetWheel(EWheel::kPitch, PanelWheels::kPitchCentre);
    ASSERT_TRUE(controls.ReopenOutput());
    EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
}

TEST_F(Wheels, OneThatAPanicBroughtToRestWhileTheOutputWasLostIsAtRestWhenThatIsBack) {
    controls.SetWheel(EWheel::kPitch, 9'000);
    controls.SetWheel(EWheel::kExpression, 0);
    ASSERT_EQ(Bend(0), 9'000);
    LoseOutput();
    controls.Panic();
    ASSERT_TRUE(controls.ReopenOutput());
    EXPECT_EQ(Bend(0), PanelWheels::kPitchCentre);
    EXPECT_EQ(Value(0, 11), 127);
}

TEST_F(Wheels, AVoiceOnAnotherChannelIsToldTheRangeBeforeItIsBent) {
    controls.SetBendRange(12);
    controls.SetWheel(EWheel::kPitch, 9'000);
    rig.TakeWritten();
    controls.SetPatch(-1, 0);
    const std::vector<std::string> written = rig.TakeWritten();
    const auto range = std::find(written.begin(), written.end(), "b9 06 0c");
    const auto bend = std::find(written.begin(), written.end(), "e9 28 46");
    ASSERT_NE(range, written.end());
    ASSERT_NE(bend, written.end());
    EXPECT_LT(range - written.begin(), bend - written.begin());
}

TEST_F(Wheels, ATakeBeginsWithThemAndHoldsWhatIsPlayedOnThem) {
    controls.SetWheel(EWheel::kModulation, 70);
    ASSERT_TRUE(controls.StartRecording());
    EXPECT_EQ(Value(0, 1), 70);
    rig.Run(100);
    controls.SetWheel(EWheel::kPitch, 16'383);
    rig.Run(100);
    controls.SetWheel(EWheel::kPitch, PanelWheels::kPitchCentre);
    controls.SetWheel(EWheel::kSoft, 127);
    rig.Run(10);
    controls.StopRecording();
    const std::filesystem::path path = rig.folder / "take.mid";
    ASSERT_TRUE(engine.SaveRecording(NK::CString::FromUtf8(path.native())));
    int bends = 0;
    int modulations = 0;
    for (const SavedEvent& event : ReadSavedTake(path)) {
        bends += event.status == 0xE0 ? 1 : 0;
        modulations += event.status == 0xB0 && event.data1 == 1 && event.data2 == 70 ? 1 : 0;
    }
    EXPECT_EQ(bends, 2);
    EXPECT_EQ(modulations, 1);
}

TEST_F(Wheels, TheBendRangeIsToldOnceItIsChosen) {
    controls.Panic();
    EXPECT_THAT(TakeRange(), IsEmpty());
    EXPECT_EQ(controls.GetBendRange(), 2);
    controls.SetBendRange(12);
    EXPECT_EQ(TakeRange(), kRangeOf12);
    controls.Panic();
    EXPECT_EQ(TakeRange(), kRangeOf12);
    controls.SetPatch(-1, 1);
    EXPECT_EQ(TakeRange(), kRangeOf12) << "a voice has another channel";
    LoseOutput();
    ASSERT_TRUE(controls.ReopenOutput());
    EXPECT_EQ(TakeRange(), kRangeOf12);
    controls.SetBendRange(2);
    EXPECT_EQ(TakeRange(), kRangeOf2);
    controls.Panic();
    EXPECT_EQ(TakeRange(), kRangeOf2) << "the device may have kept another one";
    controls.SetBendRange(99);
    EXPECT_EQ(controls.GetBendRange(), 24);
    controls.SetBendRange(0);
    EXPECT_EQ(controls.GetBendRange(), 1);
}

TEST_F(Wheels, TheBendRangeIsKeptAndTheDefaultIsNotWritten) {
    const std::filesystem::path path = rig.folder / "user/Kivora.ini";
    ASSERT_TRUE(engine.SaveSettings());
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_Wheels"), std::string::npos);
    controls.SetBendRange(7);
    ASSERT_TRUE(engine.SaveSettings());
    controls.SetBendRange(3);
    ASSERT_TRUE(controls.LoadSettings());
    EXPECT_EQ(controls.GetBendRange(), 7);
    for (const char* wrong : {"0", "25", "-3", "x"}) {
        WriteFileBytes(path, std::string("[Kivora]\n[Kivora_Wheels]\nBendRange=") + wrong + "\n");
        ASSERT_TRUE(controls.LoadSettings());
        EXPECT_EQ(controls.GetBendRange(), 2) << wrong;
    }
}
