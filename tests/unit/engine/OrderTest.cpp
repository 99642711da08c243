// What is sent between two rounds of the player is written in order where the order matters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/EngineControls.h"
#include "support/SynthModel.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;

namespace {

constexpr int kCentre = 0x2000;

class Order : public testing::Test {
protected:
    Order() {
        rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) { synth.Play(event); };
        engine.SetInputPortByName(kKeyboard);
        rig.TakeWritten();
    }
    void Deliver(std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
        rig.GetKeyboard().Deliver(status, data1, data2);
    }
    std::uint8_t GetController(int channel, std::size_t number) {
        return synth.GetControls(channel).controller[number];
    }

    EngineRig rig;
    SynthModel synth;
    Kivora::CKivora& engine = rig.CreateOpen();
    Kivora::EngineControls controls{engine};
};

}  // namespace

TEST_F(Order, AWheelThatSpringsBackEndsCentredOnTheChannelsOfAllVoices) {
    controls.SetVoiceMode(true, false);
    for (int from = 1; from < 20; ++from) {
        for (int i = from; i >= 0; --i) {
            Deliver(0xE0, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(64 + i));
        }
        rig.RunPlayer();
        for (int channel = 0; channel < 3; ++channel) {
            ASSERT_EQ(synth.GetControls(channel).wheel, kCentre) << "channel " << channel << " after " << from;
        }
    }
}

TEST_F(Order, TheLastValueOfAControllerAndOfThePressureStands) {
    for (std::uint8_t value = 127; value > 0; --value) {
        Deliver(0xB0, 1, value);
        Deliver(0xB0, 64, value);
        Deliver(0xD0, value);
        Deliver(0xA0, 60, value);
    }
    rig.RunPlayer();
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(GetController(channel, 1), 1);
        EXPECT_EQ(GetController(channel, 64), 1);
        EXPECT_EQ(synth.GetControls(channel).pressure, 1);
    }
    EXPECT_EQ(synth.GetControls(0).keyPressure[60], 1);
}

TEST_F(Order, AllThatHasComeIsWrittenInTheNextRound) {
    const std::uint64_t slept = rig.time.GetSleptMs();
    for (int i = 0; i < 50; ++i) {
        Deliver(0xE0, 0, static_cast<std::uint8_t>(i));
        Deliver(0xB0, 64, static_cast<std::uint8_t>(i));
    }
    EXPECT_EQ(rig.time.GetSleptMs(), slept) << "nobody waits for the player";
    EXPECT_EQ(rig.TakeWritten().size(), 300U);
}

TEST_F(Order, AKeyThatIsStruckAgainAtOnceSounds) {
    for (int i = 0; i < 5; ++i) {
        engine.PlayNoteOn(60, 100);
        rig.RunPlayer();
        engine.PlayNoteOff(60);
        engine.PlayNoteOn(60, 100);
        rig.RunPlayer();
        EXPECT_TRUE(synth.IsPressed(0, 60));
        Deliver(0x90, 62, 100);
        Deliver(0x80, 62, 0);
        Deliver(0x90, 62, 100);
        rig.RunPlayer();
        EXPECT_TRUE(synth.IsPressed(0, 62));
        engine.PlayNoteOff(60);
        Deliver(0x80, 62, 0);
        rig.RunPlayer();
        EXPECT_FALSE(synth.IsSounding());
    }
}

TEST_F(Order, AKeyStruckWhileTheEngineIsBusySounds) {
    Deliver(0x90, 60, 100);
    rig.RunPlayer();
    ASSERT_TRUE(controls.StartRecording());
    // What the input's thread hands over in one piece when the engine's lock is free again.
    engine.StopRecording();
    rig.GetKeyboard().Deliver(
        {{0, 0x80, 60, 0}, {0, 0xE0, 10, 70}, {0, 0xE0, 5, 66}, {0, 0xE0, 0, 64}, {0, 0x90, 60, 100}});
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPressed(0, 60));
    EXPECT_EQ(synth.GetControls(0).wheel, kCentre);
}

TEST_F(Order, ABankComesBeforeItsProgramAndAProgramBeforeItsNotes) {
    rig.GetKeyboard().Deliver({{0, 0xB0, 0, 1},
                               {0, 0xB0, 32, 2},
                               {0, 0xC0, 3, 0},
                               {0, 0xB0, 0, 4},
                               {0, 0xB0, 32, 5},
                               {0, 0xC0, 6, 0},
                               {0, 0x90, 60, 100}});
    const std::vector<std::string> written = rig.TakeWritten();
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(synth.GetControls(channel).program, 6);
        EXPECT_THAT(synth.GetControls(channel).bank, ElementsAre(4, 5));
    }
    const auto place = [&written](const char* message) {
        return std::find(written.begin(), written.end(), message) - written.begin();
    };
    EXPECT_LT(place("c0 06"), place("90 3c 64"));
}

TEST_F(Order, AParameterNumberComesBeforeItsData) {
    rig.GetKeyboard().Deliver({{0, 0xB0, 101, 0},
                               {0, 0xB0, 100, 0},
                               {0, 0xB0, 6, 12},
                               {0, 0xB0, 38, 0},
                               {0, 0xB0, 101, 127},
                               {0, 0xB0, 100, 127}});
    std::vector<std::string> first;
    for (const std::string& message : rig.TakeWritten()) {
        if (message.starts_with("b0")) {
            first.push_back(message);
        }
    }
    EXPECT_THAT(first, ElementsAre("b0 65 00", "b0 64 00", "b0 06 0c", "b0 26 00", "b0 65 7f", "b0 64 7f"));
}

TEST_F(Order, TheDialsLastClickIsWhatSounds) {
    for (int clicks = 1; clicks < 12; ++clicks) {
        for (int i = 0; i < clicks; ++i) {
            controls.NextPatch(0);
            controls.NextPatch(1);
            engine.VolumeDown(0);
        }
        rig.RunPlayer();
        EXPECT_EQ(synth.GetControls(0).program, engine.GetPatch(0)) << clicks << " clicks";
        EXPECT_EQ(synth.GetControls(1).program, engine.GetPatch(1)) << clicks << " clicks";
        EXPECT_EQ(GetController(0, 7), engine.GetVolume(0)) << clicks << " clicks";
    }
}

TEST_F(Order, ControllersThatEndNotesEndOnlyThoseBeforeThem) {
    for (const std::uint8_t controller : {std::uint8_t{120}, std::uint8_t{123}}) {
        rig.GetKeyboard().Deliver(
            {{0, 0x90, 60, 100}, {0, 0x90, 61, 100}, {0, 0xB0, controller, 0}, {0, 0x90, 62, 100}});
        rig.RunPlayer();
        EXPECT_FALSE(synth.IsPressed(0, 60)) << int(controller);
        EXPECT_FALSE(synth.IsPressed(0, 61)) << int(controller);
        EXPECT_TRUE(synth.IsPressed(0, 62)) << int(controller);
    }
    rig.GetKeyboard().Deliver({{0, 0xB0, 64, 127}, {0, 0xB0, 121, 0}, {0, 0xB0, 64, 100}});
    rig.RunPlayer();
    EXPECT_EQ(GetController(0, 64), 100);
}

TEST_F(Order, AKeyReleasedBeforeThePedalGoesDownIsNotKept) {
    for (int i = 0; i < 4; ++i) {
        rig.GetKeyboard().Deliver({{0, 0x90, 60, 100}, {0, 0x80, 60, 0}, {0, 0xB0, 64, 127}});
        rig.RunPlayer();
        EXPECT_FALSE(synth.IsSounding());
        rig.GetKeyboard().Deliver({{0, 0x90, 60, 100}, {0, 0x80, 60, 0}, {0, 0xB0, 64, 0}});
        rig.RunPlayer();
        EXPECT_FALSE(synth.IsSounding());
    }
}

TEST_F(Order, AStepOfAnArpeggioEndsNoKeyOfAnotherVoiceStruckAfterIt) {
    // The percussion kit is one channel for all voices: what arpeggiator 0 plays ends the bypassed voice's note.
    controls.SetVoiceMode(true, false);
    controls.SetPatch(-1, 0);
    controls.SetPatch(-1, 1);
    controls.ChangeArpeggiator(1, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    controls.SetArpeggiating(true);
    rig.RunPlayer();
    engine.PlayNoteOn(60, 100);
    rig.Run(300);
    ASSERT_TRUE(synth.IsPressed(9, 60));
    // One round: the arpeggio's note ends by its time, and the key is struck again.
    engine.EndTimedNotes();
    engine.PlayNoteOff(60);
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPressed(9, 60));
}

TEST_F(Order, AnotherSinkKeepsTheOrderToo) {
    engine.InitMidi();
    engine.SetOutputPortByName(kSynth);
    engine.SetInputPortByName(kKeyboard);
    for (int i = 5; i >= 0; --i) {
        Deliver(0xE0, static_cast<std::uint8_t>(i), 64);
    }
    rig.RunPlayer();
    EXPECT_EQ(synth.GetControls(0).wheel, kCentre);
}

TEST_F(Order, WithoutAFrontTheSinksOwnOrderIsTheRule) {
    EngineRig bare;
    bare.CreateOpen();
    bare.engine->PlayNoteOff(60);
    bare.engine->PlayNoteOn(60, 100);
    EXPECT_THAT(bare.TakeWritten(), ElementsAre("90 3c 64", "80 3c 00"));
}

// The pedal.

TEST_F(Order, APedalAtRestAboveZeroKeepsItsValue) {
    const auto expect = [this](int value, const char* after) {
        rig.RunPlayer();
        EXPECT_EQ(GetController(0, 64), value) << after;
    };
    for (const std::uint8_t value : {std::uint8_t{3}, std::uint8_t{63}, std::uint8_t{90}, std::uint8_t{127}}) {
        Deliver(0xB0, 64, value);
        controls.AllNotesOff();
        expect(value, "all notes off");
        controls.SetPatch(-1, 0);
        rig.RunPlayer();
        EXPECT_EQ(GetController(9, 64), value) << "another channel";
        controls.SetPatch(0, 0);
        expect(value, "a patch change");
        controls.ReplaceVoices([] { return true; });
        expect(value, "a preset");
        ASSERT_TRUE(controls.StartRecording());
        expect(value, "a recording's start");
        engine.StopRecording();
        controls.SetOutputPortByIndex(0);
        expect(value, "the settings");
    }
}

TEST_F(Order, ControllersThatAreResetFromOutsideTakeThePedalWithThem) {
    Deliver(0xB0, 64, 127);
    Deliver(0xB0, 66, 127);
    Deliver(0xB0, 121, 0);
    rig.TakeWritten();
    controls.AllNotesOff();
    EXPECT_THAT(rig.TakeWritten(), testing::Not(testing::Contains(testing::HasSubstr(" 40 "))));
    engine.ReleaseInputKeys();
    EXPECT_THAT(rig.TakeWritten(), testing::IsEmpty()) << "nothing is held any more";
    Deliver(0xB0, 64, 100);
    controls.AllNotesOff();
    rig.RunPlayer();
    EXPECT_EQ(GetController(0, 64), 100) << "pressed again since";
}

// The tempo under an arpeggio.

TEST_F(Order, ATempoThatIsTurnedLetsAnArpeggioPlayOn) {
    controls.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    rig.Run(600);
    rig.TakeWritten();
    int steps = 0;
    // A click every 20 ms, much faster than the steps: 250 ms at the start.
    for (int i = 0; i < 100; ++i) {
        i < 50 ? controls.TempoUp() : controls.TempoDown();
        rig.Run(20);
        for (const std::string& message : rig.TakeWritten()) {
            steps += message.starts_with("90") ? 1 : 0;
        }
    }
    EXPECT_EQ(engine.GetTempo(), 120);
    // Two seconds at 145 beats per minute in the mean, two steps a beat.
    EXPECT_GE(steps, 9);
    EXPECT_LE(steps, 10);
}

TEST_F(Order, ATempoThatIsTurnedUnderAnArpeggioKeepsThePlaceInTheBar) {
    controls.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    rig.Run(2750);
    const NK::MIDI::MusicalClock before = engine.GetMusicalClock();
    controls.TempoDown();
    EXPECT_EQ(engine.GetTempo(), 119);
    const NK::MIDI::MusicalClock after = engine.GetMusicalClock();
    EXPECT_EQ(after.bar, before.bar);
    EXPECT_EQ(after.beat, before.beat);
    EXPECT_NEAR(after.offset / after.BeatLength(), before.offset / before.BeatLength(), 0.005);
}

TEST_F(Order, WithoutAnArpeggioATempoBeginsANewBar) {
    const auto expectNewBar = [this](const char* when) {
        rig.Run(2750);
        controls.TempoUp();
        const NK::MIDI::MusicalClock clock = engine.GetMusicalClock();
        EXPECT_EQ(clock.bar * 10000 + clock.beat * 1000 + clock.offset, 0) << when;
    };
    engine.PlayNoteOn(60, 100);
    expectNewBar("arpeggiating is off");
    engine.PlayNoteOff(60);
    controls.SetArpeggiating(true);
    expectNewBar("no key is held");
    controls.ChangeArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    engine.PlayNoteOn(60, 100);
    expectNewBar("the arpeggiator is off");
}
