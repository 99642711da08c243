#include "libmidi/CaptureFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "nk/nk_memory_file.h"

namespace {

using namespace LibMidi;
using std::string_view_literals::operator""sv;

constexpr std::string_view kHeader = "KivTake2\0\0\0\0\x65\x53\xF1\0\xEF\x62\x30\xD5"sv;  // 1700000000
constexpr std::string_view kFirstHeader = "KivTake1\0\0\0\0\x65\x53\xF1\0"sv;

/// A file of which the system refuses to read some bytes.
class CUnreadableFile : public NK::CMemoryFile {
public:
    using CMemoryFile::CMemoryFile;
    std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) override {
        const std::int64_t from = GetPosition();
        const auto to = from + static_cast<std::int64_t>(elementSize * count);
        return from < badTo && to > badFrom ? 0 : CMemoryFile::Read(buffer, elementSize, count);
    }
    std::int64_t badFrom = 0;
    std::int64_t badTo = 0;
};

std::string ToText(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

std::string Mark(std::uint32_t timeMs, std::uint32_t number) {
    std::uint8_t record[kCaptureRecordSize];
    EncodeCaptureMark(timeMs, number, record);
    return ToText(record, sizeof(record));
}

std::string Encode(const std::vector<CapturedEvent>& events) {
    std::string bytes(kHeader);
    for (std::uint32_t i = 0; i < events.size(); ++i) {
        std::uint8_t record[kCaptureRecordSize];
        EncodeCapturedEvent(events[i], i, record);
        bytes += ToText(record, sizeof(record));
    }
    return bytes;
}

struct Decoded {
    CaptureFileContent content;
    std::vector<CapturedEvent> events;
};

Decoded Decode(NK::CFile& file) {
    Decoded decoded;
    decoded.content =
        ReadCaptureFile(file, [&decoded](const CapturedEvent& event) { decoded.events.push_back(event); });
    return decoded;
}

Decoded Decode(std::string_view bytes) {
    NK::CMemoryFile file(bytes);
    return Decode(file);
}

void ExpectEqual(const std::vector<CapturedEvent>& a, const std::vector<CapturedEvent>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].time, b[i].time) << i;
        EXPECT_EQ(a[i].message, b[i].message) << i;
    }
}

/// That the file gives these events, and nothing is wrong with it.
void ExpectWhole(std::string_view bytes, const std::vector<CapturedEvent>& events) {
    const Decoded decoded = Decode(bytes);
    EXPECT_EQ(decoded.content.kind, CaptureFileKind::kCapture);
    EXPECT_EQ(decoded.content.startedAt, 1700000000);
    EXPECT_EQ(decoded.content.missing, 0U);
    EXPECT_FALSE(decoded.content.isDamaged);
    EXPECT_TRUE(decoded.content.isReadable);
    ExpectEqual(decoded.events, events);
}

std::vector<CapturedEvent> FewEvents() {
    return {{0, {0xC0, 1, 5, 0}}, {0x01020304, {0x90, 16, 60, 100}}, {0x01020304, {0xF8, 0, 0, 0}}};
}

std::vector<CapturedEvent> ManyEvents(std::uint32_t count) {
    std::vector<CapturedEvent> many;
    for (std::uint32_t i = 0; i < count; ++i) {
        many.push_back({i / 3,
                        {static_cast<std::uint8_t>(0x80 + i % 7 * 0x10), static_cast<std::uint8_t>(1 + i % 16),
                         static_cast<std::uint8_t>(i % 128), static_cast<std::uint8_t>(i % 5)}});
    }
    return many;
}

std::vector<CapturedEvent> Without(std::vector<CapturedEvent> events, std::size_t place) {
    events.erase(events.begin() + static_cast<std::ptrdiff_t>(place));
    return events;
}

TEST(CaptureFile, TheHeaderIsTwentyBytes) {
    std::uint8_t header[kCaptureHeaderSize];
    EncodeCaptureHeader(1700000000, header);
    EXPECT_EQ(ToText(header, sizeof(header)), kHeader);
}

TEST(CaptureFile, ARecordIsTwelveBytes) {
    EXPECT_EQ(Encode({{0x01020304, {0x90, 16, 60, 100}}}).substr(kHeader.size()),
              "\x01\x02\x03\x04"
              "E\x9F\x3C\x64\x30\x5D\x88\xCA"sv);
    EXPECT_EQ(Mark(0x01020304, 7), "\x01\x02\x03\x04T\0\0\0\x73\xFA\xF6\x8A"sv);
}

TEST(CaptureFile, WhatWasWrittenIsReadAgain) {
    ExpectWhole(Encode(FewEvents()), FewEvents());
    for (const std::uint32_t count : {0U, 4095U, 4096U, 4097U, 8192U, 10000U}) {
        ExpectWhole(Encode(ManyEvents(count)), ManyEvents(count));
    }
}

TEST(CaptureFile, CutOffAnywhereItGivesTheWholeRecordsBeforeAndNothingIsMissing) {
    const std::string whole = Encode(FewEvents());
    for (std::size_t size = kHeader.size(); size <= whole.size(); ++size) {
        std::vector<CapturedEvent> expected = FewEvents();
        expected.resize((size - kHeader.size()) / kCaptureRecordSize);
        ExpectWhole(whole.substr(0, size), expected);
    }
}

TEST(CaptureFile, CutOffInTheHeaderItIsCutShort) {
    for (std::size_t size = 0; size < kHeader.size(); ++size) {
        EXPECT_EQ(Decode(kHeader.substr(0, size)).content.kind, CaptureFileKind::kCutShort) << size;
    }
    for (std::size_t size = 0; size < kFirstHeader.size(); ++size) {
        EXPECT_EQ(Decode(kFirstHeader.substr(0, size)).content.kind, CaptureFileKind::kCutShort) << size;
    }
}

TEST(CaptureFile, AnotherTagIsForeign) {
    for (const std::string_view text : {"X"sv, "KivTakeX\0\0\0\0\0\0\0\0"sv, "some text that is long enough"sv}) {
        EXPECT_EQ(Decode(text).content.kind, CaptureFileKind::kForeign) << text;
    }
    EXPECT_EQ(Decode("KivTake3 and what a later version has to say").content.kind, CaptureFileKind::kLater);
}

TEST(CaptureFile, AWrongByteInTheHeaderCostsNoEvent) {
    for (std::size_t place = 0; place < kHeader.size(); ++place) {
        std::string damaged = Encode(FewEvents());
        damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
        const Decoded decoded = Decode(damaged);
        EXPECT_EQ(decoded.content.kind, CaptureFileKind::kCapture) << place;
        EXPECT_TRUE(decoded.content.isDamaged) << place;
        EXPECT_EQ(decoded.content.startedAt.has_value(), place < 8) << place;
        ExpectEqual(decoded.events, FewEvents());
    }
}

TEST(CaptureFile, ARecordWithAnyBitWrongIsMissingAndTheOthersStay) {
    const std::string whole = Encode(FewEvents());
    for (std::size_t bit = 0; bit < 8 * kCaptureRecordSize; ++bit) {
        std::string damaged = whole;
        char& byte = damaged[kHeader.size() + kCaptureRecordSize + bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        const Decoded decoded = Decode(damaged);
        EXPECT_EQ(decoded.content.missing, 1U) << bit;
        EXPECT_TRUE(decoded.content.isDamaged);
        ExpectEqual(decoded.events, Without(FewEvents(), 1));
    }
}

TEST(CaptureFile, ARecordAtAnotherPlaceThanItsOwnIsMissing) {
    const std::string whole = Encode(FewEvents());
    const std::string moved = whole.substr(0, kHeader.size()) + whole.substr(kHeader.size() + kCaptureRecordSize);
    const Decoded decoded = Decode(moved);
    EXPECT_TRUE(decoded.events.empty());
    EXPECT_EQ(decoded.content.missing, 2U);
}

TEST(CaptureFile, DamageNearTheStartCostsOnlyWhatItHit) {
    std::string damaged = Encode(ManyEvents(2002));
    for (std::size_t i = 0; i < 4; ++i) {
        damaged[kHeader.size() + 2 * kCaptureRecordSize + i] = 'x';
    }
    const Decoded decoded = Decode(damaged);
    EXPECT_EQ(decoded.content.missing, 1U);
    ExpectEqual(decoded.events, Without(ManyEvents(2002), 2));
}

TEST(CaptureFile, ZerosAtTheEndAreNoEventsAndInTheMiddleTheyAreMissing) {
    ExpectWhole(Encode(FewEvents()) + std::string(4096, '\0'), FewEvents());
    ExpectWhole(std::string(kHeader) + std::string(4096, '\0'), {});
    std::string damaged = Encode(FewEvents());
    std::fill_n(damaged.begin() + kHeader.size(), 2 * kCaptureRecordSize, '\0');
    const Decoded decoded = Decode(damaged);
    EXPECT_EQ(decoded.content.missing, 2U);
    EXPECT_EQ(decoded.events.size(), 1U);
}

TEST(CaptureFile, AMarkBehindTheEventsTellsHowLongTheCaptureWentOn) {
    const std::vector<CapturedEvent> event{{1000, {0x90, 1, 60, 100}}};
    EXPECT_EQ(Decode(Encode(event)).content.endMs, 1000U);
    ExpectWhole(Encode(event) + Mark(1800, 1), event);
    EXPECT_EQ(Decode(Encode(event) + Mark(1800, 1)).content.endMs, 1800U);
    EXPECT_EQ(Decode(Encode(event) + Mark(1800, 1) + std::string(5, 'x')).content.endMs, 1800U);
}

TEST(CaptureFile, AMarkBeforeAnEventStandsWhereOneIsMissing) {
    std::string damaged = Encode(FewEvents());
    damaged.replace(kHeader.size() + kCaptureRecordSize, kCaptureRecordSize, Mark(500, 1));
    const Decoded decoded = Decode(damaged);
    EXPECT_EQ(decoded.content.missing, 1U);
    ExpectEqual(decoded.events, Without(FewEvents(), 1));
}

TEST(CaptureFile, AnEventWhoseTimeGoesBackIsMissing) {
    const Decoded decoded = Decode(Encode({{5, {0x90, 1, 60, 1}}, {4, {0x80, 1, 60, 0}}, {6, {0x80, 1, 60, 0}}}));
    EXPECT_EQ(decoded.content.missing, 1U);
    ExpectEqual(decoded.events, {{5, {0x90, 1, 60, 1}}, {6, {0x80, 1, 60, 0}}});
}

TEST(CaptureFile, WhatTheSystemRefusesToReadIsMissingAndTheRestStays) {
    CUnreadableFile file{std::string_view(Encode(ManyEvents(5000)))};
    file.badFrom = static_cast<std::int64_t>(kHeader.size() + 100 * kCaptureRecordSize);
    file.badTo = file.badFrom + 1;
    const Decoded decoded = Decode(file);
    EXPECT_FALSE(decoded.content.isReadable);
    EXPECT_EQ(decoded.content.missing, 1U);
    ExpectEqual(decoded.events, Without(ManyEvents(5000), 100));
    file.badFrom = 0;
    EXPECT_FALSE(Decode(file).content.isReadable);
    EXPECT_TRUE(Decode(file).events.empty());
}

TEST(CaptureFile, TheFirstVersionIsRead) {
    const std::string first = std::string(kFirstHeader) + std::string("\0\0\0\0\xC0\5\0\x60", 8) +
                              "\x01\x02\x03\x04\x9F\x3C\x64\x66" + "\x01\x02\x03\x05\x8F\x3C\x01\x12";
    const std::vector<CapturedEvent> events{
        {0, {0xC0, 1, 5, 0}}, {0x01020304, {0x90, 16, 60, 100}}, {0x01020305, {0x80, 16, 60, 1}}};
    ExpectWhole(first, events);
    ExpectWhole(first + std::string(800, '\0'), events);
    ExpectWhole(first + "\x01", events);
    for (std::size_t bit = 0; bit < 64; ++bit) {
        std::string damaged = first;
        char& byte = damaged[kFirstHeader.size() + 8 + bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        const Decoded decoded = Decode(damaged);
        EXPECT_EQ(decoded.content.missing, 1U) << bit;
        ExpectEqual(decoded.events, Without(events, 1));
    }
}

}  // namespace
