// Devices that go and come back while the instrument plays.
#include "engine/PortKeeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <vector>

#include "support/SynthModel.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using LibMidi::DeviceState;
using OutputState = Kivora::PortKeeper::OutputState;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Keeper : public testing::Test {
protected:
    Keeper() {
        Listen(kSynth, synth);
        Listen(kOtherSynth, otherSynth);
        engine.SetInputPortByName(kKeyboard);
        QObject::connect(&keeper, &Kivora::PortKeeper::StateChanged, [this] { ++changes; });
        QObject::connect(&keeper, &Kivora::PortKeeper::InputReturned, [this] { ++returns; });
        QObject::connect(&keeper, &Kivora::PortKeeper::PortsChanged, [this] { ++lists; });
    }
    void Listen(const wchar_t* name, SynthModel& model) {
        rig.GetDevice(name).onWrite = [&model](const LibMidi::MIDIEvent& event) { model.Play(event); };
    }
    void SetState(const wchar_t* name, DeviceState state) { rig.GetDevice(name).state = state; }
    bool IsSounding() {
        rig.RunPlayer();
        return synth.IsSounding();
    }
    /// A note sounds, another one is refused by the device, `failures` writes in all.
    void FailWhilePlaying(int failures) {
        engine.PlayNoteOn(60, 100);
        rig.Run(2);
        rig.GetDevice(kSynth).failedWrites = failures;
        engine.PlayNoteOn(64, 100);
        rig.Run(2);
        ASSERT_TRUE(engine.IsOutputLost());
    }

    EngineRig rig;
    SynthModel synth;
    SynthModel otherSynth;
    Kivora::CKivora& engine = rig.CreateOpen();
    Kivora::EngineControls controls{engine};
    Kivora::PortKeeper keeper{controls};
    int changes = 0;
    int returns = 0;
    int lists = 0;
};

// An input.

TEST_F(Keeper, KeysAndPedalsOfAKeyboardThatIsPulledOutEndAndItIsToldOnce) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    rig.GetKeyboard().Deliver(0xB0, 66, 127);
    ASSERT_TRUE(IsSounding());
    keeper.Look();
    EXPECT_TRUE(IsSounding()) << "it is there";
    EXPECT_EQ(changes, 0);
    SetState(kKeyboard, DeviceState::kLost);
    keeper.Look();
    EXPECT_FALSE(IsSounding());
    EXPECT_FALSE(synth.IsPedalDown());
    EXPECT_FALSE(synth.IsSostenutoDown());
    EXPECT_TRUE(engine.IsInputLost());
    keeper.Look();
    EXPECT_EQ(changes, 1);
}

TEST_F(Keeper, TheArpeggioThatAKeyboardHeldEndsWhenItIsPulledOut) {
    controls.SetArpeggiating(true);
    controls.ChangeArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(false); });
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    rig.Run(1000);
    rig.TakeWritten();
    rig.Run(1000);
    ASSERT_THAT(rig.TakeWritten(), testing::Not(IsEmpty()));
    SetState(kKeyboard, DeviceState::kLost);
    keeper.Look();
    rig.Run(1000);
    rig.TakeWritten();
    EXPECT_FALSE(IsSounding());
    rig.Run(1000);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Keeper, AKeyboardThatIsBackPlaysAgainAndTheOutputIsNotTouched) {
    SetState(kKeyboard, DeviceState::kLost);
    keeper.Look();
    engine.PlayNoteOn(72, 100);
    rig.TakeWritten();
    rig.log.clear();
    SetState(kKeyboard, DeviceState::kBack);
    keeper.Look();
    EXPECT_THAT(rig.log, ElementsAre("input closed", "input opened"));
    EXPECT_EQ(returns, 1);
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    SetState(kKeyboard, DeviceState::kWorks);
    keeper.Look();
    EXPECT_FALSE(engine.IsInputLost());
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3c 64"));
}

TEST_F(Keeper, WhatAPlugThatWobbledLeftHeldEndsToo) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    ASSERT_TRUE(IsSounding());
    SetState(kKeyboard, DeviceState::kBack);
    keeper.Look();
    EXPECT_FALSE(IsSounding());
    EXPECT_EQ(returns, 1);
}

TEST_F(Keeper, AKeyboardInAnotherPlaceIsOpenedWhereNothingIsDisturbed) {
    SetState(kKeyboard, DeviceState::kElsewhere);
    engine.PlayNoteOn(72, 100);
    const int created = rig.backend.created;
    keeper.Look();
    EXPECT_EQ(rig.backend.created, created) << "the output would be closed";
    EXPECT_TRUE(IsSounding());
    EXPECT_TRUE(engine.IsInputLost());
    engine.CloseOutputPort();
    SetState(kKeyboard, DeviceState::kElsewhere);
    keeper.Look();
    EXPECT_EQ(rig.backend.created, created + 1);
    EXPECT_EQ(returns, 1);
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

TEST_F(Keeper, AKeyboardThatAReScanDoesNotFindStaysLostUntilItIsBack) {
    SetState(kKeyboard, DeviceState::kLost);
    keeper.Look();
    const auto all = rig.backend.devices;
    rig.backend.Unplug(kKeyboard);
    EXPECT_TRUE(engine.RescanPorts());
    keeper.Look();
    EXPECT_TRUE(engine.IsInputLost()) << "it was not taken back";
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard);
    rig.backend.devices = all;
    SetState(kKeyboard, DeviceState::kWorks);
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_FALSE(engine.IsInputLost());
    EXPECT_GE(engine.GetInputPortIndex(), 0);
}

TEST_F(Keeper, AKeyboardThatDoesNotOpenIsTriedInGrowingPauses) {
    rig.GetDevice(kKeyboard).failsToOpen = true;
    int closings = 0;
    rig.GetKeyboard().onClosing = [&] { ++closings; };
    SetState(kKeyboard, DeviceState::kBack);
    std::vector<int> attempts;
    for (int look = 0; look < 40; ++look) {
        const int before = rig.GetDevice(kKeyboard).openAttempts;
        keeper.Look();
        if (rig.GetDevice(kKeyboard).openAttempts != before) {
            attempts.push_back(look);
        }
    }
    EXPECT_THAT(attempts, ElementsAre(0, 1, 3, 7, 15, 23, 31, 39));
    EXPECT_EQ(closings, 1);
    EXPECT_TRUE(engine.IsInputLost());
    EXPECT_EQ(returns, 0);
}

TEST_F(Keeper, AKeyboardThatIsLostNowAndThenIsOpenedAtOnceEachTime) {
    constexpr int kFewLooks = 6;
    for (int loss = 0; loss < 4; ++loss) {
        SetState(kKeyboard, DeviceState::kBack);
        keeper.Look();
        EXPECT_EQ(returns, loss + 1);
        SetState(kKeyboard, DeviceState::kWorks);
        for (int look = 0; look < kFewLooks; ++look) {
            keeper.Look();
        }
    }
}

// An output.

TEST_F(Keeper, AfterOneFailedWriteWhatSoundsIsEndedOnTheSameDevice) {
    engine.SetSustain(true);
    FailWhilePlaying(1);
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_FALSE(synth.IsPedalDown());
    EXPECT_FALSE(engine.HasStrandedNotes());
}

TEST_F(Keeper, AnOutputThatWorksAgainIsOpenedAgainAndPlaysWhatItHas) {
    FailWhilePlaying(3);
    EXPECT_TRUE(synth.IsSounding()) << "the ending failed too";
    EXPECT_TRUE(engine.HasStrandedNotes());
    engine.PlayNoteOff(60);
    engine.PlayNoteOff(64);
    rig.GetDevice(kSynth).failedWrites = 0;
    rig.TakeWritten();
    keeper.Look();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_FALSE(IsSounding());
    EXPECT_THAT(rig.GetDevice(kSynth).TakeWritten(), Contains("c0 00"));
    engine.PlayNoteOn(62, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3e 64"));
}

TEST_F(Keeper, AnOutputThatGoesWhileNothingIsPlayedIsToldAndPlaysWhenItIsBack) {
    SignalLog emitted(engine);
    SetState(kSynth, DeviceState::kLost);
    keeper.Look();
    keeper.Look();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kLost);
    EXPECT_THAT(emitted.Take(), ElementsAre("OutputLost"));
    EXPECT_EQ(changes, 1);
    engine.SetSustain(true);
    SetState(kSynth, DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, DeviceState::kWorks);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_EQ(changes, 2);
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPedalDown()) << "it is held";
}

TEST_F(Keeper, AnOutputThatOnlyANewSetReachesIsOpenedByTheSet) {
    rig.GetDevice(kSynth).failsPortsForGood = true;
    FailWhilePlaying(1000);
    rig.GetDevice(kSynth).failedWrites = 0;
    const int created = rig.backend.created;
    keeper.Look();
    EXPECT_EQ(rig.backend.created, created + 1);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_FALSE(IsSounding());
    EXPECT_FALSE(engine.HasStrandedNotes());
}

TEST_F(Keeper, ADeviceThatAnotherOneReplacedIsSilencedAllTheSame) {
    FailWhilePlaying(1000);
    rig.GetDevice(kSynth).failedWrites = 0;
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    EXPECT_EQ(engine.GetOutputPortName(), kOtherSynth);
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_FALSE(rig.GetDevice(kSynth).isOpen);
}

TEST_F(Keeper, AtTheProgramsEndTheDeviceIsTriedOnceMore) {
    FailWhilePlaying(1000);
    rig.GetDevice(kSynth).failedWrites = 0;
    EXPECT_TRUE(synth.IsSounding());
    controls.Close();
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(Keeper, AtTheProgramsEndADeviceThatFailsOnlyThenIsTriedOnceMore) {
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.GetDevice(kSynth).failedWrites = 1;
    controls.Close();
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(Keeper, ADeviceThatFailsWhileAnotherReplacesItIsSilencedAllTheSame) {
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.GetDevice(kSynth).failedWrites = 1;
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(Keeper, AnOutputThatFailsWhileItIsChosenAnewIsReachedByANewSetAtOnce) {
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.GetDevice(kSynth).failsPortsForGood = true;
    rig.GetDevice(kSynth).failedWrites = 1;
    EXPECT_TRUE(controls.SetOutputPortByIndex(0));
    ASSERT_TRUE(controls.StartRecording());  // a new set would end the take
    for (int look = 0; look < 10; ++look) {
        keeper.Look();
    }
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_FALSE(IsSounding());
    engine.PlayNoteOn(62, 100);
    EXPECT_TRUE(IsSounding());
}

TEST_F(Keeper, ADeviceThatIsBusyWhenItIsReplacedIsSilencedAtTheEnd) {
    FailWhilePlaying(1000);
    rig.GetDevice(kSynth).failedWrites = 0;
    rig.GetDevice(kSynth).failsToOpen = true;
    EXPECT_TRUE(controls.SetOutputPortByIndex(1));
    EXPECT_TRUE(synth.IsSounding());
    EXPECT_TRUE(engine.HasStrandedNotes());
    rig.GetDevice(kSynth).failsToOpen = false;
    controls.Close();
    EXPECT_FALSE(synth.IsSounding());
}

TEST_F(Keeper, NothingIsWrittenToADeviceThatIsGone) {
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.TakeWritten();
    SetState(kSynth, DeviceState::kLost);
    keeper.Look();
    EXPECT_THAT(rig.GetDevice(kSynth).TakeWritten(), IsEmpty()) << "a refusal would keep it from being opened again";
    SetState(kSynth, DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, DeviceState::kWorks);
    EXPECT_FALSE(IsSounding());
}

TEST_F(Keeper, ATakeGoesOnWhenItsOutputIsBack) {
    ASSERT_TRUE(controls.StartRecording());
    FailWhilePlaying(1000);
    SetState(kSynth, DeviceState::kElsewhere);
    keeper.Look();
    EXPECT_TRUE(engine.IsRecording()) << "a new set would end the take";
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kLost);
    rig.GetDevice(kSynth).failedWrites = 0;
    SetState(kSynth, DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, DeviceState::kWorks);
    EXPECT_TRUE(engine.IsRecording());
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    rig.RunPlayer();
    const int count = engine.GetRecordedCount();
    engine.PlayNoteOn(62, 100);
    rig.RunPlayer();
    EXPECT_EQ(engine.GetRecordedCount(), count + 1);
    SynthModel take;
    engine.GetCapture()->VisitCaptured(
        0, [&](const LibMidi::CapturedEvent& event) { take.Play(LibMidi::MIDIEvent::FromMessage(event.message, 0)); });
    EXPECT_FALSE(take.IsPressed(0, 60)) << "in the take too the note that sounded at the loss has ended";
    EXPECT_TRUE(take.IsPressed(0, 62));
}

TEST_F(Keeper, NobodyWaitsForTheSystemThatIsAskedForADevice) {
    std::vector<std::future<int>> others;
    const auto askMeanwhile = [&] {
        others.push_back(std::async(std::launch::async, [&] { return engine.GetTempo(); }));
        EXPECT_EQ(others.back().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    };
    rig.GetDevice(kSynth).onLook = askMeanwhile;
    rig.GetDevice(kKeyboard).onLook = askMeanwhile;
    keeper.Look();
    EXPECT_EQ(others.size(), 2U);
    rig.backend.fixed = true;
    engine.CloseOutputPort();
    keeper.Look();
    EXPECT_EQ(others.size(), 4U);
}

TEST_F(Keeper, AnOutputThatStandsStillIsToldUntilItGoesOn) {
    SetState(kSynth, DeviceState::kStalled);
    keeper.Look();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kStalled);
    EXPECT_EQ(changes, 1);
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3c 64"));
    SetState(kSynth, DeviceState::kWorks);
    keeper.Look();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_EQ(changes, 2);
}

TEST_F(Keeper, AnOutputThatCouldNotBeOpenedIsOpenedWhenItCanBe) {
    rig.backend.fixed = true;
    rig.GetDevice(kSynth).failsToOpen = true;
    SetState(kSynth, DeviceState::kLost);
    EXPECT_THROW(controls.SetOutputPortByIndex(0), NK::CException);
    const int attempts = rig.GetDevice(kSynth).openAttempts;
    for (int look = 0; look < 5; ++look) {
        keeper.Look();
    }
    EXPECT_EQ(rig.GetDevice(kSynth).openAttempts, attempts) << "nothing is there";
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kFailed);
    rig.GetDevice(kSynth).failsToOpen = false;
    SetState(kSynth, DeviceState::kBack);
    keeper.Look();
    SetState(kSynth, DeviceState::kWorks);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_EQ(changes, 1);
}

TEST_F(Keeper, WithoutAnOpenOutputItsStateTellsWhy) {
    engine.CloseOutputPort();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kFailed);
    engine.SetSavedOutputPortName(L"Not there");
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kMissing);
    engine.SetSavedOutputPortName({});
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kFailed);
    rig.backend.Unplug(kSynth);
    rig.backend.Unplug(kOtherSynth);
    engine.RescanPorts();
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kNone);
    keeper.Look();
}

// Devices that a backend tells of.

class FollowingKeeper : public Keeper {
protected:
    FollowingKeeper() {
        rig.backend.follows = true;
        QObject::connect(&engine, &Kivora::CKivora::DevicesChanged, [this] { keeper.FollowDevices(); });
    }
    /// The backend says so.
    void Plug(const std::shared_ptr<FakeDevice>& device) {
        device->state = device->isOpen ? DeviceState::kBack : DeviceState::kWorks;
        rig.backend.devices.push_back(device);
        rig.backend.tell();
        device->state = DeviceState::kWorks;
    }
    std::shared_ptr<FakeDevice> Unplug(const wchar_t* name) {
        std::shared_ptr<FakeDevice> device;
        for (const auto& one : rig.backend.devices) {
            device = one->name == name ? one : device;
        }
        device->state = DeviceState::kLost;
        rig.backend.Unplug(name);
        rig.backend.tell();
        return device;
    }
};

TEST_F(FollowingKeeper, ADeviceThatComesOrGoesIsListedAndNothingThatPlaysIsTouched) {
    engine.PlayNoteOn(60, 100);
    ASSERT_TRUE(IsSounding());
    rig.log.clear();
    rig.TakeWritten();
    Plug(std::make_shared<FakeDevice>(L"New keys", LibMidi::kInput));
    EXPECT_GE(engine.GetInputPortNames().Find(L"New keys"), 0);
    EXPECT_EQ(lists, 1);
    Unplug(L"New keys");
    EXPECT_EQ(engine.GetInputPortNames().Find(L"New keys"), -1);
    EXPECT_EQ(lists, 2);
    rig.backend.tell();
    EXPECT_EQ(lists, 2) << "nothing has changed";
    EXPECT_TRUE(IsSounding());
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    EXPECT_THAT(rig.log, IsEmpty());
    EXPECT_EQ(returns, 0);
}

TEST_F(FollowingKeeper, NobodyWaitsForTheSystemThatListsItsDevices) {
    std::vector<std::future<int>> others;
    rig.backend.onUpdate = [&] {
        others.push_back(std::async(std::launch::async, [&] { return engine.GetTempo(); }));
        EXPECT_EQ(others.back().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    };
    Plug(std::make_shared<FakeDevice>(L"New keys", LibMidi::kInput));
    EXPECT_EQ(others.size(), 1U);
    EXPECT_GE(engine.GetInputPortNames().Find(L"New keys"), 0);
}

TEST_F(FollowingKeeper, WhatTheListsChangeOfTheOutputIsTold) {
    engine.CloseOutputPort();
    engine.SetSavedOutputPortName(L"Grand");
    ASSERT_EQ(keeper.GetOutputState(), OutputState::kMissing);
    const auto grand = std::make_shared<FakeDevice>(L"Grand", LibMidi::kOutput);
    grand->failsToOpen = true;
    changes = 0;
    Plug(grand);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kFailed);
    EXPECT_GE(changes, 1);
}

TEST_F(FollowingKeeper, AKeyboardThatIsPulledOutIsLostAtOnceAndOpenedAgainWhenItIsBack) {
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    ASSERT_TRUE(IsSounding());
    const auto device = Unplug(kKeyboard);
    EXPECT_FALSE(IsSounding());
    EXPECT_TRUE(engine.IsInputLost());
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_EQ(changes, 1);
    Plug(device);
    EXPECT_FALSE(engine.IsInputLost());
    EXPECT_EQ(returns, 1);
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard);
    EXPECT_EQ(engine.GetInputPortIndex(), 1);
    rig.GetKeyboard().Deliver(0x90, 62, 100);
    EXPECT_TRUE(IsSounding());
}

TEST_F(FollowingKeeper, AKeyboardThatComesBackDuringARecordingPlaysIntoIt) {
    ASSERT_TRUE(controls.StartRecording());
    const auto device = Unplug(kKeyboard);
    Plug(device);
    EXPECT_TRUE(engine.IsRecording());
    EXPECT_FALSE(engine.IsInputLost());
    EXPECT_EQ(returns, 1);
}

TEST_F(FollowingKeeper, AReScanWhileAKeyboardIsAwayLosesNeitherItsNameNorTheOutput) {
    engine.PlayNoteOn(60, 100);
    const auto device = Unplug(kKeyboard);
    rig.log.clear();
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_THAT(rig.log, ElementsAre("input closed"));
    EXPECT_TRUE(engine.IsInputLost());
    EXPECT_TRUE(IsSounding());
    Plug(device);
    EXPECT_FALSE(engine.IsInputLost());
    EXPECT_GE(engine.GetInputPortIndex(), 0);
    EXPECT_EQ(returns, 1);
}

TEST_F(FollowingKeeper, AChosenKeyboardThatWasNotThereAtTheStartIsOpenedWhenItComes) {
    engine.CloseInputPort();
    engine.SetSavedInputPortName(L"New keys");
    Plug(std::make_shared<FakeDevice>(L"Other keys", LibMidi::kInput));
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_EQ(returns, 0);
    Plug(std::make_shared<FakeDevice>(L"New keys", LibMidi::kInput));
    EXPECT_GE(engine.GetInputPortIndex(), 0);
    EXPECT_EQ(returns, 1);
}

TEST_F(FollowingKeeper, AnOutputThatGoesIsLostAtOnceAndPlaysAgainWhenItIsBack) {
    engine.PlayNoteOn(60, 100);
    ASSERT_TRUE(IsSounding());
    const auto device = Unplug(kSynth);
    EXPECT_TRUE(engine.IsOutputLost());
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kLost);
    Plug(device);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_FALSE(IsSounding());
}

TEST_F(FollowingKeeper, AWantedOutputThatWasNotThereAtTheStartIsOpenedWhenItComes) {
    engine.CloseOutputPort();
    engine.SetSavedOutputPortName(L"New synth");
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kMissing);
    const auto device = std::make_shared<FakeDevice>(L"New synth", LibMidi::kOutput);
    device->isOpen = true;  // what can be opened says that it is back
    Plug(device);
    EXPECT_EQ(keeper.GetOutputState(), OutputState::kPlays);
    EXPECT_EQ(engine.GetOutputPortName(), L"New synth");
}

TEST_F(FollowingKeeper, WhatIsSavedUnderAnotherWayOfListingGetsItsListedName) {
    engine.CloseInputPort();
    engine.CloseOutputPort();
    rig.GetDevice(kOtherKeyboard).formerName = L"Port 1";
    rig.GetDevice(kOtherSynth).formerName = L"Port 1";
    engine.SetSavedInputPortName(L"Port 1");
    engine.SetSavedOutputPortName(L"Port 1");
    engine.UpdatePorts();
    EXPECT_EQ(engine.GetInputPortName(), kOtherKeyboard);
    EXPECT_EQ(engine.GetOutputPortName(), kOtherSynth);
    engine.SetSavedInputPortName(L"Port 1");
    engine.SetSavedOutputPortName(L"Port 1");
    controls.OpenPorts();
    EXPECT_EQ(engine.GetInputPortName(), kOtherKeyboard);
    EXPECT_EQ(engine.GetOutputPortName(), kOtherSynth);
    EXPECT_TRUE(engine.IsOutputReady());
}

}  // namespace
