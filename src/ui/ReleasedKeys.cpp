#include "ui/ReleasedKeys.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include "nk/nk_key_state.h"

bool ReleasedKeys::isUp(std::uint32_t scanCode) {
    if (QGuiApplication::platformName().startsWith("wayland")) {
        return true;  // repeats are made on this side there, and say so
    }
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!rest_.hasExpired() || x11 == nullptr) {
        return false;
    }
    QElapsedTimer asked;
    asked.start();
    const bool isDown = NK::AskWhetherKeyIsDown(x11->connection(), scanCode).value_or(true);
    if (asked.elapsed() > kLongMs) {
        rest_.setRemainingTime(kRestMs);
    }
    return !isDown;
}
