#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::uint64_t allocations = 0;
thread_local std::uint64_t failingAllocation = 0;

void* TryAllocate(std::size_t size) noexcept {
    if (++allocations == failingAllocation) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void* Allocate(std::size_t size) {
    if (void* block = TryAllocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}
}  // namespace

std::uint64_t KivoraTest::GetAllocationCount() {
    return allocations;
}

KivoraTest::CFailingAllocation::CFailingAllocation(std::uint64_t number) : failing_(allocations + number) {
    failingAllocation = failing_;
}

KivoraTest::CFailingAllocation::~CFailingAllocation() {
    failingAllocation = 0;
}

bool KivoraTest::CFailingAllocation::HasFailed() const {
    return allocations >= failing_;
}

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
