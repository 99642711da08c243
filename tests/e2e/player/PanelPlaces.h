// Where hands find the controls on the panel: points and areas in its pixels.
#pragma once

namespace Player {

struct TPoint {
    int x;
    int y;
};

struct TArea {
    int x;
    int y;
    int width;
    int height;
};

inline constexpr TArea kPianoArea{14, 336, 1152, 176};
inline constexpr TPoint kBody{600, 20};
inline constexpr TPoint kSettingsButton{980, 23};
inline constexpr TPoint kAboutButton{1132, 23};
inline constexpr TPoint kArpeggioSwitch{1039, 61};

/// Everything that acts on a click, except what opens a dialog.
inline constexpr TPoint kControls[] = {
    {58, 82},   {132, 82},  {206, 82},                                         // voice modes
    {222, 127}, {81, 191},  {195, 191},  {171, 191},  {219, 191},              // metronome or recorder
    {46, 272},  {218, 272},                                                    // octave shift
    {387, 235}, {387, 271}, {513, 235},  {513, 271},  {639, 235}, {639, 271},  // parameters
    {420, 100}, {754, 202}, {822, 202},                                        // patch, minus, plus
    {1039, 61}, {1138, 61}, {897, 96},   {897, 203},                           // arpeggio
    {960, 132}, {960, 160}, {1100, 132}, {1100, 160}, {960, 239}, {1100, 239}, {940, 96}, {1140, 96},
};

/// The bar above the piano, on which the split is dragged.
inline constexpr TArea kSplitBar{14, 303, 1152, 33};

/// What is dragged: the jog wheel, the two arpeggiators with their gates, the row of parameters, where wheels and
/// pedals stand while they are shown, and the split.
inline constexpr TArea kDragged[] = {{732, 66, 112, 112}, {876, 81, 284, 102}, {876, 188, 284, 102},
                                     {330, 220, 366, 66}, {14, 303, 142, 209}, kSplitBar};

inline constexpr TPoint kTurned[] = {{788, 122},  {639, 235}, {387, 235}, {960, 132},
                                     {1100, 160}, {81, 191},  {478, 420}};

inline constexpr TPoint kPatchNames[] = {{420, 100}, {387, 235}, {387, 271}, {420, 130}};

}  // namespace Player
