#include "ui/parts/StripWheel.h"

#include <algorithm>
#include <cmath>
#include <QInputDevice>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTouchEvent>
#include <utility>

#include "nk/desktop/nk_pressed_input.h"
#include "piano/CAutoRepeatFilter.h"
#include "ui/parts/InstrumentColors.h"

namespace {

constexpr int kPages = 8;               // of the whole way
constexpr int kBendSteps = 8;           // of a held arrow key to the end, the system's repeats being further ones
constexpr double kNotchUnits = 120.0;   // of the wheel of a mouse
constexpr double kValuesANotch = 4.0;   // of 128
constexpr double kRidgeAngle = 0.2;     // radians
constexpr double kVisibleAngle = 1.35;  // to either side of the middle
constexpr double kNotchMargin = 8.0;    // of the notch's ends, in the design's pixels
constexpr double kSocketRadius = 5.5;
constexpr double kWheelInset = 3.0;

bool isMadeOfTouch(const QMouseEvent& event) {
    return event.source() != Qt::MouseEventNotSynthesized && event.device() != nullptr &&
           event.device()->type() == QInputDevice::DeviceType::TouchScreen;
}

}  // namespace

StripWheel::StripWheel(EKind kind, int lowest, int highest, int rest, QWidget* parent)
    : QAbstractSlider(parent), kind_(kind), rest_(rest), figures_(InstrumentColors::kFigures) {
    setAttribute(Qt::WA_AcceptTouchEvents);
    setOrientation(Qt::Vertical);
    setRange(lowest, highest);
    setPageStep((highest - lowest + 1) / kPages);
    setCursor(Qt::SizeVerCursor);
    setMouseTracking(true);  // which tells of a button that is up though nobody told
    const QScopedValueRollback following(isFollowing_, true);
    setValue(rest);
    connect(this, &QAbstractSlider::sliderReleased, this, &StripWheel::handLeft);
}

void StripWheel::follow(int value) {
    if (isSliderDown()) {
        missed_ = value;
        return;
    }
    const QScopedValueRollback following(isFollowing_, true);
    setValue(value);
}

void StripWheel::releaseAllBut(const NK::TPressedInput& down) {
    const bool isUp = (hand_ == EHand::kMouse && !down.IsButtonDown(NK::TPressedInput::kLeftButton)) ||
                      (hand_ == EHand::kKey && !down.IsKeyDown(scanCode_));
    if (isUp) {
        letGo();
    }
}

void StripWheel::setFigureColor(const QColor& color) {
    figures_ = color;
    update();
}

double StripWheel::trackHeight() const {
    return height() / panelScale() - 2 * kNotchMargin;
}

double StripWheel::notchY() const {
    const double share = static_cast<double>(maximum() - value()) / (maximum() - minimum());
    return kNotchMargin + share * trackHeight();
}

void StripWheel::take(EHand hand, double y) {
    if (isSliderDown()) {
        return;
    }
    hand_ = hand;
    takenY_ = y;
    takenValue_ = value();
    missed_.reset();
    setSliderDown(true);
    update();
}

void StripWheel::drag(double y) {
    const double way = (takenY_ - y) / panelScale() / trackHeight();
    setValue(takenValue_ + static_cast<int>(std::lround(way * (maximum() - minimum()))));
}

void StripWheel::handLeft() {
    hand_ = EHand::kNone;
    keyLeft_.stop();
    const std::optional<int> missed = std::exchange(missed_, std::nullopt);
    if (springsBack() && value() != rest_) {
        setValue(rest_);
    } else if (springsBack() && missed) {
        emit turned(rest_);
    } else if (missed) {
        follow(*missed);
    }
    update();
}

void StripWheel::sliderChange(SliderChange change) {
    QAbstractSlider::sliderChange(change);
    if (change != SliderValueChange || isFollowing_) {
        return;
    }
    if (springsBack() && !isSliderDown() && value() != rest_) {
        setValue(rest_);  // moved by nothing that would let go of it
        return;
    }
    missed_.reset();
    emit turned(value());
}

bool StripWheel::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            if (touch(*static_cast<QTouchEvent*>(event))) {
                event->accept();
                return true;
            }
            break;
        case QEvent::UngrabMouse:
            if (hand_ == EHand::kMouse) {
                letGo();
            }
            break;
        default:
            break;
    }
    return QAbstractSlider::event(event);
}

bool StripWheel::touch(const QTouchEvent& event) {
    if (event.device()->type() != QInputDevice::DeviceType::TouchScreen || !isEnabled()) {
        return false;
    }
    if (event.type() == QEvent::TouchCancel) {
        if (hand_ == EHand::kFinger) {
            letGo();
        }
        return true;
    }
    for (const QEventPoint& point : event.points()) {
        const bool holds = hand_ == EHand::kFinger && point.id() == finger_;
        if (point.state() == QEventPoint::State::Pressed && hand_ == EHand::kNone) {
            finger_ = point.id();
            take(EHand::kFinger, point.position().y());
        } else if (point.state() == QEventPoint::State::Updated && holds) {
            drag(point.position().y());
        } else if (point.state() == QEventPoint::State::Released && holds) {
            letGo();
        }
    }
    return true;
}

void StripWheel::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
    } else if (!isMadeOfTouch(*event)) {
        take(EHand::kMouse, event->position().y());
    }
}

void StripWheel::mouseMoveEvent(QMouseEvent* event) {
    if (hand_ != EHand::kMouse) {
        return;
    }
    if (event->buttons().testFlag(Qt::LeftButton)) {
        drag(event->position().y());
    } else {
        letGo();  // its release went elsewhere
    }
}

void StripWheel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && hand_ == EHand::kMouse) {
        letGo();
    }
}

void StripWheel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (springsBack()) {
        mousePressEvent(event);  // taken again at once
    } else if (event->button() == Qt::LeftButton && !isSliderDown()) {
        setValue(rest_);
    }
}

void StripWheel::wheelEvent(QWheelEvent* event) {
    event->accept();
    if (springsBack() || isSliderDown()) {
        return;  // the wheel of a mouse is not let go of
    }
    scrolled_ += event->angleDelta().y() / kNotchUnits * kValuesANotch;
    const int whole = static_cast<int>(scrolled_);
    scrolled_ -= whole;
    setValue(value() + whole);
}

void StripWheel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Home) {
        letGo();
        setValue(rest_);
    } else if (springsBack()) {
        bend(*event);
    } else if (key == Qt::Key_End) {
        setValue(rest_ == minimum() ? maximum() : minimum());
    } else {
        QAbstractSlider::keyPressEvent(event);
    }
}

/// An arrow bends further with each repeat, a page key all the way, for as long as the key is held.
void StripWheel::bend(const QKeyEvent& event) {
    const int key = event.key();
    const bool isUp = key == Qt::Key_Up || key == Qt::Key_Right || key == Qt::Key_PageUp;
    const bool isPage = key == Qt::Key_PageUp || key == Qt::Key_PageDown;
    if (!isUp && !isPage && key != Qt::Key_Down && key != Qt::Key_Left) {
        return;
    }
    if (hand_ != EHand::kNone && hand_ != EHand::kKey) {
        return;
    }
    if (hand_ == EHand::kNone && event.isAutoRepeat()) {
        return;  // of a key that was let go of for it
    }
    const bool goesOn = hand_ == EHand::kKey && key_ == key;
    keyLeft_.stop();
    key_ = key;
    scanCode_ = event.nativeScanCode();
    take(EHand::kKey, 0.0);
    const int end = isUp ? maximum() : minimum();
    const int step = (end - rest_) / kBendSteps;
    setValue(isPage || (goesOn && std::abs(end - value()) < 2 * std::abs(step)) ? end
             : goesOn                                                           ? value() + step
                                                                                : rest_ + step);
}

void StripWheel::keyReleaseEvent(QKeyEvent* event) {
    if (hand_ != EHand::kKey || event->key() != key_) {
        QAbstractSlider::keyReleaseEvent(event);
    } else if (!event->isAutoRepeat()) {
        keyLeft_.start(NK::Piano::kRepeatSettleMs, Qt::PreciseTimer, this);
    }
}

void StripWheel::timerEvent(QTimerEvent* event) {
    if (event->timerId() == keyLeft_.timerId()) {
        letGo();
    } else {
        QAbstractSlider::timerEvent(event);
    }
}

void StripWheel::focusOutEvent(QFocusEvent* event) {
    QAbstractSlider::focusOutEvent(event);
    if (hand_ == EHand::kKey) {
        letGo();
    }
}

void StripWheel::hideEvent(QHideEvent* event) {
    letGo();
    QAbstractSlider::hideEvent(event);
}

void StripWheel::changeEvent(QEvent* event) {
    QAbstractSlider::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        letGo();
    }
}

/// A knurled wheel that one sees the front of; its notch is lit.
void StripWheel::paintEvent(QPaintEvent*) {
    using namespace InstrumentColors;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(panelScale(), panelScale());
    const QRectF socket(0.0, 0.0, designWidth(*this), height() / panelScale());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(socket, kSocketRadius, kSocketRadius);
    const QRectF wheel = socket.adjusted(kWheelInset, kWheelInset, -kWheelInset, -kWheelInset);
    QLinearGradient round(wheel.topLeft(), wheel.bottomLeft());
    const int light = isSliderDown() ? 118 : 100;
    round.setColorAt(0.0, kMenu.darker(160));
    round.setColorAt(0.3, kCap.lighter(light));
    round.setColorAt(0.46, kCapTop.lighter(light));
    round.setColorAt(0.75, kCapBottom.lighter(light));
    round.setColorAt(1.0, Qt::black);
    painter.setBrush(round);
    painter.drawRoundedRect(wheel, 3.0, 3.0);

    const double radius = wheel.height() / 2 / std::sin(kVisibleAngle);
    const double turn = (notchY() - socket.center().y()) / radius;
    const double phase = std::remainder(turn, kRidgeAngle);
    for (int ridge = -7; ridge <= 7; ++ridge) {
        const double angle = ridge * kRidgeAngle + phase;
        if (std::abs(angle) < kVisibleAngle) {
            const double y = wheel.center().y() + radius * std::sin(angle);
            const double depth = std::cos(angle);
            painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, static_cast<float>(0.55 * depth)), 1.2));
            painter.drawLine(QPointF(wheel.left() + 2, y), QPointF(wheel.right() - 2, y));
            painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, static_cast<float>(0.13 * depth)), 1.0));
            painter.drawLine(QPointF(wheel.left() + 2, y + 1.2), QPointF(wheel.right() - 2, y + 1.2));
        }
    }
    const QRectF notch(wheel.left() + 1.0, notchY() - 1.5, wheel.width() - 2.0, 3.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, 0.7F));
    painter.drawRoundedRect(notch.adjusted(0.0, -1.0, 0.0, 1.0), 2.0, 2.0);
    painter.setBrush(isEnabled() ? figures_ : kDimFigures);
    painter.drawRoundedRect(notch, 1.5, 1.5);
}
