#include "ui/parts/InstrumentParts.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>

#include "ui/parts/InstrumentColors.h"

namespace InstrumentParts {

namespace {

constexpr double kSocketRadius = 5.5;
constexpr double kCapRadius = 4.0;
constexpr double kGlassRadius = 3.0;
constexpr double kPlateRadius = 6.0;
constexpr double kHalfPixel = 0.5;

QColor Black(double opacity) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}
QColor White(double opacity) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}

QLinearGradient Fall(const QRectF& area, const QGradientStops& stops) {
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setStops(stops);
    return gradient;
}

void Fill(QPainter& painter, const QRectF& area, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(area, radius, radius);
}

/// A line of one pixel just inside the area.
void Outline(QPainter& painter, const QRectF& area, double radius, const QBrush& brush) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(brush, 1.0));
    painter.drawRoundedRect(area.adjusted(kHalfPixel, kHalfPixel, -kHalfPixel, -kHalfPixel), radius, radius);
}

class Saved {
public:
    explicit Saved(QPainter& painter) : painter_(painter) {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
    }
    ~Saved() { painter_.restore(); }
    Saved(const Saved&) = delete;
    Saved& operator=(const Saved&) = delete;

private:
    QPainter& painter_;
};

}  // namespace

void DrawCap(QPainter& painter, const QRectF& socket, CapState state) {
    using namespace InstrumentColors;
    const Saved saved(painter);
    Fill(painter, socket, kSocketRadius, Fall(socket, {{0, Black(0.78)}, {1, Black(0.5)}}));
    const QRectF cap = socket.adjusted(2, 2, -2, -2);
    if (state == CapState::kDown) {
        Fill(painter, cap, kCapRadius, Fall(cap, {{0, kMenu}, {0.25, kCapBottom.darker(112)}, {1, kCapBottom}}));
        Outline(painter, cap, kCapRadius, Fall(cap, {{0, Black(0.7)}, {1, White(0.1)}}));
        return;
    }
    const int light = state == CapState::kHovered ? 118 : 100;
    Fill(painter, cap, kCapRadius,
         state == CapState::kDisabled
             ? QBrush(kCap)
             : QBrush(Fall(cap,
                           {{0, kCapTop.lighter(light)}, {0.5, kCap.lighter(light)}, {1, kCapBottom.lighter(light)}})));
    const double edge = state == CapState::kDisabled ? 0.12 : 0.34;
    Outline(painter, cap, kCapRadius, Fall(cap, {{0, White(edge)}, {0.3, White(0.09)}, {1, Black(0.4)}}));
}

void DrawCapLamp(QPainter& painter, const QRectF& socket) {
    constexpr QSizeF kLamp(16, 3);
    const Saved saved(painter);
    const QRectF lamp(QPointF(socket.center().x() - kLamp.width() / 2, socket.top() + 3), kLamp);
    Fill(painter, lamp.adjusted(-1, -1, 1, 1), 2.5, Black(0.6));
    Fill(painter, lamp, 1.5, InstrumentColors::kFigures);
}

void DrawGlass(QPainter& painter, const QRectF& pane, const QColor& edge, double edgeWidth) {
    const Saved saved(painter);
    const double inset = edgeWidth / 2.0;
    painter.setPen(QPen(edge, edgeWidth));
    painter.setBrush(Fall(pane, {{0, InstrumentColors::kGlass.darker(170)}, {1, InstrumentColors::kGlass}}));
    painter.drawRoundedRect(pane.adjusted(inset, inset, -inset, -inset), kGlassRadius, kGlassRadius);
}

void DrawPlate(QPainter& painter, const QRectF& plate) {
    const Saved saved(painter);
    Fill(painter, plate, kPlateRadius, Fall(plate, {{0, Black(0.27)}, {1, Black(0.17)}}));
    Outline(painter, plate, kPlateRadius, Fall(plate, {{0, Black(0.62)}, {0.55, Black(0.3)}, {1, White(0.17)}}));
}

void DrawRing(QPainter& painter, const QRectF& area, double radius) {
    constexpr double kWidth = 1.5;
    const Saved saved(painter);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(InstrumentColors::kRing, kWidth));
    constexpr double kInset = kWidth / 2.0;
    painter.drawRoundedRect(area.adjusted(kInset, kInset, -kInset, -kInset), radius, radius);
}

void DrawTick(QPainter& painter, const QRectF& area, const QColor& color) {
    const Saved saved(painter);
    const auto at = [&area](double x, double y) {
        return QPointF(area.left() + x * area.width(), area.top() + y * area.height());
    };
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, area.width() * 0.14, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({at(0.24, 0.53), at(0.43, 0.72), at(0.78, 0.3)}));
}

void DrawDot(QPainter& painter, const QRectF& area, const QColor& color) {
    const Saved saved(painter);
    Fill(painter, QRectF(area.center() - QPointF(area.width(), area.height()) * 0.25, area.size() * 0.5), area.width(),
         color);
}

void DrawChevron(QPainter& painter, const QRectF& area, Qt::ArrowType direction, const QColor& color) {
    constexpr double kHalfWidth = 3.5;
    constexpr double kHalfHeight = 1.75;
    const Saved saved(painter);
    painter.translate(area.center());
    switch (direction) {
        case Qt::UpArrow:
            painter.rotate(180);
            break;
        case Qt::LeftArrow:
            painter.rotate(90);
            break;
        case Qt::RightArrow:
            painter.rotate(-90);
            break;
        default:
            break;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{-kHalfWidth, -kHalfHeight}, {0, kHalfHeight}, {kHalfWidth, -kHalfHeight}}));
}

}  // namespace InstrumentParts
