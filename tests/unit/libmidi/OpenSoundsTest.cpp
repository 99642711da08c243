#include "libmidi/OpenSounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using LibMidi::OpenSounds;
using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<TMIDIMessage> EndsOf(const OpenSounds& open) {
    std::vector<TMIDIMessage> ends;
    open.VisitEnds([&ends](TMIDIMessage message) { ends.push_back(message); });
    return ends;
}

OpenSounds Follow(const std::vector<TMIDIMessage>& messages) {
    OpenSounds open;
    for (const TMIDIMessage message : messages) {
        open.Follow(message);
    }
    return open;
}

}  // namespace

TEST(OpenSounds, NothingIsOpenAtFirstAndWhatHasEnded) {
    EXPECT_FALSE(OpenSounds().IsAny());
    EXPECT_FALSE(Follow({{0x90, 1, 60, 1}, {0x80, 1, 60, 9}}).IsAny());
    EXPECT_FALSE(Follow({{0x90, 1, 60, 1}, {0x90, 1, 60, 0}}).IsAny());
    EXPECT_FALSE(Follow({{0xB0, 1, 64, 1}, {0xB0, 1, 64, 0}}).IsAny());
    EXPECT_FALSE(Follow({{0xB0, 1, 7, 100}, {0xC0, 1, 60, 1}, {0xF8, 0, 60, 1}, {0x90, 1, 200, 1}}).IsAny());
}

TEST(OpenSounds, EachChannelsNotesAndPedalsAreOpenByThemselves) {
    const OpenSounds open = Follow({{0xB0, 3, 64, 127},
                                    {0x90, 10, 36, 1},
                                    {0x90, 1, 61, 1},
                                    {0x90, 1, 60, 1},
                                    {0x80, 2, 60, 0},
                                    {0xB0, 16, 69, 1},
                                    {0xB0, 1, 66, 64},
                                    {0xB0, 1, 67, 64}});
    EXPECT_TRUE(open.IsAny());
    EXPECT_THAT(EndsOf(open),
                ElementsAre(TMIDIMessage{0x80, 1, 60, 0}, TMIDIMessage{0x80, 1, 61, 0}, TMIDIMessage{0x80, 10, 36, 0},
                            TMIDIMessage{0xB0, 1, 66, 0}, TMIDIMessage{0xB0, 1, 67, 0}, TMIDIMessage{0xB0, 3, 64, 0},
                            TMIDIMessage{0xB0, 16, 69, 0}));
}

TEST(OpenSounds, AMessageThatEndsSeveralAtOneBlowEndsThose) {
    const std::vector<TMIDIMessage> held{
        {0x90, 1, 60, 1}, {0x90, 1, 64, 1}, {0xB0, 1, 64, 127}, {0x90, 2, 60, 1}, {0xB0, 2, 67, 1}};
    const auto endedBy = [&held](TMIDIMessage message) {
        std::vector<TMIDIMessage> ended;
        Follow(held).VisitEndedBy(message, [&ended](TMIDIMessage end) { ended.push_back(end); });
        return ended;
    };
    for (const std::uint8_t controller : std::initializer_list<std::uint8_t>{120, 123, 124, 125, 126, 127}) {
        EXPECT_THAT(endedBy({0xB0, 1, controller, 0}),
                    ElementsAre(TMIDIMessage{0x80, 1, 60, 0}, TMIDIMessage{0x80, 1, 64, 0}));
    }
    EXPECT_THAT(endedBy({0xB0, 2, 121, 0}), ElementsAre(TMIDIMessage{0xB0, 2, 67, 0}));
    EXPECT_EQ(endedBy({0xFF, 0, 0, 0}).size(), 5U);
    EXPECT_THAT(endedBy({0xB0, 3, 123, 0}), IsEmpty());
    EXPECT_THAT(endedBy({0xB0, 1, 122, 0}), IsEmpty());
    EXPECT_THAT(endedBy({0x80, 1, 60, 0}), IsEmpty());
    for (const TMIDIMessage message : {TMIDIMessage{0xB0, 1, 123, 0}, TMIDIMessage{0xB0, 2, 121, 0}}) {
        OpenSounds open = Follow(held);
        open.Follow(message);
        EXPECT_EQ(EndsOf(open).size() + endedBy(message).size(), 5U);
    }
    OpenSounds open = Follow(held);
    open.Follow({0xFF, 0, 0, 0});
    EXPECT_FALSE(open.IsAny());
}
