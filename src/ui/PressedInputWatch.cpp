#include "ui/PressedInputWatch.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

PressedInputWatch::PressedInputWatch(Source source) : source_(std::move(source)) {
    connect(&timer_, &QTimer::timeout, this, &PressedInputWatch::tick);
    QCoreApplication::instance()->installEventFilter(this);
}

bool PressedInputWatch::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::ShortcutOverride:
            if (const auto& key = static_cast<const QKeyEvent&>(*event); !repeats_.isRepeat(key)) {
                pressedSince_.NotePressedKey(key.nativeScanCode());
                beginWatch();
            }
            break;
        case QEvent::KeyRelease:
            repeats_.noteRelease(static_cast<const QKeyEvent&>(*event));
            break;
        case QEvent::MouseButtonPress:
            ofMouse_ = static_cast<QMouseEvent*>(event)->source() == Qt::MouseEventNotSynthesized;
            pressedSince_.buttons = UINT8_MAX;
            beginWatch();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void PressedInputWatch::beginWatch() {
    if (!timer_.isActive()) {
        asking_ = false;
        timer_.start(kPeriodMs);
    }
}

void PressedInputWatch::askNow() {
    if (timer_.isActive()) {
        ask();
    }
}

void PressedInputWatch::ask() {
    source_.ask();
    answer_.reset();
    asking_ = true;
    pressedSince_ = {};
    timer_.start(kAnswerMs);
}

void PressedInputWatch::tick() {
    if (!asking_) {
        ask();
        return;
    }
    // Releases that the server told of before it answered are handled by the next tick.
    std::optional<NK::TPressedInput> down = std::exchange(answer_, source_.takeAnswer());
    if (!down) {
        return;
    }
    asking_ = false;
    timer_.start(kPeriodMs);
    down->keys |= pressedSince_.keys;
    down->buttons |= pressedSince_.buttons;
    if (!down->IsAnythingDown()) {
        timer_.stop();
    }
    if (!ofMouse_) {
        down->buttons = UINT8_MAX;
    }
    emit pressed(*down);
}
