#include "libmidi/portmidi/PortMIDIOutPort.h"

#include <gtest/gtest.h>

#include <array>

#include "libmidi/MIDIPlayerImpl.h"
#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/TickCounter.h"
#include "support/AllocationCounter.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using LibMidiTest::CFakePortMidi;

class PortMIDIOutPortTest : public testing::Test {
protected:
    CFakePortMidi api{{{"In", true, false}, {"Out", false, true}}};
    KivoraTest::CVirtualTime time;
    PortMIDIImpl implementation{api, time, PortMIDIImpl::Threads::kByHand};
    MIDIOutPort* port = implementation.GetPorts().FindOutputByName(L"Out");
    const std::array<MIDIEvent, 3> events{MIDIEvent{7, 0x93, 60, 80}, {8, 0xC3, 5, 0}, {9, 0xFF, 0, 0}};
};

TEST_F(PortMIDIOutPortTest, OpeningPassesTheArgumentsThatLatencyZeroNeeds) {
    EXPECT_EQ(port->Open(), kSuccess);
    EXPECT_EQ(port->GetFlags(), kOutput | kOpen);
    ASSERT_EQ(api.opens.size(), 1U);
    const LibMidiTest::OpenCall& call = api.opens[0];
    EXPECT_EQ(call.device, 1);
    EXPECT_EQ(call.driverInfo, nullptr);
    EXPECT_EQ(call.bufferSize, 1024);
    EXPECT_EQ(call.timeProcedure, &TickCounter::TimeProcedure);
    EXPECT_EQ(call.timeInfo, nullptr);
    EXPECT_EQ(call.latency, 0);
}

TEST_F(PortMIDIOutPortTest, AnOpenPortIsAlreadyOpen) {
    port->Open();
    EXPECT_EQ(port->Open(), kAlreadyOpen);
    EXPECT_EQ(api.opens.size(), 1U);
}

TEST_F(PortMIDIOutPortTest, AFailedOpeningLeavesThePortClosed) {
    api.openResult = pmHostError;
    EXPECT_EQ(port->Open(), kDeviceError);
    EXPECT_EQ(port->GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(port->Close(), kNotOpen);
    api.openResult = pmNoError;
    EXPECT_EQ(port->Open(), kSuccess);
}

TEST_F(PortMIDIOutPortTest, ClosingClosesTheStream) {
    EXPECT_EQ(port->Close(), kNotOpen);
    port->Open();
    EXPECT_EQ(port->Close(), kSuccess);
    EXPECT_EQ(port->GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(api.GetOpenStreams(), 0U);
    EXPECT_EQ(api.GetCalls().back(), "Close 1");
}

TEST_F(PortMIDIOutPortTest, AMessageIsPackedAndStampedWithTheTickCounter) {
    port->Open();
    implementation.RunInputRound();
    EXPECT_EQ(port->Write(events.data(), 3), kSuccess);
    ASSERT_EQ(api.written.size(), 3U);
    EXPECT_EQ(api.written[0].message, 0x503C93);
    EXPECT_EQ(api.written[1].message, 0x0005C3);
    EXPECT_EQ(api.written[2].message, 0x0000FF);
    EXPECT_EQ(static_cast<std::uint32_t>(api.written[0].timestamp), TickCounter::Get());
    EXPECT_EQ(api.lastWriteLength, 1);
}

TEST_F(PortMIDIOutPortTest, ResultsOfAWriteComeInTheirOrder) {
    EXPECT_EQ(port->Write(nullptr, 1), kNoData);
    EXPECT_EQ(port->Write(events.data(), 1), kNotOpen);
    port->Open();
    EXPECT_EQ(port->Write(nullptr, 0), kNoData);
    EXPECT_EQ(port->Write(events.data(), 0), kSuccess);
    EXPECT_EQ(port->Write(events.data(), -3), kSuccess);
    EXPECT_EQ(api.writes, 0);
}

TEST_F(PortMIDIOutPortTest, TheFirstFailingWriteEndsTheCall) {
    port->Open();
    api.goodWrites = 1;
    EXPECT_EQ(port->Write(events.data(), 3), kDeviceError);
    EXPECT_EQ(api.writes, 2);
    EXPECT_EQ(api.written.size(), 1U);
    EXPECT_EQ(port->GetFlags(), kOutput | kOpen);
}

TEST_F(PortMIDIOutPortTest, FromTheQueueToThePortNothingIsAllocatedOnceWarm) {
    api.keepWritten = false;
    port->Open();
    MIDIPlayerImpl player(time);
    player.SetTimeSource(&time);
    player.AttachOutput(port);
    player.BeginRounds();
    MIDIPlayerQueue& queue = *player.GetSink();
    const auto play = [&] {
        queue.SendMessage({0x90, 1, 60, 80}, 0);
        queue.SendMessage({0x80, 1, 60, 0}, 0);
        queue.PlayNote(1, 64, 80, 1, 0);
        player.RunPlayerRound();
        time.AdvanceMs(1);
        player.RunPlayerRound();
    };
    play();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (int round = 0; round < 1000; ++round) {
        play();
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(api.writes, 4 * 1001);
}

}  // namespace
