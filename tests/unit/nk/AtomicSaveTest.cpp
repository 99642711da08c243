#include "nk/nk_atomic_save.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "nk/nk_disk_file.h"
#include "nk/platform/platform_files.h"
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

/// A number that no process has: that of one that has just ended.
pid_t EndedProcess() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return child;
}

/// What killed programs have left.
class AbandonedSave : public AtomicSave {
protected:
    std::string NameOf(pid_t process, const std::string& rest = "-0.tmp") const {
        return ".saving-" + std::to_string(process) + rest;
    }
    void Leave(const std::string& name, std::chrono::hours ago) const {
        WriteBytes(name, "half");
        std::filesystem::last_write_time(Native(name), std::filesystem::file_time_type::clock::now() - ago);
    }
    bool IsThere(const std::string& name) const { return std::filesystem::exists(Native(name)); }
    void Save() const {
        EXPECT_TRUE(SaveAtomically(Path("a"), [](CFile& file) { return WriteText(file, "new"); }));
        EXPECT_EQ(ReadBytes("a"), "new");
    }

    static constexpr std::chrono::hours kYesterday{25};
    const pid_t ended_ = EndedProcess();
};

TEST_F(AbandonedSave, IsRemovedByTheFirstSaveIntoItsFolder) {
    Leave(NameOf(ended_), kYesterday);
    Leave(NameOf(ended_, "-4294967295.tmp"), kYesterday);
    Save();
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AbandonedSave, IsLookedForOnce) {
    Save();
    Leave(NameOf(ended_), kYesterday);
    Save();
    EXPECT_TRUE(IsThere(NameOf(ended_)));
}

TEST_F(AbandonedSave, IsRemovedEvenWhenTheDiskIsFull) {
    Leave(NameOf(ended_), kYesterday);
    const CFileSizeLimit limit(0);
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile& file) { return WriteText(file, "new"); }));
    EXPECT_EQ(CountEntries(), 0);
}

TEST_F(AbandonedSave, OneOfTodayStaysAndSoDoesOneOfTomorrow) {
    Leave(NameOf(ended_), std::chrono::hours(23));
    Leave(NameOf(ended_, "-1.tmp"), -kYesterday);
    Save();
    EXPECT_TRUE(IsThere(NameOf(ended_)));
    EXPECT_TRUE(IsThere(NameOf(ended_, "-1.tmp")));
}

TEST_F(AbandonedSave, OneOfALivingProcessStays) {
    Leave(NameOf(getppid()), kYesterday);
    Leave(NameOf(1), kYesterday);
    Save();
    EXPECT_TRUE(IsThere(NameOf(getppid())));
    EXPECT_TRUE(IsThere(NameOf(1)));
}

TEST_F(AbandonedSave, OneOfAFormerProcessWithOurNumberIsRemoved) {
    Leave(NameOf(getpid(), "-77.tmp"), kYesterday);
    Save();
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(AbandonedSave, FilesOfAnyOtherNameStay) {
    const std::string process = std::to_string(ended_);
    const std::vector<std::string> names = {".saving-",
                                            ".saving-.tmp",
                                            ".saving-" + process,
                                            ".saving-" + process + ".tmp",
                                            ".saving-" + process + "-.tmp",
                                            ".saving-" + process + "-0",
                                            ".saving-" + process + "-0.tmp~",
                                            ".saving-" + process + "-0x1.tmp",
                                            ".saving-" + process + "--1.tmp",
                                            ".saving-" + process + "-4294967296.tmp",
                                            ".saving--" + process + "-0.tmp",
                                            ".saving-+" + process + "-0.tmp",
                                            ".saving- " + process + "-0.tmp",
                                            ".saving-0-0.tmp",
                                            ".saving-99999999999-0.tmp",
                                            "saving-" + process + "-0.tmp",
                                            "x.saving-" + process + "-0.tmp",
                                            ".Saving-" + process + "-0.tmp",
                                            "take.mid"};
    for (const std::string& name : names) {
        Leave(name, kYesterday);
    }
    Save();
    for (const std::string& name : names) {
        EXPECT_TRUE(IsThere(name)) << name;
    }
}

TEST_F(AbandonedSave, WhatIsNoFileStays) {
    std::filesystem::create_directory(Native(NameOf(ended_)));
    WriteBytes("real", "mine");
    std::filesystem::last_write_time(Native("real"), std::filesystem::file_time_type::clock::now() - kYesterday);
    std::filesystem::create_symlink("real", Native(NameOf(ended_, "-1.tmp")));
    const timespec longAgo[2] = {{0, 0}, {0, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, Native(NameOf(ended_, "-1.tmp")).c_str(), longAgo, AT_SYMLINK_NOFOLLOW), 0);
    Save();
    EXPECT_EQ(CountEntries(), 4);
    EXPECT_EQ(ReadBytes("real"), "mine");
}

TEST_F(AbandonedSave, OneInAnotherFolderStays) {
    std::filesystem::create_directory(Native("other"));
    Leave("other/" + NameOf(ended_), kYesterday);
    Save();
    EXPECT_TRUE(IsThere("other/" + NameOf(ended_)));
}

TEST_F(AbandonedSave, IsRemovedWhereALinkLeads) {
    std::filesystem::create_directory(Native("real"));
    WriteBytes("real/a", "old");
    Leave("real/" + NameOf(ended_), kYesterday);
    std::filesystem::create_symlink("real/a", Native("a"));
    Save();
    EXPECT_FALSE(IsThere("real/" + NameOf(ended_)));
}

TEST_F(AbandonedSave, AKilledProgramsIsRemovedADayLater) {
    const pid_t child = fork();
    if (child == 0) {
        SaveAtomically(Path("a"), [](CFile& file) {
            WriteText(file, "half");
            kill(getpid(), SIGKILL);
            return true;
        });
        _exit(1);
    }
    waitpid(child, nullptr, 0);
    ASSERT_EQ(CountEntries(), 1);
    const auto left = std::filesystem::directory_iterator(folder_.GetPath())->path();
    Save();
    EXPECT_TRUE(std::filesystem::exists(left)) << "too early";
    std::filesystem::last_write_time(left, std::filesystem::file_time_type::clock::now() - kYesterday);
    Platform::RemoveAbandonedBeside(Path("a"));
    EXPECT_EQ(CountEntries(), 1);
    EXPECT_FALSE(std::filesystem::exists(left));
}

}  // namespace
