#include "ui/dialogs/KeyboardTest.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTimerEvent>
#include <QVBoxLayout>

#include "piano/PCKeyPlaces.h"
#include "QtWidgets/piano/KeyTops.h"
#include "ui/dialogs/KeyboardFigure.h"
#include "ui/parts/Mnemonics.h"

using NK::Piano::CRolloverTest;
using NK::Piano::FindPCKeyPlace;
using NK::Piano::kExtraPlace;

namespace {

constexpr int kTextLines = 4;  ///< of what is found, which fills as one goes on

bool isInFigure(const QKeyEvent& event) {
    return FindPCKeyPlace(event.nativeScanCode()).value_or(kExtraPlace) != kExtraPlace;
}

std::map<quint32, QString> namesOfKeys(const NK::TKeyboardLayout* layout) {
    constexpr quint32 kScanCodes = 256;
    std::map<quint32, QString> names;
    for (quint32 key = 0; key < kScanCodes; ++key) {
        const char place = FindPCKeyPlace(key).value_or(kExtraPlace);
        if (place != kExtraPlace) {
            const QString top = layout != nullptr ? KeyTopText((*layout)[key]) : QString();
            names[key] = top.isEmpty() ? QString(QLatin1Char(place)).toUpper() : top;
        }
    }
    return names;
}

}  // namespace

KeyboardTest::KeyboardTest(const NK::TKeyboardLayout* layout, QWidget* parent)
    : FittedDialog(parent),
      tops_(namesOfKeys(layout)),
      figure_(new KeyboardFigure(this)),
      intro_(new QLabel(this)),
      count_(new QLabel(this)),
      task_(new QLabel(this)),
      result_(new QLabel(this)),
      droppedButton_(new QPushButton(this)),
      againButton_(new QPushButton(this)),
      closeButton_(new QPushButton(this)) {
    setObjectName("keyboardTest");
    figure_->setObjectName("keyboardFigure");
    figure_->setKeyTops(tops_);
    count_->setObjectName("keyboardCount");
    task_->setObjectName("keyboardTask");
    result_->setObjectName("keyboardResult");
    droppedButton_->setObjectName("keyDropped");
    againButton_->setObjectName("keyboardAgain");
    closeButton_->setObjectName("closeButton");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(droppedButton_);
    buttons->addWidget(againButton_);
    buttons->addStretch();
    buttons->addWidget(closeButton_);
    auto* layoutOfAll = new QVBoxLayout(this);
    for (QWidget* const part :
         {static_cast<QWidget*>(intro_), static_cast<QWidget*>(figure_), static_cast<QWidget*>(count_),
          static_cast<QWidget*>(task_), static_cast<QWidget*>(result_)}) {
        layoutOfAll->addWidget(part);
    }
    layoutOfAll->addLayout(buttons);
    for (QLabel* const text : {intro_, task_, result_}) {
        text->setWordWrap(true);
        text->setTextFormat(Qt::PlainText);
        text->setMinimumWidth(figure_->sizeHint().width());
    }
    result_->setMinimumHeight(kTextLines * fontMetrics().lineSpacing());
    result_->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    for (QPushButton* const button : {droppedButton_, againButton_, closeButton_}) {
        button->setAutoDefault(false);
        button->setFocusPolicy(Qt::TabFocus);
    }
    connect(droppedButton_, &QPushButton::clicked, this, [this] {
        test_.TellDropped();
        showKeys();
    });
    connect(againButton_, &QPushButton::clicked, this, [this] {
        test_.StartAgain();
        showKeys();
    });
    connect(closeButton_, &QPushButton::clicked, this, &QDialog::accept);
    retranslate();
    figure_->setFocus();
}

bool KeyboardTest::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate) {
        carryOutRelease();
        test_.ReleaseAll();
        showKeys();
    }
    return FittedDialog::event(event);
}

void KeyboardTest::keyPressEvent(QKeyEvent* event) {
    if (!isInFigure(*event)) {
        FittedDialog::keyPressEvent(event);
        return;
    }
    using enum NK::Piano::EKeyVerdict;
    if (keys_.press(*event) == kPlay) {
        carryOutRelease();
        test_.Press(event->nativeScanCode(), event->timestamp());
        showKeys();
    }
}

void KeyboardTest::keyReleaseEvent(QKeyEvent* event) {
    if (!isInFigure(*event)) {
        FittedDialog::keyReleaseEvent(event);
        return;
    }
    carryOutRelease();
    const TRelease release{event->nativeScanCode(), event->timestamp()};
    using enum NK::Piano::EKeyVerdict;
    switch (keys_.release(*event, release)) {
        case kPlay:
            test_.Release(release.key, release.timeMs);
            showKeys();
            break;
        case kWait:
            settleTimer_.start(NK::Piano::kRepeatSettleMs, this);
            break;
        case kRepeat:
            break;
    }
}

void KeyboardTest::timerEvent(QTimerEvent* event) {
    if (event->timerId() == settleTimer_.timerId()) {
        carryOutRelease();
    } else {
        FittedDialog::timerEvent(event);
    }
}

void KeyboardTest::carryOutRelease() {
    settleTimer_.stop();
    if (const auto release = keys_.takeWaiting()) {
        test_.Release(release->key, release->timeMs);
        showKeys();
    }
}

void KeyboardTest::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    FittedDialog::changeEvent(event);
}

void KeyboardTest::retranslate() {
    setWindowTitle(tr("Test My Keyboard"));
    intro_->setText(tr("Press keys together: each one that your keyboard reports lights up."));
    droppedButton_->setText(tr("One stays dark"));
    againButton_->setText(tr("Start again"));
    closeButton_->setText(tr("Close"));
    figure_->setAccessibleName(tr("Keys of the computer's keyboard"));
    AssignMnemonics(*this);
    showKeys();
}

QString KeyboardTest::nameOf(const CRolloverTest::CChord& chord) const {
    QStringList names;
    for (const std::uint32_t key : chord) {
        names << tops_.at(key);
    }
    return names.join(" + ");
}

QString KeyboardTest::taskText() const {
    if (test_.IsFinished()) {
        return tr("All chords have been tried.");
    }
    const QString task = tr("Chord %1 of %2: hold %3, then let go.")
                             .arg(test_.GetNumber() + 1)
                             .arg(test_.GetChordCount())
                             .arg(nameOf(test_.GetChord()));
    return task + ' ' + tr("If the third key stays dark, let go of another one first, or press the button.");
}

QString KeyboardTest::resultText() const {
    if (test_.GetDropped().empty()) {
        return test_.IsFinished() ? tr("Your keyboard reports every chord that was asked for.") : QString();
    }
    QStringList chords;
    for (const CRolloverTest::TDropped& dropped : test_.GetDropped()) {
        chords << tr("%1 (without %2)", "a chord, and the key that is missing")
                      .arg(nameOf(dropped.chord), tops_.at(dropped.key));
    }
    return tr("Your keyboard cannot report: %1.").arg(chords.join(", ")) + ' ' +
           tr("That is the wiring of the keyboard, which no program can change. A keyboard with \xE2\x80\x9Cn-key "
              "rollover\xE2\x80\x9D reports every chord.");
}

void KeyboardTest::showKeys() {
    QSet<quint32> lit;
    QStringList names;
    for (const auto& [key, top] : tops_) {
        if (test_.IsDown(key)) {
            lit.insert(key);
            names << top;
        }
    }
    QSet<quint32> marked;
    if (!test_.IsFinished()) {
        const CRolloverTest::CChord chord = test_.GetChord();
        marked = QSet<quint32>(chord.begin(), chord.end());
    }
    figure_->setKeys(lit, marked);
    figure_->setAccessibleDescription(names.join(' '));
    count_->setText(tr("Keys at once: %1. Most so far: %2.").arg(test_.GetDownCount()).arg(test_.GetMostDown()));
    task_->setText(taskText());
    result_->setText(resultText());
    droppedButton_->setEnabled(test_.CanBeDropped());
}
