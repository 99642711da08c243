// A knob that moves a value without making it jump. [owner]
#pragma once

#include <algorithm>
#include <optional>

namespace Kivora {

/// A knob takes a value over when it passes it, and lets go of it when somebody else has changed it. Plain value.
class SoftTakeover {
public:
    static constexpr int kHighestPosition = 127;

    /// The knob has come to `position`, 0..127; the value is `current`, of `least`..`greatest`. What it is to be set
    /// to, nothing while the knob has not caught it.
    std::optional<int> Move(int position, int current, int least, int greatest) {
        const int range = greatest - least;
        const int value = least + (position * range + kHighestPosition / 2) / kHighestPosition;
        const int before = last_.value_or(value);
        // A knob knows no finer step: what lies between two of its places is at both.
        const int step = (range + kHighestPosition - 1) / kHighestPosition;
        last_ = value;
        const bool catches = HasCaught(current) ||
                             (current >= std::min(before, value) - step && current <= std::max(before, value) + step);
        set_ = catches ? std::optional(value) : std::nullopt;
        return set_;
    }
    /// The knob has moved where it moves nothing.
    void LetGo() { *this = {}; }
    bool HasCaught(int current) const { return set_ == current; }

private:
    std::optional<int> last_;  ///< the value at the knob's last place
    std::optional<int> set_;   ///< what it has set; nothing while it has not caught
};

}  // namespace Kivora
