// Shortcuts by their places, where the keyboard types no Latin letters.
#pragma once

#include <QList>
#include <QObject>

#include "ui/ComputerKeys.h"
#include "ui/parts/KeyRepeats.h"

class QKeyEvent;

/// On a layout without Latin letters a key that is no shortcut by the letter that it types is one by its place: by the
/// letter that another layout of the keyboard has there, or a US keyboard where none has any, then by that of the
/// program's language. So with ALT it reaches the menu's
/// entries and the controls of dialogs, with CTRL what a text field does, and in an open menu its entries. Repeats do
/// nothing, and boxes that come by themselves are left alone. [gui]
class PlacedShortcuts : public QObject {
    Q_OBJECT

public:
    /// After the application object, which has the object for a filter.
    explicit PlacedShortcuts(ComputerKeys::Source source);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takesPress(const QKeyEvent& press);
    /// In upper case, as Qt's key codes.
    static QList<int> lettersAt(quint32 scanCode, const NK::TKeyboardLayout& layout);

    ComputerKeys::Source source_;
    KeyRepeats repeats_;
    bool sending_ = false;
};
