// Rounding of what a pointer has reached.
#pragma once

/// To the nearest integer, exact halves toward zero on either side of it (deliberately). Within what an int holds.
/// [any]
constexpr int RoundHalfToZero(double value) noexcept {
    constexpr double kAlmostHalf = 0.499999999;
    return static_cast<int>(value + (value < 0 ? -kAlmostHalf : kAlmostHalf));
}
