// The ports that are listed whatever devices are there.
#pragma once

#include "nk/nk_translation_mark.h"

namespace LibMidi::SpecialPorts {

// Their names in the lists and in the settings file, in UTF-8. Users are shown their translations, context "Ports".
inline constexpr const char* kAllKeyboards = KIVORA_TR_NOOP("Ports", "All MIDI keyboards");
inline constexpr const char* kProgramsIn = KIVORA_TR_NOOP("Ports", "Other programs (Kivora LX in)");
inline constexpr const char* kProgramsOut = KIVORA_TR_NOOP("Ports", "Other programs (Kivora LX out)");

}  // namespace LibMidi::SpecialPorts
