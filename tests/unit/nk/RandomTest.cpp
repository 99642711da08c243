#include "nk/nk_random.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "support/AllocationCounter.h"

namespace {

using namespace NK;

std::vector<int> Draw(std::uint32_t seed, int count) {
    SeedRandomGenerator(seed);
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i) {
        numbers.push_back(Random());
    }
    return numbers;
}

TEST(Random, StaysInItsRangeAndFillsItEvenly) {
    constexpr int kBins = 32;
    constexpr int kPerBin = 4000;
    std::array<int, kBins> bins{};
    int lowest = kRandomMax;
    int highest = 0;
    for (const int number : Draw(1, kBins * kPerBin)) {
        ASSERT_GE(number, 0);
        ASSERT_LE(number, 32767);
        ++bins[static_cast<std::size_t>(number / 1024)];
        lowest = std::min(lowest, number);
        highest = std::max(highest, number);
    }
    for (const int bin : bins) {
        EXPECT_NEAR(bin, kPerBin, 400);  // more than six standard deviations
    }
    EXPECT_LT(lowest, 8);
    EXPECT_GT(highest, 32759);
}

TEST(Random, TheSeedDecidesTheNumbers) {
    EXPECT_EQ(Draw(5, 50), Draw(5, 50));
    EXPECT_NE(Draw(5, 50), Draw(6, 50));
    EXPECT_NE(Draw(0, 50), Draw(0xFFFFFFFF, 50));
}

TEST(Random, NeighbouringSeedsGiveDifferentFirstNumbers) {
    int equal = 0;
    for (std::uint32_t seed = 0; seed < 100; ++seed) {
        equal += Draw(seed, 1) == Draw(seed + 1, 1) ? 1 : 0;
    }
    EXPECT_LE(equal, 2);
}

TEST(Random, AllocatesNothing) {
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    static_cast<void>(Random());
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
}

}  // namespace
