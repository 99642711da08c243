#include "libmidi/MIDIPlayerQueue.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "libmidi/MIDIPortContainer.h"
#include "support/AllocationCounter.h"
#include "support/FakePorts.h"
#include "support/VirtualTime.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using KivoraTest::CVirtualTime;

using Bytes = std::vector<std::uint32_t>;

std::vector<TakenEvent> TakeEvents(MIDIPlayerQueue& queue, std::uint32_t elapsedMs = 0) {
    std::vector<TakenEvent> taken;
    queue.AdvanceAndTake(elapsedMs, taken);
    return taken;
}

Bytes Take(MIDIPlayerQueue& queue, std::uint32_t elapsedMs = 0) {
    Bytes bytes;
    for (const TakenEvent& event : TakeEvents(queue, elapsedMs)) {
        bytes.push_back(BytesOf(event.event.event));
    }
    return bytes;
}

TEST(MIDIPlayerQueue, AnEmptyQueueReadDirectlyThrows) {
    MIDIPlayerQueue queue;
    try {
        queue.TakeNext();
        FAIL();
    } catch (const CMIDIException& exception) {
        EXPECT_STREQ(exception.GetMessage(), L"MIDI input queue is empty.");
    }
}

TEST(MIDIPlayerQueue, AMessageLeavesWithItsTimeAndTargetZero) {
    MIDIPlayerQueue queue;
    queue.SendMessage({0x90, 3, 60, 80}, 1234);
    const TakenEvent taken = queue.TakeNext();
    EXPECT_EQ(BytesOf(taken.event.event), 0x923C50U);
    EXPECT_EQ(taken.event.event.time, 1234U);
    EXPECT_EQ(taken.event.target, 0);
    EXPECT_EQ(taken.event.duration, 0);
    EXPECT_TRUE(taken.block.empty());
    EXPECT_FALSE(queue.HasWork());
}

TEST(MIDIPlayerQueue, AMessageWithoutAChannelKeepsItsStatus) {
    MIDIPlayerQueue queue;
    queue.SendMessage({0xFF, 0, 0, 0}, 0);
    EXPECT_EQ(Take(queue), (Bytes{0xFF0000}));
}

TEST(MIDIPlayerQueue, ARecordWithStatusZeroIsNotQueued) {
    MIDIPlayerQueue queue;
    queue.SendMessage({0, 1, 60, 80}, 0);
    queue.SendMessage({0, 5, 60, 80}, 0);
    queue.Queue(SynthEventBase(TimeEvent(5)));
    queue.Queue(BlockSynthEvent(0, {TimeEvent(5)}, 0));
    EXPECT_FALSE(queue.HasWork());
    EXPECT_TRUE(Take(queue).empty());
}

TEST(MIDIPlayerQueue, APlayedNoteEndsAfterItsDuration) {
    MIDIPlayerQueue queue;
    queue.PlayNote(2, 60, 80, 100, 7);
    const std::vector<TakenEvent> taken = TakeEvents(queue);
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(BytesOf(taken[0].event.event), 0x923C50U);
    EXPECT_EQ(taken[0].event.event.time, 7U);
    EXPECT_EQ(taken[0].event.priority, 100);
    EXPECT_TRUE(Take(queue, 60).empty());
    EXPECT_TRUE(Take(queue, 39).empty());
    EXPECT_EQ(Take(queue, 1), (Bytes{0x823C00}));
    EXPECT_TRUE(Take(queue, 1000).empty());
}

TEST(MIDIPlayerQueue, ANoteIsKeptToSevenBitsAndFourOfTheChannel) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0x1F, 0xBC, 0xD0, 5, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x9F3C50}));
    EXPECT_EQ(Take(queue, 5), (Bytes{0x8F3C00}));
}

TEST(MIDIPlayerQueue, ADurationOfZeroOrBelowSchedulesNoNoteOff) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 0, 0);
    queue.PlayNote(0, 62, 80, -5, 0);
    EXPECT_EQ(Take(queue).size(), 2U);
    EXPECT_FALSE(queue.HasWork());
    EXPECT_TRUE(Take(queue, 100000).empty());
}

TEST(MIDIPlayerQueue, APlayedNoteWithVelocityZeroIsANoteOffWithoutAnother) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 0, 100, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x803C00}));
    EXPECT_TRUE(Take(queue, 1000).empty());
}

TEST(MIDIPlayerQueue, ARepeatedNoteEndsItsEarlierInstanceAndHasOneNoteOffOfItsOwn) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x903C50}));
    EXPECT_TRUE(Take(queue, 50).empty());
    queue.PlayNote(0, 60, 81, 100, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x803C00, 0x903C51}));
    EXPECT_TRUE(Take(queue, 99).empty());
    EXPECT_EQ(Take(queue, 1), (Bytes{0x803C00}));
    EXPECT_TRUE(Take(queue, 1000).empty());
}

TEST(MIDIPlayerQueue, ALiveNoteEndsASoundingOneToo) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    Take(queue);
    queue.SendMessage({0x80, 1, 60, 0}, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x803C00, 0x803C00}));
    EXPECT_TRUE(Take(queue, 1000).empty());
}

TEST(MIDIPlayerQueue, OtherNotesChannelsAndTargetsAreLeftSounding) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    queue.PlayNote(1, 60, 80, 100, 0);
    queue.PlayNote(0, 61, 80, 100, 0);
    queue.Queue(NoteSynthEvent(80, 100, 0, 0, 60, 1, 100));
    queue.SendMessage({0xB0, 1, 60, 80}, 0);
    EXPECT_EQ(Take(queue).size(), 5U);
    const std::vector<TakenEvent> ended = TakeEvents(queue, 100);
    ASSERT_EQ(ended.size(), 4U);
    int toOne = 0;
    for (const TakenEvent& event : ended) {
        toOne += event.event.target;
    }
    EXPECT_EQ(toOne, 1);
}

TEST(MIDIPlayerQueue, TheNoteOffGoesWhereTheNoteWent) {
    MIDIPlayerQueue queue;
    queue.Queue(NoteSynthEvent(80, 100, 0, 0, 60, 3, 100));
    TakeEvents(queue);
    queue.Queue(NoteSynthEvent(80, 100, 0, 0, 60, 3, 100));
    const std::vector<TakenEvent> taken = TakeEvents(queue);
    ASSERT_EQ(taken.size(), 2U);
    EXPECT_EQ(BytesOf(taken[0].event.event), 0x803C00U);
    EXPECT_EQ(taken[0].event.target, 3);
}

TEST(MIDIPlayerQueue, ABlockLeavesWholeWithoutItsEmptyRecords) {
    MIDIPlayerQueue queue;
    queue.Queue(BlockSynthEvent(5, {CtrlEvent(0, 0, 0, 1), TimeEvent(3), PatchEvent(0, 0, 7)}, kAllPorts));
    const std::vector<TakenEvent> taken = TakeEvents(queue);
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].event.target, kAllPorts);
    ASSERT_EQ(taken[0].block.size(), 2U);
    EXPECT_EQ(BytesOf(taken[0].block[0]), 0xB00001U);
    EXPECT_EQ(BytesOf(taken[0].block[1]), 0xC00700U);
}

TEST(MIDIPlayerQueue, TheNotesOfABlockEndNoSoundingOnes) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    TakeEvents(queue);
    queue.Queue(BlockSynthEvent(0, {NoteEvent(0, 0, 60, 80, 0x90)}, 0));
    EXPECT_EQ(TakeEvents(queue).size(), 1U);
    EXPECT_EQ(Take(queue, 100), (Bytes{0x803C00}));
}

TEST(MIDIPlayerQueue, AdvancingAloneMakesTheNoteOffReady) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 10, 0);
    EXPECT_EQ(BytesOf(queue.TakeNext().event.event), 0x903C50U);
    queue.Advance(10);
    EXPECT_FALSE(queue.WaitUntilEmpty(0));
    EXPECT_EQ(BytesOf(queue.TakeNext().event.event), 0x803C00U);
}

TEST(MIDIPlayerQueue, NotesThatRunOutTogetherEndInTheHeapsOrder) {
    MIDIPlayerQueue queue;
    for (std::uint8_t note = 0; note < 5; ++note) {
        queue.PlayNote(0, note, 80, note == 2 ? 50 : 10, 0);
    }
    Take(queue);
    EXPECT_EQ(Take(queue, 10), (Bytes{0x800000, 0x800300, 0x800100, 0x800400}));
    EXPECT_EQ(Take(queue, 40), (Bytes{0x800200}));
}

TEST(MIDIPlayerQueue, WaitingOnAnIdleQueueReturnsAtOnce) {
    CVirtualTime time;
    MIDIPlayerQueue queue(time);
    EXPECT_TRUE(queue.WaitUntilIdle(1000));
    EXPECT_TRUE(queue.WaitUntilIdle(0));
    EXPECT_TRUE(queue.WaitUntilEmpty(1000));
    EXPECT_EQ(time.GetSleptMs(), 0U);
}

TEST(MIDIPlayerQueue, WaitingForAThousandMillisecondsSleepsOnceForOne) {
    CVirtualTime time;
    MIDIPlayerQueue queue(time);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(queue.WaitUntilIdle(1000));
    EXPECT_EQ(time.GetSleptMs(), 1U);
    EXPECT_FALSE(queue.WaitUntilEmpty(1000));
    EXPECT_EQ(time.GetSleptMs(), 2U);
    EXPECT_FALSE(queue.WaitUntilIdle(1));
    EXPECT_EQ(time.GetSleptMs(), 3U);
}

TEST(MIDIPlayerQueue, WaitingForNoTimeDoesNotSleep) {
    CVirtualTime time;
    MIDIPlayerQueue queue(time);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(queue.WaitUntilIdle(0));
    EXPECT_FALSE(queue.WaitUntilEmpty(0));
    EXPECT_EQ(time.GetSleptMs(), 0U);
}

TEST(MIDIPlayerQueue, AWaitSeesTheQueueRunDryDuringItsSleep) {
    CVirtualTime time;
    MIDIPlayerQueue queue(time);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    time.onSleep = [&queue](std::uint32_t) { Take(queue); };
    EXPECT_TRUE(queue.WaitUntilIdle(1000));
}

TEST(MIDIPlayerQueue, ASoundingNoteKeepsTheQueueFromBeingIdleButNotFromBeingEmpty) {
    CVirtualTime time;
    MIDIPlayerQueue queue(time);
    queue.PlayNote(0, 60, 80, 100, 0);
    Take(queue);
    EXPECT_FALSE(queue.WaitUntilIdle(0));
    EXPECT_TRUE(queue.WaitUntilEmpty(0));
    EXPECT_TRUE(queue.HasWork());
}

TEST(MIDIPlayerQueue, WhileItDoesNotAcceptEverythingIsDropped) {
    MIDIPlayerQueue queue;
    queue.SetAccepting(false);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    queue.PlayNote(0, 60, 80, 100, 0);
    queue.Queue(BlockSynthEvent(0, {CtrlEvent(0, 0, 0, 1)}, 0));
    EXPECT_FALSE(queue.HasWork());
    queue.SetAccepting(true);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_EQ(Take(queue), (Bytes{0x903C50}));
}

TEST(MIDIPlayerQueue, ClearingDropsWhatIsReadyAndWhatSounds) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    Take(queue);
    queue.SendMessage({0x90, 1, 62, 80}, 0);
    queue.Clear();
    EXPECT_FALSE(queue.HasWork());
    EXPECT_TRUE(queue.WaitUntilIdle(0));
    EXPECT_TRUE(Take(queue, 1000).empty());
}

TEST(MIDIPlayerQueue, NothingIsAllocatedOnceWarm) {
    MIDIPlayerQueue queue;
    std::vector<TakenEvent> taken;
    const auto play = [&] {
        for (std::uint8_t note = 0; note < 16; ++note) {
            queue.PlayNote(0, note, 80, 2, 0);
            queue.SendMessage({0xB0, 1, 7, note}, 0);
        }
        taken.clear();
        queue.AdvanceAndTake(1, taken);
        queue.AdvanceAndTake(1, taken);
    };
    play();
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (int round = 0; round < 100; ++round) {
        play();
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(taken.size(), 48U);
}

TEST(MIDIPlayerQueue, EveryEventOfSeveralThreadsLeavesOnce) {
    constexpr int kThreads = 4;
    constexpr int kEvents = 2000;
    MIDIPlayerQueue queue;
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
        threads.emplace_back([&queue, index] {
            for (int event = 0; event < kEvents; ++event) {
                queue.SendMessage({0xB0, static_cast<std::uint8_t>(index + 1), static_cast<std::uint8_t>(event & 0x7F),
                                   static_cast<std::uint8_t>(event >> 7)},
                                  0);
            }
        });
    }
    std::vector<std::uint8_t> seen(kThreads * 0x8000);
    int total = 0;
    std::vector<TakenEvent> taken;
    while (total < kThreads * kEvents) {
        taken.clear();
        queue.AdvanceAndTake(0, taken);
        for (const TakenEvent& event : taken) {
            const std::uint32_t bytes = BytesOf(event.event.event);
            ++seen[(bytes >> 16 & 0x0F) * 0x8000 + (bytes & 0x7F) * 0x80 + (bytes >> 8 & 0x7F)];
            ++total;
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), kThreads * kEvents);
    EXPECT_FALSE(queue.HasWork());
}

}  // namespace
