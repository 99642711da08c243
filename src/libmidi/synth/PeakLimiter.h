// Keeps a loud chord from clipping. [owner]
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace LibMidi {

/// A stereo peak limiter: turns both sides down at once, by the same factor, where either would pass the ceiling, and
/// lets go slowly. What stays below the ceiling passes unchanged. Allocates nothing. One thread at a time.
class PeakLimiter {
public:
    static constexpr float kCeiling = 0.95F;        ///< of full scale
    static constexpr float kReleaseSeconds = 0.2F;  ///< in which the reduction falls to 1/e of the level above

    explicit PeakLimiter(float sampleRate) : decay_(std::exp(-1.0F / (kReleaseSeconds * sampleRate))) {}

    void Process(float* left, float* right, std::size_t frames) noexcept {
        for (std::size_t index = 0; index < frames; ++index) {
            envelope_ = std::max({std::abs(left[index]), std::abs(right[index]), envelope_ * decay_});
            if (envelope_ > kCeiling) {
                const float factor = kCeiling / envelope_;
                left[index] *= factor;
                right[index] *= factor;
            }
        }
    }

private:
    const float decay_;
    float envelope_ = 0.0F;
};

}  // namespace LibMidi
