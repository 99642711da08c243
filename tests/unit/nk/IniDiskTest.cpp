#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstring>
#include <string>

#include "nk/nk_disk_file.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_memory_file.h"
#include "support/AllocationCounter.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;
using LoadResult = CIniFile::LoadResult;

using IniOnDisk = KivoraTest::CTempFolderTest;

LoadResult ResultOf(const std::string& text) {
    CMemoryFile file(text);
    CIniFile ini;
    const bool loaded = ini.Load(file);
    EXPECT_EQ(loaded, ini.GetLoadResult() == LoadResult::kLoaded);
    EXPECT_TRUE(loaded || ini.IsEmpty());
    return ini.GetLoadResult();
}

/// A file without an end that counts what is read from it.
class CEndlessFile : public CMemoryFile {
public:
    std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) override {
        std::memset(buffer, 'x', elementSize * count);
        read += elementSize * count;
        return count;
    }
    std::size_t read = 0;
};

/// A file whose medium fails in the middle.
class CBrokenFile : public CMemoryFile {
public:
    using CMemoryFile::CMemoryFile;
    bool IsEOF() const override { return false; }
};

TEST_F(IniOnDisk, LoadsAndRemembersTheName) {
    WriteBytes("a.ini", "[S]\nA=1\n");
    CIniFile ini;
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kAbsent);
    EXPECT_TRUE(ini.Load(Path("a.ini")));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kLoaded);
    EXPECT_EQ(ini.GetFileName(), Path("a.ini"));
    EXPECT_EQ(ini.GetSize(), 2U);
    EXPECT_EQ(ini.GetCursor(), -1);
}

TEST_F(IniOnDisk, TellsWhyAFileCannotBeLoaded) {
    CIniFile ini;
    WriteBytes("good", "[S]\n");
    ASSERT_TRUE(ini.Load(Path("good")));
    ASSERT_TRUE(ini.SelectSection(L"S"));
    EXPECT_FALSE(ini.Load(Path("absent")));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kAbsent);
    EXPECT_EQ(ini.GetFileName(), Path("good"));
    EXPECT_TRUE(ini.IsEmpty());
    EXPECT_EQ(ini.GetCursor(), -1);
    EXPECT_FALSE(ini.Load(Path("good/below")));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kAbsent);
    EXPECT_FALSE(ini.Load(Path("")));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kUnreadable) << "a folder";
    EXPECT_FALSE(ini.Load(L"/proc/self/mem"));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kUnreadable) << "opens, but reading fails";
    EXPECT_FALSE(ini.Load(L"/dev/zero"));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kDamaged);
    EXPECT_EQ(ini.GetFileName(), Path("good"));
}

TEST_F(IniOnDisk, AnEmptyFileLoads) {
    WriteBytes("empty", "");
    CIniFile ini;
    EXPECT_TRUE(ini.Load(Path("empty")));
    EXPECT_TRUE(ini.IsEmpty());
    EXPECT_TRUE(ini.Save(Path("empty")));
    EXPECT_EQ(ReadBytes("empty"), "");
}

TEST_F(IniOnDisk, AMegabyteLoadsAndAByteMoreIsDamaged) {
    const std::string line = std::string(1023, 'x') + "\n";
    std::string text;
    for (int i = 0; i < 1024; ++i) {
        text += line;
    }
    EXPECT_EQ(ResultOf(text), LoadResult::kLoaded);
    EXPECT_EQ(ResultOf(text + "y"), LoadResult::kDamaged);
}

TEST_F(IniOnDisk, FiftyThousandLinesLoadAndOneMoreIsDamaged) {
    const std::string text(50000, '\n');
    EXPECT_EQ(ResultOf(text), LoadResult::kLoaded);
    EXPECT_EQ(ResultOf(text + "\n"), LoadResult::kDamaged);
    EXPECT_EQ(ResultOf(text + "x"), LoadResult::kDamaged);
    EXPECT_EQ(ResultOf(std::string(49999, '\n') + "x"), LoadResult::kLoaded);
}

TEST_F(IniOnDisk, NoMoreThanTheLimitIsReadOfAnEndlessFile) {
    CEndlessFile file;
    CIniFile ini;
    EXPECT_FALSE(ini.Load(file));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kDamaged);
    EXPECT_LE(file.read, static_cast<std::size_t>(CIniFile::kMaxBytes) + 1);
}

TEST_F(IniOnDisk, AReadErrorIsNotTakenForTheEnd) {
    CBrokenFile file("[S]\nA=1\n");
    CIniFile ini;
    EXPECT_FALSE(ini.Load(file));
    EXPECT_EQ(ini.GetLoadResult(), LoadResult::kUnreadable);
    EXPECT_TRUE(ini.IsEmpty());
}

TEST_F(IniOnDisk, ReadsAByteOrderMarkAndCarriageReturns) {
    WriteBytes("dos", "\xEF\xBB\xBF[S]\r\nA=1\r\nB=\xC3\xA9\r\r\nlast=2");
    CIniFile ini;
    ASSERT_TRUE(ini.Load(Path("dos")));
    ASSERT_TRUE(ini.SelectSection(L"S"));
    EXPECT_EQ(ini.GetString(L"A"), CString(L"1"));
    EXPECT_EQ(ini.GetString(L"B"), CString(L"\u00E9"));
    EXPECT_EQ(ini.GetInt(L"last", 0), 2);
    EXPECT_TRUE(ini.Save(Path("unix")));
    EXPECT_EQ(ReadBytes("unix"), "[S]\nA=1\nB=\xC3\xA9\nlast=2\n");
}

TEST_F(IniOnDisk, ALineThatIsNotUtf8IsReadAsLatin1) {
    WriteBytes("latin", "[S]\n; caf\xE9\nA=\xC3\xA9\n");
    CIniFile ini;
    ASSERT_TRUE(ini.Load(Path("latin")));
    EXPECT_EQ(ini[1], L"; caf\u00E9");
    EXPECT_TRUE(ini.Save(Path("latin")));
    EXPECT_EQ(ReadBytes("latin"), "[S]\n; caf\xC3\xA9\nA=\xC3\xA9\n");
}

TEST_F(IniOnDisk, WritesTheReferenceFile) {
    CIniFile ini;
    ini.SelectOrAddSection(L"Kivora");
    ini.SetString(L"Input", L"Keystation 61 MK3");
    ini.SetString(L"Output", L"Software synthesizer");
    ini.SetInt(L"VelocityLow", 40);
    ini.SetInt(L"ShowNoteNames", 0);
    ini.SetHex(L"UIDisplayColorRGB", 0x5395ff);
    ini.SetString(L"Wallpaper", L"/home/\u0418\u0440\u0438\u043D\u0430/\u043E\u0431\u043E\u0438 1.png");
    ini.SetDouble(L"Scale", 0.75);
    ini.SelectOrAddSection(L"Kivora_Arpeggiator0");
    ini.SetInt(L"Bypass", 1);
    ini.SelectOrAddSection(L"Kivora");
    ini.SetInt(L"VelocityLow", 41);
    ASSERT_TRUE(ini.Save(Path("Kivora.ini")));
    EXPECT_EQ(ini.GetFileName(), Path("Kivora.ini"));
    const std::filesystem::path golden = std::filesystem::path(KIVORA_GOLDEN_DIR) / "nk" / "settings.ini";
    std::ifstream stream(golden, std::ios::binary);
    const std::string expected{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    EXPECT_EQ(ReadBytes("Kivora.ini"), expected);
    CIniFile back;
    ASSERT_TRUE(back.Load(Path("Kivora.ini")));
    EXPECT_TRUE(std::equal(back.begin(), back.end(), ini.begin(), ini.end()));
}

TEST_F(IniOnDisk, AFailedSaveLeavesTheOldFileAndTheName) {
    WriteBytes("a.ini", "[S]\nA=1\n");
    CIniFile ini;
    ASSERT_TRUE(ini.Load(Path("a.ini")));
    for (int i = 0; i < 1000; ++i) {
        ini.Push(CString::FromInt(i));
    }
    void (*const handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{100, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool saved = ini.Save(Path("a.ini"));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(saved);
    EXPECT_EQ(ReadBytes("a.ini"), "[S]\nA=1\n");
    EXPECT_EQ(CountEntries(), 1);
    EXPECT_FALSE(ini.Save(Path("none/b.ini")));
    EXPECT_EQ(ini.GetFileName(), Path("a.ini"));
    EXPECT_EQ(ini.GetSize(), 1002U);
}

TEST_F(IniOnDisk, WhatCouldNotBeLoadedAgainIsNotSaved) {
    WriteBytes("a.ini", "[S]\n");
    CIniFile ini;
    ASSERT_TRUE(ini.Load(Path("a.ini")));
    ASSERT_TRUE(ini.SelectSection(L"S"));
    const std::wstring value(1024 * 1024 - 4 - 3, L'x');  // less the header, and "A=" with its line feed
    ini.SetString(L"A", (value + L"x").c_str());
    EXPECT_FALSE(ini.Save(Path("a.ini")));
    EXPECT_EQ(ReadBytes("a.ini"), "[S]\n");
    ini.SetString(L"A", value.c_str());
    EXPECT_TRUE(ini.Save(Path("a.ini")));
    EXPECT_TRUE(ini.Load(Path("a.ini")));
    ini.SetSize(50001, false);
    EXPECT_FALSE(ini.Save(Path("a.ini")));
    ini.SetSize(50000);
    EXPECT_TRUE(ini.Save(Path("a.ini")));
    EXPECT_TRUE(ini.Load(Path("a.ini")));
    EXPECT_EQ(ini.GetSize(), 50000U);
}

TEST_F(IniOnDisk, LoadingAllocatesInProportionToTheLines) {
    std::string text;
    for (int i = 0; i < 50000; ++i) {
        text += "Key=" + std::to_string(i) + "\n";
    }
    CMemoryFile file(text);
    CIniFile ini;
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    ASSERT_TRUE(ini.Load(file));
    EXPECT_LT(KivoraTest::GetAllocationCount() - before, 50100U);
    EXPECT_EQ(ini.GetSize(), 50000U);
    EXPECT_EQ(ini[49999], L"Key=49999");
}

}  // namespace
