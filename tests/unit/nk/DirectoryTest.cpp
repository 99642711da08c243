#include "nk/nk_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>

#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

using Directory = KivoraTest::CTempFolderTest;

/// A list that cannot grow above what it has room for.
class CFullList : public CStringArray {
public:
    void SetSize(std::uint32_t newSize, bool keepContents, std::uint32_t growBy) override {
        if (newSize > 2) {
            throw CMemoryException();
        }
        CStringArray::SetSize(newSize, keepContents, growBy);
    }
};

TEST_F(Directory, ListsEveryFileAndNoFolder) {
    WriteBytes("a.kivoraLXPreset", "");
    WriteBytes("no extension", "");
    WriteBytes(".hidden", "");
    WriteBytes("\xD0\x9D.b", "");
    std::filesystem::create_directory(Native("folder.kivoraLXPreset"));
    std::filesystem::create_symlink("a.kivoraLXPreset", Native("link"));
    std::filesystem::create_symlink("folder.kivoraLXPreset", Native("folder link"));
    std::filesystem::create_symlink("nothing", Native("dangling"));
    CStringArray names;
    names.Push(L"old");
    EXPECT_TRUE(ListFiles(Path(""), names));
    EXPECT_EQ(names.GetSize(), 5U);
    for (const wchar_t* const name : {L"a.kivoraLXPreset", L"no extension", L".hidden", L"\u041D.b", L"link"}) {
        EXPECT_EQ(names.Count(name), 1U) << CString(name).ToUtf8();
    }
}

TEST_F(Directory, AnEmptyFolderGivesAnEmptyList) {
    CStringArray names;
    EXPECT_TRUE(ListFiles(Path(""), names));
    EXPECT_TRUE(names.IsEmpty());
}

TEST_F(Directory, AFolderThatCannotBeReadIsReported) {
    CStringArray names;
    names.Push(L"old");
    EXPECT_FALSE(ListFiles(Path("none"), names));
    EXPECT_TRUE(names.IsEmpty());
    WriteBytes("file", "");
    EXPECT_FALSE(ListFiles(Path("file"), names));
}

TEST_F(Directory, AListThatCannotGrowIsReportedAsOutOfMemory) {
    for (const char* const name : {"a", "b", "c"}) {
        WriteBytes(name, "");
    }
    CFullList names;
    try {
        ListFiles(Path(""), names);
        FAIL();
    } catch (const CException& exception) {
        EXPECT_STREQ(exception.GetMessage(), L"Out of memory.");
    }
}

TEST_F(Directory, CreatesFoldersWithTheirParentsAnd0755) {
    const mode_t mask = umask(0);
    EXPECT_TRUE(CreateFolder(Path("Brennholt/Kivora/Presets/")));
    umask(mask);
    for (const char* const name : {"Brennholt", "Brennholt/Kivora", "Brennholt/Kivora/Presets"}) {
        struct stat status {};
        ASSERT_EQ(stat(Native(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0755U) << name;
    }
    EXPECT_TRUE(CreateFolder(Path("Brennholt/Kivora"))) << "it stands there already";
    WriteBytes("file", "");
    EXPECT_FALSE(CreateFolder(Path("file")));
    EXPECT_FALSE(CreateFolder(Path("file/below")));
    EXPECT_FALSE(CreateFolder(L""));
    EXPECT_TRUE(CreateFolder(L"/"));
}

TEST_F(Directory, TellsFilesFromFolders) {
    WriteBytes("file", "");
    EXPECT_TRUE(FileExists(Path("file")));
    EXPECT_FALSE(FolderExists(Path("file")));
    EXPECT_TRUE(FolderExists(Path("")));
    EXPECT_FALSE(FileExists(Path("")));
    EXPECT_FALSE(FileExists(Path("none")));
    EXPECT_FALSE(FolderExists(Path("none")));
    EXPECT_FALSE(FileExists(L"/dev/null"));
}

TEST_F(Directory, RemovesAndRenamesFiles) {
    WriteBytes("a", "A");
    WriteBytes("b", "B");
    EXPECT_TRUE(RenameFile(Path("a"), Path("b")));
    EXPECT_EQ(ReadBytes("b"), "A");
    EXPECT_FALSE(RenameFile(Path("a"), Path("c")));
    EXPECT_FALSE(RemoveFile(Path("a")));
    EXPECT_TRUE(RemoveFile(Path("b")));
    std::filesystem::create_directory(Native("folder"));
    EXPECT_FALSE(RemoveFile(Path("folder")));
    EXPECT_EQ(CountEntries(), 1);
}

}  // namespace
