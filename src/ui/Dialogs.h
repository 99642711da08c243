// What the dialogs have in common.
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QString>

#include "nk/nk_string.h"

namespace Dialogs {

inline QString ToQt(const NK::CString& text) {
    return QString::fromWCharArray(text.c_str());
}
inline NK::CString FromQt(const QString& text) {
    return {text.toStdWString()};
}

/// A message box whose text is no markup. Waits for the user; returns the button that was clicked.
inline QMessageBox::StandardButton Show(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                        const QString& text, QMessageBox::StandardButtons buttons = QMessageBox::Ok) {
    QMessageBox box(icon, title, text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

/// The pointer has the shape for waiting while this lives.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace Dialogs
