#include "app/MainWindow.h"

#include <QGuiApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>

#include "app/Backends.h"
#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "ui/KivoraWidget.h"

namespace Kivora {

MainWindow::MainWindow() {
    setObjectName("KivoraMainWindowClass");
    setWindowTitle("Kivora LX");
    setMenuBar(new QMenuBar(this));
    CreateEngine();
    panel_ = new KivoraWidget(front_.get(), this);
    setCentralWidget(panel_);
    FitAndCentre();
}

MainWindow::~MainWindow() {
    // The panel goes first: it ends what its keys hold and refers to the engine.
    delete panel_;
    if (front_) {
        front_->Close();
    }
}

void MainWindow::CreateEngine() {
    const auto showFatal = [this](const QString& text) {
        QMessageBox::critical(this, tr("Fatal Error"), text + "\r\n" + tr("Sorry, the application cannot continue."));
    };
    try {
        engine_ = std::make_unique<CKivora>(CreateEngineDependencies());
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
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    move(available.left() + (available.width() - frameGeometry().width()) / 2,
         available.top() + (available.height() - frameGeometry().height()) / 2);
}

}  // namespace Kivora
