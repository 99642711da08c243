#include "nk/nk_string_serializable.h"

#include <algorithm>
#include <utility>

namespace NK {

bool CStringSerializable::WriteTo(CFile& file) const {
    const std::string text = ToUtf8();
    return text.size() <= kLongest && WriteUInt32(file, static_cast<std::uint32_t>(text.size())) &&
           file.Write(text.data(), 1, text.size()) == text.size();
}

bool CStringSerializable::ReadFrom(CFile& file) {
    constexpr std::uint32_t kChunk = 1U << 16;  // a false length must not cost its memory
    unsigned char size[4];
    if (file.Read(size, 1, sizeof size) != sizeof size) {
        return false;
    }
    std::uint32_t left = 0;
    for (const unsigned char byte : size) {
        left = (left << 8) | byte;
    }
    if (left > kLongest) {
        return false;
    }
    std::string text;
    while (left > 0) {
        const std::uint32_t chunk = std::min(left, kChunk);
        const std::size_t at = text.size();
        text.resize(at + chunk);
        if (file.Read(text.data() + at, 1, chunk) != chunk) {
            return false;
        }
        left -= chunk;
    }
    CString::operator=(FromUtf8(text));
    return true;
}

}  // namespace NK
