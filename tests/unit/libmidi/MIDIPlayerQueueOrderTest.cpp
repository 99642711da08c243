// The order in which ready events leave. Equal classes are never ordered: they leave in the standard heap's own order,
// which is pinned here so that it is not mended by accident.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "libmidi/MIDIPlayerQueue.h"
#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using NK::MIDI::TMIDIMessage;

std::vector<std::uint32_t> TakeAll(MIDIPlayerQueue& queue, std::uint32_t elapsedMs = 0) {
    std::vector<TakenEvent> taken;
    queue.AdvanceAndTake(elapsedMs, taken);
    std::vector<std::uint32_t> bytes;
    for (const TakenEvent& event : taken) {
        bytes.push_back(BytesOf(event.event.event));
    }
    return bytes;
}

std::vector<std::uint8_t> ChordOrder(int notes) {
    MIDIPlayerQueue queue;
    for (int note = 0; note < notes; ++note) {
        queue.SendMessage({0x90, 1, static_cast<std::uint8_t>(note), 80}, 0);
    }
    std::vector<std::uint8_t> order;
    for (const std::uint32_t bytes : TakeAll(queue)) {
        order.push_back(static_cast<std::uint8_t>(bytes >> 8));
    }
    return order;
}

TEST(MIDIPlayerQueueOrder, ChordsOfTwoToEightNotesLeaveInTheHeapsOrder) {
    using Order = std::vector<std::uint8_t>;
    EXPECT_EQ(ChordOrder(2), (Order{0, 1}));
    EXPECT_EQ(ChordOrder(3), (Order{0, 1, 2}));
    EXPECT_EQ(ChordOrder(4), (Order{0, 2, 1, 3}));
    EXPECT_EQ(ChordOrder(5), (Order{0, 2, 4, 1, 3}));
    EXPECT_EQ(ChordOrder(6), (Order{0, 2, 5, 4, 1, 3}));
    EXPECT_EQ(ChordOrder(7), (Order{0, 2, 5, 6, 4, 1, 3}));
    EXPECT_EQ(ChordOrder(8), (Order{0, 2, 6, 5, 7, 4, 1, 3}));
}

TEST(MIDIPlayerQueueOrder, ThePriorityDoesNotOrder) {
    MIDIPlayerQueue queue;
    for (std::uint8_t note = 0; note < 4; ++note) {
        queue.Queue(NoteSynthEvent(80, 0, 0, 0, note, 0, 100 - note));
    }
    EXPECT_EQ(TakeAll(queue), (std::vector<std::uint32_t>{0x900050, 0x900250, 0x900150, 0x900350}));
}

TEST(MIDIPlayerQueueOrder, ANoteOffOfTheSameRoundFollowsTheNoteOn) {
    MIDIPlayerQueue queue;
    queue.SendMessage({0x80, 1, 60, 0}, 0);
    queue.SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_EQ(TakeAll(queue), (std::vector<std::uint32_t>{0x903C50, 0x803C00}));
}

TEST(MIDIPlayerQueueOrder, ANoteOnWithVelocityZeroIsANoteOff) {
    MIDIPlayerQueue queue;
    queue.SendMessage({0x90, 1, 60, 0}, 0);
    queue.SendMessage({0xB0, 1, 64, 127}, 0);
    EXPECT_EQ(TakeAll(queue), (std::vector<std::uint32_t>{0xB0407F, 0x903C00}));
}

TEST(MIDIPlayerQueueOrder, TheNoteOffOfARetriggeredNoteComesBeforeEverything) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 100, 0);
    TakeAll(queue);
    queue.SendMessage({0x80, 1, 61, 0}, 0);
    queue.SendMessage({0xB0, 1, 7, 100}, 0);
    queue.PlayNote(0, 60, 81, 100, 0);
    EXPECT_EQ(TakeAll(queue), (std::vector<std::uint32_t>{0x803C00, 0xB00764, 0x903C51, 0x803D00}));
}

TEST(MIDIPlayerQueueOrder, TheNoteOffOfADurationComesLast) {
    MIDIPlayerQueue queue;
    queue.PlayNote(0, 60, 80, 10, 0);
    TakeAll(queue);
    queue.SendMessage({0x80, 1, 70, 0}, 0);
    queue.SendMessage({0x90, 1, 71, 90}, 0);
    EXPECT_EQ(TakeAll(queue, 10), (std::vector<std::uint32_t>{0x90475A, 0x804600, 0x803C00}));
}

TEST(MIDIPlayerQueueOrder, ANoteOnQueuedDuringARoundIsNeverCutByTheNoteOffOfItsEarlierInstance) {
    // The musician plays the note anew in the very round that ends it. With more than a round's time to sound, a
    // note-off behind a note-on in one round could only be an earlier instance's.
    MIDIPlayerQueue queue;
    std::atomic<bool> stop{false};
    std::atomic<int> rounds{0};
    std::thread musician([&] {
        for (int played = 0; !stop;) {
            if (rounds >= played + 2) {
                queue.PlayNote(0, 60, 80, 2, 0);
                played = rounds;
            }
        }
    });
    int noteOns = 0;
    int cut = 0;
    while (noteOns < 2000) {
        bool isOn = false;
        ++rounds;
        for (const std::uint32_t bytes : TakeAll(queue, 1)) {
            if (bytes == 0x903C50) {
                isOn = true;
                ++noteOns;
            } else if (isOn) {
                ++cut;
            }
        }
    }
    stop = true;
    musician.join();
    EXPECT_EQ(cut, 0);
}

}  // namespace
