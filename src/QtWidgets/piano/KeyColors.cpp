#include "QtWidgets/piano/KeyColors.h"

namespace KeyColors {
namespace {
constexpr qreal kMainSaturation = 0.8;
constexpr qreal kMainBaseWeight = 0.3;
constexpr qreal kBassSaturation = 0.4;
constexpr qreal kBassBaseWeight = 0.5;
}  // namespace

QColor Blend(const QColor& color, qreal weight, qreal saturation, const QColor& second) {
    // With hue and value kept, scaling the saturation moves each component towards the largest one.
    const qreal red = color.redF();
    const qreal green = color.greenF();
    const qreal blue = color.blueF();
    const qreal value = qMax(red, qMax(green, blue));
    const auto component = [&](qreal first, qreal other) {
        const qreal desaturated = qBound(0.0, value - (value - first) * saturation, 1.0);
        return qRound(((1.0 - weight) * desaturated + weight * other) * 255.0);
    };
    return {component(red, second.redF()), component(green, second.greenF()), component(blue, second.blueF())};
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
