// Recordings that have ended and wait until they are saved or refused.
#include <algorithm>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QLocale>
#include <QPushButton>
#include <QScopedValueRollback>

#include "engine/EngineControls.h"
#include "engine/Song.h"
#include "engine/TakeJournal.h"
#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/ListenButton.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/NoticeLine.h"
#include "ui/parts/UnaskedBox.h"
#include "ui/RecordingTexts.h"
#include "ui/TakeToSave.h"

using Kivora::WaitingTake;

void KivoraWidget::takesChanged() {
    const auto waits = [this](int id) {
        const std::vector<WaitingTake> waiting = takes_->GetWaiting();
        return std::any_of(waiting.begin(), waiting.end(), [id](const WaitingTake& take) { return take.id == id; });
    };
    if (takeQuestion_ && takeAsked_ != 0 && !waits(takeAsked_)) {
        withdrawTakeQuestion();  // saved or refused in another way
    }
    updateTakeNotice();
    if (!askingAboutTakes_) {
        QTimer::singleShot(0, this, &KivoraWidget::offerTakes);
    }
}

void KivoraWidget::updateTakeNotice() {
    NoticeLine& line = *display_->notice();
    if (takes_ == nullptr || !takes_->IsFailing()) {
        line.withdraw(NoticeLine::Topic::kTakes);
    } else if (engine_->IsRecording()) {
        line.tell(NoticeLine::Topic::kTakes, Kivora::TakeJournal::GetFailureText());
    } else {
        line.tell(NoticeLine::Topic::kTakes, tr("A recording is not safe on the disk. Press here to save it."), [this] {
            takesForLater_.clear();
            offerTakes();
        });
    }
}

void KivoraWidget::askAboutTake(int id, std::unique_ptr<QMessageBox> box,
                                std::function<void(QMessageBox::StandardButton)> answered) {
    withdrawTakeQuestion();
    takeAsked_ = id;
    takeQuestion_ = UnaskedBox::show(std::move(box), *this, [this, answered](QMessageBox::StandardButton answer) {
        takeQuestion_.clear();
        answered(answer);
        QTimer::singleShot(0, this, &KivoraWidget::offerTakes);
    });
}

void KivoraWidget::withdrawTakeQuestion() {
    if (takeQuestion_) {
        UnaskedBox::withdraw(*takeQuestion_);
        takeQuestion_.clear();
    }
}

std::unique_ptr<QMessageBox> KivoraWidget::makeOffer(const WaitingTake& take) {
    const QDateTime begun = QDateTime::fromSecsSinceEpoch(take.startedAt);
    QString text = tr("A recording of %1 (minutes and seconds), begun on %2, was not saved.")
                       .arg(RecordingTexts::Elapsed(take.lengthMs), QLocale().toString(begun, QLocale::ShortFormat)) +
                   "\n";
    if (take.missing > 0) {
        text += tr("Its file is damaged: %n event(s) of it are missing.", nullptr, take.missing) + "\n";
    }
    if (take.isFailing) {
        text += tr("It is not safe on the disk: it is lost when the program ends.") + "\n";
    }
    auto box = MessageBoxes::Make(this, QMessageBox::Question, tr("Recording Not Saved"),
                                  text + tr("Do you want to save the recording?"),
                                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box->button(QMessageBox::Cancel)->setText(tr("Ask &later"));
    auto* const listen = new ListenButton(
        *controls_, [this, id = take.id] { return std::make_shared<const Kivora::Song>(takes_->GetTake(id)); });
    box->addButton(listen, QMessageBox::ActionRole);
    disconnect(listen, &QPushButton::clicked, box->findChild<QDialogButtonBox*>(), nullptr);  // it is no answer
    return box;
}

bool KivoraWidget::answerOffer(int id, const QDateTime& begun, QMessageBox::StandardButton answer) {
    switch (answer) {
        case QMessageBox::Save:
            return saveTake(id, begun);
        case QMessageBox::Discard:
            return controls_->RefuseTake(id);
        default:
            leaveForLater(id);
            return false;
    }
}

bool KivoraWidget::saveTake(int id, const QDateTime& begun) {
    const QScopedValueRollback asking(askingAboutTakes_, true);
    const bool saved = saveAs(
        begun,
        {.hasGrid = takes_->HasGrid(id),
         .take = [this, id] { return std::make_shared<const Kivora::Song>(takes_->GetTake(id)); },
         .save = [this, id](const NK::CString& path, bool onGrid) { return controls_->SaveTake(id, path, onGrid); }});
    if (!saved) {
        leaveForLater(id);
    }
    return saved;
}

void KivoraWidget::leaveForLater(int id) {
    takesForLater_.insert(id);
    updateTakeNotice();
}

void KivoraWidget::offerTakes() {
    if (takes_ == nullptr || askingAboutTakes_ || takeQuestion_ || engine_->IsRecording()) {
        return;
    }
    tellLostJournals();
    for (const WaitingTake& take : takes_->GetWaiting()) {
        if (takesForLater_.count(take.id) == 0) {
            const QDateTime begun = QDateTime::fromSecsSinceEpoch(take.startedAt);
            askAboutTake(take.id, makeOffer(take), [this, id = take.id, begun](QMessageBox::StandardButton answer) {
                answerOffer(id, begun, answer);
            });
            return;
        }
    }
}

void KivoraWidget::tellLostJournals() {
    QString setAside;
    QString unreadable;
    for (const Kivora::LostJournal& journal : controls_->TakeLostJournals()) {
        (journal.isSetAside ? setAside : unreadable) += "\n" + NK::ToQt(journal.path);
    }
    const auto tell = [this](const QString& text) {
        UnaskedBox::show(MessageBoxes::Make(this, QMessageBox::Warning, tr("Warning"), text), *this);
    };
    if (!setAside.isEmpty()) {
        tell(tr("The damaged file of a recording was kept under another name:") + setAside);
    }
    if (!unreadable.isEmpty()) {
        tell(tr("A recording that waits to be saved cannot be read now. It stays where it is:") + unreadable);
    }
}

bool KivoraWidget::decideAboutTakes() {
    const QScopedValueRollback asking(askingAboutTakes_, true);
    withdrawTakeQuestion();
    bool decided = true;
    for (const WaitingTake& take : takes_->GetWaiting()) {
        const auto begun = QDateTime::fromSecsSinceEpoch(take.startedAt);
        decided &= answerOffer(take.id, begun, UnaskedBox::exec(*makeOffer(take)));
    }
    return decided;
}

bool KivoraWidget::isReadyToClose() {
    if (takes_ == nullptr) {
        return true;
    }
    releaseHeld();
    controls_->FallSilent();
    {
        const QScopedValueRollback asking(askingAboutTakes_, true);
        controls_->StopRecording();
    }
    controls_->WriteOutTakes();
    if (decideAboutTakes()) {
        return true;
    }
    // What waits is offered again at the next start, if it is there to be offered.
    NK::ForgetFileFailure();
    controls_->WriteOutTakes();
    const auto waiting = takes_->GetWaiting();
    if (std::all_of(waiting.begin(), waiting.end(), [](const WaitingTake& take) { return take.isOnDisk; })) {
        return true;
    }
    UnaskedBox::exec(
        *MessageBoxes::Make(this, QMessageBox::Warning, tr("Warning"),
                            tr("The recording cannot be kept on the disk until the next start, so the program goes on. "
                               "Save the recording in another folder, or discard it."),
                            QMessageBox::Ok, FailureTexts::OfLastFile()));
    return false;
}

void KivoraWidget::keepTakes() {
    if (takes_ != nullptr) {
        controls_->WriteOutTakes();
    }
}
