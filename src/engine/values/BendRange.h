// How far the pitch wheel bends. [owner]
#pragma once

#include <array>
#include <cstdint>

#include "engine/values/ExtraKey.h"

namespace Kivora {

/// In semitones, up and down, of all voices. As long as it is the one that devices have by themselves, and nobody has
/// chosen it, nothing is sent of it. Plain value; whoever owns one says what guards it.
class BendRange {
public:
    static constexpr int kDefault = 2;
    static constexpr int kSmallest = 1;
    static constexpr int kLargest = 24;

    int Get() const noexcept { return semitones_; }
    /// Keeps it in kSmallest..kLargest.
    void Choose(int semitones) noexcept;
    /// Whether devices are told.
    bool IsTold() const noexcept { return isTold_; }

    struct Controller {
        std::uint8_t number;
        std::uint8_t value;
    };
    /// Registered parameter 0, and none afterwards, so that nobody changes it unawares (MIDI 1.0, table IIIa).
    std::array<Controller, 6> GetControllers() const noexcept;

    static BendRange Read(NK::CIniFile& file);
    void Write(NK::CIniFile& file) const;

private:
    int semitones_ = kDefault;
    bool isTold_ = false;
};

}  // namespace Kivora
