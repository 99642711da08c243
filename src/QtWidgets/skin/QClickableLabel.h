// A label that reports clicks.
#pragma once

#include <QLabel>

/// Reports releases of the left and the right button; presses are not reported. The point is in the label's
/// coordinates. [gui]
class QClickableLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

signals:
    void clicked();
    void clicked(bool on);  ///< always true
    void clicked(QPoint position);
    void rightClicked();
    void rightClicked(bool on);  ///< always true
    void rightClicked(QPoint position);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};
