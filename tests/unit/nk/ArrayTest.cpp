#include "nk/nk_array.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>

namespace {

using namespace NK;

/// An element whose blocks can be refused.
struct Refusable {
    static inline bool refuse = false;
    int value = 0;

    static void* operator new[](std::size_t size) {
        if (refuse) {
            throw std::bad_alloc();
        }
        return ::operator new[](size);
    }
    static void operator delete[](void* block) { ::operator delete[](block); }
};

class CSteppingArray : public CArray<int> {
public:
    std::uint32_t GetGrowthStep() const override { return 100; }
    std::uint32_t GetMinimumBlockSize() const override { return 8; }
};

template <class T>
std::int32_t KindThrownBy(T operation) {
    try {
        operation();
    } catch (const CArrayIndexException& exception) {
        return exception.GetCode();
    }
    return 0;
}

TEST(Array, IsEmptyWithoutABlockAtFirst) {
    const CArray<int> array;
    EXPECT_EQ(array.GetSize(), 0U);
    EXPECT_EQ(array.GetCapacity(), 0U);
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(Array, GrowingAnEmptyArrayToSizeOneGivesCapacity17) {
    CArray<int> array;
    array.SetSize(1);
    EXPECT_EQ(array.GetSize(), 1U);
    EXPECT_EQ(array.GetCapacity(), 17U);
}

TEST(Array, SettingSizeTenOnAnEmptyArrayAllocates26) {
    CArray<int> array;
    array.SetSize(10, true, 0);
    EXPECT_EQ(array.GetCapacity(), 26U);
}

TEST(Array, SettingSizeZeroOnAnEmptyArrayAllocatesTheStep) {
    CArray<int> array;
    array.SetSize(0);
    EXPECT_EQ(array.GetSize(), 0U);
    EXPECT_EQ(array.GetCapacity(), 16U);
    EXPECT_NE(array.GetData(), nullptr);
}

TEST(Array, UsesTheClassesGrowthStep) {
    CSteppingArray array;
    array.SetSize(1);
    EXPECT_EQ(array.GetCapacity(), 101U);
    array.SetSize(102);
    EXPECT_EQ(array.GetCapacity(), 202U);
}

TEST(Array, TakesAGivenGrowByInsteadOfTheStep) {
    CArray<int> array;
    array.SetSize(3, true, 40);
    EXPECT_EQ(array.GetSize(), 3U);
    EXPECT_EQ(array.GetCapacity(), 40U);
    array.SetSize(60, true, 50);  // the size is the largest of the three
    EXPECT_EQ(array.GetCapacity(), 60U);
}

TEST(Array, NeverShrinksAndDoesNotReallocateWithinItsCapacity) {
    CArray<int> array;
    array.SetSize(20);
    const int* const block = array.GetData();
    const std::uint32_t capacity = array.GetCapacity();
    array.SetSize(1);
    array.SetSize(capacity, true, capacity);
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.GetCapacity(), capacity);
}

TEST(Array, ReallocatesWhenGrowByIsAboveTheCapacity) {
    CArray<int> array;
    array.SetSize(2);
    array[1] = 5;
    array.SetSize(2, true, 18);
    EXPECT_EQ(array.GetCapacity(), 18U);
    EXPECT_EQ(array[1], 5);
}

TEST(Array, KeepsTheContentsWhenAsked) {
    CArray<int> array;
    for (int i = 0; i < 100; ++i) {
        array.Push(i);
    }
    for (std::uint32_t i = 0; i < 100; ++i) {
        ASSERT_EQ(array[i], static_cast<int>(i));
    }
    EXPECT_EQ(array.GetCapacity(), 17U + 17U * 5U);  // 17 more each time the block is full
}

TEST(Array, StartsAnewWithoutTheContents) {
    CArray<int> array;
    array.SetSize(3);
    array[0] = 9;
    array.SetSize(50, false);
    EXPECT_EQ(array[0], 0);
}

TEST(Array, AFailedAllocationThatKeepsTheContentsLeavesTheOldBlock) {
    CArray<Refusable> array;
    array.SetSize(2);
    array[1].value = 4;
    const Refusable* const block = array.GetData();
    Refusable::refuse = true;
    EXPECT_THROW(array.SetSize(100), CMemoryException);
    Refusable::refuse = false;
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.GetSize(), 2U);
    EXPECT_EQ(array.GetCapacity(), 18U);
    EXPECT_EQ(array[1].value, 4);
}

TEST(Array, AFailedAllocationThatKeepsNothingLeavesAUsableEmptyArray) {
    CArray<Refusable> array;
    array.SetSize(2);
    Refusable::refuse = true;
    EXPECT_THROW(array.SetSize(100, false), CMemoryException);
    Refusable::refuse = false;
    EXPECT_EQ(array.GetSize(), 0U);
    EXPECT_EQ(array.GetCapacity(), 0U);
    array.SetSize(1);
    EXPECT_EQ(array.GetCapacity(), 17U);
}

TEST(Array, AFailedPushLeavesTheArrayAsItWas) {
    CArray<Refusable> array;
    array.SetSize(17, true, 17);
    Refusable::refuse = true;
    EXPECT_THROW(array.Push(Refusable{}), CMemoryException);
    EXPECT_THROW(array.Insert(0, Refusable{}), CMemoryException);
    Refusable::refuse = false;
    EXPECT_EQ(array.GetSize(), 17U);
}

TEST(Array, FreeExtraKeepsTheLargestOfSizeMinimumAndTheClassesMinimum) {
    CSteppingArray array;
    array.SetSize(3);
    array[2] = 8;
    array.FreeExtra(true, 20);
    EXPECT_EQ(array.GetCapacity(), 20U);
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 8U);
    EXPECT_EQ(array.GetSize(), 3U);
    EXPECT_EQ(array[2], 8);
    array.SetSize(8);
    const int* const block = array.GetData();
    array.FreeExtra();  // nothing beyond the size
    EXPECT_EQ(array.GetData(), block);
}

TEST(Array, FreeExtraWithoutABlockDoesNothing) {
    CSteppingArray array;
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 0U);
}

TEST(Array, FreeExtraThatFailsLeavesTheOldBlockWhetherContentsAreKeptOrNot) {
    for (const bool keep : {true, false}) {
        CArray<Refusable> array;
        array.SetSize(2);
        array[0].value = 6;
        Refusable::refuse = true;
        EXPECT_THROW(array.FreeExtra(keep), CMemoryException);
        Refusable::refuse = false;
        EXPECT_EQ(array.GetSize(), 2U);
        EXPECT_EQ(array.GetCapacity(), 18U);
        EXPECT_EQ(array[0].value, 6);
    }
}

TEST(Array, IndexErrorsCarryTheirKind) {
    CArray<int> array;
    EXPECT_EQ(KindThrownBy([&] { array.Pop(); }), 2);
    EXPECT_EQ(KindThrownBy([&] { array.First(); }), 3);
    EXPECT_EQ(KindThrownBy([&] { array.Last(); }), 4);
    EXPECT_EQ(KindThrownBy([&] { static_cast<void>(array[0]); }), 5);
    EXPECT_EQ(KindThrownBy([&] { array.Insert(1, 0); }), 5);
    EXPECT_EQ(KindThrownBy([&] { array.Remove(0); }), 5);
    array.Push(1);
    EXPECT_EQ(KindThrownBy([&] { static_cast<void>(std::as_const(array)[1]); }), 5);
    EXPECT_EQ(KindThrownBy([&] { static_cast<void>(array[UINT32_MAX]); }), 5);
}

TEST(Array, PushesPopsInsertsAndRemoves) {
    CArray<int> array;
    array.Push(1);
    array.Push(3);
    array.Insert(1, 2);
    array.Insert(0, 0);
    array.Insert(4, 4);
    ASSERT_EQ(array.GetSize(), 5U);
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(array[i], static_cast<int>(i));
    }
    array.Remove(2);
    EXPECT_EQ(array.First(), 0);
    EXPECT_EQ(array[2], 3);
    EXPECT_EQ(array.Pop(), 4);
    EXPECT_EQ(array.Last(), 3);
    array.Clear();
    EXPECT_TRUE(array.IsEmpty());
}

TEST(Array, PushingAnElementOfItselfSurvivesTheNewBlock) {
    CArray<int> array;
    array.SetSize(17, true, 17);
    array[3] = 33;
    array.Push(array[3]);
    EXPECT_EQ(array.Last(), 33);
}

TEST(Array, CopiesAndMoves) {
    CArray<int> array;
    array.Push(1);
    array.Push(2);
    CArray<int> copy(array);
    copy[0] = 7;
    EXPECT_EQ(array[0], 1);
    CArray<int> assigned;
    assigned.Push(9);
    assigned = copy;
    EXPECT_EQ(assigned.GetSize(), 2U);
    EXPECT_EQ(assigned[0], 7);
    const CArray<int>& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned[1], 2);
    CArray<int> moved(std::move(copy));
    EXPECT_EQ(moved.GetSize(), 2U);
    EXPECT_TRUE(copy.IsEmpty());  // NOLINT(bugprone-use-after-move): what is left is the contract
    assigned = std::move(moved);
    EXPECT_EQ(assigned.GetSize(), 2U);
    EXPECT_EQ(assigned[0], 7);
    EXPECT_TRUE(moved.IsEmpty()) << "not what the target held before";  // NOLINT(bugprone-use-after-move)
    CArray<int>& same = assigned;
    assigned = std::move(same);
    EXPECT_EQ(assigned.GetSize(), 2U);
    assigned = CArray<int>();
    EXPECT_TRUE(assigned.IsEmpty());
}

TEST(Array, CopyingAnEmptyArrayEmptiesTheTarget) {
    CArray<int> array;
    array.Push(1);
    const CArray<int> empty;
    array = empty;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(CArray<int>(empty).GetCapacity(), 0U);
}

}  // namespace
