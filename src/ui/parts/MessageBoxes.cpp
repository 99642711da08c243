#include "ui/parts/MessageBoxes.h"

#include <QLabel>

namespace MessageBoxes {

namespace {

constexpr const char* kDetailsLabel = "qt_msgbox_informativelabel";

/// The box makes the label with the first text, and takes no format for it.
void SetDetails(QMessageBox& box, const QString& details) {
    box.setInformativeText(QStringLiteral("-"));
    if (auto* const label = box.findChild<QLabel*>(kDetailsLabel)) {
        label->setTextFormat(Qt::PlainText);
    }
    box.setInformativeText(details);
}

}  // namespace

std::unique_ptr<QMessageBox> Make(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                  QMessageBox::StandardButtons buttons, const QString& details) {
    auto box = std::make_unique<QMessageBox>(icon, title, QString(), buttons, parent);
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    if (!details.isEmpty()) {
        SetDetails(*box, details);
    }
    return box;
}

QMessageBox::StandardButton Show(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton) {
    const std::unique_ptr<QMessageBox> box = Make(parent, icon, title, text, buttons);
    box->setDefaultButton(defaultButton);
    return static_cast<QMessageBox::StandardButton>(box->exec());
}

void ShowFailure(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                 const QString& details) {
    Make(parent, icon, title, text, QMessageBox::Ok, details)->exec();
}

}  // namespace MessageBoxes
