#include "ui/parts/FocusRing.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace {

constexpr int kReach = 5;  // logical pixels around the control that the ring needs
constexpr double kDistance = 2.0;
constexpr double kWidth = 1.5;
constexpr double kRadius = 7.0;
constexpr double kEdge = 1.0;
constexpr QColor kEdgeColor(0, 0, 0, 191);

}  // namespace

FocusRing::FocusRing(QWidget* panel) : QWidget(panel) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
    follow(QApplication::focusWidget());
}

void FocusRing::follow(QWidget* focused) {
    if (control_) {
        control_->removeEventFilter(this);
    }
    const QWidget* const panel = parentWidget();
    // isAncestorOf() counts the widget itself in.
    const bool shown = focused != nullptr && focused != excluded_ && focused != panel && panel->isAncestorOf(focused);
    control_ = shown ? focused : nullptr;
    if (shown) {
        control_->installEventFilter(this);
        place();
        raise();
    }
    setVisible(shown);
}

void FocusRing::place() {
    const QRect control(control_->mapTo(parentWidget(), QPoint()), control_->size());
    setGeometry(control.adjusted(-kReach, -kReach, kReach, kReach));
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    if (watched == control_ && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF control = QRectF(rect()).adjusted(kReach, kReach, -kReach, -kReach);
    const auto drawAt = [&](double distance, double width, const QColor& color) {
        painter.setPen(QPen(color, width));
        const double radius = kRadius + distance - kDistance;
        painter.drawRoundedRect(control.adjusted(-distance, -distance, distance, distance), radius, radius);
    };
    drawAt(kDistance + (kWidth + kEdge) / 2, kEdge, kEdgeColor);
    drawAt(kDistance, kWidth, Qt::white);
}
