#include "nk/nk_ini_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "nk/nk_memory_file.h"
#include "unit/nk/CommaLocale.h"

namespace {

using namespace NK;

CIniFile IniOf(const std::string& text) {
    CMemoryFile file(text);
    CIniFile ini;
    EXPECT_TRUE(ini.Load(file));
    return ini;
}

CIniFile SectionOf(const std::string& lines) {
    CIniFile ini = IniOf("[S]\n" + lines);
    EXPECT_TRUE(ini.SelectSection(L"S"));
    return ini;
}

std::string TextOf(const CIniFile& ini) {
    CMemoryFile file;
    EXPECT_TRUE(ini.Write(file));
    return std::string(file.GetContent());
}

TEST(IniFile, SelectsASectionByItsExactHeader) {
    CIniFile ini = IniOf("[A]\nx=1\n [B]\n[B] \n[B]\nx=2\n[b]\n");
    EXPECT_EQ(ini.GetCursor(), -1);
    EXPECT_TRUE(ini.SelectSection(L"B", true));
    EXPECT_EQ(ini.GetCursor(), 4);
    EXPECT_TRUE(ini.SelectSection(L"b", true));
    EXPECT_EQ(ini.GetCursor(), 6);
    EXPECT_TRUE(ini.SelectSection(L"b", false));
    EXPECT_EQ(ini.GetCursor(), 4);
    EXPECT_FALSE(ini.SelectSection(L"C"));
    EXPECT_EQ(ini.GetCursor(), -1);
}

TEST(IniFile, FindsTheNextSectionOfAName) {
    CIniFile ini = IniOf("[A]\n[B]\n[A]\n[a]\n");
    EXPECT_TRUE(ini.FindNextSection(L"A", true));
    EXPECT_EQ(ini.GetCursor(), 0);
    EXPECT_TRUE(ini.FindNextSection(L"A", true));
    EXPECT_EQ(ini.GetCursor(), 2);
    EXPECT_TRUE(ini.FindNextSection(L"A", false));
    EXPECT_EQ(ini.GetCursor(), 3);
    EXPECT_FALSE(ini.FindNextSection(L"A", false));
    EXPECT_EQ(ini.GetCursor(), -1);
}

TEST(IniFile, AddsASectionToAnEmptyFile) {
    CIniFile ini;
    ini.SelectOrAddSection(L"S");
    EXPECT_EQ(ini.GetCursor(), 0);
    EXPECT_EQ(TextOf(ini), "[S]\n");
}

TEST(IniFile, AddsASectionAfterASeparatorLine) {
    CIniFile ini = IniOf("[A]\nx=1\n");
    ini.SelectOrAddSection(L"S");
    EXPECT_EQ(ini.GetCursor(), 3);
    EXPECT_EQ(TextOf(ini), "[A]\nx=1\n\n[S]\n");
}

TEST(IniFile, AddsASectionWithoutASecondSeparatorLine) {
    CIniFile ini = IniOf("[A]\n\n");
    ini.SelectOrAddSection(L"S");
    EXPECT_EQ(TextOf(ini), "[A]\n\n[S]\n");
}

TEST(IniFile, SelectsASectionThatIsThereInsteadOfAdding) {
    CIniFile ini = IniOf("[kivora]\nx=1\n");
    ini.SelectOrAddSection(L"Kivora", false);
    EXPECT_EQ(ini.GetCursor(), 0);
    ini.SelectOrAddSection(L"Kivora", true);
    EXPECT_EQ(TextOf(ini), "[kivora]\nx=1\n\n[Kivora]\n");
}

TEST(IniFile, NewKeysStandInReverseOrderUnderTheHeader) {
    CIniFile ini;
    ini.SelectOrAddSection(L"S");
    ini.SetString(L"A", L"1");
    ini.SetString(L"B", L"2");
    EXPECT_EQ(TextOf(ini), "[S]\nB=2\nA=1\n");
}

TEST(IniFile, ReplacesTheLineOfAKeyThatIsThere) {
    CIniFile ini = SectionOf("a=1\nB  =  2\n; B=9\n");
    ini.SetString(L"b", L"3", false);
    EXPECT_EQ(TextOf(ini), "[S]\na=1\nb=3\n; B=9\n");
    ini.SetString(L"B", L"4", true);
    EXPECT_EQ(TextOf(ini), "[S]\nB=4\na=1\nb=3\n; B=9\n");
}

TEST(IniFile, SettingWithoutASectionThrows) {
    CIniFile ini = IniOf("A=1\n");
    try {
        ini.SetString(L"A", L"2");
        FAIL();
    } catch (const CException& exception) {
        EXPECT_STREQ(exception.GetMessage(), L"Ini file cursor was not positioned before inserting a value.");
    }
    EXPECT_THROW(ini.SetInt(L"A", 2), CException);
    EXPECT_EQ(TextOf(ini), "A=1\n");
}

TEST(IniFile, WithoutASectionTheLinesBeforeTheFirstHeaderAreSearched) {
    const CIniFile ini = IniOf("A=1\n[S]\nB=2\n");
    EXPECT_EQ(ini.GetInt(L"A", 0), 1);
    EXPECT_EQ(ini.GetInt(L"B", 0), 0);
    EXPECT_FALSE(CIniFile().GetString(L"A"));
}

TEST(IniFile, AKeyInACommentLineIsNeverFound) {
    const CIniFile ini = SectionOf("; Volume=3\n;Volume=3\n#Volume=3\n'Volume=3\n");
    EXPECT_FALSE(ini.GetString(L"Volume"));
    EXPECT_FALSE(ini.GetString(L"; Volume"));
    EXPECT_FALSE(ini.GetString(L";Volume"));
    EXPECT_FALSE(ini.GetString(L"#Volume"));
    EXPECT_FALSE(ini.GetString(L"'Volume"));
}

TEST(IniFile, BlanksAroundTheEqualsSignAreSkipped) {
    const CIniFile ini = SectionOf("Volume   =   80\nTab\t=\t7\n");
    EXPECT_EQ(ini.GetString(L"Volume"), CString(L"80"));
    EXPECT_EQ(ini.GetInt(L"Volume", 1), 80);
    EXPECT_EQ(ini.GetInt(L"Tab", 1), 7);
}

TEST(IniFile, AnEmptyValueIsAValueButNoNumber) {
    const CIniFile ini = SectionOf("Volume=\nBlank=   \n");
    EXPECT_EQ(ini.GetString(L"Volume"), CString());
    EXPECT_EQ(ini.GetString(L"Blank"), CString());
    EXPECT_EQ(ini.GetInt(L"Volume", 17), 17);
    EXPECT_EQ(ini.GetHex(L"Volume", 17), 17U);
    EXPECT_EQ(ini.GetFloat(L"Volume", 1.5F), 1.5F);
    double value = 2.5;
    EXPECT_FALSE(ini.GetDouble(L"Volume", value));
    EXPECT_EQ(value, 2.5);
    bool flag = true;
    EXPECT_FALSE(ini.GetBool(L"Volume", flag));
    EXPECT_FALSE(ini.GetBool(L"Blank", flag));
    EXPECT_TRUE(flag);
}

TEST(IniFile, AKeyDoesNotMatchALongerOne) {
    const CIniFile ini = SectionOf("Volume=3\nVol2=4\nVol x=5\nVol=6\n");
    EXPECT_EQ(ini.GetInt(L"Vol", 0), 6);
    EXPECT_EQ(ini.GetInt(L"Volum", 0), 0);
    EXPECT_EQ(ini.GetInt(L"Volume12", 0), 0);
}

TEST(IniFile, AKeyMustBeginItsLine) {
    EXPECT_FALSE(SectionOf(" Volume=3\n").GetString(L"Volume"));
}

TEST(IniFile, TheFirstOfEqualKeysCounts) {
    EXPECT_EQ(SectionOf("A=1\nA=2\n").GetInt(L"A", 0), 1);
}

TEST(IniFile, ASectionEndsAtTheNextLineThatBeginsWithABracket) {
    const CIniFile ini = SectionOf("A=1\n[not a header\nB=2\n");
    EXPECT_EQ(ini.GetInt(L"A", 0), 1);
    EXPECT_FALSE(ini.GetString(L"B"));
}

TEST(IniFile, TheCursorOnTheLastLineFindsNothing) {
    EXPECT_FALSE(SectionOf("").GetString(L"A"));
}

TEST(IniFile, KeysAreComparedWithOrWithoutCaseAsAsked) {
    const CIniFile ini = SectionOf("\xD0\x9A\xD0\xBB=1\n");
    EXPECT_EQ(ini.GetInt(L"\u043A\u043B", 0, false), 1);
    EXPECT_EQ(ini.GetInt(L"\u043A\u043B", 0, true), 0);
    EXPECT_EQ(ini.GetInt(L"\u041A\u043B", 0, true), 1);
}

TEST(IniFile, AValueKeepsItsTrailingBlanksAndLaterEqualsSigns) {
    EXPECT_EQ(SectionOf("A= x = y \t\n").GetString(L"A"), CString(L"x = y \t"));
    EXPECT_EQ(SectionOf("A==\n").GetString(L"A"), CString(L"="));
}

TEST(IniFile, WholeNumbersAreScannedAsTheCLibraryScansThem) {
    const CIniFile ini = SectionOf("A=-12xyz\nB=+3\nC=x\nD=99999999999\nE=0x10\nF=12.9\n");
    EXPECT_EQ(ini.GetInt(L"A", 5), -12);
    EXPECT_EQ(ini.GetInt(L"B", 5), 3);
    EXPECT_EQ(ini.GetInt(L"C", 5), 5);
    EXPECT_EQ(ini.GetInt(L"D", 5), 5);
    EXPECT_EQ(ini.GetInt(L"E", 5), 0);
    EXPECT_EQ(ini.GetInt(L"F", 5), 12);
    EXPECT_EQ(ini.GetInt(L"none", 5), 5);
}

TEST(IniFile, HexadecimalNumbers) {
    const CIniFile ini = SectionOf("A=5395ff\nB=0x5395FF\nC=#5395ff\n");
    EXPECT_EQ(ini.GetHex(L"A", 1), 0x5395ffU);
    EXPECT_EQ(ini.GetHex(L"B", 1), 0x5395ffU);
    EXPECT_EQ(ini.GetHex(L"C", 1), 1U);
    EXPECT_EQ(ini.GetHex(L"none", 1), 1U);
}

TEST(IniFile, FloatingPointNumbers) {
    const CIniFile ini = SectionOf("A=1.5\nB=-2e3 etc\nC=x\nD=1,5\nE=NaN\nF=1e309\n");
    EXPECT_EQ(ini.GetFloat(L"A", 9), 1.5F);
    EXPECT_EQ(ini.GetFloat(L"B", 9), -2000.0F);
    EXPECT_EQ(ini.GetFloat(L"C", 9), 9.0F);
    EXPECT_EQ(ini.GetFloat(L"D", 9), 1.0F);
    EXPECT_EQ(ini.GetFloat(L"none", 9), 9.0F);
    double value = 9;
    EXPECT_TRUE(ini.GetDouble(L"A", value));
    EXPECT_EQ(value, 1.5);
    EXPECT_FALSE(ini.GetDouble(L"C", value));
    EXPECT_FALSE(ini.GetDouble(L"none", value));
    EXPECT_EQ(value, 1.5);
    EXPECT_TRUE(ini.GetDouble(L"E", value));
    EXPECT_TRUE(std::isnan(value));
    EXPECT_TRUE(ini.GetDouble(L"F", value));
    EXPECT_TRUE(std::isinf(value));
}

TEST(IniFile, BooleansTakeTheirWordsInAnyCase) {
    for (const char* const word :
         {"1", "y", "Yes", "ON", "True", "enable", "Enabled", " enabled \t", "2", "-1", "7x"}) {
        bool value = false;
        EXPECT_TRUE(SectionOf(std::string("A=") + word + "\n").GetBool(L"A", value)) << word;
        EXPECT_TRUE(value) << word;
    }
    for (const char* const word : {"0", "N", "no", "OFF", "false", "Disable", "disabled", "off  ", "00", "0.9"}) {
        bool value = true;
        EXPECT_TRUE(SectionOf(std::string("A=") + word + "\n").GetBool(L"A", value)) << word;
        EXPECT_FALSE(value) << word;
    }
    for (const char* const word : {"maybe", "yess", "", "-", "t"}) {
        for (bool value : {false, true}) {
            const bool before = value;
            EXPECT_FALSE(SectionOf(std::string("A=") + word + "\n").GetBool(L"A", value)) << word;
            EXPECT_EQ(value, before) << word;
        }
    }
    bool value = true;
    EXPECT_FALSE(SectionOf("B=1\n").GetBool(L"A", value));
}

TEST(IniFile, WritesNumbersAsText) {
    CIniFile ini;
    ini.SelectOrAddSection(L"S");
    ini.SetInt(L"A", -5);
    ini.SetUnsigned(L"B", 4294967295U);
    ini.SetHex(L"C", 83 * 65536 + 149 * 256 + 255);
    ini.SetDouble(L"D", 0.1);
    EXPECT_EQ(TextOf(ini), "[S]\nD=0.1\nC=5395ff\nB=4294967295\nA=-5\n");
    double value = 0;
    EXPECT_TRUE(ini.GetDouble(L"D", value));
    EXPECT_EQ(value, 0.1);
}

TEST(IniFile, ALineFeedIsNeverWrittenAsOne) {
    CIniFile ini;
    ini.SelectOrAddSection(L"S\n[T]");
    EXPECT_TRUE(ini.SelectSection(L"S\n[T]"));
    ini.SetString(L"A", L"one\ntwo\r\n[three]");
    EXPECT_EQ(TextOf(ini), "[S [T]]\nA=one two  [three]\n");
}

TEST(IniFile, LinesThatAreNotOursAreKept) {
    const std::string text = "preamble\n; comment\n[A\nno key\n=value\n\n[S]\nkeep = me\n# x\n";
    CIniFile ini = IniOf(text);
    EXPECT_EQ(TextOf(ini), text);
    ASSERT_TRUE(ini.SelectSection(L"S"));
    ini.SetInt(L"new", 1);
    EXPECT_EQ(TextOf(ini), "preamble\n; comment\n[A\nno key\n=value\n\n[S]\nnew=1\nkeep = me\n# x\n");
}

TEST(IniFile, AFailedWriteIsReported) {
    CIniFile ini = SectionOf("A=1\n");
    class CFullFile : public CMemoryFile {
    public:
        std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) override {
            return CMemoryFile::Write(buffer, elementSize, count > 1 ? count - 1 : 0);
        }
    } file;
    EXPECT_FALSE(ini.Write(file));
}

using IniFileInCommaLocale = KivoraTest::CCommaLocaleTest;

TEST_F(IniFileInCommaLocale, FloatsReadThePointAndLeaveTheNumericCategoryAtC) {
    const CIniFile ini = SectionOf("A=1.25\n");
    EXPECT_TRUE(IsComma());
    EXPECT_EQ(ini.GetFloat(L"A", 0), 1.25F);
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_FALSE(IsComma());
}

TEST_F(IniFileInCommaLocale, DoublesReadThePointAndLeaveTheNumericCategoryAtCEvenOnFailure) {
    const CIniFile ini = SectionOf("A=1.25\n");
    double value = 0;
    EXPECT_TRUE(ini.GetDouble(L"A", value));
    EXPECT_EQ(value, 1.25);
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(IniFileInCommaLocale, ReadingWholeNumbersAndWritingTouchNoLocale) {
    CIniFile ini = SectionOf("A=1.25\n");
    EXPECT_EQ(ini.GetInt(L"A", 0), 1);
    ini.SetDouble(L"B", 2.5);
    EXPECT_EQ(TextOf(ini), "[S]\nB=2.5\nA=1.25\n");
    EXPECT_TRUE(IsComma());
}

TEST_F(IniFileInCommaLocale, ThreadsReadFloatsAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            const CIniFile ini = SectionOf("A=1.25\n");
            for (int round = 0; round < 500; ++round) {
                double value = 0;
                EXPECT_TRUE(ini.GetDouble(L"A", value));
                EXPECT_EQ(value, 1.25);
                EXPECT_EQ(CString::Format(L"%.2f", value), L"1.25");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

}  // namespace
