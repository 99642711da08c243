#include "midi/CMIDIMessageX.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "nk/nk_memory_file.h"

using namespace NK;
using namespace NK::MIDI;
using std::string_view_literals::operator""sv;

namespace {

std::string Data(const CMIDIMessageX& event) {
    return {event.data.begin(), event.data.end()};
}

std::string Written(const CMIDIMessageX& event) {
    CMemoryFile file;
    EXPECT_TRUE(event.Write(file));
    return std::string(file.GetContent());
}

void ExpectMeta(const CMIDIMessageX& event, int type, std::string_view data, std::int32_t time) {
    EXPECT_EQ(event.kind, CMIDIMessageX::kMeta);
    EXPECT_EQ(event.metaType, type);
    EXPECT_EQ(Data(event), data);
    EXPECT_EQ(event.time, time);
}

template <class Exception, class Action>
void ExpectThrow(const wchar_t* text, Action action) {
    try {
        action();
        FAIL() << "nothing thrown";
    } catch (const Exception& e) {
        EXPECT_STREQ(e.GetMessage(), text);
    }
}

CMIDIMessageX Meta(std::uint8_t type, int b0, int b1 = -1) {
    CMIDIMessageX event;
    event.SetMeta(type, 5, b0, b1);
    return event;
}

CMIDIMessageX SysEx(std::string_view bytes) {
    CMIDIMessageX event;
    event.SetSysEx(reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()), 5);
    return event;
}

}  // namespace

TEST(CMIDIMessageX, DefaultIsEmpty) {
    const CMIDIMessageX event;
    EXPECT_EQ(event.kind, 3U);
    EXPECT_EQ(event.message, TMIDIMessage());
    EXPECT_TRUE(event.data.IsEmpty());
    EXPECT_EQ(event.metaType, 0);
    EXPECT_EQ(event.time, -1);
}

TEST(CMIDIMessageX, FromAMessageAndATime) {
    const CMIDIMessageX event({0x90, 1, 60, 100}, 42);
    EXPECT_EQ(event.kind, 0U);
    EXPECT_EQ(event.message, (TMIDIMessage{0x90, 1, 60, 100}));
    EXPECT_TRUE(event.data.IsEmpty());
    EXPECT_EQ(event.metaType, 0);
    EXPECT_EQ(event.time, 42);
}

TEST(CMIDIMessageX, ACopyHoldsBytesOfItsOwn) {
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kMarker, "abc", 9);
    const CMIDIMessageX copy = event;
    event.data[0] = 'x';
    ExpectMeta(copy, 6, "abc", 9);
}

TEST(CMIDIMessageX, SetShortClearsTheData) {
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kText, "abc", 9);
    event.SetShort({0xC0, 2, 3, 0}, 11);
    EXPECT_EQ(event.kind, CMIDIMessageX::kShort);
    EXPECT_EQ(event.message, (TMIDIMessage{0xC0, 2, 3, 0}));
    EXPECT_TRUE(event.data.IsEmpty());
    EXPECT_EQ(event.time, 11);
}

TEST(MetaBuilders, EachSetsItsTypeDataAndTime) {
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kLyric, "old data", 0);
    event.SetSequenceNumber(0x1234, 1);
    ExpectMeta(event, 0x00, "\x12\x34", 1);
    event.SetChannelPrefix(9, 2);
    ExpectMeta(event, 0x20, "\x09", 2);
    event.SetPort(3, 3);
    ExpectMeta(event, 0x21, "\x03", 3);
    event.SetEndOfTrack(4);
    ExpectMeta(event, 0x2F, "", 4);
    event.SetTempo(0x123456, 5);
    ExpectMeta(event, 0x51, "\x12\x34\x56", 5);
    event.SetSMPTEOffset(1, 2, 3, 4, 5, 6);
    ExpectMeta(event, 0x54, "\x01\x02\x03\x04\x05", 6);
    event.SetTimeSignature(6, 3, 24, 8, 7);
    ExpectMeta(event, 0x58, "\x06\x03\x18\x08", 7);
    event.SetKeySignature(-3, 1, 8);
    ExpectMeta(event, 0x59, "\xFD\x01", 8);
    const std::uint8_t bytes[] = {0x7D, 0, 0xFF};
    event.SetSequencerSpecific(3, bytes, 9);
    ExpectMeta(event, 0x7F, "\x7D\0\xFF"sv, 9);
    event.SetSequencerSpecific(0, nullptr, 10);
    ExpectMeta(event, 0x7F, "", 10);
}

TEST(MetaBuilders, TextsOfTheSevenTypes) {
    for (std::uint8_t type = 1; type <= 7; ++type) {
        CMIDIMessageX event;
        event.SetText(type, "Kivora", 20);
        ExpectMeta(event, type, "Kivora", 20);
    }
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kText, "", 20);
    ExpectMeta(event, 1, "", 20);
    event.SetText(CMIDIMessageX::kText, nullptr, 20);
    ExpectMeta(event, 1, "", 20);
}

TEST(MetaBuilders, ATextOf127BytesIsAcceptedAndOneOf128Refused) {
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kText, std::string(127, 'x').c_str(), 3);
    ExpectMeta(event, 1, std::string(127, 'x'), 3);
    EXPECT_THROW(event.SetText(CMIDIMessageX::kText, std::string(128, 'y').c_str(), 4), CInvalidParameterException);
    ExpectMeta(event, 1, std::string(127, 'x'), 3);
}

TEST(MetaBuilders, ATextTypeOutsideOneToSevenIsRefused) {
    CMIDIMessageX event;
    EXPECT_THROW(event.SetText(0, "x", 0), CInvalidParameterException);
    EXPECT_THROW(event.SetText(8, "x", 0), CInvalidParameterException);
    EXPECT_EQ(event.kind, CMIDIMessageX::kEmpty);
}

TEST(MetaBuilders, SequencerSpecificDataOf128BytesIsRefused) {
    const std::uint8_t bytes[128] = {};
    CMIDIMessageX event;
    event.SetSequencerSpecific(127, bytes, 3);
    EXPECT_EQ(event.data.GetSize(), 127U);
    ExpectThrow<CInvalidParameterException>(L"Sequencer-specific meta MIDI message data size exceeds the limit.",
                                            [&] { event.SetSequencerSpecific(128, bytes, 3); });
    EXPECT_EQ(event.data.GetSize(), 127U);
}

TEST(MetaBuilders, TempoInBeatsIsRoundedAndHasNoTime) {
    CMIDIMessageX event;
    event.SetTempoBPM(120, 77);
    ExpectMeta(event, 0x51, "\x07\xA1\x20", -1);
    event.SetTempoBPM(7, 77);  // 8571428.57 -> 8571429
    ExpectMeta(event, 0x51, "\x82\xCA\x25"sv, -1);
    event.SetTempoBPM(1e300, 77);
    ExpectMeta(event, 0x51, "\0\0\0"sv, -1);
}

TEST(MetaBuilders, ATempoThatThreeBytesCannotHoldIsTheSlowestThatTheyCan) {
    CMIDIMessageX event;
    event.SetTempoBPM(3, 0);  // 20000000
    ExpectMeta(event, 0x51, "\xFF\xFF\xFF", -1);
    event.SetTempo(0x1000000, 4);
    ExpectMeta(event, 0x51, "\xFF\xFF\xFF", 4);
}

TEST(MetaBuilders, ATempoOfZeroOrBelowThrowsButNotANaN) {
    CMIDIMessageX event;
    for (const double tempo : {0.0, -0.0, -1.0, -std::numeric_limits<double>::infinity()}) {
        ExpectThrow<CInvalidParameterException>(L"Cannot set zero tempo.", [&] { event.SetTempoBPM(tempo, 0); });
    }
    EXPECT_EQ(event.kind, CMIDIMessageX::kEmpty);
    event.SetTempoBPM(std::numeric_limits<double>::quiet_NaN(), 0);
    EXPECT_EQ(event.kind, CMIDIMessageX::kMeta);
    EXPECT_EQ(event.data.GetSize(), 3U);
}

TEST(MetaBuilders, GenericStopsAtTheFirstNegativeValue) {
    CMIDIMessageX event;
    event.SetMeta(0x60, 4);
    ExpectMeta(event, 0x60, "", 4);
    event.SetMeta(0x60, 4, 1, -1, 3);
    ExpectMeta(event, 0x60, "\x01", 4);
    event.SetMeta(0x60, 4, 1, 2, 3, 4, 255);
    ExpectMeta(event, 0x60, "\x01\x02\x03\x04\xFF", 4);
}

TEST(SysExBuilder, HoldsAllBytes) {
    const CMIDIMessageX event = SysEx("\xF0\x7E\x7F\x09\x01\xF7");
    EXPECT_EQ(event.kind, CMIDIMessageX::kSysEx);
    EXPECT_EQ(Data(event), "\xF0\x7E\x7F\x09\x01\xF7");
    EXPECT_EQ(event.time, 5);
    EXPECT_EQ(Data(SysEx("\xF6\x01")), "\xF6\x01");
}

TEST(SysExBuilder, RefusesOtherCodesAndShortMessages) {
    for (const std::string_view bytes : {"\xF7\x01"sv, "\xEF\x01"sv, "\0\x01"sv, "\x90"sv}) {
        ExpectThrow<CInvalidParameterException>(L"SysEx message code must be in the range of [0xF0..0xF6].",
                                                [&] { SysEx(bytes); });
    }
    for (const std::string_view bytes : {"\xF0"sv, ""sv}) {
        ExpectThrow<CInvalidParameterException>(L"SysEx message is too short.", [&] { SysEx(bytes); });
    }
}

TEST(GetText, IsTheDataUpToAZeroAsLatin1) {
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kText, "caf\xE9", 0);
    EXPECT_EQ(event.GetText(), L"caf\u00E9");
    event.SetMeta(CMIDIMessageX::kText, 0, 'a', 'b', 0, 'c');
    EXPECT_EQ(event.GetText(), L"ab");
    event.SetMeta(CMIDIMessageX::kText, 0);
    EXPECT_EQ(event.GetText(), L"");
}

TEST(GetText, IsEmptyForOtherKinds) {
    EXPECT_EQ(SysEx("\xF0\x41").GetText(), L"");
    EXPECT_EQ(CMIDIMessageX().GetText(), L"");
}

TEST(Equals, ByKindAndContent) {
    const CMIDIMessageX note({0x90, 1, 60, 100}, 5);
    EXPECT_TRUE(note.Equals(CMIDIMessageX({0x90, 1, 60, 100}, 5), true));
    EXPECT_FALSE(note.Equals(CMIDIMessageX({0x90, 1, 60, 101}, 5), true));
    EXPECT_TRUE(Meta(1, 2).Equals(Meta(1, 2), true));
    EXPECT_FALSE(Meta(1, 2).Equals(Meta(2, 2), true));
    EXPECT_FALSE(Meta(1, 2).Equals(Meta(1, 3), true));
    EXPECT_FALSE(Meta(1, 2).Equals(Meta(1, 2, 3), true));
    EXPECT_TRUE(SysEx("\xF0\x01").Equals(SysEx("\xF0\x01"), true));
    EXPECT_FALSE(SysEx("\xF0\x01").Equals(SysEx("\xF0\x02"), true));
    EXPECT_FALSE(SysEx("\xF0\x01").Equals(Meta(1, 2), false));
    EXPECT_FALSE(note.Equals(CMIDIMessageX(), false));
}

TEST(Equals, ComparesTimesOnlyWhenAsked) {
    const CMIDIMessageX note({0x90, 1, 60, 100}, 5);
    const CMIDIMessageX later({0x90, 1, 60, 100}, 6);
    EXPECT_TRUE(note.Equals(later, false));
    EXPECT_FALSE(note.Equals(later, true));
}

TEST(Equals, ThrowsForAnyOtherKind) {
    const CMIDIMessageX empty;
    ExpectThrow<CCoderException>(L"Unknown MIDI message type code.",
                                 [&] { static_cast<void>(empty.Equals(empty, false)); });
    CMIDIMessageX unknown;
    unknown.kind = 4;
    ExpectThrow<CCoderException>(L"Unknown MIDI message type code.",
                                 [&] { static_cast<void>(unknown.Equals(unknown, true)); });
}

TEST(EventWrite, EveryKind) {
    EXPECT_EQ(Written(CMIDIMessageX({0x90, 10, 60, 100}, 5)), "\x99\x3C\x64");
    EXPECT_EQ(Written(Meta(0x20, 9)), "\xFF\x20\x01\x09");
    EXPECT_EQ(Written(Meta(0x2F, -1)), "\xFF\x2F\0"sv);
    EXPECT_EQ(Written(SysEx("\xF0\x43\xF7")), "\xF0\x43\xF7");
    EXPECT_EQ(Written(CMIDIMessageX()), "");
}

TEST(EventWrite, ThrowsForAnUnknownKind) {
    CMIDIMessageX unknown;
    unknown.kind = 4;
    CMemoryFile file;
    ExpectThrow<CCoderException>(L"Unknown MIDI message type.", [&] { unknown.Write(file); });
}

TEST(EventRead, WhatWasWrittenReadsBackAndTheTimeStays) {
    for (const CMIDIMessageX& event :
         {CMIDIMessageX({0x90, 10, 60, 100}, 5), CMIDIMessageX({0xF8, 0, 0, 0}, 5), CMIDIMessageX({0xC0, 16, 3, 0}, 5),
          Meta(0x58, 4, 2), Meta(0x2F, -1), SysEx("\xF0\x43\x10\xF7")}) {
        CMemoryFile file(Written(event) + "rest");
        CMIDIMessageX read({0xB0, 1, 2, 3}, 5);
        ASSERT_TRUE(read.Read(file));
        EXPECT_TRUE(read.Equals(event, true));
        EXPECT_EQ(file.GetPosition(), file.GetLength() - 4);
    }
}

TEST(EventRead, SysExRunsFromAnyOfItsCodesToTheEndMark) {
    for (int code = 0xF0; code <= 0xF7; ++code) {
        const std::string bytes = static_cast<char>(code) + std::string("\x01\x02\xF7", 3);
        CMemoryFile file(bytes + "\x05");
        CMIDIMessageX read;
        ASSERT_TRUE(read.Read(file));
        EXPECT_EQ(read.kind, CMIDIMessageX::kSysEx);
        EXPECT_EQ(Data(read), bytes);
    }
}

TEST(EventRead, AMetaEventOfTheLargestLength) {
    const std::string bytes(255, '\x7F');
    CMemoryFile file("\xFF\x7F\xFF" + bytes);
    CMIDIMessageX read;
    ASSERT_TRUE(read.Read(file));
    ExpectMeta(read, 0x7F, bytes, -1);
}

TEST(EventRead, ShortMessageReplacesTheData) {
    CMIDIMessageX read = SysEx("\xF0\x01");
    CMemoryFile file("\xB2\x07\x64");
    ASSERT_TRUE(read.Read(file));
    EXPECT_EQ(read.kind, CMIDIMessageX::kShort);
    EXPECT_EQ(read.message, (TMIDIMessage{0xB0, 3, 7, 100}));
    EXPECT_TRUE(read.data.IsEmpty());
}

TEST(EventRead, AnEarlyEndLeavesTheEventUnchanged) {
    for (const std::string_view bytes : {""sv, "\x90\x3C"sv, "\xFF"sv, "\xFF\x01"sv,
                                         "\xFF\x01\x04"
                                         "abc"sv,
                                         "\xF0"sv, "\xF0\x01\x02"sv}) {
        CMemoryFile file(bytes);
        CMIDIMessageX event;
        event.SetText(CMIDIMessageX::kMarker, "kept", 9);
        EXPECT_FALSE(event.Read(file));
        ExpectMeta(event, 6, "kept", 9);
    }
}
