#include "nk/nk_crc32.h"

#include <array>

namespace NK {

namespace {

constexpr std::uint32_t kReflectedPolynomial = 0xEDB88320;

constexpr std::array<std::uint32_t, 256> MakeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t sum = byte;
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1 ^ ((sum & 1) != 0 ? kReflectedPolynomial : 0);
        }
        table[byte] = sum;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

}  // namespace

std::uint32_t ComputeCrc32(const void* bytes, std::size_t size, std::uint32_t start) noexcept {
    const auto* const data = static_cast<const std::uint8_t*>(bytes);
    std::uint32_t sum = ~start;
    for (std::size_t i = 0; i < size; ++i) {
        sum = sum >> 8 ^ kTable[(sum ^ data[i]) & 0xFF];
    }
    return ~sum;
}

}  // namespace NK
