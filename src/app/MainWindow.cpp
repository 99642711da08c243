#include "app/MainWindow.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QUrl>
#include <utility>

#include "app/FileOpening.h"
#include "app/ScreenFit.h"
#include "engine/EngineFailure.h"
#include "engine/values/Settings.h"
#include "midi/MIDINotes.h"
#include "nk/nk_directory.h"
#include "nk/nk_exception.h"
#include "nk/nk_logger.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/SettingsTexts.h"
#include "ui/dialogs/SongFile.h"
#include "ui/dialogs/SoundFindings.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/UnaskedBox.h"

namespace Kivora {

namespace {

constexpr int kPaintedAtLatestMs = 1000;

/// The path of the one file that is dropped; empty for none, for several and for what is no file of this system.
QString DroppedFile(const QMimeData& dropped) {
    const QList<QUrl> urls = dropped.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

}  // namespace

MainWindow::MainWindow(EngineCreator createEngine, Ports ports, LibMidi::SynthControl* synth, EPanelSize panelSize)
    : createEngine_(std::move(createEngine)), synth_(synth), panelSize_(panelSize) {
    setObjectName("KivoraMainWindowClass");
    setWindowTitle("Kivora LX");
    setMenuBar(new QMenuBar(this));
    setAcceptDrops(true);
    const std::function<QString()> failure = CreateEngine();
    CreatePanel(ports == Ports::kOpen);
    FitAndCentre();
    if (ports == Ports::kOpenWhenPainted) {
        QTimer::singleShot(kPaintedAtLatestMs, this, &MainWindow::OpenPorts);  // it may be kept out of sight
    }
    if (!controls_) {
        panel_->setEngineFailure(tr("Fatal Error"), failure() + "\r\n" + tr("Sorry, the application cannot continue."),
                                 failure, synth_, [this] {
                                     // The settings, which belong to the panel, are on the way out.
                                     QTimer::singleShot(0, this, &MainWindow::TryEngineAgain);
                                 });
    }
}

void MainWindow::CreatePanel(bool opensPorts) {
    panel_ =
        new KivoraWidget(controls_.get(), this, opensPorts ? KivoraWidget::Ports::kOpen : KivoraWidget::Ports::kLeave);
    screenFit_.reset();  // of the former panel
    setCentralWidget(panel_);
    if (panelSize_ == EPanelSize::kFitsScreen) {
        if (controls_ && !NK::FileExists(NK::JoinPath(engine_->GetUserDataDir(), Settings::kFileName))) {
            panel_->showPCKeyCard();  // at the first start
        }
        screenFit_ = std::make_unique<ScreenFit>(*this, *panel_);
    }
    if (!opensPorts) {
        panel_->installEventFilter(this);
    }
    EquipPanel();
}

void MainWindow::SetSoundDoctor(std::function<SoundFindings(const CKivora*)> look) {
    lookAtSound_ = std::move(look);
    EquipPanel();
}

void MainWindow::EquipPanel() {
    if (!lookAtSound_) {
        return;
    }
    SoundDoctorTools tools;
    tools.look = [this] { return lookAtSound_(engine_.get()); };
    if (controls_) {
        tools.holdNote = [this](bool isDown) { HoldTestNote(isDown); };
    }
    panel_->setSoundDoctor(std::move(tools));
}

void MainWindow::HoldTestNote(bool isDown) {
    if (isDown) {
        controls_->PlayNoteOn(NK::MIDI::kMiddleC, engine_->GetVelocityNormal());
    } else {
        controls_->PlayNoteOff(NK::MIDI::kMiddleC);
    }
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowUnblocked) {
        // Once whoever asked has dealt with the answer.
        QTimer::singleShot(0, this, &MainWindow::OpenWaitingFile);
    }
    return QMainWindow::event(event);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == panel_ && event->type() == QEvent::Paint) {
        panel_->removeEventFilter(this);
        QTimer::singleShot(0, this, &MainWindow::OpenPorts);
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::OpenPorts() {
    panel_->openPorts();
}

void MainWindow::TryEngineAgain() {
    if (controls_ || CreateEngine()) {
        return;
    }
    // What was chosen, which the file does not have yet.
    const LibMidi::SynthSettings chosen = synth_ != nullptr ? synth_->GetSettings() : LibMidi::SynthSettings();
    KivoraWidget& former = *panel_;  // which is deleted when the event loop comes to it
    CreatePanel(false);
    former.notices().HandOver(panel_->notices());
    if (synth_ != nullptr && synth_->GetSettings() != chosen) {
        static_cast<void>(synth_->ApplySettings(chosen));
    }
    OpenPorts();
    SaveSettings();
    panel_->show();
    emit PanelReplaced();
}

MainWindow::~MainWindow() {
    // Silence comes first: what follows may take its time, and boxes wait for the user.
    panel_->releaseHeld();
    if (controls_) {
        controls_->Close();
    }
    const bool saved = SaveSettings();
    if (!quiet_) {
        const QString why = saved ? QString() : SettingsTexts::WhyNotSaved(engine_->GetSettingsFile());
        panel_->notices().End();
        if (!saved) {
            UnaskedBox::exec(*MessageBoxes::Make(this, QMessageBox::Critical, tr("Error"),
                                                 tr("Failed to save the settings."), QMessageBox::Ok, why));
        }
        // A damaged file that was set aside is told while the panel is there.
        QCoreApplication::sendPostedEvents(panel_);
    }
    screenFit_.reset();
    delete panel_;  // before the engine, to which it refers
}

bool MainWindow::SaveSettings() {
    if (!controls_) {
        return true;
    }
    const RunPorts::Hidden hidden(runPorts_, *controls_);
    if (controls_->SaveSettings()) {
        return true;
    }
    NK::Log(L"The settings could not be saved.");
    return false;
}

void MainWindow::TellAboutLocaleFile(LocaleFileState state, const QString& failure) {
    if (state == LocaleFileState::kDamaged) {
        panel_->notices().Tell(QMessageBox::Warning, tr("Warning"),
                               tr("The file that remembers the language is damaged. The system's language is in force. "
                                  "The file was kept under another name."),
                               NK::ToQt(GetLocaleFilePath()) + ".bad");
    }
    panel_->tellUnreadable(
        "language", state == LocaleFileState::kUnreadable ? failure : QString(),
        tr("The file that remembers the language cannot be read at present. The system's language is "
           "in force, and the file is left as it is."));
}

void MainWindow::OpenFile(const QString& path) {
    waitingFile_ = path;
    OpenWaitingFile();
}

void MainWindow::OpenWaitingFile() {
    if (waitingFile_.isEmpty() || QApplication::activeModalWidget() != nullptr) {
        return;
    }
    const QString path = std::exchange(waitingFile_, {});
    const auto play = [this](const SongFile& song) { panel_->player().openSong(song); };
    if (const QString failure = Kivora::OpenFile(controls_.get(), path, play); !failure.isEmpty()) {
        panel_->notices().Tell(QMessageBox::Warning, tr("Cannot Open File"), failure);
    }
}

void MainWindow::ComeToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QWidget* const asking = QApplication::activeModalWidget();
    for (QWidget* part : {static_cast<QWidget*>(this), asking}) {
        if (part != nullptr) {
            part->raise();
            part->activateWindow();
        }
    }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DroppedFile(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    // The program that the file comes from waits until the drop has been dealt with.
    QTimer::singleShot(0, this, [this, path = DroppedFile(*event->mimeData())] { OpenFile(path); });
}

void MainWindow::Save() {
    SaveSettings();
    panel_->keepTakes();
}

void MainWindow::EndAtOnce() {
    if (controls_) {
        controls_->Close();
        Save();
        controls_->ShutdownMidi();
    }
}

std::function<QString()> MainWindow::CreateEngine() {
    try {
        std::unique_ptr<CKivora> engine = createEngine_();
        if (!engine) {
            return [] { return tr("Engine creation failed."); };
        }
        controls_ = std::make_unique<EngineControls>(*engine);
        engine_ = std::move(engine);
        return {};
    } catch (const EngineFailure& failure) {
        return [failure] { return failure.GetText(); };
    } catch (const NK::CException& error) {
        return [text = NK::ToQt(error.GetMessage())] { return text; };
    } catch (...) {
        return [] { return tr("Failed to create MIDI engine (unknown exception)."); };
    }
}

void MainWindow::FitAndCentre() {
    if (screenFit_) {
        screenFit_->Fit();
    } else {
        setFixedSize(panel_->sizeHint());
        adjustSize();
    }
    const QRect available = screen()->availableGeometry();
    move(available.left() + (available.width() - frameGeometry().width()) / 2,
         available.top() + (available.height() - frameGeometry().height()) / 2);
}

}  // namespace Kivora
