#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <cwchar>
#include <limits>
#include <random>

#include "nk/nk_string.h"

namespace {

using namespace NK;

constexpr const wchar_t* kTexts[] = {
    L"",    L" ",      L"0",    L"12",       L"-12",   L"+7",       L" \t5", L"5abc", L"abc",
    L"-",   L"+-1",    L"1 2",  L"0x1f",     L"1.5",   L".5",       L"5.",   L"1e3",  L"1e",
    L"1,5", L"nan",    L"-inf", L"infinity", L"0x1p3", L"1e309",    L"-0",   L"ff",   L"\u0663",
    L"--1", L"1e-400", L"- 1",  L"0x",       L"=3",    L"1\u00A02", L"007",  L"080",  L"1.5.2"};

TEST(StringNumber, WholeNumbersMeanWhatScanfMeans) {
    for (const wchar_t* const text : kTexts) {
        int expected = -77;
        std::int32_t value = -77;
        const bool found = std::swscanf(text, L"%d", &expected) == 1;
        EXPECT_EQ(CString(text).ToInt(value), found) << CString(text).ToUtf8();
        EXPECT_EQ(value, expected) << CString(text).ToUtf8();
    }
}

TEST(StringNumber, HexadecimalNumbersMeanWhatScanfMeans) {
    for (const wchar_t* const text : kTexts) {
        unsigned expected = 77;
        std::uint32_t value = 77;
        const bool found = std::swscanf(text, L"%x", &expected) == 1;
        if (found && text[0] == L'-') {
            EXPECT_EQ(CString(text).ToHex(value), expected == 0) << "a negative number does not fit";
            continue;
        }
        EXPECT_EQ(CString(text).ToHex(value), found) << CString(text).ToUtf8();
        EXPECT_EQ(value, expected) << CString(text).ToUtf8();
    }
    std::uint32_t colour = 0;
    EXPECT_TRUE(CString(L"5395ff").ToHex(colour));
    EXPECT_EQ(colour, 0x5395FFU);
    EXPECT_TRUE(CString(L"0X5395FF").ToHex(colour));
    EXPECT_TRUE(CString(L"ffffffff").ToHex(colour));
    EXPECT_EQ(colour, 0xFFFFFFFFU);
}

TEST(StringNumber, FloatingPointNumbersMeanWhatScanfMeans) {
    for (const wchar_t* const text : kTexts) {
        double expected = -77;
        double value = -77;
        float singleExpected = -77;
        float single = -77;
        const bool found = std::swscanf(text, L"%lf", &expected) == 1;
        EXPECT_EQ(CString(text).ToDouble(value), found) << CString(text).ToUtf8();
        EXPECT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected))) << CString(text).ToUtf8();
        EXPECT_EQ(std::swscanf(text, L"%f", &singleExpected) == 1, CString(text).ToFloat(single));
        EXPECT_TRUE(single == singleExpected || (std::isnan(single) && std::isnan(singleExpected)));
    }
}

TEST(StringNumber, NanAndNumbersTooLargeAreReadAsTheCLibraryReadsThem) {
    double value = 0;
    EXPECT_TRUE(CString(L"NaN").ToDouble(value));
    EXPECT_TRUE(std::isnan(value));
    EXPECT_TRUE(CString(L"1e309").ToDouble(value));
    EXPECT_EQ(value, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(CString(L"-1e309").ToDouble(value));
    EXPECT_EQ(value, -std::numeric_limits<double>::infinity());
    float single = 0;
    EXPECT_TRUE(CString(L"1e39").ToFloat(single));
    EXPECT_EQ(single, std::numeric_limits<float>::infinity());
}

TEST(StringNumber, WholeNumbersThatDoNotFitAreRefused) {
    std::int32_t value = 5;
    EXPECT_FALSE(CString(L"2147483648").ToInt(value));
    EXPECT_FALSE(CString(L"-2147483649").ToInt(value));
    EXPECT_FALSE(CString(L"99999999999999999999999").ToInt(value));
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(CString(L"2147483647").ToInt(value));
    EXPECT_EQ(value, 2147483647);
    EXPECT_TRUE(CString(L"-2147483648").ToInt(value));
    EXPECT_EQ(value, std::numeric_limits<std::int32_t>::min());
    std::uint32_t hex = 5;
    EXPECT_FALSE(CString(L"100000000").ToHex(hex));
    EXPECT_FALSE(CString(L"ffffffffffffffffffff").ToHex(hex));
    EXPECT_EQ(hex, 5U);
}

TEST(StringNumber, WritesWholeNumbers) {
    EXPECT_EQ(CString::FromInt(0), L"0");
    EXPECT_EQ(CString::FromInt(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(CString::FromHex(0x5395ff), L"5395ff");
    EXPECT_EQ(CString::FromHex(0), L"0");
    EXPECT_EQ(CString::FromHex(std::numeric_limits<std::uint64_t>::max()), L"ffffffffffffffff");
}

TEST(StringNumber, WritesTheShortestTextOfADouble) {
    EXPECT_EQ(CString::FromDouble(0.1), L"0.1");
    EXPECT_EQ(CString::FromDouble(100.0), L"100");
    EXPECT_EQ(CString::FromDouble(-0.25), L"-0.25");
    EXPECT_EQ(CString::FromDouble(1.0 / 3.0), L"0.3333333333333333");
    EXPECT_EQ(CString::FromDouble(5e-324), L"5e-324");
    EXPECT_EQ(CString::FromDouble(std::numeric_limits<double>::infinity()), L"inf");
}

TEST(StringNumber, EveryDoubleReadsBackTheSame) {
    std::mt19937_64 generator(2);
    for (int i = 0; i < 20000; ++i) {
        const std::uint64_t bits = generator();
        double written = 0;
        static_assert(sizeof bits == sizeof written);
        std::memcpy(&written, &bits, sizeof bits);
        if (std::isnan(written)) {
            continue;
        }
        double read = 0;
        ASSERT_TRUE(CString::FromDouble(written).ToDouble(read));
        ASSERT_EQ(std::memcmp(&written, &read, sizeof read), 0) << CString::FromDouble(written).ToUtf8();
    }
}

}  // namespace
