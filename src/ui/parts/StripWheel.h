// A wheel beside the piano.
#pragma once

#include <QAbstractSlider>
#include <QBasicTimer>
#include <QColor>

#include <optional>

#include "ui/parts/PanelScale.h"

class QTouchEvent;

namespace NK {
struct TPressedInput;
}

/// Turned by dragging it, with the mouse or a finger, from wherever it is taken; by the arrow and page keys while it
/// has the focus, and by the wheel of the mouse. A double click, or Home, brings it to its rest. One that springs back
/// does so as soon as nothing holds it any more: whatever ends a hold, setSliderDown(false) included, ends it for good.
/// [gui]
class StripWheel : public QAbstractSlider, public PanelScaled {
    Q_OBJECT

public:
    enum class EKind { kSpringsBack, kStays };

    /// At `rest`, which is one of the values.
    StripWheel(EKind kind, int lowest, int highest, int rest, QWidget* parent);

    /// Shows where somebody else has moved it; while it is held here, once that is over and it was not turned since.
    void follow(int value);
    /// Ends the hold of a mouse or key that is up: its release went elsewhere.
    void releaseAllBut(const NK::TPressedInput& down);
    void setFigureColor(const QColor& color);
    int rest() const { return rest_; }
    /// Where the notch stands, in the design's pixels from the top.
    double notchY() const;

signals:
    /// Turned here: to be sent.
    void turned(int value);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    enum class EHand { kNone, kMouse, kFinger, kKey };

    bool springsBack() const { return kind_ == EKind::kSpringsBack; }
    void take(EHand hand, double y);
    void drag(double y);
    void letGo() { setSliderDown(false); }
    void handLeft();
    bool touch(const QTouchEvent& event);
    void bend(const QKeyEvent& event);
    double trackHeight() const;  ///< in the design's pixels

    const EKind kind_;
    const int rest_;
    QColor figures_;
    EHand hand_ = EHand::kNone;
    int finger_ = 0;        ///< the number of the one that holds it
    int key_ = 0;           ///< the key that holds it
    quint32 scanCode_ = 0;  ///< native, of that key
    QBasicTimer keyLeft_;   ///< runs while its release may still be one of the system's repeats
    double takenY_ = 0.0;
    int takenValue_ = 0;
    double scrolled_ = 0.0;      ///< less than one value
    std::optional<int> missed_;  ///< where others have moved it while it was held
    bool isFollowing_ = false;
};
