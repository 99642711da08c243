// Names of the General MIDI programs.
#pragma once

#include "nk/nk_string.h"

namespace NK::MIDI {

/// Translation context of program names.
inline constexpr const char* kGMContext = "GM";

/// The untranslated name of a program, 0-based; null outside 0..127. Some names differ from later editions of the
/// General MIDI level 1 sound set. [any]
const char* GetGMProgramText(int program) noexcept;
/// The name in the context "GM"; outside 0..127 "INVALID PATCH NUMBER: " and the number. [any]
CString GetGMProgramName(int program);

/// "Standard Drum Kit", the percussion set (kDrumKit in menus), untranslated and in the context "GM". [any]
const char* GetDrumKitText() noexcept;
CString GetDrumKitName();

}  // namespace NK::MIDI
