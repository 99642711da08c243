// The voices in an INI file. [any]
#pragma once

#include "engine/values/VoiceSlots.h"
#include "nk/nk_ini_file.h"

namespace Kivora {

/// The keys are "Dual", "Split" and, with the slot's digit behind them, "Patch", "Transpose", "VelocityPc" and
/// "Volume". Both work on the section that the file's cursor stands on. Reading: a number outside -1..127,
/// -108..108, 1..200 or 0..127 is the nearest one inside; a missing or unreadable patch is that of `current`, of the
/// others that of a fresh VoiceSlots. "SplitPoint", 1..127, is written where it is not middle C or is there already.
VoiceSlots ReadVoiceSlots(const NK::CIniFile& section, const VoiceSlots& current);
void WriteVoiceSlots(NK::CIniFile& section, const VoiceSlots& voices);

}  // namespace Kivora
