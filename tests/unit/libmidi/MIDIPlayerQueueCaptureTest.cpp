#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

#include "libmidi/MIDIPlayerQueue.h"
#include "support/VirtualTime.h"

namespace {

using namespace LibMidi;
using KivoraTest::CVirtualTime;
using NK::MIDI::TMIDIMessage;

using Captured = std::vector<std::pair<std::uint32_t, std::uint32_t>>;  ///< time and the message as a word

class MIDIPlayerQueueCapture : public testing::Test {
protected:
    MIDIPlayerQueueCapture() {
        time.SetMs(5000);
        queue.SetTimeSource(&time);
    }

    void Send(TMIDIMessage message) { queue.SendMessage(message, 99); }
    void Take(std::uint32_t elapsedMs = 0) {
        std::vector<TakenEvent> taken;
        queue.AdvanceAndTake(elapsedMs, taken);
    }
    Captured Read(std::uint32_t from = 0) const {
        Captured captured;
        queue.VisitCaptured(from, [&captured](const CapturedEvent& event) {
            captured.emplace_back(event.time, event.message.ToWord());
        });
        return captured;
    }

    CVirtualTime time;
    MIDIPlayerQueue queue{time};
    const TMIDIMessage on{0x90, 1, 60, 80};
    const TMIDIMessage volume{0xB0, 16, 7, 100};
};

TEST_F(MIDIPlayerQueueCapture, NothingIsCapturedBeforeTheStart) {
    EXPECT_FALSE(queue.IsCapturing());
    Send(on);
    Take();
    EXPECT_EQ(queue.GetCapturedCount(), 0U);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 0U);
    EXPECT_EQ(queue.GetIdleTimeMs(), -1);
    EXPECT_TRUE(Read().empty());
}

TEST_F(MIDIPlayerQueueCapture, EventsAreStampedFromTheStartOfTheCaptureWhenTheyLeave) {
    queue.StartCapture();
    EXPECT_TRUE(queue.IsCapturing());
    Send(on);
    time.AdvanceMs(25);
    EXPECT_EQ(queue.GetCapturedCount(), 0U);
    Take();
    Send(volume);
    time.AdvanceMs(5);
    EXPECT_EQ(queue.TakeNext().event.event.status, 0xBF);
    EXPECT_EQ(Read(), (Captured{{25, on.ToWord()}, {30, volume.ToWord()}}));
    EXPECT_EQ(queue.GetCapturedCount(), 2U);
}

TEST_F(MIDIPlayerQueueCapture, NoteOffsOfDurationsAndRetriggersAreCapturedToo) {
    queue.StartCapture();
    queue.PlayNote(0, 60, 80, 10, 0);
    Take();
    time.AdvanceMs(5);
    queue.PlayNote(0, 60, 81, 10, 0);
    Take();
    time.AdvanceMs(10);
    Take(10);
    const std::uint32_t off = TMIDIMessage{0x80, 1, 60, 0}.ToWord();
    EXPECT_EQ(Read(), (Captured{{0, on.ToWord()}, {5, off}, {5, TMIDIMessage{0x90, 1, 60, 81}.ToWord()}, {15, off}}));
}

TEST_F(MIDIPlayerQueueCapture, EachEventOfABlockIsCaptured) {
    queue.StartCapture();
    queue.Queue(BlockSynthEvent(0, {CtrlEvent(0, 15, 7, 100), NoteEvent(0, 0, 60, 80, 0x90)}, 0));
    Take();
    EXPECT_EQ(Read(), (Captured{{0, volume.ToWord()}, {0, on.ToWord()}}));
}

TEST_F(MIDIPlayerQueueCapture, TheLengthRunsUntilTheStopAndStays) {
    queue.StartCapture();
    time.AdvanceMs(1234);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 1234U);
    queue.StopCapture();
    EXPECT_FALSE(queue.IsCapturing());
    time.AdvanceMs(1000);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 1234U);
    queue.StopCapture();
    EXPECT_EQ(queue.GetCaptureTimeMs(), 1234U);
}

TEST_F(MIDIPlayerQueueCapture, TheIdleTimeCountsFromTheStartAndThenFromTheLastEvent) {
    queue.StartCapture();
    EXPECT_EQ(queue.GetIdleTimeMs(), 0);
    time.AdvanceMs(100);
    EXPECT_EQ(queue.GetIdleTimeMs(), 100);
    Send(on);
    Take();
    EXPECT_EQ(queue.GetIdleTimeMs(), 0);
    time.AdvanceMs(30001);
    EXPECT_EQ(queue.GetIdleTimeMs(), 30001);
    queue.StopCapture();
    EXPECT_EQ(queue.GetIdleTimeMs(), -1);
}

TEST_F(MIDIPlayerQueueCapture, NoStepOfTheClockMakesATimeNegative) {
    queue.StartCapture();
    for (int month = 0; month < 4; ++month) {
        time.AdvanceMs(31LL * 24 * 60 * 60 * 1000);
        EXPECT_GT(queue.GetIdleTimeMs(), 0) << month;
        EXPECT_LE(queue.GetCaptureTimeMs(), 0x7FFFFFFFU) << month;
        EXPECT_GT(queue.GetCaptureTimeMs(), 0U) << month;
    }
    Send(on);
    Take();
    EXPECT_EQ(Read(), (Captured{{0x7FFFFFFF, on.ToWord()}}));
    EXPECT_EQ(queue.GetIdleTimeMs(), 0);
}

TEST_F(MIDIPlayerQueueCapture, OnALostOutputNothingSoundsAnyMore) {
    const std::uint32_t reset = TMIDIMessage{0xFF, 0, 0, 0}.ToWord();
    queue.StartCapture();
    Send(on);
    Take();
    time.AdvanceMs(1000);
    queue.LoseOutput();
    time.AdvanceMs(500);
    queue.LoseOutput();
    EXPECT_EQ(Read(), (Captured{{0, on.ToWord()}, {1000, reset}}));
    EXPECT_EQ(queue.GetIdleTimeMs(), 1500) << "nobody played that";
    queue.SetAccepting(true);
    queue.StopCapture();
    queue.LoseOutput();
    EXPECT_EQ(queue.GetCapturedCount(), 2U);
    std::vector<TakenEvent> taken;
    queue.AdvanceAndTake(0, taken);
    EXPECT_TRUE(taken.empty()) << "it is captured and not sent";
}

TEST_F(MIDIPlayerQueueCapture, WhatWasCapturedStaysUntilTheNextStart) {
    queue.StartCapture();
    Send(on);
    Take();
    queue.StopCapture();
    Send(volume);
    Take();
    EXPECT_EQ(Read().size(), 1U);
    time.AdvanceMs(50);
    queue.StartCapture();
    EXPECT_EQ(queue.GetCapturedCount(), 0U);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 0U);
    time.AdvanceMs(3);
    Send(volume);
    Take();
    EXPECT_EQ(Read(), (Captured{{3, volume.ToWord()}}));
}

TEST_F(MIDIPlayerQueueCapture, VisitingMayBeginAnywhere) {
    queue.StartCapture();
    Send(on);
    Take();
    Send(volume);
    Take();
    EXPECT_EQ(Read(1), (Captured{{0, volume.ToWord()}}));
    EXPECT_TRUE(Read(2).empty());
}

TEST_F(MIDIPlayerQueueCapture, AVisitorMayUseTheQueue) {
    queue.StartCapture();
    Send(on);
    Take();
    int visits = 0;
    queue.VisitCaptured(0, [&](const CapturedEvent&) {
        ++visits;
        std::thread([&] { Send(volume); }).join();
        Take();
    });
    EXPECT_EQ(visits, 1);
    EXPECT_EQ(queue.GetCapturedCount(), 2U);
}

TEST_F(MIDIPlayerQueueCapture, ForgettingLeavesARunningCaptureRunning) {
    queue.StartCapture();
    Send(on);
    Take();
    queue.ClearCaptured();
    EXPECT_EQ(queue.GetCapturedCount(), 0U);
    time.AdvanceMs(10);
    Send(volume);
    Take();
    EXPECT_EQ(Read(), (Captured{{10, volume.ToWord()}}));
}

TEST_F(MIDIPlayerQueueCapture, AClockThatGoesBackCountsAsStandingStill) {
    queue.StartCapture();
    time.AdvanceMs(100);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 100U);
    time.SetMs(0);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 100U);
    time.AdvanceMs(7);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 107U);
}

TEST_F(MIDIPlayerQueueCapture, AnotherClockTakesOverWhereTheOldOneStood) {
    queue.StartCapture();
    time.AdvanceMs(40);
    CVirtualTime other;
    other.SetMs(1000000);
    queue.SetTimeSource(&other);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 40U);
    time.AdvanceMs(500);
    other.AdvanceMs(2);
    EXPECT_EQ(queue.GetCaptureTimeMs(), 42U);
    queue.SetTimeSource(nullptr);
    EXPECT_GE(queue.GetCaptureTimeMs(), 42U);
}

TEST_F(MIDIPlayerQueueCapture, ReadingWhileItGrowsSeesWholeEvents) {
    queue.StartCapture();
    constexpr std::uint32_t kEvents = 20000;
    std::thread player([&] {
        for (std::uint32_t index = 0; index < kEvents; ++index) {
            Send({0xB0, 1, static_cast<std::uint8_t>(index & 0x7F), static_cast<std::uint8_t>(index >> 7 & 0x7F)});
            Take();
        }
    });
    std::uint32_t seen = 0;
    while (seen < kEvents) {
        std::uint32_t index = seen;
        queue.VisitCaptured(seen, [&index](const CapturedEvent& event) {
            ASSERT_EQ(event.message.data1, index & 0x7F);
            ASSERT_EQ(event.message.data2, index >> 7 & 0x7F);
            ++index;
        });
        seen = index;
        std::this_thread::yield();
    }
    player.join();
    EXPECT_EQ(queue.GetCapturedCount(), kEvents);
}

}  // namespace
