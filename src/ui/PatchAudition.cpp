#include "ui/PatchAudition.h"

#include <algorithm>
#include <QTimerEvent>
#include <utility>

#include "engine/EngineFront.h"
#include "engine/values/VoiceSlots.h"
#include "midi/MIDINotes.h"

namespace {
constexpr int kNoteMs = 500;
constexpr int kBassNote = 43;
}  // namespace

PatchAudition::PatchAudition(Kivora::EngineFront& front, int slot)
    : front_(front), slot_(slot), patch_(front.GetEngine().GetPatch(slot)) {
}

PatchAudition::~PatchAudition() {
    endNote();
}

void PatchAudition::hear(int patch) {
    Kivora::CKivora& engine = front_.GetEngine();
    if (engine.IsRecording()) {
        return;
    }
    endNote();
    front_.SetPatch(patch, slot_);
    if (!engine.IsArpeggiating()) {
        note_ = noteOfVoice();
        engine.PlayNoteOn(*note_, engine.GetVelocityNormal());
        end_.start(kNoteMs, this);
    }
}

void PatchAudition::takeBack() {
    endNote();
    if (front_.GetEngine().GetPatch(slot_) != patch_) {
        front_.SetPatch(patch_, slot_);
    }
}

std::uint8_t PatchAudition::noteOfVoice() const {
    const Kivora::CKivora& engine = front_.GetEngine();
    const int split = engine.IsSplit() ? engine.GetSplitPoint() : 0;
    return static_cast<std::uint8_t>(slot_ == Kivora::VoiceSlots::kBass ? std::min(kBassNote, split - 1)
                                                                        : std::max(int{NK::MIDI::kMiddleC}, split));
}

void PatchAudition::endNote() {
    end_.stop();
    if (const auto note = std::exchange(note_, std::nullopt)) {
        front_.GetEngine().PlayNoteOff(*note);
    }
}

void PatchAudition::timerEvent(QTimerEvent* event) {
    if (event->timerId() == end_.timerId()) {
        endNote();
    }
}
