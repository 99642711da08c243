#include "libmidi/PlayedHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "libmidi/MIDIPlayerQueue.h"
#include "support/AllocationCounter.h"
#include "support/VirtualTime.h"
#include "support/WaitUntil.h"

namespace {

using LibMidi::MIDIPlayerQueue;
using LibMidi::PlayedEvent;
using LibMidi::PlayedHistory;
using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t kSmall = 10;

std::vector<int> NotesOf(const PlayedHistory& history) {
    std::vector<int> notes;
    for (const PlayedEvent& event : history.Get().events) {
        notes.push_back(event.message.data1);
    }
    return notes;
}

std::vector<TMIDIMessage> Before(const PlayedHistory& history) {
    std::vector<TMIDIMessage> state;
    history.Get().before.VisitAll([&state](TMIDIMessage message) { state.push_back(message); });
    return state;
}

TMIDIMessage Note(int number) {
    return {TMIDIMessage::kNoteOn, 1, static_cast<std::uint8_t>(number), 100};
}

class PlayedHistoryTest : public testing::Test {
protected:
    PlayedHistoryTest() {
        time.SetMs(5000);
        history->SetTimeSource(&time);
        history->SetOn(true);
    }

    KivoraTest::CVirtualTime time;
    std::shared_ptr<PlayedHistory> history = std::make_shared<PlayedHistory>(kSmall);
};

TEST_F(PlayedHistoryTest, KeepsMessagesWithTheirTimesAndASystemResetButNoOtherSystemMessage) {
    history->Append(Note(60));
    time.AdvanceMs(30);
    history->Append({0xF8, 0, 0, 0});
    history->Append({0xF0, 0, 0, 0});
    history->Append({0xFF, 0, 1, 0});
    time.AdvanceMs(5);
    EXPECT_THAT(NotesOf(*history), ElementsAre(60, 1));
    const PlayedHistory::Content content = history->Get();
    EXPECT_EQ(content.events[1].timeMs - content.events[0].timeMs, 30);
    EXPECT_EQ(content.nowMs - content.events[0].timeMs, 35);
}

TEST_F(PlayedHistoryTest, IsARingThatRemembersWhatTheOverwrittenOnesHaveSet) {
    history->Append({TMIDIMessage::kProgramChange, 1, 7, 0});
    for (int i = 0; i < 9; ++i) {
        history->Append(Note(i));
    }
    EXPECT_THAT(NotesOf(*history), SizeIs(kSmall));
    EXPECT_THAT(Before(*history), IsEmpty());
    history->Append(Note(9));
    EXPECT_THAT(NotesOf(*history), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_THAT(Before(*history), ElementsAre(TMIDIMessage{TMIDIMessage::kProgramChange, 1, 7, 0}));
    for (int i = 10; i < 35; ++i) {
        history->Append(Note(i));
    }
    EXPECT_THAT(NotesOf(*history), ElementsAre(25, 26, 27, 28, 29, 30, 31, 32, 33, 34));
}

TEST_F(PlayedHistoryTest, GivesTheLastFifteenMinutes) {
    history->Append({TMIDIMessage::kProgramChange, 1, 7, 0});
    history->Append(Note(1));
    time.AdvanceMs(1);
    history->Append(Note(2));
    time.AdvanceMs(PlayedHistory::kKeptMs - 1);
    EXPECT_THAT(NotesOf(*history), ElementsAre(7, 1, 2)) << "the program stands at the same moment";
    time.AdvanceMs(1);
    EXPECT_THAT(NotesOf(*history), ElementsAre(2));
    EXPECT_THAT(Before(*history), ElementsAre(TMIDIMessage{TMIDIMessage::kProgramChange, 1, 7, 0}));
    time.AdvanceMs(std::int64_t{100} * 24 * 60 * 60 * 1000);
    EXPECT_THAT(NotesOf(*history), IsEmpty());
    history->Append(Note(3));
    EXPECT_THAT(NotesOf(*history), ElementsAre(3));
}

TEST_F(PlayedHistoryTest, OffItKeepsNothingAndForgetsWhatItHad) {
    history->Append({TMIDIMessage::kProgramChange, 1, 7, 0});
    for (int i = 0; i < 20; ++i) {
        history->Append(Note(i));
    }
    history->SetOn(true);
    EXPECT_THAT(NotesOf(*history), SizeIs(kSmall)) << "on already";
    history->SetOn(false);
    EXPECT_FALSE(history->IsOn());
    history->Append(Note(1));
    EXPECT_THAT(NotesOf(*history), IsEmpty());
    history->SetOn(true);
    EXPECT_TRUE(history->IsOn());
    EXPECT_THAT(NotesOf(*history), IsEmpty());
    EXPECT_THAT(Before(*history), IsEmpty());
}

TEST_F(PlayedHistoryTest, AppendingAllocatesNothing) {
    for (int i = 0; i < 30; ++i) {
        history->Append(Note(i));
    }
    const auto before = KivoraTest::GetAllocationCount();
    for (int i = 0; i < 30; ++i) {
        history->Append(Note(i));
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
}

TEST_F(PlayedHistoryTest, OutlivesTheQueuesThatFillItAndTheirTimeGoesOn) {
    for (int number : {1, 2}) {
        MIDIPlayerQueue queue(time);
        queue.SetTimeSource(&time);
        queue.SetHistory(history);
        queue.SendMessage(Note(number), 0);
        EXPECT_THAT(NotesOf(*history), SizeIs(number - 1)) << "not played yet";
        std::vector<LibMidi::TakenEvent> taken;
        queue.AdvanceAndTake(0, taken);
        time.AdvanceMs(1000);
    }
    const PlayedHistory::Content content = history->Get();
    ASSERT_THAT(content.events, SizeIs(2));
    EXPECT_EQ(content.events[1].timeMs - content.events[0].timeMs, 1000);
}

TEST_F(PlayedHistoryTest, TakesInBlocksAndTheEndOfWhatSoundedOnALostOutput) {
    MIDIPlayerQueue queue(time);
    queue.SetTimeSource(&time);
    queue.SetHistory(history);
    queue.Queue(LibMidi::BlockSynthEvent(
        0, {LibMidi::NoteEvent(0, 1, 60, 9, 0x90), LibMidi::NoteEvent(0, 1, 61, 9, 0x90)}, LibMidi::kFirstPort));
    std::vector<LibMidi::TakenEvent> taken;
    queue.AdvanceAndTake(0, taken);
    queue.LoseOutput();
    queue.LoseOutput();
    const PlayedHistory::Content content = history->Get();
    ASSERT_THAT(content.events, SizeIs(3));
    EXPECT_EQ(content.events[1].message.data1, 61);
    EXPECT_EQ(content.events[2].message.status, TMIDIMessage::kSystemReset);
}

TEST(PlayedHistoryThreads, WhatIsReadWhileItIsWrittenIsWhole) {
    PlayedHistory history(20'000);
    history.SetOn(true);
    std::atomic<bool> stops{false};
    std::thread player([&] {
        for (std::uint32_t count = 0; !stops.load(); ++count) {
            history.Append({TMIDIMessage::kNoteOn, 1, static_cast<std::uint8_t>(count & 0x7F),
                            static_cast<std::uint8_t>(count >> 7 & 0x7F)});
        }
    });
    EXPECT_TRUE(KivoraTest::WaitUntil([&] { return history.Get().events.size() >= 20'000; }));
    for (int i = 0; i < 50; ++i) {
        const PlayedHistory::Content content = history.Get();
        for (std::size_t place = 1; place < content.events.size(); ++place) {
            const auto number = [&](std::size_t at) {
                return content.events[at].message.data1 | content.events[at].message.data2 << 7;
            };
            ASSERT_EQ(number(place), (number(place - 1) + 1) % 16384);
        }
    }
    stops = true;
    player.join();
}

}  // namespace
