// Saving what was played while no recording ran.
#include <optional>
#include <QAbstractButton>
#include <QDateTime>
#include <QScopedValueRollback>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/Song.h"
#include "engine/takes/PlayedPassages.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/RecordingTexts.h"
#include "ui/TakeToSave.h"

using Kivora::PlayedPassages;

namespace {

using Range = PlayedPassages::Range;

QString Title() {
    return KivoraWidget::tr("Save What I Just Played");
}

QString Length(const PlayedPassages& played, Range range) {
    return RecordingTexts::Elapsed(played.GetLengthMs(range));
}

/// Nothing when the user wants neither.
std::optional<Range> Ask(QWidget* parent, const PlayedPassages& played) {
    const QString memory =
        KivoraWidget::tr("It is kept in memory only, for 15 minutes, and is lost when the program ends.");
    if (!played.HasPause()) {
        const QString text =
            KivoraWidget::tr("You have played %1 (minutes and seconds).").arg(Length(played, Range::kAll));
        const auto answer = MessageBoxes::Show(parent, QMessageBox::Question, Title(), text + "\n" + memory,
                                               QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Save);
        return answer == QMessageBox::Save ? std::optional(Range::kAll) : std::nullopt;
    }
    const QString text =
        KivoraWidget::tr("You have played %1 since your last pause, and %2 in all (minutes and seconds).")
            .arg(Length(played, Range::kSincePause), Length(played, Range::kAll));
    const auto box = MessageBoxes::Make(parent, QMessageBox::Question, Title(), text + "\n" + memory,
                                        QMessageBox::Save | QMessageBox::SaveAll | QMessageBox::Cancel);
    box->button(QMessageBox::Save)->setText(KivoraWidget::tr("Since the &Pause"));
    box->button(QMessageBox::SaveAll)->setText(KivoraWidget::tr("&All of It"));
    box->setDefaultButton(QMessageBox::Save);
    switch (box->exec()) {
        case QMessageBox::Save:
            return Range::kSincePause;
        case QMessageBox::SaveAll:
            return Range::kAll;
        default:
            return std::nullopt;
    }
}

}  // namespace

void KivoraWidget::savePlayed() {
    if (engine_ == nullptr) {
        return;
    }
    releaseHeld();
    const QScopedValueRollback asking(askingAboutTakes_, true);
    const auto history = engine_->WithExtras([](const Kivora::EngineExtras& extras) { return extras.GetPlayed(); });
    const PlayedPassages played(
        history->Get(), engine_->WithExtras([](const Kivora::EngineExtras& extras) { return extras.playedGrid; }));
    if (!played.IsAny()) {
        MessageBoxes::Show(this, QMessageBox::Information, Title(),
                           history->IsOn()
                               ? tr("Nothing was played in the last 15 minutes. What was played before the "
                                    "program was started is not kept.")
                               : tr("What you play is not kept, since that is switched off in the settings."));
    } else if (const std::optional<Range> range = Ask(this, played)) {
        saveAs(QDateTime::currentDateTime().addMSecs(-played.GetAgeMs(*range)),
               {.hasGrid = true,
                .take = [&played, range] { return std::make_shared<const Kivora::Song>(played.GetTake(*range)); },
                .save = [&played, range](const NK::CString& path,
                                         bool onGrid) { return played.Save(*range, path, onGrid); }});
    }
    QTimer::singleShot(0, this, &KivoraWidget::offerTakes);
}
