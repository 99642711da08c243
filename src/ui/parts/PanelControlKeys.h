// Which keys a control of the panel may keep.
#pragma once

#include <QObject>

#include "ui/parts/KeyRepeats.h"

class QWidget;

/// Put on a button, combo box, slider or dial as an event filter, it lets the control have the keys that work it and
/// hands all others to the control's parent, so that the playing keys play and Space stays the pedal wherever the focus
/// is. Enter clicks a button and opens a combo box, once however long it is held, but goes on clicking a button that
/// repeats under the mouse too; the arrow keys, Home, End and the page keys go to what has a value; Tab moves on. [gui]
class PanelControlKeys : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    /// Also takes the control's focus from clicks: Tab alone reaches it.
    void watch(QWidget* control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static bool isHeldBack(QWidget* control, QKeyEvent* event);
    static void pressEnter(QWidget* control, bool repeated);

    KeyRepeats repeats_;
};
