// What the controls of MIDI keyboards that are bound do, and that nothing of it is heard or left hanging.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/PresetSteps.h"
#include "support/AllocationCounter.h"
#include "support/WaitUntil.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::BoundControls;
using Kivora::EPanelFunction;
using Kivora::MidiBinding;
using Kivora::MidiBindings;
using Kivora::MidiControl;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = MidiControl::Kind;

namespace {

constexpr MidiControl kKnob{Kind::kController, 0, 21};
constexpr MidiControl kButton{Kind::kController, 0, 22};
constexpr MidiControl kPad{Kind::kNote, 9, 36};

class Bound : public testing::Test {
protected:
    template <class Action>
    decltype(auto) Extras(Action&& action) {
        return engine.WithExtras(
            [&](Kivora::EngineExtras& extras) -> decltype(auto) { return action(extras.controls); });
    }
    Bound() {
        engine.SetInputPortByName(kKeyboard);
        rig.TakeWritten();
        shown.TakeMessages();
        Extras([this](auto& controls) { controls.SetWake([this] { ++wakes; }); });
    }

    void SetBindings() {
        Extras([this](auto& controls) { controls.SetBindings(bindings); });
    }
    void Bind(const MidiControl& control, EPanelFunction function, bool latches = false,
              const wchar_t* device = kKeyboard) {
        ASSERT_TRUE(bindings.Bind({device, control, function, latches}));
        SetBindings();
    }
    void Clear() {
        bindings = {};
        SetBindings();
    }
    void Learn(EPanelFunction function) {
        Extras([&](auto& controls) { controls.BeginLearning(function); });
    }
    std::optional<BoundControls::Learned> TakeLearned() {
        return Extras([](auto& controls) { return controls.TakeLearned(); });
    }
    void EndLearning() {
        Extras([](auto& controls) { controls.EndLearning(); });
    }
    /// The functions that wait, a knob's with its position behind it.
    std::vector<std::pair<EPanelFunction, int>> TakeDeeds() {
        std::vector<std::pair<EPanelFunction, int>> deeds;
        while (const auto deed = Extras([](auto& controls) { return controls.TakeNext(); })) {
            deeds.emplace_back(deed->function, deed->position.value_or(-1));
        }
        return deeds;
    }
    std::size_t CountDeeds() { return TakeDeeds().size(); }
    bool IsActive() {
        return Extras([](const auto& controls) { return controls.IsActive(); });
    }
    void ExpectNothing() {
        EXPECT_THAT(rig.TakeWritten(), IsEmpty());
        EXPECT_THAT(shown.TakeMessages(), IsEmpty());
    }
    void Deliver(std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
        rig.GetKeyboard().Deliver(status, data1, data2);
    }
    /// As a port of several devices hands on what one of them sends.
    void DeliverFrom(std::uint8_t source, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
        LibMidi::MIDIEvent event(0, status, data1, data2);
        event.source = source;
        rig.GetKeyboard().Deliver({event});
    }

    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    SignalLog shown{engine};
    MidiBindings bindings;
    int wakes = 0;
};

}  // namespace

TEST_F(Bound, WithoutBindingsEveryMessagePassesAndNothingIsAsked) {
    EXPECT_FALSE(IsActive());
    Deliver(0xB0, 21, 5);
    Deliver(0x99, 36, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b0 15 05", "90 24 64"));
    EXPECT_EQ(wakes, 0);
    EXPECT_FALSE(IsActive());
}

TEST_F(Bound, WhatIsBoundIsNeitherHeardNorShownNorRecorded) {
    engine.StartRecording();
    Bind(kKnob, EPanelFunction::kVolume1);
    Bind(kPad, EPanelFunction::kRecord);
    Bind({Kind::kProgram, 3, 7}, EPanelFunction::kPanic);
    rig.TakeWritten();
    shown.TakeMessages();
    const int recorded = engine.GetRecordedCount();
    Deliver(0xB0, 21, 5);
    Deliver(0x99, 36, 100);
    Deliver(0xA9, 36, 50);
    Deliver(0x89, 36, 0);
    Deliver(0xC3, 7);
    ExpectNothing();
    EXPECT_EQ(engine.GetRecordedCount(), recorded);
    EXPECT_THAT(TakeDeeds(), ElementsAre(std::pair(EPanelFunction::kPanic, -1), std::pair(EPanelFunction::kVolume1, 5),
                                         std::pair(EPanelFunction::kRecord, -1)));
}

TEST_F(Bound, WhatIsNotBoundPassesAsItCame) {
    Bind(kKnob, EPanelFunction::kVolume1);
    Bind(kPad, EPanelFunction::kPanic);
    Deliver(0xB1, 21, 5);
    Deliver(0xB0, 20, 5);
    Deliver(0xB0, 64, 127);
    Deliver(0x90, 36, 100);
    Deliver(0x80, 36, 0);
    Deliver(0xE0, 21, 5);
    Deliver(0xC0, 21);
    Deliver(0xF8, 0);
    EXPECT_THAT(shown.TakeMessages(),
                ElementsAre("b1 15 05", "b0 14 05", "b0 40 7f", "90 24 64", "80 24 00", "e0 15 05", "c0 15", "f8"));
    EXPECT_EQ(CountDeeds(), 0U);
    EXPECT_EQ(wakes, 0);
}

TEST_F(Bound, TheSameKnobOfAnotherDeviceIsAnother) {
    Bind(kKnob, EPanelFunction::kVolume1, false, kOtherKeyboard);
    Deliver(0xB0, 21, 5);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b0 15 05"));
    engine.SetInputPortByName(kOtherKeyboard);
    shown.TakeMessages();
    rig.TakeWritten();
    rig.backend.GetIn(kOtherKeyboard)->Deliver(0xB0, 21, 5);
    ExpectNothing();
    EXPECT_EQ(CountDeeds(), 1U);
}

TEST_F(Bound, OfAKnobTheLastValueWaitsAndOneWakeUpIsPosted) {
    Bind(kKnob, EPanelFunction::kVolume1);
    for (std::uint8_t value = 0; value < 128; ++value) {
        Deliver(0xB0, 21, value);
    }
    EXPECT_EQ(wakes, 1);
    EXPECT_THAT(TakeDeeds(), ElementsAre(std::pair(EPanelFunction::kVolume1, 127)));
    Deliver(0xB0, 21, 3);
    EXPECT_EQ(wakes, 2);
}

TEST_F(Bound, OfAFloodOfPressesSoManyWaitThatASwitchEndsAsItShould) {
    Bind(kPad, EPanelFunction::kArpeggio);
    for (int presses = 0; presses < 1001; ++presses) {
        Deliver(0x99, 36, 100);
        Deliver(0x89, 36, 0);
    }
    EXPECT_EQ(wakes, 1);
    const std::size_t waited = CountDeeds();
    EXPECT_LE(waited, std::size_t{BoundControls::kMostPresses});
    EXPECT_EQ(waited % 2, 1U);
}

TEST_F(Bound, WhoIsWokenWhileSomethingIsCarriedOutIsWokenAgain) {
    Bind(kPad, EPanelFunction::kRecord);
    Bind(kButton, EPanelFunction::kPanic);
    Deliver(0x99, 36, 100);
    EXPECT_TRUE(Extras([](auto& controls) { return controls.TakeNext(); }));
    Deliver(0xB0, 22, 127);  // while the recording's dialog is open
    EXPECT_EQ(wakes, 2);
}

TEST_F(Bound, AButtonActsWhenItIsPressed) {
    Bind(kButton, EPanelFunction::kPatch1Up);
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 1U);
    Deliver(0xB0, 22, 0);
    EXPECT_EQ(CountDeeds(), 0U);
    Deliver(0xB0, 22, 100);
    Deliver(0xB0, 22, 90);
    EXPECT_EQ(CountDeeds(), 1U) << "still pressed";
}

TEST_F(Bound, AButtonWhoseReleaseWasLostActsAgain) {
    Bind(kButton, EPanelFunction::kPatch1Up);
    Deliver(0xB0, 22, 127);
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 2U);
}

TEST_F(Bound, AButtonThatLatchesActsAtEachPress) {
    Bind(kButton, EPanelFunction::kPatch1Up, true);
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 1U);
    Deliver(0xB0, 22, 0);
    EXPECT_EQ(CountDeeds(), 1U);
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 1U);
}

// Nothing is left hanging.

TEST_F(Bound, ANoteThatIsHeldWhenItIsBoundEnds) {
    Deliver(0x99, 36, 100);
    Bind(kPad, EPanelFunction::kPanic);
    rig.TakeWritten();
    Deliver(0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 24 00"));
    Deliver(0x99, 36, 100);
    Deliver(0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Bound, ANoteThatIsUnboundWhileItIsDownEndsUnheard) {
    Bind(kPad, EPanelFunction::kPanic);
    Deliver(0x99, 36, 100);
    Clear();
    EXPECT_TRUE(IsActive());
    shown.TakeMessages();
    Deliver(0x89, 36, 0);
    ExpectNothing();
    EXPECT_FALSE(IsActive());
    Deliver(0x99, 36, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 24 64"));
}

TEST_F(Bound, AButtonThatIsUnboundWhileItIsDownIsReleasedUnheard) {
    Bind(kButton, EPanelFunction::kPanic);
    Deliver(0xB0, 22, 127);
    Clear();
    Deliver(0xB0, 22, 0);
    ExpectNothing();
    Deliver(0xB0, 22, 127);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b0 16 7f"));
}

TEST_F(Bound, ABoundNoteIsNoneThatTheInputHolds) {
    Bind(kPad, EPanelFunction::kPanic);
    Deliver(0x99, 36, 100);
    rig.GetKeyboard().Lose(1);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    engine.CloseInputPort();
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Bound, ABoundPadEndsNoKeyOfItsNumberOnAnotherChannel) {
    DeliverFrom(1, 0x90, 36, 100);
    Bind(kPad, EPanelFunction::kPanic);
    rig.TakeWritten();
    DeliverFrom(1, 0x99, 36, 100);
    DeliverFrom(1, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty()) << "the key is down";
    DeliverFrom(1, 0x80, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 24 00"));
}

TEST_F(Bound, APadThatIsBoundAndStruckOnceMoreBeforeItWasReleasedEnds) {
    Deliver(0x99, 36, 100);
    Bind(kPad, EPanelFunction::kPanic);
    rig.TakeWritten();
    Deliver(0x99, 36, 90);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    Deliver(0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 24 00"));
    Clear();
    EXPECT_FALSE(IsActive());
}

TEST_F(Bound, TheEndOfABoundNoteEndsNoneOfAnotherDevice) {
    Bind(kPad, EPanelFunction::kPanic);
    DeliverFrom(1, 0x99, 36, 100);
    Clear();
    DeliverFrom(2, 0x99, 36, 90);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 24 5a"));
    DeliverFrom(1, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    DeliverFrom(2, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 24 00"));
    EXPECT_FALSE(IsActive());
}

TEST_F(Bound, WhatAnotherDeviceHeldBeforeAnythingWasBoundEndsWithItsOwnRelease) {
    DeliverFrom(2, 0x99, 36, 90);
    Bind(kPad, EPanelFunction::kPanic);
    DeliverFrom(1, 0x99, 36, 100);
    EXPECT_EQ(CountDeeds(), 1U);
    Clear();
    rig.TakeWritten();
    DeliverFrom(2, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("80 24 00")) << "the other one, which is down, is not heard";
    DeliverFrom(1, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Bound, AKeyWhoseNoteABoundPadOfAnotherDeviceHasEndsWithItsRelease) {
    rig.GetKeyboard().sourceNames = {{1, L"Pads"}, {2, L"Keys"}};
    Bind(kPad, EPanelFunction::kPanic, false, L"Pads");
    DeliverFrom(1, 0x99, 36, 100);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    DeliverFrom(2, 0x99, 36, 90);
    DeliverFrom(2, 0x89, 36, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 24 5a", "80 24 00"));
}

TEST_F(Bound, NobodyIsAskedForNamesOfWhatIsNotBound) {
    int asked = 0;
    rig.GetKeyboard().onNameAsked = [&asked] { ++asked; };
    Bind(kKnob, EPanelFunction::kVolume1);
    Deliver(0xB0, 20, 5);
    Deliver(0x90, 60, 100);
    Deliver(0x80, 60, 0);
    EXPECT_EQ(asked, 0);
    Deliver(0xB0, 21, 5);
    EXPECT_GT(asked, 0);
}

TEST_F(Bound, ABoundKnobAllocatesNothingOnceWarm) {
    constexpr const wchar_t* kName = L"  A keyboard with blanks around its name  ";
    rig.GetKeyboard().sourceNames = {{1, kName}};
    Bind(kKnob, EPanelFunction::kVolume1, false, kName);
    DeliverFrom(1, 0xB0, 21, 5);
    EXPECT_EQ(CountDeeds(), 1U) << "a name is kept without blanks around it";
    std::vector<LibMidi::MIDIEvent> events;
    for (std::uint8_t value = 0; value < 128; ++value) {
        events.emplace_back(0U, std::uint8_t{0xB0}, std::uint8_t{21}, value);
        events.back().source = 1;
    }
    rig.GetKeyboard().Deliver(events);
    const std::uint64_t before = GetAllocationCount();
    engine.OnMIDIData(events.data(), static_cast<std::int32_t>(events.size()));
    EXPECT_EQ(GetAllocationCount(), before);
}

// Knobs.

TEST_F(Bound, AKnobOfAnInputThatWasLostOrClosedCatchesItsValueAnew) {
    const auto follow = [this](std::uint8_t position, int current) {
        rig.backend.GetIn(kKeyboard)->Deliver(0xB0, 21, position);
        return Extras([current](auto& controls) {
            const auto deed = controls.TakeNext();
            return deed ? controls.Follow(*deed, current, 0, 127) : std::nullopt;
        });
    };
    Bind(kKnob, EPanelFunction::kVolume1);
    follow(64, 64);
    EXPECT_EQ(follow(70, 64), 70) << "caught";
    rig.GetDevice(kKeyboard).state = LibMidi::DeviceState::kLost;
    engine.LookAtInput();
    rig.GetDevice(kKeyboard).state = LibMidi::DeviceState::kWorks;
    engine.LookAtInput();
    EXPECT_EQ(follow(100, 70), std::nullopt) << "it was turned meanwhile";
    follow(60, 70);
    EXPECT_EQ(follow(72, 60), 72) << "caught";
    engine.SetInputPortByName(kOtherKeyboard);
    engine.SetInputPortByName(kKeyboard);
    EXPECT_EQ(follow(100, 72), std::nullopt);
}

TEST_F(Bound, AKnobThatHasMovedTheVoicesGivesThemBackOnceItIsBound) {
    const auto rest = [this](std::uint8_t controller) {
        Clear();
        Deliver(0xB4, controller, 33);
        Bind({Kind::kController, 4, controller}, EPanelFunction::kVolume1);
        rig.TakeWritten();
        Deliver(0xB4, controller, 34);
        const auto written = rig.TakeWritten();
        Deliver(0xB4, controller, 35);
        EXPECT_THAT(rig.TakeWritten(), IsEmpty()) << "but once";
        return written;
    };
    EXPECT_THAT(rest(1), UnorderedElementsAre("b0 01 00", "b1 01 00", "b2 01 00"));
    EXPECT_THAT(rest(11), UnorderedElementsAre("b0 0b 7f", "b1 0b 7f", "b2 0b 7f"));
    EXPECT_THAT(rest(7), UnorderedElementsAre("b0 07 64", "b1 07 64", "b2 07 64"));
    EXPECT_THAT(rest(67), UnorderedElementsAre("b0 43 00", "b1 43 00", "b2 43 00"));
    EXPECT_THAT(rest(10), UnorderedElementsAre("b0 0a 40", "b1 0a 40", "b2 0a 40"));
    EXPECT_THAT(rest(71), UnorderedElementsAre("b0 47 40", "b1 47 40", "b2 47 40"));
    EXPECT_THAT(rest(78), UnorderedElementsAre("b0 4e 40", "b1 4e 40", "b2 4e 40"));
    EXPECT_THAT(rest(91), UnorderedElementsAre("b0 5b 28", "b1 5b 28", "b2 5b 28"));
    EXPECT_THAT(rest(93), UnorderedElementsAre("b0 5d 00", "b1 5d 00", "b2 5d 00"));
    EXPECT_THAT(rest(21), IsEmpty());
}

TEST_F(Bound, WhatAnotherKeyboardHasMovedStaysAsItIs) {
    constexpr const wchar_t* kName = L"Knobs";
    rig.GetKeyboard().sourceNames = {{1, kName}};
    DeliverFrom(1, 0xB0, 11, 20);
    DeliverFrom(2, 0xB0, 11, 30);
    rig.TakeWritten();
    Bind({Kind::kController, 0, 11}, EPanelFunction::kVolume1, false, kName);
    DeliverFrom(1, 0xB0, 11, 5);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    DeliverFrom(2, 0xB0, 11, 31);
    EXPECT_THAT(rig.TakeWritten(), UnorderedElementsAre("b0 0b 1f", "b1 0b 1f", "b2 0b 1f"));
}

// Learning.

TEST_F(Bound, TheNextControlIsLearnedAndNotHeard) {
    Learn(EPanelFunction::kTempo);
    Deliver(0xB2, 33, 5);
    Deliver(0xB2, 33, 6);
    Deliver(0xB2, 33, 0);
    ExpectNothing();
    EXPECT_EQ(wakes, 1);
    const auto learned = TakeLearned();
    ASSERT_TRUE(learned);
    EXPECT_TRUE(learned->canBeBound);
    EXPECT_EQ(learned->device, kKeyboard);
    EXPECT_EQ(learned->control, (MidiControl{Kind::kController, 2, 33}));
    EXPECT_FALSE(TakeLearned()) << "told once";
    Deliver(0xB2, 34, 5);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b2 22 05")) << "one is learned already";
    EndLearning();
    EXPECT_FALSE(IsActive());
    Deliver(0xB2, 33, 7);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b2 21 07"));
}

TEST_F(Bound, AKnobThatIsLearnedAnewCatchesItsValueAnew) {
    const auto follow = [this](int current) {
        return Extras([current](auto& controls) {
            const auto deed = controls.TakeNext();
            return deed ? controls.Follow(*deed, current, 0, 127) : std::nullopt;
        });
    };
    Bind(kKnob, EPanelFunction::kVolume1);
    Deliver(0xB0, 21, 64);
    follow(64);
    Deliver(0xB0, 21, 65);
    EXPECT_EQ(follow(64), 65) << "caught";
    Learn(EPanelFunction::kVolume1);
    Deliver(0xB0, 21, 120);
    EndLearning();
    SetBindings();
    Deliver(0xB0, 21, 121);
    EXPECT_EQ(follow(65), std::nullopt) << "it would jump";
}

TEST_F(Bound, ALearnedNoteThatIsNotBoundAfterAllEndsUnheard) {
    Learn(EPanelFunction::kRecord);
    Deliver(0x99, 36, 100);
    EndLearning();
    Deliver(0x89, 36, 0);
    ExpectNothing();
    EXPECT_FALSE(IsActive());
}

TEST_F(Bound, WhatPlayingNeedsIsToldAndPasses) {
    Learn(EPanelFunction::kRecord);
    Deliver(0xB0, 64, 127);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b0 40 7f"));
    const auto learned = TakeLearned();
    ASSERT_TRUE(learned);
    EXPECT_FALSE(learned->canBeBound);
    EXPECT_TRUE(learned->control->IsReserved());
    Deliver(0xB0, 64, 0);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("b0 40 00"));
    EXPECT_FALSE(TakeLearned());
    Deliver(0xB0, 22, 127);
    EXPECT_TRUE(TakeLearned()->canBeBound) << "the learning has gone on";
}

TEST_F(Bound, APitchBendOrAPressureIsToldOnceAndPasses) {
    Learn(EPanelFunction::kVolume1);
    Deliver(0xE0, 0, 65);
    Deliver(0xE0, 0, 66);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("e0 00 41", "e0 00 42"));
    const auto learned = TakeLearned();
    ASSERT_TRUE(learned);
    EXPECT_FALSE(learned->canBeBound);
    EXPECT_FALSE(learned->control);
    EXPECT_EQ(learned->device, kKeyboard);
    Deliver(0xD0, 5);
    EXPECT_FALSE(TakeLearned()) << "it was told";
    Deliver(0xB0, 21, 5);
    EXPECT_TRUE(TakeLearned()->canBeBound);
    Deliver(0xE0, 0, 64);
    EXPECT_FALSE(TakeLearned());
}

TEST_F(Bound, ForAValueANotePassesAndIsTold) {
    Learn(EPanelFunction::kVolume1);
    Deliver(0x90, 60, 100);
    Deliver(0x80, 60, 0);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("90 3c 64", "80 3c 00"));
    EXPECT_FALSE(TakeLearned()->canBeBound);
}

TEST_F(Bound, KeysAndPedalsThatWereDownBeforeGoUpAndAreNotLearned) {
    Deliver(0x90, 60, 100);
    Deliver(0xB0, 67, 127);
    Learn(EPanelFunction::kRecord);
    shown.TakeMessages();
    Deliver(0x80, 60, 0);
    Deliver(0xB0, 67, 0);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("80 3c 00", "b0 43 00"));
    EXPECT_FALSE(TakeLearned());
}

TEST_F(Bound, WhatIsBoundAlreadyIsLearnedAndDoesNothingMeanwhile) {
    Bind(kButton, EPanelFunction::kPanic);
    Learn(EPanelFunction::kRecord);
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 0U);
    EXPECT_TRUE(TakeLearned()->canBeBound);
    EndLearning();
    Deliver(0xB0, 22, 0);
    ExpectNothing();
    Deliver(0xB0, 22, 127);
    EXPECT_EQ(CountDeeds(), 1U);
}

// What follows.

TEST_F(Bound, VolumesAreSetAndSentOnceEach) {
    engine.SetVolume(100, 0);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    engine.SetVolume(40, 0);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("b0 07 28"));
    engine.SetVolume(0, 1);
    EXPECT_EQ(engine.GetVolume(1), 1);
    engine.SetVolume(1000, 1);
    EXPECT_EQ(engine.GetVolume(1), 127);
    EXPECT_THROW(engine.SetVolume(5, 3), NK::CBadIndexException);
}

TEST_F(Bound, PresetsAreWalkedThroughAndRoundAgain) {
    Kivora::EngineControls controls(engine);
    Kivora::PresetSteps steps(controls);
    EXPECT_FALSE(steps.Step(1)) << "there are none";
    const auto factory = rig.folder / "factory";
    std::filesystem::create_directories(factory);
    ASSERT_TRUE(engine.SavePreset(L"Organ"));
    std::filesystem::rename(rig.folder / "user" / "Presets" / "Organ.kivoraLXPreset", factory / "Organ.kivoraLXPreset");
    ASSERT_TRUE(engine.SavePreset(L"Bells"));
    engine.SetPatch(19, 0);
    ASSERT_TRUE(engine.SavePreset(L"Organ"));  // current now, and the factory has one of that name
    const auto step = [&](int by) {
        EXPECT_TRUE(steps.Step(by));
        return std::pair(engine.GetPresetName().ToUtf8(), engine.GetPatch(0));
    };
    EXPECT_EQ(step(1), std::pair(std::string("Organ"), 0)) << "the factory's, the first of all";
    EXPECT_EQ(step(1).first, "Bells");
    EXPECT_EQ(step(1), std::pair(std::string("Organ"), 19));
    EXPECT_EQ(step(-1).first, "Bells");
    EXPECT_EQ(step(-1), std::pair(std::string("Organ"), 0));
    EXPECT_EQ(step(-1), std::pair(std::string("Organ"), 19));
    std::filesystem::remove(rig.folder / "user" / "Presets" / "Bells.kivoraLXPreset");
    EXPECT_EQ(step(-1), std::pair(std::string("Organ"), 0));
}

TEST_F(Bound, APresetThatWasSteppedToIsUsedAsSoonAsItIsPlayed) {
    Kivora::EngineControls controls(engine);
    Kivora::PresetSteps steps(controls);
    for (const wchar_t* name : {L"A", L"B", L"C", L"D"}) {
        ASSERT_TRUE(engine.SavePreset(name));
    }
    const auto used = [this] {
        return engine.WithExtras([](Kivora::EngineExtras& extras) {
            std::string names;
            for (std::size_t place = 0; place < extras.presets.GetCount(); ++place) {
                for (const char* name : {"A", "B", "C", "D"}) {
                    names += extras.presets.GetPlace(NK::CString::FromUtf8(name), false) == place ? name : "";
                }
            }
            return names;
        });
    };
    const auto play = [this] {
        engine.PlayNoteOn(60, 90);
        engine.PlayNoteOff(60);
    };
    ASSERT_TRUE(controls.LoadPreset(L"A", false));
    play();
    EXPECT_EQ(used(), "");
    steps.Step(1);
    steps.Step(1);
    EXPECT_EQ(used(), "") << "they may be passed";
    play();
    play();
    EXPECT_EQ(used(), "C") << "not what was passed";
    steps.Step(1);
    ASSERT_TRUE(controls.LoadPreset(L"A", false));
    play();
    EXPECT_EQ(used(), "C") << "another one came in its place";
    steps.Step(1);
    controls.NotePreset(L"D", false);  // it was saved under that name
    play();
    EXPECT_EQ(used(), "DC");
}

// Threads.

TEST_F(Bound, IsLearnedBoundAndClearedWhileTheInputPlays) {
    std::atomic<bool> stop{false};
    FakeInPort& port = rig.GetKeyboard();
    Extras([](auto& controls) { controls.SetWake({}); });
    std::thread input([&] {
        for (std::uint8_t note = 0; !stop; note = static_cast<std::uint8_t>((note + 1) % 128)) {
            port.Deliver(
                {{0, 0x90, note, 100}, {0, 0xB0, 21, note}, {0, 0x99, 36, 100}, {0, 0x89, 36, 0}, {0, 0x80, note, 0}});
        }
    });
    for (int i = 0; i < 300; ++i) {
        Learn(EPanelFunction::kVolume1);
        EXPECT_TRUE(WaitUntil([&] { return TakeLearned().has_value(); }));
        EndLearning();
        Bind(kKnob, EPanelFunction::kVolume1);
        Bind(kPad, EPanelFunction::kPanic);
        EXPECT_TRUE(WaitUntil([&] { return CountDeeds() != 0; }));
        Clear();
    }
    stop = true;
    input.join();
    port.Deliver(0xB0, 21, 0);
    EXPECT_FALSE(engine.GetInputKeys().IsAnyHeld());
    EXPECT_FALSE(IsActive());
}
