// The rounds of an input port, called by hand.
#include "libmidi/portmidi/PortMIDIInPort.h"

#include <gtest/gtest.h>

#include <vector>

#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/TickCounter.h"
#include "support/AllocationCounter.h"
#include "support/FakePorts.h"
#include "support/FatalLog.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using LibMidiTest::CFakePortMidi;

using Batches = std::vector<std::vector<std::uint32_t>>;

/// Keeps the batches; a loss is a batch of its own: {number of overruns}.
struct CBatchListener : MIDIPortDataListener {
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        std::vector<std::uint32_t> batch;
        for (std::int32_t index = 0; index < count; ++index) {
            batch.push_back(BytesOf(events[index]));
        }
        batches.push_back(batch);
    }
    void OnMIDIDataLost(std::uint32_t lostCount) override { batches.push_back({lostCount}); }
    Batches batches;
};

class PortMIDIInPortTest : public testing::Test {
protected:
    PortMIDIInPortTest() { port.AddListener(&listener); }
    ~PortMIDIInPortTest() override {
        port.Close();
        port.RemoveListener(&listener);
    }

    void Receive(int status, int data1, int data2) { api.Receive(0, Pm_Message(status, data1, data2)); }
    void ReceiveRounds(int rounds) {
        for (int round = 0; round < rounds; ++round) {
            port.ReceiveRound();
        }
    }
    Batches Deliver() {
        listener.batches.clear();
        port.DeliverRound();
        return listener.batches;
    }

    CFakePortMidi api{{{"Keys", true, false}}};
    KivoraTest::CVirtualTime time;
    PortMIDIImpl implementation{api, time, PortMIDIImpl::Threads::kByHand};
    PortMIDIInPort port{implementation, 0, L"Keys"};
    CBatchListener listener;
};

TEST_F(PortMIDIInPortTest, OpeningPassesPortMidisDefaultBufferSizeAndTheTickCounter) {
    EXPECT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.GetFlags(), kInput | kOpen);
    ASSERT_EQ(api.opens.size(), 1U);
    EXPECT_EQ(api.opens[0].device, 0);
    EXPECT_EQ(api.opens[0].driverInfo, nullptr);
    EXPECT_EQ(api.opens[0].bufferSize, 0);
    EXPECT_EQ(api.opens[0].timeProcedure, &TickCounter::TimeProcedure);
    EXPECT_EQ(api.opens[0].timeInfo, nullptr);
    EXPECT_EQ(port.Open(), kAlreadyOpen);
}

TEST_F(PortMIDIInPortTest, AFailedOpeningLeavesThePortClosed) {
    api.openResult = pmInvalidDeviceId;
    EXPECT_EQ(port.Open(), kDeviceError);
    EXPECT_EQ(port.GetFlags(), std::uint32_t{kInput});
    EXPECT_EQ(port.Close(), kNotOpen);
    EXPECT_EQ(api.GetCalls(), (std::vector<std::string>{"Initialize", "OpenInput 0"}));
}

TEST_F(PortMIDIInPortTest, ItClosesItselfWhenDestroyed) {
    {
        PortMIDIInPort other(implementation, 0, L"x");
        other.Open();
    }
    EXPECT_EQ(api.GetCalls().back(), "Close 0");
    EXPECT_EQ(api.GetOpenStreams(), 0U);
}

TEST_F(PortMIDIInPortTest, ARoundReadsOneEventAndADeliveryPassesAllThatIsQueued) {
    port.Open();
    Receive(0x90, 60, 80);
    Receive(0x80, 60, 0);
    Receive(0xB1, 7, 100);
    port.ReceiveRound();
    EXPECT_EQ(api.GetUnread(0), 2U);
    EXPECT_EQ(api.lastReadLength, 1);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50}}));
    ReceiveRounds(2);
    EXPECT_EQ(Deliver(), (Batches{{0x803C00, 0xB10764}}));
    EXPECT_EQ(Deliver(), (Batches{}));
}

TEST_F(PortMIDIInPortTest, ChannelPressureArrivesWithItsLowFourBits) {
    port.Open();
    Receive(0xD0, 100, 0);
    port.ReceiveRound();
    EXPECT_EQ(Deliver(), (Batches{{0xD00400}}));
}

TEST_F(PortMIDIInPortTest, SystemMessagesAndBytesThatAreNoStatusAreDropped) {
    port.Open();
    Receive(0xF8, 0, 0);
    Receive(0xF0, 1, 2);
    Receive(0x40, 1, 2);
    Receive(0x90, 60, 80);
    ReceiveRounds(3);
    EXPECT_EQ(Deliver(), (Batches{}));
    port.ReceiveRound();
    EXPECT_EQ(Deliver(), (Batches{{0x903C50}}));
}

TEST_F(PortMIDIInPortTest, AClosedPortIsNotPolled) {
    Receive(0x90, 60, 80);
    port.ReceiveRound();
    EXPECT_EQ(api.polls, 0);
    port.Open();
    port.Close();
    port.ReceiveRound();
    EXPECT_EQ(api.polls, 0);
}

TEST_F(PortMIDIInPortTest, ClosingEmptiesTheQueue) {
    port.Open();
    Receive(0x90, 60, 80);
    api.Receive(0, pmBufferOverflow);
    ReceiveRounds(2);
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(port.Close(), kNotOpen);
    port.Open();
    EXPECT_EQ(Deliver(), (Batches{}));
}

TEST_F(PortMIDIInPortTest, WithoutDataADeviceIsReadOnceAndThenRarely) {
    port.Open();
    ReceiveRounds(1);
    EXPECT_EQ(api.reads, 1);
    ReceiveRounds(PortMIDIInPort::kProbeRounds - 1);
    EXPECT_EQ(api.reads, 1);
    ReceiveRounds(1);
    EXPECT_EQ(api.reads, 2);
    EXPECT_EQ(api.polls, static_cast<int>(PortMIDIInPort::kProbeRounds) + 1);
    EXPECT_EQ(Deliver(), (Batches{}));
}

TEST_F(PortMIDIInPortTest, AnOverrunThatPollingDoesNotTellOfIsFoundRightAfterTheData) {
    port.Open();
    ReceiveRounds(10);
    Receive(0x90, 60, 80);
    api.Receive(0, CFakePortMidi::kHiddenOverflow);
    ReceiveRounds(2);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50}, {1}}));
    EXPECT_EQ(port.GetLostCount(), 1U);
}

TEST_F(PortMIDIInPortTest, AnOverrunOfAQuietPortIsFoundToo) {
    port.Open();
    ReceiveRounds(10);
    api.Receive(0, CFakePortMidi::kHiddenOverflow);
    ReceiveRounds(PortMIDIInPort::kProbeRounds);
    EXPECT_EQ(Deliver(), (Batches{{1}}));
}

TEST_F(PortMIDIInPortTest, ALossIsToldBetweenTheEventsBeforeAndAfterIt) {
    port.Open();
    Receive(0x90, 60, 80);
    api.Receive(0, pmBufferOverflow);
    Receive(0x90, 62, 80);
    api.Receive(0, pmBufferOverflow);
    Receive(0x90, 64, 80);
    ReceiveRounds(5);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50, 0x903E50}, {2}, {0x904050}}));
    EXPECT_EQ(port.GetLostCount(), 2U);
    EXPECT_EQ(Deliver(), (Batches{}));
    port.Close();
    port.Open();
    EXPECT_EQ(port.GetLostCount(), 0U);
}

TEST_F(PortMIDIInPortTest, OtherErrorsOfReadingAndPollingLoseNothing) {
    port.Open();
    api.Receive(0, pmHostError);
    Receive(0x90, 60, 80);
    ReceiveRounds(1);
    EXPECT_EQ(Deliver(), (Batches{}));
    api.pollError = pmBadPtr;
    ReceiveRounds(2);
    api.pollError = pmNoError;
    ReceiveRounds(1);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50}}));
    EXPECT_EQ(port.GetLostCount(), 0U);
}

TEST_F(PortMIDIInPortTest, NothingIsAllocatedOnceWarm) {
    struct CQuiet : MIDIPortDataListener {
        void OnMIDIData(const MIDIEvent*, std::int32_t count) override { events += count; }
        int events = 0;
    } quiet;
    port.RemoveListener(&listener);
    port.AddListener(&quiet);
    port.Open();
    api.flood = true;
    const auto round = [this] {
        ReceiveRounds(4);
        port.DeliverRound();
    };
    round();
    round();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (int count = 0; count < 100; ++count) {
        round();
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(quiet.events, 4 * 102);
    port.RemoveListener(&quiet);
}

class COddQueuePort : public PortMIDIInPort {
public:
    explicit COddQueuePort(PortMIDIImpl& implementation)
        : MIDIPortImpl(0, L"Odd", kInput), PortMIDIInPort(implementation, 0, L"Odd") {}
    std::size_t extra = 0;

protected:
    std::size_t GetQueueSize() const NK_REQUIRES(queueLock_) override { return PortMIDIInPort::GetQueueSize() + extra; }
};

TEST_F(PortMIDIInPortTest, AQueueAboveAHundredMillionEventsIsLeftAloneForAWhile) {
    COddQueuePort odd(implementation);
    odd.AddListener(&listener);
    odd.Open();
    Receive(0x90, 60, 80);
    odd.ReceiveRound();
    odd.extra = 100000000;
    odd.DeliverRound();
    EXPECT_TRUE(listener.batches.empty());
    EXPECT_EQ(time.GetSleptMs(), 200U);
    odd.extra = 99999999;
    odd.DeliverRound();
    EXPECT_EQ(listener.batches, (Batches{{0x903C50}}));
    EXPECT_EQ(time.GetSleptMs(), 200U);
    odd.Close();
    odd.RemoveListener(&listener);
}

}  // namespace
