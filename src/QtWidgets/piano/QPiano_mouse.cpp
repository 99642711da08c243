// Playing the piano with the mouse, a pen and fingers.
#include <QInputDevice>
#include <QMouseEvent>
#include <QTouchEvent>

#include <algorithm>
#include <utility>

#include "QtWidgets/piano/QPiano.h"

namespace {
// Every touch arrives as a touch event; a mouse event made of one would play its key twice.
bool isMadeOfTouch(const QMouseEvent& event) {
    return event.source() != Qt::MouseEventNotSynthesized && event.device() != nullptr &&
           event.device()->type() == QInputDevice::DeviceType::TouchScreen;
}
}  // namespace

// A slot may release the pointers, so a hold is set before the signals.
void QPiano::press(THold& hold, const QPointF& position) {
    const BYTE note = keyAt(position);
    const bool joins = isHeld(note);
    hold = {note, 0};
    if (note == kNoKey) {
        return;
    }
    const BYTE velocity = hold.velocity = velocityAt(note, position);
    if (joins) {
        return;
    }
    emit keyPressed(note);
    emit keyPressed(note, velocity);
    if (standalone_) {
        PressKey(note);
    }
    setCursorNote(note);
}

void QPiano::move(THold& hold, const QPointF& position) {
    const BYTE note = keyAt(position);
    if (note != hold.note) {
        release(hold);
        press(hold, position);
        return;
    }
    if (note == kNoKey) {
        return;
    }
    const BYTE velocity = velocityAt(note, position);
    if (velocity != hold.velocity) {
        hold.velocity = velocity;
        emit keyAfterTouch(note, velocity);
    }
}

void QPiano::release(THold& hold) {
    const BYTE note = std::exchange(hold.note, kNoKey);
    if (note == kNoKey || isHeld(note)) {
        return;
    }
    emit keyReleased(note);
    if (standalone_) {
        ReleaseKey(note);
    }
}

void QPiano::releasePointers() {
    release(mouse_);
    for (auto& [id, finger] : fingers_) {
        release(finger);
    }
}

bool QPiano::isHeld(BYTE note) const {
    return mouse_.note == note || std::any_of(fingers_.begin(), fingers_.end(),
                                              [note](const auto& finger) { return finger.second.note == note; });
}

void QPiano::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    if (isMadeOfTouch(*event)) {
        event->accept();
        return;
    }
    if (event->button() != Qt::LeftButton) {
        release(mouse_);
        return;
    }
    event->accept();
    if (const BYTE held = std::exchange(mouse_.note, kNoKey); held != kNoKey) {
        emit keyReleased(held);
    }
    press(mouse_, event->position());
}

void QPiano::mouseMoveEvent(QMouseEvent* event) {
    QWidget::mouseMoveEvent(event);
    if (isMadeOfTouch(*event)) {
        event->accept();
        return;
    }
    if (event->buttons() != Qt::LeftButton) {
        release(mouse_);
        return;
    }
    move(mouse_, event->position());
}

void QPiano::mouseReleaseEvent(QMouseEvent* event) {
    QWidget::mouseReleaseEvent(event);
    if (!isMadeOfTouch(*event)) {
        release(mouse_);
    }
}

void QPiano::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    release(mouse_);
}

bool QPiano::touchEvent(const QTouchEvent& event) {
    if (event.device()->type() != QInputDevice::DeviceType::TouchScreen || !isEnabled()) {
        return false;
    }
    const QInputDevice* const screen = event.device();
    if (event.type() == QEvent::TouchCancel) {
        for (auto& [id, finger] : fingers_) {
            if (id.first == screen) {
                release(finger);
            }
        }
        std::erase_if(fingers_, [screen](const auto& finger) { return finger.first.first == screen; });
        return true;
    }
    for (const QEventPoint& point : event.points()) {
        const std::pair id(screen, point.id());
        switch (point.state()) {
            case QEventPoint::State::Pressed: {
                THold& finger = fingers_[id];
                release(finger);  // the lifting of an earlier finger of this number may have been lost
                press(finger, point.position());
                break;
            }
            case QEventPoint::State::Updated:
                if (const auto finger = fingers_.find(id); finger != fingers_.end()) {
                    move(finger->second, point.position());
                }
                break;
            case QEventPoint::State::Released:
                if (const auto finger = fingers_.find(id); finger != fingers_.end()) {
                    release(finger->second);
                    fingers_.erase(id);
                }
                break;
            case QEventPoint::State::Stationary:
            case QEventPoint::State::Unknown:
                break;
        }
    }
    return true;
}
