// What the controls of the engine do beside its own rules: places where a note could hang, one by one, and takes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/TakeJournal.h"
#include "libmidi/PlayedHistory.h"
#include "support/SynthModel.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class Controls : public testing::Test {
protected:
    Controls() {
        Listen(kSynth, synth);
        Listen(kOtherSynth, otherSynth);
        engine.SetInputPortByName(kKeyboard);
    }
    void Listen(const wchar_t* name, SynthModel& model) {
        rig.GetDevice(name).onWrite = [&model](const LibMidi::MIDIEvent& event) { model.Play(event); };
    }
    bool IsSounding() {
        rig.RunPlayer();
        return synth.IsSounding();
    }

    EngineRig rig;
    SynthModel synth;
    SynthModel otherSynth;
    Kivora::CKivora& engine = rig.CreateOpen();
    Kivora::EngineControls controls{engine};
};
}  // namespace

TEST_F(Controls, APatchChangeAcrossThePercussionBorderWithAKeyHeldLeavesNoNote) {
    for (const bool toPercussion : {true, false}) {
        engine.PlayNoteOn(60, 100);
        EXPECT_TRUE(IsSounding());
        controls.SetPatch(toPercussion ? -1 : 5, 0);
        EXPECT_FALSE(IsSounding());
        engine.PlayNoteOff(60);
        EXPECT_FALSE(IsSounding());
    }
}

TEST_F(Controls, SteppingThePatchAcrossThePercussionBorderLeavesNoNote) {
    engine.PlayNoteOn(60, 100);
    controls.PrevPatch(0);
    EXPECT_EQ(engine.GetPatch(0), -1);
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding());
    engine.PlayNoteOn(60, 100);
    controls.NextPatch(0);
    EXPECT_EQ(engine.GetPatch(0), 0);
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, APatchChangeAcrossThePercussionBorderWithThePedalHeldTakesThePedalAlong) {
    controls.SetSustain(true);
    engine.PlayNoteOn(60, 100);
    engine.PlayNoteOff(60);
    EXPECT_TRUE(IsSounding());
    controls.SetPatch(-1, 0);
    EXPECT_FALSE(IsSounding());
    EXPECT_FALSE(synth.IsPedalDown(0));
    EXPECT_TRUE(synth.IsPedalDown(9));
    controls.SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown());
}

TEST_F(Controls, APatchChangeThatStaysOnItsSideOfTheBorderLeavesTheNotesAlone) {
    engine.PlayNoteOn(60, 100);
    controls.SetPatch(5, 0);
    controls.NextPatch(0);
    EXPECT_TRUE(IsSounding());
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, ReplacingTheVoicesWithKeysHeldLeavesNoNote) {
    engine.PlayNoteOn(60, 100);
    rig.GetKeyboard().Deliver(0x90, 50, 100);
    EXPECT_TRUE(controls.ReplaceVoices([this] {
        EXPECT_FALSE(IsSounding()) << "silence comes first";
        engine.SetPatch(-1, 0);
        return true;
    }));
    rig.TakeWritten();
    engine.PlayNoteOff(60);
    rig.GetKeyboard().Deliver(0x80, 50, 0);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, ReplacingTheVoicesSendsTheVolumesAfterwardsAndPassesTheResultOn) {
    SignalLog shown(engine);
    EXPECT_FALSE(controls.ReplaceVoices([] { return false; }));
    const std::vector<std::string> messages = shown.TakeMessages();
    ASSERT_GE(messages.size(), 3U);
    EXPECT_THAT(std::vector<std::string>(messages.end() - 3, messages.end()),
                ElementsAre("b0 07 64", "b1 07 64", "b2 07 64"));
}

TEST_F(Controls, AGateOf0PercentFromAFileIsRaised) {
    controls.SetArpeggiating(true);
    controls.ReplaceVoices([this] {
        engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetDurationPercent(0); });
        return true;
    });
    engine.PlayNoteOn(60, 100);
    rig.Run(600);
    engine.PlayNoteOff(60);
    rig.Run(300);
    EXPECT_FALSE(IsSounding());
    EXPECT_EQ(engine.WithArpeggiator(0, [](auto& arpeggiator) { return arpeggiator.GetDurationPercent(); }),
              Kivora::EngineControls::kSmallestGatePercent);
    EXPECT_EQ(engine.WithArpeggiator(1, [](auto& arpeggiator) { return arpeggiator.GetDurationPercent(); }), 200.0);
}

TEST_F(Controls, SwitchingAnArpeggiatorOnOrOffWithKeysHeldLeavesNoNote) {
    controls.SetArpeggiating(true);
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    engine.PlayNoteOn(60, 100);
    EXPECT_TRUE(IsSounding());
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(false); });
    EXPECT_FALSE(IsSounding());
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding()) << "the arpeggiator has taken the note-off over";
    engine.PlayNoteOn(60, 100);
    rig.Run(300);
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    rig.Run(1000);
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, OtherChangesOfAnArpeggiatorLeaveTheNotesAlone) {
    engine.PlayNoteOn(60, 100);
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetDirection(3); });
    EXPECT_TRUE(IsSounding());
}

TEST_F(Controls, AnOutputPortChangeWithKeysHeldLeavesNoNoteOnEitherPort) {
    engine.PlayNoteOn(60, 100);
    rig.GetKeyboard().Deliver(0x90, 50, 100);
    EXPECT_TRUE(IsSounding());
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    EXPECT_FALSE(synth.IsSounding());
    engine.PlayNoteOff(60);
    rig.RunPlayer();
    EXPECT_FALSE(otherSynth.IsSounding());
}

TEST_F(Controls, AnOutputPortChangeWithThePedalHeldLiftsItOnTheOldPort) {
    controls.SetSustain(true);
    engine.PlayNoteOn(60, 100);
    controls.SetOutputPortByIndex(1);
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_FALSE(synth.IsPedalDown());
    rig.RunPlayer();
    EXPECT_TRUE(otherSynth.IsPedalDown());
    controls.SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(otherSynth.IsPedalDown());
}

TEST_F(Controls, ThePedalPressedAndLiftedWithoutAnOutputIsUpOnTheNextOne) {
    engine.CloseOutputPort();
    for (int i = 0; i < 10; ++i) {
        controls.SetSustain(true);
        controls.SetSustain(false);
    }
    controls.SetOutputPortByIndex(1);
    rig.RunPlayer();
    EXPECT_FALSE(otherSynth.IsPedalDown());
}

TEST_F(Controls, APedalThatIsDownWhereAnOutputDoesNotOpenIsDownOnTheNextOne) {
    controls.SetSustain(true);
    controls.SetWheel(Kivora::EWheel::kModulation, 90);
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    EXPECT_THROW(controls.SetOutputPortByIndex(1), NK::CException);
    controls.SetOutputPortByIndex(0);
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPedalDown(0));
    EXPECT_EQ(synth.GetControls(0).controller[1], 90);
    controls.SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown());
}

TEST_F(Controls, ArpeggiatedNotesOnAnyChannelEndBeforeAnOutputIsClosed) {
    controls.SetArpeggiating(true);
    // A half note at 40 beats per minute: longer than all waits of a port change.
    engine.SetTempo(40);
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetNoteStep(384, 100); });
    rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) {
        // A channel that no voice has, which controller 123 does not reach.
        LibMidi::MIDIEvent moved = event;
        if ((event.status & 0xF0) == 0x90 || (event.status & 0xF0) == 0x80) {
            moved.status = static_cast<std::uint8_t>((event.status & 0xF0) | 5);
        }
        synth.Play(moved);
    };
    engine.PlayNoteOn(60, 100);
    rig.Run(3100);
    EXPECT_TRUE(synth.IsSounding());
    controls.SetOutputPortByIndex(1);
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(Controls, WhatTheSostenutoPedalKeepsEndsWhereverNotesAreEnded) {
    const auto keep = [this] {
        rig.GetKeyboard().Deliver(0x90, 60, 100);
        rig.GetKeyboard().Deliver(0xB0, 66, 127);
        rig.GetKeyboard().Deliver(0x80, 60, 0);
        EXPECT_TRUE(IsSounding());
        EXPECT_TRUE(synth.IsSostenutoDown());
    };
    const auto expectSilence = [this](const char* after) {
        EXPECT_FALSE(IsSounding()) << after;
        EXPECT_FALSE(synth.IsSostenutoDown()) << after;
    };
    keep();
    controls.SetPatch(-1, 0);
    expectSilence("a patch change across the percussion border");
    keep();
    controls.AllNotesOff();
    expectSilence("all notes off");
    keep();
    controls.Panic();
    expectSilence("a panic");
    keep();
    rig.GetKeyboard().Lose(1);
    expectSilence("a loss");
    keep();
    controls.SetInputPortByIndex(1);
    expectSilence("another input");
    controls.SetInputPortByIndex(0);
    keep();
    controls.SetOutputPortByIndex(1);
    expectSilence("another output");
    controls.SetOutputPortByIndex(0);
    keep();
    controls.Close();
    expectSilence("closing");
}

TEST_F(Controls, AnInputPortChangeEndsTheKeysThatTheOldInputHolds) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    engine.PlayNoteOn(70, 100);
    EXPECT_TRUE(controls.SetInputPortByIndex(1));
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPressed(0, 60));
    EXPECT_FALSE(synth.IsPedalDown());
    EXPECT_TRUE(synth.IsPressed(0, 70)) << "the keys of other sources go on";
}

TEST_F(Controls, ChoosingTheSameInputLeavesItsKeysAlone) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    EXPECT_TRUE(controls.SetInputPortByIndex(0));
    EXPECT_TRUE(IsSounding());
}

TEST_F(Controls, ARescanWithKeysHeldLeavesNoNote) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    engine.PlayNoteOn(70, 100);
    EXPECT_TRUE(controls.RescanPorts());
    EXPECT_FALSE(IsSounding());
    EXPECT_TRUE(engine.IsOutputReady());
}

TEST_F(Controls, ARescanWhileRecordingIsRefusedAndSilencesNothing) {
    controls.StartRecording();
    engine.PlayNoteOn(70, 100);
    EXPECT_FALSE(controls.RescanPorts());
    EXPECT_TRUE(IsSounding());
}

TEST_F(Controls, APedalThatIsDownWhenARecordingStartsGoesDownAgainInTheRecording) {
    controls.SetSustain(true);
    rig.TakeWritten();
    ASSERT_TRUE(controls.StartRecording());
    rig.RunPlayer();
    EXPECT_THAT(rig.TakeWritten(), testing::IsSupersetOf({"b0 40 7f", "b1 40 7f", "b2 40 7f"}));
    EXPECT_EQ(engine.GetRecordedCount(), 9) << "patches, volumes and the pedal";
    EXPECT_FALSE(controls.StartRecording());
    rig.RunPlayer();
    EXPECT_EQ(engine.GetRecordedCount(), 9);
}

TEST_F(Controls, ASavedOutputThatFailsDoesNotCostTheInput) {
    engine.CloseInputPort();
    engine.SetSavedOutputPortName(kOtherSynth);
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    try {
        controls.OpenPorts();
        ADD_FAILURE() << "nothing thrown";
    } catch (const NK::CException& failure) {
        EXPECT_STREQ(failure.GetMessage(), L"Failed to open output MIDI port.");
    }
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

TEST_F(Controls, AFirstInputThatFailsDoesNotCostTheOutput) {
    controls.Close();
    engine.CloseOutputPort();
    engine.SetSavedInputPortName(NK::CString());
    engine.SetSavedOutputPortName(NK::CString());
    rig.backend.defaultInput = kKeyboard;
    rig.GetDevice(kKeyboard).failsToOpen = true;
    try {
        controls.OpenPorts();
        ADD_FAILURE() << "nothing thrown";
    } catch (const NK::CException& failure) {
        EXPECT_STREQ(failure.GetMessage(), L"Failed to open input MIDI port: Keyboard");
    }
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_TRUE(engine.IsOutputReady());
}

// A port that was lost.

TEST_F(Controls, InPlaceOfALostOutputTheDevicesAreLookedForFirst) {
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    ASSERT_TRUE(engine.IsOutputLost());
    rig.backend.Unplug(kSynth);
    const int created = rig.backend.created;
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    EXPECT_EQ(rig.backend.created, created + 1);
    EXPECT_EQ(engine.GetOutputPortName(), kOtherSynth);
    EXPECT_EQ(engine.GetOutputPortIndex(), 0) << "its place in the new list";
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
    rig.TakeWritten(kOtherSynth);
    rig.GetKeyboard().Deliver(0x90, 62, 100);
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), ElementsAre("90 3e 64"));
}

TEST_F(Controls, ThePedalOfTheInputIsUpOnTheOutputInPlaceOfALostOne) {
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    rig.RunPlayer();
    EXPECT_FALSE(otherSynth.IsPedalDown()) << "the input was opened anew and would never lift it";
}

TEST_F(Controls, ALostOutputComesBackUnderItsName) {
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.backend.Unplug(kSynth);
    EXPECT_FALSE(controls.SetOutputPortByIndex(0)) << "it is not back yet";
    EXPECT_EQ(engine.GetOutputPortName(), kSynth) << "and stays the saved one";
    EXPECT_FALSE(controls.SetOutputPortByIndex(5));
    Listen(rig.backend.Plug(kSynth, LibMidi::kOutput).name.c_str(), synth);
    EXPECT_TRUE(controls.RescanPorts());
    EXPECT_TRUE(engine.IsOutputReady());
    EXPECT_EQ(engine.GetOutputPortIndex(), 1);
}

TEST_F(Controls, WhenTheReplacementOfALostOutputFailsTheSavedNameStays) {
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    EXPECT_THROW(controls.SetOutputPortByIndex(1), NK::CException);
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

TEST_F(Controls, ClosingSilencesFirstAndLetsThePlayerWriteIt) {
    engine.PlayNoteOn(60, 100);
    controls.SetSustain(true);
    rig.GetKeyboard().Deliver(0x90, 50, 100);
    EXPECT_TRUE(IsSounding());
    controls.Close();
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_FALSE(synth.IsPedalDown());
    EXPECT_FALSE(rig.GetDevice(kKeyboard).isOpen);
}

TEST_F(Controls, NoNoteOnIsOvertakenByAController123QueuedAfterIt) {
    for (const bool split : {true, false}) {
        for (int note = 40; note < 60; ++note) {
            engine.PlayNoteOn(static_cast<std::uint8_t>(note), 100);
        }
        controls.SetVoiceMode(false, split);
        EXPECT_FALSE(IsSounding());
    }
    for (int note = 40; note < 80; ++note) {
        engine.PlayNoteOn(static_cast<std::uint8_t>(note), 100);
    }
    controls.TransposeUp(0);
    EXPECT_FALSE(IsSounding());
    for (int note = 40; note < 80; ++note) {
        engine.PlayNoteOn(static_cast<std::uint8_t>(note), 100);
    }
    controls.SetArpeggiating(true);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, APedalThatSpaceAndTheKeyboardHoldGoesUpWithTheLastOfThem) {
    const auto isDown = [this] {
        rig.RunPlayer();
        return synth.IsPedalDown(0);
    };
    controls.SetSustain(true);
    rig.GetKeyboard().Deliver(0xB0, 64, 90);
    rig.GetKeyboard().Deliver(0xB0, 64, 30);
    rig.GetKeyboard().Deliver(0xB0, 64, 0);
    EXPECT_TRUE(isDown()) << "Space holds it";
    rig.GetKeyboard().Deliver(0xB0, 64, 90);
    controls.SetSustain(false);
    EXPECT_TRUE(isDown()) << "the keyboard holds it";
    EXPECT_EQ(synth.GetControls(0).controller[64], 90);
    rig.GetKeyboard().Deliver(0xB0, 64, 0);
    EXPECT_FALSE(isDown());
}

TEST_F(Controls, AKeyboardThatIsLostWithItsPedalDownLeavesThePedalToSpace) {
    controls.SetSustain(true);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    rig.GetKeyboard().Lose(1);
    rig.TakeWritten();
    EXPECT_TRUE(synth.IsPedalDown(0));
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    ASSERT_TRUE(controls.SetInputPortByIndex(1));
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    EXPECT_TRUE(synth.IsPedalDown(0));
    controls.SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown(0));
}

TEST_F(Controls, WhoHeldThePedalBeforeAPanicHoldsItNoMore) {
    controls.SetSustain(true);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    controls.Panic();
    controls.SetSustain(true);
    controls.SetSustain(false);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown(0));
    controls.SetSustain(true);
    rig.GetKeyboard().Deliver(0xB0, 121, 0);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown(0));
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPedalDown(0));
}

TEST_F(Controls, ANoteThatIsTriedSoundsOnItsVoiceAloneAndEndsNoneThatIsPlayed) {
    controls.SetVoiceMode(true, false);
    controls.TransposeUp(1);
    rig.TakeWritten();
    controls.HearNote(1, 60, 90);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("91 3d 5a"));
    controls.HearNote(0, 60, 91);
    EXPECT_THAT(rig.TakeWritten(), testing::UnorderedElementsAre("81 3d 00", "90 3c 5b"));
    engine.PlayNoteOn(60, 100);
    rig.TakeWritten();
    controls.EndHeardNote();
    EXPECT_THAT(rig.TakeWritten(), IsEmpty()) << "a key is down";
    engine.PlayNoteOff(60);
    EXPECT_FALSE(IsSounding());
    rig.TakeWritten();
    controls.EndHeardNote();
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Controls, ANoteThatIsTriedIsNothingThatWasPlayed) {
    ASSERT_TRUE(controls.StartRecording());
    rig.RunPlayer();
    const auto countKept = [this] {
        return engine.WithExtras([](Kivora::EngineExtras& extras) { return extras.GetPlayed(); })->Get().events.size();
    };
    const std::size_t kept = countKept();
    const int recorded = engine.GetRecordedCount();
    controls.HearNote(0, 60, 90);
    EXPECT_TRUE(IsSounding());
    controls.EndHeardNote();
    EXPECT_FALSE(IsSounding());
    EXPECT_EQ(countKept(), kept);
    EXPECT_EQ(engine.GetRecordedCount(), recorded);
}

TEST_F(Controls, APatchThatWasSteppedToIsUsedAsSoonAsItIsPlayed) {
    const auto lastUsed = [this] {
        return engine.WithExtras([](const Kivora::EngineExtras& extras) { return extras.patches.GetLastUsed(); });
    };
    const auto play = [this](std::uint8_t note) {
        engine.PlayNoteOn(note, 90);
        engine.PlayNoteOff(note);
    };
    controls.SetPatch(10, 0);
    controls.SetPatch(30, 1);
    play(60);
    EXPECT_THAT(lastUsed(), IsEmpty());
    controls.NextPatch(0);
    controls.NextPatch(0);
    controls.PrevPatch(1);
    EXPECT_THAT(lastUsed(), IsEmpty()) << "it may be passed";
    play(60);
    EXPECT_THAT(lastUsed(), ElementsAre(12)) << "the second voice is silent";
    controls.SetVoiceMode(true, false);
    play(60);
    EXPECT_THAT(lastUsed(), ElementsAre(29, 12));
    controls.NextPatch(0);
    controls.SetPatch(40, 0);
    play(60);
    EXPECT_THAT(lastUsed(), ElementsAre(29, 12)) << "another one came in its place";
}

TEST_F(Controls, QuickPedalMovementsKeepTheirOrder) {
    for (int i = 0; i < 20; ++i) {
        controls.SetSustain(true);
        controls.SetSustain(false);
    }
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsPedalDown());
}

TEST_F(Controls, AfterAPanicNothingSoundsAndThePedalIsUp) {
    controls.SetSustain(true);
    controls.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    rig.Run(300);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    EXPECT_TRUE(synth.IsSounding());
    controls.Panic();
    EXPECT_FALSE(IsSounding());
    EXPECT_FALSE(synth.IsPedalDown());
    rig.Run(1000);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Controls, AllNotesOffEndsWhatThePedalHoldsAndKeepsThePedal) {
    controls.SetSustain(true);
    engine.PlayNoteOn(60, 100);
    controls.AllNotesOff();
    EXPECT_FALSE(IsSounding());
    EXPECT_TRUE(synth.IsPedalDown());
}

TEST_F(Controls, NothingWaitsWhenNothingIsQueued) {
    rig.RunPlayer();
    const std::uint64_t before = rig.time.GetSleptMs();
    controls.SetSustain(true);
    rig.RunPlayer();
    controls.SetVoiceMode(true, false);
    rig.RunPlayer();
    controls.TransposeUp(0);
    EXPECT_EQ(rig.time.GetSleptMs(), before);
}

TEST_F(Controls, SettlingGivesUpWhenThePlayerStandsStill) {
    rig.time.onSleep = nullptr;
    engine.PlayNoteOn(60, 100);
    const std::uint64_t before = rig.time.GetSleptMs();
    EXPECT_FALSE(engine.SettleOutput());
    EXPECT_EQ(rig.time.GetSleptMs() - before, static_cast<std::uint64_t>(Kivora::CKivora::kSettleLimitMs));
}

TEST_F(Controls, WhatWasPlayedBeforeItIsSavedIsInARecordingThatRuns) {
    ASSERT_TRUE(controls.StartRecording());
    rig.RunPlayer();
    const int captured = engine.GetRecordedCount();
    engine.PlayNoteOn(60, 100);
    EXPECT_TRUE(controls.SaveRecording(NK::CString::FromUtf8((rig.folder / "take.mid").native())));
    EXPECT_FALSE(engine.IsRecording());
    EXPECT_EQ(engine.GetRecordedCount(), captured + 1);
}

TEST_F(Controls, ATakeIsKeptUntilItIsSavedOrRefused) {
    EXPECT_EQ(controls.GetTakes(), nullptr);
    controls.KeepTakes(NK::CString::FromUtf8((rig.folder / "Takes").native()));
    const auto record = [this] {
        controls.StartRecording();
        engine.PlayNoteOn(60, 100);
        engine.PlayNoteOff(60);
        controls.StopRecording();
        return controls.GetTakes()->GetLatest();
    };
    const int saved = record();
    ASSERT_NE(saved, 0);
    const std::filesystem::path path = rig.folder / "take.mid";
    EXPECT_TRUE(controls.SaveTake(saved, NK::CString::FromUtf8(path.native()), false));
    EXPECT_TRUE(std::filesystem::exists(path));
    const int refused = record();
    ASSERT_NE(refused, saved);
    EXPECT_TRUE(controls.RefuseTake(refused));
    EXPECT_FALSE(controls.SaveLatestTake(NK::CString::FromUtf8((rig.folder / "none" / "take.mid").native()), false));
    EXPECT_THAT(controls.GetTakes()->GetWaiting(), IsEmpty());
}

TEST_F(Controls, TakesThatAreKeptAnewAreThoseThatWaited) {
    const NK::CString folder = NK::CString::FromUtf8((rig.folder / "Takes").native());
    controls.KeepTakes(folder);
    controls.StartRecording();
    engine.PlayNoteOn(60, 100);
    controls.StopRecording();
    controls.KeepTakes(folder);
    ASSERT_THAT(controls.GetTakes()->GetWaiting(), testing::SizeIs(1));
    EXPECT_TRUE(controls.GetTakes()->GetWaiting().front().isFromEarlierRun);
    EXPECT_THAT(controls.TakeLostJournals(), IsEmpty());
}
