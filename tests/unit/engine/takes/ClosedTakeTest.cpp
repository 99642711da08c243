#include "engine/takes/ClosedTake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using Kivora::CloseTake;
using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Timed {
    std::uint32_t time;
    TMIDIMessage message;

    bool operator==(const Timed&) const = default;
};

std::vector<Timed> Close(const std::vector<Timed>& events, std::uint32_t endMs) {
    CaptureStore captured;
    for (const Timed& event : events) {
        captured.Append({event.time, event.message});
    }
    std::vector<Timed> closed;
    CloseTake(captured.GetView(), endMs).Visit(0, [&closed](const CapturedEvent& event) {
        closed.push_back({event.time, event.message});
    });
    return closed;
}

}  // namespace

TEST(ClosedTake, WhereNothingIsOpenTheEventsStayAsTheyAre) {
    const std::vector<Timed> events{{0, {0xC0, 1, 0, 0}}, {5, {0x90, 1, 60, 1}}, {9, {0x80, 1, 60, 0}}};
    EXPECT_EQ(Close(events, 1000), events);
    EXPECT_THAT(Close({}, 1000), IsEmpty());
}

TEST(ClosedTake, WhatIsHeldAtTheEndEndsThere) {
    EXPECT_THAT(Close({{5, {0x90, 2, 60, 1}}, {7, {0xB0, 3, 64, 127}}}, 1000),
                ElementsAre(Timed{5, {0x90, 2, 60, 1}}, Timed{7, {0xB0, 3, 64, 127}}, Timed{1000, {0x80, 2, 60, 0}},
                            Timed{1000, {0xB0, 3, 64, 0}}));
}

TEST(ClosedTake, AnEndBeforeTheLastEventIsThatEvents) {
    EXPECT_THAT(Close({{5, {0x90, 2, 60, 1}}}, 0), ElementsAre(Timed{5, {0x90, 2, 60, 1}}, Timed{5, {0x80, 2, 60, 0}}));
}

TEST(ClosedTake, WhatAllNotesOffEndsHasItsNoteOffThere) {
    EXPECT_THAT(Close({{5, {0x90, 2, 60, 1}}, {7, {0xB0, 2, 123, 0}}, {9, {0x80, 2, 60, 0}}}, 1000),
                ElementsAre(Timed{5, {0x90, 2, 60, 1}}, Timed{7, {0x80, 2, 60, 0}}, Timed{7, {0xB0, 2, 123, 0}},
                            Timed{9, {0x80, 2, 60, 0}}));
}
