#include "nk/nk_paths.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "nk/nk_directory.h"

namespace {

using namespace NK;

TEST(Paths, TheUsersDataFolderFollowsTheEnvironment) {
    setenv("HOME", "/home/player", 1);
    setenv("XDG_DATA_HOME", "/data/\xD0\x9D", 1);
    EXPECT_EQ(GetUserDataBaseDir(), L"/data/\u041D");
    EXPECT_EQ(ComposeUserDataDir(L"Brennholt", L"Kivora"), L"/data/\u041D/Brennholt/Kivora");
    setenv("XDG_DATA_HOME", "/data/", 1);
    EXPECT_EQ(GetUserDataBaseDir(), L"/data");
    for (const char* const ignored : {"", "relative/path"}) {
        setenv("XDG_DATA_HOME", ignored, 1);
        EXPECT_EQ(GetUserDataBaseDir(), L"/home/player/.local/share");
    }
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(ComposeUserDataDir(L"Brennholt", L"Kivora"), L"/home/player/.local/share/Brennholt/Kivora");
    unsetenv("HOME");
    EXPECT_GT(GetUserDataBaseDir().Find(L"/.local/share"), 0);
}

TEST(Paths, TheExecutablesFolderHoldsTheExecutable) {
    const CString folder = GetExecutableDir();
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(folder.ToUtf8(), program.parent_path().string());
    EXPECT_TRUE(FileExists(JoinPath(folder, CString::FromUtf8(program.filename().string()))));
}

TEST(Paths, JoinsAndTakesApart) {
    EXPECT_EQ(JoinPath(L"a", L"b"), L"a/b");
    EXPECT_EQ(JoinPath(L"a/", L"b"), L"a/b");
    EXPECT_EQ(JoinPath(L"/", L"b"), L"/b");
    EXPECT_EQ(JoinPath(L"", L"b"), L"b");
    EXPECT_EQ(GetFolderName(L"/a/b"), L"/a");
    EXPECT_EQ(GetFolderName(L"/a"), L"/");
    EXPECT_EQ(GetFolderName(L"a"), L"");
    EXPECT_EQ(GetFileName(L"/a/b.c"), L"b.c");
    EXPECT_EQ(GetFileName(L"/a/"), L"");
    EXPECT_EQ(GetFileExtension(L"/x.y/My.first.kivoraLXPreset"), L"kivoraLXPreset");
    EXPECT_EQ(GetFileStem(L"/x.y/My.first.kivoraLXPreset"), L"My.first");
    EXPECT_EQ(GetFileExtension(L"/x.y/name"), L"");
    EXPECT_EQ(GetFileStem(L"/x.y/name"), L"name");
    EXPECT_EQ(GetFileExtension(L".hidden"), L"");
    EXPECT_EQ(GetFileStem(L".hidden"), L".hidden");
    EXPECT_EQ(GetFileExtension(L"name."), L"");
    EXPECT_EQ(GetFileStem(L"name."), L"name");
}

}  // namespace
