#include "midi/TMIDIMessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>

#include "nk/nk_memory_file.h"

using namespace NK;
using namespace NK::MIDI;

namespace {

std::string Pack(const TMIDIMessage& message) {
    std::uint8_t bytes[3] = {0xEE, 0xEE, 0xEE};
    const int length = message.Pack(bytes);
    return {bytes, bytes + length};
}

TMIDIMessage ReadFrom(std::string_view bytes) {
    CMemoryFile file(bytes);
    TMIDIMessage message;
    EXPECT_TRUE(message.Read(file));
    EXPECT_EQ(file.GetPosition(), static_cast<std::int64_t>(bytes.size()));
    return message;
}

}  // namespace

static_assert(std::is_trivially_copyable_v<TMIDIMessage>);

TEST(TMIDIMessage, DefaultIsNoMessage) {
    EXPECT_EQ(TMIDIMessage().ToWord(), 0U);
}

TEST(TMIDIMessage, LengthByStatus) {
    for (const int status : {0x80, 0x90, 0xA0, 0xB0, 0xE0}) {
        EXPECT_EQ(TMIDIMessage::GetLength(static_cast<std::uint8_t>(status)), 3) << status;
    }
    EXPECT_EQ(TMIDIMessage::GetLength(0xC0), 2);
    EXPECT_EQ(TMIDIMessage::GetLength(0xD0), 2);
    for (int status = 0xF0; status <= 0xF7; ++status) {
        EXPECT_EQ(TMIDIMessage::GetLength(static_cast<std::uint8_t>(status)), 3) << status;
    }
    for (int status = 0xF8; status <= 0xFF; ++status) {
        EXPECT_EQ(TMIDIMessage::GetLength(static_cast<std::uint8_t>(status)), 1) << status;
    }
}

TEST(TMIDIMessage, LengthOfARawStatusByteGoesByItsHighNibble) {
    EXPECT_EQ(TMIDIMessage::GetLength(0xC5), 2);
    EXPECT_EQ(TMIDIMessage::GetLength(0xDF), 2);
    EXPECT_EQ(TMIDIMessage::GetLength(0x9F), 3);
    EXPECT_EQ((TMIDIMessage{0xC0, 1, 5, 0}).GetLength(), 2);
}

TEST(TMIDIMessage, AStatusByteOfAChannelIsToldFromDataAndTheSystems) {
    for (int byte = 0; byte <= 0xFF; ++byte) {
        EXPECT_EQ(TMIDIMessage::IsOfChannel(static_cast<std::uint8_t>(byte)), byte >= 0x80 && byte <= 0xEF) << byte;
    }
}

TEST(TMIDIMessage, NoteOnForChannelTenPacksAs99) {
    EXPECT_EQ(Pack({0x90, 10, 60, 100}), "\x99\x3C\x64");
}

TEST(TMIDIMessage, WithoutAChannelTheStatusPacksAsItIs) {
    EXPECT_EQ(Pack({0x90, 0, 60, 100}), "\x90\x3C\x64");
}

TEST(TMIDIMessage, ChannelsOneAndSixteenAreTheEndsOfTheNibble) {
    EXPECT_EQ(Pack({0xB0, 1, 7, 1}), "\xB0\x07\x01");
    EXPECT_EQ(Pack({0xB0, 16, 7, 1}), "\xBF\x07\x01");
}

TEST(TMIDIMessage, ProgramChangeWritesTwoBytesClockOneTuneRequestThree) {
    CMemoryFile file;
    EXPECT_TRUE((TMIDIMessage{0xC0, 3, 40, 99}).Write(file));
    EXPECT_TRUE((TMIDIMessage{0xF8, 0, 1, 2}).Write(file));
    EXPECT_TRUE((TMIDIMessage{0xF6, 0, 1, 2}).Write(file));
    EXPECT_EQ(file.GetContent(), "\xC2\x28\xF8\xF6\x01\x02");
}

TEST(TMIDIMessage, PackIntoABufferWritesAtMostItsSize) {
    const TMIDIMessage message{0x90, 2, 61, 62};
    for (std::size_t size = 0; size <= 4; ++size) {
        std::uint8_t bytes[4] = {0xEE, 0xEE, 0xEE, 0xEE};
        const std::size_t written = message.Pack(bytes, size);
        EXPECT_EQ(written, std::min<std::size_t>(size, 3));
        const std::uint8_t packed[] = {0x91, 61, 62, 0xEE};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(bytes[i], i < written ? packed[i] : 0xEE) << size << ' ' << i;
        }
    }
}

TEST(TMIDIMessage, WriteReportsAFileThatTakesLess) {
    struct CFullFile : CMemoryFile {
        std::size_t Write(const void*, std::size_t, std::size_t) override { return 2; }
    } file;
    EXPECT_FALSE((TMIDIMessage{0x90, 1, 60, 64}).Write(file));
    EXPECT_TRUE((TMIDIMessage{0xC0, 1, 60, 64}).Write(file));
}

TEST(TMIDIMessage, ReadSplitsCommandAndChannel) {
    EXPECT_EQ(ReadFrom("\x93\x3C\x7F"), (TMIDIMessage{0x90, 4, 60, 127}));
    EXPECT_EQ(ReadFrom("\xCF\x05"), (TMIDIMessage{0xC0, 16, 5, 0}));
    EXPECT_EQ(ReadFrom("\xFA"), (TMIDIMessage{0xFA, 0, 0, 0}));
    EXPECT_EQ(ReadFrom("\xF2\x01\x02"), (TMIDIMessage{0xF2, 0, 1, 2}));
}

TEST(TMIDIMessage, ReadAfterStatusReadsNothingForRealTime) {
    CMemoryFile file("\x01\x02");
    TMIDIMessage message;
    EXPECT_TRUE(message.ReadAfterStatus(0xFE, file));
    EXPECT_EQ(file.GetPosition(), 0);
    EXPECT_EQ(message, (TMIDIMessage{0xFE, 0, 0, 0}));
}

TEST(TMIDIMessage, AFileThatEndsEarlyLeavesTheRecordUnchanged) {
    const TMIDIMessage before{0xB0, 2, 3, 4};
    for (const std::string_view bytes : {"", "\x90", "\x90\x3C", "\xC0"}) {
        CMemoryFile file(bytes);
        TMIDIMessage message = before;
        EXPECT_FALSE(message.Read(file));
        EXPECT_EQ(message, before);
    }
}

TEST(TMIDIMessage, WhatWasWrittenReadsBack) {
    for (int status = 0x80; status <= 0xFF; ++status) {
        const bool isSystem = status >= 0xF0;
        if (!isSystem && (status & 0x0F) != 0) {
            continue;
        }
        TMIDIMessage message{static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(isSystem ? 0 : 7), 11, 22};
        CMemoryFile file;
        ASSERT_TRUE(message.Write(file));
        ASSERT_TRUE(file.SeekToStart());
        if (message.GetLength() < 3) {
            message.data2 = 0;
        }
        if (message.GetLength() < 2) {
            message.data1 = 0;
        }
        TMIDIMessage read;
        ASSERT_TRUE(read.Read(file));
        EXPECT_EQ(read, message) << status;
    }
}

TEST(TMIDIMessage, ComparesAsOneWordWithTheStatusLowest) {
    const TMIDIMessage message{0x90, 2, 3, 4};
    EXPECT_EQ(message.ToWord(), 0x04030290U);
    EXPECT_EQ(TMIDIMessage::FromWord(0x04030290U), message);
    for (const std::uint32_t bit : {0x1U, 0x100U, 0x10000U, 0x1000000U}) {
        EXPECT_FALSE(TMIDIMessage::FromWord(message.ToWord() ^ bit) == message);
    }
}

TEST(PitchWheel, FloatOneIsTheTop) {
    TMIDIMessage message;
    message.SetPitchWheelFloat(1.0F);
    EXPECT_EQ(message.GetPitchWheel(), 16383);
}

TEST(PitchWheel, FloatMinusOneIsZero) {
    TMIDIMessage message{0, 0, 1, 1};
    message.SetPitchWheelFloat(-1.0F);
    EXPECT_EQ(message.GetPitchWheel(), 0);
}

TEST(PitchWheel, FloatRoundsHalfAwayFromZeroAndClamps) {
    const auto set = [](float value) {
        TMIDIMessage message;
        message.SetPitchWheelFloat(value);
        return message.GetPitchWheel();
    };
    EXPECT_EQ(set(0.0F), 8192);
    EXPECT_EQ(set(0.5F / 8192), 8193);
    EXPECT_EQ(set(-0.5F / 8192), 8191);
    EXPECT_EQ(set(0.25F / 8192), 8192);
    EXPECT_EQ(set(1e30F), 16383);
    EXPECT_EQ(set(-1e30F), 0);
    EXPECT_EQ(set(std::numeric_limits<float>::quiet_NaN()), 8192);
}

TEST(PitchWheel, CenteredZeroIs8192) {
    TMIDIMessage message;
    message.SetPitchWheelCentered(0);
    EXPECT_EQ(message.data1, 0);
    EXPECT_EQ(message.data2, 64);
    EXPECT_EQ(message.GetPitchWheel(), 8192);
}

TEST(PitchWheel, CenteredClamps) {
    TMIDIMessage message;
    message.SetPitchWheelCentered(std::numeric_limits<int>::max());
    EXPECT_EQ(message.GetPitchWheel(), 16383);
    message.SetPitchWheelCentered(std::numeric_limits<int>::min());
    EXPECT_EQ(message.GetPitchWheel(), 0);
}

TEST(PitchWheel, SettersLeaveTheChannel) {
    TMIDIMessage message{0x90, 5, 0, 0};
    message.SetPitchWheel(0x1234);
    EXPECT_EQ(message, (TMIDIMessage{0xE0, 5, 0x34, 0x24}));
}

TEST(PitchWheel, EveryRawValueReadsBack) {
    TMIDIMessage message;
    for (int raw = 0; raw <= 16383; ++raw) {
        message.SetPitchWheel(raw);
        ASSERT_EQ(message.GetPitchWheel(), raw);
        ASSERT_LT(message.data1 | message.data2, 128);
    }
}

TEST(PitchWheel, TheLowDataByteCountsSevenBits) {
    EXPECT_EQ((TMIDIMessage{0xE0, 1, 0x81, 1}).GetPitchWheel(), 129);
}

TEST(NoteSorting, ComparesTheNoteByteAloneAndUnsigned) {
    const TMIDIMessage::CNoteSortingComparator comparator;
    EXPECT_TRUE(comparator.IsGreater({0, 0, 200, 0}, {255, 255, 100, 255}));
    EXPECT_FALSE(comparator.IsLess({0, 0, 200, 0}, {255, 255, 100, 255}));
    EXPECT_TRUE(comparator.IsLess({255, 0, 1, 255}, {0, 0, 2, 0}));
    EXPECT_FALSE(comparator.IsLess({1, 2, 60, 4}, {5, 6, 60, 8}));
    EXPECT_FALSE(comparator.IsGreater({1, 2, 60, 4}, {5, 6, 60, 8}));
}

TEST(NoteSorting, SortsAllNotesFromAnyOrder) {
    CSortableArray<TMIDIMessage> notes;
    for (unsigned i = 0; i < 128; ++i) {
        const auto note = static_cast<std::uint8_t>(i * 37 % 128);
        notes.Push({0x90, 1, note, static_cast<std::uint8_t>(127 - note)});
    }
    notes.Sort(TMIDIMessage::CNoteSortingComparator());
    for (std::uint8_t i = 0; i < 128; ++i) {
        EXPECT_EQ(notes[i], (TMIDIMessage{0x90, 1, i, static_cast<std::uint8_t>(127 - i)}));
    }
}

TEST(NoteSorting, LookUpComparesWholeRecords) {
    CSortableArray<TMIDIMessage> notes;
    notes.Push({0x90, 1, 60, 1});
    notes.Push({0x90, 1, 60, 2});
    EXPECT_EQ(notes.Find({0x90, 1, 60, 2}), 1);
    EXPECT_EQ(notes.Find({0x90, 1, 60, 3}), -1);
}
