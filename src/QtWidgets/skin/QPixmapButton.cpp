#include "QtWidgets/skin/QPixmapButton.h"

#include <algorithm>
#include <QPainter>

QPixmapButton::QPixmapButton(QWidget* parent) : QAbstractButton(parent) {
}

void QPixmapButton::setSprite(const QString& fileName, const QRect& area, Qt::Orientation orientation, int frames) {
    load(fileName);
    splitSprite(area, orientation, frames);
}

void QPixmapButton::setSprite(QPixmap* sprite, const QRect& area, Qt::Orientation orientation, int frames) {
    reference(sprite);
    splitSprite(area, orientation, frames);
}

void QPixmapButton::splitSprite(const QRect& area, Qt::Orientation orientation, int frames) {
    stateRects_ = {};
    const QPixmap* sprite = pixmap();
    if (sprite == nullptr) {
        update();
        return;
    }
    const QRect whole = area.width() < 1 || area.height() < 1 ? sprite->rect() : area;
    const int count = std::max(frames, 1);
    const auto frame = [&](int index) {
        if (orientation == Qt::Horizontal) {
            const int width = whole.width() / count;
            return QRect(whole.left() + index * width, whole.top(), width, whole.height());
        }
        const int height = whole.height() / count;
        return QRect(whole.left(), whole.top() + index * height, whole.width(), height);
    };
    constexpr int kFrameOfState[4][kStates] = {{0, 0, 0, 0}, {0, 1, 0, 1}, {0, 1, 2, 2}, {0, 1, 2, 3}};
    const int* frameOfState = kFrameOfState[std::min(count, 4) - 1];
    for (std::size_t state = 0; state < kStates; ++state) {
        stateRects_[state] = frame(frameOfState[state]);
    }
    resize((QSizeF(stateRects_[kOn].size()) / sprite->devicePixelRatio()).toSize());
    update();
}

void QPixmapButton::setImages(const QString& normal, const QString& on, const QString& disabled,
                              const QString& disabledOn) {
    clear();
    stateRects_ = {};
    int index = 0;
    for (const QString& fileName : {normal, on, disabled, disabledOn}) {
        if (!fileName.isEmpty()) {
            load(index, fileName);
        }
        ++index;
    }
    updateGeometry();
    update();
}

void QPixmapButton::setImages(QPixmap* normal, QPixmap* on, QPixmap* disabled, QPixmap* disabledOn) {
    clear();
    stateRects_ = {};
    int index = 0;
    for (QPixmap* image : {normal, on, disabled, disabledOn}) {
        if (image != nullptr) {
            reference(index, image);
        }
        ++index;
    }
    updateGeometry();
    update();
}

void QPixmapButton::setShowCaption(bool show) {
    showCaption_ = show;
    update();
}

void QPixmapButton::setCaptionPressedOffset(int x, int y) {
    captionPressedOffset_ = QPoint(x, y);
    update();
}

QSize QPixmapButton::sizeHint() const {
    const QPixmap* image = pixmap();
    if (image == nullptr) {
        return QAbstractButton::sizeHint();
    }
    const QSizeF size = stateRects_[kOn].isNull() ? QSizeF(image->size()) : QSizeF(stateRects_[kOn].size());
    return (size / image->devicePixelRatio()).toSize();
}

QPixmap* QPixmapButton::imageOfState(State state) const {
    const int images = count();
    switch (state) {
        case kOn:
            return pixmapAt(images >= 2 ? 1 : 0);
        case kDisabled:
            return pixmapAt(images >= 3 ? 2 : 0);
        case kDisabledOn:
            return pixmapAt(std::clamp(images - 1, 0, 3));
        default:
            return pixmapAt(0);
    }
}

void QPixmapButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    const bool on = isOn();
    const State state = isEnabled() ? (on ? kOn : kNormal) : (on ? kDisabledOn : kDisabled);
    if (!stateRects_[state].isNull()) {
        if (const QPixmap* sprite = pixmap()) {
            painter.drawPixmap(rect(), *sprite, stateRects_[state]);
        }
    } else if (const QPixmap* image = imageOfState(state)) {
        painter.drawPixmap(rect(), *image);
    }
    if (showCaption_) {
        painter.setFont(font());
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        painter.setBrush(Qt::SolidPattern);
        painter.drawText(on ? rect().translated(captionPressedOffset_) : rect(), Qt::AlignHCenter | Qt::AlignVCenter,
                         text());
    }
}
