// A song that is played back through the instrument.
#include "engine/SongPlayback.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

#include "libmidi/PlayedHistory.h"
#include "support/AllocationCounter.h"
#include "support/Files.h"
#include "support/SynthModel.h"
#include "unit/engine/SavedTake.h"
#include "unit/engine/SongRig.h"

using namespace KivoraTest;
using Kivora::Song;
using Kivora::SongPlayer;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

namespace {

using Lines = std::vector<std::string>;
using State = SongPlayer::State;

class SongPlayback : public testing::Test {
protected:
    SongPlayback() {
        rig.CreateOpen();
        controls = std::make_unique<Kivora::EngineControls>(Engine());
        player = std::make_unique<SongPlayer>(*controls);
        rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) { synth.Play(event); };
    }

    Kivora::CKivora& Engine() { return *rig.engine; }
    /// What was written meanwhile.
    Lines Run(int milliseconds) {
        rig.TakeWritten();
        rig.Run(milliseconds);
        return rig.TakeWritten();
    }
    void Play(std::vector<TimedMessage> messages, int lengthMs = 0) {
        player->Open(MakeSong(std::move(messages), lengthMs));
        ASSERT_TRUE(player->Play());
    }
    State GetState() { return player->GetStatus().state; }
    int GetMs() { return static_cast<int>(player->GetStatus().positionUs / 1000); }
    bool NeedsTick() {
        return Engine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.song.NeedsTick(); });
    }
    static void ExpectNothingSounds(const SynthModel& synth) {
        EXPECT_FALSE(synth.IsSounding());
        EXPECT_FALSE(synth.IsPedalDown());
        EXPECT_FALSE(synth.IsSostenutoDown());
    }

    EngineRig rig;
    SynthModel synth;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<SongPlayer> player;
};

const NK::MIDI::TMIDIMessage kOn{0x90, 5, 60, 100};
const NK::MIDI::TMIDIMessage kOff{0x80, 5, 60, 64};
const std::string kOnLine = "94 3c 64";
const std::string kOffLine = "84 3c 40";
const std::string kEnded = "84 3c 00";  ///< by the playback, not by the song

}  // namespace

TEST_F(SongPlayback, SendsEachMessageAtItsTimeOnItsOwnChannelAndRestsOtherwise) {
    EXPECT_FALSE(NeedsTick());
    Play({{0, kOn}, {10, kOff}, {25, {0x90, 16, 70, 1}}, {26, {0x90, 16, 70, 0}}}, 100);
    EXPECT_TRUE(NeedsTick());
    EXPECT_THAT(Run(1), ElementsAre(kOnLine));
    EXPECT_THAT(Run(9), IsEmpty());
    EXPECT_THAT(Run(1), ElementsAre(kOffLine));
    EXPECT_THAT(Run(14), IsEmpty());
    EXPECT_THAT(Run(2), ElementsAre("9f 46 01", "9f 46 00"));
    EXPECT_EQ(GetMs(), 26);
    Run(73);
    EXPECT_EQ(GetState(), State::kPlaying);
    Run(1);
    EXPECT_EQ(GetState(), State::kStopped);
    EXPECT_EQ(GetMs(), 0);
    EXPECT_FALSE(NeedsTick());
}

TEST_F(SongPlayback, ThereIsNothingToPlayWithoutASongOrAnOutput) {
    EXPECT_FALSE(player->Play());
    player->Open(MakeSong({}));
    EXPECT_FALSE(player->Play());
    player->Open(MakeSong({{0, kOn}}));
    Engine().CloseOutputPort();
    EXPECT_FALSE(player->Play());
    EXPECT_FALSE(NeedsTick());
}

TEST_F(SongPlayback, TheTempoIsExactAndMayChangeMeanwhile) {
    Play({{100, kOn}, {1000, kOff}}, 5000);
    player->SetTempo(25);
    EXPECT_THAT(Run(400), IsEmpty());
    EXPECT_THAT(Run(1), ElementsAre(kOnLine));
    player->SetTempo(200);
    EXPECT_THAT(Run(449), IsEmpty());
    EXPECT_THAT(Run(1), ElementsAre(kOffLine));
    player->SetTempo(1000);
    EXPECT_EQ(player->GetStatus().tempoPercent, 200);
    player->SetTempo(0);
    EXPECT_EQ(player->GetStatus().tempoPercent, 25);
}

TEST_F(SongPlayback, ATranspositionMovesAllButThePercussionAndEndsWhatItBegan) {
    player->Open(MakeSong({{0, kOn}, {0, {0x90, 10, 38, 90}}, {5, {0xA0, 5, 60, 9}}, {10, kOff}, {20, kOn}}, 100));
    player->SetTransposition(-2);
    player->Play();
    EXPECT_THAT(Run(1), testing::UnorderedElementsAre("94 3a 64", "99 26 5a"));
    player->SetTransposition(12);
    EXPECT_THAT(Run(5), ElementsAre("a4 3a 09"));
    EXPECT_THAT(Run(5), ElementsAre("84 3a 40"));
    EXPECT_THAT(Run(10), ElementsAre("94 48 64"));
    player->SetTransposition(99);
    EXPECT_EQ(player->GetStatus().transposition, 24);
    player->Open(MakeSong({{0, {0x90, 1, 127, 1}}}, 10));
    EXPECT_EQ(player->GetStatus().transposition, 0) << "each song begins as it is";
    player->SetTransposition(2);
    player->Play();
    EXPECT_THAT(Run(1), ElementsAre("90 75 01")) << "folded by octaves";
}

TEST_F(SongPlayback, APauseEndsWhatSoundsGivesTheVoicesBackAndGoesOnWithWhatTheChannelsHad) {
    Engine().SetPatch(48, 0);
    const std::uint8_t volume = static_cast<std::uint8_t>(Engine().GetVolume(0));
    Play({{0, {0xC0, 1, 19, 0}},
          {0, {0xB0, 1, 7, 33}},
          {1, {0xE0, 1, 0, 100}},
          {2, {0xB0, 1, 64, 127}},
          {3, {0x90, 1, 60, 90}},
          {50, {0xB0, 1, 10, 20}},
          {500, {0x80, 1, 60, 0}}},
         1000);
    Run(100);
    EXPECT_TRUE(synth.IsSounding());
    player->Pause();
    rig.RunPlayer();
    ExpectNothingSounds(synth);
    EXPECT_EQ(synth.GetControls(0).program, 48);
    EXPECT_EQ(synth.GetControls(0).controller[7], volume);
    EXPECT_EQ(synth.GetControls(0).controller[10], 64);
    EXPECT_EQ(synth.GetControls(0).wheel, 0x2000);
    EXPECT_FALSE(NeedsTick());
    EXPECT_THAT(Run(1000), IsEmpty());
    EXPECT_EQ(GetMs(), 99);
    player->Play();
    Run(1);
    EXPECT_EQ(synth.GetControls(0).program, 19);
    EXPECT_EQ(synth.GetControls(0).controller[7], 33);
    EXPECT_EQ(synth.GetControls(0).controller[10], 20);
    EXPECT_EQ(synth.GetControls(0).wheel, 100 << 7);
    EXPECT_TRUE(synth.IsPedalDown(0));
    EXPECT_THAT(Run(450), Not(Contains("80 3c 00"))) << "a note that does not sound is not ended";
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(SongPlayback, AnotherPlaceHasTheProgramsControllersAndWheelThatItWouldHave) {
    Play({{0, {0xC0, 5, 10, 0}},
          {0, {0xB0, 5, 11, 50}},
          {100, kOn},
          {200, {0xC0, 5, 20, 0}},
          {210, {0xB0, 5, 1, 77}},
          {220, {0xE0, 5, 1, 2}},
          {300, {0xB0, 5, 121, 0}},
          {400, kOff}},
         1000);
    Run(150);
    EXPECT_TRUE(synth.IsPressed(4, 60));
    player->Seek(250'000);
    Run(1);
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_EQ(synth.GetControls(4).program, 20);
    EXPECT_EQ(synth.GetControls(4).controller[1], 77);
    EXPECT_EQ(synth.GetControls(4).wheel, 1 | 2 << 7);
    player->Seek(350'000);
    Run(1);
    EXPECT_EQ(synth.GetControls(4).controller[1], 0) << "reset all controllers";
    EXPECT_EQ(synth.GetControls(4).wheel, 0x2000);
    EXPECT_EQ(synth.GetControls(4).program, 20);
    player->Seek(50'000);
    Run(1);
    EXPECT_EQ(synth.GetControls(4).program, 10);
    EXPECT_EQ(synth.GetControls(4).controller[11], 50);
    EXPECT_THAT(Run(50), Contains(kOnLine));
    player->Seek(-5);
    EXPECT_EQ(GetMs(), 0);
    player->Seek(5'000'000);
    Run(1);
    EXPECT_EQ(GetState(), State::kStopped) << "there is nothing behind the end";
}

TEST_F(SongPlayback, ALoopIsPlayedAgainAndAgainWithoutANoteOrAMillisecondTooMany) {
    Play({{0, {0xC0, 5, 3, 0}}, {150, kOn}, {180, {0xB0, 5, 1, 9}}, {220, kOff}}, 1000);
    player->SetLoop(SongPlayer::Loop{100'000, 200'000});
    Run(151);
    EXPECT_TRUE(synth.IsPressed(4, 60));
    EXPECT_THAT(Run(49), ElementsAre("b4 01 09"));
    EXPECT_THAT(Run(1), IsSupersetOf({kEnded, std::string("b4 01 00"), std::string("c4 03")}));
    EXPECT_EQ(GetMs(), 100);
    for (int round = 0; round < 3; ++round) {
        EXPECT_THAT(Run(50), ElementsAre(kOnLine));
        Run(50);
        EXPECT_EQ(GetMs(), 100);
    }
    player->SetTempo(200);
    Run(75);
    EXPECT_EQ(GetMs(), 150);
    player->SetLoop(std::nullopt);
    EXPECT_THAT(Run(40), Contains(kOffLine));
}

TEST_F(SongPlayback, ALoopThatIsTooShortIsNoneAndOneBehindThePlaceIsLeft) {
    Play({{0, kOn}, {1, kOff}}, 1000);
    player->SetLoop(SongPlayer::Loop{100'000, 199'000});
    EXPECT_FALSE(player->GetStatus().loop);
    player->SetLoop(SongPlayer::Loop{900'000, 9'000'000});
    EXPECT_EQ(player->GetStatus().loop, (SongPlayer::Loop{900'000, 1'000'000}));
    player->SetLoop(SongPlayer::Loop{100'000, 300'000});
    player->Seek(500'000);
    Run(400);
    EXPECT_EQ(GetMs(), 899);
    player->Open(MakeSong({{0, kOn}}, 50));
    EXPECT_FALSE(player->GetStatus().loop);
}

TEST_F(SongPlayback, TheEndEndsWhatTheSongLeavesOpenAndGivesTheVoicesBack) {
    Engine().SetPatch(48, 0);
    Play({{0, {0xC0, 1, 7, 0}}, {1, {0xB0, 3, 66, 127}}, {2, kOn}, {50, {0xB0, 9, 69, 1}}});
    Run(40);
    EXPECT_TRUE(synth.IsSounding());
    Run(20);
    EXPECT_EQ(GetState(), State::kStopped);
    ExpectNothingSounds(synth);
    EXPECT_EQ(synth.GetControls(0).program, 48);
    EXPECT_THAT(Run(100), IsEmpty());
    player->Play();
    EXPECT_THAT(Run(10), Contains(kOnLine)) << "it begins anew";
}

TEST_F(SongPlayback, PanicStopAndTheEndOfTheProgramSilenceIt) {
    const std::vector<TimedMessage> song = {{0, {0xB0, 7, 64, 127}}, {0, kOn}, {5, {0x80, 5, 60, 0}}, {6, kOn}};
    const auto expectSilentAfter = [&](const char* what, auto action) {
        SCOPED_TRACE(what);
        Play(song, 1000);
        Run(10);
        EXPECT_TRUE(synth.IsSounding());
        action();
        rig.RunPlayer();
        ExpectNothingSounds(synth);
        EXPECT_NE(GetState(), State::kPlaying);
        Run(200);
        ExpectNothingSounds(synth);
    };
    expectSilentAfter("stop", [&] { player->Stop(); });
    expectSilentAfter("panic", [&] { controls->Panic(); });
    expectSilentAfter("fall silent", [&] { controls->FallSilent(); });
    expectSilentAfter("open another", [&] { player->Open(MakeSong({{0, kOn}})); });
    expectSilentAfter("close", [&] { controls->Close(); });
}

TEST_F(SongPlayback, ItsOwnNotesEndOnModesThatAreNotSent) {
    Engine().PlayNoteOn(64, 100);
    Play({{0, {0x90, 1, 60, 9}}, {5, {0xB0, 1, 123, 0}}, {6, {0xB0, 1, 122, 0}}, {7, {0xB0, 1, 126, 1}}}, 100);
    Run(1);
    EXPECT_THAT(Run(10), ElementsAre("80 3c 00"));
    EXPECT_TRUE(synth.IsPressed(0, 64)) << "a held key";
}

TEST_F(SongPlayback, WhatIsPlayedAndWhatThePlayerPlaysAreInTheTake) {
    Play({{0, {0xC0, 5, 30, 0}}, {100, kOn}, {200, kOff}}, 10000);
    Run(50);
    ASSERT_TRUE(controls->StartRecording());
    EXPECT_EQ(GetState(), State::kPlaying);
    rig.RunPlayer();
    Run(20);
    Engine().PlayNoteOn(72, 80);
    Run(20);
    Engine().PlayNoteOff(72);
    Run(200);
    ASSERT_TRUE(controls->StopRecording());
    Lines captured;
    Engine().GetCapture()->VisitCaptured(0, [&captured](const LibMidi::CapturedEvent& event) {
        captured.push_back(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)));
    });
    EXPECT_THAT(captured, IsSupersetOf({std::string("c4 1e"), kOnLine, kOffLine, std::string("90 48 50"),
                                        std::string("80 48 00")}));
    EXPECT_EQ(GetState(), State::kPlaying);
}

TEST_F(SongPlayback, WhatItPlaysIsNothingThatWasPlayedLastAndWhatIsPlayedAlongIsThereWhole) {
    const auto played = [this] {
        Lines lines;
        const auto content =
            Engine().WithExtras([](Kivora::EngineExtras& extras) { return extras.GetPlayed(); })->Get();
        for (const LibMidi::PlayedEvent& event : content.events) {
            lines.push_back(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)));
        }
        return lines;
    };
    Engine().WithExtras([](Kivora::EngineExtras& extras) {
        extras.KeepPlayed(false);
        extras.KeepPlayed(true);
    });
    Play({{0, {0xC0, 1, 30, 0}},
          {0, {0xB0, 1, 64, 127}},
          {10, {0x90, 1, 60, 100}},
          {50, {0x80, 1, 60, 0}},
          {60, {0xB0, 1, 64, 0}},
          {70, {0xB0, 1, 7, 9}}},
         100);
    Run(20);
    Engine().PlayNoteOn(60, 90);
    controls->SetSustain(true);
    Engine().PlayNoteOff(60);
    controls->SetSustain(false);
    Run(200);
    EXPECT_EQ(GetState(), State::kStopped);
    const Lines lines = played();
    Lines ofVoice;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(ofVoice),
                 [](const std::string& line) { return line.at(1) == '0'; });
    EXPECT_THAT(ofVoice, testing::UnorderedElementsAre("90 3c 5a", "80 3c 00", "b0 40 7f", "b0 40 00"));
    EXPECT_LT(std::find(ofVoice.begin(), ofVoice.end(), "90 3c 5a"),
              std::find(ofVoice.begin(), ofVoice.end(), "80 3c 00"));
}

TEST_F(SongPlayback, WhatIsOnlyListenedToIsInNoTakeAndWhatIsPlayedMeanwhileIs) {
    ASSERT_TRUE(controls->StartRecording());
    rig.RunPlayer();
    const std::uint32_t before = Engine().GetCapture()->GetCapturedCount();
    player->OpenToListen(
        MakeSong({{0, {0xC0, 1, 30, 0}}, {10, {0x90, 1, 60, 100}}, {50, {0x80, 1, 60, 0}}, {60, kOn}}, 100));
    ASSERT_TRUE(player->Play());
    EXPECT_THAT(Run(20), Contains("90 3c 64"));
    Engine().PlayNoteOn(60, 90);
    Engine().PlayNoteOff(60);
    Run(200);
    ExpectNothingSounds(synth);
    ASSERT_TRUE(controls->StopRecording());
    Lines captured;
    Engine().GetCapture()->VisitCaptured(before, [&captured](const LibMidi::CapturedEvent& event) {
        captured.push_back(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)));
    });
    EXPECT_THAT(captured, ElementsAre("90 3c 5a", "80 3c 00"));
    player->Open(MakeSong({{0, kOn}}, 100));
    ASSERT_TRUE(controls->StartRecording());
    ASSERT_TRUE(player->Play());
    Run(5);
    captured.clear();
    Engine().GetCapture()->VisitCaptured(0, [&captured](const LibMidi::CapturedEvent& event) {
        captured.push_back(ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0)));
    });
    EXPECT_THAT(captured, Contains(kOnLine)) << "the next song is recorded over";
}

TEST_F(SongPlayback, ARecordingThatBeginsInANoteEndsItAndHoldsTheSongUp) {
    Play({{0, kOn}, {300, kOff}}, 10000);
    Run(51);
    controls->StartRecording();
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_EQ(GetMs(), 50);
    Run(11);
    EXPECT_LE(GetMs(), 61) << "the quarter of a second of the reset is not caught up with";
}

TEST_F(SongPlayback, PausesWhereTheOutputIsLostAndGoesOnWhenItIsBack) {
    Play({{0, {0xC0, 5, 30, 0}}, {0, kOn}, {500, kOff}, {501, kOn}, {600, kOff}}, 10000);
    Run(20);
    rig.GetDevice(kSynth).failsToWrite = true;
    Engine().PlayNoteOn(64, 1);
    rig.Run(2);
    EXPECT_TRUE(Engine().IsOutputLost());
    EXPECT_EQ(GetState(), State::kPaused);
    EXPECT_FALSE(player->Play()) << "nothing would be heard";
    rig.GetDevice(kSynth).failsToWrite = false;
    ASSERT_TRUE(controls->ReopenOutput());
    Run(2);
    EXPECT_FALSE(synth.IsPressed(4, 60));
    EXPECT_TRUE(player->Play());
    Run(1);
    EXPECT_EQ(synth.GetControls(4).program, 30);
    Run(600);
    EXPECT_EQ(GetState(), State::kPlaying);
    EXPECT_FALSE(synth.IsPressed(4, 60));
}

TEST_F(SongPlayback, AnotherOutputGetsWhatTheSongHasSetAndTheFormerIsLeftSilent) {
    SynthModel other;
    rig.GetDevice(kOtherSynth).onWrite = [&other](const LibMidi::MIDIEvent& event) { other.Play(event); };
    Play({{0, {0xC0, 5, 30, 0}}, {0, kOn}, {5, {0x90, 6, 61, 1}}, {2000, kOff}}, 10000);
    Run(20);
    ASSERT_TRUE(controls->SetOutputPortByIndex(1));
    ExpectNothingSounds(synth);
    rig.Run(2);
    rig.RunPlayer();
    EXPECT_EQ(other.GetControls(4).program, 30);
    EXPECT_EQ(GetState(), State::kPlaying);
}

TEST_F(SongPlayback, AClockThatIsSetMovesNothing) {
    Play({{0, kOn}, {100, kOff}}, 10000);
    Run(51);
    EXPECT_EQ(GetMs(), 50);
    rig.time.SetMs(rig.time.GetTimeMs() - 100'000);
    Run(1);
    rig.time.SetMs(rig.time.GetTimeMs() + 100'000);
    Run(1);
    EXPECT_THAT(Run(49), IsEmpty());
    EXPECT_THAT(Run(2), ElementsAre(kOffLine));
}

TEST_F(SongPlayback, MoreThanADeviceCouldTakeAtOnceComesLaterAndWhole) {
    std::vector<TimedMessage> many;
    for (int i = 0; i < 1200; ++i) {
        many.push_back({10, {0xB0, 5, 1, static_cast<std::uint8_t>(i % 128)}});
    }
    many.push_back({11, kOn});
    Play(std::move(many), 1000);
    Run(10);
    EXPECT_EQ(Run(1).size(), 500U);
    EXPECT_EQ(Run(1).size(), 500U);
    EXPECT_EQ(Run(1).size(), 201U);
    EXPECT_TRUE(synth.IsPressed(4, 60));
}

TEST_F(SongPlayback, ThePianoIsToldOfNotesAndOfTheEndOfTheLastOfThem) {
    SignalLog shown{Engine()};
    Play({{0, kOn}, {1, {0x90, 6, 60, 2}}, {2, {0x90, 10, 60, 2}}, {3, {0xB0, 5, 64, 127}}, {4, kOff}}, 100);
    Run(5);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre(kOnLine, "95 3c 02")) << "the other one sounds on";
    player->SetTransposition(1);
    player->Stop();
    EXPECT_THAT(shown.TakeMessages(), Contains("85 3c 00"));
}

TEST_F(SongPlayback, TheUsersPedalStaysDownThroughAPause) {
    controls->SetSustain(true);
    Play({{0, {0xB0, 1, 64, 127}}, {10, {0xB0, 1, 64, 0}}, {20, {0xB0, 1, 64, 127}}}, 100);
    Run(50);
    player->Pause();
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPedalDown(0));
    controls->SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown());
}

TEST_F(SongPlayback, TheUsersPedalStaysDownWhereTheSongEndsOrLoopsOrDoesNotHoldIt) {
    controls->SetSustain(true);
    Play({{0, {0xB0, 1, 64, 127}}, {10, {0xB0, 1, 64, 0}}, {20, {0xB0, 1, 64, 127}}}, 100);
    Run(200);
    EXPECT_EQ(GetState(), State::kStopped);
    EXPECT_TRUE(synth.IsPedalDown(0)) << "given back at the end";
    Play({{0, kOn}, {500, {0xB0, 1, 64, 127}}}, 1000);
    player->SetLoop(SongPlayer::Loop{0, 200'000});
    Run(500);
    EXPECT_TRUE(synth.IsPedalDown(0)) << "the song does not hold it yet";
    player->Seek(300'000);
    Run(100);
    EXPECT_TRUE(synth.IsPedalDown(0));
    controls->SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown());
}

TEST_F(SongPlayback, APedalThatThePlayerHoldsTooGoesUpWithTheLastOfTheTwo) {
    Engine().SetInputPortByName(kKeyboard);
    for (const std::uint8_t pedal : std::array<std::uint8_t, 4>{64, 66, 67, 69}) {
        SCOPED_TRACE(static_cast<int>(pedal));
        const auto value = [&] { return synth.GetControls(0).controller[pedal]; };
        const auto press = [&](std::uint8_t to) {
            rig.GetKeyboard().Deliver(0xB0, pedal, to);
            rig.RunPlayer();
        };
        press(100);
        Play({{10, {0xB0, 1, pedal, 127}},
              {20, {0xB0, 1, pedal, 0}},
              {40, {0xB0, 1, pedal, 90}},
              {60, {0xB0, 1, 121, 0}},
              {80, {0xB0, 1, pedal, 80}},
              {120, {0xB0, 1, pedal, 0}}},
             2000);
        Run(15);
        EXPECT_EQ(value(), 127);
        Run(15);
        EXPECT_EQ(value(), 100) << "the song's is up";
        EXPECT_THAT(Run(20), IsEmpty()) << "below the player's";
        EXPECT_THAT(Run(20), Not(Contains("b0 79 00")));
        EXPECT_EQ(value(), 100) << "reset by the song";
        Run(20);
        press(0);
        EXPECT_EQ(value(), 80) << "the song holds it";
        Run(60);
        EXPECT_EQ(value(), 0);
        press(100);
        player->Stop();
        Run(1);
        EXPECT_EQ(value(), 100);
        press(0);
        EXPECT_EQ(value(), 0);
    }
}

TEST_F(SongPlayback, AResetOfTheSongUnderThePlayersPedalResetsAllElse) {
    controls->SetSustain(true);
    Play({{0, {0xE0, 1, 0, 9}},
          {0, {0xB0, 1, 1, 5}},
          {0, {0xB0, 1, 11, 6}},
          {0, {0xD0, 1, 7, 0}},
          {10, {0xB0, 1, 121, 0}},
          {100, {0xB0, 2, 1, 5}},
          {110, {0xB0, 3, 121, 0}}},
         2000);
    Run(20);
    EXPECT_TRUE(synth.IsPedalDown(0));
    EXPECT_EQ(synth.GetControls(0).wheel, 0x2000);
    EXPECT_EQ(synth.GetControls(0).controller[1], 0);
    EXPECT_EQ(synth.GetControls(0).controller[11], 127);
    EXPECT_EQ(synth.GetControls(0).pressure, 0);
    controls->SetSustain(false);
    EXPECT_THAT(Run(100), Contains("b2 79 00")) << "as it is where nobody holds a pedal";
}

TEST_F(SongPlayback, WhatItHasMovedGoesBackToWhereThePlayerHadItAndNothingElseIsTouched) {
    Engine().SetInputPortByName(kKeyboard);
    for (const auto& [status, first, second] :
         {std::array{0xB0, 1, 33}, {0xB0, 7, 44}, {0xB0, 74, 20}, {0xC0, 5, 0}, {0xE0, 1, 2}, {0xD0, 9, 0}}) {
        rig.GetKeyboard().Deliver(static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(first),
                                  static_cast<std::uint8_t>(second));
    }
    Run(1);
    Play({{0, {0xB0, 1, 1, 99}},
          {0, {0xB0, 1, 7, 98}},
          {0, {0xB0, 1, 10, 97}},
          {0, {0xC0, 1, 96, 0}},
          {0, {0xE0, 1, 0, 95}},
          {0, {0xD0, 1, 94, 0}}},
         1000);
    Run(10);
    EXPECT_EQ(synth.GetControls(0).controller[1], 99);
    player->Pause();
    Run(1);
    const auto expectAsBefore = [&](const SynthModel::Controls& found) {
        EXPECT_EQ(found.controller[1], 33);
        EXPECT_EQ(found.controller[7], 44);
        EXPECT_EQ(found.controller[10], 64) << "which the player has not moved";
        EXPECT_EQ(found.controller[74], 20);
        EXPECT_EQ(found.program, 5);
        EXPECT_EQ(found.wheel, 1 | 2 << 7);
        EXPECT_EQ(found.pressure, 9);
    };
    expectAsBefore(synth.GetControls(0));
    player->Play();
    EXPECT_THAT(Run(2000), Not(Contains(testing::HasSubstr("b0 4a"))));
    ASSERT_EQ(GetState(), State::kStopped);
    expectAsBefore(synth.GetControls(0));
}

TEST_F(SongPlayback, ParametersThatItHasChosenAndSetAreSetBackAndLeft) {
    Play({{0, {0xB0, 5, 99, 1}},
          {0, {0xB0, 5, 98, 8}},
          {1, {0xB0, 5, 6, 70}},
          {2, {0xB0, 5, 99, 120}},
          {3, {0xB0, 5, 98, 2}},
          {4, {0xB0, 5, 38, 3}},
          {5, {0xB0, 5, 6, 4}},
          {6, {0xB0, 5, 99, 30}},
          {7, {0xB0, 5, 98, 40}},
          {8, {0xB0, 5, 6, 9}},
          {20, {0xB0, 6, 101, 0}},
          {21, {0xB0, 6, 100, 5}},
          {22, {0xB0, 6, 6, 12}},
          {100, {0xB0, 5, 6, 10}}},
         1000);
    Run(200);
    player->Stop();
    const auto of = [](const Lines& all, const std::string& status) {
        std::string text;
        for (const std::string& line : all) {
            text += line.starts_with(status) ? line.substr(2) + "," : "";
        }
        return text;
    };
    const Lines rest = rig.TakeWritten();
    EXPECT_EQ(of(rest, "b4"), " 63 01, 62 08, 26 00, 06 40, 63 78, 62 02, 26 00, 06 40, 65 7f, 64 7f,")
        << "nobody knows where 30 rests";
    EXPECT_EQ(of(rest, "b5"), " 65 00, 64 05, 26 40, 06 00, 65 7f, 64 7f,");

    player->Seek(50'000);
    player->Play();
    const Lines there = Run(1);
    EXPECT_EQ(of(there, "b4"), " 63 01, 62 08, 06 46, 63 1e, 62 28, 06 09, 63 78, 62 02, 26 03, 06 04, 63 1e, 62 28,")
        << "as the next data expects it";
    EXPECT_EQ(of(there, "b5"), " 65 00, 64 05, 06 0c, 65 00, 64 05,");
}

TEST_F(SongPlayback, ANoteThatThePlayerHoldsTooEndsWithTheLastOfTheTwo) {
    const auto sounds = [this] { return synth.GetPressed(0)[60]; };
    Engine().PlayNoteOn(60, 90);
    Play({{10, {0x90, 1, 60, 100}}, {50, {0x80, 1, 60, 0}}}, 2000);
    EXPECT_THAT(Run(20), Contains("90 3c 64")) << "struck once more";
    Run(100);
    EXPECT_TRUE(sounds()) << "the key is down";
    Engine().PlayNoteOff(60);
    EXPECT_THAT(rig.TakeWritten(), Contains("80 3c 00"));
    EXPECT_FALSE(sounds());
    Play({{10, {0x90, 1, 60, 100}}, {100, {0x80, 1, 60, 0}}}, 2000);
    Run(20);
    Engine().PlayNoteOn(60, 90);
    Engine().PlayNoteOff(60);
    Run(20);
    EXPECT_TRUE(sounds()) << "the song plays it";
    Run(100);
    EXPECT_FALSE(sounds());
}

TEST_F(SongPlayback, AHeldKeySoundsThroughAPauseALoopAndAnotherPlace) {
    Play({{0, {0x90, 1, 60, 100}}, {0, {0xB0, 1, 123, 0}}, {10, {0x90, 1, 60, 100}}}, 2000);
    Engine().PlayNoteOn(60, 90);
    Run(20);
    player->Seek(1'000'000);
    Run(20);
    EXPECT_TRUE(synth.GetPressed(0)[60]);
    player->Seek(0);
    Run(20);
    player->Pause();
    Run(20);
    EXPECT_TRUE(synth.GetPressed(0)[60]);
    Engine().PlayNoteOff(60);
    Run(1);
    ExpectNothingSounds(synth);
}

TEST_F(SongPlayback, WhatIsEndedAtOneBlowIsHeldByNobody) {
    Play({{0, {0x90, 1, 60, 100}}, {100, {0x80, 1, 60, 0}}, {200, {0x90, 1, 60, 100}}, {300, {0x80, 1, 60, 0}}}, 2000);
    Run(20);
    Engine().AllNotesOff();
    Engine().PlayNoteOn(60, 90);
    Engine().PlayNoteOff(60);
    Run(1);
    EXPECT_FALSE(synth.IsSounding()) << "the song's is not to end any more";
    Engine().PlayNoteOn(60, 90);
    Engine().AllNotesOff();
    Run(200);
    EXPECT_TRUE(synth.IsSounding());
    Run(100);
    EXPECT_FALSE(synth.IsSounding()) << "the key's has ended";
}

TEST_F(SongPlayback, AKeyThatWentUpWithoutAnOutputHoldsNoNote) {
    Engine().PlayNoteOn(60, 90);
    Run(1);
    Engine().CloseOutputPort();
    Engine().PlayNoteOff(60);
    controls->SetOutputPortByIndex(0);
    Play({{0, {0x90, 1, 60, 100}}, {50, {0x80, 1, 60, 0}}}, 2000);
    Run(100);
    ExpectNothingSounds(synth);
}

TEST_F(SongPlayback, WhatTheSongHasSetOnADeviceThatFailedOnceIsSetBackWhenItIsOpenAgain) {
    Play({{0, {0xE0, 1, 0, 0x7F}}, {0, {0xB0, 1, 10, 1}}, {500, kOff}}, 10000);
    Run(20);
    rig.GetDevice(kSynth).failsToWrite = true;
    Engine().PlayNoteOn(64, 1);
    rig.Run(2);
    ASSERT_TRUE(Engine().IsOutputLost());
    rig.GetDevice(kSynth).failsToWrite = false;
    player->Open(nullptr);
    ASSERT_TRUE(controls->ReopenOutput());
    rig.Run(2);
    EXPECT_EQ(synth.GetControls(0).wheel, 0x2000);
    EXPECT_EQ(synth.GetControls(0).controller[10], 64);
}

TEST_F(SongPlayback, PausesWhereNobodyTakesWhatItPlays) {
    Play({{0, kOn}, {5000, kOff}}, 10000);
    Run(20);
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    EXPECT_ANY_THROW(controls->SetOutputPortByIndex(1));
    ASSERT_FALSE(Engine().IsOutputReady());
    rig.Run(10);
    EXPECT_EQ(GetState(), State::kPaused);
    EXPECT_FALSE(NeedsTick());
}

TEST_F(SongPlayback, TheStateAtAPlaceFarOnIsThatOfAllThatWasBefore) {
    std::vector<TimedMessage> messages;
    for (int i = 0; i < 20'000; ++i) {
        messages.push_back({i / 10, {0xB0, 5, static_cast<std::uint8_t>(i % 60), static_cast<std::uint8_t>(i % 128)}});
    }
    const auto song = MakeSong(messages);
    for (const std::size_t place : {0UL, 1UL, 8191UL, 8192UL, 8193UL, 16384UL, 19999UL, 20000UL}) {
        LibMidi::ChannelState state;
        for (std::size_t i = 0; i < place; ++i) {
            state.Follow(messages[i].message);
        }
        std::array<int, 120> expected{};
        std::array<int, 120> found{};
        state.VisitAll([&](NK::MIDI::TMIDIMessage message) { expected[message.data1] = message.data2; });
        song->VisitState(place, [&](NK::MIDI::TMIDIMessage message) { found[message.data1] = message.data2; });
        for (std::size_t i = 0; i < std::min<std::size_t>(place, 60); ++i) {
            EXPECT_EQ(found[i], expected[i]) << place << " " << i;
        }
    }
}

TEST_F(SongPlayback, TheTickAllocatesNothingOnceWarm) {
    std::vector<TimedMessage> notes;
    for (int i = 0; i < 2000; ++i) {
        const auto note = static_cast<std::uint8_t>(40 + i % 40);
        notes.push_back({i, {0x90, 5, note, 100}});
        notes.push_back({i + 5, {0x80, 5, note, 0}});
    }
    rig.GetDevice(kSynth).keepsWritten = false;
    Play(std::move(notes), 3000);
    player->SetLoop(SongPlayer::Loop{0, 200'000});
    rig.Run(500);
    const std::uint64_t before = GetAllocationCount();
    rig.Run(500);
    EXPECT_EQ(GetAllocationCount() - before, 0U);
}

TEST_F(SongPlayback, ATakeIsPlayedAsItWouldBeSaved) {
    ASSERT_TRUE(controls->StartRecording());
    rig.RunPlayer();
    rig.Run(700);
    Engine().PlayNoteOn(60, 100);
    rig.RunPlayer();
    rig.Run(250);
    Engine().PlayNoteOff(60);
    rig.RunPlayer();
    controls->StopRecording();
    player->Open(std::make_shared<const Song>(Engine().GetCapture()->GetCaptured()));
    EXPECT_EQ(player->GetStatus().lengthUs, 350'000) << "the silence before the first note is left out";
    ASSERT_TRUE(player->Play());
    EXPECT_THAT(Run(100), Not(Contains("90 3c 64")));
    EXPECT_THAT(Run(1), Contains("90 3c 64"));
    EXPECT_THAT(Run(249), IsEmpty());
    EXPECT_THAT(Run(1), Contains("80 3c 00"));
    EXPECT_EQ(GetState(), State::kStopped);
}

TEST(SongTest, WhatComesTooLateIsLeftOut) {
    NK::MIDI::SMFContent content;
    content.events = {{0, 0, 0, kOn}, {Song::kLongestUs, 1, 0, kOff}, {Song::kLongestUs + 1, 2, 0, kOn}};
    content.lengthUs = Song::kLongestUs * 9;
    const Song song(std::move(content));
    EXPECT_EQ(song.GetEvents().size(), 2U);
    EXPECT_EQ(song.GetLengthUs(), Song::kLongestUs);
}

TEST(Song, OfATakeWithNothingToPlayIsEmpty) {
    LibMidi::CaptureStore take;
    EXPECT_TRUE(Kivora::Song(take.GetView()).IsEmpty());
    take.Append({0, {NK::MIDI::TMIDIMessage::kSystemReset, 0, 0, 0}});
    EXPECT_TRUE(Kivora::Song(take.GetView()).IsEmpty());
    take.Append({100, {0x90, 1, 60, 100}});
    EXPECT_EQ(Kivora::Song(take.GetView()).GetEvents().size(), 2U) << "and what closes the track";
}
