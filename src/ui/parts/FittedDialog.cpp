#include "ui/parts/FittedDialog.h"

#include <algorithm>
#include <QBoxLayout>
#include <QEvent>
#include <QScreen>
#include <QShowEvent>
#include <QStyle>

namespace {

/// Of the window's frame with its title, which is known only once it is shown.
constexpr QSize kFrame(8, 40);

}  // namespace

FittedDialog::FittedDialog(QWidget* parent) : QDialog(parent) {
}

void FittedDialog::arrange(int) {
}

void FittedDialog::fold(QBoxLayout& row, int width) {
    const auto lay = [this, &row](QBoxLayout::Direction direction) {
        row.setDirection(direction);
        for (QWidget* part = row.parentWidget(); part != this; part = part->parentWidget()) {
            part->updateGeometry();
        }
        layout()->invalidate();
    };
    lay(QBoxLayout::LeftToRight);
    if (sizeHint().width() > width) {
        lay(QBoxLayout::TopToBottom);
    }
}

QSize FittedDialog::roomOfScreen() const {
    const QWidget* const where = parentWidget() != nullptr ? parentWidget() : static_cast<const QWidget*>(this);
    return where->screen()->availableGeometry().size() - kFrame;
}

void FittedDialog::fitInto(const QSize& room) {
    room_ = room;
    arrange(room.width());
    wanted_ = sizeHint();
    QSize size = wanted_.expandedTo(preferred_);
    if (size.height() > room.height()) {
        size.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    }
    resize(size.boundedTo(room));
}

void FittedDialog::moveOntoScreen() {
    const QRect room = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    const auto within = [](int begin, int size, int first, int end) {
        return std::max(std::min(begin, end - size), first);
    };
    const QPoint corner(within(frame.x(), frame.width(), room.x(), room.x() + room.width()),
                        within(frame.y(), frame.height(), room.y(), room.y() + room.height()));
    if (corner != frame.topLeft()) {
        move(corner);
    }
}

bool FittedDialog::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest && isVisible() && sizeHint() != wanted_) {
        fitInto(room_);
        moveOntoScreen();
    }
    return handled;
}

void FittedDialog::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        if (!room_.isValid() && testAttribute(Qt::WA_Resized)) {
            preferred_ = size();
        }
        fitInto(roomOfScreen());
    }
    QDialog::showEvent(event);
}
