#include "ui/dialogs/VelocityGraph.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <utility>

using Kivora::VelocityCurve;

namespace {

constexpr double kMargin = 10;
constexpr double kHandle = 5;
constexpr double kReach = 14;
constexpr double kDot = 3;
constexpr double kSpan = VelocityCurve::kHighest - VelocityCurve::kLowest;

QColor Faint(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

}  // namespace

VelocityGraph::VelocityGraph(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void VelocityGraph::setCurve(const VelocityCurve& curve) {
    curve_ = curve;
    update();
}

void VelocityGraph::setDots(std::vector<QPoint> dots) {
    dots_ = std::move(dots);
    update();
}

QRectF VelocityGraph::field() const {
    return QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

QPointF VelocityGraph::placeOf(double in, double out) const {
    const QRectF area = field();
    return {area.left() + area.width() * (in - VelocityCurve::kLowest) / kSpan,
            area.bottom() - area.height() * (out - VelocityCurve::kLowest) / kSpan};
}

std::vector<QPointF> VelocityGraph::handles() const {
    if (curve_.shape != VelocityCurve::Shape::kDrawn) {
        return {};
    }
    const auto on = [this](int in) { return placeOf(in, curve_.Apply(static_cast<std::uint8_t>(in))); };
    return {on(VelocityCurve::kLowest), on(curve_.middleX), on(VelocityCurve::kHighest)};
}

void VelocityGraph::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette().color(QPalette::Highlight);
    painter.setPen(Faint(palette().color(QPalette::WindowText), 0.45));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(Faint(ink, 0.18));
    const QRectF area = field();
    for (int quarter = 0; quarter <= 4; ++quarter) {
        const double part = quarter / 4.0;
        painter.drawLine(QPointF(area.left() + area.width() * part, area.top()),
                         QPointF(area.left() + area.width() * part, area.bottom()));
        painter.drawLine(QPointF(area.left(), area.top() + area.height() * part),
                         QPointF(area.right(), area.top() + area.height() * part));
    }
    QPainterPath path;
    for (int in = VelocityCurve::kLowest; in <= VelocityCurve::kHighest; ++in) {
        const QPointF place = placeOf(in, curve_.Apply(static_cast<std::uint8_t>(in)));
        in == VelocityCurve::kLowest ? path.moveTo(place) : path.lineTo(place);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 2));
    painter.drawPath(path);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::WindowText));
    for (const QPoint& dot : dots_) {
        painter.drawEllipse(placeOf(dot.x(), dot.y()), kDot, kDot);
    }
    painter.setPen(QPen(ink, 1.5));
    painter.setBrush(palette().color(QPalette::Base));
    for (const QPointF& handle : handles()) {
        painter.drawEllipse(handle, kHandle, kHandle);
    }
}

void VelocityGraph::mousePressEvent(QMouseEvent* event) {
    const std::vector<QPointF> places = handles();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if ((places[i] - event->position()).manhattanLength() <= kReach) {
            moved_ = static_cast<int>(i);
        }
    }
}

void VelocityGraph::mouseMoveEvent(QMouseEvent* event) {
    if (moved_ == kNoPoint) {
        return;
    }
    const QRectF area = field();
    const double x = VelocityCurve::kLowest + kSpan * (event->position().x() - area.left()) / area.width();
    // What is drawn lies between the least and the greatest; the point stands for what it is made of.
    const double shown = VelocityCurve::kLowest + kSpan * (area.bottom() - event->position().y()) / area.height();
    const int room = curve_.greatest - curve_.least;
    const int y = room > 0 ? qRound(VelocityCurve::kLowest + (shown - curve_.least) * kSpan / room) : curve_.middleY;
    VelocityCurve drawn = curve_;
    if (moved_ == 0) {
        drawn.firstY = y;
    } else if (moved_ == 1) {
        drawn.middleX = qRound(x);
        drawn.middleY = y;
    } else {
        drawn.lastY = y;
    }
    setCurve(drawn.Kept());
    emit curveDrawn(curve_);
}

void VelocityGraph::mouseReleaseEvent(QMouseEvent* /*event*/) {
    moved_ = kNoPoint;
}
