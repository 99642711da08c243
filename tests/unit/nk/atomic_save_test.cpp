#include "nk/nk_atomic_save.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "nk/nk_disk_file.h"
#include "support/FileSizeLimit.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;
using KivoraTest::CFileSizeLimit;

using AtomicSave = KivoraTest::CTempFolderTest;

bool WriteText(CFile& file, const std::string& text) {
    return file.Write(text.data(), 1, text.size()) == text.size();
}

TEST_F(AtomicSave, CreatesAFile) {
    EXPECT_TRUE(SaveAtomically(Path("a"), [](CFile& file) { return WriteText(file, "new"); }));
    EXPECT_EQ(ReadBytes("a"), "new");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, ReplacesAFile) {
    WriteBytes("a", "a longer old text");
    EXPECT_TRUE(SaveAtomically(Path("a"), [](CFile& file) { return WriteText(file, "new"); }));
    EXPECT_EQ(ReadBytes("a"), "new");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, TheOldFileStandsUntouchedWhileTheNewOneIsWritten) {
    WriteBytes("a", "old");
    EXPECT_TRUE(SaveAtomically(Path("a"), [this](CFile& file) {
        const bool written = WriteText(file, "new");
        EXPECT_EQ(ReadBytes("a"), "old");
        EXPECT_EQ(CountEntries(), 2);
        return written;
    }));
}

TEST_F(AtomicSave, AWriterThatFailsLeavesTheOldFileAndNoTemporaryOne) {
    WriteBytes("a", "old");
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile& file) {
        WriteText(file, "half");
        return false;
    }));
    EXPECT_EQ(ReadBytes("a"), "old");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, AWriterThatThrowsLeavesTheOldFileAndNoTemporaryOne) {
    WriteBytes("a", "old");
    EXPECT_THROW(SaveAtomically(Path("a"),
                                [](CFile& file) -> bool {
                                    WriteText(file, "half");
                                    throw CInvalidParameterException(L"Cannot set zero tempo.");
                                }),
                 CInvalidParameterException);
    EXPECT_EQ(ReadBytes("a"), "old");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, AFullDiskLeavesTheOldFileAndNoTemporaryOneWhereverItStrikes) {
    WriteBytes("a", "old");
    const std::string text(300000, 'x');
    for (const rlim_t room : {0U, 1U, 4095U, 4096U, 65536U, 299999U}) {
        const CFileSizeLimit limit(room);
        EXPECT_FALSE(SaveAtomically(Path("a"), [&text](CFile& file) { return WriteText(file, text); })) << room;
        EXPECT_EQ(ReadBytes("a"), "old");
        EXPECT_EQ(CountEntries(), 1);
    }
    EXPECT_TRUE(SaveAtomically(Path("a"), [&text](CFile& file) { return WriteText(file, text); }));
    EXPECT_EQ(ReadBytes("a"), text);
}

TEST_F(AtomicSave, AFullDiskIsSeenByABufferedWriteAlso) {
    WriteBytes("a", "old");
    const CFileSizeLimit limit(0);
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile& file) { return WriteText(file, "x"); }));
    EXPECT_EQ(ReadBytes("a"), "old");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, AWriterThatDoesNotLookAtItsResultsFailsAsWell) {
    WriteBytes("a", "old");
    const std::string text(300000, 'x');
    {
        const CFileSizeLimit limit(100000);
        EXPECT_FALSE(SaveAtomically(Path("a"), [&text](CFile& file) {
            WriteText(file, text);
            return true;
        }));
    }
    EXPECT_EQ(ReadBytes("a"), "old");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, AMissingFolderIsAFailure) {
    EXPECT_FALSE(SaveAtomically(Path("none/a"), [](CFile&) {
        ADD_FAILURE() << "nothing to write to";
        return true;
    }));
    EXPECT_EQ(CountEntries(), 0);
    EXPECT_FALSE(SaveAtomically(L"", [](CFile&) { return true; }));
}

TEST_F(AtomicSave, AFileInPlaceOfTheFolderIsAFailure) {
    WriteBytes("f", "old");
    EXPECT_FALSE(SaveAtomically(Path("f/a"), [](CFile&) { return true; }));
    EXPECT_EQ(ReadBytes("f"), "old");
}

TEST_F(AtomicSave, AFolderInPlaceOfTheFileIsAFailure) {
    std::filesystem::create_directory(Native("a"));
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile&) { return true; }));
    EXPECT_TRUE(std::filesystem::is_directory(Native("a")));
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, ADeviceIsNeverReplaced) {
    std::filesystem::create_symlink("/dev/full", Native("a"));
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile&) { return true; }));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_TRUE(std::filesystem::is_symlink(Native("a")));
}

TEST_F(AtomicSave, KeepsThePermissionsOfTheFileThatItReplaces) {
    WriteBytes("a", "old");
    ASSERT_EQ(chmod(Native("a").c_str(), 0640), 0);
    EXPECT_TRUE(SaveAtomically(Path("a"), [](CFile&) { return true; }));
    struct stat status {};
    ASSERT_EQ(stat(Native("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(AtomicSave, ANewFileHas0664LessTheMask) {
    const mode_t mask = umask(002);
    EXPECT_TRUE(SaveAtomically(Path("a"), [](CFile&) { return true; }));
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(Native("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0664U);
}

TEST_F(AtomicSave, WritesWhereALinkLeads) {
    std::filesystem::create_directory(Native("real"));
    WriteBytes("real/a", "old");
    std::filesystem::create_symlink("real/a", Native("link"));
    EXPECT_TRUE(SaveAtomically(Path("link"), [](CFile& file) { return WriteText(file, "new"); }));
    EXPECT_TRUE(std::filesystem::is_symlink(Native("link")));
    EXPECT_EQ(ReadBytes("real/a"), "new");
}

TEST_F(AtomicSave, TheLongestNameCanBeSaved) {
    const std::string name(255, 'n');
    EXPECT_TRUE(SaveAtomically(Path(name), [](CFile& file) { return WriteText(file, "new"); }));
    EXPECT_EQ(ReadBytes(name), "new");
    EXPECT_FALSE(SaveAtomically(Path(name + "n"), [](CFile&) { return true; }));
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, AWriterThatOpensItsFileByNameIsServedToo) {
    WriteBytes("a", "old");
    EXPECT_TRUE(SaveAtomicallyByName(Path("a"), [](const CString& temporaryPath) {
        CDiskFile file(temporaryPath, CDiskFile::kWrite);
        return WriteText(file, "by name");
    }));
    EXPECT_EQ(ReadBytes("a"), "by name");
    EXPECT_FALSE(SaveAtomicallyByName(Path("a"), [](const CString&) { return false; }));
    EXPECT_FALSE(SaveAtomicallyByName(Path("a"), [](const CString& temporaryPath) {
        return std::filesystem::remove(temporaryPath.ToUtf8());
    })) << "a temporary file that went away";
    EXPECT_EQ(ReadBytes("a"), "by name");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AtomicSave, ThreadsThatSaveToOneFolderDoNotMeet) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            for (int round = 0; round < 25; ++round) {
                const std::string name = "f" + std::to_string(i);
                EXPECT_TRUE(SaveAtomically(Path(name), [&name](CFile& file) { return WriteText(file, name); }));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(CountEntries(), 4);
    EXPECT_EQ(ReadBytes("f3"), "f3");
}

}  // namespace
