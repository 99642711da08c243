#include "libmidi/MIDIPortImpl.h"

#include <gtest/gtest.h>

#include <array>

#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::CFakeInPort;
using KivoraTest::CFakeOutPort;

const std::array<MIDIEvent, 3> kEvents{MIDIEvent{0, 0x90, 60, 80}, {0, 0xB0, 7, 100}, {0, 0x80, 60, 0}};

TEST(MIDIPortImpl, APortReportsItsNameAndFlags) {
    CFakeOutPort out(L"Name");
    EXPECT_TRUE(out.GetName() == L"Name");
    EXPECT_EQ(out.GetFlags(), std::uint32_t{kOutput});
    CFakeInPort in;
    EXPECT_EQ(in.GetFlags(), std::uint32_t{kInput});
}

TEST(MIDIPortImpl, OpenAndCloseSetAndClearTheFlag) {
    CFakeOutPort port;
    EXPECT_EQ(port.Open(), kSuccess);
    EXPECT_EQ(port.GetFlags(), kOutput | kOpen);
    EXPECT_EQ(port.Open(), kAlreadyOpen);
    EXPECT_EQ(port.device.openAttempts, 1);
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_EQ(port.GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(port.Close(), kNotOpen);
    EXPECT_EQ(port.device.closeCount, 1);
}

TEST(MIDIPortImpl, ADeviceThatDoesNotOpenLeavesThePortClosed) {
    CFakeOutPort port;
    port.device.failsToOpen = true;
    EXPECT_EQ(port.Open(), kDeviceError);
    EXPECT_EQ(port.GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(port.device.closeCount, 0);
}

TEST(MIDIPortImpl, AnOpeningThatIsTakenBackClosesTheDevice) {
    CFakeInPort port;
    port.device.takesOpeningBack = true;
    EXPECT_EQ(port.Open(), kDeviceError);
    EXPECT_EQ(port.GetFlags(), std::uint32_t{kInput});
    EXPECT_EQ(port.device.closeCount, 1);
}

TEST(MIDIPortImpl, AnUnavailablePortFailsEveryOperationFirst) {
    CFakeOutPort port(L"x", kOutput | kUnavailableFlag);
    EXPECT_EQ(port.Open(), kUnavailable);
    EXPECT_EQ(port.Close(), kUnavailable);
    EXPECT_EQ(port.Write(nullptr, 1), kUnavailable);
    EXPECT_EQ(port.Write(kEvents.data(), 1), kUnavailable);
    EXPECT_EQ(port.device.openAttempts, 0);
}

TEST(MIDIPortImpl, ANullArrayComesBeforeAClosedPort) {
    CFakeOutPort port;
    EXPECT_EQ(port.Write(nullptr, 1), kNoData);
    EXPECT_EQ(port.Write(nullptr, 0), kNoData);
    EXPECT_EQ(port.Write(kEvents.data(), 1), kNotOpen);
    EXPECT_EQ(port.Write(kEvents.data(), 0), kNotOpen);
}

TEST(MIDIPortImpl, ACountBelowOneWritesNothing) {
    CFakeOutPort port;
    port.Open();
    EXPECT_EQ(port.Write(kEvents.data(), 0), kSuccess);
    EXPECT_EQ(port.Write(kEvents.data(), -1), kSuccess);
    EXPECT_TRUE(port.GetWritten().empty());
    EXPECT_EQ(port.Write(nullptr, 0), kNoData);
}

TEST(MIDIPortImpl, EventsAreWrittenInOrder) {
    CFakeOutPort port;
    port.Open();
    EXPECT_EQ(port.Write(kEvents.data(), 3), kSuccess);
    EXPECT_EQ(port.GetWritten(), (std::vector<std::uint32_t>{0x903C50, 0xB00764, 0x803C00}));
}

TEST(MIDIPortImpl, TheFirstFailingWriteEndsTheCallAndEarlierEventsStaySent) {
    CFakeOutPort port;
    port.Open();
    int left = 1;
    port.device.onWriting = [&] { port.device.failsToWrite = left-- <= 0; };
    EXPECT_EQ(port.Write(kEvents.data(), 3), kDeviceError);
    EXPECT_EQ(port.GetWritten(), (std::vector<std::uint32_t>{0x903C50}));
    EXPECT_EQ(left, -1);
}

TEST(MIDIPortImpl, ClosingWaitsForAWriteInProgress) {
    CFakeOutPort port;
    port.Open();
    std::atomic<bool> writing{false};
    std::atomic<bool> mayGoOn{false};
    port.device.onWriting = [&] {
        writing = true;
        writing.notify_all();
        mayGoOn.wait(false);
    };
    std::thread writer([&] { port.Write(kEvents.data(), 1); });
    writing.wait(false);
    std::thread closer([&] { port.Close(); });
    EXPECT_EQ(port.device.closeCount, 0);
    mayGoOn = true;
    mayGoOn.notify_all();
    closer.join();
    writer.join();
    EXPECT_EQ(port.device.closeCount, 1);
    EXPECT_EQ(port.GetWritten().size(), 1U);
}

struct CDataListener : MIDIPortDataListener {
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        batches.emplace_back(events, events + count);
        if (log != nullptr) {
            log->push_back(number);
        }
    }
    int number = 0;
    std::vector<int>* log = nullptr;
    std::vector<std::vector<MIDIEvent>> batches;
};

TEST(MIDIInPortImpl, EveryListenerGetsEachBatchInListOrder) {
    CFakeInPort port;
    std::vector<int> log;
    CDataListener a;
    CDataListener b;
    a.number = 1;
    b.number = 2;
    a.log = b.log = &log;
    port.AddListener(&a);
    port.AddListener(&b);
    port.AddListener(&a);
    port.NotifyData(kEvents.data(), 3);
    EXPECT_EQ(log, (std::vector{1, 2, 1}));
    ASSERT_EQ(b.batches.size(), 1U);
    EXPECT_EQ(b.batches[0].size(), 3U);
    port.RemoveListener(&a);
    log.clear();
    port.NotifyData(kEvents.data(), 1);
    EXPECT_EQ(log, (std::vector{2, 1}));
}

TEST(MIDIInPortImpl, AListenerMayIgnoreLosses) {
    CFakeInPort port;
    CDataListener a;
    port.AddListener(&a);
    port.NotifyDataLost(1);
    EXPECT_TRUE(a.batches.empty());
    EXPECT_EQ(port.GetLostCount(), 0U);
}

TEST(MIDIInPortImpl, IsClosingIsToldToListeners) {
    CFakeInPort port;
    EXPECT_FALSE(port.IsClosing());
    port.SetClosing(true);
    EXPECT_TRUE(port.IsClosing());
}

}  // namespace
