// A rotary knob painted from an image.
#pragma once

#include <QDial>

#include "QtWidgets/skin/QPixmapReferencer.h"

/// Shows its value by an image that turns or by a film strip, and is dragged linearly or as Qt drags a dial. Wrapping
/// is off. A drag is on while the slider is down, and setSliderDown(false) ends it. Angles are degrees, clockwise from
/// the image as it stands. An empty range shows the zero angle and frame 0. [gui]
class QPixmapDial : public QDial, protected QPixmapReferencer {
    Q_OBJECT
    Q_PROPERTY(qreal zeroAngle READ zeroAngle WRITE setZeroAngle)
    Q_PROPERTY(qreal maxAngle READ maxAngle WRITE setMaxAngle)
    Q_PROPERTY(bool virtualSlider READ virtualSlider WRITE setVirtualSlider)
    Q_PROPERTY(bool virtualSliderVertical READ virtualSliderVertical WRITE setVirtualSliderVertical)
    Q_PROPERTY(int virtualHeight READ virtualHeight WRITE setVirtualHeight)
    Q_PROPERTY(int nFrames READ nFrames WRITE setNFrames)

public:
    enum PixmapMode : int {
        RotateWhole = 0,            ///< the whole image turns about the widget's centre
        VerticalStrip = 1,          ///< square frames stacked top to bottom
        HorizontalStrip = 2,        ///< square frames side by side
        AutoStrip = 3,              ///< horizontal if the image is at most as high as wide, else vertical
        FixedTopRotatingBottom = 4  ///< the upper half stands still, the lower half turns over it
    };

    explicit QPixmapDial(QWidget* parent = nullptr);

    /// Sets the image and how it shows the value; for the strips the number of frames comes from its proportions.
    void setImage(const QString& fileName, PixmapMode mode);
    /// The pixmap is not owned.
    void setImage(QPixmap* image, PixmapMode mode);

    qreal zeroAngle() const { return zeroAngle_; }
    qreal maxAngle() const { return maxAngle_; }
    bool virtualSlider() const { return virtualSlider_; }
    bool virtualSliderVertical() const { return virtualSliderVertical_; }
    int virtualHeight() const { return virtualHeight_; }
    int nFrames() const { return nFrames_; }

    virtual void setZeroAngle(qreal degrees);
    virtual void setMaxAngle(qreal degrees);
    virtual void setAngles(qreal zeroDegrees, qreal maxDegrees);
    virtual void setVirtualSlider(bool on);
    /// The linear drag follows y (true) or x. One formula serves both, so moving right lowers the value.
    void setVirtualSliderVertical(bool vertical) { virtualSliderVertical_ = vertical; }
    /// Pixels of pointer travel that span the whole range; below 1 is ignored.
    void setVirtualHeight(int pixels);
    /// Below 1 is ignored.
    void setNFrames(int frames);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void takeImage(PixmapMode mode);
    double proportion() const;  ///< 0..1; 0 for an empty range
    int dragCoordinate(const QMouseEvent& event) const;
    void drawTurned(QPainter& painter, const QPixmap& image, const QRect& source) const;
    void drawFrame(QPainter& painter, const QPixmap& image, bool vertical) const;

    PixmapMode mode_ = RotateWhole;
    qreal zeroAngle_ = -150.0;
    qreal maxAngle_ = 150.0;
    bool virtualSlider_ = true;
    bool virtualSliderVertical_ = true;
    int dragStart_ = 0;
    int dragStartValue_ = 0;
    int virtualHeight_ = 100;
    int nFrames_ = 64;
};
