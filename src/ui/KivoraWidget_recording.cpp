// Recording: its controls, its limits, and saving what was played.
#include <QCheckBox>
#include <QDateTime>
#include <QFileDialog>
#include <QGridLayout>
#include <QScopedValueRollback>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/Song.h"
#include "engine/TakeJournal.h"
#include "nk/nk_directory.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/ListenButton.h"
#include "ui/dialogs/MIDIFileNames.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/SongFile.h"
#include "ui/dialogs/SoundTexts.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/NoticeLine.h"
#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/UnaskedBox.h"
#include "ui/RecordingTexts.h"
#include "ui/TakeToSave.h"
#include "ui/WheelStrip.h"

namespace {
constexpr int kTickMs = 100;
}

void KivoraWidget::onRecordView() {
    leftView_ = recordView_->isChecked() ? LeftView::kRecorder : LeftView::kMetronome;
    updateLeftPane();
}

void KivoraWidget::updateLeftPane() {
    const bool recorder = leftView_ == LeftView::kRecorder;
    recordView_->setChecked(recorder);
    tempo_->setVisible(!recorder);
    metronome_->setVisible(!recorder);
    updateMetronome();
    recordTime_->setVisible(recorder);
    record_->setVisible(recorder);
    stop_->setVisible(recorder);
    composeBackground();
}

void KivoraWidget::recordingStateChanged() {
    const bool recording = engine_ != nullptr && engine_->IsRecording();
    record_->setChecked(recording);
    stop_->setEnabled(recording);
    if (recording) {
        ShowFigure(recordTime_, RecordingTexts::Elapsed(engine_->GetRecordingTime()));
        panelTimer_.start(kTickMs);
    } else {
        panelTimer_.stop();
    }
    updateCountIn();
    updateTakeNotice();
    updateNotices();
}

void KivoraWidget::updateCountIn() {
    NoticeLine& line = *display_->notice();
    const int beats = engine_ != nullptr ? engine_->GetCountIn() : 0;
    if (beats > 0) {
        line.tell(NoticeLine::Topic::kCountIn, tr("Count-in: %1", "beats that are left").arg(beats));
    } else {
        line.withdraw(NoticeLine::Topic::kCountIn);
    }
}

void KivoraWidget::onRecord() {
    if (engine_ != nullptr && !engine_->IsRecording()) {
        onStartRecording();
    }
    record_->setChecked(engine_ != nullptr && engine_->IsRecording());
}

void KivoraWidget::onStartRecording() {
    if (controls_ == nullptr) {
        return;
    }
    releaseHeld();
    if (engine_->GetCapture() && !isOutputWorking()) {
        display_->notice()->tell(NoticeLine::Topic::kSound, SoundTexts::NothingToRecord(),
                                 [this] { settingsClicked(); });
        return;
    }
    if (!controls_->StartRecording()) {
        MessageBoxes::Show(this, QMessageBox::Critical, tr("Error"), tr("Failed to start MIDI recording."));
    }
    updateCountIn();  // begins after the recording
}

void KivoraWidget::onStopRecording() {
    if (engine_ != nullptr) {
        stopAndSave();
    }
}

void KivoraWidget::stopAndSave() {
    const QScopedValueRollback asking(askingAboutTakes_, true);
    const bool captured = engine_->GetRecordedCount() > 0;
    releaseControls(*strip_);  // so that no take ends bent
    if (engine_->IsRecording() && !controls_->StopRecording()) {
        MessageBoxes::Show(this, QMessageBox::Critical, tr("Error"), tr("Failed to stop MIDI recording."));
        return;
    }
    const int take = takes_->GetLatest();
    if (captured && !saveAs(QDateTime::currentDateTime(),
                            {.hasGrid = takes_->HasGrid(take),
                             .take = [this] { return std::make_shared<const Kivora::Song>(takes_->GetLatestTake()); },
                             .save = [this](const NK::CString& path,
                                            bool onGrid) { return controls_->SaveLatestTake(path, onGrid); }})) {
        leaveForLater(take);
    }
}

bool KivoraWidget::saveAs(const QDateTime& begun, const TakeToSave& take) {
    NK::CString& folder = controls_->GetLastFolders().takes;
    QFileDialog dialog(this, tr("Save MIDI File"),
                       NK::ToQt(NK::FolderExists(folder) ? folder : engine_->GetUserDataDir()),
                       MIDIFileNames::GetFilter(MIDIFileNames::kWritten));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("mid");
    dialog.selectFile(tr("Recording %1", "suggested file name").arg(begun.toString("yyyy-MM-dd HH.mm.ss")) + ".mid");
    bool onGrid = engine_->WithExtras([](const Kivora::EngineExtras& extras) { return extras.savesTempo; });
    // A dialog of the desktop has no place for more.
    if (auto* const grid = qobject_cast<QGridLayout*>(dialog.layout())) {
        const int row = grid->rowCount();
        grid->addWidget(new ListenButton(*controls_, take.take), row, 0);
        auto* const writeTempo = new QCheckBox(tr("Write the panel's tempo"));
        writeTempo->setObjectName("writeTempo");
        writeTempo->setVisible(take.hasGrid);
        writeTempo->setChecked(onGrid);
        connect(writeTempo, &QCheckBox::toggled, &dialog, [&onGrid](bool on) { onGrid = on; });
        grid->addWidget(writeTempo, row, 1, 1, -1);
    }
    while (dialog.exec() == QDialog::Accepted) {
        const NK::CString path = NK::FromQt(dialog.selectedFiles().value(0));
        if (take.save(path, onGrid)) {
            controls_->SetSavesTempo(onGrid);
            folder = NK::GetFolderName(path);
            return true;
        }
        MessageBoxes::ShowFailure(this, QMessageBox::Critical, tr("Error"), tr("Failed to write MIDI file."),
                                  FailureTexts::OfLastFile());
    }
    return false;
}

PlayerWindow& KivoraWidget::player() {
    if (auto* const there = findChild<PlayerWindow*>(QString(), Qt::FindDirectChildrenOnly)) {
        return *there;
    }
    auto* const made = new PlayerWindow(*controls_, *this);
    made->setPanelActions(actions());
    return *made;
}

void KivoraWidget::playLatestTake() {
    if (takes_ == nullptr) {
        return;
    }
    const auto take = takes_->GetLatestTake();
    if (take.GetCount() == 0) {
        MessageBoxes::Show(this, QMessageBox::Information, tr("Hear the Recording"),
                           engine_->IsRecording()
                               ? tr("A recording runs. It can be heard once it has ended.")
                               : tr("There is no recording that has ended since the program was started."));
        return;
    }
    player().openSong({std::make_shared<const Kivora::Song>(take), tr("The last recording"), QString()});
}

void KivoraWidget::timerTick() {
    if (engine_ == nullptr || !engine_->IsRecording()) {
        return;
    }
    ShowFigure(recordTime_, RecordingTexts::Elapsed(engine_->GetRecordingTime()));
    updateCountIn();
    checkLimits();
}

void KivoraWidget::checkLimits() {
    const QString reason = RecordingTexts::ReasonToStop(
        engine_->GetRecordingTime(), isOutputWorking() ? engine_->GetIdleTime() : 0);  // else nothing can be played
    if (reason.isEmpty()) {
        return;
    }
    const bool captured = engine_->GetRecordedCount() > 0;
    const QScopedValueRollback asking(askingAboutTakes_, true);
    releaseControls(*strip_);
    if (!controls_->StopRecording()) {
        UnaskedBox::show(
            MessageBoxes::Make(this, QMessageBox::Critical, tr("Error"), tr("Failed to stop MIDI recording.")), *this);
    } else if (!captured) {
        UnaskedBox::show(MessageBoxes::Make(this, QMessageBox::Warning, tr("Warning"), reason), *this);
    } else {
        askAfterStop(reason);
    }
}

void KivoraWidget::askAfterStop(const QString& reason) {
    const int take = takes_->GetLatest();
    askAboutTake(
        take,
        MessageBoxes::Make(this, QMessageBox::Warning, tr("Warning"),
                           reason + " " + tr("Do you want to save the recording?"), QMessageBox::Yes | QMessageBox::No),
        [this, take](QMessageBox::StandardButton answer) {
            if (answer == QMessageBox::No) {
                controls_->RefuseTake(take);
            } else if (answer != QMessageBox::Yes) {
                leaveForLater(take);
            } else if (take != 0) {
                saveTake(take, QDateTime::currentDateTime());
            } else if (!engine_->IsRecording()) {
                stopAndSave();  // nothing was played in it
            }
        });
}
