#include <limits>

#include "ArpeggiatorFixture.h"
#include "support/AllocationCounter.h"

using namespace KivoraTest;
using NK::MIDI::ArpeggiatorSettings;
using NK::MIDI::MusicalClock;

namespace {

class ArpeggiatorTiming : public ArpeggiatorTest {
protected:
    /// Plays one step of `noteCount` held notes with a step and a gate, and returns the duration.
    int Duration(int step, double percent, int noteCount) {
        arpeggiator.Reset();
        arpeggiator.SetNoteStep(step, percent);
        clock.bar = clock.beat = clock.offset = 0;
        arpeggiator.Process(nullptr, 0, clock, output);
        for (int i = 0; i < noteCount; ++i) {
            Press(40 + i);
        }
        clock.bar = 8;  // some step is due
        arpeggiator.Process(nullptr, 0, clock, output);
        EXPECT_EQ(output.played.size(), 1U);
        const int duration = output.played.empty() ? -1 : output.played[0].duration;
        output.played.clear();
        return duration;
    }
};

}  // namespace

TEST_F(ArpeggiatorTiming, TheFirstNoteSoundsOnTheNextGridStep) {
    RunTo(10);
    Press(60);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(248);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(249);  // rounds to the tick of 250 ms
    EXPECT_EQ(output.TakeNotes(), Notes{60});
    RunTo(250);
    EXPECT_EQ(output.TakeNotes(), Notes{});
}

TEST_F(ArpeggiatorTiming, WithoutKeysOnlyTheLastStepMoves) {
    RunTo(1000);
    RunTo(1240);
    Press(60);
    RunTo(1240);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(1250);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
}

TEST_F(ArpeggiatorTiming, AfterAResetTheFirstKeySoundsAtOnce) {
    RunTo(600);
    arpeggiator.Reset();
    Press(60);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
}

TEST_F(ArpeggiatorTiming, ALateCallPlaysOneNoteAndSkipsTheRest) {
    Press(60);
    Press(64);
    Press(67);
    RunTo(1020);  // the steps at 250, 500, 750 and 1000 are due
    EXPECT_EQ(output.TakeNotes(), Notes{60});
    RunTo(1100);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(1250);
    EXPECT_EQ(output.TakeNotes(), Notes{64});
}

TEST_F(ArpeggiatorTiming, EachStepPlaysOnceHoweverOftenItIsCalled) {
    Press(60);
    for (int ms = 0; ms <= 2000; ++ms) {
        RunTo(ms);
    }
    EXPECT_EQ(output.TakeNotes().size(), 8U);
}

TEST_F(ArpeggiatorTiming, SynchronisingTakesTheTickOfThePositionNotTheGrid) {
    Press(60);
    RunTo(3000);
    output.TakeNotes();
    MusicalClock position;
    position.offset = 100;  // tick 38: the steps after it are due again
    arpeggiator.SyncToTime(&position);
    RunTo(240);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(250);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
    position.offset = 300;  // tick 115
    arpeggiator.SyncToTime(&position);
    RunTo(300);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(500);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
}

TEST_F(ArpeggiatorTiming, SynchronisingWithoutAClockMakesTheStepDue) {
    Press(60);
    RunTo(3000);
    output.TakeNotes();
    arpeggiator.SyncToTime(nullptr);
    RunTo(0);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
}

TEST_F(ArpeggiatorTiming, TheStepFollowsTheNoteStepSetting) {
    arpeggiator.SetNoteStep(32, 100);  // a sixteenth triplet: 83.33 ms
    Press(60);
    for (int ms = 0; ms <= 500; ++ms) {
        RunTo(ms);
    }
    EXPECT_EQ(output.TakeNotes().size(), 6U);
}

// 4 / 6 of a quarter is a beat: 128 ticks in 500 ms, so a step of 96 ticks takes 375 ms.
TEST_F(ArpeggiatorTiming, TheBeatUnitDividesAsARealNumber) {
    clock.beatUnit = 6;
    Press(60);
    RunTo(373);
    EXPECT_EQ(output.TakeNotes(), Notes{});
    RunTo(375);
    EXPECT_EQ(output.TakeNotes(), Notes{60});
}

// Defaults: length 500 ms. One note comes round after 250 ms: 250 x 0.98 = 245 is within 101 of it, so 250 - 101.
TEST_F(ArpeggiatorTiming, ALongNoteEnds101MillisecondsBeforeItsNextTurn) {
    EXPECT_EQ(Duration(96, 200, 1), 149);
}

// Three notes come round after 750 ms; the cap of 649 is above the length.
TEST_F(ArpeggiatorTiming, ALengthBelowTheCapStands) {
    EXPECT_EQ(Duration(96, 200, 3), 500);
}

// 1/32 triplet at 100 percent: ceil(15.625 x 2.6667) = 42; the cycle is floor(41.67) = 41, its 98 percent 40.
TEST_F(ArpeggiatorTiming, AShortNoteEndsTwoPercentBeforeItsNextTurn) {
    EXPECT_EQ(Duration(16, 100, 1), 40);
}

// At tempo 40 a half note of 384 ticks takes 3000 ms: 98 percent is 2940, but 101 ms before is 2899.
// Two of them take 6000 ms: 98 percent is 5880, which is more than 101 ms before.
TEST_F(ArpeggiatorTiming, TheTwoPercentWinOnceTheyAreMoreThan101Milliseconds) {
    clock.tempo = 40;
    EXPECT_EQ(Duration(384, 1000, 1), 2899);
    EXPECT_EQ(Duration(384, 1000, 2), 5880);
}

// 39 ticks are 101.6 ms: a cycle of 101 is not above 101, so 98 percent of it, 98.98, counts. 40 ticks are 104.2 ms: a
// long note keeps 3 ms, and one of 94 ms, which is not above 101, keeps its length.
TEST_F(ArpeggiatorTiming, TheBorderOf101) {
    EXPECT_EQ(Duration(39, 1000, 1), 99);
    EXPECT_EQ(Duration(40, 1000, 1), 3);
    EXPECT_EQ(Duration(40, 90, 1), 94);
}

// At tempo 150 a step of 12 ticks takes 25 ms; its 98 percent, 24.5, round down.
TEST_F(ArpeggiatorTiming, HalvesRoundDown) {
    clock.tempo = 150;
    EXPECT_EQ(Duration(12, 1000, 1), 24);
}

// In 4/8 a beat of 500 ms is an eighth: a quarter takes 1000 ms, the step of 96 ticks 500 ms.
TEST_F(ArpeggiatorTiming, DurationsCountQuartersNotBeats) {
    clock.beatUnit = 8;
    EXPECT_EQ(Duration(96, 200, 1), 399);
    EXPECT_EQ(Duration(96, 200, 4), 1000);
}

TEST_F(ArpeggiatorTiming, AGateOfZeroPlaysADurationOfZero) {
    EXPECT_EQ(Duration(96, 0, 1), 0);
}

TEST_F(ArpeggiatorTiming, AnInfiniteGateIsCappedByTheCycle) {
    EXPECT_EQ(Duration(96, std::numeric_limits<double>::infinity(), 1), 149);
}

TEST_F(ArpeggiatorTiming, NotesArePlayedAtTimeZero) {
    Press(60);
    RunTo(250);
    ASSERT_EQ(output.played.size(), 1U);
    EXPECT_EQ(output.played[0].time, 0U);
}

TEST_F(ArpeggiatorTiming, TheFirst64NotesAllocateNothing) {
    output.played.reserve(100);
    std::vector<Message> keys;
    for (int note = 0; note < 64; ++note) {
        keys.push_back({0x90, 1, static_cast<std::uint8_t>(note), 100});
    }
    MoveClock(250);
    const std::uint64_t before = GetAllocationCount();
    arpeggiator.Process(keys.data(), 64, clock, output);
    EXPECT_EQ(GetAllocationCount(), before);
    EXPECT_EQ(output.TakeNotes(), Notes{0});
}

TEST_F(ArpeggiatorTiming, NothingIsAllocatedOnceWarm) {
    output.played.reserve(100000);
    std::vector<Message> batch(10);
    const auto send = [&](std::uint8_t status) {
        for (std::size_t i = 0; i < batch.size(); ++i) {
            batch[i] = {status, 1, static_cast<std::uint8_t>(5 + 12 * i), 100};
        }
        arpeggiator.Process(batch.data(), 10, clock, output);
    };
    const auto playAll = [&] {
        for (int direction = 0; direction <= 8; ++direction) {
            arpeggiator.SetDirection(direction);
            for (int extension = 0; extension <= 3; ++extension) {
                arpeggiator.SetExtension(extension);
                send(0x90);
                RunTo(now + 250);
                RunTo(now + 10);
                send(0x80);
            }
        }
    };
    arpeggiator.SetMultiplication(2);
    playAll();
    const std::uint64_t before = GetAllocationCount();
    playAll();
    EXPECT_EQ(GetAllocationCount(), before);
    EXPECT_GT(output.played.size(), 60U);
}
