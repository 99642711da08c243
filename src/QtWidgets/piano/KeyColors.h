// How the colours of piano keys are blended. [any]
#pragma once

#include <QColor>

#include "piano/CPianoColors.h"

namespace KeyColors {

/// Keys keep these colours under a colouring scheme, as the base of the tint or where the scheme leaves them alone.
inline constexpr QRgb kWhiteBase = 0xFFF7F6F1;
inline constexpr QRgb kBlackBase = 0xFF303134;

/// Multiplies the HSV saturation of `color` by `saturation` (hue and value stay), then moves each of its RGB components
/// to that of `second` by `weight`, 0..1. The result is opaque.
QColor Blend(const QColor& color, qreal weight, qreal saturation, const QColor& second);

/// The scheme's colour of a note over the fixed base of its key; less of it in the bass part.
QColor Tint(const NK::Piano::TKeyColor& schemeColor, bool blackKey, bool bassPart);

/// WCAG 2.x, 0..1.
double RelativeLuminance(const QColor& color);

/// What a key of the colour `idle` takes when it shines in `light`: that colour, towards black on a light key and
/// towards white on a dark one until the two are told apart from afar, also under the shades that lie over both.
QColor Shine(const QColor& idle, const QColor& light);

}  // namespace KeyColors
