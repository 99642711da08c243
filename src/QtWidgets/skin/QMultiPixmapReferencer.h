// A holder of an indexed set of pixmaps.
#pragma once

#include <vector>

#include "QtWidgets/skin/QPixmapReferencer.h"

/// Pixmaps 0, 1, 2 …, each held as in QPixmapReferencer; the set may have holes. Copies as its holders do. [gui]
class QMultiPixmapReferencer {
public:
    virtual ~QMultiPixmapReferencer() = default;
    /// Empties the set.
    virtual void clear();
    /// The set becomes this one pixmap, at index 0.
    virtual void load(const QString& fileName, const char* format = nullptr,
                      Qt::ImageConversionFlags flags = Qt::AutoColor);
    virtual void reference(QPixmap* pixmap);
    /// Pixmap 0, or null.
    virtual QPixmap* pixmap() const;

    virtual bool isMulti() const { return true; }
    /// One more than the highest index that was given a pixmap; 0 for an empty set.
    virtual int count() const;
    /// Index 0 or more; the others stay.
    virtual void load(int index, const QString& fileName, const char* format = nullptr,
                      Qt::ImageConversionFlags flags = Qt::AutoColor);
    virtual void reference(int index, QPixmap* pixmap);
    /// Null for an index without a pixmap, also for one that could not be read.
    virtual QPixmap* pixmapAt(int index) const;

private:
    QPixmapReferencer& holder(int index);

    std::vector<QPixmapReferencer> holders_;
};
