#include "ui/parts/SkinColors.h"

#include <cmath>

#include "QtWidgets/piano/KeyColors.h"

namespace {

constexpr double kBrightestBody = 140.0;
constexpr double kDarkestDisplay = 0.26;
constexpr int kMixSteps = 64;

}  // namespace

double RelativeLuminance(const QColor& color) {
    return KeyColors::RelativeLuminance(color);
}

QColor CapColor(const QColor& color) {
    const double luma = 0.2126 * color.red() + 0.7152 * color.green() + 0.0722 * color.blue();
    if (luma <= kBrightestBody) {
        return color;
    }
    const auto darkened = [&](int component) {
        return static_cast<int>(std::lround(component * kBrightestBody / luma));
    };
    return {darkened(color.red()), darkened(color.green()), darkened(color.blue())};
}

QColor LiftColor(const QColor& color) {
    for (int step = 0;; ++step) {
        const auto mixed = [&](int component) { return component + (255 - component) * step / kMixSteps; };
        const QColor lifted(mixed(color.red()), mixed(color.green()), mixed(color.blue()));
        if (step == kMixSteps || RelativeLuminance(lifted) >= kDarkestDisplay) {
            return lifted;
        }
    }
}
