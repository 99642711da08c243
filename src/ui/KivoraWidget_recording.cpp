// Recording: its controls, its limits, and saving what was played.
#include <algorithm>
#include <QDateTime>
#include <QFileDialog>
#include <QLocale>
#include <QPushButton>
#include <QScopedValueRollback>

#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "engine/TakeJournal.h"
#include "nk/nk_directory.h"
#include "nk/nk_paths.h"
#include "ui/Dialogs.h"
#include "ui/KivoraWidget.h"
#include "ui/PanelFigure.h"
#include "ui/PanelKey.h"
#include "ui/PanelLabel.h"
#include "ui/RecordingTexts.h"

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
}

void KivoraWidget::onRecord() {
    if (engine_ != nullptr && !engine_->IsRecording()) {
        onStartRecording();
    }
    recordingStateChanged();
}

void KivoraWidget::onStartRecording() {
    if (front_ == nullptr) {
        return;
    }
    releaseHeld();
    if (!front_->StartRecording()) {
        Dialogs::Show(this, QMessageBox::Critical, tr("Error"), tr("Failed to start MIDI recording."));
    }
}

void KivoraWidget::onStopRecording() {
    if (engine_ != nullptr) {
        stopAndSave();
    }
}

void KivoraWidget::stopAndSave() {
    const QScopedValueRollback asking(askingAboutTakes_, true);
    if (engine_->IsRecording() && !engine_->StopRecording()) {
        Dialogs::Show(this, QMessageBox::Critical, tr("Error"), tr("Failed to stop MIDI recording."));
        return;
    }
    if (engine_->GetRecordedCount() > 0) {
        saveAs(QDateTime::currentDateTime(), [this](const NK::CString& path) { return engine_->SaveRecording(path); });
    }
}

bool KivoraWidget::saveAs(const QDateTime& begun, const std::function<bool(const NK::CString& path)>& save) {
    NK::CString& folder = engine_->GetLastFolders().takes;
    QFileDialog dialog(this, tr("Save MIDI File"),
                       Dialogs::ToQt(NK::FolderExists(folder) ? folder : engine_->GetUserDataDir()),
                       tr("MIDI Files (*.mid *.midi)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("mid");
    dialog.selectFile(tr("Recording %1", "suggested file name").arg(begun.toString("yyyy-MM-dd HH.mm.ss")) + ".mid");
    while (dialog.exec() == QDialog::Accepted) {
        const NK::CString path = Dialogs::FromQt(dialog.selectedFiles().value(0));
        if (save(path)) {
            folder = NK::GetFolderName(path);
            return true;
        }
        Dialogs::ShowFailure(this, QMessageBox::Critical, tr("Error"), tr("Failed to write MIDI file."),
                             Dialogs::GetFileFailure());
    }
    return false;
}

void KivoraWidget::timerTick() {
    if (engine_ == nullptr || !engine_->IsRecording()) {
        return;
    }
    ShowFigure(recordTime_, RecordingTexts::Elapsed(engine_->GetRecordingTime()));
    checkLimits();
}

void KivoraWidget::checkLimits() {
    const QString reason = RecordingTexts::ReasonToStop(engine_->GetRecordingTime(), engine_->GetIdleTime());
    if (reason.isEmpty()) {
        return;
    }
    const QScopedValueRollback asking(askingAboutTakes_, true);
    const bool captured = engine_->GetRecordedCount() > 0;
    if (!engine_->StopRecording()) {
        Dialogs::Show(this, QMessageBox::Critical, tr("Error"), tr("Failed to stop MIDI recording."));
        return;
    }
    if (!captured) {
        Dialogs::Show(this, QMessageBox::Warning, tr("Warning"), reason);
        return;
    }
    const auto answer = Dialogs::Show(this, QMessageBox::Warning, tr("Warning"),
                                      reason + " " + tr("Do you want to save the recording?"),
                                      QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
    if (answer == QMessageBox::Yes) {
        stopAndSave();
    } else if (answer == QMessageBox::No) {
        takes_->RefuseLatest();
    }
    // Without an answer, when the program is ended meanwhile, the take waits.
}

void KivoraWidget::takesChanged() {
    if (!askingAboutTakes_) {
        QTimer::singleShot(0, this, [this] { offerTakes(); });
    }
}

bool KivoraWidget::offerTakes() {
    if (takes_ == nullptr || askingAboutTakes_ || engine_->IsRecording()) {
        return true;
    }
    const QScopedValueRollback asking(askingAboutTakes_, true);
    bool decided = true;
    for (const Kivora::WaitingTake& take : takes_->GetWaiting()) {
        const QDateTime begun = QDateTime::fromSecsSinceEpoch(take.startedAt);
        const auto box = Dialogs::MakeBox(
            this, QMessageBox::Question, tr("Recording Not Saved"),
            tr("A recording of %1 (minutes and seconds), begun on %2, was not saved.")
                    .arg(RecordingTexts::Elapsed(take.lengthMs), QLocale().toString(begun, QLocale::ShortFormat)) +
                "\n" + tr("Do you want to save the recording?"),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        box->setDefaultButton(QMessageBox::Save);
        box->button(QMessageBox::Cancel)->setText(tr("Ask &later"));
        switch (box->exec()) {
            case QMessageBox::Save:
                decided &=
                    saveAs(begun, [this, &take](const NK::CString& path) { return takes_->Save(take.id, path); });
                break;
            case QMessageBox::Discard:
                takes_->Refuse(take.id);
                break;
            default:
                decided = false;
                break;
        }
    }
    return decided;
}

bool KivoraWidget::isReadyToClose() {
    if (takes_ == nullptr) {
        return true;
    }
    releaseHeld();
    front_->FallSilent();
    {
        const QScopedValueRollback asking(askingAboutTakes_, true);
        engine_->StopRecording();
    }
    if (offerTakes()) {
        return true;
    }
    // What waits is offered again at the next start, if it is there to be offered.
    NK::ForgetFileFailure();
    takes_->WriteOut();
    const auto waiting = takes_->GetWaiting();
    if (std::all_of(waiting.begin(), waiting.end(), [](const Kivora::WaitingTake& take) { return take.isOnDisk; })) {
        return true;
    }
    Dialogs::ShowFailure(this, QMessageBox::Warning, tr("Warning"),
                         tr("The recording cannot be kept on the disk until the next start, so the program goes on. "
                            "Save the recording in another folder, or discard it."),
                         Dialogs::GetFileFailure());
    return false;
}

void KivoraWidget::keepTakes() {
    if (takes_ != nullptr) {
        takes_->WriteOut();
    }
}
