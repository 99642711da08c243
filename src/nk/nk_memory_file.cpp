#include "nk/nk_memory_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace NK {

std::size_t CMemoryFile::Read(void* buffer, std::size_t elementSize, std::size_t count) {
    if (elementSize == 0 || count == 0) {
        return 0;
    }
    const std::size_t left = content_.size() - std::min(position_, content_.size());
    const std::size_t whole = std::min(count, left / elementSize);
    // As the C library: the bytes of a last, incomplete element are read but not counted.
    const std::size_t bytes = whole == count ? whole * elementSize : left;
    if (bytes > 0) {
        std::memcpy(buffer, content_.data() + position_, bytes);
        position_ += bytes;
    }
    endMet_ = endMet_ || whole < count;
    return whole;
}

std::size_t CMemoryFile::Write(const void* buffer, std::size_t elementSize, std::size_t count) {
    if (elementSize == 0 || count == 0 || count > content_.max_size() / elementSize) {
        return 0;
    }
    const std::size_t bytes = elementSize * count;
    if (position_ > content_.max_size() - bytes) {
        return 0;
    }
    try {
        if (content_.size() < position_ + bytes) {
            content_.resize(position_ + bytes);
        }
    } catch (const std::bad_alloc&) {
        return 0;
    }
    std::memcpy(content_.data() + position_, buffer, bytes);
    position_ += bytes;
    return count;
}

int CMemoryFile::Seek(std::int64_t offset, Origin origin) {
    const std::int64_t base = origin == kStart ? 0 : origin == kCurrent ? GetPosition() : GetLength();
    if (offset > std::numeric_limits<std::int64_t>::max() - base || base + offset < 0) {
        return -1;
    }
    position_ = static_cast<std::size_t>(base + offset);
    endMet_ = false;
    return 0;
}

}  // namespace NK
