// The ports that are listed whatever devices are there.
#pragma once

namespace LibMidi::SpecialPorts {

// Their names in the lists and in the settings file. Whoever shows them to the user has their translations.
inline constexpr const wchar_t* kAllKeyboards = L"All MIDI keyboards";
inline constexpr const wchar_t* kProgramsIn = L"Other programs (Kivora LX in)";
inline constexpr const wchar_t* kProgramsOut = L"Other programs (Kivora LX out)";

}  // namespace LibMidi::SpecialPorts
