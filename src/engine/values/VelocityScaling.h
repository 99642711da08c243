// Scaling a velocity or a key pressure by a voice's volume.
#pragma once

#include <algorithm>
#include <cstdint>

#include "nk/nk_rounding.h"

namespace Kivora {

/// Velocity 0 stays 0; any other becomes `volume` percent of itself, rounded to nearest with exact halves down
/// (deliberately), within 1..127. [any]
constexpr std::uint8_t ScaleVelocity(std::uint8_t velocity, int volume) noexcept {
    if (velocity == 0) {
        return 0;
    }
    const double scaled = velocity * volume / 100.0;
    return static_cast<std::uint8_t>(std::clamp(NK::RoundHalfDown(scaled), 1, 127));
}

}  // namespace Kivora
