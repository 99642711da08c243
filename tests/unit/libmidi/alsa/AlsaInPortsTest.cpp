// The three kinds of input, with the rounds called by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "libmidi/alsa/AlsaDeviceInPort.h"
#include "libmidi/alsa/AlsaKeyboardsInPort.h"
#include "libmidi/alsa/AlsaProgramsInPort.h"
#include "libmidi/OpenSounds.h"
#include "support/AllocationCounter.h"
#include "unit/libmidi/alsa/AlsaRig.h"

namespace {

using namespace LibMidi;
using namespace LibMidiTest;
using Batches = CBatches::Batches;
using testing::IsEmpty;

class AlsaInPorts : public testing::Test {
protected:
    AlsaInPorts() {
        rig.Plug(20, "Keys");
        device.SetPlace(snd_seq_addr_t{20, 0});
        for (MIDIInPort* port : {static_cast<MIDIInPort*>(&device), static_cast<MIDIInPort*>(&keyboards),
                                 static_cast<MIDIInPort*>(&programs)}) {
            port->AddListener(&listener);
        }
    }

    CAlsaRig rig;
    CBatches listener;
    AlsaDeviceInPort device{rig.client, L"Keys"};
    AlsaKeyboardsInPort keyboards{rig.client};
    AlsaProgramsInPort programs{rig.client};
};

// A device.

TEST_F(AlsaInPorts, ADevicesKeysComeInOneArray) {
    rig.Send(20, NoteOn(59));
    ASSERT_EQ(device.Open(), kSuccess);
    EXPECT_EQ(device.GetFlags(), kInput | kOpen);
    rig.api.Send({20, 0}, NoteOn(60));
    rig.api.Send({20, 0}, Pedal(127));
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64, 0xB0407F}}));
    EXPECT_EQ(device.Close(), kSuccess);
    rig.Send(20, NoteOn(62));
    EXPECT_EQ(listener.Take(), (Batches{}));
    EXPECT_THAT(rig.api.FindOwnPorts("Input"), IsEmpty());
}

TEST_F(AlsaInPorts, ADeviceThatIsNotThereOrRefusesDoesNotOpen) {
    rig.api.subscribeResult = -EPERM;
    EXPECT_EQ(device.Open(), kDeviceError);
    EXPECT_THAT(rig.api.FindOwnPorts("Input"), IsEmpty());
    rig.api.subscribeResult = 0;
    rig.api.createsLeft = 0;
    EXPECT_EQ(device.Open(), kDeviceError);
    rig.api.createsLeft = 10;
    device.SetPlace(std::nullopt);
    EXPECT_EQ(device.Open(), kDeviceError);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kLost);
    EXPECT_THAT(rig.api.FindOwnPorts("Input"), IsEmpty());
}

TEST_F(AlsaInPorts, WhatAnEarlierDeviceSentToThePlaceIsNotTakenForThisOnes) {
    rig.Plug(21, "Other");
    ASSERT_EQ(device.Open(), kSuccess);
    const CFakeAlsaSeq::Address own{CFakeAlsaSeq::kOwnClient, rig.api.FindOwnPorts("Input").front()};
    rig.api.SendTo({21, 0}, own, NoteOn(60));
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{}));
}

TEST_F(AlsaInPorts, AKeyboardThatIsPulledOutEndsWhatItHeldInTheSameWakeUp) {
    ASSERT_EQ(device.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.Send(20, Pedal(127));
    listener.Take();
    rig.api.Send({20, 0}, NoteOn(64));
    rig.Unplug(20);
    EXPECT_EQ(listener.Take(), (Batches{{0x904064, 0x803C00, 0x804000, 0xB04000}}));
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kLost);
    rig.Plug(30, "Elsewhere");
    EXPECT_EQ(listener.Take(), (Batches{})) << "only once";
}

TEST_F(AlsaInPorts, AKeyboardThatIsBackIsSaidToBeAndPlaysWhenItIsOpenedAgain) {
    ASSERT_EQ(device.Open(), kSuccess);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kWorks);
    rig.Unplug(20);
    rig.Plug(20, "Keys");
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kBack);
    device.Close();
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kBack);
    ASSERT_EQ(device.Open(), kSuccess);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kWorks);
    rig.Send(20, NoteOn(60));
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64}}));
}

TEST_F(AlsaInPorts, AKeyboardThatIsCutOffEndsWhatItHeld) {
    ASSERT_EQ(device.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    listener.Take();
    const CFakeAlsaSeq::Address own{CFakeAlsaSeq::kOwnClient, rig.api.FindOwnPorts("Input").front()};
    rig.api.Disconnect({20, 0}, own);
    rig.api.AnnounceCut({20, 0}, own);
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{0x803C00}}));
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kBack);
}

TEST_F(AlsaInPorts, ALossIsToldAndTheLostNewsAreLookedFor) {
    ASSERT_EQ(device.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    listener.Take();
    rig.api.Unplug(20);
    rig.api.FailInput(-ENOSPC);
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{1}})) << "which ends it all";
    EXPECT_EQ(device.GetLostCount(), 1U);
    device.Close();
    device.SetPlace(std::nullopt);
}

/// What reading gives where the sequencer, or the program's client on it, is no more.
class AlsaInPortsGone : public AlsaInPorts, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Each, AlsaInPortsGone, testing::Values(-ENODEV, -EBADFD, -EBADF, -EIO));

TEST_P(AlsaInPortsGone, WhatIsHeldEnds) {
    ASSERT_EQ(device.Open(), kSuccess);
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    listener.Take();
    rig.api.FailInput(GetParam());
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{0x803C00}, {0x803C00}}));
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kLost);
    EXPECT_EQ(keyboards.LookAtDevice(), DeviceState::kLost);
    EXPECT_EQ(programs.LookAtDevice(), DeviceState::kLost);
    EXPECT_EQ(programs.Open(), kDeviceError);
}

TEST_F(AlsaInPorts, NothingIsAllocatedOnceWarm) {
    struct CQuiet : MIDIPortDataListener {
        void OnMIDIData(const MIDIEvent*, std::int32_t count) override { events += count; }
        int events = 0;
    } quiet;
    device.RemoveListener(&listener);
    device.AddListener(&quiet);
    ASSERT_EQ(device.Open(), kSuccess);
    const CFakeAlsaSeq::Address own{CFakeAlsaSeq::kOwnClient, rig.api.FindOwnPorts("Input").front()};
    auto event = NoteOn(60);
    event.dest = {static_cast<unsigned char>(own.first), static_cast<unsigned char>(own.second)};
    event.source = {20, 0};
    const std::pair<const CFakeAlsaSeq::Address, snd_seq_event_t> flood{{20, 0}, event};
    rig.api.flood = &flood;
    rig.client->RunInputRound();
    rig.client->RunInputRound();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    rig.client->RunInputRound();
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(quiet.events, 3 * 4096);
    device.Close();
    device.RemoveListener(&quiet);
}

// All keyboards.

TEST_F(AlsaInPorts, EveryKeyboardThatIsThereOrComesPlaysAtOnce) {
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64}}));
    rig.Plug(130, "New keys");
    rig.Send(130, NoteOn(62));
    EXPECT_EQ(listener.Take(), (Batches{{0x903E64}}));
    rig.api.SendTo({140, 0}, rig.GetPublicIn(), NoteOn(64));
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{0x904064}})) << "what other programs connect plays too";
    EXPECT_EQ(keyboards.LookAtDevice(), DeviceState::kWorks);
    keyboards.Close();
    rig.Send(20, NoteOn(60));
    EXPECT_EQ(listener.Take(), (Batches{}));
}

TEST_F(AlsaInPorts, TheLoopBackAndOtherInstancesAreNoKeyboards) {
    rig.api.Plug(14, "Midi Through", 0, "Midi Through Port-0", kSending | kReceiving);
    rig.api.Plug(135, "Kivora LX (2)", 0, "Kivora LX out", kSending);
    rig.api.Plug(136, "Synth", 0, "Synth", kReceiving);
    const std::size_t before = rig.api.CountConnections();
    ASSERT_EQ(keyboards.Open(), kSuccess);
    EXPECT_EQ(rig.api.CountConnections(), before + 1);
}

TEST_F(AlsaInPorts, OfTwoKeyboardsOnlyTheKeysOfTheOneThatIsPulledOutEnd) {
    rig.Plug(21, "Other");
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.Send(21, NoteOn(72));
    listener.Take();
    rig.Unplug(21);
    EXPECT_EQ(listener.Take(), (Batches{{0x804800}}));
    EXPECT_EQ(keyboards.LookAtDevice(), DeviceState::kWorks);
}

/// Keeps who has sent what, by number.
struct CSourceNumbers : MIDIPortDataListener {
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        for (std::int32_t index = 0; index < count; ++index) {
            came.emplace_back(events[index].source, KivoraTest::BytesOf(events[index]));
        }
    }
    std::vector<std::pair<int, std::uint32_t>> Take() { return std::exchange(came, {}); }

    std::vector<std::pair<int, std::uint32_t>> came;
};

TEST_F(AlsaInPorts, OfANoteOfTwoKeyboardsEachEndsItsOwn) {
    using Came = std::vector<std::pair<int, std::uint32_t>>;
    CSourceNumbers sources;
    keyboards.AddListener(&sources);
    rig.Plug(21, "Other");
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.Send(21, NoteOn(60));
    EXPECT_EQ(sources.Take(), (Came{{1, 0x903C64}, {2, 0x903C64}}));
    rig.Send(21, NoteOn(60, 0));
    EXPECT_EQ(sources.Take(), (Came{{2, 0x903C00}}));
    rig.Send(21, NoteOn(60));
    rig.Unplug(20);
    EXPECT_EQ(sources.Take(), (Came{{2, 0x903C64}, {1, 0x803C00}}));
    rig.api.FailInput(-ENODEV);
    rig.client->RunInputRound();
    EXPECT_EQ(sources.Take(), (Came{{2, 0x803C00}}));
    keyboards.Close();
    keyboards.RemoveListener(&sources);
}

TEST_F(AlsaInPorts, AKeyboardWhosePlugWobblesEndsWhatItHeldAndPlaysOn) {
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    listener.Take();
    rig.api.Unplug(20);
    rig.Plug(20, "Keys");
    EXPECT_EQ(listener.Take(), (Batches{{0x803C00}}));
    rig.Send(20, NoteOn(62));
    EXPECT_EQ(listener.Take(), (Batches{{0x903E64}}));
}

TEST_F(AlsaInPorts, AllKeyboardsDoNotOpenWithoutAPort) {
    rig.api.createsLeft = 0;
    EXPECT_EQ(keyboards.Open(), kDeviceError);
}

TEST_F(AlsaInPorts, AKeyboardThatIsConnectedToThePublicPortTooPlaysOnce) {
    rig.api.Connect({20, 0}, rig.GetPublicIn());
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64}}));
    rig.Plug(21, "Sends first");
    rig.api.Connect({21, 0}, rig.GetPublicIn());
    rig.Send(21, NoteOn(62));
    EXPECT_EQ(listener.Take(), (Batches{{0x903E64}}));
    rig.Unplug(21);
    EXPECT_EQ(listener.Take(), (Batches{{0x803E00}}));
}

TEST_F(AlsaInPorts, WhatAKeyboardHeldByThePublicPortAloneEndsWithItWhenItCameBothWaysSince) {
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.api.Plug(21, "Keys", 0, "Keys", kSending);
    rig.api.Connect({21, 0}, rig.GetPublicIn());
    rig.api.SendTo({21, 0}, rig.GetPublicIn(), NoteOn(60));
    rig.api.SendTo({21, 0}, rig.GetPublicIn(), NoteOn(62));
    rig.api.SendTo({21, 0}, rig.GetPublicIn(), Pedal(127));
    rig.client->RunInputRound();
    rig.api.Announce(SND_SEQ_EVENT_PORT_START, {21, 0});  // it is connected to the port's own too
    rig.client->RunInputRound();
    rig.Send(21, NoteOn(62, 0));
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64, 0x903E64, 0xB0407F}, {0x903E00}}));
    rig.Unplug(21);
    EXPECT_EQ(listener.Take(), (Batches{{0x803C00, 0xB04000}}));
}

TEST_F(AlsaInPorts, WhatALossHasEndedIsNotEndedOnceMore) {
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.api.FailInput(-ENOSPC);
    rig.client->RunInputRound();
    listener.Take();
    rig.Unplug(20);
    EXPECT_EQ(listener.Take(), (Batches{}));
}

/// Keeps who has sent what.
struct CSources : MIDIPortDataListener {
    explicit CSources(MIDIInPort& heard) : port(heard) {}
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        for (std::int32_t index = 0; index < count; ++index) {
            names.push_back(port.GetSourceName(events[index].source).ToUtf8());
        }
    }
    std::vector<std::string> Take() { return std::exchange(names, {}); }

    MIDIInPort& port;
    std::vector<std::string> names;
};

TEST_F(AlsaInPorts, EachMessageTellsItsSenderByTheNameUnderWhichItIsListed) {
    CSources sources(keyboards);
    keyboards.AddListener(&sources);
    rig.Plug(21, "Pads");
    rig.Plug(22, "Pads");
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(22, NoteOn(60));
    rig.Send(20, NoteOn(62));
    rig.Send(21, NoteOn(64));
    EXPECT_EQ(sources.Take(), (std::vector<std::string>{"Pads MIDI 1 (2)", "Keys MIDI 1", "Pads MIDI 1"}));
    rig.Unplug(20);
    EXPECT_EQ(sources.Take(), (std::vector<std::string>{"Keys MIDI 1"})) << "the end of what it held";
    rig.Plug(20, "Knobs");
    rig.Send(20, NoteOn(62));
    EXPECT_EQ(sources.Take(), (std::vector<std::string>{"Knobs MIDI 1"}));
    rig.api.SendTo({140, 0}, rig.GetPublicIn(), NoteOn(64));
    rig.client->RunInputRound();
    EXPECT_EQ(sources.Take(), (std::vector<std::string>{keyboards.GetName().ToUtf8()})) << "who is not listed";
    keyboards.Close();
    keyboards.RemoveListener(&sources);
}

TEST_F(AlsaInPorts, NobodyIsAskedForNamesUntilSomebodyWantsThem) {
    ASSERT_EQ(keyboards.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.Unplug(20);
    EXPECT_EQ(keyboards.GetSourceName(1).ToUtf8(), keyboards.GetName().ToUtf8()) << "it has gone unasked";
}

// Other programs.

TEST_F(AlsaInPorts, WhatOtherProgramsConnectPlaysWhileThatIsChosen) {
    rig.api.Connect({20, 0}, rig.GetPublicIn());
    rig.Send(20, NoteOn(59));
    EXPECT_EQ(listener.Take(), (Batches{}));
    ASSERT_EQ(programs.Open(), kSuccess);
    EXPECT_EQ(programs.LookAtDevice(), DeviceState::kWorks);
    rig.Send(20, NoteOn(60));
    EXPECT_EQ(listener.Take(), (Batches{{0x903C64}}));
    programs.Close();
    EXPECT_TRUE(rig.api.HasConnection({20, 0}, rig.GetPublicIn())) << "it is theirs";
}

TEST_F(AlsaInPorts, AProgramThatEndsOrIsDisconnectedEndsWhatItHeld) {
    rig.api.Connect({20, 0}, rig.GetPublicIn());
    rig.Plug(21, "Unconnected");
    ASSERT_EQ(programs.Open(), kSuccess);
    rig.Send(20, NoteOn(60));
    rig.api.SendTo({21, 0}, rig.GetPublicIn(), NoteOn(72));
    rig.client->RunInputRound();
    listener.Take();
    rig.api.Disconnect({20, 0}, rig.GetPublicIn());
    rig.api.AnnounceCut({20, 0}, rig.GetPublicIn());
    rig.client->RunInputRound();
    EXPECT_EQ(listener.Take(), (Batches{{0x803C00}})) << "the other one sends without a connection, and is there";
    rig.Unplug(21);
    EXPECT_EQ(listener.Take(), (Batches{{0x804800}}));
}

// Any history.

/// Knows what is held after what it was told; a loss ends everything, as the engine does.
struct CHeldListener : MIDIPortDataListener {
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        for (std::int32_t index = 0; index < count; ++index) {
            held.Follow(events[index].ToMessage());
        }
    }
    void OnMIDIDataLost(std::uint32_t) override { held = {}; }
    OpenSounds held;
};

TEST_F(AlsaInPorts, WhateverIsPlayedPulledCutAndLostNothingIsHeldByWhoHasGone) {
    constexpr int kActions = 20000;
    constexpr int kDevices = 4;
    constexpr int kFirst = 30;
    CHeldListener model;
    keyboards.RemoveListener(&listener);
    keyboards.AddListener(&model);
    ASSERT_EQ(keyboards.Open(), kSuccess);
    const CFakeAlsaSeq::Address own{CFakeAlsaSeq::kOwnClient, rig.api.FindOwnPorts("Input").front()};
    std::mt19937 random(1);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int action = 0; action < kActions; ++action) {
        const int number = kFirst + below(kDevices);
        switch (below(12)) {
            case 0:
                rig.api.Unplug(number);  // and comes back before anybody has read of it
                rig.api.Announce(SND_SEQ_EVENT_PORT_EXIT, {number, 0});
                [[fallthrough]];
            case 1:
                rig.api.Plug(number, "Keys", 0, "Keys", kSending);
                rig.api.Announce(SND_SEQ_EVENT_PORT_START, {number, 0});
                break;
            case 2:
                rig.Unplug(number);
                break;
            case 3:
                rig.api.Disconnect({number, 0}, own);
                rig.api.AnnounceCut({number, 0}, own);
                break;
            case 4:
                rig.api.FailInput(-ENOSPC);
                break;
            case 5:
                rig.api.Send({number, 0}, Pedal(127 * below(2)));
                break;
            default:
                rig.api.Send({number, 0}, NoteOn(60 + below(5), 100 * below(2)));
        }
        if (below(3) == 0) {
            rig.client->RunInputRound();
        }
        if (below(50) == 0) {
            for (int other = kFirst; other < kFirst + kDevices; ++other) {
                rig.Unplug(other);
            }
            ASSERT_FALSE(model.held.IsAny()) << "after " << action << " actions";
        }
    }
    keyboards.Close();
    keyboards.RemoveListener(&model);
}

}  // namespace
