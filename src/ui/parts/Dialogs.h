// What the dialogs have in common.
#pragma once

#include <memory>
#include <QApplication>
#include <QMessageBox>
#include <QString>

#include "nk/nk_file_failure.h"
#include "nk/nk_string.h"

namespace Dialogs {

inline QString ToQt(const NK::CString& text) {
    return QString::fromWCharArray(text.c_str());
}
inline NK::CString FromQt(const QString& text) {
    return {text.toStdWString()};
}

/// Every message box of the program is made here. Its texts are no markup, whatever stands in them. `details`, for
/// example a path and the system's reason, stand below the text. Line breaks are kept.
std::unique_ptr<QMessageBox> MakeBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                     QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                     const QString& details = {});

/// Waits for the user; returns the button that was clicked.
QMessageBox::StandardButton Show(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                 QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

/// The same with details below the text.
void ShowFailure(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                 const QString& details);

/// The file that failed last since NK::ForgetFileFailure() and the reason, a line each; empty for none.
QString GetFileFailure();
QString Describe(const NK::FileFailure& failure);

/// The pointer has the shape for waiting while this lives.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace Dialogs
