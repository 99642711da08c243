#include "midi/SMFWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "nk/nk_memory_file.h"
#include "support/FaultyFile.h"

using namespace NK;
using namespace NK::MIDI;
using KivoraTest::CFaultyFile;
using std::string_view_literals::operator""sv;

namespace {

constexpr std::string_view kEnd = "\0\xFF\x2F\0"sv;

std::string Stream(const std::vector<CMIDIMessageX>& events, int tempo) {
    CMemoryFile file;
    EXPECT_TRUE(WriteMIDIStream(file, events.data(), static_cast<std::uint32_t>(events.size()), tempo));
    return std::string(file.GetContent());
}

/// The track's content after its length, which is checked.
std::string Track(const std::vector<CMIDIMessageX>& events, int tempo = 0) {
    CMemoryFile file;
    EXPECT_TRUE(WriteMIDITrack(file, events.data(), static_cast<std::uint32_t>(events.size()), tempo));
    const std::string_view bytes = file.GetContent();
    EXPECT_EQ(bytes.substr(0, 4), "MTrk");
    std::size_t length = 0;
    for (const char c : bytes.substr(4, 4)) {
        length = length << 8 | static_cast<std::uint8_t>(c);
    }
    EXPECT_EQ(length, bytes.size() - 8);
    EXPECT_EQ(file.GetPosition(), file.GetLength());
    return std::string(bytes.substr(8));
}

std::string Bytes(std::string_view bytes) {
    return std::string(bytes) + std::string(kEnd);
}

std::vector<CMIDIMessageX> MixedEvents() {
    CMIDIMessageX text;
    text.SetText(CMIDIMessageX::kText, "take", 20);
    CMIDIMessageX sysEx;
    const std::uint8_t bytes[] = {0xF0, 0x7E, 0x7F, 9, 1, 0xF7};
    sysEx.SetSysEx(bytes, sizeof(bytes), 30);
    return {{{0x90, 1, 60, 100}, 0}, text, sysEx, CMIDIMessageX(), {{0x80, 1, 60, 0}, 400}};
}

const TMIDIMessage kNote{0x90, 1, 60, 100};

}  // namespace

TEST(SMFWriter, TempoZeroGivesDivision500AndNoTempoEvent) {
    const std::string file = Stream({}, 0);
    EXPECT_EQ(file.size(), 26U);
    EXPECT_EQ(file, "MThd\0\0\0\x06\0\0\0\x01\x01\xF4MTrk\0\0\0\x04\0\xFF\x2F\0"sv);
}

TEST(SMFWriter, Tempo120GivesDivision500AndItsTempoEvent) {
    const std::string file = Stream({}, 120);
    EXPECT_EQ(file.substr(12, 2), "\x01\xF4");
    EXPECT_EQ(file.substr(22), Bytes("\0\xFF\x51\x03\x07\xA1\x20"sv));
}

TEST(SMFWriter, Tempo7TruncatesTheDivisionAndRoundsTheTempo) {
    const std::string file = Stream({}, 7);
    EXPECT_EQ(file.substr(12, 2), "\x21\x7B");                          // 8571
    EXPECT_EQ(file.substr(22), Bytes("\0\xFF\x51\x03\x82\xCA\x25"sv));  // 8571429
}

TEST(SMFWriter, DivisionsOfTheSlowestAndTheFastestTempo) {
    EXPECT_EQ(Stream({}, 1).substr(12, 2), "\xEA\x60");    // 60000
    EXPECT_EQ(Stream({}, 220).substr(12, 2), "\x01\x10");  // 272.7 -> 272
}

TEST(SMFWriter, ATempoBelowZeroFailsInTheTempoEvent) {
    CMemoryFile file;
    try {
        WriteMIDIStream(file, nullptr, 0, -1);
        FAIL();
    } catch (const CInvalidParameterException& e) {
        EXPECT_STREQ(e.GetMessage(), L"Cannot set zero tempo.");
    }
    EXPECT_EQ(file.GetContent(), "MThd\0\0\0\x06\0\0\0\x01\x01\xF4MTrk\0\0\0\0"sv);
}

TEST(SMFWriter, AnUnknownKindThrows) {
    CMIDIMessageX unknown;
    unknown.kind = 7;
    CMemoryFile file;
    try {
        WriteMIDITrack(file, &unknown, 1, 120);
        FAIL();
    } catch (const CCoderException& e) {
        EXPECT_STREQ(e.GetMessage(), L"Unknown MIDI message type.");
    }
}

TEST(SMFWriter, TheRunningTimeStartsAtTheFirstEntryAndNeverGoesBack) {
    const TMIDIMessage a{0xC0, 1, 1, 0};
    EXPECT_EQ(Track({{a, 100}, {a, 50}, {a, 150}}), Bytes("\0\xC0\x01\0\xC0\x01\x32\xC0\x01"sv));
}

TEST(SMFWriter, AFirstEntryAtZeroKeepsTheSilence) {
    const TMIDIMessage a{0xC0, 1, 1, 0};
    EXPECT_EQ(Track({{a, 0}, {a, 200}}), Bytes("\0\xC0\x01\x81\x48\xC0\x01"sv));
}

TEST(SMFWriter, ANegativeFirstTimeStartsAtZero) {
    const TMIDIMessage a{0xC0, 1, 1, 0};
    EXPECT_EQ(Track({{a, -1}, {a, 5}}), Bytes("\0\xC0\x01\x05\xC0\x01"sv));
}

TEST(SMFWriter, TheLargestDeltaTakesFiveBytes) {
    const TMIDIMessage a{0xC0, 1, 1, 0};
    EXPECT_EQ(Track({{a, 0}, {a, 0x7FFFFFFF}}), Bytes("\0\xC0\x01\x87\xFF\xFF\xFF\x7F\xC0\x01"sv));
}

TEST(SMFWriter, EveryShortMessageCarriesItsStatus) {
    EXPECT_EQ(Track({{kNote, 0}, {kNote, 0}}), Bytes("\0\x90\x3C\x64\0\x90\x3C\x64"sv));
}

TEST(SMFWriter, ShortMessagesTakeOneToThreeBytes) {
    EXPECT_EQ(Track({{{0xF8, 0, 1, 2}, 0}, {{0xD0, 16, 3, 4}, 0}, {{0xE0, 2, 5, 6}, 0}}),
              Bytes("\0\xF8\0\xDF\x03\0\xE1\x05\x06"sv));
}

TEST(SMFWriter, SlotsMarkedEmptyAreSkippedAndMoveNoTime) {
    const CMIDIMessageX skipped({0xFF, 0, 0, 0}, 70);
    EXPECT_EQ(Track({{kNote, 0}, skipped, {kNote, 100}}), Bytes("\0\x90\x3C\x64\x64\x90\x3C\x64"sv));
    // Its time is where the running time starts all the same.
    EXPECT_EQ(Track({skipped, {kNote, 100}}), Bytes("\x1E\x90\x3C\x64"sv));
}

TEST(SMFWriter, MetaSysExAndEmptyEntries) {
    EXPECT_EQ(Track(MixedEvents()), Bytes("\0\x90\x3C\x64"
                                          "\x14\xFF\x01\x04take"
                                          "\x0A\xF0\x7E\x7F\x09\x01\xF7"
                                          "\0"
                                          "\x82\x72\x80\x3C\0"sv));
}

TEST(SMFWriter, ATrackGoesWhereTheFileStands) {
    CMemoryFile file;
    ASSERT_EQ(file.Write("head", 1, 4), 4U);
    ASSERT_TRUE(WriteMIDITrack(file, nullptr, 0, 0));
    ASSERT_TRUE(WriteMIDITrack(file, nullptr, 0, 0));
    EXPECT_EQ(file.GetContent(), "headMTrk\0\0\0\x04\0\xFF\x2F\0MTrk\0\0\0\x04\0\xFF\x2F\0"sv);
}

TEST(SMFWriter, AnArrayWritesAsItsPointerAndCount) {
    const std::vector<CMIDIMessageX> events = MixedEvents();
    CArray<CMIDIMessageX> array;
    for (const CMIDIMessageX& event : events) {
        array.Push(event);
    }
    CMemoryFile stream;
    ASSERT_TRUE(WriteMIDIStream(stream, array, 120));
    EXPECT_EQ(stream.GetContent(), Stream(events, 120));
    CMemoryFile track;
    ASSERT_TRUE(WriteMIDITrack(track, array, 120));
    EXPECT_EQ(track.GetContent(), stream.GetContent().substr(14));
}

TEST(SMFWriter, AFailureAtAnyWriteIsReportedAndLeavesWhatWasWritten) {
    const std::vector<CMIDIMessageX> events = MixedEvents();
    const auto count = static_cast<std::uint32_t>(events.size());
    CFaultyFile whole;
    ASSERT_TRUE(WriteMIDIStream(whole, events.data(), count, 120));
    ASSERT_GT(whole.GetWriteCount(), 10);
    std::string complete(whole.GetContent());
    complete.replace(18, 4, 4, '\0');  // the length is written last
    for (int n = 1; n <= whole.GetWriteCount(); ++n) {
        CFaultyFile file;
        file.failingWrite = n;
        EXPECT_FALSE(WriteMIDIStream(file, events.data(), count, 120)) << n;
        const std::string_view written = file.GetContent();
        EXPECT_EQ(written, complete.substr(0, written.size())) << n;
    }
}

TEST(SMFWriter, AFailureAtAnySeekIsReported) {
    const std::vector<CMIDIMessageX> events = MixedEvents();
    const auto count = static_cast<std::uint32_t>(events.size());
    CFaultyFile whole;
    ASSERT_TRUE(WriteMIDIStream(whole, events.data(), count, 120));
    ASSERT_EQ(whole.GetSeekCount(), 2);
    for (int n = 1; n <= whole.GetSeekCount(); ++n) {
        CFaultyFile file;
        file.failingSeek = n;
        EXPECT_FALSE(WriteMIDIStream(file, events.data(), count, 120)) << n;
    }
}

TEST(SMFWriter, TheHeaderIsOneWriteOfTwelveBytes) {
    CFaultyFile file;
    file.failingWrite = 2;
    EXPECT_FALSE(WriteMIDIStream(file, nullptr, 0, 120));
    EXPECT_EQ(file.GetContent().size(), 12U);
}

TEST(SMFWriter, AFileThatDoesNotKnowItsPositionFails) {
    struct CUnseekable : CMemoryFile {
        std::int64_t GetPosition() override { return -1; }
    } file;
    EXPECT_FALSE(WriteMIDITrack(file, nullptr, 0, 0));
}

TEST(SMFWriter, WritesAFileOnDisk) {
    const std::filesystem::path path = std::filesystem::path(testing::TempDir()) / "kivora_smf_writer.mid";
    CArray<CMIDIMessageX> array;
    array.Push({kNote, 0});
    ASSERT_TRUE(WriteMIDIFile(CString::FromUtf8(path.string()), array, 120));
    std::ifstream stream(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(content, Stream({{kNote, 0}}, 120));
    std::filesystem::remove(path);
}

TEST(SMFWriter, AFileThatCannotBeOpenedIsFalse) {
    EXPECT_FALSE(WriteMIDIFile(L"/nonexistent folder/take.mid", nullptr, 0, 120));
}

TEST(SMFWriter, AFullDiskIsReported) {
    ASSERT_TRUE(std::filesystem::exists("/dev/full"));
    EXPECT_FALSE(WriteMIDIFile(L"/dev/full", nullptr, 0, 120));
}
