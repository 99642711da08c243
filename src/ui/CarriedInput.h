// What is held from one window of the program to another.
#pragma once

#include <map>
#include <QObject>
#include <QPointer>
#include <QWindow>

#include "nk/desktop/nk_pressed_input.h"

class QKeyEvent;
class QMouseEvent;

/// Keys that are down when a dialog, a box or a menu opens or closes mean nothing to the next window: their repeats and
/// their release are swallowed. A mouse button that was pressed in a window that is closed or blocked does not count
/// as down in the others, nor one whose release went elsewhere: Qt delivers neither moves nor the release of a button
/// that is pressed with such a one. Both until they are up. Events with an unknown scan code (0) pass. [gui]
class CarriedInput : public QObject {
    Q_OBJECT

public:
    /// After the application object, which has the object for a filter.
    CarriedInput();

    /// All others are up, though their releases may have gone elsewhere.
    void keepOnly(const NK::TPressedInput& down);
    /// The system told of it at that time stamp; Qt delivers it later, or nowhere while a dialog blocks the window.
    void noteRelease(quint32 scanCode, quint64 atMs);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Key {
        bool up = true;
        quint64 upAtMs = 0;      ///< time stamp of the release that ended it; a repeat has its press at the same time
        quint64 toldUpAtMs = 0;  ///< the same of the latest that the system told of, its press delivered or not
        bool carried = false;
    };

    void carryKeys();
    void carryButtons(const QObject* window);
    bool takesPress(QKeyEvent& event);
    bool takesRelease(const QKeyEvent& event);
    bool takesMouse(QWindow& window, QMouseEvent& event);

    std::map<quint32, Key> keys_;                           ///< by scan code
    std::map<Qt::MouseButton, QPointer<QWindow>> buttons_;  ///< that are down, and where they were pressed
    Qt::MouseButtons carriedButtons_;
};
