// The ring around the control that has the keyboard's focus.
#pragma once

#include <QPointer>
#include <QWidget>

/// Lies over its parent, stands around whichever control inside the parent has the focus, and lets the mouse through.
/// The parent itself gets no ring. [gui]
class FocusRing : public QWidget {
    Q_OBJECT

public:
    explicit FocusRing(QWidget* panel);

    /// A control that shows the focus in its own way gets no ring; null excludes none.
    void exclude(const QWidget* control) { excluded_ = control; }
    /// The control that has the ring, or null.
    const QWidget* control() const { return control_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* focused);
    void place();

    QPointer<QWidget> control_;
    const QWidget* excluded_ = nullptr;
};
