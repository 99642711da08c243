// The picture of a velocity curve.
#pragma once

#include <QPoint>
#include <QWidget>
#include <vector>

#include "engine/values/VelocityCurve.h"

/// What comes in goes to the right, what comes out up, 1..127 each. The last touches are dots on the curve. The three
/// points of a drawn curve are moved with the mouse. [gui]
class VelocityGraph : public QWidget {
    Q_OBJECT

public:
    explicit VelocityGraph(QWidget* parent = nullptr);

    void setCurve(const Kivora::VelocityCurve& curve);
    /// Velocities in (x) and out (y).
    void setDots(std::vector<QPoint> dots);
    const std::vector<QPoint>& dots() const { return dots_; }
    /// Where velocities stand on the widget.
    QPointF placeOf(double in, double out) const;
    QSize sizeHint() const override { return {268, 268}; }
    QSize minimumSizeHint() const override { return {160, 160}; }

signals:
    /// The user has moved a point.
    void curveDrawn(const Kivora::VelocityCurve& curve);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    static constexpr int kNoPoint = -1;

    QRectF field() const;
    std::vector<QPointF> handles() const;

    Kivora::VelocityCurve curve_;
    std::vector<QPoint> dots_;
    int moved_ = kNoPoint;
};
