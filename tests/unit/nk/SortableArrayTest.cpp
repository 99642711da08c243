#include "nk/nk_sortable_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using namespace NK;

class CIntOrder : public CSortingComparator<int> {
public:
    bool IsGreater(const int& a, const int& b) const override { return a > b; }
    bool IsLess(const int& a, const int& b) const override { return a < b; }
};

class CReverseOrder : public CSortingComparator<int> {
public:
    bool IsGreater(const int& a, const int& b) const override { return a < b; }
    bool IsLess(const int& a, const int& b) const override { return a > b; }
};

CSortableArray<int> ArrayOf(const std::vector<int>& values) {
    CSortableArray<int> array;
    for (const int value : values) {
        array.Push(value);
    }
    return array;
}

void ExpectSorts(std::vector<int> values) {
    CSortableArray<int> array = ArrayOf(values);
    array.Sort(CIntOrder());
    std::sort(values.begin(), values.end());
    EXPECT_TRUE(std::equal(array.begin(), array.end(), values.begin(), values.end()));
}

TEST(SortableArray, FindsTheFirstEqualElementAtOrAfterTheGivenOne) {
    const CSortableArray<int> array = ArrayOf({4, 7, 4, 9});
    EXPECT_EQ(array.Find(4), 0);
    EXPECT_EQ(array.Find(4, 1), 2);
    EXPECT_EQ(array.Find(4, 2), 2);
    EXPECT_EQ(array.Find(4, 3), -1);
    EXPECT_EQ(array.Find(5), -1);
}

TEST(SortableArray, FindFromTheSizeOrPastItReturnsMinusOne) {
    const CSortableArray<int> array = ArrayOf({4, 7});
    EXPECT_EQ(array.Find(7, 2), -1);
    EXPECT_EQ(array.Find(7, 3), -1);
    EXPECT_EQ(array.Find(7, UINT32_MAX), -1);
    EXPECT_EQ(CSortableArray<int>().Find(0), -1);
}

TEST(SortableArray, CountsEqualElements) {
    const CSortableArray<int> array = ArrayOf({4, 7, 4, 9});
    EXPECT_EQ(array.Count(4), 2U);
    EXPECT_EQ(array.Count(5), 0U);
}

TEST(SortableArray, SortsAnyOrderOfInput) {
    ExpectSorts({});
    ExpectSorts({1});
    ExpectSorts({2, 1});
    ExpectSorts({3, 3, 3, 3});
    ExpectSorts({1, 2, 3, 4, 5, 6, 7, 8});
    ExpectSorts({8, 7, 6, 5, 4, 3, 2, 1});
    std::mt19937 generator(1);
    for (int round = 0; round < 300; ++round) {
        std::vector<int> values(generator() % 200);
        for (int& value : values) {
            value = static_cast<int>(generator() % 50);
        }
        ExpectSorts(values);
    }
}

TEST(SortableArray, FollowsTheComparator) {
    CSortableArray<int> array = ArrayOf({2, 3, 1});
    array.Sort(CReverseOrder());
    EXPECT_EQ(array[0], 3);
    EXPECT_EQ(array[1], 2);
    EXPECT_EQ(array[2], 1);
}

}  // namespace
