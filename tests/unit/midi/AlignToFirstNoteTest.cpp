#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "midi/CMIDIMessageX.h"

using namespace NK::MIDI;

namespace {

constexpr TMIDIMessage kNoteOn{0x90, 1, 60, 100};
constexpr TMIDIMessage kNoteOff{0x80, 1, 60, 0};
constexpr TMIDIMessage kController{0xB0, 1, 7, 100};

std::vector<std::int32_t> Align(std::vector<CMIDIMessageX> events, std::int32_t startTime) {
    AlignToFirstNote(events.data(), static_cast<std::uint32_t>(events.size()), startTime);
    std::vector<std::int32_t> times;
    for (const CMIDIMessageX& event : events) {
        times.push_back(event.time);
    }
    return times;
}

using Times = std::vector<std::int32_t>;

}  // namespace

TEST(AlignToFirstNote, ShiftsTheFirstNoteAndAllLaterEvents) {
    EXPECT_EQ(
        Align({{kController, 10}, {kController, 900}, {kNoteOn, 1000}, {kController, 1200}, {kNoteOff, 1500}}, 100),
        (Times{0, 0, 100, 300, 600}));
}

TEST(AlignToFirstNote, ANoteOffCountsAsANote) {
    EXPECT_EQ(Align({{kController, 10}, {kNoteOff, 50}, {kNoteOn, 70}}, 0), (Times{0, 0, 20}));
}

TEST(AlignToFirstNote, LaterEventsAtZeroOrBelowStay) {
    EXPECT_EQ(Align({{kNoteOn, 100}, {kController, 0}, {kController, -1}, {kController, 150}}, 5000),
              (Times{5000, 0, -1, 5050}));
}

TEST(AlignToFirstNote, AFirstNoteAtZeroStaysAndTheOthersMoveByTheStart) {
    EXPECT_EQ(Align({{kNoteOn, 0}, {kNoteOff, 10}}, 7), (Times{0, 17}));
}

TEST(AlignToFirstNote, OnlyShortMessagesAreNotes) {
    CMIDIMessageX meta(kNoteOn, 5);
    meta.SetText(CMIDIMessageX::kText, "x", 5);
    EXPECT_EQ(Align({meta, {kNoteOn, 30}}, 30), (Times{0, 30}));
}

TEST(AlignToFirstNote, WithoutANoteEveryTimeBecomesZero) {
    EXPECT_EQ(Align({{kController, 10}, {kController, -1}, {kController, 30}}, 100), (Times{0, 0, 0}));
}

TEST(AlignToFirstNote, AnEmptyListIsLeftAlone) {
    CMIDIMessageX beyond(kNoteOn, 5);
    AlignToFirstNote(&beyond, 0, 100);
    EXPECT_EQ(beyond.time, 5);
    AlignToFirstNote(nullptr, 0, 100);
}

TEST(AlignToFirstNote, TimesStayWithinTheirType) {
    constexpr std::int32_t kMaximum = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(Align({{kNoteOn, 1}, {kNoteOff, kMaximum}}, 100), (Times{100, kMaximum}));
}
