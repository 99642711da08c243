#include "ui/parts/PanelControlKeys.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QKeyEvent>

void PanelControlKeys::watch(QWidget* control) {
    control->setFocusPolicy(Qt::TabFocus);
    control->installEventFilter(this);
}

bool PanelControlKeys::isHeldBack(QWidget* control, QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return false;
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return qobject_cast<QAbstractSlider*>(control) == nullptr && qobject_cast<QComboBox*>(control) == nullptr;
        default:
            return true;
    }
}

void PanelControlKeys::pressEnter(QWidget* control, bool repeated) {
    if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
        if (!repeated || button->autoRepeat()) {
            button->click();
        }
    } else if (auto* const combo = qobject_cast<QComboBox*>(control); combo != nullptr && !repeated) {
        combo->showPopup();
    }
}

bool PanelControlKeys::eventFilter(QObject* watched, QEvent* event) {
    const bool press = event->type() == QEvent::KeyPress;
    auto* const control = qobject_cast<QWidget*>(watched);
    if (control == nullptr || (!press && event->type() != QEvent::KeyRelease)) {
        return false;
    }
    auto* const key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        key->accept();
        if (press) {
            pressEnter(control, repeats_.isRepeat(*key));
        } else {
            repeats_.noteRelease(*key);
        }
        return true;
    }
    if (!isHeldBack(control, key)) {
        return false;
    }
    key->ignore();
    return true;
}
