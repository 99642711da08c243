#include "nk/nk_string_serializable.h"

#include <gtest/gtest.h>

#include <string>

#include "nk/nk_disk_file.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace NK;

TEST(StringSerializable, WritesItsLengthAndItsUtf8) {
    CMemoryFile file;
    EXPECT_TRUE(CStringSerializable(L"a\u00E9").WriteTo(file));
    EXPECT_EQ(file.GetContent(), std::string_view("\0\0\0\3a\xC3\xA9", 7));
}

TEST(StringSerializable, ReadsBackWhatItWrote) {
    CMemoryFile file;
    const std::wstring longText(200000, L'\u043D');
    EXPECT_TRUE(CStringSerializable(L"").WriteTo(file));
    EXPECT_TRUE(CStringSerializable(std::wstring_view(L"x\0y\n", 4)).WriteTo(file));
    EXPECT_TRUE(CStringSerializable(std::wstring_view(longText)).WriteTo(file));
    EXPECT_TRUE(file.SeekToStart());
    CStringSerializable text(L"old");
    EXPECT_TRUE(text.ReadFrom(file));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_TRUE(text.ReadFrom(file));
    EXPECT_EQ(text.View(), std::wstring_view(L"x\0y\n", 4));
    EXPECT_TRUE(text.ReadFrom(file));
    EXPECT_EQ(text.View(), longText);
    EXPECT_FALSE(text.ReadFrom(file)) << "nothing is left";
    EXPECT_EQ(text.View(), longText);
}

TEST(StringSerializable, RefusesAFileThatEndsEarlyAndALengthAboveTheLimit) {
    for (const std::string& bytes :
         {std::string("\0\0\0", 3), std::string("\0\0\0\5abcd", 8), std::string("\xFF\xFF\xFF\xFFxxxx", 8),
          std::string("\1\0\0\0abc", 7), std::string("\1\0\0\1abc", 7)}) {
        CMemoryFile file(bytes);
        CStringSerializable text(L"old");
        EXPECT_FALSE(text.ReadFrom(file));
        EXPECT_EQ(text, L"old");
    }
}

TEST(StringSerializable, ReportsAFailedWrite) {
    CFILEFile closed;
    EXPECT_FALSE(CStringSerializable(L"a").WriteTo(closed));
    EXPECT_FALSE(CStringSerializable(L"").WriteTo(closed));
}

}  // namespace
