// Devices that go and come back, as the ports of PortMidi see them by the sequencer's list.
#include "libmidi/portmidi/DeviceWatch.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/PortMIDIInPort.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using NK::Platform::SequencerAddress;
using NK::Platform::SequencerPort;

constexpr SequencerAddress kOwn{128, 3};

/// A sequencer to which PortMidi's openings connect.
class DeviceWatchTest : public testing::Test {
protected:
    static SequencerPort Make(SequencerAddress address, const std::string& name) {
        return {address, name, true, true, {}, {}};
    }
    void Plug(SequencerAddress address, const std::string& name) { ports.push_back(Make(address, name)); }
    void Unplug(SequencerAddress address) {
        std::erase_if(ports, [&](const SequencerPort& port) { return port.address == address; });
    }
    SequencerPort& At(SequencerAddress address) {
        for (SequencerPort& port : ports) {
            if (port.address == address) {
                return port;
            }
        }
        throw std::out_of_range("no such port");
    }
    /// Opens a port, as a result of which the sequencer connects it to the program.
    void Open(MIDIPort& port, std::optional<SequencerAddress> address) {
        connecting = address;
        ASSERT_EQ(port.Open(), kSuccess);
        connecting.reset();
    }

    std::vector<SequencerPort> ports{Make({16, 0}, "Keys"), Make({20, 0}, "Twins"), Make({24, 0}, "Twins")};
    bool isKnown = true;
    std::optional<SequencerAddress> connecting;
    LibMidiTest::CFakePortMidi api{{{"Keys", false, true},
                                    {"Keys", true, false},
                                    {"Twins", false, true},
                                    {"Twins", true, false},
                                    {"Twins", false, true},
                                    {"Twins", true, false},
                                    {"Not on the sequencer", true, false}}};
    KivoraTest::CVirtualTime time;
    const SequencerLister lister = [this]() -> std::optional<std::vector<SequencerPort>> {
        if (!isKnown) {
            return std::nullopt;
        }
        if (connecting && !api.opens.empty() && api.GetOpenStreams() != 0) {
            At(*connecting).listeners = {kOwn};
            At(*connecting).senders = {kOwn};
        }
        return ports;
    };
    PortMIDIImpl set{api, time, PortMIDIImpl::Threads::kByHand, lister};
    MIDIInPort& keys = *set.GetPorts().FindInputByName(L"Keys");
    MIDIOutPort& out = *set.GetPorts().FindOutputByName(L"Keys");
};

TEST_F(DeviceWatchTest, ADeviceThatIsThereWorks) {
    Open(keys, SequencerAddress{16, 0});
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks);
    Unplug({20, 0});
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks) << "another one has gone";
}

TEST_F(DeviceWatchTest, ADeviceThatGoesIsLostUntilItIsBackAndOpenedAgain) {
    Open(keys, SequencerAddress{16, 0});
    Unplug({16, 0});
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kLost);
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kLost);
    Plug({16, 0}, "Keys");
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
    keys.Close();
    Open(keys, SequencerAddress{16, 0});
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks);
}

TEST_F(DeviceWatchTest, APlugThatWobblesBetweenTwoLooksIsNoticedByItsConnection) {
    At({16, 0}).listeners = {{130, 0}};  // of another program
    Open(keys, SequencerAddress{16, 0});
    At({16, 0}).listeners = {{130, 0}};
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
}

TEST_F(DeviceWatchTest, WithoutAConnectionToBeSeenADeviceThatHasGoneIsNoticedToo) {
    Open(keys, std::nullopt);
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks);
    Unplug({16, 0});
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kLost);
    Plug({16, 0}, "Keys");
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
}

TEST_F(DeviceWatchTest, AnotherDeviceInItsPlaceIsNotIt) {
    Open(keys, SequencerAddress{16, 0});
    Unplug({16, 0});
    Plug({16, 0}, "Drums");
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kLost);
    Plug({28, 0}, "Keys");
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kElsewhere);
}

TEST_F(DeviceWatchTest, OfTwoOfOneNameEachIsFollowedByItself) {
    MIDIInPort& second = *set.GetPorts().FindInputByName(L"Twins (2)");
    Open(second, SequencerAddress{24, 0});
    Unplug({24, 0});
    EXPECT_EQ(second.LookAtDevice(), DeviceState::kLost) << "its twin does not stand for it";
    Plug({32, 0}, "Twins");
    EXPECT_EQ(second.LookAtDevice(), DeviceState::kElsewhere);
}

TEST_F(DeviceWatchTest, WhereNothingIsKnownADeviceCountsAsThere) {
    MIDIInPort& other = *set.GetPorts().FindInputByName(L"Not on the sequencer");
    ASSERT_EQ(other.Open(), kSuccess);
    EXPECT_EQ(other.LookAtDevice(), DeviceState::kWorks);
    ASSERT_EQ(keys.Open(), kSuccess);
    isKnown = false;
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks);
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kWorks);
}

TEST_F(DeviceWatchTest, AnInputThatHasFailedIsToBeOpenedAgainThoughItSends) {
    auto& input = dynamic_cast<PortMIDIInPort&>(keys);
    ASSERT_EQ(keys.Open(), kSuccess);
    api.pollError = pmHostError;
    input.ReceiveRound();
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
    api.pollError = pmNoError;
    input.ReceiveRound();
    api.Receive(1, Pm_Message(0x90, 60, 80));
    input.ReceiveRound();
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack) << "a release may have been lost";
    keys.Close();
    keys.Open();
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kWorks);
    api.Receive(1, pmBadPtr);
    input.ReceiveRound();
    input.ReceiveRound();
    EXPECT_EQ(keys.LookAtDevice(), DeviceState::kBack);
}

TEST_F(DeviceWatchTest, AnOutputThatGoesUnnoticedByTheWritingIsBackInItsPlace) {
    Open(out, SequencerAddress{16, 0});
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kWorks);
    Unplug({16, 0});
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kLost);
    Plug({16, 0}, "Keys");
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kBack);
}

TEST_F(DeviceWatchTest, AnOutputWhoseWritingFailedIsReachedByTheNextSetOnly) {
    Open(out, SequencerAddress{16, 0});
    api.goodWrites = 0;
    const MIDIEvent note(0, 0x90, 60, 80);
    EXPECT_EQ(out.Write(&note, 1), kDeviceError);
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kElsewhere);
    Unplug({16, 0});
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kLost);
    Plug({16, 0}, "Keys");
    EXPECT_EQ(out.LookAtDevice(), DeviceState::kElsewhere);
}

}  // namespace
