#include "QtWidgets/skin/QPixmapDial.h"

#include <algorithm>
#include <cmath>
#include <QMouseEvent>
#include <QPainter>

QPixmapDial::QPixmapDial(QWidget* parent) : QDial(parent) {
    setWrapping(false);
    connect(this, &QPixmapDial::sliderReleased, this, [this] { setCursor(Qt::ArrowCursor); });
}

void QPixmapDial::setImage(const QString& fileName, PixmapMode mode) {
    load(fileName);
    takeImage(mode);
}

void QPixmapDial::setImage(QPixmap* image, PixmapMode mode) {
    reference(image);
    takeImage(mode);
}

void QPixmapDial::takeImage(PixmapMode mode) {
    mode_ = mode;
    if (const QPixmap* image = pixmap(); image != nullptr && !image->isNull()) {
        const bool horizontal = mode == HorizontalStrip || (mode == AutoStrip && image->height() <= image->width());
        if (mode == VerticalStrip || mode == HorizontalStrip || mode == AutoStrip) {
            nFrames_ = std::max(horizontal ? image->width() / image->height() : image->height() / image->width(), 1);
        }
    }
    update();
}

void QPixmapDial::setZeroAngle(qreal degrees) {
    zeroAngle_ = degrees;
    update();
}

void QPixmapDial::setMaxAngle(qreal degrees) {
    maxAngle_ = degrees;
    update();
}

void QPixmapDial::setAngles(qreal zeroDegrees, qreal maxDegrees) {
    zeroAngle_ = zeroDegrees;
    maxAngle_ = maxDegrees;
    update();
}

void QPixmapDial::setVirtualSlider(bool on) {
    virtualSlider_ = on;
    update();
}

void QPixmapDial::setVirtualHeight(int pixels) {
    if (pixels >= 1) {
        virtualHeight_ = pixels;
    }
}

void QPixmapDial::setNFrames(int frames) {
    if (frames >= 1) {
        nFrames_ = frames;
        update();
    }
}

double QPixmapDial::proportion() const {
    const double range = static_cast<double>(maximum()) - minimum();
    return range == 0.0 ? 0.0 : (static_cast<double>(value()) - minimum()) / range;
}

void QPixmapDial::drawTurned(QPainter& painter, const QPixmap& image, const QRect& source) const {
    const int halfWidth = width() / 2;
    const int halfHeight = height() / 2;
    painter.translate(halfWidth, halfHeight);
    painter.rotate(zeroAngle_ + (maxAngle_ - zeroAngle_) * proportion());
    painter.drawPixmap(rect().translated(-halfWidth, -halfHeight), image, source);
}

void QPixmapDial::drawFrame(QPainter& painter, const QPixmap& image, bool vertical) const {
    const int frame = std::clamp(static_cast<int>(std::lround(proportion() * (nFrames_ - 1))), 0, nFrames_ - 1);
    const int width = vertical ? image.width() : image.width() / nFrames_;
    const int height = vertical ? image.height() / nFrames_ : image.height();
    painter.drawPixmap(rect(), image,
                       QRect(vertical ? 0 : frame * width, vertical ? frame * height : 0, width, height));
}

void QPixmapDial::paintEvent(QPaintEvent*) {
    const QPixmap* image = pixmap();
    if (image == nullptr || image->isNull()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const int half = image->height() / 2;
    switch (mode_) {
        case RotateWhole:
            drawTurned(painter, *image, image->rect());
            break;
        case VerticalStrip:
        case HorizontalStrip:
            drawFrame(painter, *image, mode_ == VerticalStrip);
            break;
        case AutoStrip:
            drawFrame(painter, *image, image->height() > image->width());
            break;
        case FixedTopRotatingBottom:
            painter.drawPixmap(rect(), *image, QRect(0, 0, image->width(), half));
            drawTurned(painter, *image, QRect(0, half, image->width(), half));
            break;
    }
}

int QPixmapDial::dragCoordinate(const QMouseEvent& event) const {
    const QPoint point = event.position().toPoint();
    return virtualSliderVertical_ ? point.y() : point.x();
}

void QPixmapDial::mousePressEvent(QMouseEvent* event) {
    if (!virtualSlider_) {
        QDial::mousePressEvent(event);
    } else if (event->button() == Qt::LeftButton) {
        setCursor(virtualSliderVertical_ ? Qt::SizeVerCursor : Qt::SizeHorCursor);
        dragStart_ = dragCoordinate(*event);
        dragStartValue_ = value();
        setSliderDown(true);
    } else {
        event->ignore();
    }
}

void QPixmapDial::mouseMoveEvent(QMouseEvent* event) {
    if (!virtualSlider_) {
        QDial::mouseMoveEvent(event);
    } else if (isSliderDown()) {
        const double range = static_cast<double>(maximum()) - minimum();
        const double moved = static_cast<double>(dragCoordinate(*event)) - dragStart_;
        const double dragged = dragStartValue_ - range * moved / virtualHeight_;
        setValue(static_cast<int>(std::clamp(dragged, static_cast<double>(minimum()), static_cast<double>(maximum()))));
    }
}

void QPixmapDial::mouseReleaseEvent(QMouseEvent* event) {
    if (!virtualSlider_) {
        QDial::mouseReleaseEvent(event);
    } else if (event->button() == Qt::LeftButton || event->buttons() == Qt::NoButton) {
        setSliderDown(false);
    }
}
