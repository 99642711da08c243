// The player's rounds, called by hand on a clock that the test moves.
#include <gtest/gtest.h>

#include <vector>

#include "libmidi/MIDIPlayerImpl.h"
#include "support/AllocationCounter.h"
#include "support/FakePorts.h"
#include "support/FatalLog.h"
#include "support/VirtualTime.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using KivoraTest::CFakeOutPort;
using KivoraTest::CVirtualTime;

using Bytes = std::vector<std::uint32_t>;

struct CNoteListener : MIDIPlayerListener {
    void OnNotePlayed(const MIDIEvent& event) override { notes.push_back(BytesOf(event)); }
    Bytes notes;
};

class MIDIPlayerRounds : public testing::Test {
protected:
    MIDIPlayerRounds() {
        port.Open();
        second.Open();
        player.SetTimeSource(&time);
        player.AttachOutput(&port);
        player.BeginRounds();
    }

    bool RoundAfter(std::int64_t ms) {
        time.AdvanceMs(ms);
        return player.RunPlayerRound();
    }
    void RunEventsRounds(int rounds) {
        for (int round = 0; round < rounds; ++round) {
            player.RunEventsRound();
        }
    }

    CVirtualTime time;
    CFakeOutPort port{L"first"};
    CFakeOutPort second{L"second"};
    MIDIPlayerImpl player{time};
    MIDIPlayerQueue& queue{*player.GetSink()};
};

TEST_F(MIDIPlayerRounds, TheSinkIsAlwaysTheSame) {
    EXPECT_EQ(player.GetSink(), player.GetSink());
}

TEST_F(MIDIPlayerRounds, ARoundWritesWhatIsReady) {
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(RoundAfter(1));
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    EXPECT_TRUE(RoundAfter(1));
    EXPECT_TRUE(port.TakeWritten().empty());
}

TEST_F(MIDIPlayerRounds, ANoteEndsAfterItsDurationOfTheTimeSource) {
    queue.PlayNote(0, 60, 80, 100, 0);
    RoundAfter(0);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    RoundAfter(99);
    EXPECT_TRUE(port.TakeWritten().empty());
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x803C00}));
}

TEST_F(MIDIPlayerRounds, TheFractionOfAMillisecondIsCarriedToTheNextRound) {
    struct CNanoClock : NK::CTimeSource {
        std::int64_t GetTimeNs() override { return now; }
        std::int64_t now = 0;
    } clock;
    player.SetTimeSource(&clock);
    player.BeginRounds();
    queue.PlayNote(0, 60, 80, 2, 0);
    player.RunPlayerRound();
    port.TakeWritten();
    clock.now += 1999999;
    player.RunPlayerRound();
    EXPECT_TRUE(port.TakeWritten().empty());
    clock.now += 1;
    player.RunPlayerRound();
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x803C00}));
    player.SetTimeSource(&time);
}

TEST_F(MIDIPlayerRounds, WhenTimeStandsStillReadyEventsAreStillWritten) {
    queue.PlayNote(0, 60, 80, 1, 0);
    EXPECT_TRUE(RoundAfter(0));
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    EXPECT_TRUE(RoundAfter(0));
    EXPECT_TRUE(port.TakeWritten().empty());
}

TEST_F(MIDIPlayerRounds, WhenTimeGoesBackNothingElapsesAndTheBackwardTimeCounts) {
    time.SetMs(1000);
    player.BeginRounds();
    queue.PlayNote(0, 60, 80, 10, 0);
    time.SetMs(500);
    player.RunPlayerRound();
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    time.SetMs(509);
    player.RunPlayerRound();
    EXPECT_TRUE(port.TakeWritten().empty());
    time.SetMs(510);
    player.RunPlayerRound();
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x803C00}));
}

TEST_F(MIDIPlayerRounds, TimeWithoutWorkDoesNotShortenALaterNote) {
    RoundAfter(5000);
    queue.PlayNote(0, 60, 80, 100, 0);
    RoundAfter(1);
    RoundAfter(98);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x803C00}));
}

TEST_F(MIDIPlayerRounds, AVeryLongPauseEndsEveryNote) {
    queue.PlayNote(0, 60, 80, 2000000000, 0);
    RoundAfter(0);
    RoundAfter(std::int64_t{60} * 24 * 3600 * 1000);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50, 0x803C00}));
}

TEST_F(MIDIPlayerRounds, TheTargetSelectsTheOutput) {
    player.AttachOutput(&second);
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 1), kFirstPort));
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0xB00101}));
    EXPECT_TRUE(second.TakeWritten().empty());
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 2), 1));
    RoundAfter(1);
    EXPECT_TRUE(port.TakeWritten().empty());
    EXPECT_EQ(second.TakeWritten(), (Bytes{0xB00102}));
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 3), kAllPorts));
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0xB00103}));
    EXPECT_EQ(second.TakeWritten(), (Bytes{0xB00103}));
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 4), -7));
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten(), (Bytes{0xB00104}));
    EXPECT_TRUE(second.TakeWritten().empty());
}

TEST_F(MIDIPlayerRounds, APortNumberOutsideTheListFallsBackToTheFirstWithALine) {
    player.AttachOutput(&second);
    KivoraTest::CFatalLog::Instance().Expect(
        L"Warning: requested MIDI port #2, number of ports=2, falling back to port #0.");
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 1), 2));
    EXPECT_TRUE(RoundAfter(1));
    EXPECT_EQ(port.TakeWritten(), (Bytes{0xB00101}));
    EXPECT_TRUE(second.TakeWritten().empty());
}

TEST_F(MIDIPlayerRounds, ABlockIsWrittenInOrderToItsTarget) {
    player.AttachOutput(&second);
    queue.Queue(BlockSynthEvent(0, {CtrlEvent(0, 0, 0, 1), PatchEvent(0, 0, 5), NoteEvent(0, 0, 60, 80, 0x90)}, 1));
    RoundAfter(1);
    EXPECT_EQ(second.TakeWritten(), (Bytes{0xB00001, 0xC00500, 0x903C50}));
    EXPECT_TRUE(port.TakeWritten().empty());
}

TEST_F(MIDIPlayerRounds, WithoutAnOutputEventsAreDropped) {
    MIDIPlayerImpl alone(time);
    alone.SetTimeSource(&time);
    alone.BeginRounds();
    alone.GetSink()->SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(alone.RunPlayerRound());
    EXPECT_FALSE(alone.GetSink()->HasWork());
}

TEST_F(MIDIPlayerRounds, ADetachedOutputIsNotWrittenTo) {
    const int binding = player.AttachOutput(&second);
    EXPECT_GE(binding, 0);
    player.DetachOutput(binding);
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 1), kAllPorts));
    RoundAfter(1);
    EXPECT_EQ(port.TakeWritten().size(), 1U);
    EXPECT_TRUE(second.TakeWritten().empty());
    player.DetachOutput(binding);
    player.DetachOutput(-1);
    EXPECT_NE(player.AttachOutput(&second), binding);
}

TEST_F(MIDIPlayerRounds, AFailedWriteEndsTheRound) {
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    queue.SendMessage({0x90, 1, 62, 80}, 0);
    int writes = 0;
    port.device.onWriting = [&] { port.device.failsToWrite = writes++ != 0; };
    EXPECT_FALSE(RoundAfter(1));
    EXPECT_EQ(port.TakeWritten(), (Bytes{0x903C50}));
    EXPECT_EQ(writes, 2);
}

TEST_F(MIDIPlayerRounds, AFailedWriteInABlockEndsTheRound) {
    queue.Queue(BlockSynthEvent(0, {CtrlEvent(0, 0, 0, 1), PatchEvent(0, 0, 5)}, 0));
    port.device.failsToWrite = true;
    EXPECT_FALSE(RoundAfter(1));
}

TEST_F(MIDIPlayerRounds, AFailedWriteToOneOfAllPortsEndsTheRound) {
    player.AttachOutput(&second);
    second.device.failsToWrite = true;
    queue.Queue(SynthEventBase(CtrlEvent(0, 0, 1, 3), kAllPorts));
    EXPECT_FALSE(RoundAfter(1));
    EXPECT_EQ(port.TakeWritten().size(), 1U);
}

TEST_F(MIDIPlayerRounds, AClosedOutputCountsAsAFailedWrite) {
    port.Close();
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(RoundAfter(1));
}

TEST_F(MIDIPlayerRounds, ListenersAreToldOneNoteARoundInOrder) {
    CNoteListener a;
    CNoteListener b;
    player.AddListener(&a);
    player.AddListener(&b);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    queue.SendMessage({0xB0, 1, 7, 100}, 0);
    queue.SendMessage({0x80, 1, 62, 0}, 0);
    queue.Queue(BlockSynthEvent(0, {NoteEvent(0, 0, 70, 80, 0x90)}, 0));
    RoundAfter(1);
    EXPECT_TRUE(a.notes.empty());
    player.RunEventsRound();
    EXPECT_EQ(a.notes, (Bytes{0x903C50}));
    EXPECT_EQ(b.notes, (Bytes{0x903C50}));
    RunEventsRounds(5);
    EXPECT_EQ(a.notes, (Bytes{0x903C50, 0x803E00}));
    player.RemoveListener(&a);
    queue.SendMessage({0x90, 1, 61, 80}, 0);
    RoundAfter(1);
    player.RunEventsRound();
    EXPECT_EQ(a.notes.size(), 2U);
    EXPECT_EQ(b.notes.size(), 3U);
}

TEST_F(MIDIPlayerRounds, ANoteThatCouldNotBeWrittenIsNotTold) {
    CNoteListener listener;
    player.AddListener(&listener);
    port.device.failsToWrite = true;
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    RoundAfter(1);
    RunEventsRounds(2);
    EXPECT_TRUE(listener.notes.empty());
}

TEST_F(MIDIPlayerRounds, AListenerMayDeleteItselfInItsCall) {
    struct CSelfDeleting : MIDIPlayerListener {
        explicit CSelfDeleting(MIDIPlayerImpl& owner, int& counter) : player(owner), calls(counter) {}
        void OnNotePlayed(const MIDIEvent&) override {
            ++calls;
            player.RemoveListener(this);
            delete this;
        }
        MIDIPlayerImpl& player;
        int& calls;
    };
    int calls = 0;
    CNoteListener after;
    player.AddListener(new CSelfDeleting(player, calls));
    player.AddListener(&after);
    for (int note = 0; note < 3; ++note) {
        queue.SendMessage({0x90, 1, 60, 80}, 0);
        RoundAfter(1);
        player.RunEventsRound();
    }
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(after.notes.size(), 3U);
}

TEST_F(MIDIPlayerRounds, TheNotesNotYetToldAreBounded) {
    CNoteListener listener;
    player.AddListener(&listener);
    for (int event = 0; event < 5000; ++event) {
        queue.SendMessage(
            {0x90, 1, static_cast<std::uint8_t>(event & 0x7F), static_cast<std::uint8_t>(event >> 7 | 64)}, 0);
        RoundAfter(0);
    }
    RunEventsRounds(5001);
    ASSERT_EQ(listener.notes.size(), 4096U);
    EXPECT_EQ(listener.notes.front(), 0x900040U | (5000 - 4096) >> 7 | ((5000 - 4096) & 0x7F) << 8);
    EXPECT_EQ(listener.notes.back(), 0x900040U | 4999 >> 7 | (4999 & 0x7F) << 8);
}

TEST_F(MIDIPlayerRounds, TheCaptureRunsOnThePlayersClock) {
    queue.StartCapture();
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    RoundAfter(321);
    std::uint32_t stamp = 0;
    queue.VisitCaptured(0, [&stamp](const CapturedEvent& event) { stamp = event.time; });
    EXPECT_EQ(stamp, 321U);
}

TEST_F(MIDIPlayerRounds, TheSinkMayOutliveThePlayerAndThenAcceptsNothing) {
    std::shared_ptr<MIDIPlayerQueue> kept;
    {
        CVirtualTime clock;
        MIDIPlayerImpl shortLived(time);
        shortLived.SetTimeSource(&clock);
        kept = shortLived.GetSink();
        kept->StartCapture();
        kept->SendMessage({0x90, 1, 60, 80}, 0);
        std::vector<TakenEvent> taken;
        kept->AdvanceAndTake(0, taken);
        kept->SendMessage({0x90, 1, 61, 80}, 0);
    }
    EXPECT_FALSE(kept->HasWork());
    kept->SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(kept->HasWork());
    EXPECT_EQ(kept->GetCapturedCount(), 1U);
    EXPECT_TRUE(kept->IsCapturing());
    kept->StopCapture();
}

TEST_F(MIDIPlayerRounds, NothingIsAllocatedOnceWarm) {
    CNoteListener listener;
    listener.notes.reserve(10000);
    player.AddListener(&listener);
    port.device.Reserve(10000);
    const auto play = [&] {
        for (std::uint8_t note = 0; note < 8; ++note) {
            queue.PlayNote(0, note, 80, 3, 0);
            queue.SendMessage({0xB0, 1, 7, note}, 0);
        }
        RoundAfter(1);
        player.RunEventsRound();
        RoundAfter(3);
        player.RunEventsRound();
    };
    play();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (int round = 0; round < 100; ++round) {
        play();
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(port.GetWritten().size(), 101U * 24U);
}

}  // namespace
