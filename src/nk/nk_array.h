// A growable array whose capacity grows by a constant step. [owner]
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "nk/nk_exception.h"

namespace NK {

/// An owned block of elements. It grows by a constant step, so pushing n elements one by one costs O(n^2) copies:
/// not for stores without a bound. Elements must be default-constructible and copyable. A moved-from array is empty.
/// Allocation failures surface as CMemoryException, index errors as CArrayIndexException with the kind as code.
template <class T>
class CArray {
public:
    CArray() noexcept = default;
    CArray(const CArray& other) { AssignFrom(other); }
    CArray(CArray&& other) noexcept { Swap(other); }
    CArray& operator=(const CArray& other) {
        if (this != &other) {
            AssignFrom(other);
        }
        return *this;
    }
    CArray& operator=(CArray&& other) noexcept {
        CArray taken(std::move(other));
        Swap(taken);
        return *this;
    }
    virtual ~CArray() = default;

    /// Sets the number of elements in use. Never shrinks the block. When a new block is needed its capacity is the
    /// largest of the present capacity, newSize and growBy, where a growBy of 0 means the growth step plus newSize.
    /// With keepContents the old elements are taken over and survive a failed allocation (CMemoryException); without
    /// it the old block is freed first, and a failed allocation leaves the array empty.
    virtual void SetSize(std::uint32_t newSize, bool keepContents = true, std::uint32_t growBy = 0) {
        if (newSize <= capacity_ && data_ && growBy <= capacity_) {
            size_ = newSize;
            return;
        }
        if (growBy == 0) {
            const std::uint32_t step = GetGrowthStep();
            growBy = (step == 0 ? kDefaultGrowthStep : step) + newSize;
        }
        const std::uint32_t newCapacity = std::max({capacity_, growBy, newSize});
        if (!keepContents) {
            data_.reset();
            size_ = 0;
            capacity_ = 0;
        }
        Reallocate(newCapacity, keepContents);
        size_ = newSize;
    }

    /// Gives back what is allocated beyond the largest of the size, `minimum` and the class's minimum block size. The
    /// size stays; without keepContents the elements are default values afterwards. A failed allocation
    /// (CMemoryException) leaves everything as it was.
    virtual void FreeExtra(bool keepContents = true, std::uint32_t minimum = 0) {
        if (data_ && size_ < capacity_) {
            Reallocate(std::max({size_, minimum, GetMinimumBlockSize()}), keepContents);
        }
    }

    /// Elements added to the requested size when a block is allocated; 0 means 16.
    virtual std::uint32_t GetGrowthStep() const { return 0; }
    /// Elements that FreeExtra() leaves allocated at least.
    virtual std::uint32_t GetMinimumBlockSize() const { return 0; }

    std::uint32_t GetSize() const noexcept { return size_; }
    std::uint32_t GetCapacity() const noexcept { return capacity_; }
    bool IsEmpty() const noexcept { return size_ == 0; }

    T* GetData() noexcept { return data_.get(); }
    const T* GetData() const noexcept { return data_.get(); }
    T* begin() noexcept { return data_.get(); }
    T* end() noexcept { return data_.get() + size_; }
    const T* begin() const noexcept { return data_.get(); }
    const T* end() const noexcept { return data_.get() + size_; }

    /// Throws CArrayIndexException ("Array index is out of range.") outside 0..size-1.
    T& operator[](std::uint32_t index) {
        CheckIndex(index);
        return data_[index];
    }
    const T& operator[](std::uint32_t index) const {
        CheckIndex(index);
        return data_[index];
    }

    /// Appends a copy; the value may be an element of this array.
    void Push(const T& value) {
        if (size_ == UINT32_MAX) {
            throw CArrayIndexException(CArrayIndexException::kPush);
        }
        T copy(value);
        SetSize(size_ + 1);
        data_[size_ - 1] = std::move(copy);
    }
    /// Removes and returns the last element. Throws CArrayIndexException of kind 2 when empty.
    T Pop() {
        if (size_ == 0) {
            throw CArrayIndexException(CArrayIndexException::kPop);
        }
        return std::move(data_[--size_]);
    }
    /// Throws CArrayIndexException of kind 3 when empty.
    T& First() {
        if (size_ == 0) {
            throw CArrayIndexException(CArrayIndexException::kFirst);
        }
        return data_[0];
    }
    /// Throws CArrayIndexException of kind 4 when empty.
    T& Last() {
        if (size_ == 0) {
            throw CArrayIndexException(CArrayIndexException::kLast);
        }
        return data_[size_ - 1];
    }
    /// Inserts a copy before `index` (0..size).
    void Insert(std::uint32_t index, const T& value) {
        if (index > size_) {
            throw CArrayIndexException(CArrayIndexException::kRange);
        }
        T copy(value);
        SetSize(size_ + 1);
        std::move_backward(data_.get() + index, data_.get() + size_ - 1, data_.get() + size_);
        data_[index] = std::move(copy);
    }
    /// Removes the element at `index` (0..size-1).
    void Remove(std::uint32_t index) {
        CheckIndex(index);
        std::move(data_.get() + index + 1, data_.get() + size_, data_.get() + index);
        --size_;
    }
    /// Size 0; the block stays.
    void Clear() { SetSize(0, false); }

    void Swap(CArray& other) noexcept {
        data_.swap(other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    static constexpr std::uint32_t kDefaultGrowthStep = 16;

    void CheckIndex(std::uint32_t index) const {
        if (index >= size_) {
            throw CArrayIndexException(CArrayIndexException::kRange);
        }
    }

    void AssignFrom(const CArray& other) {
        if (other.size_ == 0) {
            size_ = 0;
            return;
        }
        SetSize(other.size_, false);
        std::copy(other.begin(), other.end(), begin());
    }

    void Reallocate(std::uint32_t newCapacity, bool keepContents) {
        std::unique_ptr<T[]> block;
        try {
            block.reset(new T[newCapacity]());
        } catch (const std::bad_alloc&) {
            throw CMemoryException();
        }
        if (keepContents && data_) {
            std::move(begin(), end(), block.get());
        }
        data_ = std::move(block);
        capacity_ = newCapacity;
    }

    std::unique_ptr<T[]> data_;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;
};

}  // namespace NK
