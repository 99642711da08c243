// The check sum of bytes that a disk keeps.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NK {

/// CRC-32 as ISO 3309 has it (polynomial 04C11DB7, reflected, all bits inverted before and after): any change of up to
/// 32 bits in a row changes it. `start` is the sum of the bytes before, so that parts add up to the whole. [any]
std::uint32_t ComputeCrc32(const void* bytes, std::size_t size, std::uint32_t start = 0) noexcept;

}  // namespace NK
