// What arrives from the input port.
#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

namespace {
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kKeyPressure = 0xA0;

/// How often who waits for the lock looks whether the port is being closed.
constexpr std::uint32_t kLookAtPortMs = 2;

/// What the keyboard ends its notes or lifts its pedal with.
bool EndsLatched(NK::MIDI::TMIDIMessage message) {
    constexpr std::uint8_t kAllSoundOff = 120;
    constexpr std::uint8_t kAllNotesOff = 123;
    return message.status == NK::MIDI::TMIDIMessage::kControlChange &&
           ((message.data1 == HeldKeys::kSustainController && message.data2 == 0) || message.data1 == kAllSoundOff ||
            message.data1 == HeldKeys::kResetController || message.data1 >= kAllNotesOff);
}
}  // namespace

bool CKivora::HoldForInput() {
    while (!lock_.TryLockFor(kLookAtPortMs)) {
        const LibMidi::MIDIInPort* port = inputPort_.load();
        if (port != nullptr && port->IsClosing()) {
            return false;
        }
    }
    BeginHold();
    return true;
}

void CKivora::OnMIDIData(const LibMidi::MIDIEvent* events, std::int32_t count) {
    NK_ASSERT_THREAD_ROLE(input);
    if (count < 1 || !HoldForInput()) {
        return;
    }
    BoundControls& controls = extras_->controls;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!controls.IsActive() || !controls.Take(events[i], inputPort_.load())) {
            ProcessInput(events[i].ToMessage());
        }
    }
    EndHold();
}

void CKivora::ProcessInput(NK::MIDI::TMIDIMessage message) {
    inputKeys_.Follow(message);
    if (extras_->pedal.FollowInput(message)) {
        return;
    }
    if (EndsLatched(message)) {
        EndLatched();
    }
    switch (message.status) {
        case kNoteOff:
        case kNoteOn:
        case kKeyPressure: {
            const bool released = message.status == kNoteOn && message.data2 == 0;
            const std::uint8_t velocity =
                message.status == kNoteOn ? extras_->velocity.Play(message.data2) : message.data2;
            SendVoiceNote(released ? kNoteOff : message.status, message.data1, velocity,
                          voices_.GetSlotOfNote(message.data1));
            return;
        }
        default:
            PlayControl(message);
    }
}

void CKivora::PlayControl(NK::MIDI::TMIDIMessage message) {
    const Hold hold(*this);
    if (IsReady()) {
        if (message.status < 0x80 || message.status > 0xEF) {
            Send(message);
        } else {
            for (int slot = 0; slot < kSlotCount; ++slot) {
                Send(OnSlot(slot, message.status, message.data1, message.data2));
            }
        }
    }
    Show(message);
}

void CKivora::OnMIDIDataLost(std::uint32_t lostCount) {
    NK_ASSERT_THREAD_ROLE(input);
    if (lostCount == 0 || !HoldForInput()) {
        return;
    }
    ReleaseInputKeys();
    EndHold();
    emit InputLost();
}

void CKivora::ReleaseInputKeys() {
    const Hold hold(*this);
    for (std::uint8_t note = 0; note < 128; ++note) {
        if (inputKeys_.IsHeld(note)) {
            SendVoiceNote(kNoteOff, note, 0, voices_.GetSlotOfNote(note));
        }
    }
    for (const std::uint8_t pedal : HeldKeys::kPedals) {
        LiftInputPedal(pedal);
    }
    inputKeys_.Clear();
    extras_->controls.ForgetPassed();
    extras_->pedal.input = 0;
}

void CKivora::LiftInputHolds() {
    const Hold hold(*this);
    LiftInputPedal(HeldKeys::kSostenutoController);
    LiftInputPedal(HeldKeys::kHold2Controller);
}

void CKivora::LiftInputPedal(std::uint8_t controller) {
    if (!sink_ || !inputKeys_.IsPedalDown(controller)) {
        return;
    }
    inputKeys_.LiftPedal(controller);
    if (controller != HeldKeys::kSustainController || !extras_->pedal.key) {
        SendController(controller, 0);
    }
}

void CKivora::RestInputController(std::uint8_t controller) {
    constexpr std::uint8_t kModulation = 1;
    constexpr std::uint8_t kVolume = 7;
    constexpr std::uint8_t kExpression = 11;
    constexpr std::uint8_t kPortamento = 65;
    constexpr std::uint8_t kSoftPedal = 67;
    constexpr std::uint8_t kLegato = 68;
    const Hold hold(*this);
    if (!sink_) {
        return;
    }
    switch (controller) {
        case kModulation:
        case kPortamento:
        case kSoftPedal:
        case kLegato:
            SendController(controller, 0);
            break;
        case kExpression:
            SendController(controller, 127);
            break;
        case kVolume:
            SendVolumes();
            break;
        default:
            break;
    }
}

HeldKeys CKivora::GetInputKeys() const {
    const CLockGuard guard(lock_);
    return inputKeys_;
}

std::uint32_t CKivora::GetInputLostCount() const {
    const CLockGuard guard(lock_);
    const LibMidi::MIDIInPort* port = inputPort_.load();
    return port == nullptr ? 0 : port->GetLostCount();
}

}  // namespace Kivora
