// Distances and sizes in dialogs and menus, in logical pixels.
#pragma once

namespace InstrumentMetrics {

inline constexpr int kWindowMargin = 14;  // as round the panel
inline constexpr int kPlateMargin = 10;
inline constexpr int kSpacing = 8;
inline constexpr int kSocketMargin = 3;  // room for the ring of the focus
inline constexpr int kKeyHeight = 28 + 2 * kSocketMargin;
inline constexpr int kKeyWidth = 88;
inline constexpr int kKeyPadding = 14;
inline constexpr int kFieldHeight = 28;
inline constexpr int kFieldPadding = 7;
inline constexpr int kChevronZone = 20;
inline constexpr int kIndicator = 17;
inline constexpr int kMenuCheck = 26;
inline constexpr int kMenuRight = 18;
inline constexpr int kMenuGap = 16;  ///< between the longest text and the shortcuts, at least
inline constexpr int kScrollBar = 13;
inline constexpr int kShortestScrollHandle = 28;
inline constexpr int kMark = 40;
inline constexpr int kLampRoom = 2;  // by which a caption makes room for the lamp above it

}  // namespace InstrumentMetrics
