// What wakes the player's thread, and what its rounds take.
#include <gtest/gtest.h>

#include <vector>

#include "libmidi/MIDIPlayerQueue.h"
#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using NK::CWakeup;

using Bytes = std::vector<std::uint32_t>;

class CHandClock : public NK::CTimeSource {
public:
    std::int64_t GetTimeNs() override { return us * 1000; }
    std::int64_t us = 5'000'000;
};

class MIDIPlayerQueueRounds : public testing::Test {
protected:
    MIDIPlayerQueueRounds() { queue.BeginRounds(clock); }

    bool IsDue() {
        std::int64_t untilNs = 0;
        return queue.IsRoundDue(untilNs);
    }
    Bytes TakeRound() {
        std::vector<TakenEvent> taken;
        queue.TakeRound(taken);
        Bytes bytes;
        for (const TakenEvent& event : taken) {
            bytes.push_back(BytesOf(event.event.event));
        }
        return bytes;
    }

    CHandClock clock;
    MIDIPlayerQueue queue;
};

TEST_F(MIDIPlayerQueueRounds, NothingIsDueUntilSomethingIsQueued) {
    std::int64_t untilNs = 0;
    EXPECT_FALSE(queue.IsRoundDue(untilNs));
    EXPECT_EQ(untilNs, CWakeup::kNever);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(queue.GetWakeup().Take());
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound(), (Bytes{0x903C50}));
    EXPECT_FALSE(IsDue());
}

TEST_F(MIDIPlayerQueueRounds, QueueingWakesOnceForARound) {
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(queue.GetWakeup().Take());
    queue.SendMessage({0x90, 1, 64, 80}, 0);
    EXPECT_FALSE(queue.GetWakeup().Take());
    EXPECT_EQ(TakeRound().size(), 2U);
    queue.SendMessage({0x90, 1, 67, 80}, 0);
    EXPECT_TRUE(queue.GetWakeup().Take());
}

TEST_F(MIDIPlayerQueueRounds, WhatIsHeldBackGoesWhenTheHoldEndsOrAfterAMillisecond) {
    queue.HoldBack();
    const std::int64_t beforeNs = CWakeup::NowNs();
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    queue.SendMessage({0x90, 1, 64, 80}, 0);
    EXPECT_TRUE(queue.GetWakeup().Take()) << "so that it ends in time";
    std::int64_t untilNs = 0;
    queue.IsRoundDue(untilNs);
    EXPECT_GE(untilNs, beforeNs + MIDIPlayerQueue::kLongestHoldNs);
    EXPECT_LE(untilNs, CWakeup::NowNs() + MIDIPlayerQueue::kLongestHoldNs);
    while (CWakeup::NowNs() < untilNs) {
    }
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound().size(), 2U);

    queue.SendMessage({0x80, 1, 60, 0}, 0);
    EXPECT_TRUE(queue.GetWakeup().Take());
    queue.LetGo();
    EXPECT_TRUE(queue.GetWakeup().Take());
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound().size(), 1U);
    queue.LetGo();
    EXPECT_FALSE(queue.GetWakeup().Take());
}

TEST_F(MIDIPlayerQueueRounds, WhatJoinsWhatIsReadyIsHeldBackWithIt) {
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    ASSERT_TRUE(IsDue());
    queue.HoldBack();  // before the round that is due
    queue.SendMessage({0x80, 1, 72, 0}, 0);
    EXPECT_EQ(TakeRound(), Bytes{}) << "half of what is queued in one hold";
    queue.SendMessage({0x90, 1, 72, 80}, 0);
    queue.LetGo();
    EXPECT_TRUE(queue.GetWakeup().Take());
    EXPECT_EQ(TakeRound().size(), 3U);
}

TEST_F(MIDIPlayerQueueRounds, WhoWaitsForTheQueueEndsNoHoldButLetsWhatThereIsGo) {
    queue.HoldBack();
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(queue.WaitUntilEmpty(1));
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound().size(), 1U);
    const std::int64_t beforeNs = CWakeup::NowNs();
    queue.SendMessage({0x90, 1, 64, 80}, 0);
    std::int64_t untilNs = 0;
    queue.IsRoundDue(untilNs);
    EXPECT_GE(untilNs, beforeNs + MIDIPlayerQueue::kLongestHoldNs);
}

TEST_F(MIDIPlayerQueueRounds, ARoundCalledByHandTakesWhatIsHeldBack) {
    queue.HoldBack();
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    std::vector<TakenEvent> taken;
    queue.AdvanceAndTake(0, taken);
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(MIDIPlayerQueueRounds, TheRestOfAMillisecondIsCarriedOn) {
    queue.PlayNote(0, 60, 80, 3, 0);
    EXPECT_EQ(TakeRound(), (Bytes{0x903C50}));
    for (int round = 0; round < 4; ++round) {
        clock.us += 600;
        EXPECT_EQ(TakeRound(), Bytes{});
    }
    clock.us += 600;
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound(), (Bytes{0x803C00}));
}

TEST_F(MIDIPlayerQueueRounds, TimeBeforeANoteWasQueuedTakesNothingOffIt) {
    clock.us += 10'000'000;
    queue.PlayNote(0, 60, 80, 100, 0);
    EXPECT_EQ(TakeRound(), (Bytes{0x903C50}));
    clock.us += 40'000;
    EXPECT_FALSE(IsDue());
    queue.PlayNote(0, 64, 80, 20, 0);
    EXPECT_EQ(TakeRound(), (Bytes{0x904050}));
    clock.us += 19'000;
    EXPECT_FALSE(IsDue());
    clock.us += 1'000;
    EXPECT_TRUE(IsDue());
    EXPECT_EQ(TakeRound(), (Bytes{0x804000}));
    clock.us += 40'000;
    EXPECT_EQ(TakeRound(), (Bytes{0x803C00}));
}

TEST_F(MIDIPlayerQueueRounds, TheWaitEndsWithTheFirstNoteButNotBeforeItIsLookedAtAgain) {
    queue.PlayNote(0, 60, 80, 4, 0);
    queue.PlayNote(0, 64, 80, 100'000, 0);
    TakeRound();
    const auto waitNs = [this] {
        std::int64_t untilNs = 0;
        const std::int64_t nowNs = CWakeup::NowNs();
        EXPECT_FALSE(queue.IsRoundDue(untilNs));
        return untilNs - nowNs;
    };
    EXPECT_GE(waitNs(), 4'000'000);
    clock.us += 4'000;
    TakeRound();
    EXPECT_GE(waitNs(), 1'000'000);
    std::int64_t untilNs = 0;
    queue.IsRoundDue(untilNs);
    EXPECT_LE(untilNs, CWakeup::NowNs() + 10'000'000) << "the clock need not go as the system's does";
}

TEST_F(MIDIPlayerQueueRounds, AClockThatGoesBackStandsStill) {
    queue.PlayNote(0, 60, 80, 5, 0);
    TakeRound();
    clock.us -= 3'000'000;
    EXPECT_EQ(TakeRound(), Bytes{});
    clock.us += 4'000;
    EXPECT_EQ(TakeRound(), Bytes{});
    clock.us += 1'000;
    EXPECT_EQ(TakeRound(), (Bytes{0x803C00}));
}

}  // namespace
