#include "ui/PatchAudition.h"

#include <algorithm>
#include <QTimerEvent>

#include "engine/EngineControls.h"
#include "engine/values/VoiceSlots.h"
#include "midi/MIDINotes.h"

namespace {
constexpr int kNoteMs = 500;
constexpr int kBassNote = 43;
}  // namespace

PatchAudition::PatchAudition(Kivora::EngineControls& controls, int slot)
    : controls_(controls), slot_(slot), patch_(controls.GetEngine().GetPatch(slot)) {
}

PatchAudition::~PatchAudition() {
    endNote();
}

void PatchAudition::hear(int patch) {
    const Kivora::CKivora& engine = controls_.GetEngine();
    if (engine.IsRecording()) {
        return;
    }
    endNote();
    controls_.SetPatch(patch, slot_);
    if (!engine.IsArpeggiating()) {
        controls_.HearNote(slot_, noteOfVoice(), engine.GetVelocityNormal());
        end_.start(kNoteMs, this);
    }
}

void PatchAudition::takeBack() {
    endNote();
    if (controls_.GetEngine().GetPatch(slot_) != patch_) {
        controls_.SetPatch(patch_, slot_);
    }
}

std::uint8_t PatchAudition::noteOfVoice() const {
    const Kivora::CKivora& engine = controls_.GetEngine();
    const int split = engine.IsSplit() ? engine.GetSplitPoint() : 0;
    return static_cast<std::uint8_t>(slot_ == Kivora::VoiceSlots::kBass ? std::min(kBassNote, split - 1)
                                                                        : std::max(int{NK::MIDI::kMiddleC}, split));
}

void PatchAudition::endNote() {
    end_.stop();
    controls_.EndHeardNote();
}

void PatchAudition::timerEvent(QTimerEvent* event) {
    if (event->timerId() == end_.timerId()) {
        endNote();
    }
}
