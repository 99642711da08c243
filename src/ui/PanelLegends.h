// The legends that are printed on the panel.
#pragma once

#include <QRect>

#include "ui/parts/PianoRange.h"

class QPainter;

enum class LeftView { kMetronome, kRecorder };
enum class RightView { kPCKeyCard, kArpeggiator };

/// Draws the translated legends of plates and bays, the octave names above the keys, and what the right bay shows
/// besides its controls. In the panel's coordinates. `octaveNames` is as wide as the piano. [gui]
void DrawPanelLegends(QPainter& painter, LeftView left, RightView right, const PianoRange& piano,
                      const QRect& octaveNames, double devicePixelRatio);
