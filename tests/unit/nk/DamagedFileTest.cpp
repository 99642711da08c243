#include "nk/nk_damaged_file.h"

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/TemporaryFolder.h"

using namespace KivoraTest;

namespace {

class DamagedFile : public testing::Test {
protected:
    DamagedFile() { file.SelectOrAddSection(L"New"); }

    CTemporaryFolder folder;
    const std::filesystem::path path = folder / "a.ini";
    const NK::CString name = NK::CString::FromUtf8(path.native());
    NK::CIniFile file;
    NK::CString setAside;
};

}  // namespace

TEST_F(DamagedFile, WhatWasThereIsKeptUnderANewName) {
    WriteFileBytes(path, "old");
    EXPECT_TRUE(NK::SaveOverDamaged(file, name, setAside));
    EXPECT_EQ(setAside, name + L".bad");
    EXPECT_EQ(ReadFileBytes(path.native() + ".bad"), "old");
    EXPECT_EQ(ReadFileBytes(path), "[New]\n");
}

TEST_F(DamagedFile, NoEarlierOneIsOverwritten) {
    WriteFileBytes(folder / "a.ini.bad", "first");
    std::filesystem::create_directory(folder / "a.ini.bad2");
    WriteFileBytes(path, "third");
    EXPECT_TRUE(NK::SaveOverDamaged(file, name, setAside));
    EXPECT_EQ(setAside, name + L".bad3");
    EXPECT_EQ(ReadFileBytes(folder / "a.ini.bad"), "first");
    EXPECT_EQ(ReadFileBytes(folder / "a.ini.bad3"), "third");
}

TEST_F(DamagedFile, WhereNoNameIsLeftNothingIsSaved) {
    WriteFileBytes(folder / "a.ini.bad", "");
    for (int number = 2; number < 100; ++number) {
        WriteFileBytes(folder / ("a.ini.bad" + std::to_string(number)), "");
    }
    WriteFileBytes(path, "old");
    EXPECT_FALSE(NK::SaveOverDamaged(file, name, setAside));
    EXPECT_TRUE(setAside.IsEmpty());
    EXPECT_EQ(ReadFileBytes(path), "old");
}

TEST_F(DamagedFile, WhenTheSavingFailsTheFileIsAsItWas) {
    WriteFileBytes(path, "old");
    const std::wstring tooMuch(static_cast<std::size_t>(NK::CIniFile::kMaxBytes), L'x');
    file.SetString(L"Key", std::wstring_view(tooMuch));
    EXPECT_FALSE(NK::SaveOverDamaged(file, name, setAside));
    EXPECT_TRUE(setAside.IsEmpty());
    EXPECT_EQ(TakeSnapshot(folder.GetPath()), (std::map<std::string, std::string>{{"a.ini", "old"}}));
}
