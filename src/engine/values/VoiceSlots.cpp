#include "engine/values/VoiceSlots.h"

#include <algorithm>

#include "engine/values/NoteFolding.h"
#include "engine/values/VelocityScaling.h"
#include "nk/nk_exception.h"

namespace Kivora {

namespace {
template <class Settings>
auto& At(Settings& settings, int slot) {
    VoiceSlots::CheckSlot(slot);
    return settings[static_cast<std::size_t>(slot)];
}
}  // namespace

void VoiceSlots::CheckSlot(int slot) {
    if (slot < 0 || slot >= kCount) {
        throw NK::CBadIndexException();
    }
}

int VoiceSlots::GetChannel(int slot) const {
    return At(patch, slot) < 0 ? kPercussionChannel : slot;
}

std::uint8_t VoiceSlots::Transpose(std::uint8_t note, int slot) const {
    return static_cast<std::uint8_t>(FoldNote(At(transpose, slot) + note));
}

std::uint8_t VoiceSlots::Scale(std::uint8_t velocity, int slot) const {
    return ScaleVelocity(velocity, At(volume, slot));
}

void VoiceSlots::StepVolume(int slot, int by) {
    int& value = At(volume, slot);
    value = std::clamp(value + by, 1, 127);
}

void VoiceSlots::StepTranspose(int slot, int by) {
    int& value = At(transpose, slot);
    value = std::clamp(value + by, -120, 120);
}

}  // namespace Kivora
