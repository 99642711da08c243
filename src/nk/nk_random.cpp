#include "nk/nk_random.h"

#include <atomic>

namespace NK {

namespace {
std::atomic<std::uint64_t> state{0};
}  // namespace

int Random() noexcept {
    // SplitMix64 (Steele, Lea, Flood: Fast splittable pseudorandom number generators, 2014): a counter whose values are
    // mixed, so that threads share it by one atomic addition.
    constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15U;
    std::uint64_t value = state.fetch_add(kStep, std::memory_order_relaxed) + kStep;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    value ^= value >> 31;
    return static_cast<int>(value >> 49);
}

void SeedRandomGenerator(std::uint32_t seed) noexcept {
    state.store(seed, std::memory_order_relaxed);
}

}  // namespace NK
