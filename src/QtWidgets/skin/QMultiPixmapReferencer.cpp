#include "QtWidgets/skin/QMultiPixmapReferencer.h"

void QMultiPixmapReferencer::clear() {
    holders_.clear();
}

void QMultiPixmapReferencer::load(const QString& fileName, const char* format, Qt::ImageConversionFlags flags) {
    clear();
    load(0, fileName, format, flags);
}

void QMultiPixmapReferencer::reference(QPixmap* pixmap) {
    clear();
    reference(0, pixmap);
}

QPixmap* QMultiPixmapReferencer::pixmap() const {
    return pixmapAt(0);
}

int QMultiPixmapReferencer::count() const {
    return static_cast<int>(holders_.size());
}

void QMultiPixmapReferencer::load(int index, const QString& fileName, const char* format,
                                  Qt::ImageConversionFlags flags) {
    holder(index).load(fileName, format, flags);
}

void QMultiPixmapReferencer::reference(int index, QPixmap* pixmap) {
    holder(index).reference(pixmap);
}

QPixmap* QMultiPixmapReferencer::pixmapAt(int index) const {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QPixmap* held = holders_[static_cast<std::size_t>(index)].pixmap();
    return held == nullptr || held->isNull() ? nullptr : held;
}

QPixmapReferencer& QMultiPixmapReferencer::holder(int index) {
    const auto position = static_cast<std::size_t>(index);
    if (position >= holders_.size()) {
        holders_.resize(position + 1);
    }
    return holders_[position];
}
