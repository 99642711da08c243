#include "engine/values/BendRange.h"

#include <algorithm>

namespace Kivora {

namespace {
constexpr ExtraKey kKey{L"Kivora_Wheels", L"BendRange", BendRange::kDefault};
}

void BendRange::Choose(int semitones) noexcept {
    semitones_ = std::clamp(semitones, kSmallest, kLargest);
    isTold_ = true;
}

std::array<BendRange::Controller, 6> BendRange::GetControllers() const noexcept {
    constexpr std::uint8_t kData = 6;
    constexpr std::uint8_t kDataFine = 38;  // hundredths of a semitone
    constexpr std::uint8_t kParameterFine = 100;
    constexpr std::uint8_t kParameter = 101;
    constexpr std::uint8_t kNone = 127;
    return {{{kParameter, 0},
             {kParameterFine, 0},
             {kData, static_cast<std::uint8_t>(semitones_)},
             {kDataFine, 0},
             {kParameter, kNone},
             {kParameterFine, kNone}}};
}

BendRange BendRange::Read(NK::CIniFile& file) {
    BendRange range;
    const int semitones = ReadExtraInt(file, kKey);
    if (semitones != kDefault && semitones >= kSmallest && semitones <= kLargest) {
        range.Choose(semitones);
    }
    return range;
}

void BendRange::Write(NK::CIniFile& file) const {
    WriteExtraInt(file, kKey, semitones_);
}

}  // namespace Kivora
