#include "ui/ReleasedKeys.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include "nk/nk_key_state.h"

namespace {
/// There repeats are made on this side, and say so.
bool IsOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland");
}
}  // namespace

bool ReleasedKeys::isUp(std::uint32_t scanCode) {
    return IsOnWayland() || !askWhetherDown(scanCode).value_or(true);
}

bool ReleasedKeys::isDown(std::uint32_t scanCode) {
    return IsOnWayland() || askWhetherDown(scanCode).value_or(false);
}

std::optional<bool> ReleasedKeys::askWhetherDown(std::uint32_t scanCode) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!rest_.hasExpired() || x11 == nullptr) {
        return std::nullopt;
    }
    QElapsedTimer asked;
    asked.start();
    const std::optional<bool> isDown = NK::AskWhetherKeyIsDown(x11->connection(), scanCode);
    if (asked.elapsed() > kLongMs) {
        rest_.setRemainingTime(kRestMs);
    }
    return isDown;
}
