// The settings of the voices and what they send.
#include <algorithm>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {
constexpr int kVolumeStep = 3;

std::uint8_t ClampVelocity(int velocity) {
    return static_cast<std::uint8_t>(std::clamp(velocity, 1, 127));
}

template <class Settings>
auto& OfSlot(Settings& settings, int slot) {
    VoiceSlots::CheckSlot(slot);
    return settings[static_cast<std::size_t>(slot)];
}
}  // namespace

void CKivora::SetDual(bool on) {
    const Hold hold(*this);
    voices_.dual = on;
    AllNotesOff();
}

void CKivora::SetSplit(bool on) {
    const Hold hold(*this);
    voices_.split = on;
    AllNotesOff();
}

void CKivora::SetSplitPoint(int note) {
    const Hold hold(*this);
    const int wanted = std::clamp(note, VoiceSlots::kLowestSplit, VoiceSlots::kHighestSplit);
    if (wanted == voices_.splitPoint) {
        return;
    }
    voices_.splitPoint = wanted;
    if (voices_.split) {
        AllNotesOff();
    }
    emit VoiceSettingsChanged();
}

void CKivora::SetArpeggiating(bool on) {
    const Hold hold(*this);
    if (on == arpeggiating_) {
        return;
    }
    arpeggiating_ = on;
    AllNotesOff();
    emit ArpeggiatingChanged();
}

void CKivora::SetPatch(int patch, int slot) {
    const Hold hold(*this);
    OfSlot(voices_.patch, slot) = patch;
    SendPatches();
}

void CKivora::NextPatch(int slot) {
    const Hold hold(*this);
    SetPatch(VoiceSlots::GetNextPatch(OfSlot(voices_.patch, slot)), slot);
}

void CKivora::PrevPatch(int slot) {
    const Hold hold(*this);
    SetPatch(VoiceSlots::GetPreviousPatch(OfSlot(voices_.patch, slot)), slot);
}

void CKivora::VolumeUp(int slot) {
    const Hold hold(*this);
    voices_.StepVolume(slot, kVolumeStep);
    SendVolume(slot);
    emit VoiceSettingsChanged();
}

void CKivora::VolumeDown(int slot) {
    const Hold hold(*this);
    voices_.StepVolume(slot, -kVolumeStep);
    SendVolume(slot);
    emit VoiceSettingsChanged();
}

void CKivora::SetVolume(int volume, int slot) {
    const Hold hold(*this);
    const int by = std::clamp(volume, 1, 127) - OfSlot(voices_.volume, slot);
    if (by != 0) {
        voices_.StepVolume(slot, by);
        SendVolume(slot);
        emit VoiceSettingsChanged();
    }
}

void CKivora::TransposeUp(int slot) {
    const Hold hold(*this);
    VoiceSlots::CheckSlot(slot);
    AllNotesOff();
    voices_.StepTranspose(slot, 1);
    emit VoiceSettingsChanged();
}

void CKivora::TransposeDown(int slot) {
    const Hold hold(*this);
    VoiceSlots::CheckSlot(slot);
    AllNotesOff();
    voices_.StepTranspose(slot, -1);
    emit VoiceSettingsChanged();
}

void CKivora::SetVelocityLow(int velocity) {
    const Hold hold(*this);
    settings_.velocityLow = ClampVelocity(velocity);
}

void CKivora::SetVelocityNormal(int velocity) {
    const Hold hold(*this);
    settings_.velocityNormal = ClampVelocity(velocity);
}

void CKivora::SetVelocityHigh(int velocity) {
    const Hold hold(*this);
    settings_.velocityHigh = ClampVelocity(velocity);
}

void CKivora::SendPatch(int slot) {
    const int patch = OfSlot(voices_.patch, slot);
    const TMIDIMessage message =
        OnSlot(slot, TMIDIMessage::kProgramChange,
               VoiceSlots::IsPercussion(patch) ? std::uint8_t{0} : TMIDIMessage::DataOf(patch), 0);
    Send(message);
    Show(message);
}

void CKivora::SendPatches() {
    const Hold hold(*this);
    if (!sink_) {
        return;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        SendPatch(slot);
    }
    emit PatchChanged();
}

void CKivora::SendVolume(int slot) {
    if (!IsReady()) {
        return;
    }
    const TMIDIMessage message = OnSlot(slot, TMIDIMessage::kControlChange, Controller::kVolume,
                                        static_cast<std::uint8_t>(OfSlot(voices_.volume, slot)));
    Send(message);
    Show(message);
}

void CKivora::SendVolumes() {
    const Hold hold(*this);
    for (int slot = 0; slot < kSlotCount; ++slot) {
        SendVolume(slot);
    }
    SendBendRange();
}

void CKivora::SendBendRange() {
    const Hold hold(*this);
    const BendRange& range = extras_->bendRange;
    if (!IsReady() || !range.IsTold()) {
        return;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        for (const auto& [number, value] : range.GetControllers()) {
            Send(OnSlot(slot, TMIDIMessage::kControlChange, number, value));
        }
    }
}

int CKivora::GetPatch(int slot) const {
    const CLockGuard guard(lock_);
    return OfSlot(voices_.patch, slot);
}

int CKivora::GetTranspose(int slot) const {
    const CLockGuard guard(lock_);
    return OfSlot(voices_.transpose, slot);
}

int CKivora::GetVelocityPercent(int slot) const {
    const CLockGuard guard(lock_);
    return OfSlot(voices_.velocityPercent, slot);
}

int CKivora::GetVolume(int slot) const {
    const CLockGuard guard(lock_);
    return OfSlot(voices_.volume, slot);
}

int CKivora::VoiceChannel(int slot) const {
    const CLockGuard guard(lock_);
    return voices_.GetChannel(slot);
}

bool CKivora::IsDual() const {
    const CLockGuard guard(lock_);
    return voices_.dual;
}

bool CKivora::IsSplit() const {
    const CLockGuard guard(lock_);
    return voices_.split;
}

int CKivora::GetSplitPoint() const {
    const CLockGuard guard(lock_);
    return voices_.splitPoint;
}

bool CKivora::IsArpeggiating() const {
    const CLockGuard guard(lock_);
    return arpeggiating_;
}

std::uint8_t CKivora::GetVelocityLow() const {
    const CLockGuard guard(lock_);
    return settings_.velocityLow;
}

std::uint8_t CKivora::GetVelocityNormal() const {
    const CLockGuard guard(lock_);
    return settings_.velocityNormal;
}

std::uint8_t CKivora::GetVelocityHigh() const {
    const CLockGuard guard(lock_);
    return settings_.velocityHigh;
}

}  // namespace Kivora
