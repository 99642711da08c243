#include "ui/ParameterEditor.h"

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/values/VoiceSlots.h"

bool ParameterEditor::HasSecondVoice() const {
    return controls_ != nullptr && (controls_->GetEngine().IsDual() || controls_->GetEngine().IsSplit());
}

int ParameterEditor::SecondarySlot() const {
    if (controls_ == nullptr || controls_->GetEngine().IsDual()) {
        return Kivora::VoiceSlots::kLayer;
    }
    return controls_->GetEngine().IsSplit() ? Kivora::VoiceSlots::kBass : Kivora::VoiceSlots::kLayer;
}

void ParameterEditor::LeaveMissingVoice() {
    if (HasSecondVoice()) {
        return;
    }
    switch (mode_) {
        case EMode::kPatch2:
            mode_ = EMode::kPatch1;
            break;
        case EMode::kTranspose2:
            mode_ = EMode::kTranspose1;
            break;
        case EMode::kVolume2:
            mode_ = EMode::kVolume1;
            break;
        default:
            break;
    }
}

void ParameterEditor::StepUp() {
    if (controls_ == nullptr) {
        return;
    }
    switch (mode_) {
        case EMode::kPatch1:
            return controls_->NextPatch(Kivora::VoiceSlots::kMain);
        case EMode::kPatch2:
            return controls_->NextPatch(SecondarySlot());
        case EMode::kTranspose1:
            return controls_->TransposeUp(Kivora::VoiceSlots::kMain);
        case EMode::kTranspose2:
            return controls_->TransposeUp(SecondarySlot());
        case EMode::kVolume1:
            return controls_->VolumeUp(Kivora::VoiceSlots::kMain);
        case EMode::kVolume2:
            return controls_->VolumeUp(SecondarySlot());
        case EMode::kTempo:
            return controls_->TempoUp();
    }
}

void ParameterEditor::StepDown() {
    if (controls_ == nullptr) {
        return;
    }
    switch (mode_) {
        case EMode::kPatch1:
            return controls_->PrevPatch(Kivora::VoiceSlots::kMain);
        case EMode::kPatch2:
            return controls_->PrevPatch(SecondarySlot());
        case EMode::kTranspose1:
            return controls_->TransposeDown(Kivora::VoiceSlots::kMain);
        case EMode::kTranspose2:
            return controls_->TransposeDown(SecondarySlot());
        case EMode::kVolume1:
            return controls_->VolumeDown(Kivora::VoiceSlots::kMain);
        case EMode::kVolume2:
            return controls_->VolumeDown(SecondarySlot());
        case EMode::kTempo:
            return controls_->TempoDown();
    }
}
