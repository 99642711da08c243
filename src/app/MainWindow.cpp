#include "app/MainWindow.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>

#include "nk/nk_exception.h"
#include "nk/nk_logger.h"
#include "ui/Dialogs.h"
#include "ui/KivoraWidget.h"

namespace Kivora {

MainWindow::MainWindow(const EngineCreator& createEngine) {
    setObjectName("KivoraMainWindowClass");
    setWindowTitle("Kivora LX");
    setMenuBar(new QMenuBar(this));
    CreateEngine(createEngine);
    panel_ = new KivoraWidget(front_.get(), this);
    setCentralWidget(panel_);
    FitAndCentre();
}

MainWindow::~MainWindow() {
    // Silence comes first: what follows may take its time, and boxes wait for the user.
    panel_->releaseHeld();
    if (front_) {
        front_->Close();
    }
    const bool saved = SaveSettings();
    if (!quiet_) {
        if (!saved) {
            Dialogs::ShowFailure(this, QMessageBox::Critical, tr("Error"), tr("Failed to save the settings."),
                                 Dialogs::WhySettingsAreNotSaved(*engine_));
        }
        // A damaged file that was set aside is told while the panel is there.
        QCoreApplication::sendPostedEvents(panel_);
    }
    delete panel_;  // before the engine, to which it refers
}

bool MainWindow::SaveSettings() {
    if (!front_ || engine_->SaveSettings()) {
        return true;
    }
    NK::Log(L"The settings could not be saved.");
    return false;
}

void MainWindow::TellAboutLocaleFile(LocaleFileState state, const QString& failure) {
    const auto tell = [this](const QString& text, const QString& details) {
        panel_->notices().Tell(QMessageBox::Warning, tr("Warning"), text, details);
    };
    if (state == LocaleFileState::kDamaged) {
        tell(tr("The file that remembers the language is damaged. The system's language is in force. The file was kept "
                "under another name."),
             QString::fromWCharArray(GetLocaleFilePath().c_str()) + ".bad");
    } else if (state == LocaleFileState::kUnreadable) {
        tell(
            tr("The file that remembers the language cannot be read at present. The system's language is in force, and "
               "the file is left as it is."),
            failure);
    }
}

void MainWindow::Save() {
    SaveSettings();
    panel_->keepTakes();
}

void MainWindow::EndAtOnce() {
    if (front_) {
        front_->Close();
        Save();
        engine_->ShutdownMidi();
    }
}

void MainWindow::CreateEngine(const EngineCreator& createEngine) {
    const auto showFatal = [this](const QString& text) {
        Dialogs::Show(this, QMessageBox::Critical, tr("Fatal Error"),
                      text + "\r\n" + tr("Sorry, the application cannot continue."));
    };
    try {
        engine_ = createEngine();
        if (!engine_) {
            throw NK::CException(tr("Engine creation failed.").toStdWString().c_str());
        }
        front_ = std::make_unique<EngineFront>(*engine_);
    } catch (const NK::CException& error) {
        showFatal(QString::fromWCharArray(error.GetMessage()));
    } catch (...) {
        showFatal(tr("Failed to create MIDI engine (unknown exception)."));
    }
}

void MainWindow::FitAndCentre() {
    setFixedSize(panel_->sizeHint());
    adjustSize();
    const QRect available = screen()->availableGeometry();
    move(available.left() + (available.width() - frameGeometry().width()) / 2,
         available.top() + (available.height() - frameGeometry().height()) / 2);
}

}  // namespace Kivora
