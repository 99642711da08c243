// Where everything stands on the panel.
#pragma once

#include <QRect>

/// Rectangles in logical pixels from the panel's top left corner.
namespace PanelGeometry {

inline constexpr QRect kPanel{0, 0, 1180, 520};
inline constexpr QRect kMainDisplay{268, 56, 428, 124};
inline constexpr QRect kMIDILamp{853, 18, 9, 9};
inline constexpr QRect kHintBar{14, 318, 1152, 14};
inline constexpr QRect kPiano{14, 336, 1152, 176};

}  // namespace PanelGeometry
