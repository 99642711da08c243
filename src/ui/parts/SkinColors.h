// The guards that keep every text on the panel legible, whatever colour the user picks. [any]
#pragma once

#include <QColor>

/// The body's tint: a colour brighter than luma 140 of 255 (ITU-R BT.709 weights) is darkened to that.
QColor CapColor(const QColor& color);
/// A lit display's tint: mixed with white in steps of 1/64 until its relative luminance (WCAG 2.x) is at least 0.26.
QColor LiftColor(const QColor& color);
/// WCAG 2.x, 0..1.
double RelativeLuminance(const QColor& color);
