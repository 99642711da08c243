#include "libmidi/ChannelState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using LibMidi::ChannelState;
using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Messages = std::vector<TMIDIMessage>;

Messages StateAfter(const Messages& messages) {
    ChannelState state;
    for (const TMIDIMessage message : messages) {
        state.Follow(message);
    }
    Messages all;
    state.VisitAll([&all](TMIDIMessage message) { all.push_back(message); });
    return all;
}

}  // namespace

TEST(ChannelState, NothingIsSetAtFirstByNotesOrAfterAReset) {
    EXPECT_THAT(StateAfter({}), IsEmpty());
    EXPECT_THAT(StateAfter({{0x90, 1, 60, 1}, {0x80, 1, 60, 1}, {0xA0, 1, 60, 1}, {0xF8, 0, 0, 0}}), IsEmpty());
    EXPECT_THAT(StateAfter({{0xC0, 0, 60, 0}, {0xC0, 17, 60, 0}, {0xB0, 1, 123, 0}, {0xB0, 1, 200, 0}}), IsEmpty());
    EXPECT_THAT(StateAfter({{0xC0, 1, 5, 0}, {0xB0, 2, 7, 90}, {0xE0, 3, 1, 2}, {0xFF, 0, 0, 0}}), IsEmpty());
}

TEST(ChannelState, TheLastOfEachKindStandsAndBanksComeBeforeTheProgram) {
    EXPECT_THAT(StateAfter({{0xC0, 2, 5, 0},
                            {0xC0, 1, 5, 0},
                            {0xB0, 1, 7, 90},
                            {0xB0, 1, 0, 3},
                            {0xB0, 1, 32, 4},
                            {0xC0, 1, 6, 0},
                            {0xB0, 1, 7, 80},
                            {0xD0, 1, 33, 0},
                            {0xE0, 1, 1, 65}}),
                ElementsAre(TMIDIMessage{0xB0, 1, 0, 3}, TMIDIMessage{0xB0, 1, 32, 4}, TMIDIMessage{0xC0, 1, 6, 0},
                            TMIDIMessage{0xB0, 1, 7, 80}, TMIDIMessage{0xD0, 1, 33, 0}, TMIDIMessage{0xE0, 1, 1, 65},
                            TMIDIMessage{0xC0, 2, 5, 0}));
}

TEST(ChannelState, RegisteredParametersComeWithTheirNumbersAndTheSelectionLast) {
    EXPECT_THAT(
        StateAfter({{0xB0, 1, 101, 0},
                    {0xB0, 1, 100, 0},
                    {0xB0, 1, 6, 12},
                    {0xB0, 1, 38, 50},
                    {0xB0, 1, 101, 127},
                    {0xB0, 1, 100, 127},
                    {0xB0, 1, 6, 99}}),
        ElementsAre(TMIDIMessage{0xB0, 1, 101, 0}, TMIDIMessage{0xB0, 1, 100, 0}, TMIDIMessage{0xB0, 1, 6, 12},
                    TMIDIMessage{0xB0, 1, 38, 50}, TMIDIMessage{0xB0, 1, 101, 127}, TMIDIMessage{0xB0, 1, 100, 127}));
    EXPECT_THAT(StateAfter({{0xB0, 1, 101, 0}, {0xB0, 1, 100, 1}, {0xB0, 1, 99, 1}, {0xB0, 1, 6, 12}}), IsEmpty())
        << "data of a parameter that is not registered";
}

TEST(ChannelState, ResetAllControllersLeavesVolumeAndProgram) {
    EXPECT_THAT(StateAfter({{0xC0, 1, 5, 0},
                            {0xB0, 1, 7, 90},
                            {0xB0, 1, 1, 9},
                            {0xB0, 1, 64, 127},
                            {0xE0, 1, 0, 0},
                            {0xD0, 1, 9, 0},
                            {0xB0, 1, 121, 0}}),
                ElementsAre(TMIDIMessage{0xC0, 1, 5, 0}, TMIDIMessage{0xB0, 1, 7, 90}));
}

TEST(ChannelState, WhatIsSetHasAValueAfterAReset) {
    ChannelState state;
    for (const TMIDIMessage message : Messages{{0xB0, 1, 7, 5},
                                               {0xB0, 1, 11, 5},
                                               {0xB0, 1, 101, 0},
                                               {0xB0, 1, 100, 0},
                                               {0xB0, 1, 6, 12},
                                               {0xC0, 1, 40, 0},
                                               {0xE0, 1, 9, 9},
                                               {0x90, 1, 60, 100}}) {
        state.Follow(message);
    }
    Messages all;
    state.GetReset().VisitAll([&all](TMIDIMessage message) { all.push_back(message); });
    EXPECT_THAT(
        all,
        ElementsAre(TMIDIMessage{0xC0, 1, 0, 0}, TMIDIMessage{0xB0, 1, 7, 100}, TMIDIMessage{0xB0, 1, 11, 127},
                    TMIDIMessage{0xB0, 1, 101, 0}, TMIDIMessage{0xB0, 1, 100, 0}, TMIDIMessage{0xB0, 1, 6, 2},
                    TMIDIMessage{0xB0, 1, 101, 127}, TMIDIMessage{0xB0, 1, 100, 127}, TMIDIMessage{0xE0, 1, 0, 64}));
}

TEST(ChannelState, WhatIsNotSetIsTakenFromAnotherState) {
    ChannelState other;
    for (const TMIDIMessage message :
         Messages{{0xB0, 2, 7, 5}, {0xB0, 2, 1, 6}, {0xC0, 2, 7, 0}, {0xE0, 2, 8, 9}, {0xD0, 3, 1, 0}}) {
        other.Follow(message);
    }
    ChannelState state;
    state.Follow({0xB0, 2, 7, 99});
    state.Follow({0xE0, 2, 1, 2});
    state.TakeUnsetFrom(other);
    Messages all;
    state.VisitAll([&all](TMIDIMessage message) { all.push_back(message); });
    EXPECT_THAT(all, ElementsAre(TMIDIMessage{0xC0, 2, 7, 0}, TMIDIMessage{0xB0, 2, 1, 6}, TMIDIMessage{0xB0, 2, 7, 99},
                                 TMIDIMessage{0xE0, 2, 1, 2}, TMIDIMessage{0xD0, 3, 1, 0}));
}
