#include "ui/arpeggiatorSettings.h"

#include <algorithm>
#include <array>
#include <QEvent>

#include "engine/EngineControls.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "nk/nk_rounding.h"
#include "ui/PanelSkin.h"
#include "ui/parts/PanelControlKeys.h"
#include "ui_arpeggiatorSettings.h"

using NK::MIDI::ArpeggiatorSettings;
using NK::MIDI::CArpeggiator1;

namespace {

/// Ticks of the items of the step's combo box, 192 to a quarter note.
constexpr std::array kSteps{384, 256, 192, 128, 96, 64, 48, 32, 24, 16};
/// Range codes of the items "1x", "2x", "3x" and "4x".
constexpr std::array<int, 4> kRanges{ArpeggiatorSettings::kNone, ArpeggiatorSettings::kOneUp,
                                     ArpeggiatorSettings::kOneDownOneUp, ArpeggiatorSettings::kOneDownTwoUp};

/// The item that stands for a value; -1 when none does.
template <std::size_t size>
int IndexOf(const std::array<int, size>& values, int value) {
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

bool HasEnds(int direction) {
    return direction == ArpeggiatorSettings::kUpDown || direction == ArpeggiatorSettings::kDownUp;
}

}  // namespace

arpeggiatorSettings::arpeggiatorSettings(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::arpeggiatorSettings>()), keys_(new PanelControlKeys(this)) {
    ui_->setupUi(this);
    setFixedSize(size());

    dressLamps();
    ui_->durationPcSlider->setImages(":/Resources/Slider_Hor_Channel.png", ":/Resources/Slider_Hor_In.png",
                                     ":/Resources/Slider_Hor_Pr.png");

    ui_->captionLabel->setTextStyle(PanelText::kTitle);
    ui_->durationPcDisplay->setTextStyle(PanelText::kGateFigure);

    for (QAbstractButton* button : {ui_->onOffButton, ui_->btnRepeat, ui_->btnLastVelocity}) {
        connect(button, &QAbstractButton::clicked, this, qOverload<>(&arpeggiatorSettings::settingsChanged));
        keys_->watch(button);
    }
    for (QComboBox* combo : {ui_->directionCombo, ui_->rangeCombo, ui_->noteStepCombo}) {
        connect(combo, &QComboBox::currentIndexChanged, this, qOverload<int>(&arpeggiatorSettings::settingsChanged));
        keys_->watch(combo);
    }
    connect(ui_->durationPcSlider, &QAbstractSlider::valueChanged, this,
            qOverload<int>(&arpeggiatorSettings::settingsChanged));
    keys_->watch(ui_->durationPcSlider);

    nameControls();
}

arpeggiatorSettings::~arpeggiatorSettings() = default;

void arpeggiatorSettings::setArpeggiator(Kivora::EngineControls* controls, int index) {
    controls_ = controls;
    index_ = index;
    refresh();
}

void arpeggiatorSettings::setCaption(const QString& caption, const QString& purpose) {
    ui_->captionLabel->setText(caption);
    ui_->captionLabel->setToolTip(purpose);
    setAccessibleName(caption);
    setAccessibleDescription(purpose);
}

void arpeggiatorSettings::dressLamps() {
    const QString on = lit_ ? "Pr" : "Dim";
    const auto file = [this](const char* name, const QString& state) {
        return SkinPictureFile(name + ('_' + state), pictureRatio_);
    };
    ui_->onOffButton->setImages(file("Btn_35x19", "In"), file("Btn_35x19", on));
    ui_->btnRepeat->setImages(file("Btn_35x19", "In"), file("Btn_35x19", on), file("Btn_35x19", "Dis"));
    ui_->btnLastVelocity->setImages(file("Check_Art", "In"), file("Check_Art", on));
}

void arpeggiatorSettings::updateSkin(PanelSkin& skin) {
    pictureRatio_ = skin.GetRatio();
    dressLamps();
    ui_->durationPcSlider->setImages(skin.GetSliderPart("Slider_Hor_Channel"), skin.GetSliderPart("Slider_Hor_In"),
                                     skin.GetSliderPart("Slider_Hor_Pr"));
    updateColors(skin);
}

void arpeggiatorSettings::updateColors(PanelSkin& skin) {
    ui_->directionCombo->setSkin(skin.GetTinted("Combo_124"), skin.GetFigureColor());
    ui_->rangeCombo->setSkin(skin.GetTinted("Combo_62"), skin.GetFigureColor());
    ui_->noteStepCombo->setSkin(skin.GetTinted("Combo_74"), skin.GetFigureColor());
    ui_->durationPcDisplay->setGlass(skin.GetTinted("Lcd_Gate"));
    ui_->durationPcDisplay->setTextColor(skin.GetFigureColor());
}

void arpeggiatorSettings::nameControls() {
    const auto joined = [](const QLabel& first, const QLabel& second) { return first.text() + ' ' + second.text(); };
    // What stands on one row is of one size.
    const PanelTextStyle& style = PanelText::kSmallLegend;
    PanelLabel::ShareTextStyle(style, {ui_->directionLabel, ui_->rangeLabel, ui_->noteStepLabel});
    PanelLabel::ShareTextStyle(style, {ui_->repeatLabel1, ui_->repeatLabel2});
    PanelLabel::ShareTextStyle(style, {ui_->durationPcLabel, ui_->lastVelocityLabel1, ui_->lastVelocityLabel2});
    ui_->btnRepeat->setAccessibleName(joined(*ui_->repeatLabel1, *ui_->repeatLabel2));
    ui_->btnLastVelocity->setAccessibleName(joined(*ui_->lastVelocityLabel1, *ui_->lastVelocityLabel2));
}

void arpeggiatorSettings::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        const QString caption = ui_->captionLabel->text();
        ui_->retranslateUi(this);
        ui_->captionLabel->setText(caption);
        nameControls();
        refresh();
    }
    QWidget::changeEvent(event);
}

void arpeggiatorSettings::refresh() {
    if (controls_ == nullptr) {
        return;
    }
    updating = true;
    ArpeggiatorSettings settings;
    bool bypassed = true;
    controls_->GetEngine().WithArpeggiator(index_, [&](const CArpeggiator1& arpeggiator) {
        settings = arpeggiator.GetSettings();
        bypassed = arpeggiator.IsBypassed();
    });
    if (const bool lit = controls_->GetEngine().IsArpeggiating(); lit != lit_) {
        lit_ = lit;
        dressLamps();
    }
    ui_->onOffButton->setChecked(!bypassed);
    ui_->btnLastVelocity->setChecked(settings.velocityMode == ArpeggiatorSettings::kLastVelocity);
    ui_->noteStepCombo->setCurrentIndex(IndexOf(kSteps, settings.noteStep));
    const QAbstractSlider& slider = *ui_->durationPcSlider;
    const double gate = std::clamp<double>(settings.GetDurationPercent(), slider.minimum(), slider.maximum());
    ui_->durationPcSlider->setValue(NK::RoundHalfDown(gate));
    showGate();
    ui_->directionCombo->setCurrentIndex(settings.direction < ui_->directionCombo->count() ? settings.direction : -1);
    ui_->btnRepeat->setEnabled(HasEnds(settings.direction));
    ui_->btnRepeat->setChecked(settings.repeat);
    ui_->rangeCombo->setCurrentIndex(IndexOf(kRanges, settings.extension));
    updating = false;
}

void arpeggiatorSettings::showGate() {
    ui_->durationPcDisplay->setText(QString::number(ui_->durationPcSlider->value()));
}

void arpeggiatorSettings::settingsChanged(int) {
    settingsChanged();
}

void arpeggiatorSettings::settingsChanged() {
    if (updating) {
        return;
    }
    showGate();
    const int direction = ui_->directionCombo->currentIndex();
    ui_->btnRepeat->setEnabled(HasEnds(direction));
    if (controls_ == nullptr) {
        return;
    }
    bool bypassChanges = false;
    controls_->ChangeArpeggiator(index_, [&](CArpeggiator1& arpeggiator) {
        const bool bypass = !ui_->onOffButton->isChecked();
        bypassChanges = bypass != arpeggiator.IsBypassed();
        arpeggiator.SetBypassed(bypass);
        arpeggiator.SetVelocityMode(ui_->btnLastVelocity->isChecked() ? ArpeggiatorSettings::kLastVelocity
                                                                      : ArpeggiatorSettings::kKeyVelocity);
        const double gate = ui_->durationPcSlider->value();
        if (const int step = ui_->noteStepCombo->currentIndex(); step >= 0) {
            arpeggiator.SetNoteStep(kSteps[static_cast<std::size_t>(step)], gate);
        } else {
            arpeggiator.SetDurationPercent(gate);
        }
        if (direction >= 0) {
            arpeggiator.SetDirection(direction);
        }
        arpeggiator.SetRepeat(ui_->btnRepeat->isChecked());
        const int range = kRanges[static_cast<std::size_t>(ui_->rangeCombo->currentIndex())];
        if (range != arpeggiator.GetExtension()) {  // setting it starts the pattern anew
            arpeggiator.SetExtension(range);
        }
    });
    if (bypassChanges) {
        emit arpeggiatorBypassChanged();
    }
}
