// Walking over the bytes of a file. [owner]
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace NK::MIDI {

/// A place in bytes that somebody else owns. Who reads looks first how much is left.
class ByteCursor {
public:
    /// `offset` is where the first of the bytes stands in its file.
    ByteCursor(std::string_view bytes, std::int64_t offset) : bytes_(bytes), offset_(offset) {}

    std::size_t GetLeft() const noexcept { return bytes_.size(); }
    bool IsAtEnd() const noexcept { return bytes_.empty(); }
    /// In the file.
    std::int64_t GetOffset() const noexcept { return offset_; }

    std::uint8_t Peek() const noexcept { return static_cast<std::uint8_t>(bytes_.front()); }
    std::uint8_t Take() noexcept { return static_cast<std::uint8_t>(TakeBytes(1).front()); }
    std::string_view TakeBytes(std::size_t count) noexcept {
        const std::string_view taken = bytes_.substr(0, count);
        bytes_.remove_prefix(count);
        offset_ += static_cast<std::int64_t>(count);
        return taken;
    }
    /// High byte first.
    std::uint32_t TakeNumber(int byteCount) noexcept {
        std::uint32_t number = 0;
        for (int i = 0; i < byteCount; ++i) {
            number = number << 8 | Take();
        }
        return number;
    }

private:
    std::string_view bytes_;
    std::int64_t offset_;
};

}  // namespace NK::MIDI
