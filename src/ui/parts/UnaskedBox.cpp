#include "ui/parts/UnaskedBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <utility>

#include "ui/parts/PlayAlong.h"

namespace {

/// What moves the focus, or is held to type a letter that acts.
bool isNavigation(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Alt:
            return true;
        default:
            return event.modifiers().testFlag(Qt::AltModifier);
    }
}

}  // namespace

UnaskedBox::UnaskedBox(QMessageBox& box, QWidget* panel) : QObject(&box), box_(box), panel_(panel) {
    deaf_.setParent(this);
    deaf_.setObjectName("deaf-time");
    deaf_.setSingleShot(true);
    box.setFocusPolicy(Qt::StrongFocus);
    box.setFocus();  // and no button
    box.installEventFilter(this);
    for (QWidget* part : box.findChildren<QWidget*>()) {
        part->installEventFilter(this);
    }
}

QMessageBox* UnaskedBox::show(std::unique_ptr<QMessageBox> box, QWidget& panel, Answered answered) {
    QMessageBox* const shown = box.release();
    auto* const governor = new UnaskedBox(*shown, &panel);
    connect(shown, &QDialog::finished, governor, [shown, answered = std::move(answered)] {
        const QAbstractButton* const clicked = shown->clickedButton();
        const auto button = clicked == nullptr ? QMessageBox::NoButton : shown->standardButton(shown->clickedButton());
        shown->deleteLater();
        if (answered) {
            answered(button);
        }
    });
    shown->setWindowModality(Qt::NonModal);
    shown->setAttribute(Qt::WA_ShowWithoutActivating);
    governor->comes_ = true;
    panel.window()->installEventFilter(governor);
    governor->come();
    return shown;
}

void UnaskedBox::withdraw(QMessageBox& box) {
    governorOf(box)->comes_ = false;
    box.hide();
    box.deleteLater();
}

bool UnaskedBox::hasCome(const QMessageBox& box) {
    return !governorOf(box)->comes_;
}

void UnaskedBox::come() {
    if (comes_ && QApplication::activeModalWidget() == nullptr) {
        comes_ = false;
        box_.show();
        dress();
    }
}

UnaskedBox* UnaskedBox::governorOf(const QWidget& box) {
    return box.findChild<UnaskedBox*>(QString(), Qt::FindDirectChildrenOnly);
}

QMessageBox::StandardButton UnaskedBox::exec(QMessageBox& box) {
    UnaskedBox governor(box, nullptr);
    QTimer::singleShot(0, &governor, [&governor] { governor.dress(); });
    box.exec();
    return box.clickedButton() == nullptr ? QMessageBox::NoButton : box.standardButton(box.clickedButton());
}

bool UnaskedBox::isActive() {
    const QWidget* const active = QApplication::activeWindow();
    const auto* const governor = active == nullptr ? nullptr : governorOf(*active);
    return governor != nullptr && governor->panel_;
}

void UnaskedBox::dress() {
    // The row of buttons gives itself a default when it is shown.
    for (QPushButton* button : box_.findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
}

bool UnaskedBox::eventFilter(QObject* watched, QEvent* event) {
    if (panel_ && watched == panel_->window()) {
        if (event->type() == QEvent::WindowUnblocked) {
            QTimer::singleShot(0, this, &UnaskedBox::come);
        }
        return false;
    }
    switch (event->type()) {
        case QEvent::Show:
        case QEvent::WindowUnblocked:
            if (watched == &box_) {
                deaf_.start(kDeafMs);
            }
            break;
        case QEvent::ShortcutOverride: {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            if (deaf_.isActive() || !isNavigation(key)) {
                event->accept();  // a key like any other
                return true;
            }
            break;
        }
        case QEvent::KeyPress:
            return takesPress(*static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease:
            return takesRelease(*static_cast<QKeyEvent*>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::TouchBegin:
            return deaf_.isActive() && watched != &box_;
        case QEvent::Close:
            if (watched == &box_) {
                event->ignore();
                box_.done(QDialog::Rejected);
                return true;
            }
            break;
        case QEvent::WindowDeactivate:
            if (watched == &box_ && panel_) {
                PlayAlong::tellLoss(*panel_);
            }
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

bool UnaskedBox::takesPress(QKeyEvent& event) {
    const bool acts = !deaf_.isActive() && !event.isAutoRepeat() && !repeats_.isRepeat(event);
    auto* const button = qobject_cast<QAbstractButton*>(box_.focusWidget());
    if (isNavigation(event)) {
        return deaf_.isActive();
    }
    if (acts && event.key() == Qt::Key_Escape) {
        box_.done(QDialog::Rejected);
        return true;
    }
    if (acts && button != nullptr && event.key() == Qt::Key_Space) {
        spacePressed_ = true;
        return false;
    }
    if (acts && button != nullptr && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)) {
        button->click();
        return true;
    }
    passOn(event);
    return true;
}

bool UnaskedBox::takesRelease(QKeyEvent& event) {
    repeats_.noteRelease(event);
    if (event.key() == Qt::Key_Space && std::exchange(spacePressed_, false)) {
        return false;
    }
    passOn(event);
    return true;
}

void UnaskedBox::passOn(const QKeyEvent& event) {
    if (panel_) {
        PlayAlong::passOn(event, *panel_);
    }
}
