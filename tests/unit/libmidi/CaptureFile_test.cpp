#include "libmidi/CaptureFile.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "nk/nk_memory_file.h"

namespace {

using namespace LibMidi;
using std::string_view_literals::operator""sv;

constexpr std::string_view kHeader = "KivTake1\0\0\0\0\x65\x53\xF1\0"sv;  // 1700000000

std::string Encode(const std::vector<CapturedEvent>& events) {
    std::string bytes(kHeader);
    for (const CapturedEvent& event : events) {
        std::uint8_t record[kCaptureRecordSize];
        EncodeCapturedEvent(event, record);
        bytes.append(reinterpret_cast<const char*>(record), sizeof(record));
    }
    return bytes;
}

std::vector<CapturedEvent> Decode(std::string_view bytes) {
    NK::CMemoryFile file(bytes);
    std::int64_t startedAt = 0;
    EXPECT_EQ(ReadCaptureHeader(file, startedAt), CaptureFileKind::kCapture);
    EXPECT_EQ(startedAt, 1700000000);
    std::vector<CapturedEvent> events;
    ReadCapturedEvents(file, [&events](const CapturedEvent& event) { events.push_back(event); });
    return events;
}

void ExpectEqual(const std::vector<CapturedEvent>& a, const std::vector<CapturedEvent>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].time, b[i].time) << i;
        EXPECT_EQ(a[i].message, b[i].message) << i;
    }
}

std::vector<CapturedEvent> FewEvents() {
    return {{0, {0xC0, 1, 5, 0}}, {0x01020304, {0x90, 16, 60, 100}}, {0x01020304, {0xF8, 0, 0, 0}}};
}

TEST(CaptureFile, TheHeaderIsSixteenBytes) {
    std::uint8_t header[kCaptureHeaderSize];
    EncodeCaptureHeader(1700000000, header);
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(header), sizeof(header)), kHeader);
}

TEST(CaptureFile, ARecordIsEightBytes) {
    // 01 ^ 02 ^ 03 ^ 04 ^ 9F ^ 3C ^ 64 ^ A5 = 66
    EXPECT_EQ(Encode({{0x01020304, {0x90, 16, 60, 100}}}).substr(kHeader.size()), "\x01\x02\x03\x04\x9F\x3C\x64\x66");
}

TEST(CaptureFile, WhatWasWrittenIsReadAgain) {
    ExpectEqual(Decode(Encode(FewEvents())), FewEvents());
    std::vector<CapturedEvent> many;
    for (std::uint32_t i = 0; i < 10000; ++i) {
        many.push_back({i / 3,
                        {static_cast<std::uint8_t>(0x80 + i % 7 * 0x10), static_cast<std::uint8_t>(1 + i % 16),
                         static_cast<std::uint8_t>(i % 128), static_cast<std::uint8_t>(i % 5)}});
    }
    for (const std::size_t count : {0U, 4095U, 4096U, 4097U, 8192U, 10000U}) {
        const std::vector<CapturedEvent> some(many.begin(), many.begin() + static_cast<std::ptrdiff_t>(count));
        ExpectEqual(Decode(Encode(some)), some);
    }
}

TEST(CaptureFile, CutOffAnywhereItGivesTheWholeRecordsBefore) {
    const std::string whole = Encode(FewEvents());
    for (std::size_t size = kHeader.size(); size <= whole.size(); ++size) {
        std::vector<CapturedEvent> expected = FewEvents();
        expected.resize((size - kHeader.size()) / kCaptureRecordSize);
        ExpectEqual(Decode(whole.substr(0, size)), expected);
    }
}

TEST(CaptureFile, CutOffInTheHeaderItIsCutShort) {
    for (std::size_t size = 0; size < kHeader.size(); ++size) {
        NK::CMemoryFile file(kHeader.substr(0, size));
        std::int64_t startedAt = -5;
        EXPECT_EQ(ReadCaptureHeader(file, startedAt), CaptureFileKind::kCutShort) << size;
        EXPECT_EQ(startedAt, -5);
    }
}

TEST(CaptureFile, AnotherTagIsForeign) {
    for (const std::string_view text : {"X"sv, "KivTake2\0\0\0\0\0\0\0\0"sv, "some text that is long enough"sv}) {
        NK::CMemoryFile file(text);
        std::int64_t startedAt = 0;
        EXPECT_EQ(ReadCaptureHeader(file, startedAt), CaptureFileKind::kForeign) << text;
    }
}

TEST(CaptureFile, ARecordWithAnyBitWrongEndsTheEvents) {
    const std::string whole = Encode(FewEvents());
    for (std::size_t bit = 0; bit < 8 * kCaptureRecordSize; ++bit) {
        std::string damaged = whole;
        char& byte = damaged[kHeader.size() + kCaptureRecordSize + bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        EXPECT_EQ(Decode(damaged).size(), 1U) << bit;
    }
}

TEST(CaptureFile, ZerosWhereTheDiskWroteNothingEndTheEvents) {
    ExpectEqual(Decode(Encode(FewEvents()) + std::string(4096, '\0')), FewEvents());
    EXPECT_TRUE(Decode(std::string(kHeader) + std::string(4096, '\0')).empty());
}

TEST(CaptureFile, ATimeThatGoesBackEndsTheEvents) {
    EXPECT_EQ(Decode(Encode({{5, {0x90, 1, 60, 1}}, {4, {0x80, 1, 60, 0}}, {6, {0x80, 1, 60, 0}}})).size(), 1U);
}

}  // namespace
