#include "QtWidgets/skin/QBlinkingLed.h"

#include <QPainter>

QBlinkingLed::QBlinkingLed(QWidget* parent) : QWidget(parent) {
    connect(&timer_, &QTimer::timeout, this, [this] { timer(); });
}

void QBlinkingLed::setImage(const QString& fileName) {
    load(fileName);
    update();
}

void QBlinkingLed::setImage(QPixmap* image) {
    reference(image);
    update();
}

void QBlinkingLed::blink() {
    lit_ = true;
    update();
    timer_.start(blinkTime_);
}

void QBlinkingLed::timer() {
    timer_.stop();
    lit_ = false;
    update();
}

void QBlinkingLed::paintEvent(QPaintEvent*) {
    const QPixmap* image = pixmap();
    if (image == nullptr || image->isNull()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const int half = image->height() / 2;
    painter.drawPixmap(rect(), *image, QRect(0, lit_ ? half : 0, image->width(), half));
}
