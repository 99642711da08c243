// Counts the allocations of the calling thread, to show that a warm path makes none.
#pragma once

#include <cstdint>

namespace KivoraTest {

/// Allocations by operator new that the calling thread has made so far.
std::uint64_t GetAllocationCount();

}  // namespace KivoraTest
