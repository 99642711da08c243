#include "nk/nk_locked_file.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "support/FileSizeLimit.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

using LockedFile = KivoraTest::CTempFolderTest;

TEST_F(LockedFile, IsMadeEmptyAndWrittenAtAnyPlace) {
    const auto file = CLockedFile::Create(Path("a"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->GetPath(), Path("a"));
    EXPECT_EQ(ReadBytes("a"), "");
    EXPECT_TRUE(file->WriteAt(0, "abcdef", 6));
    EXPECT_TRUE(file->WriteAt(3, "XY", 2));
    EXPECT_TRUE(file->WriteAt(6, nullptr, 0));
    EXPECT_TRUE(file->Flush());
    EXPECT_EQ(ReadBytes("a"), "abcXYf");
}

TEST_F(LockedFile, IsNotMadeOverAnythingNorWithoutAFolder) {
    WriteBytes("a", "old");
    EXPECT_FALSE(CLockedFile::Create(Path("a")));
    EXPECT_EQ(ReadBytes("a"), "old");
    EXPECT_FALSE(CLockedFile::Create(Path("missing/a")));
    EXPECT_FALSE(CLockedFile::Create(Path("")));
}

TEST_F(LockedFile, HasOneOwnerAtATime) {
    auto file = CLockedFile::Create(Path("a"));
    EXPECT_FALSE(CLockedFile::Claim(Path("a")));
    file.reset();
    file = CLockedFile::Claim(Path("a"));
    ASSERT_TRUE(file);
    EXPECT_FALSE(CLockedFile::Claim(Path("a")));
    EXPECT_TRUE(file->WriteAt(0, "b", 1));
    EXPECT_EQ(ReadBytes("a"), "b");
}

TEST_F(LockedFile, IsHeldByAnotherProcessUntilThatEndsHoweverItEnds) {
    WriteBytes("a", "");
    int held[2];
    ASSERT_EQ(pipe(held), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto file = CLockedFile::Claim(Path("a"));
        const char answer = file ? 'y' : 'n';
        static_cast<void>(!write(held[1], &answer, 1));
        for (;;) {
            pause();
        }
    }
    char answer = 0;
    ASSERT_EQ(read(held[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_FALSE(CLockedFile::Claim(Path("a")));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(CLockedFile::Claim(Path("a")));
    close(held[0]);
    close(held[1]);
}

TEST_F(LockedFile, WhatIsNoFileCannotBeHeld) {
    EXPECT_FALSE(CLockedFile::Claim(Path("missing")));
    EXPECT_FALSE(CLockedFile::Claim(Path("")));
    WriteBytes("a", "");
    ASSERT_EQ(symlink("a", Path("link").ToUtf8().c_str()), 0);
    EXPECT_FALSE(CLockedFile::Claim(Path("link")));
    ASSERT_EQ(mkfifo(Path("fifo").ToUtf8().c_str(), 0600), 0);
    EXPECT_FALSE(CLockedFile::Claim(Path("fifo")));
}

TEST_F(LockedFile, IsRemovedWhileItIsHeld) {
    const auto file = CLockedFile::Create(Path("a"));
    EXPECT_TRUE(file->Remove());
    EXPECT_EQ(CountEntries(), 0);
    EXPECT_TRUE(file->WriteAt(0, "b", 1));
    EXPECT_FALSE(file->Remove());
    EXPECT_TRUE(CLockedFile::Create(Path("a"))) << "the name is free";
}

TEST_F(LockedFile, AFullDiskIsAFailureAndTheSamePlaceCanBeWrittenLater) {
    const auto file = CLockedFile::Create(Path("a"));
    {
        const KivoraTest::CFileSizeLimit limit(4);
        EXPECT_FALSE(file->WriteAt(0, "abcdef", 6));
    }
    EXPECT_TRUE(file->WriteAt(0, "abcdef", 6));
    EXPECT_EQ(ReadBytes("a"), "abcdef");
}

}  // namespace
