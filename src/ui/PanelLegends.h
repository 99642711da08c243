// The legends that are printed on the panel.
#pragma once

class QPainter;

enum class LeftView { kMetronome, kRecorder };
enum class RightView { kPCKeyCard, kArpeggiator };

/// Draws the translated legends of plates and bays, the octave names above the keys, and what the right bay shows
/// besides its controls. In the panel's coordinates. [gui]
void DrawPanelLegends(QPainter& painter, LeftView left, RightView right, double devicePixelRatio);
