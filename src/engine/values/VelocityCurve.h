// How hard a key of a MIDI keyboard sounds. [owner]
#pragma once

#include <array>
#include <cstdint>

#include "nk/nk_ini_file.h"

namespace Kivora {

/// Plain values; the defaults let every velocity pass as it is. Velocities are 1..127.
struct VelocityCurve {
    enum class Shape : int {
        kLinear,
        kSoft,   ///< soft touches are louder
        kHard,   ///< it takes a hard touch to be loud
        kFixed,  ///< every touch the same
        kDrawn   ///< straight lines through three points
    };
    static constexpr int kShapes = 5;
    static constexpr int kLowest = 1;
    static constexpr int kHighest = 127;

    Shape shape = Shape::kLinear;
    int fixed = 100;
    int least =
        kLowest;  ///< what comes out of the softest touch and of the hardest; the least is not above the greatest
    int greatest = kHighest;
    // Of the drawn one: the ends stand at the softest and the hardest touch, the middle where one likes between them.
    int firstY = kLowest;
    int middleX = 64;  ///< 2..126
    int middleY = 64;
    int lastY = kHighest;

    bool operator==(const VelocityCurve&) const = default;

    /// Of a velocity 1..127; 0 stays 0.
    std::uint8_t Apply(std::uint8_t velocity) const;
    /// Everything brought into its range.
    VelocityCurve Kept() const;

    /// From and to a section of their own, with the keys whose values are not the default.
    static VelocityCurve Read(NK::CIniFile& file);
    void Write(NK::CIniFile& file) const;
};

/// A curve in force, with what has lately come in and gone out. Whoever owns one says what guards it.
class VelocityMap {
public:
    static constexpr std::size_t kRemembered = 16;

    struct Touch {
        std::uint8_t in;
        std::uint8_t out;
    };

    VelocityMap() { SetCurve({}); }
    const VelocityCurve& GetCurve() const { return curve_; }
    void SetCurve(const VelocityCurve& curve);
    /// The velocity that a note-on is played with; it is remembered. 0 stays 0 and is not.
    std::uint8_t Play(std::uint8_t velocity);
    std::uint64_t GetTouchCount() const { return count_; }
    /// The last ones, at most kRemembered, in no order.
    const std::array<Touch, kRemembered>& GetTouches() const { return touches_; }

private:
    VelocityCurve curve_;
    std::array<std::uint8_t, 128> table_{};
    std::array<Touch, kRemembered> touches_{};  ///< {0, 0} for none
    std::uint64_t count_ = 0;
};

}  // namespace Kivora
