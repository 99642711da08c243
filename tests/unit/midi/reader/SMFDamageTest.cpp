// Files that are not whole: what is whole is given, and the damage with its place.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "midi/reader/SMFReader.h"
#include "unit/midi/reader/SMFBytes.h"

using namespace NK::MIDI;
using namespace KivoraTest;

namespace {

struct Case {
    const char* name;
    std::string bytes;
    SMFDefect defect;
    std::int64_t offset;
    std::size_t events;  ///< how many are given all the same

    friend void PrintTo(const Case& tested, std::ostream* out) { *out << tested.name; }
};

const std::string kNote = Bytes({0, 0x90, 60, 100});
const std::string kHeader = Header(0, 1, 500);

std::string Second(const std::string& content) {
    return Header(1, 2, 500) + Chunk("MTrk", content) + Track(kNote);
}

class SMFDamages : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(SMFDamages, AreFoundWhereTheyStand) {
    const SMFContent content = ReadSMF(GetParam().bytes);
    ASSERT_TRUE(content.damage);
    EXPECT_EQ(content.damage->defect, GetParam().defect);
    EXPECT_EQ(content.damage->offset, GetParam().offset);
    EXPECT_EQ(content.events.size(), GetParam().events);
    EXPECT_NE(Describe(*content.damage).Find(std::to_wstring(GetParam().offset)), -1)
        << Describe(*content.damage).ToUtf8();
}

INSTANTIATE_TEST_SUITE_P(
    Of, SMFDamages,
    testing::Values(
        Case{"Nothing", "", SMFDefect::kNoHeader, 0, 0},
        Case{"APicture", "\x89PNG and what follows it", SMFDefect::kNoHeader, 0, 0},
        Case{"AHeaderCutShort", kHeader.substr(0, 13), SMFDefect::kNoHeader, 0, 0},
        Case{"AHeaderTooSmall", "MThd" + Number(5, 4) + kHeader.substr(8) + Track(kNote), SMFDefect::kNoHeader, 8, 0},
        Case{"Sequences", Header(2, 1, 500) + Track(kNote), SMFDefect::kUnknownFormat, 8, 0},
        Case{"NoDivision", Header(0, 1, 0) + Track(kNote), SMFDefect::kBadDivision, 12, 0},
        Case{"AFilmOf60Frames", Header(0, 1, 0xC404) + Track(kNote), SMFDefect::kBadDivision, 12, 0},
        Case{"NoTrack", kHeader, SMFDefect::kTrackMissing, 14, 0},
        Case{"OneTrackTooFew", Header(1, 2, 500) + Track(kNote), SMFDefect::kTrackMissing, 30, 1},
        Case{"ATrackCutInsideAnEvent", kHeader + Track(kNote + kNote).substr(0, 8 + 6), SMFDefect::kFileCutShort, 28,
             1},
        Case{"ATrackCutBetweenEvents", kHeader + Track(kNote + kNote).substr(0, 8 + 4), SMFDefect::kFileCutShort, 26,
             1},
        Case{"ATrackOfFourGigabytes", kHeader + "MTrk" + Number(UINT32_MAX, 4) + kNote, SMFDefect::kFileCutShort, 26,
             1},
        Case{"AnEventCutShort", Second(kNote + Bytes({0, 0x90, 1})), SMFDefect::kEventCutShort, kFirstTrackByte + 7, 2},
        Case{"ADeltaTimeCutShort", Second(kNote + Bytes({0x81})), SMFDefect::kEventCutShort, kFirstTrackByte + 5, 2},
        Case{"ADeltaTimeWithoutAnEvent", Second(kNote + Bytes({0})), SMFDefect::kEventCutShort, kFirstTrackByte + 5, 2},
        Case{"ADeltaTimeTooLong", Second(kNote + Bytes({0x81, 0x80, 0x80, 0x80, 0, 0x90, 1, 1})),
             SMFDefect::kLongQuantity, kFirstTrackByte + 4, 2},
        Case{"ATextBeyondItsTrack", Second(kNote + Bytes({0, 0xFF, 1, 100, 'a'})), SMFDefect::kEventCutShort,
             kFirstTrackByte + 9, 2},
        Case{"ATextWithoutASize", Second(kNote + Bytes({0, 0xFF, 1})), SMFDefect::kEventCutShort, kFirstTrackByte + 7,
             2},
        Case{"AMetaEventWithoutAType", Second(kNote + Bytes({0, 0xFF})), SMFDefect::kEventCutShort, kFirstTrackByte + 6,
             2},
        Case{"ASystemExclusiveBeyondItsTrack", Second(kNote + Bytes({0, 0xF0, 0xFF, 0xFF, 0xFF, 0x7F, 1})),
             SMFDefect::kEventCutShort, kFirstTrackByte + 11, 2},
        Case{"DataWithoutAStatus", Second(Bytes({0, 60, 100})), SMFDefect::kNoStatus, kFirstTrackByte + 1, 1},
        Case{"AStatusOfTheWire", Second(kNote + Bytes({0, 0xF8})), SMFDefect::kBadStatus, kFirstTrackByte + 5, 2},
        Case{"AStatusInPlaceOfData", Second(kNote + Bytes({0, 0x90, 60, 0x90, 1})), SMFDefect::kBadData,
             kFirstTrackByte + 7, 2},
        Case{"ATempoOfNoTime", Second(Bytes({0, 0xFF, 0x51, 3, 0, 0, 0}) + kNote), SMFDefect::kBadTempo,
             kFirstTrackByte + 4, 2},
        Case{"ATempoOfTwoBytes", Second(Bytes({0, 0xFF, 0x51, 2, 1, 0}) + kNote), SMFDefect::kBadTempo,
             kFirstTrackByte + 4, 2}),
    [](const testing::TestParamInfo<Case>& tested) { return std::string(tested.param.name); });

TEST(SMFDamage, ATimeThatNoPieceReachesIsDamage) {
    std::string content = kNote;
    for (int i = 0; i < 8; ++i) {  // 0x0FFFFFFF each, 8 below 2^31 in all
        content += Bytes({0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 0});
    }
    EXPECT_FALSE(ReadSMF(kHeader + Track(content)).damage);
    const auto late = static_cast<std::int64_t>(content.size());
    content += Bytes({8, 0x90, 60, 0});
    const SMFContent read = ReadSMF(kHeader + Track(content));
    ASSERT_TRUE(read.damage);
    EXPECT_EQ(read.damage->defect, SMFDefect::kTooLate);
    EXPECT_EQ(read.damage->offset, kFirstTrackByte + late);
    EXPECT_EQ(read.events.size(), 9U);
}

TEST(SMFDamage, TheFirstOneIsTold) {
    const SMFContent content =
        ReadSMF(Header(1, 3, 500) + Chunk("MTrk", Bytes({0, 60})) + Chunk("MTrk", Bytes({0, 61})));
    ASSERT_TRUE(content.damage);
    EXPECT_EQ(content.damage->offset, kFirstTrackByte + 1);
}
