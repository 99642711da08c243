#include "QtWidgets/piano/KeyColors.h"

#include <algorithm>

namespace KeyColors {
namespace {
constexpr qreal kMainSaturation = 0.8;
constexpr qreal kMainBaseWeight = 0.3;
constexpr qreal kBassSaturation = 0.4;
constexpr qreal kBassBaseWeight = 0.5;
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

}  // namespace KeyColors
