// Rounding with exact halves down.
#pragma once

namespace NK {

/// What is added before the part behind the point is cut off, so that an exact half goes down.
inline constexpr double kAlmostHalf = 0.499999999;

/// To the nearest integer, exact halves down (deliberately). From 0 to what an int holds. [any]
constexpr int RoundHalfDown(double value) noexcept {
    return static_cast<int>(value + kAlmostHalf);
}

}  // namespace NK
