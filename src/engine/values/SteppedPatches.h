// Patches that were stepped to and may stay. [owner]
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "engine/values/VoiceSlots.h"

namespace Kivora {

/// Whoever steps through the patches of a voice passes many: one counts as used as soon as it is played. Plain value;
/// whoever owns one says what guards it.
class SteppedPatches {
public:
    void Step(int slot, int patch) { stepped_[static_cast<std::size_t>(slot)] = patch; }
    /// Of a voice that has the patch and begins a note. Whether it is the one that was stepped to last and was not
    /// played since.
    bool Play(int slot, int patch) {
        return std::exchange(stepped_[static_cast<std::size_t>(slot)], std::nullopt) == patch;
    }

private:
    std::array<std::optional<int>, VoiceSlots::kCount> stepped_;
};

}  // namespace Kivora
