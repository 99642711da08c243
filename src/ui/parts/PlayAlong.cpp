#include "ui/parts/PlayAlong.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCoreApplication>
#include <QKeyEvent>

namespace {

/// Whether a key moves the focus or works a control.
bool isControl(int key) {
    switch (key) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Escape:
        case Qt::Key_Alt:
        case Qt::Key_Menu:
            return true;
        default:
            return key >= Qt::Key_F1 && key <= Qt::Key_F35;
    }
}

quint32 identify(const QKeyEvent& event) {
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<quint32>(event.key());
}

}  // namespace

PlayAlong::PlayAlong(QWidget& window, QWidget& panel) : QObject(&window), window_(window), panel_(panel) {
    window.installEventFilter(this);
    for (QWidget* part : window.findChildren<QWidget*>()) {
        part->installEventFilter(this);
    }
}

bool PlayAlong::isActive() {
    const QWidget* const active = QApplication::activeWindow();
    return active != nullptr && active->findChild<PlayAlong*>(QString(), Qt::FindDirectChildrenOnly) != nullptr;
}

void PlayAlong::passOn(const QKeyEvent& event, QWidget& panel) {
    QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.nativeScanCode(), event.nativeVirtualKey(),
                   event.nativeModifiers(), event.text(), event.isAutoRepeat(), static_cast<quint16>(event.count()));
    copy.setTimestamp(event.timestamp());
    QCoreApplication::sendEvent(&panel, &copy);
}

void PlayAlong::tellLoss(QWidget& panel) {
    if (QApplication::activeWindow() != panel.window()) {
        QEvent lost(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(&panel, &lost);
    }
}

bool PlayAlong::isForPanel(const QKeyEvent& event) const {
    if (isControl(event.key()) || event.modifiers().testFlag(Qt::AltModifier)) {
        return false;
    }
    const bool isLetter = event.key() > 0x7F ? !event.text().isEmpty() && event.text().front().isLetter()
                                             : event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z;
    return isLetter || qobject_cast<const QAbstractSpinBox*>(window_.focusWidget()) == nullptr;
}

void PlayAlong::passReleaseOn(const QKeyEvent& event) {
    if (own_.erase(identify(event)) == 0) {
        passOn(event, panel_);
    }
}

bool PlayAlong::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            if (isForPanel(static_cast<const QKeyEvent&>(*event))) {
                event->accept();  // a key like any other
                return true;
            }
            break;
        case QEvent::KeyPress: {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            if (isForPanel(key)) {
                own_.erase(identify(key));
                passOn(key, panel_);
                return true;
            }
            own_.insert(identify(key));
            break;
        }
        case QEvent::KeyRelease: {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            if (watched == window_.focusWidget() || window_.focusWidget() == nullptr) {
                passReleaseOn(key);  // once, however far it is handed up
            }
            return isForPanel(key);
        }
        case QEvent::WindowDeactivate:
            if (watched == &window_) {
                own_.clear();  // their releases go elsewhere
                tellLoss(panel_);
            }
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}
