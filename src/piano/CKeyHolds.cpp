#include "piano/CKeyHolds.h"

#include "piano/CAutoRepeatFilter.h"

namespace NK::Piano {

void CKeyHolds::Press(std::uint32_t scanCode, std::uint32_t timeMs) noexcept {
    if (scanCode >= kScanCodes) {
        return;
    }
    THold& hold = holds_[scanCode];
    const bool isHeldOn = hold.isPressed && (!hold.isReleased || timeMs - hold.releasedMs <= kRepeatSettleMs);
    if (!isHeldOn) {
        hold.pressedMs = timeMs;
    }
    hold.isPressed = true;
    hold.isReleased = false;
}

void CKeyHolds::Release(std::uint32_t scanCode, std::uint32_t timeMs) noexcept {
    if (scanCode >= kScanCodes) {
        return;
    }
    THold& hold = holds_[scanCode];
    hold.isPressed = hold.isPressed && !hold.isReleased;
    hold.isReleased = true;
    hold.releasedMs = timeMs;
}

std::optional<std::uint32_t> CKeyHolds::GetHeldMs(std::uint32_t scanCode) const noexcept {
    if (scanCode >= kScanCodes || !holds_[scanCode].isPressed || !holds_[scanCode].isReleased) {
        return std::nullopt;
    }
    return holds_[scanCode].releasedMs - holds_[scanCode].pressedMs;
}

}  // namespace NK::Piano
