#include "nk/nk_file.h"

#include <cstring>

namespace NK {

bool WriteUInt16(CFile& file, std::uint16_t value) {
    const unsigned char bytes[] = {static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
    return file.Write(bytes, 1, sizeof bytes) == sizeof bytes;
}

bool WriteUInt32(CFile& file, std::uint32_t value) {
    const unsigned char bytes[] = {static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
                                   static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
    return file.Write(bytes, 1, sizeof bytes) == sizeof bytes;
}

bool WriteTag(CFile& file, const char* tag) {
    const std::size_t length = std::strlen(tag);
    return file.Write(tag, 1, length) == length;
}

}  // namespace NK
