#include "ui/parts/Dialogs.h"

#include <QLabel>

namespace Dialogs {

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

std::unique_ptr<QMessageBox> MakeBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
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
    const std::unique_ptr<QMessageBox> box = MakeBox(parent, icon, title, text, buttons);
    box->setDefaultButton(defaultButton);
    return static_cast<QMessageBox::StandardButton>(box->exec());
}

void ShowFailure(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                 const QString& details) {
    MakeBox(parent, icon, title, text, QMessageBox::Ok, details)->exec();
}

QString GetFileFailure() {
    return Describe(NK::GetFileFailure());
}

QString Describe(const NK::FileFailure& failure) {
    const QString reason = ToQt(NK::DescribeFileError(failure.error));
    return ToQt(failure.path) + (reason.isEmpty() ? QString() : "\n" + reason);
}

}  // namespace Dialogs
