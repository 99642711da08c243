// An indicator that flashes.
#pragma once

#include <QTimer>
#include <QWidget>

#include "QtWidgets/skin/QPixmapReferencer.h"

/// The image holds the dark state in its upper half and the lit one in its lower half. Flashes closer together than
/// the blink time merge into a longer one. [gui]
class QBlinkingLed : public QWidget, protected QPixmapReferencer {
    Q_OBJECT
    Q_PROPERTY(int blinkTime READ blinkTime WRITE setBlinkTime)

public:
    explicit QBlinkingLed(QWidget* parent = nullptr);

    void setImage(const QString& fileName);
    /// The pixmap is not owned.
    void setImage(QPixmap* image);

    int blinkTime() const { return blinkTime_; }  ///< ms
    void setBlinkTime(int milliseconds) { blinkTime_ = milliseconds; }
    bool isLit() const { return lit_; }

public slots:
    /// Lit from now until the blink time has passed since the last call.
    virtual void blink();
    /// Ends the flash.
    virtual void timer();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTimer timer_;
    int blinkTime_ = 50;
    bool lit_ = false;
};
