#include "nk/nk_exception.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

using namespace NK;

TEST(Exception, CarriesAWideMessageInBothWidths) {
    const CException exception(L"Non-positive frame rate.", 7);
    EXPECT_STREQ(exception.GetMessage(), L"Non-positive frame rate.");
    EXPECT_STREQ(exception.what(), "Non-positive frame rate.");
    EXPECT_EQ(exception.GetCode(), 7);
}

TEST(Exception, CarriesAnEightBitMessageInBothWidths) {
    const CException exception("caf\xE9");
    EXPECT_STREQ(exception.what(), "caf\xE9");
    EXPECT_STREQ(exception.GetMessage(), L"caf\u00E9");
    EXPECT_EQ(exception.GetCode(), 0);
}

TEST(Exception, ReportsCharactersOutsideTheEightBitSetAsQuestionMarksAndKeepsThemWide) {
    const CException exception(L"na\u00EFve \u043D\u043E\u0442\u0430 \U0001F3B9");
    EXPECT_STREQ(exception.what(), "na\xEFve ???? ?");
    EXPECT_STREQ(exception.GetMessage(), L"na\u00EFve \u043D\u043E\u0442\u0430 \U0001F3B9");
}

TEST(Exception, CutsAMessageAt1023Characters) {
    const std::wstring exact(1023, L'x');
    EXPECT_EQ(CException(exact.c_str()).GetMessage(), exact);
    const CException cut((exact + L"yz").c_str());
    EXPECT_EQ(cut.GetMessage(), exact);
    EXPECT_EQ(cut.what(), std::string(1023, 'x'));
    const CException cutNarrow(std::string(5000, 'n').c_str());
    EXPECT_EQ(cutNarrow.GetMessage(), std::wstring(1023, L'n'));
    EXPECT_EQ(cutNarrow.what(), std::string(1023, 'n'));
}

TEST(Exception, TakesANullMessageAsEmpty) {
    const wchar_t* const wide = nullptr;
    const char* const narrow = nullptr;
    EXPECT_STREQ(CException(wide).what(), "");
    EXPECT_STREQ(CException(narrow).GetMessage(), L"");
}

TEST(Exception, CopiesCodeAndMessageWithoutThrowing) {
    static_assert(std::is_nothrow_copy_constructible_v<CException>);
    static_assert(std::is_nothrow_copy_assignable_v<CException>);
    CException copy(L"");
    {
        const CException original(L"\u0414\u043E", -3);
        copy = original;
    }
    EXPECT_STREQ(copy.GetMessage(), L"\u0414\u043E");
    EXPECT_STREQ(copy.what(), "??");
    EXPECT_EQ(copy.GetCode(), -3);
}

TEST(Exception, IsAStandardException) {
    try {
        throw CMemoryException();
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "Memory allocation error.");
    }
    EXPECT_STREQ(CMemoryException().GetStandardText(), std::exception().what());
}

TEST(Exception, FamilyHasItsTextsAndCodes) {
    EXPECT_STREQ(CMemoryException().GetMessage(), L"Memory allocation error.");
    EXPECT_STREQ(CBufferOverrunException().GetMessage(), L"Critical error: buffer overrun.");
    EXPECT_STREQ(CCoderException().GetMessage(), L"Programming error.");
    EXPECT_STREQ(CCoderException(L"own").GetMessage(), L"own");
    EXPECT_STREQ(CBadIndexException().GetMessage(), L"Index out of range.");
    EXPECT_STREQ(CBadIndexException(L"own", 9).GetMessage(), L"own");
    EXPECT_EQ(CBadIndexException(L"own", 9).GetCode(), 9);
    EXPECT_STREQ(CInvalidParameterException().GetMessage(), L"Invalid parameter.");
    EXPECT_STREQ(CInvalidParameterException(L"own").GetMessage(), L"own");
    EXPECT_EQ(CMemoryException().GetCode(), 0);
    EXPECT_EQ(CInvalidParameterException().GetCode(), 0);
    static_assert(std::is_base_of_v<CBadIndexException, CArrayIndexException>);
}

TEST(Exception, ArrayIndexKindsHaveTheirTextsAndAreTheCode) {
    const std::pair<std::int32_t, const wchar_t*> kinds[] = {
        {1, L"Can't push an element into array."},
        {2, L"Can't push an element from an empty array."},
        {3, L"Can't get first element from an empty array."},
        {4, L"Can't get last element from an empty array."},
        {5, L"Array index is out of range."},
        {0, L"Array index is out of range."},
        {-1, L"Array index is out of range."},
        {1000, L"Array index is out of range."},
    };
    for (const auto& [kind, text] : kinds) {
        EXPECT_STREQ(CArrayIndexException(kind).GetMessage(), text) << kind;
        EXPECT_EQ(CArrayIndexException(kind).GetCode(), kind);
    }
    EXPECT_STREQ(CArrayIndexException().GetMessage(), L"Index out of range.");
    EXPECT_EQ(CArrayIndexException().GetCode(), 0);
}

}  // namespace
