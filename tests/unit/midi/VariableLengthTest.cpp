#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "midi/CMIDIMessageX.h"
#include "nk/nk_memory_file.h"
#include "support/FaultyFile.h"

using namespace NK;
using namespace NK::MIDI;
using std::string_view_literals::operator""sv;

namespace {

struct Quantity {
    std::uint32_t value;
    std::string_view bytes;
};

// The examples of Standard MIDI Files 1.0, and the two that 32 bits add.
constexpr Quantity kQuantities[] = {
    {0, "\0"sv},
    {0x40, "\x40"},
    {0x7F, "\x7F"},
    {0x80, "\x81\0"sv},
    {0x2000, "\xC0\0"sv},
    {0x3FFF, "\xFF\x7F"},
    {0x4000, "\x81\x80\0"sv},
    {0x100000, "\xC0\x80\0"sv},
    {0x1FFFFF, "\xFF\xFF\x7F"},
    {0x200000, "\x81\x80\x80\0"sv},
    {0x8000000, "\xC0\x80\x80\0"sv},
    {0x0FFFFFFF, "\xFF\xFF\xFF\x7F"},
    {0x10000000, "\x81\x80\x80\x80\0"sv},
    {0xFFFFFFFF, "\x8F\xFF\xFF\xFF\x7F"},
};

std::uint32_t Read(std::string_view bytes, bool& error) {
    CMemoryFile file(bytes);
    return ReadVariableLength(file, error);
}

}  // namespace

TEST(VariableLength, IsWrittenMostSignificantGroupFirst) {
    for (const Quantity& quantity : kQuantities) {
        CMemoryFile file;
        EXPECT_TRUE(WriteVariableLength(file, quantity.value));
        EXPECT_EQ(file.GetContent(), quantity.bytes) << quantity.value;
    }
}

TEST(VariableLength, ReadsBack) {
    for (const Quantity& quantity : kQuantities) {
        bool error = true;
        EXPECT_EQ(Read(quantity.bytes, error), quantity.value);
        EXPECT_FALSE(error);
    }
}

TEST(VariableLength, ReadingStopsAfterTheFirstByteWithoutTheHighBit) {
    CMemoryFile file("\x81\x01\x02");
    bool error = true;
    EXPECT_EQ(ReadVariableLength(file, error), 0x81U);
    EXPECT_EQ(file.GetPosition(), 2);
}

TEST(VariableLength, LeadingZeroGroupsAreRead) {
    bool error = true;
    EXPECT_EQ(Read("\x80\x80\x80\x80\x05", error), 5U);
    EXPECT_FALSE(error);
}

TEST(VariableLength, MoreThanFiveBytesAreAnError) {
    bool error = false;
    EXPECT_EQ(Read("\x80\x80\x80\x80\x80\x01", error), 0U);
    EXPECT_TRUE(error);
}

TEST(VariableLength, AnEarlyEndIsAnError) {
    for (const std::string_view bytes : {""sv, "\x80"sv, "\xFF\xFF"sv}) {
        bool error = false;
        EXPECT_EQ(Read(bytes, error), 0U);
        EXPECT_TRUE(error);
    }
}

TEST(VariableLength, AFailedWriteIsReported) {
    KivoraTest::CFaultyFile file;
    file.failingWrite = 1;
    EXPECT_FALSE(WriteVariableLength(file, 0x80));
}
