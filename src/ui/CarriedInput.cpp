#include "ui/CarriedInput.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace {
/// Of completers, which leave the keys to the field that they complete, no pop-up.
bool isPopUp(const QObject* watched) {
    const auto* const widget = qobject_cast<const QWidget*>(watched);
    return widget != nullptr && widget->isWindow() && widget->windowType() == Qt::Popup &&
           widget->focusProxy() == nullptr;
}

/// A pop-up is not: it opens and closes by a button that is held on.
bool isDialogOrPanel(const QObject* watched) {
    const auto* const window = qobject_cast<const QWindow*>(watched);
    return window != nullptr && window->type() != Qt::Popup;
}
}  // namespace

CarriedInput::CarriedInput() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool CarriedInput::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::ShortcutOverride:
            return takesPress(*static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease:
            return takesRelease(*static_cast<QKeyEvent*>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            if (auto* const window = qobject_cast<QWindow*>(watched)) {
                return takesMouse(*window, *static_cast<QMouseEvent*>(event));
            }
            break;
        case QEvent::WindowBlocked:
            carryButtons(watched);
            carryKeys();
            break;
        case QEvent::WindowUnblocked:
            carryKeys();
            break;
        case QEvent::Show:
        case QEvent::Hide:
            if (isPopUp(watched)) {
                carryKeys();
            } else if (event->type() == QEvent::Hide && isDialogOrPanel(watched)) {
                carryButtons(watched);
            }
            break;
        default:
            break;
    }
    return false;
}

void CarriedInput::carryKeys() {
    for (auto& [scanCode, key] : keys_) {
        key.carried = true;
    }
}

void CarriedInput::carryButtons(const QObject* window) {
    for (const auto& [button, pressedIn] : buttons_) {
        carriedButtons_.setFlag(button, carriedButtons_.testFlag(button) || pressedIn == window || !pressedIn);
    }
}

void CarriedInput::keepOnly(const NK::TPressedInput& down) {
    for (auto& [scanCode, key] : keys_) {
        if (!key.up && !down.IsKeyDown(scanCode)) {
            key.up = true;
            key.upAtMs = 0;
        }
    }
    constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};
    for (int number = 1; const Qt::MouseButton button : kButtons) {
        if (!down.IsButtonDown(number++) && buttons_.erase(button) > 0) {
            carriedButtons_.setFlag(button);
        }
    }
}

void CarriedInput::noteRelease(quint32 scanCode, quint64 atMs) {
    Key& key = keys_[scanCode];
    if (!key.up) {
        key.up = true;
        key.upAtMs = atMs;
    }
    key.toldUpAtMs = atMs;
}

bool CarriedInput::takesPress(QKeyEvent& event) {
    if (event.nativeScanCode() == 0) {
        return false;
    }
    Key& key = keys_[event.nativeScanCode()];
    const bool pairs = event.timestamp() != 0 && event.timestamp() == key.upAtMs;
    const bool repeats = event.isAutoRepeat() || !key.up || pairs;
    key.carried = key.carried && repeats;
    key.up = event.timestamp() < key.toldUpAtMs;
    if (key.carried) {
        event.accept();  // as a shortcut it would be tried otherwise
    }
    return key.carried;
}

bool CarriedInput::takesRelease(const QKeyEvent& event) {
    const auto key = keys_.find(event.nativeScanCode());
    if (key == keys_.end()) {
        return false;
    }
    key->second.up = true;
    key->second.upAtMs = event.timestamp();
    return key->second.carried;
}

bool CarriedInput::takesMouse(QWindow& window, QMouseEvent& event) {
    const Qt::MouseButton button = event.button();
    if (event.type() == QEvent::MouseButtonRelease) {
        buttons_.erase(button);
        if (carriedButtons_.testFlag(button)) {
            carriedButtons_.setFlag(button, false);
            return true;
        }
    } else if (event.type() != QEvent::MouseMove) {
        buttons_[button] = &window;
        carriedButtons_.setFlag(button, false);
    }
    if (!(event.buttons() & carriedButtons_)) {
        return false;
    }
    QMouseEvent without(event.type(), event.position(), event.scenePosition(), event.globalPosition(), button,
                        event.buttons() & ~carriedButtons_, event.modifiers(), event.source(), event.pointingDevice());
    without.setTimestamp(event.timestamp());
    QCoreApplication::sendEvent(&window, &without);
    event.setAccepted(without.isAccepted());
    return true;
}
