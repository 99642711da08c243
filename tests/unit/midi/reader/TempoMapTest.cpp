#include "midi/reader/TempoMap.h"

#include <gtest/gtest.h>

using NK::MIDI::TempoMap;

namespace {

std::int64_t GetTimeUs(std::uint16_t division, std::uint32_t tick) {
    const auto map = TempoMap::FromDivision(division);
    return map ? map->GetTimeUs(tick) : -1;
}

constexpr std::uint16_t Film(int framesPerSecond, int ticksPerFrame) {
    return static_cast<std::uint16_t>((256 - framesPerSecond) << 8 | ticksPerFrame);
}

}  // namespace

TEST(TempoMap, WithoutATempoAQuarterNoteTakesHalfASecond) {
    EXPECT_EQ(GetTimeUs(480, 0), 0);
    EXPECT_EQ(GetTimeUs(480, 480), 500000);
    EXPECT_EQ(GetTimeUs(1, 7), 3500000);
    EXPECT_EQ(GetTimeUs(0x7FFF, 0x7FFF), 500000);
    EXPECT_EQ(GetTimeUs(480, 1), 1041) << "rounded down";
}

TEST(TempoMap, TicksOfAFilmDoNotKnowTheTempo) {
    EXPECT_EQ(GetTimeUs(Film(25, 40), 1), 1000);
    EXPECT_EQ(GetTimeUs(Film(24, 100), 2400), 1000000);
    EXPECT_EQ(GetTimeUs(Film(30, 80), 2400), 1000000);
    EXPECT_EQ(GetTimeUs(Film(29, 100), 3000000), 1001000000) << "30 frames take 1.001 seconds";
    auto map = TempoMap::FromDivision(Film(25, 40));
    ASSERT_TRUE(map);
    map->Add({0, 1});
    EXPECT_FALSE(map->CountsQuarterNotes());
    EXPECT_EQ(map->GetTicksPerQuarter(), 0U);
    EXPECT_TRUE(map->GetChanges().empty());
    EXPECT_EQ(map->GetTimeUs(1000), 1000000);
}

TEST(TempoMap, ADivisionThatGivesNoLengthGivesNoMap) {
    for (const std::uint16_t division : {std::uint16_t{0}, Film(25, 0), Film(60, 4), Film(1, 4), Film(128, 4)}) {
        EXPECT_FALSE(TempoMap::FromDivision(division)) << division;
    }
}

TEST(TempoMap, EachTempoHoldsFromItsTickOn) {
    auto map = *TempoMap::FromDivision(100);
    map.Add({100, 1000000});
    map.Add({200, 250000});
    EXPECT_EQ(map.GetTimeUs(100), 500000);
    EXPECT_EQ(map.GetTimeUs(150), 1000000);
    EXPECT_EQ(map.GetTimeUs(200), 1500000);
    EXPECT_EQ(map.GetTimeUs(300), 1750000);
    ASSERT_EQ(map.GetChanges().size(), 3U);
    EXPECT_EQ(map.GetChanges()[0].tempo, TempoMap::kDefaultTempo);
    EXPECT_EQ(map.GetChanges()[2].tick, 200U);
}

TEST(TempoMap, OfSeveralTempiAtOneTickTheLastHolds) {
    auto map = *TempoMap::FromDivision(100);
    map.Add({0, 1});
    map.Add({0, 1000000});
    EXPECT_EQ(map.GetTimeUs(100), 1000000);
    map.Add({100, 1});
    map.Add({100, 500000});
    EXPECT_EQ(map.GetTimeUs(200), 1500000);
    EXPECT_EQ(map.GetChanges().size(), 2U);
}

TEST(TempoMap, LongRunsLoseNothing) {
    auto map = *TempoMap::FromDivision(3);
    for (std::uint32_t tick = 0; tick < 3000000; ++tick) {
        map.Add({tick, 500000 + tick % 2});
    }
    EXPECT_EQ(map.GetTimeUs(3000000), 500000500000) << "thirds of a microsecond add up";
    auto slow = *TempoMap::FromDivision(1);
    slow.Add({0, TempoMap::kSlowestTempo});
    EXPECT_EQ(slow.GetTimeUs(TempoMap::kLatestTick), std::int64_t{0x7FFFFFFF} * 0xFFFFFF);
}
