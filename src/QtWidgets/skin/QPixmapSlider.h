// A horizontal slider painted from images.
#pragma once

#include <QAbstractSlider>

#include "QtWidgets/skin/QMultiPixmapReferencer.h"

/// Images: 0 channel, 1 handle, 2 handle while dragged (optional), 3 handle while disabled (optional). The channel's
/// logical size fixes the slider's. The drag is relative: the handle keeps its offset under the pointer from press to
/// release. A press beside the handle does not move the value. [gui]
class QPixmapSlider : public QAbstractSlider, protected QMultiPixmapReferencer {
    Q_OBJECT

public:
    explicit QPixmapSlider(QWidget* parent = nullptr);

    void setImages(const QString& channel, const QString& handle, const QString& draggedHandle = {},
                   const QString& disabledHandle = {});
    /// The pixmaps are not owned.
    void setImages(QPixmap* channel, QPixmap* handle, QPixmap* draggedHandle = nullptr,
                   QPixmap* disabledHandle = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void fixSize();
    int travel() const;           ///< logical pixels that the handle can move
    double exactHandleX() const;  ///< unrounded, from the value
    QRect handleRect() const;
    int valueAt(double handleX) const;

    int lastX_ = 0;       ///< the pointer's x at the last step of the drag
    double dragX_ = 0.0;  ///< unrounded handle position during a drag; may lie outside the travel
};
