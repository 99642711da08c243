// A queue that keeps the order of arrival where it matters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "libmidi/MIDIPlayerQueue.h"
#include "support/AllocationCounter.h"
#include "support/FakeBackend.h"

using namespace LibMidi;
using KivoraTest::GetAllocationCount;
using KivoraTest::ToText;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Arrival : public testing::Test {
protected:
    Arrival() { queue.SetKeepsOrder(true); }

    void Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0, int channel = 1) {
        queue.SendMessage({status, static_cast<std::uint8_t>(channel), data1, data2}, 0);
    }
    /// What one round of the player takes.
    std::vector<std::string> Take(std::uint32_t elapsedMs = 0) {
        std::vector<TakenEvent> taken;
        queue.AdvanceAndTake(elapsedMs, taken);
        std::vector<std::string> texts;
        for (const TakenEvent& event : taken) {
            texts.push_back(ToText(event.event.event));
            for (const MIDIEvent& message : event.block) {
                texts.push_back(ToText(message));
            }
        }
        return texts;
    }

    MIDIPlayerQueue queue;
};

}  // namespace

TEST_F(Arrival, MovementsOfAWheelLeaveAsTheyCame) {
    std::vector<std::string> sent;
    for (std::uint8_t i = 0; i < 20; ++i) {
        Send(0xE0, i, i);
        sent.push_back(ToText(MIDIEvent(0, 0xE0, i, i)));
    }
    EXPECT_EQ(Take(), sent);
}

TEST_F(Arrival, AKeyThatIsReleasedAndStruckAgainSounds) {
    Send(0x80, 60);
    Send(0x90, 60, 100);
    Send(0x90, 60, 0);
    Send(0x90, 60, 101);
    EXPECT_THAT(Take(), ElementsAre("80 3c 00", "90 3c 64", "90 3c 00", "90 3c 65"));
}

TEST_F(Arrival, BankAndProgramLeaveAsTheyCame) {
    Send(0xB0, 0, 1);
    Send(0xB0, 32, 2);
    Send(0xC0, 7);
    Send(0xB0, 0, 3);
    Send(0xC0, 8);
    Send(0x90, 60, 100);
    EXPECT_THAT(Take(), ElementsAre("b0 00 01", "b0 20 02", "c0 07", "b0 00 03", "c0 08", "90 3c 64"));
}

TEST_F(Arrival, AControllerThatEndsNotesStandsInOrderWithAllNotesOfItsChannel) {
    Send(0x90, 60, 100);
    Send(0x90, 61, 100);
    Send(0xB0, 123);
    Send(0x90, 61, 101);
    Send(0x80, 60);
    EXPECT_THAT(Take(), ElementsAre("90 3c 64", "90 3d 64", "b0 7b 00", "90 3d 65", "80 3c 00"));
}

TEST_F(Arrival, ASystemMessageStandsInOrderWithEverything) {
    Send(0x90, 60, 100);
    Send(0xFF, 0, 0, 0);
    Send(0xC0, 5, 0, 2);
    EXPECT_THAT(Take(), ElementsAre("90 3c 64", "ff", "c1 05"));
}

TEST_F(Arrival, ABlockStandsInOrderWithEverything) {
    Send(0xE0, 1, 1);
    queue.Queue(BlockSynthEvent(0, {{0, 0xE0, 2, 2}, {0, 0xE0, 3, 3}}, kFirstPort));
    Send(0xE0, 4, 4);
    const std::vector<std::string> taken = Take();
    EXPECT_THAT(taken, testing::IsSupersetOf({"e0 01 01", "e0 02 02", "e0 03 03", "e0 04 04"}));
    EXPECT_EQ(taken.front(), "e0 01 01");
    EXPECT_EQ(taken.back(), "e0 04 04");
}

TEST_F(Arrival, WhatDoesNotMatterLeavesInTheOrderOfTheHeap) {
    MIDIPlayerQueue other;
    std::vector<TakenEvent> taken;
    for (int channel = 1; channel <= 3; ++channel) {
        for (std::uint8_t note = 60; note < 64; ++note) {
            const NK::MIDI::TMIDIMessage message{static_cast<std::uint8_t>(note % 2 == 0 ? 0x80 : 0x90),
                                                 static_cast<std::uint8_t>(channel), note, 100};
            queue.SendMessage(message, 0);
            other.SendMessage(message, 0);
        }
    }
    other.AdvanceAndTake(0, taken);
    std::vector<std::string> expected;
    for (const TakenEvent& event : taken) {
        expected.push_back(ToText(event.event.event));
    }
    EXPECT_EQ(Take(), expected);
}

TEST_F(Arrival, EachChannelGoesOnByItself) {
    for (std::uint8_t i = 0; i < 3; ++i) {
        Send(0xE0, i, 0, 1);
        Send(0xE0, i, 0, 2);
    }
    EXPECT_THAT(Take(), ElementsAre("e0 00 00", "e1 00 00", "e0 01 00", "e1 01 00", "e0 02 00", "e1 02 00"));
}

TEST_F(Arrival, ATimedNoteThatIsStruckAgainBeforeItIsTakenEndsInBetween) {
    queue.PlayNote(0, 60, 100, 50, 0);
    queue.PlayNote(0, 60, 101, 20, 0);
    EXPECT_THAT(Take(), ElementsAre("90 3c 64", "80 3c 00", "90 3c 65"));
    EXPECT_THAT(Take(20), ElementsAre("80 3c 00"));
    EXPECT_THAT(Take(100), IsEmpty());
}

TEST_F(Arrival, ANoteStruckAfterTheEndOfATimedOneIsNotEndedByIt) {
    queue.PlayNote(0, 60, 100, 50, 0);
    Take();
    queue.Advance(std::numeric_limits<std::uint32_t>::max());
    Send(0x90, 60, 101);
    EXPECT_THAT(Take(), ElementsAre("80 3c 00", "90 3c 65"));
}

TEST_F(Arrival, WhatIsQueuedAfterARoundWaitsForNothing) {
    Send(0xE0, 1, 1);
    Take();
    Send(0xE0, 2, 2);
    EXPECT_THAT(Take(), ElementsAre("e0 02 02"));
}

TEST_F(Arrival, OneAtATimeTheOrderIsTheSame) {
    Send(0x80, 60);
    Send(0x90, 60, 100);
    EXPECT_FALSE(queue.WaitUntilEmpty(0));
    EXPECT_EQ(ToText(queue.TakeNext().event.event), "80 3c 00");
    EXPECT_FALSE(queue.WaitUntilEmpty(0));
    EXPECT_TRUE(queue.HasWork());
    EXPECT_EQ(ToText(queue.TakeNext().event.event), "90 3c 64");
    EXPECT_TRUE(queue.WaitUntilEmpty(0));
    EXPECT_FALSE(queue.HasWork());
}

TEST_F(Arrival, ClearingForgetsWhatWaits) {
    for (std::uint8_t i = 0; i < 5; ++i) {
        Send(0xE0, i, 0);
    }
    queue.Clear();
    EXPECT_FALSE(queue.HasWork());
    Send(0xE0, 9, 9);
    Send(0xE0, 8, 8);
    EXPECT_THAT(Take(), ElementsAre("e0 09 09", "e0 08 08"));
}

TEST_F(Arrival, ACaptureHoldsTheOrderOfArrivalToo) {
    queue.StartCapture();
    Send(0x80, 60);
    Send(0x90, 60, 100);
    Take();
    std::vector<std::string> captured;
    queue.VisitCaptured(
        0, [&](const CapturedEvent& event) { captured.push_back(ToText(MIDIEvent::FromMessage(event.message, 0))); });
    EXPECT_THAT(captured, ElementsAre("80 3c 00", "90 3c 64"));
}

TEST_F(Arrival, NothingIsAllocatedOnceWarm) {
    std::vector<TakenEvent> taken;
    taken.reserve(64);
    const auto round = [&] {
        for (std::uint8_t i = 0; i < 10; ++i) {
            Send(0xE0, i, 0, 1 + i % 2);
            Send(0x90, 60, i);
        }
        taken.clear();
        queue.AdvanceAndTake(1, taken);
    };
    round();
    const std::uint64_t before = GetAllocationCount();
    round();
    EXPECT_EQ(GetAllocationCount() - before, 0U);
}
