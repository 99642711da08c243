// The numbers of programs.
#pragma once

namespace NK::MIDI {

inline constexpr int kProgramCount = 128;  ///< 0..127
inline constexpr int kDrumKit = -1;        ///< beside them: the percussion set, which is no program

}  // namespace NK::MIDI
