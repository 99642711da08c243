#include "ui/dialogs/SoundCheck.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QStyle>
#include <QVBoxLayout>
#include <utility>

#include "ui/dialogs/SoundFindings.h"
#include "ui/parts/Mnemonics.h"
#include "ui/parts/ScrolledForm.h"
#include "ui/parts/WaitCursor.h"

using SoundReport::Grade;
using SoundReport::Line;

namespace {

constexpr int kNoteMs = 700;
constexpr int kWidth = 640;

QString GetMark(Grade grade) {
    return grade == Grade::kGood ? QString(QChar(0x2713)) : grade == Grade::kHint ? QString(QChar(0x2022)) : "!";
}

/// The sentences below each other, as high as they get at the width that the page has.
class Rows : public QWidget {
public:
    Rows() : grid_(new QGridLayout(this)) {
        setObjectName("rows");
        grid_->setColumnStretch(1, 1);
    }
    /// With room for a scroll bar, so that none has to come because another one did.
    QSize sizeHint() const override {
        return {kWidth + style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this),
                grid_->heightForWidth(kWidth)};
    }

    void Add(const Line& line) {
        const QString name = line.grade == Grade::kGood   ? SoundCheck::tr("Well")
                             : line.grade == Grade::kHint ? SoundCheck::tr("Hint")
                                                          : SoundCheck::tr("Trouble");
        const QString text = line.advice.isEmpty() ? line.text : line.text + '\n' + line.advice;
        auto* const mark = new QLabel(GetMark(line.grade));
        auto* const sentence = new QLabel(text);
        mark->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        mark->setAccessibleName(name);
        sentence->setAccessibleName(name + ": " + text);
        sentence->setWordWrap(true);
        sentence->setTextFormat(Qt::PlainText);
        sentence->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        if (line.grade == Grade::kTrouble) {
            QFont bold = sentence->font();
            bold.setBold(true);
            mark->setFont(bold);
            sentence->setFont(bold);
        }
        const int row = grid_->rowCount();
        grid_->addWidget(mark, row, 0);
        grid_->addWidget(sentence, row, 1);
    }
    void Finish() { grid_->setRowStretch(grid_->rowCount(), 1); }

private:
    QGridLayout* grid_;
};

}  // namespace

SoundCheck::SoundCheck(SoundDoctorTools tools, QWidget* parent)
    : FittedDialog(parent),
      tools_(std::move(tools)),
      waiting_(new QLabel),
      form_(new ScrolledForm),
      again_(new QPushButton),
      note_(new QPushButton),
      close_(new QPushButton) {
    setObjectName("SoundCheck");
    again_->setObjectName("againBtn");
    note_->setObjectName("noteBtn");
    close_->setObjectName("closeBtn");
    waiting_->setObjectName("waiting");
    again_->setAutoDefault(false);
    note_->setAutoDefault(false);
    note_->setEnabled(static_cast<bool>(tools_.holdNote));
    close_->setDefault(true);
    form_->setWidget(new Rows);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(again_);
    buttons->addWidget(note_);
    buttons->addStretch();
    buttons->addWidget(close_);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(waiting_);
    all->addWidget(form_, 1);
    all->addLayout(buttons);
    retranslate();
    connect(again_, &QPushButton::clicked, this, &SoundCheck::look);
    connect(note_, &QPushButton::clicked, this, &SoundCheck::playNote);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
    noteTimer_.setSingleShot(true);
    connect(&noteTimer_, &QTimer::timeout, this, &SoundCheck::endNote);
}

SoundCheck::~SoundCheck() {
    endNote();
}

void SoundCheck::retranslate() {
    setWindowTitle(tr("Sound Check"));
    waiting_->setText(tr("Each audio system is tried with a short note..."));
    again_->setText(tr("Check Again"));
    note_->setText(tr("Play a Note"));
    note_->setToolTip(tr("Plays a note as a key does, to the synthesizer that is chosen."));
    close_->setText(tr("Close"));
    AssignMnemonics(*this);
}

void SoundCheck::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    FittedDialog::changeEvent(event);
}

void SoundCheck::showEvent(QShowEvent* event) {
    FittedDialog::showEvent(event);
    if (!std::exchange(hasLooked_, true)) {
        QTimer::singleShot(0, this, &SoundCheck::look);
    }
}

void SoundCheck::look() {
    endNote();
    waiting_->show();
    again_->setEnabled(false);
    repaint();
    {
        const WaitCursor wait;
        showLines(SoundReport::Write(tools_.look()));
    }
    waiting_->hide();
    again_->setEnabled(true);
}

void SoundCheck::showLines(const QList<Line>& lines) {
    auto* const rows = new Rows;
    for (const Line& line : lines) {
        rows->Add(line);
    }
    rows->Finish();
    form_->setWidget(rows);  // which deletes the former ones
    form_->updateGeometry();
}

void SoundCheck::playNote() {
    endNote();
    tools_.holdNote(true);
    isNoteDown_ = true;
    noteTimer_.start(kNoteMs);
}

void SoundCheck::endNote() {
    noteTimer_.stop();
    if (std::exchange(isNoteDown_, false)) {
        tools_.holdNote(false);
    }
}
