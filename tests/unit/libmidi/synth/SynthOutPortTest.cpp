#include "libmidi/synth/SynthOutPort.h"

#include <gtest/gtest.h>

#include "FakeSynthApi.h"
#include "libmidi/synth/SynthBackend.h"
#include "libmidi/synth/SynthImpl.h"
#include "support/FatalLog.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"

namespace {

using KivoraTest::CFatalLog;
using KivoraTest::CTemporaryFolder;
using KivoraTest::FakeSynthApi;
using namespace LibMidi;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

class SynthOutPortTest : public testing::Test {
protected:
    SynthOutPortTest() {
        KivoraTest::WriteBytes(font_, KivoraTest::MakeTinySoundFont());
        environment_.soundFont = font_;
        environment_.audioDriver = "pulseaudio";
    }
    std::shared_ptr<Synthesizer> MakeSynthesizer() {
        return std::make_shared<Synthesizer>(api_, environment_, limits_);
    }

    CTemporaryFolder folder_;
    const std::filesystem::path font_ = folder_ / "font.sf2";
    FakeSynthApi api_;
    SynthEnvironment environment_;
    Synthesizer::Limits limits_{.driverStart = 60s, .fontLoad = 60s, .apply = 60s, .close = 60s};
    const NoteEvent note_{0, 0, 60, 100, 0x90};
};

TEST_F(SynthOutPortTest, IsAnOutputOfItsName) {
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.GetName(), L"Software synthesizer");
    EXPECT_EQ(port.GetFlags(), kOutput);
    EXPECT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.GetFlags(), kOutput | kOpen);
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(port.GetFlags(), kOutput);
}

TEST_F(SynthOutPortTest, OpeningTwiceGives1AndClosingTwiceGives2) {
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Close(), kNotOpen);
    EXPECT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.Open(), kAlreadyOpen);
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(port.Close(), kNotOpen);
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 1);
}

TEST_F(SynthOutPortTest, NullEventsGive5EvenWhenClosed) {
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Write(nullptr, 1), kNoData);
    ASSERT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.Write(nullptr, 0), kNoData);
}

TEST_F(SynthOutPortTest, WritingToAClosedPortGives2) {
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Write(&note_, 1), kNotOpen);
    ASSERT_EQ(port.Open(), kSuccess);
    ASSERT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(port.Write(&note_, 1), kNotOpen);
    EXPECT_EQ(api_.Count("on 0 60 100"), 0);
}

TEST_F(SynthOutPortTest, ACountBelow1Gives0AndWritesNothing) {
    SynthOutPort port(MakeSynthesizer());
    ASSERT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.Write(&note_, 0), kSuccess);
    EXPECT_EQ(port.Write(&note_, -1), kSuccess);
    EXPECT_EQ(api_.Count("on 0 60 100"), 0);
}

TEST_F(SynthOutPortTest, WritesEveryEventInOrder) {
    SynthOutPort port(MakeSynthesizer());
    ASSERT_EQ(port.Open(), kSuccess);
    api_.Forget();
    const MIDIEvent events[] = {note_, CtrlEvent(0, 0, 7, 100), NoteEvent(0, 0, 60, 0, 0x80)};
    EXPECT_EQ(port.Write(events, 3), kSuccess);
    EXPECT_EQ(api_.GetTexts(), (Texts{"on 0 60 100", "cc 0 7 100", "off 0 60"}));
}

TEST_F(SynthOutPortTest, WhatFluidSynthHasNothingToDoForIsNoFailure) {
    api_.messageResult = FLUID_FAILED;
    SynthOutPort port(MakeSynthesizer());
    ASSERT_EQ(port.Open(), kSuccess);
    const MIDIEvent events[] = {NoteEvent(0, 0, 60, 0, 0x80), MIDIEvent(0, 0xF8, 0, 0), note_};
    EXPECT_EQ(port.Write(events, 3), kSuccess);
    EXPECT_EQ(api_.Count("on 0 60 100"), 1);
}

TEST_F(SynthOutPortTest, ADriverThatDoesNotStartGives6WithTheReason) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    api_.failingDrivers = {"pulseaudio"};
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Open(), kDeviceError);
    EXPECT_EQ(port.GetFlags(), kOutput);
    EXPECT_EQ(port.GetLastError(), L"No sound can be played.\npulseaudio: The audio driver does not start.");
    api_.WaitUntilFreed();
}

TEST_F(SynthOutPortTest, ASynthesizerThatCannotBeMadeGives6) {
    CFatalLog::Instance().Expect(L"The synthesizer cannot be created.");
    api_.canMakeSynth = false;
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Open(), kDeviceError);
    api_.WaitUntilFreed();
}

TEST_F(SynthOutPortTest, AFontThatFluidSynthRefusesGives6) {
    CFatalLog::Instance().Expect(L"The sound font cannot be loaded.");
    api_.failingFont = font_;
    SynthOutPort port(MakeSynthesizer());
    EXPECT_EQ(port.Open(), kDeviceError);
    api_.WaitUntilFreed();
}

TEST_F(SynthOutPortTest, AFontThatIsRemovedOrBrokenLaterGives6) {
    SynthOutPort port(MakeSynthesizer());
    KivoraTest::WriteBytes(font_, "RIFF");
    CFatalLog::Instance().Expect(L"The file is no sound font.");
    EXPECT_EQ(port.Open(), kDeviceError);
    std::filesystem::remove(font_);
    CFatalLog::Instance().Expect(L"No sound font is found.");
    EXPECT_EQ(port.Open(), kDeviceError);
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 0);
}

TEST_F(SynthOutPortTest, AFailedOpeningCanBeRepeated) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    api_.failingDrivers = {"pulseaudio"};
    SynthOutPort port(MakeSynthesizer());
    ASSERT_EQ(port.Open(), kDeviceError);
    api_.WaitUntilFreed();
    api_.failingDrivers.clear();
    EXPECT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.GetLastError(), L"");
}

TEST_F(SynthOutPortTest, ClosingSilencesAndFreesEverything) {
    SynthOutPort port(MakeSynthesizer());
    ASSERT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(api_.GetLive(), 3);
    api_.Forget();
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(api_.GetLive(), 0);
    EXPECT_EQ(api_.GetTexts(), (Texts{"sounds off -1", "delete driver"}));
}

TEST_F(SynthOutPortTest, DestroyingAnOpenPortClosesIt) {
    {
        SynthOutPort port(MakeSynthesizer());
        ASSERT_EQ(port.Open(), kSuccess);
    }
    EXPECT_EQ(api_.GetLive(), 0);
}

TEST_F(SynthOutPortTest, ThePortSetHoldsThePortWhereAFontIsFound) {
    const SynthImpl set(MakeSynthesizer());
    ASSERT_EQ(set.GetPorts().GetCount(), 1U);
    EXPECT_EQ(set.GetDefaultInput(), nullptr);
    ASSERT_NE(set.GetDefaultOutput(), nullptr);
    EXPECT_EQ(set.GetDefaultOutput(), set.GetPorts().FindOutputByName(L"Software synthesizer"));
    EXPECT_TRUE(set.IsFixed());
}

TEST_F(SynthOutPortTest, ThePortSetIsEmptyWithoutAFont) {
    environment_.soundFont = folder_ / "missing.sf2";
    PortFactory factory({MakeSynthBackend(MakeSynthesizer())});
    EXPECT_TRUE(factory.Refresh());
    EXPECT_FALSE(factory.HasPorts());
    EXPECT_EQ(factory.GetDefaultOutput(), nullptr);
}

TEST_F(SynthOutPortTest, AFontThatIsChosenLaterBringsThePortWithTheNextRescan) {
    environment_.soundFont.clear();
    const auto synthesizer = MakeSynthesizer();
    PortFactory factory({MakeSynthBackend(synthesizer)});
    EXPECT_TRUE(factory.Refresh());
    EXPECT_FALSE(factory.HasPorts());
    SynthSettings settings;
    settings.soundFont = NK::CString::FromUtf8(font_.native());
    ASSERT_EQ(synthesizer->ApplySettings(settings), kSuccess);
    EXPECT_TRUE(factory.Rescan());
    EXPECT_TRUE(factory.HasPorts());
}

}  // namespace
