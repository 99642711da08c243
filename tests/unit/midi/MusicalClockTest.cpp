#include "midi/MusicalClock.h"

#include <gtest/gtest.h>

using NK::MIDI::MusicalClock;

namespace {

MusicalClock At(int bar, int beat, int offset) {
    MusicalClock clock;
    clock.bar = bar;
    clock.beat = beat;
    clock.offset = offset;
    return clock;
}

}  // namespace

TEST(MusicalClock, ABeatAt120Is500Milliseconds) {
    EXPECT_DOUBLE_EQ(MusicalClock().BeatLength(), 500.0);
}

TEST(MusicalClock, ABarOfFourQuartersIs768Ticks) {
    EXPECT_EQ(At(0, 0, 0).ToTick(), 0);
    EXPECT_EQ(At(0, 1, 0).ToTick(), 192);
    EXPECT_EQ(At(1, 0, 0).ToTick(), 768);
    EXPECT_EQ(At(2, 3, 0).ToTick(), 2 * 768 + 3 * 192);
}

// 249 ms are 95.616 ticks, which round to 96: the step at 250 ms comes one millisecond early.
TEST(MusicalClock, ATickIsRoundedToNearest) {
    EXPECT_EQ(At(0, 0, 248).ToTick(), 95);
    EXPECT_EQ(At(0, 0, 249).ToTick(), 96);
    EXPECT_EQ(At(0, 0, 250).ToTick(), 96);
}

TEST(MusicalClock, TheBeatUnitDividesAsARealNumber) {
    MusicalClock clock = At(1, 2, 0);
    clock.beatUnit = 8;
    clock.beatsPerBar = 6;
    EXPECT_EQ(clock.ToTick(), 8 * 96);
    clock.beatUnit = 3;  // 4 / 3 x 192 = 256 ticks a beat
    EXPECT_EQ(clock.ToTick(), 8 * 256);
}

TEST(MusicalClock, TheOffsetCountsBeatsOfTheTempo) {
    MusicalClock clock = At(0, 0, 750);
    clock.tempo = 40;  // 1500 ms a beat
    EXPECT_EQ(clock.ToTick(), 96);
}
