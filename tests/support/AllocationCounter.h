// Counts the allocations of the calling thread, to show that a warm path makes none, and refuses one of them.
#pragma once

#include <cstdint>

namespace KivoraTest {

/// Allocations by operator new that the calling thread has made so far.
std::uint64_t GetAllocationCount();

/// While it lives the calling thread's allocation of that number, from 1, fails; those before and after succeed. One at
/// a time in a thread.
class CFailingAllocation {
public:
    explicit CFailingAllocation(std::uint64_t number);
    ~CFailingAllocation();
    CFailingAllocation(const CFailingAllocation&) = delete;
    CFailingAllocation& operator=(const CFailingAllocation&) = delete;

    /// Whether there were as many.
    bool HasFailed() const;

private:
    std::uint64_t failing_;
};

}  // namespace KivoraTest
