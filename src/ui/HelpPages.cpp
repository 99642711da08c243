#include "ui/HelpPages.h"

#include <QWidget>

#include "nk/qt/nk_qt_string.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/UnaskedBox.h"

HelpPages::HelpPages(QWidget* parent, const QString& programDir) : QObject(parent), window_(parent), help_(programDir) {
    connect(&help_, &Kivora::HelpOpener::HelpNotFound, this, [this](const QString& path) {
        MessageBoxes::Show(window_, QMessageBox::Warning, tr("Help Not Found"),
                           tr("Sorry, the help file is not available:") + "\r\n" + path);
    });
    // Seconds after it was asked for, when somebody may be playing.
    connect(&help_, &Kivora::HelpOpener::LaunchFailed, this, [this](const QString& path) {
        UnaskedBox::show(MessageBoxes::Make(window_, QMessageBox::Warning, tr("Cannot Launch Help"),
                                            tr("Sorry, failed to open the help file:") + "\r\n" + path),
                         *window_);
    });
}

void HelpPages::showHelp() {
    help_.Open();
}

void HelpPages::showWebSite(const QString& address) {
    if (!webSite_ || !webSite_->IsRunning()) {
        webSite_ = std::make_unique<Kivora::CLauncher>(NK::FromQt(address), nullptr);
    }
}
