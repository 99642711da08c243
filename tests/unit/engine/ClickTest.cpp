// The metronome that is heard, its count-in, and the tempo that is tapped.
#include "engine/Click.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/PortKeeper.h"
#include "engine/takes/PlayedPassages.h"
#include "engine/TapTempo.h"
#include "support/AllocationCounter.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::ClickSettings;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Sound = ClickSettings::Sound;
using Lines = std::vector<std::string>;

class ClickTest : public testing::Test {
protected:
    ClickTest() {
        rig.CreateOpen();
        controls = std::make_unique<Kivora::EngineControls>(Engine());
        Engine().SetTempo(60);
    }

    Kivora::CKivora& Engine() { return *rig.engine; }
    void Hear(Sound sound, int countIn = 0, int beats = 4) {
        Engine().SetClick({.sound = sound, .beatsPerBar = beats, .countInBars = countIn});
    }
    bool NeedsTick() {
        return Engine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.click.NeedsTick(); });
    }
    /// What was written meanwhile.
    Lines Run(int milliseconds, const wchar_t* output = kSynth) {
        rig.TakeWritten(output);
        rig.Run(milliseconds);
        return rig.TakeWritten(output);
    }
    static std::size_t Count(const Lines& lines, const std::string& line) {
        return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
    }

    /// The click alone on kSynth, everything else on kOtherSynth. The rig's player is the output's.
    void HearAlone() {
        ASSERT_TRUE(controls->SetOutputPortByIndex(1));
        FakePlayer* const player = rig.player;
        Hear(Sound::kSynth);
        clickPlayer = rig.player;
        ASSERT_NE(player, clickPlayer) << "one of its own";
        rig.player = player;
        Engine().SetMetronome(true);
    }
    /// Whether a bar that begins now is heard on kSynth by the click's own player.
    bool IsHeardAlone() {
        rig.TakeWritten(kSynth);
        Engine().RestartClock();
        FakePlayer* const player = rig.player;
        for (int i = 0; i < 10; ++i) {
            rig.time.AdvanceMs(1);
            Engine().OnTimer(0);
            clickPlayer->RunRound();
        }
        rig.player = player;
        return Count(rig.GetDevice(kSynth).TakeWritten(), bar) == 1;
    }
    void SetState(const wchar_t* device, LibMidi::DeviceState state) { rig.GetDevice(device).state = state; }

    EngineRig rig;
    std::unique_ptr<Kivora::EngineControls> controls;
    FakePlayer* clickPlayer = nullptr;
    const std::string bar = "99 4c 64";
    const std::string beat = "99 4d 4b";
    const std::string barOff = "89 4c 00";
    const std::string beatOff = "89 4d 00";
};

}  // namespace

TEST_F(ClickTest, IsSilentByDefaultWithTheMetronomeOn) {
    Engine().SetMetronome(true);
    EXPECT_FALSE(NeedsTick());
    EXPECT_THAT(Run(5000), IsEmpty());
}

TEST_F(ClickTest, ClicksEachBeatWithAnAccentOnTheBarWhileTheMetronomeIsOn) {
    Hear(Sound::kOutput);
    EXPECT_FALSE(NeedsTick());
    EXPECT_THAT(Run(2000), IsEmpty());
    Engine().SetMetronome(true);
    EXPECT_TRUE(NeedsTick());
    Engine().RestartClock();
    EXPECT_THAT(Run(5500),
                ElementsAre(bar, barOff, beat, beatOff, beat, beatOff, beat, beatOff, bar, barOff, beat, beatOff));
    Engine().SetMetronome(false);
    EXPECT_THAT(Run(5000), IsEmpty());
}

TEST_F(ClickTest, ABeatThatHasBegunIsNotCaughtUpWith) {
    Hear(Sound::kOutput);
    Engine().RestartClock();
    Run(500);
    Engine().SetMetronome(true);
    EXPECT_THAT(Run(400), IsEmpty());
    EXPECT_THAT(Run(200), ElementsAre(beat, beatOff));
}

TEST_F(ClickTest, ABarHasAsManyBeatsAsOneLikesAndTheNotesAreChosen) {
    Engine().SetClick({.sound = Sound::kOutput, .barNote = 34, .beatNote = 33, .loudness = 127, .beatsPerBar = 3});
    EXPECT_EQ(Engine().GetMusicalClock().beatsPerBar, 3);
    Engine().SetMetronome(true);
    Engine().RestartClock();
    const Lines written = Run(3500);
    EXPECT_EQ(Count(written, "99 22 7f"), 2U);
    EXPECT_EQ(Count(written, "99 21 5f"), 2U);
}

TEST_F(ClickTest, IsNotInARecordingNorInWhatIsKeptAndCountsAsNoPlaying) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    ASSERT_TRUE(controls->StartRecording());
    rig.RunPlayer();
    const int captured = Engine().GetRecordedCount();
    EXPECT_THAT(Run(4000), Contains(bar));
    EXPECT_EQ(Engine().GetRecordedCount(), captured);
    EXPECT_GE(Engine().GetIdleTime(), 4000);
    EXPECT_FALSE(
        Kivora::PlayedPassages(Engine().WithExtras([](auto& extras) { return extras.GetPlayed()->Get(); })).IsAny());
}

TEST_F(ClickTest, CountsInWithTheMetronomeOffAndIsSilentThen) {
    Hear(Sound::kOutput, 2, 3);
    EXPECT_EQ(Engine().GetCountIn(), 0);
    ASSERT_TRUE(controls->StartRecording());
    EXPECT_EQ(Engine().GetCountIn(), 6);
    EXPECT_TRUE(NeedsTick());
    EXPECT_THAT(Run(7500),
                ElementsAre(bar, barOff, beat, beatOff, beat, beatOff, bar, barOff, beat, beatOff, beat, beatOff));
    EXPECT_EQ(Engine().GetCountIn(), 0);
    EXPECT_FALSE(NeedsTick());
    EXPECT_TRUE(Engine().IsRecording());
}

TEST_F(ClickTest, TheEndOfTheRecordingEndsTheCountIn) {
    Hear(Sound::kOutput, 1);
    ASSERT_TRUE(controls->StartRecording());
    Run(500);
    controls->StopRecording();
    EXPECT_THAT(Run(5000), IsEmpty());
}

TEST_F(ClickTest, WithoutASoundOrACountInNothingCounts) {
    Hear(Sound::kSilent, 2);
    ASSERT_TRUE(controls->StartRecording());
    EXPECT_EQ(Engine().GetCountIn(), 0);
    controls->StopRecording();
    Hear(Sound::kOutput, 0);
    ASSERT_TRUE(controls->StartRecording());
    EXPECT_EQ(Engine().GetCountIn(), 0);
}

TEST_F(ClickTest, OnTheSynthesizerAloneNothingReachesTheOtherOutput) {
    ASSERT_TRUE(controls->SetOutputPortByIndex(1));
    rig.TakeWritten(kOtherSynth);
    rig.TakeWritten(kSynth);
    FakePlayer* const player = rig.player;
    Hear(Sound::kSynth);
    clickPlayer = rig.player;
    ASSERT_NE(player, clickPlayer) << "one of its own";
    Engine().SetMetronome(true);
    Engine().RestartClock();
    for (int i = 0; i < 1500; ++i) {
        rig.Run(1);
        player->RunRound();
    }
    EXPECT_THAT(rig.GetDevice(kOtherSynth).TakeWritten(), IsEmpty());
    EXPECT_THAT(rig.GetDevice(kSynth).TakeWritten(), ElementsAre(bar, barOff, beat, beatOff));
    rig.player = player;
    ASSERT_TRUE(controls->SetOutputPortByIndex(0));
    rig.player = player;  // the other one is gone
    rig.TakeWritten();
    Engine().RestartClock();
    EXPECT_THAT(Run(500), ElementsAre(bar, barOff)) << "the synthesizer is the output now";
}

TEST_F(ClickTest, ASynthesizerThatFailsIsSilentAndTheOutputPlaysOn) {
    ASSERT_TRUE(controls->SetOutputPortByIndex(1));
    FakePlayer* const player = rig.player;
    Hear(Sound::kSynth);
    Engine().SetMetronome(true);
    Engine().RestartClock();
    rig.GetDevice(kSynth).failsToWrite = true;
    rig.Run(100);
    rig.player = player;
    EXPECT_FALSE(Engine().IsOutputLost());
    rig.TakeWritten(kOtherSynth);
    Engine().PlayNoteOn(60, 100);
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), SizeIs(1));
}

TEST_F(ClickTest, ASilenceEndsTheClickThatSounds) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    Engine().RestartClock();
    rig.Run(10);
    rig.TakeWritten();
    controls->AllNotesOff();
    EXPECT_THAT(rig.TakeWritten(), Contains(barOff));
}

TEST_F(ClickTest, ATickAllocatesNothingOnceWarm) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    rig.GetDevice(kSynth).keepsWritten = false;
    rig.Run(5000);
    const auto before = GetAllocationCount();
    rig.Run(5000);
    EXPECT_EQ(GetAllocationCount(), before);
}

TEST_F(ClickTest, SettingsAreKeptInASectionOfTheirOwnWhereTheyAreNotTheDefaults) {
    const auto path = rig.folder / "user" / "Kivora.ini";
    ASSERT_TRUE(Engine().SaveSettings());
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_Click"), std::string::npos);
    const ClickSettings wanted{
        .sound = Sound::kSynth, .barNote = 34, .beatNote = 33, .loudness = 90, .beatsPerBar = 7, .countInBars = 2};
    Engine().SetClick(wanted);
    ASSERT_TRUE(Engine().SaveSettings());
    Engine().SetClick({});
    EXPECT_EQ(Engine().GetMusicalClock().beatsPerBar, 4);
    ASSERT_TRUE(Engine().LoadSettings());
    EXPECT_EQ(Engine().GetClick(), wanted);
    EXPECT_EQ(Engine().GetMusicalClock().beatsPerBar, 7);
    Engine().SetClick({});
    ASSERT_TRUE(Engine().SaveSettings());
    Engine().SetClick(wanted);
    ASSERT_TRUE(Engine().LoadSettings());
    EXPECT_EQ(Engine().GetClick(), ClickSettings());
}

TEST_F(ClickTest, SettingsOutOfRangeAreBroughtIntoIt) {
    WriteFileBytes(
        rig.folder / "user" / "Kivora.ini",
        "[Kivora]\n[Kivora_Click]\nSound=9\nBarNote=-1\nBeatNote=200\nLoudness=0\nBeatsPerBar=0\nCountIn=9\n");
    ASSERT_TRUE(Engine().LoadSettings());
    EXPECT_EQ(Engine().GetClick(), (ClickSettings{.sound = Sound::kSilent,
                                                  .barNote = 0,
                                                  .beatNote = 127,
                                                  .loudness = 1,
                                                  .beatsPerBar = 1,
                                                  .countInBars = 2}));
}

TEST(TapTempo, IsTheMeanOfTheLastTapsAndBeginsAnewAfterAPause) {
    Kivora::TapTempo tap;
    EXPECT_EQ(tap.Tap(1000), std::nullopt);
    EXPECT_EQ(tap.Tap(1000), std::nullopt);
    EXPECT_EQ(Kivora::TapTempo().Tap(5), std::nullopt);
    Kivora::TapTempo steady;
    steady.Tap(0);
    EXPECT_EQ(steady.Tap(500), 120);
    EXPECT_EQ(steady.Tap(1010), 119);
    EXPECT_EQ(steady.Tap(1500), 120);
    EXPECT_EQ(steady.Tap(1500 + Kivora::TapTempo::kPauseMs + 1), std::nullopt);
    EXPECT_EQ(steady.Tap(1500 + Kivora::TapTempo::kPauseMs + 1001), 60);
    for (int i = 1; i <= 20; ++i) {
        steady.Tap(100000 + i * 400);
    }
    EXPECT_EQ(steady.Tap(100000 + 21 * 400), 150);
}

TEST(TapTempo, BeginsAnewAfterAMuchLongerGapAndWhenTheClockGoesBack) {
    Kivora::TapTempo tap;
    tap.Tap(0);
    tap.Tap(300);
    EXPECT_EQ(tap.Tap(600), 200);
    EXPECT_EQ(tap.Tap(2600), std::nullopt) << "a rest";
    EXPECT_EQ(tap.Tap(2900), 200);
    EXPECT_EQ(tap.Tap(100), std::nullopt);
    EXPECT_EQ(tap.Tap(600), 120);
}

TEST_F(ClickTest, NoBeatSoundsOnceTheFrontHasClosed) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    Run(10);
    controls->Close();
    EXPECT_TRUE(Engine().IsMetronomeOn()) << "which is saved";
    Run(10);
    const Lines after = Run(3000);
    EXPECT_EQ(Count(after, bar) + Count(after, beat), 0U);
}

TEST_F(ClickTest, OnTheSynthesizerAloneItComesBackWhenItsAudioDoes) {
    HearAlone();
    Kivora::PortKeeper keeper(*controls);
    FakePlayer* const player = rig.player;
    EXPECT_TRUE(IsHeardAlone());
    keeper.Look();
    EXPECT_EQ(rig.GetDevice(kSynth).openCount, 2) << "what plays is left alone";
    rig.GetDevice(kSynth).failsToWrite = true;
    IsHeardAlone();
    SetState(kSynth, LibMidi::DeviceState::kLost);
    keeper.Look();
    EXPECT_EQ(rig.GetDevice(kSynth).openAttempts, 2) << "there is nothing to be opened yet";
    rig.GetDevice(kSynth).failsToWrite = false;
    SetState(kSynth, LibMidi::DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, LibMidi::DeviceState::kWorks);
    clickPlayer = rig.player;
    ASSERT_NE(clickPlayer, nullptr);
    rig.player = player;
    EXPECT_TRUE(IsHeardAlone());
    EXPECT_FALSE(Engine().IsOutputLost());
}

TEST_F(ClickTest, OnTheSynthesizerAloneAnOutputThatDoesNotOpenLeavesItPlaying) {
    rig.backend.Plug(L"Broken", LibMidi::kOutput).failsToOpen = true;
    ASSERT_TRUE(controls->RescanPorts());
    HearAlone();
    EXPECT_THROW(Engine().SetOutputPortByName(L"Broken"), NK::CException);
    EXPECT_TRUE(IsHeardAlone());
}

TEST_F(ClickTest, OnTheSynthesizerAloneItComesBackWhenTheSynthesizerDidNotOpenAsTheOutput) {
    HearAlone();
    FakePlayer* const player = rig.player;
    rig.GetDevice(kSynth).failsToOpen = true;
    EXPECT_THROW(Engine().SetOutputPortByName(kSynth), NK::CException);
    rig.GetDevice(kSynth).failsToOpen = false;
    Kivora::PortKeeper keeper(*controls);
    keeper.Look();
    clickPlayer = rig.player;
    ASSERT_NE(clickPlayer, nullptr);
    rig.player = player;
    EXPECT_TRUE(IsHeardAlone());
}

TEST_F(ClickTest, OnTheSynthesizerAloneARescanLeavesItPlaying) {
    rig.backend.fixed = true;
    HearAlone();
    const int opened = rig.GetDevice(kSynth).openCount;
    ASSERT_TRUE(controls->RescanPorts());
    EXPECT_EQ(rig.GetDevice(kSynth).openCount, opened);
    EXPECT_TRUE(IsHeardAlone());
}

TEST_F(ClickTest, TheSynthesizerIsLetGoWhereNobodyWantsItAnyMore) {
    Kivora::PortKeeper keeper(*controls);
    FakeDevice& synth = rig.GetDevice(kSynth);
    keeper.Look();
    EXPECT_EQ(synth.closedInVain, 0) << "it is the output";
    SetState(kSynth, LibMidi::DeviceState::kLost);
    keeper.Look();
    keeper.Look();
    EXPECT_EQ(synth.closedInVain, 0) << "it is the one that is wanted";
    ASSERT_TRUE(controls->SetOutputPortByIndex(1));
    const int before = synth.closedInVain;
    keeper.Look();
    EXPECT_EQ(synth.closedInVain, before + 1);
    Hear(Sound::kSynth);
    keeper.Look();
    EXPECT_EQ(synth.closedInVain, before + 1) << "the click wants it";
    Hear(Sound::kOutput);
    EXPECT_EQ(synth.closedInVain, before + 2) << "and no more";
}

TEST_F(ClickTest, NobodyWaitsForTheSynthesizerThatIsOpenedForTheClick) {
    ASSERT_TRUE(controls->SetOutputPortByIndex(1));
    std::vector<std::future<int>> others;
    const auto asks = std::make_shared<bool>(false);
    rig.backend.log = [this, &others, asks](const std::string& line) {
        if (*asks) {
            others.push_back(std::async(std::launch::async, [this] { return Engine().GetTempo(); }));
            EXPECT_EQ(others.back().wait_for(std::chrono::minutes(1)), std::future_status::ready) << line;
        }
    };
    ASSERT_TRUE(controls->RescanPorts()) << "the ports of this set have that log";
    *asks = true;
    Hear(Sound::kSynth);
    Hear(Sound::kOutput);
    *asks = false;
    EXPECT_EQ(others.size(), 2U) << "opened and closed";
}

TEST_F(ClickTest, TheEndOfAClickWhoseDeviceWentIsInNoRecording) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    ASSERT_TRUE(controls->StartRecording());
    Engine().PlayNoteOn(60, 100);
    Engine().RestartClock();
    rig.Run(5);
    SetState(kSynth, LibMidi::DeviceState::kLost);
    Kivora::PortKeeper keeper(*controls);
    keeper.Look();
    ASSERT_TRUE(Engine().IsOutputLost());
    rig.TakeWritten();
    SetState(kSynth, LibMidi::DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, LibMidi::DeviceState::kWorks);
    EXPECT_THAT(rig.TakeWritten(), Contains(barOff)) << "on the device it may sound on";
    Lines recorded;
    Engine().GetCapture()->VisitCaptured(0, [&](const LibMidi::CapturedEvent& event) {
        recorded.push_back(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)));
    });
    EXPECT_EQ(Count(recorded, barOff), 0U);
    const auto played = Engine().WithExtras([](auto& extras) { return extras.GetPlayed()->Get(); });
    for (const LibMidi::PlayedEvent& event : played.events) {
        EXPECT_NE(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)), barOff);
    }
}

TEST_F(ClickTest, ATapChangesTheTempoAndTheNextClickKeepsToTheBeat) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    Engine().RestartClock();
    Run(2300);  // into the third beat by three tenths
    controls->TapTempo();
    EXPECT_THAT(Run(500), IsEmpty());
    controls->TapTempo();
    EXPECT_EQ(Engine().GetTempo(), 120);
    EXPECT_EQ(Engine().GetMusicalClock().beat, 2);
    EXPECT_THAT(Run(95), IsEmpty()) << "no new bar";
    EXPECT_THAT(Run(60), ElementsAre(beat, beatOff)) << "where four fifths of the beat at 60 have become one of 120";
    EXPECT_THAT(Run(500), ElementsAre(bar, barOff));
}

TEST_F(ClickTest, ATempoThatChangesAsABeatBeginsDoesNotBeginItAgain) {
    Hear(Sound::kOutput);
    Engine().SetMetronome(true);
    for (int tempo = Kivora::CKivora::kMinTempo; tempo <= Kivora::CKivora::kMaxTempo; ++tempo) {
        Engine().SetTempo(60);
        Engine().RestartClock();
        rig.Run(3001);
        const auto before = Engine().GetMusicalClock();
        ASSERT_EQ(before.beat, 3);
        Engine().SetTempoInBar(tempo);
        const auto after = Engine().GetMusicalClock();
        ASSERT_EQ(std::pair(after.bar, after.beat), std::pair(before.bar, before.beat)) << tempo;
    }
}
