#include "ui/dialogs/SynthSettingsGroup.h"

#include <algorithm>
#include <array>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>

#include "engine/EngineDependencies.h"
#include "locale/Locale.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/WaitCursor.h"
#include "ui_SynthSettingsGroup.h"

using LibMidi::SynthSettings;

namespace {

/// Buffered frames at the places of the latency's slider, from safe to fast.
constexpr std::array<std::uint32_t, 11> kLatencies{4096, 3072, 2048, 1536, 1024, 768, 512, 384, 256, 192, 128};
static_assert(kLatencies.front() == SynthSettings::kMaxLatencyFrames);
static_assert(kLatencies.back() == SynthSettings::kMinLatencyFrames);

constexpr double kPercent = 100.0;

int PlaceOfLatency(std::uint32_t frames) {
    const auto faster = std::find_if(kLatencies.begin(), kLatencies.end() - 1,
                                     [frames](std::uint32_t latency) { return latency <= frames; });
    return static_cast<int>(faster - kLatencies.begin());
}

QString DriverName(const QString& driver) {
    static const QMap<QString, QString> kNames{
        {"pipewire", "PipeWire"}, {"jack", "JACK"}, {"pulseaudio", "PulseAudio"}, {"alsa", "ALSA"}};
    return kNames.value(driver, driver);
}

}  // namespace

SynthSettingsGroup::SynthSettingsGroup(QWidget* parent)
    : QGroupBox(parent), ui_(std::make_unique<Ui::SynthSettingsGroup>()) {
    ui_->setupUi(this);
    ui_->synthLatency->setMaximum(static_cast<int>(kLatencies.size()) - 1);
    ui_->synthGain->setMaximum(static_cast<int>(SynthSettings::kMaxGain * kPercent));
    nameControls();
    const auto changed = &SynthSettingsGroup::settingsChanged;
    connect(ui_->synthDriverCb, &QComboBox::activated, this, changed);
    connect(ui_->synthLatency, &QSlider::valueChanged, this, changed);
    connect(ui_->synthLatency, &QSlider::sliderMoved, this, &SynthSettingsGroup::showLatency);
    connect(ui_->synthGain, &QSlider::valueChanged, this, changed);
    connect(ui_->synthReverb, &QCheckBox::toggled, this, changed);
    connect(ui_->synthChorus, &QCheckBox::toggled, this, changed);
    connect(ui_->synthFontBrowseBtn, &QPushButton::clicked, this, &SynthSettingsGroup::onFontBrowse);
    connect(ui_->synthFontDefaultBtn, &QPushButton::clicked, this, &SynthSettingsGroup::onFontDefault);
    connect(ui_->synthTestBtn, &QPushButton::clicked, this, &SynthSettingsGroup::onTest);
    setSynth(nullptr);
}

SynthSettingsGroup::~SynthSettingsGroup() = default;

void SynthSettingsGroup::setSynth(LibMidi::SynthControl* synth) {
    synth_ = synth;
    setVisible(synth_ != nullptr);
    refresh();
}

void SynthSettingsGroup::nameControls() {
    const QString font = ui_->synthFontLabel->text().remove('&');
    for (QPushButton* button : {ui_->synthFontBrowseBtn, ui_->synthFontDefaultBtn}) {
        button->setAccessibleName(font + ' ' + button->text().remove('&'));
    }
}

void SynthSettingsGroup::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        ui_->retranslateUi(this);
        nameControls();
        refresh();
    }
    QGroupBox::changeEvent(event);
}

void SynthSettingsGroup::fillDrivers(const QString& current) {
    QStringList drivers{QString()};
    for (const NK::CString& driver : synth_->GetAudioDrivers()) {
        drivers << NK::ToQt(driver);
    }
    if (!drivers.contains(current)) {
        drivers << current;
    }
    ui_->synthDriverCb->clear();
    for (const QString& driver : drivers) {
        ui_->synthDriverCb->addItem(driver.isEmpty() ? tr("Automatic") : DriverName(driver), driver);
    }
    ui_->synthDriverCb->setCurrentIndex(static_cast<int>(drivers.indexOf(current)));
}

void SynthSettingsGroup::refresh() {
    if (synth_ == nullptr) {
        return;
    }
    updating = true;
    const SynthSettings settings = synth_->GetSettings();
    fillDrivers(NK::ToQt(settings.audioDriver));
    const QString font = NK::ToQt(synth_->GetSoundFontPath());
    ui_->synthFontEdit->setText(settings.soundFont.IsEmpty() ? QString() : NK::ToQt(settings.soundFont));
    ui_->synthFontEdit->setPlaceholderText(font.isEmpty() ? tr("No sound font is installed") : font);
    ui_->synthFontEdit->setToolTip(font);
    ui_->synthLatency->setValue(PlaceOfLatency(settings.latencyFrames));
    showLatency(ui_->synthLatency->value());
    ui_->synthGain->setValue(qRound(settings.gain * kPercent));
    ui_->synthGainDisplay->setText(tr("%1 %").arg(ui_->synthGain->value()));
    ui_->synthReverb->setChecked(settings.reverb);
    ui_->synthChorus->setChecked(settings.chorus);
    updating = false;
}

void SynthSettingsGroup::showLatency(int place) {
    const double milliseconds = synth_->GetLatencyMs(kLatencies[static_cast<std::size_t>(place)]);
    ui_->synthLatencyDisplay->setText(
        tr("%1 ms").arg(QLocale(Kivora::GetCurrentLocale()).toString(milliseconds, 'f', 1)));
}

void SynthSettingsGroup::settingsChanged() {
    if (updating || synth_ == nullptr) {
        return;
    }
    SynthSettings settings = synth_->GetSettings();
    settings.audioDriver = NK::FromQt(ui_->synthDriverCb->currentData().toString());
    if (const int place = ui_->synthLatency->value(); place != PlaceOfLatency(settings.latencyFrames)) {
        settings.latencyFrames = kLatencies[static_cast<std::size_t>(place)];
    }
    if (const int percent = ui_->synthGain->value(); percent != qRound(settings.gain * kPercent)) {
        settings.gain = percent / kPercent;
    }
    settings.reverb = ui_->synthReverb->isChecked();
    settings.chorus = ui_->synthChorus->isChecked();
    apply(settings);
}

void SynthSettingsGroup::apply(const SynthSettings& settings) {
    if (settings == synth_->GetSettings()) {
        return;
    }
    const bool hadFont = !synth_->GetSoundFontPath().IsEmpty();
    LibMidi::Result result = LibMidi::kSuccess;
    {
        const WaitCursor wait;
        result = synth_->ApplySettings(settings);
    }
    refresh();
    if (result != LibMidi::kSuccess) {
        showFailure(NK::ToQt(synth_->GetLastError()));
    } else if (!hadFont && !synth_->GetSoundFontPath().IsEmpty()) {
        emit becameAvailable();
    }
}

void SynthSettingsGroup::onFontBrowse() {
    if (synth_ == nullptr) {
        return;
    }
    const QString folder = QFileInfo(NK::ToQt(synth_->GetSoundFontPath())).absolutePath();
    const QString path = QFileDialog::getOpenFileName(this, tr("Select sound font"), folder,
                                                      tr("Sound fonts") + " (*.sf2 *.sf3 *.SF2 *.SF3)");
    if (!path.isEmpty()) {
        setSoundFont(path);
    }
}

void SynthSettingsGroup::onFontDefault() {
    if (synth_ != nullptr) {
        setSoundFont(QString());
    }
}

void SynthSettingsGroup::setSoundFont(const QString& path) {
    SynthSettings settings = synth_->GetSettings();
    settings.soundFont = NK::FromQt(path);
    apply(settings);
}

void SynthSettingsGroup::onTest() {
    if (synth_ == nullptr) {
        return;
    }
    NK::CString reason;
    {
        const WaitCursor wait;
        reason = synth_->Test();
    }
    if (!reason.IsEmpty()) {
        showFailure(NK::ToQt(reason));
    }
}

void SynthSettingsGroup::showFailure(const QString& text) {
    MessageBoxes::Show(this, QMessageBox::Warning, tr("Warning"), text);
}
