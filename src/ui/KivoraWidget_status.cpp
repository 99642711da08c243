// What the panel shows of what is played and set.
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/values/ClickSettings.h"
#include "midi/MIDIControllers.h"
#include "midi/TMIDIMessage.h"
#include "nk/qt/nk_qt_string.h"
#include "piano/CPianoColors.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/ComputerKeys.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelKey.h"
#include "ui/WheelStrip.h"

using NK::MIDI::TMIDIMessage;

void KivoraWidget::MIDIMessageSent(int packedMessage) {
    TMIDIMessage message = TMIDIMessage::FromWord(static_cast<std::uint32_t>(packedMessage));
    piano_->ProcessMessage(message);
    strip_->follow(message);
    midiLamp_->blink();
    if (message.status == TMIDIMessage::kNoteOn && message.data2 > 0) {
        lastVelocity_ = message.data2;
        updateStatusDisplay();
    } else if (message.status == TMIDIMessage::kControlChange && message.data1 == NK::MIDI::Controller::kSustain) {
        sustainShown_ = message.data2 != 0;
        updateStatusDisplay();
    } else if (message.status == TMIDIMessage::kControlChange &&
               message.data1 == NK::MIDI::Controller::kResetControllers) {
        sustainShown_ = false;
        updateStatusDisplay();
    }
}

void KivoraWidget::updateStatusDisplay() {
    display_->setVelocity(lastVelocity_ == 0 ? QStringLiteral("--") : QString::number(lastVelocity_));
    display_->setSustain(sustainShown_ ? tr("ON") : tr("OFF"));
}

void KivoraWidget::synthSet() {
    piano_->ReleaseAll();
    updateVoiceParameters();
    updateStatusDisplay();
}

void KivoraWidget::presetChanged() {
    const QString name = engine_ != nullptr ? NK::ToQt(engine_->GetPresetName()) : QString();
    display_->setPreset(name.isEmpty() ? tr("Previous Settings") : name);
    updateEffectWidgets();
}

void KivoraWidget::updateKeyNames() {
    if (engine_ != nullptr) {
        computerKeys_->setWay(engine_->GetPCKeyWay());
    }
    hintBar_->setTranslateKeyNames(engine_ == nullptr || engine_->GetTranslateKeyNames());
    hintBar_->setKeyTops(computerKeys_->keyTops());
}

void KivoraWidget::updateKeyboardDisplay() {
    if (engine_ == nullptr) {
        return;
    }
    piano_->setNoteNames(engine_->GetShowNoteNames());
    switch (engine_->GetKeyboardColoring()) {
        case NK::Piano::kRainbowColoring:
            piano_->setRainbowColors();
            break;
        case NK::Piano::kScriabinColoring:
            piano_->setScriabinColors();
            break;
        default:
            piano_->setNoColors();
            break;
    }
}

void KivoraWidget::updateTempo() {
    const QString tempo = engine_ != nullptr ? QString::number(engine_->GetTempo()) : QString();
    ShowFigure(tempo_, tempo);
    display_->setTempo(tempo);
}

void KivoraWidget::updateMetronome() {
    metronome_->setChecked(engine_ != nullptr && engine_->IsMetronomeOn());
    const bool taps = leftView_ == LeftView::kMetronome && engine_ != nullptr &&
                      engine_->GetClick().sound != Kivora::ClickSettings::Sound::kSilent;
    if (taps != tap_->isVisibleTo(this)) {
        tap_->setVisible(taps);
        tapLegend_->setVisible(taps);
        composeBackground();  // it may frame what is there
    }
}

void KivoraWidget::tapClicked() {
    if (controls_ != nullptr) {
        controls_->TapTempo();
    }
}

void KivoraWidget::onMetronomeSwitch() {
    if (engine_ != nullptr) {
        controls_->SetMetronome(!engine_->IsMetronomeOn());
    }
    updateMetronome();
}

void KivoraWidget::onBar() {
    barLamp_->blink();
}

void KivoraWidget::onBeat() {
    beatLamp_->blink();
}

void KivoraWidget::arpeggiatingChanged() {
    arpeggioOn_->setChecked(engine_ != nullptr && engine_->IsArpeggiating());
    updateEffectWidgets();
}

void KivoraWidget::onArpeggiator() {
    if (controls_ != nullptr) {
        controls_->SetArpeggiating(!engine_->IsArpeggiating());
    }
    arpeggiatingChanged();
}

void KivoraWidget::updateEffectWidgets() {
    for (arpeggiatorSettings* pane : {arpeggiator1_, arpeggiator2_}) {
        pane->setEnabled(engine_ != nullptr);
        pane->refresh();
    }
}

void KivoraWidget::onArpeggiatorView() {
    rightView_ = arpeggioView_->isChecked() ? RightView::kArpeggiator : RightView::kPCKeyCard;
    updateRightPane();
}

void KivoraWidget::showPCKeyCard() {
    rightView_ = RightView::kPCKeyCard;
    updateRightPane();
}

void KivoraWidget::updateRightPane() {
    const bool arpeggiators = rightView_ == RightView::kArpeggiator;
    arpeggioView_->setChecked(arpeggiators);
    arpeggiator1_->setVisible(arpeggiators);
    arpeggiator2_->setVisible(arpeggiators);
    composeBackground();
}
