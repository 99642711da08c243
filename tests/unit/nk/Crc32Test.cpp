#include "nk/nk_crc32.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

std::uint32_t SumOf(std::string_view text, std::uint32_t start = 0) {
    return NK::ComputeCrc32(text.data(), text.size(), start);
}

TEST(Crc32, TheCheckValueOfTheStandard) {
    EXPECT_EQ(SumOf("123456789"), 0xCBF43926U);
    EXPECT_EQ(SumOf(""), 0U);
}

TEST(Crc32, PartsAddUpToTheWhole) {
    EXPECT_EQ(SumOf("56789", SumOf("1234")), SumOf("123456789"));
}

}  // namespace
