#include "piano/CKeyHolds.h"

#include "piano/CAutoRepeatFilter.h"

namespace NK::Piano {

void CKeyHolds::Press(std::uint32_t scanCode, std::uint32_t timeMs) noexcept {
    if (scanCode >= kScanCodes) {
        return;
    }
    THold& hold = holds_[scanCode];
    const bool isHeldOn =
        hold.state == EState::kDown || (hold.state == EState::kReleased && timeMs - hold.releasedMs <= kRepeatSettleMs);
    if (!isHeldOn) {
        hold.pressedMs = timeMs;
    }
    hold.state = EState::kDown;
}

void CKeyHolds::Release(std::uint32_t scanCode, std::uint32_t timeMs) noexcept {
    if (scanCode >= kScanCodes) {
        return;
    }
    THold& hold = holds_[scanCode];
    if (hold.state != EState::kDown) {
        hold.pressedMs.reset();
    }
    hold.state = EState::kReleased;
    hold.releasedMs = timeMs;
}

std::optional<std::uint32_t> CKeyHolds::GetHeldMs(std::uint32_t scanCode) const noexcept {
    if (scanCode >= kScanCodes || holds_[scanCode].state != EState::kReleased || !holds_[scanCode].pressedMs) {
        return std::nullopt;
    }
    return holds_[scanCode].releasedMs - *holds_[scanCode].pressedMs;
}

}  // namespace NK::Piano
