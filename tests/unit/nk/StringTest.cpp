#include "nk/nk_string.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/AllocationCounter.h"
#include "unit/nk/CommaLocale.h"

namespace {

using namespace NK;

TEST(String, AnEmptyStringHasSizeOne) {
    const wchar_t* const none = nullptr;
    const char* const narrowNone = nullptr;
    for (const CString& text : {CString(), CString(L""), CString(none), CString(narrowNone), CString::FromUtf8("")}) {
        EXPECT_EQ(text.GetSize(), 1U);
        EXPECT_EQ(text.GetLength(), 0U);
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_STREQ(text.c_str(), L"");
        EXPECT_EQ(text[0], L'\0');
        EXPECT_EQ(text, L"");
    }
}

TEST(String, SizeCountsTheTerminator) {
    const CString text(L"abc");
    EXPECT_EQ(text.GetLength(), 3U);
    EXPECT_EQ(text.GetSize(), 4U);
    EXPECT_EQ(text[3], L'\0');
    EXPECT_THROW(static_cast<void>(text[4]), CArrayIndexException);
    EXPECT_THROW(static_cast<void>(CString()[1]), CArrayIndexException);
}

TEST(String, AMovedFromOrClearedStringIsEmpty) {
    CString text(L"abc");
    CString taken(std::move(text));
    EXPECT_EQ(taken, L"abc");
    EXPECT_EQ(text, L"");  // NOLINT(bugprone-use-after-move): what is left is the contract
    text = L"old";
    text = std::move(taken);
    EXPECT_EQ(text, L"abc");
    EXPECT_EQ(taken, L"") << "not what the target held before";  // NOLINT(bugprone-use-after-move)
    text.Clear();
    EXPECT_EQ(text.GetSize(), 1U);
    text += L"x";
    EXPECT_EQ(text, L"x");
}

TEST(String, AnEmptyStringAllocatesNothing) {
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    const CString text;
    const CString copy(text);
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
}

TEST(String, Appends) {
    CString text;
    text += L"ab";
    text += L'c';
    text += CString(L"de");
    text += std::wstring_view(L"f");
    const wchar_t* const none = nullptr;
    text += none;
    EXPECT_EQ(text, L"abcdef");
    EXPECT_EQ(text + L"g", L"abcdefg");
    EXPECT_EQ(L"_" + text, L"_abcdef");
    EXPECT_EQ(text + CString(L"!"), L"abcdef!");
}

TEST(String, AppendsItselfAndPartsOfItself) {
    CString text(L"abc");
    for (int i = 0; i < 10; ++i) {
        text += text;
    }
    ASSERT_EQ(text.GetLength(), 3U << 10);
    for (std::uint32_t i = 0; i < text.GetLength(); ++i) {
        ASSERT_EQ(text[i], L"abc"[i % 3]);
    }
    CString roomy(L"xyz");
    roomy += std::wstring(40, L'-');
    roomy.Clear();
    roomy += L"xyz";
    roomy += roomy.View().substr(1);  // fits into the block
    EXPECT_EQ(roomy, L"xyzyz");
}

TEST(String, AppendingCharByCharStaysLinear) {
    CString text;
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (int i = 0; i < 100000; ++i) {
        text += L'x';
    }
    EXPECT_LT(KivoraTest::GetAllocationCount() - before, 60U);
    EXPECT_EQ(text.GetLength(), 100000U);
}

TEST(String, Compares) {
    EXPECT_LT(CString(L"a").Compare(L"b"), 0);
    EXPECT_GT(CString(L"a").Compare(L"B"), 0);
    EXPECT_EQ(CString(L"a").Compare(L"a"), 0);
    EXPECT_LT(CString(L"a").Compare(L"aa"), 0);
    EXPECT_TRUE(CString(L"\uFFFF") < CString(L"\U00010000"));
    const wchar_t* const none = nullptr;
    EXPECT_TRUE(CString() == none);
    EXPECT_FALSE(CString(L"a") == CString(L"A"));
}

TEST(String, ComparesWithoutCaseInEveryAlphabetWhateverTheLocale) {
    EXPECT_EQ(CString(L"ENABLED").CompareNoCase(L"Enabled"), 0);
    EXPECT_EQ(CString(L"\u0411\u0430\u0421").CompareNoCase(L"\u0431\u0410\u0441"), 0);
    EXPECT_EQ(CString(L"\u00C9t\u00C9").CompareNoCase(L"\u00E9t\u00E9"), 0);
    EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
    EXPECT_GT(CString(L"ab").CompareNoCase(L"A"), 0);
    EXPECT_LT(CString(L"A").CompareNoCase(L"ab"), 0);
    EXPECT_NE(CString(L"I").CompareNoCase(L"\u0131"), 0);  // not the Turkish mapping
}

TEST(String, FindsAndCuts) {
    const CString text(L"a/bc/d");
    EXPECT_EQ(text.Find(L"/"), 1);
    EXPECT_EQ(text.Find(L"/", 2), 4);
    EXPECT_EQ(text.Find(L"/", 5), -1);
    EXPECT_EQ(text.Find(L"/", 100), -1);
    EXPECT_EQ(text.FindLast(L'/'), 4);
    EXPECT_EQ(text.FindLast(L'x'), -1);
    EXPECT_EQ(text.Mid(2, 2), L"bc");
    EXPECT_EQ(text.Mid(5), L"d");
    EXPECT_EQ(text.Mid(6), L"");
    EXPECT_EQ(text.Mid(100, 5), L"");
    EXPECT_EQ(text.Left(1), L"a");
    EXPECT_EQ(text.Left(100), text);
}

TEST(String, Trims) {
    EXPECT_EQ(CString(L" \t\r\n a b\u2003 ").Trimmed(), L"a b");
    EXPECT_EQ(CString(L"   ").Trimmed(), L"");
    EXPECT_EQ(CString().Trimmed(), L"");
}

TEST(String, Replaces) {
    CString text(L"a/b/c");
    text.Replace(L'/', L'_');
    EXPECT_EQ(text, L"a_b_c");
    CString empty;
    empty.Replace(L'\0', L'x');
    EXPECT_EQ(empty, L"");
    text.Replace(L'\0', L'x');
    EXPECT_STREQ(text.c_str(), L"a_b_c");
}

TEST(String, ConvertsUtf8BothWays) {
    const std::string utf8 = "A\xC3\xA9\xD0\x9D\xE2\x82\xAC\xF0\x9F\x8E\xB9";
    const CString text = CString::FromUtf8(utf8);
    EXPECT_EQ(text, L"A\u00E9\u041D\u20AC\U0001F3B9");
    EXPECT_EQ(text.ToUtf8(), utf8);
}

TEST(String, EveryCharacterSurvivesUtf8) {
    for (wchar_t c = 1; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) {
            continue;
        }
        const CString text(std::wstring_view(&c, 1));
        const std::optional<CString> back = CString::FromStrictUtf8(text.ToUtf8());
        ASSERT_TRUE(back && *back == text) << static_cast<int>(c);
    }
}

TEST(String, MalformedUtf8BecomesReplacementCharacters) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"a\x80z", L"a\uFFFDz"},                            // a continuation alone
        {"a\xC3", L"a\uFFFD"},                              // cut short
        {"\xC3z", L"\uFFFDz"},                              // continuation missing
        {"\xC0\xAF", L"\uFFFD\uFFFD"},                      // overlong
        {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},            // overlong
        {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
        {"\xF0\x9F\x8Ez", L"\uFFFDz"},                      // the longest well-begun part is one
        {"\xFF\xFE", L"\uFFFD\uFFFD"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(CString::FromUtf8(bytes), text) << bytes;
        EXPECT_FALSE(CString::FromStrictUtf8(bytes)) << bytes;
    }
}

TEST(String, WhatIsNoCharacterIsWrittenAsReplacement) {
    const wchar_t none[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)};
    EXPECT_EQ(CString(std::wstring_view(none, 3)).ToUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(String, ConvertsLatin1BothWays) {
    EXPECT_EQ(CString("caf\xE9"), L"caf\u00E9");
    EXPECT_EQ(CString(L"caf\u00E9 \u043D\U0001F3B9").ToLatin1(), "caf\xE9 ??");
    EXPECT_EQ(CString::FromLatin1(std::string_view("a\0b", 3)).GetLength(), 3U);
}

TEST(String, KeepsAZeroInside) {
    const CString text(std::wstring_view(L"a\0b", 3));
    EXPECT_EQ(text.GetLength(), 3U);
    EXPECT_EQ(text.ToUtf8(), std::string("a\0b", 3));
}

TEST(String, Formats) {
    EXPECT_EQ(CString::Format(L"%d %lx %ls", 42, 0x5395ffL, L"\u043D\u043E"), L"42 5395ff \u043D\u043E");
    EXPECT_EQ(CString::Format(L"%s", "\xD0\xBD"), L"\u043D");
    EXPECT_EQ(CString::Format(L"%.2f", 1234.5), L"1234.50");
    EXPECT_EQ(CString::Format(L""), L"");
    EXPECT_EQ(CString::Format(L"%ls|", std::wstring(100000, L'x').c_str()).GetLength(), 100001U);
    EXPECT_EQ(CString::Format(L"%s", "\xFF"), L"");
}

using StringInCommaLocale = KivoraTest::CCommaLocaleTest;

TEST_F(StringInCommaLocale, NumbersUseThePoint) {
    EXPECT_EQ(CString::Format(L"%.2f", 1.25), L"1.25");
    EXPECT_EQ(CString::FromDouble(1.25), L"1.25");
    double value = 0;
    EXPECT_TRUE(CString(L"1.25").ToDouble(value));
    EXPECT_EQ(value, 1.25);
    EXPECT_TRUE(CString(L"1,75").ToDouble(value));
    EXPECT_EQ(value, 1.0);
    float single = 0;
    EXPECT_TRUE(CString(L"2.5").ToFloat(single));
    EXPECT_EQ(single, 2.5F);
    EXPECT_TRUE(IsComma()) << "the locale of the process is not touched";
}

}  // namespace
