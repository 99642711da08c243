// The tempo that somebody taps. [owner]
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Kivora {

/// The mean of the last taps. A tap after a pause, or after much longer than the taps before it, begins anew, as one
/// after a clock has gone back does. For one thread.
class TapTempo {
public:
    static constexpr std::int64_t kPauseMs = 2500;  ///< longer than a beat of the slowest tempo
    static constexpr std::size_t kTaps = 8;

    /// Beats per minute, from the second tap on. Times are milliseconds.
    std::optional<int> Tap(std::int64_t nowMs) {
        if (!taps_.empty() && !GoesOn(nowMs - taps_.back())) {
            taps_.clear();
        }
        taps_.push_back(nowMs);
        if (taps_.size() > kTaps) {
            taps_.erase(taps_.begin());
        }
        if (taps_.size() < 2 || taps_.back() == taps_.front()) {
            return std::nullopt;
        }
        constexpr double kMinuteMs = 60000;
        const auto lengthMs = static_cast<double>(taps_.back() - taps_.front());
        return static_cast<int>(std::lround(kMinuteMs * static_cast<double>(taps_.size() - 1) / lengthMs));
    }

private:
    bool GoesOn(std::int64_t gapMs) const {
        if (gapMs < 0 || gapMs > kPauseMs) {
            return false;
        }
        const auto gaps = static_cast<std::int64_t>(taps_.size()) - 1;
        return gaps == 0 || gapMs * gaps <= kLongestGap * (taps_.back() - taps_.front());
    }

    static constexpr std::int64_t kLongestGap = 2;  ///< of those before it
    std::vector<std::int64_t> taps_;
};

}  // namespace Kivora
