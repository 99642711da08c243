#include "ui/Desktop.h"

#include <QWidget>

#include "ui/Dialogs.h"

Desktop::Desktop(QWidget* parent, const QString& programDir) : QObject(parent), window_(parent), help_(programDir) {
    connect(&help_, &Kivora::HelpOpener::HelpNotFound, this, [this](const QString& path) {
        warn(tr("Help Not Found"), tr("Sorry, the help file is not available:"), path);
    });
    connect(&help_, &Kivora::HelpOpener::LaunchFailed, this, [this](const QString& path) {
        warn(tr("Cannot Launch Help"), tr("Sorry, failed to open the help file:"), path);
    });
}

void Desktop::showHelp() {
    help_.Open();
}

void Desktop::showWebSite(const QString& address) {
    if (!webSite_ || !webSite_->IsRunning()) {
        webSite_ = std::make_unique<Kivora::CLauncher>(NK::CString(address.toStdWString()), nullptr);
    }
}

void Desktop::warn(const QString& title, const QString& text, const QString& path) {
    Dialogs::Show(window_, QMessageBox::Warning, title, text + "\r\n" + path);
}
