// The mark above the piano where the bass of split mode ends.
#pragma once

#include <QAbstractSlider>
#include <QColor>

#include <vector>

#include "QtWidgets/piano/PianoTypes.h"
#include "ui/parts/PanelScale.h"

/// Its value is the lowest note of the main voice. A line above the keys shows both halves in the colours of their
/// voices; between them stands a handle, which is dragged by the mouse or a finger from key to key. The arrow keys move
/// it by a semitone, Page Up and Down by an octave; a double click or Home brings it back to middle C. [gui]
class SplitMark : public QAbstractSlider, public PanelScaled {
    Q_OBJECT

public:
    explicit SplitMark(QWidget* parent = nullptr);

    /// The keys above which it stands: where each of them begins, from `first` on, in its own pixels. Handles of other
    /// notes stand at the end.
    void setKeys(BYTE first, std::vector<double> lefts);
    void setColors(const QColor& main, const QColor& bass);
    /// Where the handle stands, in its own pixels.
    double handleX() const { return xOf(value()); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    double xOf(int note) const;
    int noteAt(double x) const;
    double capX() const;  ///< where the handle is drawn, whole
    bool isOnHandle(const QMouseEvent& event) const;
    void nameValue();

    BYTE first_ = 0;
    std::vector<double> lefts_;
    QColor main_;
    QColor bass_;
    double grip_ = 0.0;  ///< from the handle to the pointer that drags it
    double pressX_ = 0.0;
    bool isDragged_ = false;  ///< the pointer has left the place of the press
};
