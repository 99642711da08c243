#include "engine/files/VoiceSlotsFile.h"

#include <algorithm>

namespace Kivora {

namespace {

constexpr int kHighestTranspose = 108;
constexpr int kHighestVelocityPercent = 200;
constexpr int kHighestVolume = 127;
constexpr const wchar_t* kSplitPoint = L"SplitPoint";

NK::CString KeyOfSlot(const wchar_t* key, std::size_t slot) {
    return key + NK::CString::FromInt(static_cast<std::int64_t>(slot));
}

}  // namespace

VoiceSlots ReadVoiceSlots(const NK::CIniFile& section, const VoiceSlots& current) {
    VoiceSlots read;
    section.GetBool(L"Dual", read.dual);
    section.GetBool(L"Split", read.split);
    read.splitPoint = std::clamp(section.GetInt(kSplitPoint, VoiceSlots::kSplitPoint), VoiceSlots::kLowestSplit,
                                 VoiceSlots::kHighestSplit);
    for (std::size_t slot = 0; slot < VoiceSlots::kCount; ++slot) {
        const auto number = [&](const wchar_t* key, int defaultValue, int lowest, int highest) {
            return std::clamp(section.GetInt(KeyOfSlot(key, slot), defaultValue), lowest, highest);
        };
        read.patch[slot] = number(L"Patch", current.patch[slot], VoiceSlots::kFirstPatch, VoiceSlots::kLastPatch);
        read.transpose[slot] = number(L"Transpose", read.transpose[slot], -kHighestTranspose, kHighestTranspose);
        read.velocityPercent[slot] = number(L"VelocityPc", read.velocityPercent[slot], 1, kHighestVelocityPercent);
        read.volume[slot] = number(L"Volume", read.volume[slot], 0, kHighestVolume);
    }
    return read;
}

void WriteVoiceSlots(NK::CIniFile& section, const VoiceSlots& voices) {
    section.SetInt(L"Dual", voices.dual ? 1 : 0);
    section.SetInt(L"Split", voices.split ? 1 : 0);
    for (std::size_t slot = 0; slot < VoiceSlots::kCount; ++slot) {
        section.SetInt(KeyOfSlot(L"Patch", slot), voices.patch[slot]);
        section.SetInt(KeyOfSlot(L"Transpose", slot), voices.transpose[slot]);
        section.SetInt(KeyOfSlot(L"VelocityPc", slot), voices.velocityPercent[slot]);
        section.SetInt(KeyOfSlot(L"Volume", slot), voices.volume[slot]);
    }
    if (voices.splitPoint != VoiceSlots::kSplitPoint || section.GetString(kSplitPoint)) {
        section.SetInt(kSplitPoint, voices.splitPoint);
    }
}

}  // namespace Kivora
