#include "ui/dialogs/midiSettings.h"

#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QShowEvent>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/values/Settings.h"
#include "locale/Locale.h"
#include "nk/nk_exception.h"
#include "nk/qt/nk_qt_string.h"
#include "piano/CPianoColors.h"
#include "ui/dialogs/ColorChooser.h"
#include "ui/dialogs/SettingsTexts.h"
#include "ui/dialogs/SoundCheck.h"
#include "ui/dialogs/SoundTexts.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/Mnemonics.h"
#include "ui/parts/WaitCursor.h"
#include "ui_midiSettings.h"

using Kivora::CKivora;

namespace {

void PaintSwatch(QWidget& swatch, const QColor& color) {
    QPalette palette = swatch.palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Window, color);
        palette.setColor(group, QPalette::Button, color);
    }
    swatch.setPalette(palette);
}

/// None for a number that is no coloring.
int KnownColoring(int number) {
    return number > NK::Piano::kNoColoring && number < NK::Piano::kColoringCount ? number : NK::Piano::kNoColoring;
}

void FillCombo(QComboBox& combo, const NK::CStringArray& names, int current) {
    combo.clear();
    for (std::uint32_t i = 0; i < names.GetSize(); ++i) {
        combo.addItem(SoundTexts::PortName(names[i]));
    }
    combo.setCurrentIndex(current);
    combo.setEnabled(combo.count() > 0);
}

}  // namespace

midiSettings::midiSettings(Kivora::EngineControls* controls, QWidget* parent)
    : FittedDialog(parent),
      ui_(std::make_unique<Ui::midiSettings>()),
      controls_(controls),
      engine_(controls != nullptr ? &controls->GetEngine() : nullptr) {
    ui_->setupUi(this);
    ui_->synthGroup->setSynth(controls_ != nullptr ? controls_->GetSynth() : nullptr);
    if (ui_->synthGroup->isHidden()) {  // else the right column would be half empty
        ui_->rightLayout->insertWidget(0, ui_->languageGroup);
    }
    nameControls();
    fillLanguages();
    fillPorts();
    loadControls();
    explain();
    connectControls();
}

midiSettings::~midiSettings() = default;

void midiSettings::setSynth(LibMidi::SynthControl* synth) {
    ui_->synthGroup->setSynth(synth);
}

void midiSettings::explainBy(std::function<QString()> text) {
    explanation_ = std::move(text);
    explain();
}

void midiSettings::setSoundDoctor(const SoundDoctorTools& tools) {
    doctor_ = tools;
    ui_->soundCheckBtn->setVisible(static_cast<bool>(doctor_.look));
}

void midiSettings::checkSound() {
    SoundCheck(doctor_, this).exec();
}

void midiSettings::explain() {
    const QString text = explanation_ ? explanation_() : QString();
    ui_->troubleLabel->setText(text);
    ui_->troubleLabel->setVisible(!text.isEmpty());
    ui_->troubleLabel->setFocusPolicy(text.isEmpty() ? Qt::NoFocus : Qt::ClickFocus);
}

void midiSettings::connectControls() {
    const auto click = [this](QPushButton* button, void (midiSettings::*slot)()) {
        connect(button, &QPushButton::clicked, this, slot);
    };
    click(ui_->pushButton, &midiSettings::closeClicked);
    click(ui_->rescanBtn, &midiSettings::rescanPorts);
    click(ui_->soundCheckBtn, &midiSettings::checkSound);
    click(ui_->restoreDefaultVelocities, &midiSettings::defaultVelocities);
    click(ui_->setBgColorBtn, &midiSettings::setBgColor);
    click(ui_->setDefaultBgColorBtn, &midiSettings::defaultBgColor);
    click(ui_->setDispColorBtn, &midiSettings::setDispColor);
    click(ui_->setDefaultDispColorBtn, &midiSettings::defaultDispColor);
    click(ui_->setDisp2ColorBtn, &midiSettings::setDisp2Color);
    click(ui_->setDefaultDisp2ColorBtn, &midiSettings::defaultDisp2Color);
    click(ui_->wpBrowseBtn, &midiSettings::onWPBrowse);
    click(ui_->wpClearBtn, &midiSettings::onWPClear);
    connect(ui_->coloringCombo, &QComboBox::currentIndexChanged, this, &midiSettings::onKeyboardColorChanged);
    connect(ui_->synthGroup, &SynthSettingsGroup::becameAvailable, this, &midiSettings::rescanPorts);
}

void midiSettings::nameControls() {
    const auto name = [](QWidget* control, const QLabel* label, const QString& text = {}) {
        QString spoken = label->text() + ' ' + text;
        control->setAccessibleName(spoken.remove('&').trimmed());
    };
    const auto nameButton = [&](QPushButton* button, const QLabel* label) { name(button, label, button->text()); };
    name(ui_->bgColorDisplay, ui_->bgColorLabel);
    nameButton(ui_->setBgColorBtn, ui_->bgColorLabel);
    nameButton(ui_->setDefaultBgColorBtn, ui_->bgColorLabel);
    name(ui_->dispColorDisplay, ui_->dispColorLabel);
    nameButton(ui_->setDispColorBtn, ui_->dispColorLabel);
    nameButton(ui_->setDefaultDispColorBtn, ui_->dispColorLabel);
    name(ui_->disp2ColorDisplay, ui_->disp2ColorLabel);
    nameButton(ui_->setDisp2ColorBtn, ui_->disp2ColorLabel);
    nameButton(ui_->setDefaultDisp2ColorBtn, ui_->disp2ColorLabel);
    nameButton(ui_->wpBrowseBtn, ui_->wpLabel);
    nameButton(ui_->wpClearBtn, ui_->wpLabel);
    AssignMnemonics(*this);
}

bool midiSettings::event(QEvent* event) {
    const bool handled = FittedDialog::event(event);
    if (event->type() == QEvent::LanguageChange) {
        ui_->retranslateUi(this);
        nameLanguages();
        nameControls();  // the synthesizer's group has its new texts by now
        explain();
    }
    return handled;
}

void midiSettings::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        loadControls();
    }
    FittedDialog::showEvent(event);
}

void midiSettings::arrange(int width) {
    fold(*ui_->columnsLayout, width);
}

void midiSettings::fillPorts() {
    FillCombo(*ui_->insCb, engine_ != nullptr ? engine_->GetInputPortNames() : NK::CStringArray(),
              engine_ != nullptr ? engine_->GetInputPortIndex() : -1);
    FillCombo(*ui_->outsCb, engine_ != nullptr ? engine_->GetOutputPortNames() : NK::CStringArray(),
              engine_ != nullptr ? engine_->GetOutputPortIndex() : -1);
}

void midiSettings::fillLanguages() {
    for (const char* code : Kivora::kSupportedLocales) {
        ui_->localeCombo->addItem(QString(), QString(code));
    }
    nameLanguages();
    ui_->localeCombo->setCurrentIndex(ui_->localeCombo->findData(Kivora::MatchLocale(Kivora::GetCurrentLocale())));
}

void midiSettings::nameLanguages() {
    for (int item = 0; item < ui_->localeCombo->count(); ++item) {
        ui_->localeCombo->setItemText(item, Kivora::LocaleDisplayName(ui_->localeCombo->itemData(item).toString()));
    }
}

void midiSettings::loadControls() {
    if (engine_ == nullptr) {
        return;
    }
    updating = true;
    ui_->pcKeyWayCombo->setCurrentIndex(static_cast<int>(engine_->GetPCKeyWay()));
    ui_->spinLow->setValue(engine_->GetVelocityLow());
    ui_->spinNormal->setValue(engine_->GetVelocityNormal());
    ui_->spinHigh->setValue(engine_->GetVelocityHigh());
    ui_->translatePatchNames->setChecked(engine_->GetTranslatePatchNames());
    ui_->translateKeyNames->setChecked(engine_->GetTranslateKeyNames());
    ui_->showNoteNames->setChecked(engine_->GetShowNoteNames());
    engine_->WithExtras([this](const Kivora::EngineExtras& extras) {
        ui_->keepPlayed->setChecked(extras.KeepsPlayed());
        ui_->writeTempo->setChecked(extras.savesTempo);
    });
    const int coloring = engine_->GetKeyboardColoring();
    ui_->coloringCombo->setCurrentIndex(KnownColoring(coloring));
    bgColor_ = engine_->GetUIColor();
    dispColor_ = engine_->GetUIDisplayColor();
    disp2Color_ = engine_->GetUIDisplay2Color();
    PaintSwatch(*ui_->bgColorDisplay, bgColor_);
    PaintSwatch(*ui_->dispColorDisplay, dispColor_);
    PaintSwatch(*ui_->disp2ColorDisplay, disp2Color_);
    ui_->wpEdit->setText(engine_->GetWallpaper());
    updating = false;
    ui_->synthGroup->refresh();
}

void midiSettings::defaultVelocities() {
    ui_->spinLow->setValue(Kivora::Settings{}.velocityLow);
    ui_->spinNormal->setValue(Kivora::Settings{}.velocityNormal);
    ui_->spinHigh->setValue(Kivora::Settings{}.velocityHigh);
}

void midiSettings::onKeyboardColorChanged(int index) {
    if (engine_ != nullptr && !updating) {
        controls_->SetKeyboardColoring(KnownColoring(index));
    }
}

void midiSettings::pickColor(const QString& title, const QColor& color, void (midiSettings::*changed)(const QColor&)) {
    const QColor former = color;
    ColorChooser dialog(former, this);
    dialog.setWindowTitle(title);
    connect(&dialog, &ColorChooser::currentColorChanged, this, changed);
    if (dialog.exec() != QDialog::Accepted) {
        (this->*changed)(former);
    }
}

void midiSettings::setBgColor() {
    pickColor(tr("Select Background Color"), bgColor_, &midiSettings::bgColorChanged);
}
void midiSettings::setDispColor() {
    pickColor(tr("Select Primary LCD Display Color"), dispColor_, &midiSettings::dispColorChanged);
}
void midiSettings::setDisp2Color() {
    pickColor(tr("Select Secondary LCD Display Color"), disp2Color_, &midiSettings::disp2ColorChanged);
}

void midiSettings::defaultBgColor() {
    bgColorChanged(CKivora::GetDefaultUIColor());
}
void midiSettings::defaultDispColor() {
    dispColorChanged(CKivora::GetDefaultUIDisplayColor());
}
void midiSettings::defaultDisp2Color() {
    disp2ColorChanged(CKivora::GetDefaultUIDisplay2Color());
}

void midiSettings::bgColorChanged(const QColor& color) {
    bgColor_ = color;
    if (engine_ != nullptr) {
        controls_->SetUIColor(color);
    }
    PaintSwatch(*ui_->bgColorDisplay, color);
}
void midiSettings::dispColorChanged(const QColor& color) {
    dispColor_ = color;
    if (engine_ != nullptr) {
        controls_->SetUIDisplayColor(color);
    }
    PaintSwatch(*ui_->dispColorDisplay, color);
}
void midiSettings::disp2ColorChanged(const QColor& color) {
    disp2Color_ = color;
    if (engine_ != nullptr) {
        controls_->SetUIDisplay2Color(color);
    }
    PaintSwatch(*ui_->disp2ColorDisplay, color);
}

void midiSettings::onWPBrowse() {
    const QString current = ui_->wpEdit->text();
    const QString last = engine_ != nullptr ? NK::ToQt(engine_->GetLastFolders().wallpapers) : QString();
    const QString path = QFileDialog::getOpenFileName(this, tr("Select wallpaper image"),
                                                      current.isEmpty() ? last : QFileInfo(current).absolutePath(),
                                                      tr("Image files") + " (*.png *.xpm *.jpg *.jpeg *.bmp)");
    if (!path.isEmpty()) {
        ui_->wpEdit->setText(path);
        if (engine_ != nullptr) {
            controls_->GetLastFolders().wallpapers = NK::FromQt(QFileInfo(path).absolutePath());
            controls_->SetWallpaper(path);
        }
    }
}

void midiSettings::onWPClear() {
    ui_->wpEdit->clear();
    if (engine_ != nullptr) {
        controls_->SetWallpaper(QString());
    }
}

void midiSettings::rescanPorts() {
    if (engine_ == nullptr) {
        return;
    }
    if (engine_->IsRecording()) {
        showError(tr("MIDI devices cannot be looked for while recording."));
        return;
    }
    attempt(tr("Looking for MIDI devices failed"), [this] {
        const WaitCursor wait;
        controls_->RescanPorts();
    });
    portsChanged();
}

void midiSettings::portsChanged() {
    const QString input = ui_->insCb->currentText();
    const QString output = ui_->outsCb->currentText();
    fillPorts();
    explain();
    const auto keep = [](QComboBox& combo, const QString& name) {
        if (const int index = combo.findText(name); index >= 0) {
            combo.setCurrentIndex(index);  // chosen, and not yet taken over
        }
    };
    keep(*ui_->insCb, input);
    keep(*ui_->outsCb, output);
}

void midiSettings::attempt(const QString& failure, const std::function<void()>& action) {
    try {
        action();
    } catch (const NK::CException& error) {
        showError(failure + '\n' + NK::ToQt(error.GetMessage()));
    } catch (...) {
        showError(tr("An unknown exception occured."));
    }
}

void midiSettings::closeClicked() {
    if (engine_ != nullptr) {
        const WaitCursor wait;
        if (ui_->insCb->isEnabled()) {
            attempt(tr("Setting input port failed"),
                    [this] { controls_->SetInputPortByIndex(ui_->insCb->currentIndex()); });
        }
        if (ui_->outsCb->isEnabled()) {
            attempt(tr("Setting output port failed"),
                    [this] { controls_->SetOutputPortByIndex(ui_->outsCb->currentIndex()); });
        }
        controls_->SetPCKeyWay(static_cast<NK::Piano::EPCKeyWay>(ui_->pcKeyWayCombo->currentIndex()));
        controls_->SetVelocityLow(ui_->spinLow->value());
        controls_->SetVelocityNormal(ui_->spinNormal->value());
        controls_->SetVelocityHigh(ui_->spinHigh->value());
        controls_->SetTranslatePatchNames(ui_->translatePatchNames->isChecked());
        controls_->SetTranslateKeyNames(ui_->translateKeyNames->isChecked());
        controls_->SetShowNoteNames(ui_->showNoteNames->isChecked());
        controls_->KeepPlayed(ui_->keepPlayed->isChecked());
        controls_->SetSavesTempo(ui_->writeTempo->isChecked());
        if (!controls_->SaveSettings()) {
            showError(tr("Failed to save the settings."), SettingsTexts::WhyNotSaved(engine_->GetSettingsFile()));
        }
    }
    takeLanguage();
    accept();
}

void midiSettings::takeLanguage() {
    const QString code = ui_->localeCombo->currentData().toString();
    if (code != Kivora::MatchLocale(Kivora::GetCurrentLocale()) && !Kivora::SetLocale(code, true)) {
        showError(tr("Failed to save the settings."), FailureTexts::OfLastFile());
    }
}

void midiSettings::showError(const QString& text, const QString& details) {
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    MessageBoxes::ShowFailure(this, QMessageBox::Critical, tr("Error"), text, details);
    QApplication::restoreOverrideCursor();
}
