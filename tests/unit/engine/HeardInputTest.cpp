// Which keyboards of an input hold which notes.
#include <gtest/gtest.h>

#include "engine/HeardInput.h"
#include "support/AllocationCounter.h"

using namespace KivoraTest;

namespace {

class Heard : public testing::Test {
protected:
    static LibMidi::MIDIEvent From(std::uint8_t source, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
        LibMidi::MIDIEvent event(0, status, data1, data2);
        event.source = source;
        return event;
    }
    bool Follow(std::uint8_t source, std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
        return heard.Follow(From(source, status, data1, data2)).has_value();
    }
    /// The value that goes on of a sustain pedal's; -1 for none.
    int Move(std::uint8_t source, std::uint8_t value, std::uint8_t pedal = 64) {
        const auto message = heard.Follow(From(source, 0xB0, pedal, value));
        return message ? message->data2 : -1;
    }
    bool TakeMoved(std::uint8_t source, std::uint8_t status, std::uint8_t controller) {
        return heard.TakeMoved(From(source, status, controller, 0));
    }
    bool Holds(std::uint8_t source, std::uint8_t status, std::uint8_t note) const {
        return heard.Holds(From(source, status, note, 0));
    }

    Kivora::HeardInput heard;
};

}  // namespace

TEST_F(Heard, ANoteOfTwoKeyboardsEndsWithTheLastOfThem) {
    EXPECT_TRUE(Follow(1, 0x90, 60, 100));
    EXPECT_TRUE(Follow(2, 0x90, 60, 100));
    EXPECT_FALSE(Follow(2, 0x90, 60, 0));
    EXPECT_TRUE(Follow(2, 0x90, 62, 100));
    EXPECT_TRUE(Follow(2, 0x80, 62));
    EXPECT_TRUE(Follow(2, 0x90, 60, 100));
    EXPECT_FALSE(Follow(1, 0x80, 60));
    EXPECT_TRUE(Follow(2, 0x80, 60));
}

TEST_F(Heard, WhateverTheirChannels) {
    Follow(1, 0x90, 60, 100);
    Follow(2, 0x99, 60, 100);
    EXPECT_FALSE(Follow(1, 0x80, 60));
    EXPECT_TRUE(Follow(2, 0x89, 60));
}

TEST_F(Heard, OfOneKeyboardEachEndGoesOn) {
    Follow(0, 0x90, 60, 100);
    Follow(0, 0x91, 60, 100);
    EXPECT_TRUE(Follow(0, 0x80, 60));
    EXPECT_TRUE(Follow(0, 0x81, 60));
    EXPECT_TRUE(Follow(0, 0x81, 60)) << "of what is not held too";
}

TEST_F(Heard, AKeyboardHoldsWhatItHasBegunOnItsChannel) {
    Follow(1, 0x90, 60, 100);
    EXPECT_TRUE(Holds(1, 0x80, 60));
    EXPECT_FALSE(Holds(1, 0x89, 60));
    EXPECT_FALSE(Holds(2, 0x80, 60));
    Follow(1, 0xB0, 123);
    EXPECT_FALSE(Holds(1, 0x80, 60));
}

TEST_F(Heard, WhatWasEndedAtOneBlowIsHeldByNobody) {
    Follow(1, 0x90, 60, 100);
    Follow(1, 0xB0, 123);
    Follow(2, 0x90, 60, 100);
    EXPECT_TRUE(Follow(2, 0x80, 60));
    Follow(1, 0x90, 60, 100);
    heard.ForgetHeld();
    Follow(2, 0x90, 60, 100);
    EXPECT_TRUE(Follow(2, 0x80, 60));
}

TEST_F(Heard, APedalOfTwoKeyboardsGoesUpWithTheLastOfThem) {
    EXPECT_EQ(Move(1, 127), 127);
    EXPECT_EQ(Move(2, 127), 127);
    EXPECT_EQ(Move(1, 0), -1);
    EXPECT_EQ(Move(2, 0), 0);
    EXPECT_EQ(Move(1, 0), 0) << "of what is up too";
    EXPECT_EQ(Move(1, 127, 66), 127);
    EXPECT_EQ(Move(2, 0), 0) << "of each pedal by itself";
    EXPECT_EQ(Move(2, 127, 66), 127);
    EXPECT_EQ(Move(2, 0, 66), -1);
}

TEST_F(Heard, APedalStandsAsTheFootHasItThatHoldsItMost) {
    EXPECT_EQ(Move(1, 90), 90);
    EXPECT_EQ(Move(2, 30), -1);
    EXPECT_EQ(Move(2, 100), 100);
    EXPECT_EQ(Move(2, 40), 90);
    EXPECT_EQ(Move(1, 0), 40);
    EXPECT_EQ(Move(2, 20), 20);
    EXPECT_EQ(Move(2, 20), 20) << "of one keyboard everything goes on";
}

TEST_F(Heard, APedalThatAResetHasLiftedIsHeldByNobody) {
    Move(1, 127);
    Move(2, 127);
    EXPECT_TRUE(Follow(1, 0xB0, 121));
    EXPECT_EQ(Move(1, 127), 127);
    EXPECT_EQ(Move(1, 0), 0);
    Move(2, 127);
    heard.ForgetPedal(64);
    EXPECT_EQ(Move(1, 40), 40);
    EXPECT_EQ(Move(1, 0), 0);
    Move(2, 127);
    heard.ForgetHeld();
    EXPECT_EQ(Move(1, 40), 40);
    EXPECT_EQ(Move(1, 0), 0);
}

TEST_F(Heard, AControllersValueIsWhoseMovedItLast) {
    EXPECT_FALSE(TakeMoved(1, 0xB3, 1));
    Follow(1, 0xB3, 1, 50);
    EXPECT_FALSE(TakeMoved(1, 0xB3, 2));
    EXPECT_FALSE(TakeMoved(1, 0xB4, 1));
    EXPECT_FALSE(TakeMoved(2, 0xB3, 1));
    EXPECT_FALSE(TakeMoved(1, 0x93, 1)) << "a note";
    EXPECT_TRUE(TakeMoved(1, 0xB3, 1));
    EXPECT_FALSE(TakeMoved(1, 0xB3, 1));
    Follow(1, 0xB3, 1, 50);
    Follow(2, 0xB0, 1, 51);
    EXPECT_FALSE(TakeMoved(1, 0xB3, 1)) << "it is another's now";
    EXPECT_TRUE(TakeMoved(2, 0xB0, 1));
}

TEST_F(Heard, NothingIsAllocatedOnceWarm) {
    Follow(0, 0x90, 60, 100);
    Follow(1, 0x90, 60, 100);
    const std::uint64_t before = GetAllocationCount();
    Follow(0, 0x80, 60);
    Follow(1, 0x80, 60);
    Follow(1, 0xE0, 0, 64);
    EXPECT_EQ(GetAllocationCount(), before);
}
