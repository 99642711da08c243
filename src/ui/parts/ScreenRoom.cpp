#include "ui/parts/ScreenRoom.h"

#include <qpa/qplatformscreen.h>

#include <algorithm>
#include <cmath>
#include <QScreen>

namespace {

int whollyInside(int rounded, int pixels, double ratio) {
    constexpr double kTolerance = 1e-6;  // of a quotient that is whole
    return std::min(rounded, static_cast<int>(std::floor(pixels / ratio + kTolerance)));
}

}  // namespace

QSize screenRoom(const QScreen& screen) {
    const QSize rounded = screen.availableGeometry().size();
    const QPlatformScreen& system = *screen.handle();
    const QSize pixels = system.availableGeometry().size();
    const double ratio = screen.devicePixelRatio() / system.devicePixelRatio();
    return {whollyInside(rounded.width(), pixels.width(), ratio),
            whollyInside(rounded.height(), pixels.height(), ratio)};
}
