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
        return heard.Follow(From(source, status, data1, data2));
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
    heard.ForgetNotes();
    Follow(2, 0x90, 60, 100);
    EXPECT_TRUE(Follow(2, 0x80, 60));
}

TEST_F(Heard, AControllerIsMovedOnceItWasSent) {
    EXPECT_FALSE(heard.TakeMoved(1));
    Follow(1, 0xB3, 1, 50);
    EXPECT_FALSE(heard.TakeMoved(2));
    EXPECT_TRUE(heard.TakeMoved(1));
    EXPECT_FALSE(heard.TakeMoved(1));
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
