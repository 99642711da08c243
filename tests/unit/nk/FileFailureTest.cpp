#include "nk/nk_file_failure.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>

#include "nk/nk_atomic_save.h"
#include "nk/nk_directory.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_locked_file.h"
#include "nk/nk_translate.h"
#include "support/FileSizeLimit.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

class FileFailures : public KivoraTest::CTempFolderTest {
protected:
    FileFailures() { ForgetFileFailure(); }
    void ExpectFailure(const CString& path, int error) {
        EXPECT_EQ(GetFileFailure().path, path);
        EXPECT_EQ(GetFileFailure().error, error) << DescribeFileError(GetFileFailure().error).ToUtf8();
        ForgetFileFailure();
        EXPECT_TRUE(GetFileFailure().path.IsEmpty());
        EXPECT_EQ(GetFileFailure().error, 0);
    }
    bool Save(const CString& path, std::size_t size = 10) {
        const std::string text(size, 'x');
        return SaveAtomically(path, [&](CFile& file) { return file.Write(text.data(), 1, size) == size; });
    }
    CString Fifo() {
        const CString path = Path("fifo");
        EXPECT_EQ(mkfifo(path.ToUtf8().c_str(), 0600), 0);
        return path;
    }
};

TEST_F(FileFailures, WhatSucceedsLeavesNone) {
    EXPECT_TRUE(Save(Path("a")));
    EXPECT_TRUE(CreateFolder(Path("")));
    EXPECT_TRUE(CreateFolder(Path("folder/below")));
    EXPECT_TRUE(CDiskFile(Path("a"), CDiskFile::kRead).IsOpen());
    EXPECT_TRUE(CIniFile().Load(Path("a")));
    EXPECT_TRUE(RenameFile(Path("a"), Path("b")));
    EXPECT_TRUE(RemoveFile(Path("b")));
    ExpectFailure({}, 0);
}

TEST_F(FileFailures, ASaveTellsItsTargetAndTheReason) {
    EXPECT_FALSE(Save(Path("missing/a")));
    ExpectFailure(Path("missing/a"), ENOENT);
    CreateFolder(Path("folder"));
    EXPECT_FALSE(Save(Path("folder")));
    ExpectFailure(Path("folder"), kErrorNoRegularFile);
    EXPECT_FALSE(Save(Path(std::string(300, 'n').c_str())));
    ExpectFailure(Path(std::string(300, 'n').c_str()), ENAMETOOLONG);
    const KivoraTest::CFileSizeLimit full(1000);
    for (const std::size_t size : {2000U, 200'000U}) {
        EXPECT_FALSE(Save(Path("a"), size)) << "in the buffer till the end, or not";
        ExpectFailure(Path("a"), EFBIG);
    }
    EXPECT_FALSE(SaveAtomically(Path("a"), [](CFile&) { return false; }));
    ExpectFailure(Path("a"), kErrorUnknown);
}

TEST_F(FileFailures, SoDoLoadingAndOpening) {
    CIniFile ini;
    EXPECT_FALSE(ini.Load(Path("absent")));
    ExpectFailure(Path("absent"), ENOENT);
    EXPECT_FALSE(ini.Load(L"/proc/self/mem"));
    ExpectFailure(L"/proc/self/mem", EIO);
    WriteBytes("large", std::string(CIniFile::kMaxBytes + 1, 'x'));
    EXPECT_FALSE(ini.Load(Path("large")));
    ExpectFailure(Path("large"), kErrorTooLarge);
    EXPECT_FALSE(CreateFolder(Path("large/below/it")));
    ExpectFailure(Path("large/below/it"), ENOTDIR);
    EXPECT_FALSE(RemoveFile(Path("absent")));
    ExpectFailure(Path("absent"), ENOENT);
    EXPECT_FALSE(RenameFile(Path("absent"), Path("b")));
    ExpectFailure(Path("absent"), ENOENT);
    EXPECT_EQ(CLockedFile::Create(Path("missing/a")), nullptr);
    ExpectFailure(Path("missing/a"), ENOENT);
    EXPECT_EQ(CLockedFile::Claim(Path("absent")), nullptr);
    ExpectFailure(Path("absent"), ENOENT);
    EXPECT_EQ(CLockedFile::Claim(L"/dev/null"), nullptr);
    ExpectFailure(L"/dev/null", kErrorNoRegularFile);
    const auto held = CLockedFile::Create(Path("held"));
    EXPECT_EQ(CLockedFile::Claim(Path("held")), nullptr);
    EXPECT_EQ(GetFileFailure().error, 0) << "somebody else's is no failure";
    CStringArray names;
    EXPECT_FALSE(ListFiles(Path("absent"), names));
    ExpectFailure(Path("absent"), ENOENT);
}

TEST_F(FileFailures, NobodyWaitsForWhatIsNoFile) {
    const CString fifo = Fifo();
    for (const int mode : {CDiskFile::kRead, CDiskFile::kWrite, CDiskFile::kUpdate, CDiskFile::kCreate,
                           CDiskFile::kAppend, CDiskFile::kReadAppend}) {
        EXPECT_FALSE(CDiskFile(fifo, mode).IsOpen());
        ExpectFailure(fifo, kErrorNoRegularFile);
    }
    EXPECT_FALSE(CDiskFile(L"/dev/tty", CDiskFile::kRead).IsOpen());
    EXPECT_FALSE(CDiskFile(L"/dev/ptmx", CDiskFile::kUpdate).IsOpen());
    ForgetFileFailure();
    EXPECT_FALSE(CIniFile().Load(fifo));
    ExpectFailure(fifo, kErrorNoRegularFile);
    EXPECT_FALSE(Save(fifo));
    ExpectFailure(fifo, kErrorNoRegularFile);
    EXPECT_TRUE(std::filesystem::is_fifo(Native("fifo")));
    EXPECT_TRUE(CDiskFile(L"/dev/null", CDiskFile::kWrite).IsOpen()) << "there is nobody to wait for";
}

TEST_F(FileFailures, EachThreadHasItsOwn) {
    RemoveFile(Path("absent"));
    std::thread([] { EXPECT_EQ(GetFileFailure().error, 0); }).join();
    ExpectFailure(Path("absent"), ENOENT);
}

TEST(FileErrors, HaveWords) {
    EXPECT_EQ(DescribeFileError(ENOSPC), L"No space left on device");
    EXPECT_EQ(DescribeFileError(kErrorNoRegularFile), L"It is no regular file");
    EXPECT_EQ(DescribeFileError(kErrorTooLarge), L"It is too large");
    EXPECT_EQ(DescribeFileError(kErrorUnknown), L"");
    EXPECT_EQ(DescribeFileError(0), L"");
    EXPECT_FALSE(DescribeFileError(EDOM).IsEmpty()) << "the system's, of what no file meets";
    EXPECT_FALSE(DescribeFileError(99999).IsEmpty());
}

TEST(FileErrors, AreTranslated) {
    SetTranslateFunction([](const char* context, const char* text, const char*) {
        return CString::FromUtf8(std::string(context) + ": " + text);
    });
    EXPECT_EQ(DescribeFileError(EACCES), L"Files: Permission denied");
    SetTranslateFunction(nullptr);
}

}  // namespace
