// Playing on the panel while another of its windows has the keyboard.
#pragma once

#include <QObject>
#include <set>

class QKeyEvent;
class QWidget;

/// Passes on to the panel the keys that mean nothing to a window beside it: all but those that move the focus, work a
/// control or act with ALT or as a shortcut, and those that a spin box takes while it has the focus. A release is
/// passed on unless its press was the window's: it may have been the panel's. [gui]
class PlayAlong : public QObject {
    Q_OBJECT

public:
    /// The window, which becomes the owner, has all its parts already. The panel outlives it.
    PlayAlong(QWidget& window, QWidget& panel);

    /// Whether such a window has the keyboard.
    static bool isActive();
    /// A copy of a key's event reaches the panel.
    static void passOn(const QKeyEvent& event, QWidget& panel);
    /// For a window that passed keys on and loses the keyboard: the releases go elsewhere, if it is not to the panel.
    static void tellLoss(QWidget& panel);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isForPanel(const QKeyEvent& event) const;

    void passReleaseOn(const QKeyEvent& event);

    QWidget& window_;
    QWidget& panel_;
    std::set<quint32> own_;  ///< what is pressed in the window, by scan code, or by key where that is unknown
};
