// A holder of one pixmap that is either its own or somebody else's.
#pragma once

#include <memory>
#include <QPixmap>

/// Mix-in base of the skinned widgets. At most one of the two pixmaps is set. A copy of a holder that refers, refers to
/// the same pixmap; a copy of one that owns, owns a copy. [gui]
class QPixmapReferencer {
public:
    QPixmapReferencer() = default;
    QPixmapReferencer(const QPixmapReferencer& other);
    QPixmapReferencer& operator=(const QPixmapReferencer& other);
    QPixmapReferencer(QPixmapReferencer&&) noexcept = default;
    QPixmapReferencer& operator=(QPixmapReferencer&&) noexcept = default;

    virtual ~QPixmapReferencer() = default;
    /// Deletes what it owns and forgets what it refers to.
    virtual void clear();
    /// Owns the image of that file from now on. On a screen with more than one device pixel a logical pixel, the file
    /// with "@2x" before its extension is taken where it exists. A file that cannot be read gives a null pixmap.
    virtual void load(const QString& fileName, const char* format = nullptr,
                      Qt::ImageConversionFlags flags = Qt::AutoColor);
    /// Refers to a pixmap that it does not own and that outlives it; null refers to nothing.
    virtual void reference(QPixmap* pixmap);
    /// The pixmap in force, or null.
    virtual QPixmap* pixmap() const;

private:
    QPixmap* referenced_ = nullptr;
    std::unique_ptr<QPixmap> owned_;
};
