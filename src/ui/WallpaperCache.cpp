#include "ui/WallpaperCache.h"

#include <cmath>
#include <optional>
#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <string>

#include "nk/nk_atomic_save.h"
#include "nk/nk_directory.h"
#include "nk/nk_file_content.h"
#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/KeptText.h"

namespace {

constexpr const char* kPictureFile = "wallpaper.bmp";
constexpr const char* kPathFile = "wallpaper.txt";
constexpr std::size_t kMaxBytes = 512 * 1024 * 1024;
constexpr const char* kNotLoaded = QT_TRANSLATE_NOOP("KivoraWidget", "Failed to load wallpaper image from:");
constexpr const char* kNoSize = QT_TRANSLATE_NOOP("KivoraWidget", "Cannot determine image size:");
constexpr const char* kStampFile = "wallpaper.stamp";

WallpaperCache::Result Failure(const char* source, const QString& path, const QString& reason = {}) {
    return {{}, QCoreApplication::translate("KivoraWidget", source) + "\n" + path, reason};
}

/// Of the file that failed last.
QString SystemsReason() {
    return NK::ToQt(NK::DescribeFileError(NK::GetFileFailure().error));
}

/// Null with a reason, or a picture.
WallpaperCache::Result Decode(const QString& path) {
    NK::ForgetFileFailure();
    const std::optional<std::string> content = NK::ReadFileContent(NK::FromQt(path), kMaxBytes);
    if (!content) {
        return Failure(kNotLoaded, path, SystemsReason());
    }
    QByteArray bytes = QByteArray::fromRawData(content->data(), static_cast<qsizetype>(content->size()));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, QFileInfo(path).suffix().toLatin1());
    reader.setAutoTransform(true);
    const QSize announced = reader.size();
    if (announced.isValid() && announced.isEmpty()) {
        return Failure(kNoSize, path);
    }
    const QImage picture = reader.read();
    return picture.isNull() ? Failure(kNotLoaded, path, reader.errorString()) : WallpaperCache::Result{picture, {}, {}};
}

/// The text of a file of ours; empty for none.
/// The top of a picture, as much of it as an area shows that it fills from side to side.
QImage ShownPart(const QImage& picture, const QSize& area) {
    const int shown = static_cast<int>(std::ceil(static_cast<double>(picture.width()) * area.height() / area.width()));
    return picture.height() > shown ? picture.copy(0, 0, picture.width(), shown) : picture;
}

/// By its header. The kept picture cannot be transparent.
bool MayBeTransparent(const QString& path) {
    const QImage::Format format = QImageReader(path).imageFormat();
    return format == QImage::Format_Invalid || format == QImage::Format_Indexed8 ||
           QImage::toPixelFormat(format).alphaUsage() == QPixelFormat::UsesAlpha;
}

}  // namespace

WallpaperCache::Result WallpaperCache::Load(const QString& path, const QSize& area) const {
    if (const QImage kept = LoadKept(path); !kept.isNull()) {
        return {kept, {}, {}};
    }
    const QString stamp = StampOf(path);  // before it may become another picture
    Result source = Decode(path);
    if (source.image.isNull()) {
        return source;
    }
    const QImage scaled = ShownPart(source.image, area)
                              .scaledToWidth(area.width(), Qt::SmoothTransformation)
                              .convertToFormat(source.image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                                              : QImage::Format_RGB32);
    if (scaled.isNull()) {
        return Failure(kNoSize, path);
    }
    // The kept picture cannot be transparent.
    return scaled.hasAlphaChannel() ? Result{scaled, {}, {}} : Keep(scaled, path, stamp);
}

QString WallpaperCache::StampOf(const QString& path) {
    const QFileInfo file(path);
    return file.exists() ? QString("%1 %2 %3").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch()).arg(path)
                         : path;
}

bool WallpaperCache::IsCurrent(const QString& path) const {
    if (!QFileInfo(path).isFile()) {
        return true;  // and what is no file is not opened
    }
    if (MayBeTransparent(path)) {
        return false;
    }
    if (const QString stamp = KeptText(folder_ + kStampFile).Get(); !stamp.isEmpty()) {
        return stamp == StampOf(path);
    }
    return QFileInfo(folder_ + kPictureFile).lastModified() >= QFileInfo(path).lastModified();
}

QImage WallpaperCache::LoadKept(const QString& path) const {
    if (KeptText(folder_ + kPathFile).Get() != path || !IsCurrent(path)) {
        return {};
    }
    const std::optional<std::string> content = NK::ReadFileContent(NK::FromQt(folder_ + kPictureFile), kMaxBytes);
    return content ? QImage::fromData(reinterpret_cast<const uchar*>(content->data()),
                                      static_cast<int>(content->size()), "BMP")
                   : QImage();
}

WallpaperCache::Result WallpaperCache::Keep(const QImage& image, const QString& path, const QString& stamp) const {
    const auto failure = [&image](const char* source, const QString& file) {
        Result result = Failure(source, file, SystemsReason());
        result.image = image;
        return result;
    };
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "BMP");
    const QString picture = folder_ + kPictureFile;
    const QString pathFile = folder_ + kPathFile;
    // Between the two saves no path may name a picture that is not there.
    NK::RemoveFile(NK::FromQt(pathFile));
    NK::RemoveFile(NK::FromQt(folder_ + kStampFile));
    NK::ForgetFileFailure();
    const auto size = static_cast<std::size_t>(bytes.size());
    if (!NK::CreateFolder(NK::FromQt(folder_)) || !NK::SaveAtomically(NK::FromQt(picture), [&](NK::CFile& file) {
            return file.Write(bytes.constData(), 1, size) == size;
        })) {
        return failure(QT_TRANSLATE_NOOP("KivoraWidget", "Failed to save wallpaper cache to:"), picture);
    }
    if (!KeptText(folder_ + kStampFile).Keep(stamp) || !KeptText(pathFile).Keep(path)) {
        return failure(QT_TRANSLATE_NOOP("KivoraWidget", "Failed to save wallpaper cache information to:"), pathFile);
    }
    return {image, {}, {}};
}
