#include "engine/values/BendRange.h"

#include <algorithm>

#include "midi/MIDIControllers.h"

namespace Kivora {

namespace {
constexpr ExtraKey kKey{L"Kivora_Wheels", L"BendRange", BendRange::kDefault};
}

void BendRange::Choose(int semitones) noexcept {
    semitones_ = std::clamp(semitones, kSmallest, kLargest);
    isTold_ = true;
}

std::array<BendRange::Controller, 6> BendRange::GetControllers() const noexcept {
    namespace Number = NK::MIDI::Controller;
    // The low half of the data are hundredths of a semitone.
    return {{{Number::kRegistered, 0},
             {Number::kRegisteredLow, 0},
             {Number::kDataEntry, static_cast<std::uint8_t>(semitones_)},
             {Number::kDataEntryLow, 0},
             {Number::kRegistered, Number::kNoParameter},
             {Number::kRegisteredLow, Number::kNoParameter}}};
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
