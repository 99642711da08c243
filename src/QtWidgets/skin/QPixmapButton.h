// A push or toggle button painted from images.
#pragma once

#include <array>
#include <QAbstractButton>
#include <QPoint>
#include <QRect>

#include "QtWidgets/skin/QMultiPixmapReferencer.h"

/// Paints one image per state: normal, on, disabled, disabled and on. On is checked for a checkable button, down for
/// any other. Sizes are logical pixels; source rectangles in a sprite are the image's own pixels. [gui]
class QPixmapButton : public QAbstractButton, protected QMultiPixmapReferencer {
    Q_OBJECT
    Q_PROPERTY(bool showCaption READ showCaption WRITE setShowCaption)

public:
    explicit QPixmapButton(QWidget* parent = nullptr);

    /// One image with `frames` frames side by side (horizontal) or stacked (vertical) in `area`, the whole image if the
    /// area is empty. With fewer than four frames: one serves all states; of two, the disabled states use the normal
    /// and the on frame; of three, disabled-on uses the third. The button takes the size of the on frame.
    void setSprite(const QString& fileName, const QRect& area, Qt::Orientation orientation, int frames);
    /// The pixmap is not owned.
    void setSprite(QPixmap* sprite, const QRect& area, Qt::Orientation orientation, int frames);
    /// Separate images; an empty name or a null pixmap leaves a state without its own image.
    void setImages(const QString& normal, const QString& on = {}, const QString& disabled = {},
                   const QString& disabledOn = {});
    /// The pixmaps are not owned.
    void setImages(QPixmap* normal, QPixmap* on = nullptr, QPixmap* disabled = nullptr, QPixmap* disabledOn = nullptr);

    bool showCaption() const { return showCaption_; }
    void setShowCaption(bool show);
    /// Logical pixels by which the caption moves while the button is on.
    void setCaptionPressedOffset(int x, int y);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    /// Whether the button is painted as one that is on.
    virtual bool isOn() const { return isCheckable() ? isChecked() : isDown(); }

private:
    enum State { kNormal, kOn, kDisabled, kDisabledOn, kStates };

    void splitSprite(const QRect& area, Qt::Orientation orientation, int frames);
    QPixmap* imageOfState(State state) const;

    bool showCaption_ = false;
    QPoint captionPressedOffset_;
    std::array<QRect, kStates> stateRects_;
};
