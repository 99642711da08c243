#include "ui/dialogs/MetronomeSettings.h"

#include <array>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "engine/EngineControls.h"
#include "engine/values/ClickSettings.h"
#include "ui/parts/Mnemonics.h"

using Kivora::ClickSettings;

namespace {

/// Notes of the General MIDI percussion that suit a metronome.
struct Percussion {
    int note;
    const char* name;
};
constexpr std::array<Percussion, 10> kPercussion = {{
    {76, QT_TRANSLATE_NOOP("MetronomeSettings", "High wood block")},
    {77, QT_TRANSLATE_NOOP("MetronomeSettings", "Low wood block")},
    {75, QT_TRANSLATE_NOOP("MetronomeSettings", "Claves")},
    {37, QT_TRANSLATE_NOOP("MetronomeSettings", "Side stick")},
    {42, QT_TRANSLATE_NOOP("MetronomeSettings", "Closed hi-hat")},
    {56, QT_TRANSLATE_NOOP("MetronomeSettings", "Cowbell")},
    {80, QT_TRANSLATE_NOOP("MetronomeSettings", "Mute triangle")},
    {81, QT_TRANSLATE_NOOP("MetronomeSettings", "Open triangle")},
    {33, QT_TRANSLATE_NOOP("MetronomeSettings", "Metronome click")},
    {34, QT_TRANSLATE_NOOP("MetronomeSettings", "Metronome bell")},
}};

template <class Box>
Box* Named(Box* box, const char* name) {
    box->setObjectName(name);
    return box;
}

}  // namespace

MetronomeSettings::MetronomeSettings(Kivora::EngineControls& controls, QWidget* parent)
    : FittedDialog(parent),
      controls_(controls),
      form_(new QFormLayout),
      sound_(Named(new QComboBox, "clickSound")),
      barNote_(Named(new QComboBox, "clickBarNote")),
      beatNote_(Named(new QComboBox, "clickBeatNote")),
      loudness_(Named(new QSpinBox, "clickLoudness")),
      beats_(Named(new QSpinBox, "clickBeats")),
      countIn_(Named(new QComboBox, "clickCountIn")),
      close_(Named(new QPushButton, "clickCloseBtn")) {
    setObjectName("MetronomeSettings");
    loudness_->setRange(1, 127);
    beats_->setRange(1, ClickSettings::kMostBeats);
    for (QWidget* field : std::initializer_list<QWidget*>{sound_, barNote_, beatNote_, loudness_, beats_, countIn_}) {
        auto* const label = new QLabel;
        label->setBuddy(field);
        form_->addRow(label, field);
    }
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close_);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(form_);
    all->addLayout(buttons);
    close_->setDefault(true);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
    for (const QComboBox* combo : {sound_, barNote_, beatNote_, countIn_}) {
        connect(combo, &QComboBox::currentIndexChanged, this, &MetronomeSettings::store);
    }
    for (QSpinBox* box : {loudness_, beats_}) {
        box->setKeyboardTracking(false);
        connect(box, &QSpinBox::valueChanged, this, &MetronomeSettings::store);
    }
    retranslate();
}

void MetronomeSettings::changeEvent(QEvent* event) {
    FittedDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void MetronomeSettings::retranslate() {
    setWindowTitle(tr("Metronome"));
    const std::initializer_list<std::pair<QWidget*, QString>> labels = {
        {sound_, tr("Sound:")},          {barNote_, tr("First beat of a bar:")},
        {beatNote_, tr("Other beats:")}, {loudness_, tr("Loudness:")},
        {beats_, tr("Beats in a bar:")}, {countIn_, tr("Count-in before a recording:")}};
    for (const auto& [field, text] : labels) {
        qobject_cast<QLabel*>(form_->labelForField(field))->setText(text);
    }
    load();
    close_->setText(tr("Close"));
    AssignMnemonics(*this);
}

void MetronomeSettings::fillNotes(QComboBox& combo, int chosen) {
    combo.clear();
    for (const Percussion& percussion : kPercussion) {
        combo.addItem(tr(percussion.name), percussion.note);
    }
    if (combo.findData(chosen) < 0) {
        combo.addItem(tr("Note %1").arg(chosen), chosen);
    }
    combo.setCurrentIndex(combo.findData(chosen));
}

void MetronomeSettings::load() {
    loading_ = true;
    const ClickSettings click = controls_.GetEngine().GetClick();
    sound_->clear();
    sound_->addItems(
        {tr("None: the lamps alone"), tr("On the chosen synthesizer"), tr("On the built-in synthesizer alone")});
    sound_->setCurrentIndex(static_cast<int>(click.sound));
    fillNotes(*barNote_, click.barNote);
    fillNotes(*beatNote_, click.beatNote);
    loudness_->setValue(click.loudness);
    beats_->setValue(click.beatsPerBar);
    countIn_->clear();
    countIn_->addItems({tr("None", "count-in"), tr("One bar"), tr("Two bars")});
    countIn_->setCurrentIndex(click.countInBars);
    loading_ = false;
    enable();
}

void MetronomeSettings::store() {
    if (loading_) {
        return;
    }
    ClickSettings click;
    click.sound = static_cast<ClickSettings::Sound>(sound_->currentIndex());
    click.barNote = barNote_->currentData().toInt();
    click.beatNote = beatNote_->currentData().toInt();
    click.loudness = loudness_->value();
    click.beatsPerBar = beats_->value();
    click.countInBars = countIn_->currentIndex();
    controls_.SetClick(click);
    enable();
}

void MetronomeSettings::enable() {
    const bool isHeard = sound_->currentIndex() > 0;
    for (QWidget* field : std::initializer_list<QWidget*>{barNote_, beatNote_, loudness_, countIn_}) {
        field->setEnabled(isHeard);
    }
}
