#include "midi/reader/SMFReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nk/nk_file_failure.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "unit/midi/reader/SMFBytes.h"

using namespace NK::MIDI;
using namespace KivoraTest;
using testing::ElementsAre;

namespace {

/// "tick@us track: status channel data1 data2" of each event.
std::vector<std::string> List(const SMFContent& content) {
    std::vector<std::string> lines;
    for (const SMFEvent& event : content.events) {
        const auto text = [](std::int64_t number) { return std::to_string(number); };
        lines.push_back(text(event.tick) + "@" + text(event.timeUs) + " " + text(event.track) + ": " +
                        text(event.message.status) + " " + text(event.message.channel) + " " +
                        text(event.message.data1) + " " + text(event.message.data2));
    }
    return lines;
}

}  // namespace

TEST(SMFReader, ReadsEveryChannelMessage) {
    const SMFContent content =
        ReadSMF(Header(0, 1, 500) + Track(Bytes({0,  0x90, 60, 100,  10, 0x80, 60,   64, 0,    0xA1, 1,    2, 0, 0xBF,
                                                 64, 127,  0,  0xC2, 5,  0,    0xD3, 6,  0x81, 0,    0xE4, 0, 64})));
    EXPECT_FALSE(content.damage);
    EXPECT_EQ(content.format, 0);
    EXPECT_EQ(content.trackCount, 1U);
    EXPECT_THAT(List(content), ElementsAre("0@0 0: 144 1 60 100", "10@10000 0: 128 1 60 64", "10@10000 0: 160 2 1 2",
                                           "10@10000 0: 176 16 64 127", "10@10000 0: 192 3 5 0",
                                           "10@10000 0: 208 4 6 0", "138@138000 0: 224 5 0 64"));
    EXPECT_EQ(content.lengthUs, 138000);
}

TEST(SMFReader, UnderstandsRunningStatus) {
    const std::string text = Bytes({0, 0xFF, 1, 1, 'a'});
    const SMFContent content = ReadSMF(
        Header(0, 1, 500) + Track(Bytes({0, 0x90, 60, 100, 1, 60, 0, 1, 0xC0, 7, 1, 8}) + text + Bytes({1, 9})));
    EXPECT_FALSE(content.damage);
    EXPECT_THAT(List(content), ElementsAre("0@0 0: 144 1 60 100", "1@1000 0: 144 1 60 0", "2@2000 0: 192 1 7 0",
                                           "3@3000 0: 192 1 8 0", "4@4000 0: 192 1 9 0"))
        << "also across a text";
}

TEST(SMFReader, MergesTheTracksInTimeAndAtOneTickByTheirNumbers) {
    const SMFContent content =
        ReadSMF(Header(1, 3, 500) + Track(Bytes({5, 0xFF, 0x51, 3, 0x0F, 0x42, 0x40})) +
                Track(Bytes({10, 0x90, 1, 1, 0, 2, 1, 10, 3, 1})) + Track(Bytes({5, 0x91, 4, 1, 5, 5, 1, 20, 6, 1})));
    EXPECT_FALSE(content.damage);
    EXPECT_EQ(content.format, 1);
    EXPECT_THAT(List(content), ElementsAre("5@5000 2: 144 2 4 1", "10@15000 1: 144 1 1 1", "10@15000 1: 144 1 2 1",
                                           "10@15000 2: 144 2 5 1", "20@35000 1: 144 1 3 1", "30@55000 2: 144 2 6 1"))
        << "a second a quarter note from tick 5 on";
    ASSERT_EQ(content.tempoMap.GetChanges().size(), 2U);
    EXPECT_EQ(content.tempoMap.GetTicksPerQuarter(), 500U);
}

TEST(SMFReader, TakesTempiFromEveryTrackInTheOrderOfTheirTicks) {
    const SMFContent content = ReadSMF(Header(1, 2, 500) + Track(Bytes({20, 0xFF, 0x51, 3, 0x0F, 0x42, 0x40})) +
                                       Track(Bytes({10, 0xFF, 0x51, 3, 0, 1, 0xF4, 20, 0x90, 1, 1})));
    EXPECT_THAT(List(content), ElementsAre("30@30010 1: 144 1 1 1"));
}

TEST(SMFReader, CountsThePartsOfAFilmsFrames) {
    const SMFContent content = ReadSMF(Header(0, 1, 0xE728) + Track(Bytes({100, 0x90, 1, 1})));
    EXPECT_THAT(List(content), ElementsAre("100@100000 0: 144 1 1 1"));
}

TEST(SMFReader, GivesTheTexts) {
    const SMFContent content =
        ReadSMF(Header(0, 1, 500) + Track(Bytes({0, 0xFF, 3, 3, 'Z', 0xC3, 0xBC}) + Bytes({9, 0xFF, 5, 2, 'g', 0xFC}) +
                                          Bytes({0, 0xFF, 0x58, 4, 4, 2, 24, 8})));
    ASSERT_EQ(content.texts.size(), 2U);
    EXPECT_EQ(content.texts[0].text, L"Z\u00FC");
    EXPECT_EQ(content.texts[0].type, 3);
    EXPECT_EQ(content.texts[1].text, L"g\u00FC") << "what is no UTF-8";
    EXPECT_EQ(content.texts[1].timeUs, 9000);
    EXPECT_FALSE(content.damage);
}

TEST(SMFReader, SkipsSystemExclusiveAndWhatIsNoTrack) {
    const std::string longText(200, 'x');
    const SMFContent content =
        ReadSMF(Header(1, 1, 500) + Chunk("XFIH", "anything") +
                Track(Bytes({0, 0xF0, 3, 1, 2, 0xF7, 0, 0xF7, 2, 0xF3, 1, 0, 0xFF, 0x7F, 0x81, 0x48}) + longText +
                      Bytes({1, 0x90, 1, 1})) +
                Chunk("XFKM", "") + "tail");
    EXPECT_FALSE(content.damage);
    EXPECT_EQ(content.systemExclusives, 2U);
    EXPECT_EQ(content.trackCount, 1U);
    EXPECT_THAT(List(content), ElementsAre("1@1000 0: 144 1 1 1"));
}

TEST(SMFReader, TakesALongerHeaderAndMoreTracksThanAreAnnounced) {
    const std::string header = "MThd" + Number(8, 4) + Number(1, 2) + Number(1, 2) + Number(500, 2) + "xx";
    const SMFContent content = ReadSMF(header + Track(Bytes({0, 0x90, 1, 1})) + Track(Bytes({0, 0x90, 2, 1})));
    EXPECT_FALSE(content.damage);
    EXPECT_THAT(List(content), ElementsAre("0@0 0: 144 1 1 1", "0@0 1: 144 1 2 1"));
}

TEST(SMFReader, ATrackWithoutItsEndIsWhole) {
    const SMFContent content = ReadSMF(Header(0, 1, 500) + Chunk("MTrk", Bytes({3, 0x90, 1, 1})));
    EXPECT_FALSE(content.damage);
    EXPECT_THAT(List(content), ElementsAre("3@3000 0: 144 1 1 1"));
}

TEST(SMFReader, WhatStandsBehindATracksEndIsNotRead) {
    const SMFContent content =
        ReadSMF(Header(0, 1, 500) + Chunk("MTrk", Bytes({3, 0x90, 1, 1, 50, 0xFF, 0x2F, 0, 0, 0x90, 2, 1})));
    EXPECT_FALSE(content.damage);
    EXPECT_THAT(List(content), ElementsAre("3@3000 0: 144 1 1 1"));
    EXPECT_EQ(content.lengthUs, 53000) << "the end has a time of its own";
}

TEST(SMFReader, ReadsAFileOfTheDisk) {
    const CTemporaryFolder folder;
    WriteBytes(folder / "a.mid", Header(0, 1, 500) + Track(Bytes({0, 0x90, 1, 1})));
    const auto content = ReadSMFFile(NK::CString::FromUtf8((folder / "a.mid").string()));
    ASSERT_TRUE(content);
    EXPECT_EQ(content->events.size(), 1U);
}

TEST(SMFReader, WhatCannotBeReadHasAReason) {
    const CTemporaryFolder folder;
    const NK::CString path = NK::CString::FromUtf8((folder / "a.mid").string());
    EXPECT_FALSE(ReadSMFFile(path));
    EXPECT_EQ(NK::GetFileFailure().path, path);
    std::filesystem::create_directory(folder / "a.mid");
    EXPECT_FALSE(ReadSMFFile(path));
    EXPECT_NE(NK::GetFileFailure().error, 0);
    std::filesystem::remove(folder / "a.mid");
    WriteBytes(folder / "a.mid", Header(0, 1, 500));
    std::filesystem::resize_file(folder / "a.mid", kMaxSMFBytes + 1);
    EXPECT_FALSE(ReadSMFFile(path));
    EXPECT_EQ(NK::GetFileFailure().error, NK::kErrorTooLarge);
}
