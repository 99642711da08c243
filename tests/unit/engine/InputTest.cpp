// What arrives from an external keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {
class Input : public testing::Test {
protected:
    Input() {
        engine.SetInputPortByName(kKeyboard);
        Forget();
    }
    void Forget() {
        rig.TakeWritten();
        shown.TakeMessages();
        shown.Take();
    }
    void HalveVolume() {
        while (engine.GetVolume(0) > 49) {
            engine.VolumeDown(0);
        }
        Forget();
    }

    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    SignalLog shown{engine};
};
}  // namespace

TEST_F(Input, NotesTakeTheRoadOfAPlayedKeyAndTheirChannelIsIgnored) {
    rig.GetKeyboard().Deliver(0x95, 60, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("90 3c 64"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3c 64"));
}

TEST_F(Input, TheVelocityOfANoteOffIsScaledToo) {
    HalveVolume();
    rig.GetKeyboard().Deliver(0x80, 60, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("80 3c 64"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 3c 31"));
}

TEST_F(Input, ANoteOnWithVelocity0GoesOutAsANoteOff) {
    rig.GetKeyboard().Deliver(0x90, 60, 0);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("80 3c 00"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 3c 00"));
}

TEST_F(Input, KeyPressureIsRoutedAndScaled) {
    HalveVolume();
    rig.GetKeyboard().Deliver(0xA3, 60, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("a0 3c 64"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("a0 3c 31"));
}

TEST_F(Input, NotesFollowTheSplitAndTheDualMode) {
    engine.SetSplit(true);
    engine.SetDual(true);
    Forget();
    rig.GetKeyboard().Deliver(0x90, 59, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("92 3b 64"));
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("90 3c 64", "91 3c 64"));
}

TEST_F(Input, AControllerIsCopiedToTheChannelOfEverySlotAndShownOnceAsReceived) {
    engine.SetPatch(-1, 1);
    Forget();
    rig.GetKeyboard().Deliver(0xB5, 1, 77);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b5 01 4d"));
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("b0 01 4d", "b9 01 4d", "b2 01 4d"));
}

TEST_F(Input, PitchBendAndChannelPressureActOnAllVoices) {
    rig.GetKeyboard().Deliver(0xE0, 1, 2);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("e0 01 02", "e1 01 02", "e2 01 02"));
    rig.GetKeyboard().Deliver(0xD0, 7);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("d0 07", "d1 07", "d2 07"));
}

TEST_F(Input, AnExternalProgramChangeIsCopiedAndTheEnginesPatchNumbersStay) {
    engine.SetPatch(-1, 2);
    Forget();
    rig.GetKeyboard().Deliver(0xC0, 19);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("c0 13", "c1 13", "c9 13"));
    EXPECT_EQ(engine.GetPatch(0), 0);
    EXPECT_EQ(engine.GetPatch(1), 40);
    EXPECT_EQ(engine.GetPatch(2), -1);
}

TEST_F(Input, ASystemMessageIsSentOnUnchanged) {
    rig.GetKeyboard().Deliver(0xF8, 0, 0);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("f8"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("f8"));
}

TEST_F(Input, ARecordWithStatus0IsNeverSent) {
    rig.GetKeyboard().Deliver(0, 60, 100);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Input, WithoutAnOutputMessagesAreShownAndNotSent) {
    engine.CloseOutputPort();
    rig.GetDevice(kSynth).TakeWritten();
    Forget();
    rig.GetKeyboard().Deliver({{0, 0x90, 60, 100}, {0, 0xB0, 1, 1}, {0, 0xF8, 0, 0}});
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("90 3c 64", "b0 01 01", "f8"));
    engine.SetOutputPortByName(kSynth);
    EXPECT_THAT(rig.TakeWritten(), testing::Not(testing::Contains(testing::AnyOf("90 3c 64", "b0 01 01", "f8"))));
}

TEST_F(Input, ACountBelow1DoesNothing) {
    const LibMidi::MIDIEvent event(0, 0x90, 60, 100);
    engine.OnMIDIData(&event, 0);
    engine.OnMIDIData(&event, -1);
    engine.OnMIDIData(nullptr, 0);
    EXPECT_THAT(shown.TakeMessages(), IsEmpty());
}

TEST_F(Input, ALossEndsTheKeysAndThePedalThatTheInputHolds) {
    rig.GetKeyboard().Deliver({{0, 0x90, 60, 100}, {0, 0x90, 62, 100}, {0, 0x90, 64, 100}, {0, 0x80, 62, 0}});
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    engine.PlayNoteOn(70, 100);
    Forget();
    rig.GetKeyboard().Lose(2);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("80 3c 00", "80 40 00", "b0 40 00", "b1 40 00", "b2 40 00"));
    EXPECT_THAT(shown.Take(), ElementsAre("InputLost"));
    EXPECT_EQ(engine.GetInputLostCount(), 2U);
    rig.GetKeyboard().Lose(1);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty()) << "nothing is held any more";
    engine.CloseInputPort();
    EXPECT_EQ(engine.GetInputLostCount(), 0U);
}

TEST_F(Input, ACallbackGivesUpWhenItsPortIsClosing) {
    FakeInPort& port = rig.GetKeyboard();
    std::thread input;
    engine.WithLock([&] {
        input = std::thread([&port] { port.Deliver(0x90, 60, 100); });
        port.SetClosing(true);
        input.join();
    });
    EXPECT_THAT(shown.TakeMessages(), IsEmpty());
    port.SetClosing(false);
    port.Deliver(0x90, 60, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("90 3c 64"));
}

TEST_F(Input, ACallbackWaitsForTheLockOtherwise) {
    FakeInPort& port = rig.GetKeyboard();
    std::atomic<bool> delivered{false};
    std::thread input;
    engine.WithLock([&] {
        input = std::thread([&] {
            port.Deliver(0x90, 60, 100);
            delivered = true;
        });
        engine.PlayNoteOn(61, 100);
        EXPECT_FALSE(delivered);
    });
    input.join();
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3d 64", "90 3c 64"));
}
