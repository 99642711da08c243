#include "QtWidgets/skin/QPixmapSlider.h"

#include <algorithm>
#include <cmath>
#include <QMouseEvent>
#include <QPainter>

#include "QtWidgets/skin/SymmetricRounding.h"

namespace {
constexpr int kChannel = 0;
constexpr int kHandle = 1;
constexpr int kDraggedHandle = 2;
constexpr int kDisabledHandle = 3;
}  // namespace

QPixmapSlider::QPixmapSlider(QWidget* parent) : QAbstractSlider(parent) {
    setOrientation(Qt::Horizontal);
    setTracking(true);
}

void QPixmapSlider::setImages(const QString& channel, const QString& handle, const QString& draggedHandle,
                              const QString& disabledHandle) {
    clear();
    int index = 0;
    for (const QString& fileName : {channel, handle, draggedHandle, disabledHandle}) {
        if (!fileName.isEmpty()) {
            load(index, fileName);
        }
        ++index;
    }
    fixSize();
}

void QPixmapSlider::setImages(QPixmap* channel, QPixmap* handle, QPixmap* draggedHandle, QPixmap* disabledHandle) {
    clear();
    int index = 0;
    for (QPixmap* image : {channel, handle, draggedHandle, disabledHandle}) {
        if (image != nullptr) {
            reference(index, image);
        }
        ++index;
    }
    fixSize();
}

void QPixmapSlider::fixSize() {
    if (const QPixmap* channel = pixmapAt(kChannel)) {
        setFixedSize(channel->deviceIndependentSize().toSize());
    }
    update();
}

QSize QPixmapSlider::sizeHint() const {
    const QPixmap* channel = pixmapAt(kChannel);
    return channel == nullptr ? QAbstractSlider::sizeHint() : channel->deviceIndependentSize().toSize();
}

int QPixmapSlider::travel() const {
    const QPixmap* handle = pixmapAt(kHandle);
    return handle == nullptr ? 0 : width() - handle->deviceIndependentSize().toSize().width();
}

double QPixmapSlider::exactHandleX() const {
    if (minimum() == maximum()) {
        return 0.0;
    }
    const double range = static_cast<double>(maximum()) - minimum();
    return (static_cast<double>(value()) - minimum()) * travel() / range;
}

QRect QPixmapSlider::handleRect() const {
    const QPixmap* handle = pixmapAt(kHandle);
    if (handle == nullptr) {
        return {};
    }
    const int x = minimum() == maximum() ? 0 : static_cast<int>(std::lround(exactHandleX()));
    return {QPoint(x, 0), handle->deviceIndependentSize().toSize()};
}

int QPixmapSlider::valueAt(double handleX) const {
    const double range = static_cast<double>(maximum()) - minimum();
    const double exact = minimum() + range * handleX / travel();
    return RoundHalfToZero(std::clamp(exact, static_cast<double>(minimum()), static_cast<double>(maximum())));
}

void QPixmapSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    if (const QPixmap* channel = pixmapAt(kChannel)) {
        painter.drawPixmap(rect(), *channel);
    }
    const QPixmap* handle = pixmapAt(kHandle);
    if (!isEnabled() && pixmapAt(kDisabledHandle) != nullptr) {
        handle = pixmapAt(kDisabledHandle);
    } else if (isSliderDown() && pixmapAt(kDraggedHandle) != nullptr) {
        handle = pixmapAt(kDraggedHandle);
    }
    if (handle != nullptr) {
        painter.drawPixmap(handleRect(), *handle);
    }
}

void QPixmapSlider::mousePressEvent(QMouseEvent* event) {
    if (isEnabled() && event->button() == Qt::LeftButton && handleRect().contains(event->position().toPoint())) {
        lastX_ = event->position().toPoint().x();
        dragX_ = exactHandleX();
        setSliderDown(true);
    }
    update();
    QWidget::mousePressEvent(event);
}

void QPixmapSlider::mouseMoveEvent(QMouseEvent* event) {
    const int x = event->position().toPoint().x();
    if (isSliderDown() && x != lastX_) {
        dragX_ += x - lastX_;
        lastX_ = x;
        if (travel() > 0) {
            setValue(valueAt(dragX_));
        }
        update();
    }
    QWidget::mouseMoveEvent(event);
}

void QPixmapSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && isSliderDown()) {
        setSliderDown(false);
        update();
    }
    QWidget::mouseReleaseEvent(event);
}
