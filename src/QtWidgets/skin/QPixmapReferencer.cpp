#include "QtWidgets/skin/QPixmapReferencer.h"

#include <QFileInfo>
#include <QGuiApplication>

namespace {

QString FileForScreen(const QString& fileName) {
    const qsizetype dot = fileName.lastIndexOf('.');
    if (dot < 0 || qGuiApp == nullptr || qGuiApp->devicePixelRatio() <= 1.0) {
        return fileName;
    }
    QString doubled = fileName;
    doubled.insert(dot, QLatin1String("@2x"));
    return QFileInfo::exists(doubled) ? doubled : fileName;
}

}  // namespace

QPixmapReferencer::QPixmapReferencer(const QPixmapReferencer& other)
    : referenced_(other.referenced_), owned_(other.owned_ ? std::make_unique<QPixmap>(*other.owned_) : nullptr) {
}

QPixmapReferencer& QPixmapReferencer::operator=(const QPixmapReferencer& other) {
    if (this != &other) {
        *this = QPixmapReferencer(other);
    }
    return *this;
}

void QPixmapReferencer::clear() {
    owned_.reset();
    referenced_ = nullptr;
}

void QPixmapReferencer::load(const QString& fileName, const char* format, Qt::ImageConversionFlags flags) {
    clear();
    owned_ = std::make_unique<QPixmap>(FileForScreen(fileName), format, flags);
}

void QPixmapReferencer::reference(QPixmap* pixmap) {
    clear();
    referenced_ = pixmap;
}

QPixmap* QPixmapReferencer::pixmap() const {
    return owned_ ? owned_.get() : referenced_;
}
