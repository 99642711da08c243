#include "piano/CAutoRepeatFilter.h"

namespace NK::Piano {

CAutoRepeatFilter::EVerdict CAutoRepeatFilter::Press(std::uint32_t scanCode, std::uint64_t timeMs,
                                                     bool autoRepeat) noexcept {
    const bool pairs = waiting_ && waiting_->scanCode == scanCode && (autoRepeat || waiting_->timeMs == timeMs);
    if (pairs) {
        waiting_.reset();
    }
    return pairs || autoRepeat ? EVerdict::kRepeat : EVerdict::kPlay;
}

CAutoRepeatFilter::EVerdict CAutoRepeatFilter::Release(std::uint32_t scanCode, std::uint64_t timeMs,
                                                       bool autoRepeat) noexcept {
    if (autoRepeat) {
        return EVerdict::kRepeat;
    }
    if (scanCode == 0 || timeMs == 0) {
        return EVerdict::kPlay;
    }
    waiting_ = TWaiting{scanCode, timeMs};
    return EVerdict::kWait;
}

}  // namespace NK::Piano
