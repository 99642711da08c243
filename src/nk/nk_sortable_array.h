// An array that can be searched, counted and sorted by a comparator. [owner]
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
            SortRange(this->GetData(), 0, static_cast<std::int64_t>(this->GetSize()) - 1, comparator);
        }
    }

private:
    /// Sorts data[first..last], both included.
    static void SortRange(T* data, std::int64_t first, std::int64_t last, const CSortingComparator<T>& comparator) {
        while (first < last) {
            const T pivot = data[first + (last - first) / 2];
            std::int64_t low = first;
            std::int64_t high = last;
            while (low <= high) {
                while (comparator.IsLess(data[low], pivot)) {
                    ++low;
                }
                while (comparator.IsGreater(data[high], pivot)) {
                    --high;
                }
                if (low <= high) {
                    std::swap(data[low++], data[high--]);
                }
            }
            // Recurse into the smaller side, go on with the larger one.
            if (high - first < last - low) {
                SortRange(data, first, high, comparator);
                first = low;
            } else {
                SortRange(data, low, last, comparator);
                last = high;
            }
        }
    }
};

}  // namespace NK
