// What a key press becomes on its way to the sink.
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/SongPlayback.h"
#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

TMIDIMessage CKivora::OnSlot(int slot, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) const {
    return {status, static_cast<std::uint8_t>(voices_.GetChannel(slot) + 1), data1, data2};
}

void CKivora::Send(TMIDIMessage message) {
    extras_->song.SendOfPlayer(message);
}

void CKivora::PlayNoteOn(std::uint8_t note, std::uint8_t velocity) {
    const Hold hold(*this);
    SendVoiceNote(TMIDIMessage::kNoteOn, note, velocity, voices_.GetSlotOfNote(note));
}

void CKivora::PlayNoteOff(std::uint8_t note) {
    const Hold hold(*this);
    SendVoiceNote(TMIDIMessage::kNoteOff, note, 0, voices_.GetSlotOfNote(note));
}

void CKivora::PlayAfterTouch(std::uint8_t note, std::uint8_t pressure) {
    const Hold hold(*this);
    SendVoiceNote(TMIDIMessage::kKeyPressure, note, pressure, voices_.GetSlotOfNote(note));
}

void CKivora::PlayPcKey(std::uint8_t note, int level) {
    const Hold hold(*this);
    PlayNoteOn(note, level == 0   ? settings_.velocityLow
                     : level == 2 ? settings_.velocityHigh
                                  : settings_.velocityNormal);
}

void CKivora::SendVoiceNote(std::uint8_t status, std::uint8_t note, std::uint8_t velocity, int slot) {
    Show(OnSlot(slot, status, note, velocity));
    if (!IsReady()) {
        return;
    }
    DeliverNote(status, note, velocity, slot);
    if (slot == VoiceSlots::kMain && voices_.dual) {
        DeliverNote(status, note, velocity, VoiceSlots::kLayer);
    }
}

void CKivora::DeliverNote(std::uint8_t status, std::uint8_t note, std::uint8_t velocity, int slot) {
    if (status == TMIDIMessage::kNoteOn) {
        extras_->NotePlayed(slot, voices_.patch[static_cast<std::size_t>(slot)]);
    }
    TMIDIMessage message = OnSlot(slot, status, voices_.Transpose(note, slot), voices_.Scale(velocity, slot));
    NK::MIDI::CArpeggiator1& arpeggiator = arpeggiators_.OfSlot(slot);
    if (arpeggiating_ && !arpeggiator.IsBypassed()) {
        CatchUpWithTicks();
        arpeggiator.Process(&message, 1, clock_.Get(), *sink_);
    }
    if (message.status != 0) {
        Send(message);
    }
}

void CKivora::HearNote(int slot, std::uint8_t note, std::uint8_t velocity) {
    const Hold hold(*this);
    EndHeardNote();
    if (IsReady()) {
        const TMIDIMessage message =
            OnSlot(slot, TMIDIMessage::kNoteOn, voices_.Transpose(note, slot), voices_.Scale(velocity, slot));
        extras_->heardNote = message;
        sink_->Queue(LibMidi::SynthEventBase::Aside(message));
    }
}

void CKivora::EndHeardNote() {
    const Hold hold(*this);
    if (const auto heard = std::exchange(extras_->heardNote, std::nullopt);
        heard && IsReady() && !extras_->song.IsNoteHeld(heard->data1, heard->channel - 1)) {
        sink_->Queue(LibMidi::SynthEventBase::Aside({TMIDIMessage::kNoteOff, heard->channel, heard->data1, 0}));
    }
}

void CKivora::SendController(std::uint8_t controller, std::uint8_t value) {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const TMIDIMessage message = OnSlot(slot, TMIDIMessage::kControlChange, controller, value);
        Send(message);
        Show(message);
    }
}

void CKivora::SetSustain(bool on) {
    SendSustain(on ? 127 : 0);
}

void CKivora::SendSustain(std::uint8_t value) {
    const Hold hold(*this);
    if (value == 0) {
        arpeggiators_.EndLatched();
    }
    if (sink_) {
        SendController(Controller::kSustain, value);
    }
}

void CKivora::AllNotesOff() {
    const Hold hold(*this);
    if (!sink_) {
        return;
    }
    arpeggiators_.Reset();
    SendController(Controller::kAllNotesOff, 0);
}

void CKivora::ResetSynth() {
    const Hold hold(*this);
    if (!sink_) {
        return;
    }
    arpeggiators_.Reset();
    extras_->song.Interrupt();
    AllNotesOff();
    StopRecording();
    const TMIDIMessage reset{TMIDIMessage::kSystemReset, 0, 0, 0};
    Send(reset);
    Show(reset);
    emit SynthSet();
    SleepAndPlayOut(100);
    SendPatches();
    SendVolumes();
    SleepAndPlayOut(50);
}

void CKivora::SleepAndPlayOut(std::uint32_t milliseconds) {
    dependencies_.sleeper.Sleep(milliseconds);
    if (sink_) {
        sink_->WaitUntilIdle(kPlayedOut);
    }
}

void CKivora::EndTimedNotes() {
    const Hold hold(*this);
    if (sink_) {
        sink_->Advance(UINT32_MAX);
    }
}

void CKivora::KeepOrder() {
    const Hold hold(*this);
    keepsOrder_ = true;
    if (sink_) {
        sink_->SetKeepsOrder(true);
    }
}

void CKivora::DiscardQueued() {
    const Hold hold(*this);
    if (sink_) {
        sink_->Clear();
    }
}

bool CKivora::SettleOutput() {
    const Hold hold(*this);
    if (!sink_ || !player_ || !player_->IsRunning()) {
        return sink_ == nullptr || sink_->WaitUntilEmpty(0);
    }
    for (int waitedMs = 0; waitedMs < kSettleLimitMs; ++waitedMs) {
        if (sink_->WaitUntilEmpty(kPlayedOut)) {
            return true;
        }
    }
    return false;
}

}  // namespace Kivora
