// Pseudo-random numbers.
#pragma once

#include <cstdint>

namespace NK {

constexpr int kRandomMax = 32767;

/// The next of the process's pseudo-random numbers, 0..32767, evenly spread. Neither locks nor allocates. [any]
int Random() noexcept;
/// The numbers that follow depend on the seed alone (and on who draws them). [any]
void SeedRandomGenerator(std::uint32_t seed) noexcept;

}  // namespace NK
