#include "ui/ParameterEditor.h"

#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "engine/values/VoiceSlots.h"

bool ParameterEditor::HasSecondVoice() const {
    return front_ != nullptr && (front_->GetEngine().IsDual() || front_->GetEngine().IsSplit());
}

int ParameterEditor::SecondarySlot() const {
    if (front_ == nullptr || front_->GetEngine().IsDual()) {
        return Kivora::VoiceSlots::kLayer;
    }
    return front_->GetEngine().IsSplit() ? Kivora::VoiceSlots::kBass : Kivora::VoiceSlots::kLayer;
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
    if (front_ == nullptr) {
        return;
    }
    switch (mode_) {
        case EMode::kPatch1:
            return front_->NextPatch(Kivora::VoiceSlots::kMain);
        case EMode::kPatch2:
            return front_->NextPatch(SecondarySlot());
        case EMode::kTranspose1:
            return front_->TransposeUp(Kivora::VoiceSlots::kMain);
        case EMode::kTranspose2:
            return front_->TransposeUp(SecondarySlot());
        case EMode::kVolume1:
            return front_->GetEngine().VolumeUp(Kivora::VoiceSlots::kMain);
        case EMode::kVolume2:
            return front_->GetEngine().VolumeUp(SecondarySlot());
        case EMode::kTempo:
            return front_->TempoUp();
    }
}

void ParameterEditor::StepDown() {
    if (front_ == nullptr) {
        return;
    }
    switch (mode_) {
        case EMode::kPatch1:
            return front_->PrevPatch(Kivora::VoiceSlots::kMain);
        case EMode::kPatch2:
            return front_->PrevPatch(SecondarySlot());
        case EMode::kTranspose1:
            return front_->TransposeDown(Kivora::VoiceSlots::kMain);
        case EMode::kTranspose2:
            return front_->TransposeDown(SecondarySlot());
        case EMode::kVolume1:
            return front_->GetEngine().VolumeDown(Kivora::VoiceSlots::kMain);
        case EMode::kVolume2:
            return front_->GetEngine().VolumeDown(SecondarySlot());
        case EMode::kTempo:
            return front_->TempoDown();
    }
}
