// Voice modes, patches, and the parameter that the value keys change.
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/values/VoiceSlots.h"
#include "QtWidgets/piano/QGMPatchMenu.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QClickableLabel.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelKey.h"
#include "ui/PatchAudition.h"
#include "ui/PatchTexts.h"
#include "ui/SplitMark.h"

using EMode = ParameterEditor::EMode;

namespace {

constexpr int kBlinkMs = 100;
// What the keys of the piano shine in while they sound.
constexpr QColor kMainLight(0x2F, 0xB5, 0x6E);
constexpr QColor kSecondLight(0xE0, 0x9A, 0x38);

/// Figures on the main display have a true minus sign.
QString Figure(int value) {
    return value < 0 ? QString(QChar(0x2212)) + QString::number(-value) : QString::number(value);
}

}  // namespace

void KivoraWidget::setEditMode(EMode mode) {
    editor_.SetMode(mode);
    updateEditMode();
}

void KivoraWidget::patch1Clicked() {
    setEditMode(EMode::kPatch1);
}

void KivoraWidget::patch2Clicked() {
    setEditMode(EMode::kPatch2);
}

void KivoraWidget::patch1NameClicked() {
    setEditMode(EMode::kPatch1);
}

void KivoraWidget::patch2NameClicked() {
    if (editor_.HasSecondVoice()) {
        setEditMode(EMode::kPatch2);
    }
}

void KivoraWidget::transpose1Clicked() {
    setEditMode(EMode::kTranspose1);
    updateKeyboardKeyLayout();
}

void KivoraWidget::transpose2Clicked() {
    setEditMode(EMode::kTranspose2);
    updateKeyboardKeyLayout();
}

void KivoraWidget::volume1Clicked() {
    setEditMode(EMode::kVolume1);
}

void KivoraWidget::volume2Clicked() {
    setEditMode(EMode::kVolume2);
}

void KivoraWidget::tempoClicked() {
    setEditMode(EMode::kTempo);
}

void KivoraWidget::updateEditMode() {
    const bool second = editor_.HasSecondVoice();
    if (engine_ != nullptr) {
        editor_.LeaveMissingVoice();
    }
    for (PanelKey* button : {patch2_, transpose2_, volume2_}) {
        button->setEnabled(second);
    }
    display_->nameArea(1)->setEnabled(second);
    const struct {
        PanelKey* button;
        EMode mode;
    } keys[] = {{patch1_, EMode::kPatch1},
                {patch2_, EMode::kPatch2},
                {transpose1_, EMode::kTranspose1},
                {transpose2_, EMode::kTranspose2},
                {volume1_, EMode::kVolume1},
                {volume2_, EMode::kVolume2},
                {tempo_, EMode::kTempo}};
    for (const auto& key : keys) {
        key.button->setChecked(key.mode == editor_.GetMode());
    }
    updateVoiceParameters();
}

int KivoraWidget::shownSecondarySlot() const {
    if (engine_ == nullptr) {
        return -1;
    }
    return engine_->IsSplit() ? Kivora::VoiceSlots::kBass : engine_->IsDual() ? Kivora::VoiceSlots::kLayer : -1;
}

void KivoraWidget::updateVoiceParameters() {
    const int secondary = shownSecondarySlot();
    const auto patch = [this](int slot) {
        if (engine_ == nullptr) {
            return PatchTexts::kNoEngine;
        }
        return slot < 0 ? PatchTexts::kNoSecondVoice : engine_->GetPatch(slot);
    };
    const auto number = [this](int slot, int (Kivora::CKivora::*get)(int) const) {
        return engine_ == nullptr || slot < 0 ? QString() : QString::number((engine_->*get)(slot));
    };
    ShowFigure(patch1_, PatchTexts::Label(patch(Kivora::VoiceSlots::kMain)));
    ShowFigure(patch2_, PatchTexts::Label(patch(secondary)));
    ShowFigure(transpose1_, number(Kivora::VoiceSlots::kMain, &Kivora::CKivora::GetTranspose));
    ShowFigure(transpose2_, number(secondary, &Kivora::CKivora::GetTranspose));
    ShowFigure(volume1_, number(Kivora::VoiceSlots::kMain, &Kivora::CKivora::GetVolume));
    ShowFigure(volume2_, number(secondary, &Kivora::CKivora::GetVolume));
    patchChanged();
}

void KivoraWidget::patchChanged() {
    const int secondary = shownSecondarySlot();
    const auto voiceOf = [this](int slot) {
        MainDisplay::Voice voice;
        if (engine_ == nullptr) {
            voice.name = PatchTexts::ErrorName();
        } else if (slot < 0) {
            voice.present = false;
        } else {
            voice.name = PatchTexts::NameOf(engine_->GetPatch(slot), engine_->GetTranslatePatchNames());
            voice.transposition = Figure(engine_->GetTranspose(slot));
            voice.volume = Figure(engine_->GetVolume(slot));
        }
        return voice;
    };
    display_->setVoice(0, voiceOf(Kivora::VoiceSlots::kMain));
    display_->setVoice(1, voiceOf(secondary));
    if (engine_ != nullptr) {
        ShowFigure(patch1_, PatchTexts::Label(engine_->GetPatch(Kivora::VoiceSlots::kMain)));
        ShowFigure(patch2_,
                   PatchTexts::Label(secondary < 0 ? PatchTexts::kNoSecondVoice : engine_->GetPatch(secondary)));
    }
}

void KivoraWidget::stepUpClicked() {
    plus_->blink(kBlinkMs);
    editor_.StepUp();
}

void KivoraWidget::stepDownClicked() {
    minus_->blink(kBlinkMs);
    editor_.StepDown();
}

void KivoraWidget::setVoiceMode(bool dual, bool split) {
    if (controls_ != nullptr) {
        controls_->SetVoiceMode(dual, split);
        piano_->ReleaseAll();
        updateVoiceModeButtons();
        patchChanged();
    } else {
        updateVoiceModeButtons();
    }
}

void KivoraWidget::splitMoved(int note) {
    if (controls_ != nullptr) {
        controls_->SetSplitPoint(note);
        piano_->ReleaseAll();
    }
}

void KivoraWidget::vm1Clicked() {
    setVoiceMode(false, false);
}

void KivoraWidget::vm2Clicked() {
    setVoiceMode(true, false);
}

void KivoraWidget::vmSClicked() {
    setVoiceMode(false, true);
    offerOctaveShift();
}

void KivoraWidget::updateVoiceModeButtons() {
    const bool dual = engine_ != nullptr && engine_->IsDual();
    const bool split = engine_ != nullptr && engine_->IsSplit();
    single_->setChecked(!dual && !split);
    dual_->setChecked(dual && !split);
    split_->setChecked(split);
    display_->setMode(split ? tr("SPLIT") : dual ? tr("DUAL") : tr("SINGLE"));
    updateEditMode();
    updateKeyboardKeyLayout();
}

void KivoraWidget::updateKeyboardKeyLayout() {
    const bool split = engine_ != nullptr && engine_->IsSplit();
    const bool dual = engine_ != nullptr && engine_->IsDual();
    if (!split) {
        withdrawOctaveShift();
    }
    const int splitPoint = engine_ != nullptr ? engine_->GetSplitPoint() : 0;
    const auto mainPart = static_cast<BYTE>(split ? splitPoint : 0);
    const bool isMoved = piano_->splitMainPartStartKey() != mainPart;
    piano_->setSplitMainPartStartKey(mainPart);
    piano_->setLights({kMainLight, dual ? kSecondLight : QColor(), kSecondLight});
    hintBar_->update();
    if (split) {
        splitMark_->setColors(kMainLight, kSecondLight);
        splitMark_->setValue(splitPoint);
    }
    if (split != splitMark_->isVisibleTo(this)) {
        if (splitMark_->hasFocus()) {
            setFocus(Qt::OtherFocusReason);  // hidden, it would go to the piano, which ends what the computer keys hold
        }
        splitMark_->setVisible(split);
        composeBackground();  // it may frame what is there
    }
    if (isBassOnComputerKeys()) {
        withdrawOctaveShift();
    } else if (isMoved && octaveOfferTimer_.isActive()) {
        offerOctaveShift();
    }
}

void KivoraWidget::showPatchMenu(int slot, const QWidget* widget, QPoint position) {
    if (engine_ == nullptr) {
        return;
    }
    releaseHeld();
    const int program = engine_->GetPatch(slot);
    QGMPatchMenu menu(slot, program, this);
    menu.setTranslated(engine_->GetTranslatePatchNames());
    menu.setFamilies(PatchTexts::Families(engine_->GetTranslatePatchNames()));
    menu.setSearchTexts(PatchTexts::SearchTexts());
    engine_->WithExtras([&menu](const Kivora::EngineExtras& extras) {
        menu.setLastUsed(extras.patches.GetLastUsed());
        menu.setFavorites(extras.patches.GetFavorites());
    });
    connect(&menu, &QGMPatchMenu::favoriteChanged, this,
            [this](int favorite, bool on) { controls_->SetFavoritePatch(favorite, on); });
    PatchAudition audition(*controls_, slot);
    connect(&menu, &QGMPatchMenu::programAuditioned, &audition, &PatchAudition::hear);
    menu.setAvoided({display_->mapToGlobal(QPoint()), display_->size()});
    const std::optional<int> choice = menu.choose(widget->mapToGlobal(position));
    if (!choice) {
        audition.takeBack();
        return;
    }
    if (*choice != engine_->GetPatch(slot)) {
        controls_->SetPatch(*choice, slot);
    }
    controls_->NotePatch(*choice);
}

void KivoraWidget::patch1Menu(QPoint position) {
    showPatchMenu(Kivora::VoiceSlots::kMain, display_->nameArea(0), position);
}

void KivoraWidget::patch1ButtonMenu(QPoint position) {
    showPatchMenu(Kivora::VoiceSlots::kMain, patch1_, position);
}

void KivoraWidget::patch2Menu(QPoint position) {
    if (editor_.HasSecondVoice()) {
        showPatchMenu(editor_.SecondarySlot(), display_->nameArea(1), position);
    }
}

void KivoraWidget::patch2ButtonMenu(QPoint position) {
    if (editor_.HasSecondVoice()) {
        showPatchMenu(editor_.SecondarySlot(), patch2_, position);
    }
}
