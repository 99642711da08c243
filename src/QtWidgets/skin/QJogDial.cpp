#include "QtWidgets/skin/QJogDial.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "QtWidgets/skin/SymmetricRounding.h"

namespace {
constexpr double kPi = std::numbers::pi;
constexpr int kMaximum = 2000000000;
constexpr int kWheelUnitsPerClick = 120;  // one notch of a common wheel, in Qt's eighths of a degree
}  // namespace

QJogDial::QJogDial(QWidget* parent) : QPixmapDial(parent) {
    setAngles(-180.0, 180.0);
    QPixmapDial::setVirtualSlider(false);
    setRange(0, kMaximum);
    setValue(0);
}

void QJogDial::setClickAngle(qreal degrees) {
    if (degrees > 0.0) {
        clickAngle_ = degrees;
    }
}

double QJogDial::clickRadians() const {
    return clickAngle_ * kPi / 180.0;
}

double QJogDial::pointerAngle(const QMouseEvent& event) const {
    return std::atan2(height() * 0.5 - event.position().y(), event.position().x() - width() * 0.5);
}

void QJogDial::emitClicks(int clockwise) {
    for (int i = 0; i < std::abs(clockwise); ++i) {
        if (clockwise > 0) {
            emit jogRight();
        } else {
            emit jogLeft();
        }
        emit jog(clockwise > 0);
    }
}

void QJogDial::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(true);
        lastAngle_ = pointerAngle(*event);
    } else {
        event->ignore();
    }
}

void QJogDial::mouseMoveEvent(QMouseEvent* event) {
    wheelRest_ = 0;
    if (!isSliderDown()) {
        return;
    }
    const double angle = pointerAngle(*event);
    double delta = angle - lastAngle_;
    if (lastAngle_ > kPi / 2 && angle < -kPi / 2) {
        delta += 2 * kPi;
    } else if (lastAngle_ < -kPi / 2 && angle > kPi / 2) {
        delta -= 2 * kPi;
    }
    const double click = clickRadians();
    int left = 0;
    if (delta > click) {
        for (; delta >= click; delta -= click) {
            ++left;
        }
    } else if (delta <= -click) {
        for (delta = -delta; delta >= click; delta -= click) {
            --left;
        }
    }
    if (left == 0) {
        return;
    }
    emitClicks(-left);
    emit jogClicks(-left);
    turnValue(left * click);
    lastAngle_ += left * click;
    while (lastAngle_ > kPi) {
        lastAngle_ -= 2 * kPi;
    }
    while (lastAngle_ <= -kPi) {
        lastAngle_ += 2 * kPi;
    }
}

void QJogDial::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
}

void QJogDial::wheelEvent(QWheelEvent* event) {
    wheelRest_ -= event->angleDelta().y();
    const int clicks = wheelRest_ / kWheelUnitsPerClick;
    emitClicks(clicks);
    emit jogClicks(clicks);
    if (clicks != 0) {
        turnValue(-clicks * clickRadians());
        wheelRest_ -= clicks * kWheelUnitsPerClick;
    }
    event->accept();
}

void QJogDial::keyPressEvent(QKeyEvent* event) {
    int clicks = 0;
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Right) {
        clicks = 1;
    } else if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Left) {
        clicks = -1;
    }
    if (clicks == 0) {
        event->ignore();
        return;
    }
    emitClicks(clicks);
    emit jogClicks(clicks);
    turnValue(-clicks * clickRadians());
}

void QJogDial::showEvent(QShowEvent* event) {
    wheelRest_ = 0;
    QPixmapDial::showEvent(event);
}

void QJogDial::turnValue(double radians) {
    const double half = maximum() * 0.5;
    double position = half == 0.0 ? 0.0 : (value() - half) / half;
    shownAngle_ = position * 180.0;
    emit jogTest();
    position -= radians / kPi;
    while (position > 1.0) {
        position -= 2.0;
    }
    while (position <= -1.0) {
        position += 2.0;
    }
    const double exact =
        std::clamp((position + 1.0) * half, static_cast<double>(minimum()), static_cast<double>(maximum()));
    setValue(RoundHalfToZero(exact));
}
