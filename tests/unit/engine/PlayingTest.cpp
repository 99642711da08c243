// From a key to the output.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {
class Playing : public testing::Test {
protected:
    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    SignalLog signalLog{engine};

    std::vector<std::string> Written() { return rig.TakeWritten(); }
    std::vector<std::string> Shown() { return signalLog.TakeMessages(); }
    void SetVolume(int slot, int volume) {
        while (engine.GetVolume(slot) > volume) {
            engine.VolumeDown(slot);
        }
        while (engine.GetVolume(slot) < volume) {
            engine.VolumeUp(slot);
        }
        Forget();
    }
    void SetTranspose(int slot, int semitones) {
        for (int i = 0; i < semitones; ++i) {
            engine.TransposeUp(slot);
        }
        for (int i = 0; i > semitones; --i) {
            engine.TransposeDown(slot);
        }
        Forget();
    }
    void Forget() {
        Written();
        Shown();
        signalLog.Take();
    }
};
}  // namespace

TEST_F(Playing, ANoteGoesOutAndIsShownOnTheMainChannel) {
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    EXPECT_THAT(Written(), ElementsAre("90 3c 64"));
    engine.PlayNoteOff(60);
    EXPECT_THAT(Shown(), ElementsAre("80 3c 00"));
    EXPECT_THAT(Written(), ElementsAre("80 3c 00"));
}

TEST_F(Playing, TheShownEventIsRawAndTheDeliveredOneTransposedAndScaled) {
    SetTranspose(0, 2);
    SetVolume(0, 49);
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    EXPECT_THAT(Written(), ElementsAre("90 3e 31"));
}

TEST_F(Playing, SplitOnNote59GoesToSlot2AndNote60ToSlot0) {
    engine.SetSplit(true);
    Forget();
    engine.PlayNoteOn(59, 100);
    EXPECT_THAT(Shown(), ElementsAre("92 3b 64"));
    EXPECT_THAT(Written(), ElementsAre("92 3b 64"));
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    EXPECT_THAT(Written(), ElementsAre("90 3c 64"));
}

TEST_F(Playing, SplitOnNote59GoesToChannel9WithANegativeBassPatch) {
    engine.SetSplit(true);
    engine.SetPatch(-1, 2);
    Forget();
    engine.PlayNoteOn(59, 100);
    EXPECT_THAT(Shown(), ElementsAre("99 3b 64"));
    EXPECT_THAT(Written(), ElementsAre("99 3b 64"));
}

TEST_F(Playing, TheSplitPointIsWhereThePlayerPutsIt) {
    engine.SetSplit(true);
    engine.SetSplitPoint(48);
    Forget();
    engine.PlayNoteOn(47, 100);
    EXPECT_THAT(Written(), ElementsAre("92 2f 64"));
    engine.PlayPcKey(48, 2);
    EXPECT_THAT(Written(), ElementsAre("90 30 7f"));
    engine.SetSplitPoint(0);
    EXPECT_EQ(engine.GetSplitPoint(), 1);
    engine.SetSplitPoint(200);
    EXPECT_EQ(engine.GetSplitPoint(), 127);
}

TEST_F(Playing, ASplitPointThatMovesEndsWhatSoundsInSplitModeAlone) {
    engine.SetSplitPoint(55);
    EXPECT_THAT(Written(), IsEmpty());
    EXPECT_THAT(signalLog.Take(), ElementsAre("VoiceSettingsChanged"));
    engine.SetSplit(true);
    Forget();
    engine.SetSplitPoint(55);
    EXPECT_THAT(Written(), IsEmpty()) << "where it is";
    engine.SetSplitPoint(62);
    EXPECT_THAT(Written(), UnorderedElementsAre("b0 7b 00", "b1 7b 00", "b2 7b 00"));
}

TEST_F(Playing, TheSplitTestUsesTheUntransposedNote) {
    engine.SetSplit(true);
    SetTranspose(2, 5);
    engine.PlayNoteOn(59, 100);
    EXPECT_THAT(Written(), ElementsAre("92 40 64"));
}

TEST_F(Playing, SplitAndDualBothOnNotesBelow60PlaySlot2OnlyAndNotesFrom60PlaySlots0And1) {
    engine.SetSplit(true);
    engine.SetDual(true);
    Forget();
    engine.PlayNoteOn(59, 100);
    EXPECT_THAT(Written(), ElementsAre("92 3b 64"));
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Written(), UnorderedElementsAre("90 3c 64", "91 3c 64"));
}

TEST_F(Playing, TheDualLayerIsNeverShownAndTransposesThePlayedNote) {
    engine.SetDual(true);
    SetTranspose(0, 7);
    SetTranspose(1, -12);
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    EXPECT_THAT(Written(), UnorderedElementsAre("90 43 64", "91 30 64"));
    engine.PlayNoteOff(60);
    EXPECT_THAT(Shown(), ElementsAre("80 3c 00"));
    EXPECT_THAT(Written(), UnorderedElementsAre("80 43 00", "81 30 00"));
}

TEST_F(Playing, TransposePlus5OnNote125Gives118AndMinus3OnNote1Gives10) {
    SetTranspose(0, 5);
    engine.PlayNoteOn(125, 100);
    EXPECT_THAT(Written(), ElementsAre("90 76 64"));
    SetTranspose(0, -8);
    engine.PlayNoteOn(1, 100);
    EXPECT_THAT(Written(), ElementsAre("90 0a 64"));
}

TEST_F(Playing, ANegativePatchOnSlot1SendsItsDualNotesOnChannel9AndItsProgramChangeAsProgram0OnChannel9) {
    engine.SetDual(true);
    Forget();
    engine.SetPatch(-1, 1);
    EXPECT_THAT(Shown(), ElementsAre("c0 00", "c9 00", "c2 20"));
    EXPECT_THAT(Written(), UnorderedElementsAre("c0 00", "c9 00", "c2 20"));
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Written(), UnorderedElementsAre("90 3c 64", "99 3c 64"));
}

TEST_F(Playing, NotReadyPlayNoteOnStillEmitsAndSendsNothing) {
    engine.CloseOutputPort();
    Forget();
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    engine.SetOutputPortByName(kSynth);
    EXPECT_THAT(rig.TakeWritten(), testing::Not(testing::Contains("90 3c 64")));
}

TEST_F(Playing, KeyPressureIsScaledLikeAVelocity) {
    SetVolume(0, 49);
    engine.PlayAfterTouch(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("a0 3c 64"));
    EXPECT_THAT(Written(), ElementsAre("a0 3c 31"));
    engine.PlayAfterTouch(60, 1);
    EXPECT_THAT(Written(), ElementsAre("a0 3c 01"));
    engine.PlayAfterTouch(60, 0);
    EXPECT_THAT(Written(), ElementsAre("a0 3c 00"));
}

TEST_F(Playing, PcKeysPlayAtTheVelocityOfTheirLevel) {
    engine.PlayPcKey(60, 0);
    engine.PlayPcKey(60, 1);
    engine.PlayPcKey(60, 2);
    engine.PlayPcKey(60, 7);
    engine.PlayPcKey(60, -1);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 28", "90 3c 50", "90 3c 7f", "90 3c 50", "90 3c 50"));
}

TEST_F(Playing, VelocityLevelsAreKeptIn1To127WithoutASignal) {
    engine.SetVelocityLow(0);
    engine.SetVelocityNormal(64);
    engine.SetVelocityHigh(128);
    EXPECT_EQ(engine.GetVelocityLow(), 1);
    EXPECT_EQ(engine.GetVelocityNormal(), 64);
    EXPECT_EQ(engine.GetVelocityHigh(), 127);
    EXPECT_THAT(signalLog.Take(), IsEmpty());
}

TEST_F(Playing, TheSustainPedalGoesToAllThreeChannelsWhateverTheMode) {
    engine.SetSustain(true);
    EXPECT_THAT(Shown(), ElementsAre("b0 40 7f", "b1 40 7f", "b2 40 7f"));
    EXPECT_THAT(Written(), UnorderedElementsAre("b0 40 7f", "b1 40 7f", "b2 40 7f"));
    engine.SetSustain(false);
    EXPECT_THAT(Written(), UnorderedElementsAre("b0 40 00", "b1 40 00", "b2 40 00"));
}

TEST_F(Playing, AllNotesOffSendsController123OnEverySlotsChannel) {
    engine.SetPatch(-1, 1);
    Forget();
    engine.AllNotesOff();
    EXPECT_THAT(Shown(), ElementsAre("b0 7b 00", "b9 7b 00", "b2 7b 00"));
    EXPECT_THAT(Written(), UnorderedElementsAre("b0 7b 00", "b9 7b 00", "b2 7b 00"));
}

TEST_F(Playing, AllNotesOffForgetsWhatTheArpeggiatorsHold) {
    engine.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    engine.AllNotesOff();
    engine.EndTimedNotes();
    Forget();
    rig.Run(1000);
    EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(Playing, ChoosingAVoiceModeSendsTwoRoundsOfController123) {
    engine.SetDual(false);
    engine.SetSplit(false);
    EXPECT_THAT(Shown(), ElementsAre("b0 7b 00", "b1 7b 00", "b2 7b 00", "b0 7b 00", "b1 7b 00", "b2 7b 00"));
    EXPECT_EQ(Written().size(), 6U);
}

TEST_F(Playing, TransposeUpAt120StaysAndStillSendsAllNotesOff) {
    SetTranspose(0, 120);
    engine.TransposeUp(0);
    EXPECT_EQ(engine.GetTranspose(0), 120);
    EXPECT_THAT(Shown(), ElementsAre("b0 7b 00", "b1 7b 00", "b2 7b 00"));
    EXPECT_THAT(signalLog.Take(), ElementsAre("VoiceSettingsChanged"));
}

TEST_F(Playing, PrevPatchFrom0GivesPercussionAndFromThere127) {
    engine.PrevPatch(0);
    EXPECT_EQ(engine.GetPatch(0), -1);
    EXPECT_EQ(engine.VoiceChannel(0), 9);
    engine.PrevPatch(0);
    EXPECT_EQ(engine.GetPatch(0), 127);
    engine.NextPatch(0);
    EXPECT_EQ(engine.GetPatch(0), -1);
    engine.NextPatch(0);
    EXPECT_EQ(engine.GetPatch(0), 0);
}

TEST_F(Playing, APatchIsStoredAsGivenAndGoesOutIn7Bits) {
    engine.SetPatch(200, 0);
    EXPECT_EQ(engine.GetPatch(0), 200);
    EXPECT_THAT(Shown(), ElementsAre("c0 48", "c1 28", "c2 20"));
    EXPECT_THAT(signalLog.Take(), ElementsAre("PatchChanged"));
}

TEST_F(Playing, VolumeStepsBy3WithinItsRangeAndSendsTheSlotsVolume) {
    engine.VolumeUp(1);
    EXPECT_EQ(engine.GetVolume(1), 103);
    EXPECT_THAT(Shown(), ElementsAre("b1 07 67"));
    EXPECT_THAT(Written(), ElementsAre("b1 07 67"));
    EXPECT_THAT(signalLog.Take(), ElementsAre("VoiceSettingsChanged"));
    for (int i = 0; i < 20; ++i) {
        engine.VolumeUp(1);
    }
    EXPECT_EQ(engine.GetVolume(1), 127);
    for (int i = 0; i < 60; ++i) {
        engine.VolumeDown(1);
    }
    EXPECT_EQ(engine.GetVolume(1), 1);
}

TEST_F(Playing, SendVolumesNeedsAnOutput) {
    engine.SendVolumes();
    EXPECT_THAT(Shown(), ElementsAre("b0 07 64", "b1 07 64", "b2 07 64"));
    engine.CloseOutputPort();
    Shown();
    engine.SendVolumes();
    EXPECT_THAT(Shown(), IsEmpty());
    engine.SendPatches();
    EXPECT_THAT(Shown(), ElementsAre("c0 00", "c1 28", "c2 20"));
}

TEST_F(Playing, SetArpeggiatingDoesNothingWhenTheValueStays) {
    engine.SetArpeggiating(false);
    EXPECT_THAT(Shown(), IsEmpty());
    EXPECT_THAT(signalLog.Take(), IsEmpty());
    engine.SetArpeggiating(true);
    EXPECT_THAT(Shown(), ElementsAre("b0 7b 00", "b1 7b 00", "b2 7b 00"));
    EXPECT_THAT(signalLog.Take(), ElementsAre("ArpeggiatingChanged"));
}

TEST_F(Playing, AnArpeggiatorTakesItsVoicesNotesOver) {
    engine.SetArpeggiating(true);
    rig.Run(1);
    Forget();
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Shown(), ElementsAre("90 3c 64"));
    EXPECT_THAT(Written(), IsEmpty());
    rig.Run(260);
    EXPECT_THAT(Written(), ElementsAre("90 3c 64"));
}

TEST_F(Playing, ABypassedArpeggiatorLetsItsVoicesNotesThrough) {
    engine.SetArpeggiating(true);
    engine.SetDual(true);
    engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    rig.Run(1);
    Forget();
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(Written(), ElementsAre("90 3c 64"));
}

TEST_F(Playing, Slots1And2ShareArpeggiator1) {
    engine.SetArpeggiating(true);
    engine.SetSplit(true);
    engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    rig.Run(1);
    Forget();
    engine.PlayNoteOn(50, 100);
    EXPECT_THAT(Written(), IsEmpty());
    rig.Run(260);
    EXPECT_THAT(Written(), ElementsAre("92 32 64"));
}

TEST_F(Playing, AnArpeggiatorLetsMessagesThroughThatItDoesNotTakeOver) {
    engine.SetArpeggiating(true);
    Forget();
    engine.SetSustain(true);
    EXPECT_EQ(Written().size(), 3U);
}

TEST_F(Playing, AHeldChordIsPlayedOnTheGridOfTheClock) {
    engine.SetArpeggiating(true);
    for (const int note : {60, 64, 67}) {
        engine.PlayNoteOn(static_cast<std::uint8_t>(note), 100);
    }
    Forget();
    std::vector<std::string> steps;
    std::vector<int> times;
    rig.GetDevice(kSynth).onWrite = [&](const LibMidi::MIDIEvent& event) {
        if (event.status == 0x90) {
            steps.push_back(ToText(event));
            times.push_back(static_cast<int>(rig.time.GetTimeMs() % 1'000'000));
        }
    };
    engine.RestartClock();
    const int start = static_cast<int>(rig.time.GetTimeMs() % 1'000'000);
    rig.Run(1300);
    EXPECT_THAT(steps, ElementsAre("90 3c 64", "90 40 64", "90 43 64", "90 3c 64", "90 40 64"));
    for (int& time : times) {
        time -= start;
    }
    EXPECT_THAT(times, ElementsAre(249, 499, 749, 999, 1249)) << "half a tick early";
}

TEST_F(Playing, ResetSynthSilencesResetsAndSendsPatchesAndVolumesWithItsWaits) {
    signalLog.withMessages = true;
    const std::uint64_t before = rig.time.GetSleptMs();
    engine.ResetSynth();
    EXPECT_THAT(signalLog.Take(), ElementsAre("b0 7b 00", "b1 7b 00", "b2 7b 00", "ff", "SynthSet", "c0 00", "c1 28",
                                              "c2 20", "PatchChanged", "b0 07 64", "b1 07 64", "b2 07 64"));
    EXPECT_EQ(rig.time.GetSleptMs() - before, 150U);
}

TEST_F(Playing, ResetSynthEndsARecording) {
    ASSERT_TRUE(engine.StartRecording());
    engine.ResetSynth();
    EXPECT_FALSE(engine.IsRecording());
}

TEST_F(Playing, ASlotThatIsNoneThrowsAndChangesNothing) {
    EXPECT_THROW(engine.SetPatch(5, 3), NK::CBadIndexException);
    EXPECT_THROW(engine.NextPatch(-1), NK::CBadIndexException);
    EXPECT_THROW(engine.VolumeUp(3), NK::CBadIndexException);
    EXPECT_THROW(engine.TransposeUp(3), NK::CBadIndexException);
    EXPECT_THROW(engine.TransposeDown(-1), NK::CBadIndexException);
    EXPECT_THROW(static_cast<void>(engine.GetPatch(3)), NK::CBadIndexException);
    EXPECT_THROW(engine.WithArpeggiator(2, [](auto&) {}), NK::CBadIndexException);
    EXPECT_THAT(Shown(), IsEmpty());
}
