// Where everything stands on the panel. [any]
#pragma once

#include <QPointF>
#include <QRect>

#include <array>

/// Rectangles in logical pixels from the panel's top left corner.
namespace PanelGeometry {

inline constexpr QRect kPanel{0, 0, 1180, 520};

// What is drawn on the body.
inline constexpr QRect kHeader{0, 0, 1180, 40};
inline constexpr QRect kWallpaper{0, 0, 1180, 300};
inline constexpr std::array<QRect, 5> kPlates{{
    {14, 46, 236, 58},    // voice mode
    {14, 236, 236, 58},   // octave shift
    {258, 198, 448, 96},  // parameters
    {714, 46, 148, 182},  // value
    {714, 236, 148, 58},  // preset
}};
inline constexpr std::array<QRect, 2> kBays{{{14, 112, 236, 116}, {870, 46, 296, 248}}};
inline constexpr QRect kMainDisplayBezel{258, 46, 448, 144};

// Header.
inline constexpr QRect kMIDILamp{853, 18, 9, 9};
inline constexpr QRect kReset{870, 9, 68, 28};
inline constexpr QRect kSettings{946, 9, 68, 28};
inline constexpr QRect kHelp{1022, 9, 68, 28};
inline constexpr QRect kAbout{1098, 9, 68, 28};

// Left column.
inline constexpr QRect kSingle{24, 68, 68, 28};
inline constexpr QRect kDual{98, 68, 68, 28};
inline constexpr QRect kSplit{172, 68, 68, 28};
inline constexpr QRect kBarLamp{24, 123, 19, 9};
inline constexpr QRect kBeatLamp{82, 123, 9, 9};
inline constexpr QRect kRecordView{205, 118, 35, 19};
inline constexpr QRect kTempo{24, 167, 114, 48};
inline constexpr QRect kMetronome{150, 167, 90, 48};
// These two stand there while the metronome is heard.
inline constexpr QRect kTap{103, 145, 35, 19};
inline constexpr QRect kTapLegend{66, 145, 33, 19};
inline constexpr QRect kRecordTime{24, 167, 114, 48};
inline constexpr QRect kRecord{150, 167, 42, 48};
inline constexpr QRect kStop{198, 167, 42, 48};
inline constexpr QRect kOctaveDown{24, 258, 44, 28};
inline constexpr QRect kOctaveValue{76, 258, 112, 28};
inline constexpr QRect kOctaveUp{196, 258, 44, 28};

// Centre. The main display's fields are in MainDisplay.cpp.
inline constexpr QRect kMainDisplay{268, 56, 428, 124};
inline constexpr QRect kPatch1{330, 220, 114, 30};
inline constexpr QRect kPatch2{330, 256, 114, 30};
inline constexpr QRect kTranspose1{456, 220, 114, 30};
inline constexpr QRect kTranspose2{456, 256, 114, 30};
inline constexpr QRect kVolume1{582, 220, 114, 30};
inline constexpr QRect kVolume2{582, 256, 114, 30};

// Value column.
inline constexpr QRect kJog{732, 66, 112, 112};
inline constexpr QRect kMinus{724, 186, 60, 32};
inline constexpr QRect kPlus{792, 186, 60, 32};
inline constexpr QRect kLoadPreset{724, 258, 60, 28};
inline constexpr QRect kSavePreset{792, 258, 60, 28};

// Right column.
inline constexpr QRect kArpeggioOn{1022, 52, 35, 19};
inline constexpr QRect kArpeggioView{1121, 52, 35, 19};
inline constexpr QPoint kArpeggiatorRule{880, 184};
inline constexpr QRect kArpeggiator1{876, 81, 284, 102};
inline constexpr QRect kArpeggiator2{876, 188, 284, 102};
inline constexpr QRect kPCKeyCard{872, 78, 292, 214};

// Keyboard bed.
inline constexpr QRect kOctaveNames{14, 304, 1152, 12};
inline constexpr QRect kHintBar{14, 318, 1152, 14};
inline constexpr QRect kSplitMark{14, 318, 1152, 18};  ///< over the hints, down to the keys
inline constexpr QRect kPiano{14, 336, 1152, 176};
/// Where it is wanted, the piano's rows begin further right: 61 keys are 28 pixels wide then.
inline constexpr QRect kWheelStrip{14, 303, 142, 209};
inline constexpr QRect BesideStrip(const QRect& row) {
    return row.adjusted(144, 0, 0, 0);
}

}  // namespace PanelGeometry
