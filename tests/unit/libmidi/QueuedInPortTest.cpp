#include "libmidi/QueuedInPort.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/AllocationCounter.h"
#include "support/FakePorts.h"
#include "support/VirtualTime.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;

using Batches = std::vector<std::vector<std::uint32_t>>;

class CQueuedPort : public QueuedInPort {
public:
    explicit CQueuedPort(NK::CSleeper& sleeper) : MIDIPortImpl(0, L"Keys", kInput), QueuedInPort(sleeper) {}

    using QueuedInPort::BeginReceiving;
    using QueuedInPort::ClearQueue;
    using QueuedInPort::DeliverQueued;
    using QueuedInPort::QueueEvent;
    using QueuedInPort::QueueLoss;

    std::size_t extra = 0;

protected:
    std::size_t GetQueueSize() const NK_REQUIRES(queueLock_) override { return QueuedInPort::GetQueueSize() + extra; }

private:
    bool OpenDevice() override { return true; }
    void CloseDevice() override {}
};

/// Keeps the batches; a loss is a batch of its own: {number of losses}.
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

class QueuedInPortTest : public testing::Test {
protected:
    QueuedInPortTest() { port.AddListener(&listener); }
    ~QueuedInPortTest() override { port.RemoveListener(&listener); }

    void Queue(std::uint8_t note) { port.QueueEvent({0, 0x90, note, 80}); }
    Batches Deliver() {
        listener.batches.clear();
        port.DeliverQueued();
        return listener.batches;
    }

    KivoraTest::CVirtualTime time;
    CQueuedPort port{time};
    CBatchListener listener;
};

TEST_F(QueuedInPortTest, EverythingThatIsQueuedComesInOrderInOneArray) {
    EXPECT_EQ(Deliver(), (Batches{}));
    Queue(60);
    Queue(62);
    Queue(64);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50, 0x903E50, 0x904050}}));
    EXPECT_EQ(Deliver(), (Batches{}));
}

TEST_F(QueuedInPortTest, ALossIsToldBetweenTheEventsBeforeAndAfterIt) {
    Queue(60);
    port.QueueLoss();
    Queue(62);
    port.QueueLoss();
    Queue(64);
    EXPECT_EQ(Deliver(), (Batches{{0x903C50, 0x903E50}, {2}, {0x904050}}));
    EXPECT_EQ(port.GetLostCount(), 2U);
    port.QueueLoss();
    EXPECT_EQ(Deliver(), (Batches{{1}}));
    port.BeginReceiving();
    EXPECT_EQ(port.GetLostCount(), 0U);
}

TEST_F(QueuedInPortTest, AClearedQueueDeliversNothing) {
    Queue(60);
    port.QueueLoss();
    port.ClearQueue();
    EXPECT_EQ(Deliver(), (Batches{}));
}

TEST_F(QueuedInPortTest, AQueueThatCountsAsCorruptIsLeftAloneForAWhile) {
    Queue(60);
    port.extra = QueuedInPort::kMaxQueueSize;
    EXPECT_EQ(Deliver(), (Batches{}));
    EXPECT_EQ(time.GetSleptMs(), 200U);
    port.extra = QueuedInPort::kMaxQueueSize - 1;
    EXPECT_EQ(Deliver(), (Batches{{0x903C50}}));
    EXPECT_EQ(time.GetSleptMs(), 200U);
}

TEST_F(QueuedInPortTest, NothingIsAllocatedOnceWarm) {
    struct CQuiet : MIDIPortDataListener {
        void OnMIDIData(const MIDIEvent*, std::int32_t count) override { events += count; }
        int events = 0;
    } quiet;
    port.RemoveListener(&listener);
    port.AddListener(&quiet);
    const auto round = [this] {
        for (std::uint8_t note = 0; note < 100; ++note) {
            Queue(note);
        }
        port.DeliverQueued();
    };
    round();
    round();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    round();
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(quiet.events, 300);
    port.RemoveListener(&quiet);
}

}  // namespace
