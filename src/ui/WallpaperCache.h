// The user's wallpaper, scaled once and kept.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/// Keeps the wallpaper of the last path, scaled to the width that was asked for then, in "wallpaper.bmp" and its path
/// in "wallpaper.txt", so that a big picture is decoded once. Of a picture that is higher than the area only the top is
/// kept. What is kept of a picture that has changed since, or that may be transparent, is used only while the picture
/// itself is not there. [gui]
class WallpaperCache {
public:
    struct Result {
        QImage image;    ///< null when there is no picture to show
        QString error;   ///< what to tell the user, empty for nothing; the image may stand all the same
        QString reason;  ///< why, in the system's words; may be empty
    };

    /// The folder is created with the first picture.
    explicit WallpaperCache(const QString& folder) : folder_(folder) {}

    /// Tells a file from what stood, or did not stand, at its path before. No text to be shown.
    static QString StampOf(const QString& path);

    /// The picture at that path, as wide as the area with its own proportions, and cut off below it. Waits for
    /// nothing but a disk: what is no regular file cannot be loaded.
    Result Load(const QString& path, const QSize& area) const;

private:
    QImage LoadKept(const QString& path) const;
    bool IsCurrent(const QString& path) const;
    Result Keep(const QImage& image, const QString& path, const QString& stamp) const;

    QString folder_;
};
