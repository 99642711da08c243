#include "QtWidgets/piano/ReleasedKeys.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include "nk/desktop/nk_key_state.h"

namespace {
/// There repeats are made on this side, and say so.
bool IsOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland");
}

/// The toolkit's; null where there is none.
xcb_connection_t* GetServer() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}
}  // namespace

ReleasedKeys::ReleasedKeys() : repeatDelayMs_(NK::AskKeyRepeatDelayMs(GetServer())) {
    if (repeatDelayMs_) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
}

bool ReleasedKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType == "xcb_generic_event_t" && NK::IsKeyRepeatChange(GetServer(), message)) {
        repeatDelayMs_ = NK::AskKeyRepeatDelayMs(GetServer());
    }
    return false;
}

void ReleasedKeys::follow(const QKeyEvent& event) {
    const auto timeMs = static_cast<std::uint32_t>(event.timestamp());
    if (event.type() == QEvent::KeyPress) {
        holds_.Press(event.nativeScanCode(), timeMs);
    } else {
        holds_.Release(event.nativeScanCode(), timeMs);
    }
}

bool ReleasedKeys::isReleasedBeforeRepeats(std::uint32_t scanCode) const {
    const std::optional<std::uint32_t> heldMs = holds_.GetHeldMs(scanCode);
    return repeatDelayMs_ && heldMs && *heldMs < *repeatDelayMs_;
}

bool ReleasedKeys::isUp(std::uint32_t scanCode) {
    return IsOnWayland() || isReleasedBeforeRepeats(scanCode) || !askWhetherDown(scanCode).value_or(true);
}

bool ReleasedKeys::isDown(std::uint32_t scanCode) {
    if (IsOnWayland()) {
        return true;
    }
    const bool isDown = askWhetherDown(scanCode).value_or(false);
    if (isDown) {
        repeatDelayMs_.reset();
    }
    return isDown;
}

std::optional<bool> ReleasedKeys::askWhetherDown(std::uint32_t scanCode) {
    xcb_connection_t* const server = GetServer();
    if (!rest_.hasExpired() || server == nullptr) {
        return std::nullopt;
    }
    QElapsedTimer asked;
    asked.start();
    const std::optional<bool> isDown = NK::AskWhetherKeyIsDown(server, scanCode);
    if (asked.elapsed() > kLongMs) {
        rest_.setRemainingTime(kRestMs);
    }
    return isDown;
}
