// An array that can be searched, counted and sorted by a comparator.
#pragma once

#include <cstdint>
#include <utility>

#include "nk/nk_array.h"

namespace NK {

/// The order that CSortableArray::Sort() follows.
template <class T>
class CSortingComparator {
public:
    virtual ~CSortingComparator() = default;
    virtual bool IsGreater(const T& a, const T& b) const = 0;
    virtual bool IsLess(const T& a, const T& b) const = 0;
};

/// CArray with look-up by operator== and sorting.
template <class T>
class CSortableArray : public CArray<T> {
public:
    /// Index of the first element equal to `value` at or after `from`, else -1.
    std::int32_t Find(const T& value, std::uint32_t from = 0) const {
        for (std::uint32_t i = from; i < this->GetSize(); ++i) {
            if ((*this)[i] == value) {
                return static_cast<std::int32_t>(i);
            }
        }
        return -1;
    }
    /// Number of elements equal to `value`.
    std::uint32_t Count(const T& value) const {
        std::uint32_t count = 0;
        for (const T& element : *this) {
            count += element == value ? 1U : 0U;
        }
        return count;
    }
    /// Quicksort, ascending; elements that compare equal keep no particular order. Needs O(log n) stack.
    void Sort(const CSortingComparator<T>& comparator) {
        if (this->GetSize() > 1) {
            SortRange(this->begin(), this->end(), comparator);
        }
    }

private:
    static void SortRange(T* first, T* last, const CSortingComparator<T>& comparator) {
        while (last - first > 1) {
            const T pivot = first[(last - first) / 2];
            T* low = first;
            T* high = last - 1;
            while (low <= high) {
                while (comparator.IsLess(*low, pivot)) {
                    ++low;
                }
                while (comparator.IsGreater(*high, pivot)) {
                    --high;
                }
                if (low <= high) {
                    std::swap(*low++, *high--);
                }
            }
            // Recurse into the smaller side, go on with the larger one.
            if (high + 1 - first < last - low) {
                SortRange(first, high + 1, comparator);
                first = low;
            } else {
                SortRange(low, last, comparator);
                last = high + 1;
            }
        }
    }
};

}  // namespace NK
