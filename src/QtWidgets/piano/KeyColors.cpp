#include "QtWidgets/piano/KeyColors.h"

#include <algorithm>
#include <cmath>

namespace KeyColors {
namespace {
constexpr qreal kMainSaturation = 0.8;
constexpr qreal kMainBaseWeight = 0.3;
constexpr qreal kBassSaturation = 0.4;
constexpr qreal kBassBaseWeight = 0.5;
// The shades over a pressed key add to the contrast of a darker light and take from that of a lighter one.
constexpr double kDarkerContrast = 2.6;
constexpr double kLighterContrast = 3.6;
constexpr double kDarkKey = 0.22;  // of luminance; a light on a darker key is lighter than it
constexpr int kShineSteps = 64;

double Linear(int component) {
    const double value = component / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Contrast(const QColor& a, const QColor& b) {
    const double first = RelativeLuminance(a) + 0.05;
    const double second = RelativeLuminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}
}  // namespace

QColor Blend(const QColor& color, qreal weight, qreal saturation, const QColor& second) {
    // With hue and value kept, scaling the saturation moves each component towards the largest one.
    const int value = std::max({color.red(), color.green(), color.blue()});
    const auto component = [&](int first, int other) {
        const qreal desaturated = value - (value - first) * saturation;
        return std::clamp(qRound((1.0 - weight) * desaturated + weight * other), 0, 255);
    };
    return {component(color.red(), second.red()), component(color.green(), second.green()),
            component(color.blue(), second.blue())};
}

QColor Tint(const NK::Piano::TKeyColor& schemeColor, bool blackKey, bool bassPart) {
    const QColor base = QColor::fromRgb(blackKey ? kBlackBase : kWhiteBase);
    if (!schemeColor.IsTint()) {
        return base;
    }
    return Blend(QColor(schemeColor.red, schemeColor.green, schemeColor.blue),
                 bassPart ? kBassBaseWeight : kMainBaseWeight, bassPart ? kBassSaturation : kMainSaturation, base);
}

double RelativeLuminance(const QColor& color) {
    return 0.2126 * Linear(color.red()) + 0.7152 * Linear(color.green()) + 0.0722 * Linear(color.blue());
}

QColor Shine(const QColor& idle, const QColor& light) {
    const bool dark = RelativeLuminance(idle) < kDarkKey;
    const double enough = dark ? kLighterContrast : kDarkerContrast;
    const QColor end = dark ? Qt::white : Qt::black;
    for (int step = 0;; ++step) {
        const QColor color = Blend(light, static_cast<qreal>(step) / kShineSteps, 1.0, end);
        const bool onItsSide = (RelativeLuminance(color) > RelativeLuminance(idle)) == dark;
        if (step == kShineSteps || (onItsSide && Contrast(color, idle) >= enough)) {
            return color;
        }
    }
}

}  // namespace KeyColors
