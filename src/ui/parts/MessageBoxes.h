// Every message box of the program.
#pragma once

#include <memory>
#include <QMessageBox>
#include <QString>

/// The texts are no markup, whatever stands in them. Line breaks are kept. [gui]
namespace MessageBoxes {

/// `details`, for example a path and the system's reason, stand below the text.
std::unique_ptr<QMessageBox> Make(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                  QMessageBox::StandardButtons buttons = QMessageBox::Ok, const QString& details = {});

/// Waits for the user; returns the button that was clicked.
QMessageBox::StandardButton Show(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                 QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

/// The same with details below the text.
void ShowFailure(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                 const QString& details);

}  // namespace MessageBoxes
