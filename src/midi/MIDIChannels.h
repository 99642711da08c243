// The numbers of channels.
#pragma once

namespace NK::MIDI {

inline constexpr int kChannelCount = 16;
inline constexpr int kPercussionChannel = 9;  ///< 0-based (General MIDI system level 1)

}  // namespace NK::MIDI
