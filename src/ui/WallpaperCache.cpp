#include "ui/WallpaperCache.h"

#include <cmath>
#include <QCoreApplication>
#include <QImageReader>

#include "nk/nk_atomic_save.h"
#include "nk/nk_directory.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_paths.h"
#include "nk/nk_string_serializable.h"

namespace {

constexpr const char* kPictureFile = "wallpaper.bmp";
constexpr const char* kPathFile = "wallpaper.txt";

QString Text(const char* source) {
    return QCoreApplication::translate("KivoraWidget", source);
}

QString Failure(const char* source, const QString& path) {
    return Text(source) + "\n" + path;
}

/// The top of a picture, as much of it as an area shows that it fills from side to side.
QImage ShownPart(const QImage& picture, const QSize& area) {
    const int shown = static_cast<int>(std::ceil(static_cast<double>(picture.width()) * area.height() / area.width()));
    return picture.height() > shown ? picture.copy(0, 0, picture.width(), shown) : picture;
}

NK::CString ToNK(const QString& text) {
    return NK::CString(text.toStdWString().c_str());
}

}  // namespace

WallpaperCache::Result WallpaperCache::Load(const QString& path, const QSize& area) const {
    if (const QImage kept = LoadKept(path); !kept.isNull()) {
        return {kept, {}};
    }
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize announced = reader.size();
    if (announced.isValid() && announced.isEmpty()) {
        return {{}, Failure(QT_TRANSLATE_NOOP("KivoraWidget", "Cannot determine image size:"), path)};
    }
    const QImage source = reader.read();
    if (source.isNull()) {
        return {{}, Failure(QT_TRANSLATE_NOOP("KivoraWidget", "Failed to load wallpaper image from:"), path)};
    }
    const QImage scaled = ShownPart(source, area)
                              .scaledToWidth(area.width(), Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_RGB32);
    if (scaled.isNull()) {
        return {{}, Failure(QT_TRANSLATE_NOOP("KivoraWidget", "Cannot determine image size:"), path)};
    }
    return {scaled, Keep(scaled, path)};
}

QImage WallpaperCache::LoadKept(const QString& path) const {
    NK::CDiskFile file(ToNK(folder_ + kPathFile), NK::CDiskFile::kRead);
    NK::CStringSerializable keptPath;
    if (!keptPath.ReadFrom(file) || QString::fromWCharArray(keptPath.c_str()) != path) {
        return {};
    }
    return QImage(folder_ + kPictureFile, "BMP");
}

QString WallpaperCache::Keep(const QImage& image, const QString& path) const {
    NK::CreateFolder(ToNK(folder_));
    const QString picture = folder_ + kPictureFile;
    const QString pathFile = folder_ + kPathFile;
    // Between the two saves no path may name a picture that is not there.
    NK::RemoveFile(ToNK(pathFile));
    if (!NK::SaveAtomicallyByName(ToNK(picture), [&](const NK::CString& temporary) {
            return image.save(QString::fromWCharArray(temporary.c_str()), "BMP");
        })) {
        return Failure(QT_TRANSLATE_NOOP("KivoraWidget", "Failed to save wallpaper cache to:"), picture);
    }
    const NK::CStringSerializable text(ToNK(path));
    if (!NK::SaveAtomically(ToNK(pathFile), [&](NK::CFile& file) { return text.WriteTo(file); })) {
        return Failure(QT_TRANSLATE_NOOP("KivoraWidget", "Failed to save wallpaper cache information to:"), pathFile);
    }
    return {};
}
