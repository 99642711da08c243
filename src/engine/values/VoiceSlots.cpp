#include "engine/values/VoiceSlots.h"

#include <algorithm>

#include "engine/values/VelocityScaling.h"
#include "midi/MIDIChannels.h"
#include "midi/MIDINotes.h"
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
    return IsPercussion(At(patch, slot)) ? NK::MIDI::kPercussionChannel : slot;
}

std::uint8_t VoiceSlots::Transpose(std::uint8_t note, int slot) const {
    return NK::MIDI::FoldNote(At(transpose, slot) + note);
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
