#include "nk/nk_memory_file.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

#include "nk/nk_disk_file.h"

namespace {

using namespace NK;

TEST(MemoryFile, IsAFileThatIsAlwaysOpen) {
    CMemoryFile file;
    EXPECT_TRUE(file.IsOpen());
    EXPECT_TRUE(file.IsInMemory());
    EXPECT_FALSE(file.IsTemporary());
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ(file.GetLength(), 0);
}

TEST(MemoryFile, ReadsWhatItWasGiven) {
    CMemoryFile file("abc");
    char bytes[8] = {};
    EXPECT_EQ(file.Read(bytes, 1, 3), 3U);
    EXPECT_STREQ(bytes, "abc");
    EXPECT_FALSE(file.IsEOF()) << "the end was reached, not met";
    EXPECT_EQ(file.Read(bytes, 1, 1), 0U);
    EXPECT_TRUE(file.IsEOF());
}

TEST(MemoryFile, FillsTheGapWithZeros) {
    CMemoryFile file("ab");
    EXPECT_TRUE(file.SetPosition(4));
    EXPECT_EQ(file.GetLength(), 2);
    EXPECT_EQ(file.Write("z", 1, 1), 1U);
    EXPECT_EQ(file.GetContent(), std::string_view("ab\0\0z", 5));
}

TEST(MemoryFile, WhatMemoryCannotHoldIsNotWritten) {
    CMemoryFile file("ab");
    EXPECT_EQ(file.Write("x", std::numeric_limits<std::size_t>::max(), 2), 0U);
    EXPECT_EQ(file.Write("x", 0, 5), 0U);
    EXPECT_TRUE(file.SetPosition(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(file.Write("x", 1, 1), 0U);
    EXPECT_FALSE(file.Seek(1, CFile::kCurrent) == 0);
    EXPECT_EQ(file.GetContent(), "ab");
}

/// The disk's file is the model: the same operations give the same results on both.
TEST(MemoryFile, BehavesAsADiskFile) {
    std::mt19937 generator(3);
    CMemoryFile memory;
    CFILEFile disk(std::tmpfile());
    ASSERT_TRUE(disk.IsOpen());
    const std::string source(64, 'q');
    for (int i = 0; i < 20000; ++i) {
        const std::size_t size = generator() % 5;
        const std::size_t count = generator() % 8;
        switch (generator() % 4) {
            case 0: {
                // The C library wants a seek between reading and writing.
                ASSERT_EQ(disk.Seek(0, CFile::kCurrent), memory.Seek(0, CFile::kCurrent));
                ASSERT_EQ(disk.Write(source.data(), size, count), memory.Write(source.data(), size, count));
                ASSERT_EQ(disk.Seek(0, CFile::kCurrent), memory.Seek(0, CFile::kCurrent));
                break;
            }
            case 1: {
                char a[64] = {};
                char b[64] = {};
                ASSERT_EQ(disk.Read(a, size, count), memory.Read(b, size, count));
                ASSERT_EQ(std::string_view(a, sizeof a), std::string_view(b, sizeof b));
                ASSERT_EQ(disk.IsEOF(), memory.IsEOF());
                break;
            }
            case 2: {
                const auto origin = static_cast<CFile::Origin>(generator() % 3);
                const std::int64_t offset = static_cast<std::int64_t>(generator() % 60) - 20;
                ASSERT_EQ(disk.Seek(offset, origin) == 0, memory.Seek(offset, origin) == 0);
                break;
            }
            default:
                ASSERT_EQ(disk.GetLength(), memory.GetLength());
                ASSERT_EQ(disk.SetPosition(disk.GetPosition()), memory.SetPosition(memory.GetPosition()));
        }
        ASSERT_EQ(disk.GetPosition(), memory.GetPosition());
    }
}

TEST(File, HelpersWriteTheHighByteFirst) {
    CMemoryFile file;
    EXPECT_TRUE(WriteTag(file, "MThd"));
    EXPECT_TRUE(WriteUInt32(file, 0x01020306));
    EXPECT_TRUE(WriteUInt16(file, 0xFFF4));
    EXPECT_TRUE(WriteTag(file, ""));
    EXPECT_EQ(file.GetContent(), "MThd\x01\x02\x03\x06\xFF\xF4");
}

TEST(File, HelpersReportAFailedWrite) {
    CFILEFile closed;
    EXPECT_FALSE(WriteUInt16(closed, 1));
    EXPECT_FALSE(WriteUInt32(closed, 1));
    EXPECT_FALSE(WriteTag(closed, "MTrk"));
}

}  // namespace
