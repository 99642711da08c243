#include "nk/nk_disk_file.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

using DiskFile = KivoraTest::CTempFolderTest;

TEST_F(DiskFile, AFileThatCannotBeOpenedIsAClosedObject) {
    CDiskFile file(Path("absent"), L"rb");
    EXPECT_FALSE(file.IsOpen());
    char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1, 1), 0U);
    EXPECT_EQ(file.Write(&byte, 1, 1), 0U);
    EXPECT_NE(file.Seek(0, CFile::kStart), 0);
    EXPECT_FALSE(file.SetPosition(0));
    EXPECT_FALSE(file.SeekToStart());
    EXPECT_FALSE(file.SeekToEnd());
    EXPECT_EQ(file.GetPosition(), -1);
    EXPECT_EQ(file.GetLength(), -1);
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(file.Close(), 0);
}

TEST_F(DiskFile, ANullOrEmptyPathStaysClosed) {
    const wchar_t* const none = nullptr;
    EXPECT_FALSE(CDiskFile(none, L"wb").IsOpen());
    EXPECT_FALSE(CDiskFile(L"", L"wb").IsOpen());
    EXPECT_FALSE(CDiskFile(none, CDiskFile::kWrite, 0664).IsOpen());
    EXPECT_FALSE(CDiskFile(Path("x"), none).IsOpen());
    EXPECT_FALSE(CFILEFile().IsOpen());
}

TEST_F(DiskFile, AFolderCannotBeOpened) {
    EXPECT_FALSE(CDiskFile(Path(""), L"rb").IsOpen());
    EXPECT_FALSE(CDiskFile(Path(""), CDiskFile::kWrite).IsOpen());
}

TEST_F(DiskFile, ReadsAndWritesWholeElements) {
    {
        CDiskFile file(Path("a"), L"wb");
        ASSERT_TRUE(file.IsOpen());
        EXPECT_EQ(file.Write("abcdefgh", 2, 4), 4U);
        EXPECT_EQ(file.Close(), 0);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(file.Close(), 0);
    }
    EXPECT_EQ(ReadBytes("a"), "abcdefgh");
    CDiskFile file(Path("a"), L"rb");
    char bytes[16] = {};
    EXPECT_EQ(file.Read(bytes, 3, 5), 2U);
    EXPECT_STREQ(bytes, "abcdefgh");
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(file.Write("x", 1, 1), 0U) << "opened for reading";
}

TEST_F(DiskFile, SeeksAndTellsItsLengthWithoutMoving) {
    WriteBytes("a", "0123456789");
    CDiskFile file(Path("a"), L"rb");
    EXPECT_EQ(file.GetPosition(), 0);
    EXPECT_TRUE(file.SetPosition(4));
    EXPECT_EQ(file.GetLength(), 10);
    EXPECT_EQ(file.GetPosition(), 4);
    EXPECT_EQ(file.Seek(-1, CFile::kCurrent), 0);
    EXPECT_EQ(file.GetPosition(), 3);
    EXPECT_EQ(file.Seek(-2, CFile::kEnd), 0);
    char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1, 1), 1U);
    EXPECT_EQ(byte, '8');
    EXPECT_FALSE(file.SetPosition(-1));
    EXPECT_TRUE(file.SeekToEnd());
    EXPECT_EQ(file.GetPosition(), 10);
    EXPECT_EQ(file.Read(&byte, 1, 1), 0U);
    EXPECT_TRUE(file.IsEOF());
    EXPECT_TRUE(file.SeekToStart());
    EXPECT_EQ(file.GetPosition(), 0);
    EXPECT_FALSE(file.IsEOF());
    EXPECT_FALSE(file.IsInMemory());
    EXPECT_FALSE(file.IsTemporary());
}

TEST_F(DiskFile, OpenModeConstantsMeanTheirModeTexts) {
    WriteBytes("a", "old");
    EXPECT_FALSE(CDiskFile(Path("none"), 0).IsOpen());
    EXPECT_FALSE(CDiskFile(Path("none"), 2).IsOpen());
    char bytes[8] = {};
    {
        CDiskFile read(Path("a"), 0, 0664);
        EXPECT_EQ(read.Write("x", 1, 1), 0U);
        EXPECT_EQ(read.Read(bytes, 1, 8), 3U);
    }
    {
        CDiskFile update(Path("a"), 2, 0664);
        EXPECT_EQ(update.Write("O", 1, 1), 1U);
    }
    EXPECT_EQ(ReadBytes("a"), "Old");
    {
        CDiskFile append(Path("a"), 4, 0664);
        EXPECT_EQ(append.Write("er", 1, 2), 2U);
    }
    EXPECT_EQ(ReadBytes("a"), "Older");
    {
        CDiskFile readAppend(Path("a"), 5, 0664);
        EXPECT_TRUE(readAppend.SeekToStart());
        EXPECT_EQ(readAppend.Read(bytes, 1, 1), 1U);
        EXPECT_TRUE(readAppend.SeekToStart());
        EXPECT_EQ(readAppend.Write("!", 1, 1), 1U);
    }
    EXPECT_EQ(ReadBytes("a"), "Older!");
    {
        CDiskFile create(Path("a"), 3, 0664);
        EXPECT_EQ(create.GetLength(), 0);
        EXPECT_EQ(create.Write("n", 1, 1), 1U);
        EXPECT_TRUE(create.SeekToStart());
        EXPECT_EQ(create.Read(bytes, 1, 1), 1U);
        EXPECT_EQ(bytes[0], 'n');
    }
    {
        CDiskFile write(Path("a"), 1, 0664);
        EXPECT_EQ(write.Read(bytes, 1, 1), 0U);
    }
    EXPECT_EQ(ReadBytes("a"), "");
}

TEST_F(DiskFile, AnyOtherOpenModeConstantThrows) {
    for (const int mode : {-1, 6, 100}) {
        try {
            const CDiskFile file(Path("a"), mode, 0664);
            FAIL() << mode;
        } catch (const CException& exception) {
            EXPECT_STREQ(exception.GetMessage(), L"Bad file open mode constant.");
        }
    }
    EXPECT_EQ(CountEntries(), 0);
}

TEST_F(DiskFile, PathsAreUtf8OnDisk) {
    { const CDiskFile file(Path("\xD0\x9D\xD0\xBE\xD1\x82\xD1\x8B \xF0\x9F\x8E\xB9"), L"wb"); }
    EXPECT_TRUE(std::filesystem::exists(Native("\xD0\x9D\xD0\xBE\xD1\x82\xD1\x8B \xF0\x9F\x8E\xB9")));
}

TEST_F(DiskFile, TheDestructorClosesAndWritesWhatIsBuffered) {
    { CDiskFile(Path("a"), L"wb").Write("text", 1, 4); }
    EXPECT_EQ(ReadBytes("a"), "text");
}

TEST_F(DiskFile, CloseReportsAFullDisk) {
    CDiskFile file(L"/dev/full", L"wb");
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Write("text", 1, 4), 4U) << "buffered";
    EXPECT_NE(file.Close(), 0);
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(DiskFile, WriteReportsAFullDisk) {
    CDiskFile file(L"/dev/full", L"wb");
    const std::string much(1 << 20, 'x');
    EXPECT_LT(file.Write(much.data(), 1, much.size()), much.size());
}

TEST_F(DiskFile, WrapsAnOpenStream) {
    CFILEFile file(std::tmpfile());
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Write("abc", 1, 3), 3U);
    EXPECT_EQ(file.GetLength(), 3);
    EXPECT_EQ(file.Close(), 0);
}

TEST_F(DiskFile, ATemporaryFileIsRemovedWhenClosed) {
    CTempFile file(Path("t"), L"w+b");
    EXPECT_TRUE(file.IsTemporary());
    EXPECT_EQ(file.Write("abc", 1, 3), 3U);
    EXPECT_EQ(CountEntries(), 1);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(CountEntries(), 0);
    WriteBytes("t", "another");
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(ReadBytes("t"), "another") << "closing again removes nothing";
}

TEST_F(DiskFile, ATemporaryFileIsRemovedByItsDestructorAlso) {
    {
        const CTempFile file(Path("t"), CDiskFile::kCreate, 0664);
        EXPECT_EQ(CountEntries(), 1);
    }
    EXPECT_EQ(CountEntries(), 0);
    {
        const std::unique_ptr<CFile> file = std::make_unique<CTempFile>(Path("t"), L"wb");
        EXPECT_EQ(CountEntries(), 1);
    }
    EXPECT_EQ(CountEntries(), 0);
}

TEST_F(DiskFile, ATemporaryFileThatIsNotOpenRemovesNothing) {
    std::filesystem::create_directory(Native("t"));
    { const CTempFile file(Path("t"), L"wb"); }
    EXPECT_EQ(CountEntries(), 1);
}

}  // namespace
