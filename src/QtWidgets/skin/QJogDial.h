// An endless jog wheel.
#pragma once

#include "QtWidgets/skin/QPixmapDial.h"

/// Turns without an end and reports clicks: one for every click angle that the pointer goes round the centre, one for
/// every 120 units of the mouse wheel, one for an arrow key. The value, 0..2000000000, only turns the image: one full
/// turn spans the range and wraps. [gui]
class QJogDial : public QPixmapDial {
    Q_OBJECT
    Q_PROPERTY(qreal clickAngle READ clickAngle WRITE setClickAngle)

public:
    explicit QJogDial(QWidget* parent = nullptr);

    qreal clickAngle() const { return clickAngle_; }  ///< degrees
    /// Degrees that make one click; a value not above 0 is ignored.
    void setClickAngle(qreal degrees);

    // The wheel's angles and its way of dragging are fixed; only setAngles() changes the angles.
    void setZeroAngle(qreal) override {}
    void setMaxAngle(qreal) override {}
    void setVirtualSlider(bool) override {}

signals:
    void jogLeft();             ///< one click counter-clockwise
    void jogRight();            ///< one click clockwise
    void jog(bool forward);     ///< with each click; true clockwise
    void jogClicks(int count);  ///< after the clicks of one event; above 0 clockwise
    void jogTest();             ///< before the value turns

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    double pointerAngle(const QMouseEvent& event) const;  ///< radians about the centre, counter-clockwise
    double clickRadians() const;
    void emitClicks(int clockwise);
    void turnValue(double radians);  ///< counter-clockwise positive

    qreal clickAngle_ = 5.0;
    double lastAngle_ = 0.0;   ///< radians, at the last click
    double shownAngle_ = 0.0;  ///< degrees, of the value before the last turn
    int wheelRest_ = 0;        ///< wheel units not yet turned into clicks
};
