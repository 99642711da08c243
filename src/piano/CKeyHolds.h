// How long keys have been held, by the time stamps of their events.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace NK::Piano {

/// Follows presses and releases as they come, repeats among them: a key that is pressed within kRepeatSettleMs of its
/// release is held on. Scan codes are native, times are the events' in ms, of 32 bits that wrap around. A
/// plain value. [gui]
class CKeyHolds {
public:
    void Press(std::uint32_t scanCode, std::uint32_t timeMs) noexcept;
    void Release(std::uint32_t scanCode, std::uint32_t timeMs) noexcept;

    /// From the press to the release of the key, in ms: of the last hold. Nothing where its press was not seen.
    std::optional<std::uint32_t> GetHeldMs(std::uint32_t scanCode) const noexcept;

private:
    enum class EState { kUnknown, kDown, kReleased };
    struct THold {
        EState state = EState::kUnknown;
        std::optional<std::uint32_t> pressedMs;  ///< where the press was seen
        std::uint32_t releasedMs = 0;
    };

    static constexpr std::size_t kScanCodes = 256;  ///< of the X protocol

    std::array<THold, kScanCodes> holds_{};
};

}  // namespace NK::Piano
