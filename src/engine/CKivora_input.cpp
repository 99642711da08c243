// What arrives from the input port.
#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "midi/MIDIControllers.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

/// How often who waits for the lock looks whether the port is being closed.
constexpr std::uint32_t kLookAtPortMs = 2;

/// Where a controller stands that nobody has moved (MIDI 1.0, table III; General MIDI 2 for the levels of effects);
/// nothing for those that mean nothing by themselves.
std::optional<std::uint8_t> RestOf(std::uint8_t controller) {
    constexpr std::uint8_t kFirstCentred = Controller::kFirstSound + 1;  // the variation has none
    constexpr std::uint8_t kLastCentred = Controller::kLastSound - 1;
    constexpr std::uint8_t kCentre = 64;
    constexpr std::uint8_t kSomeReverb = 40;
    constexpr std::uint8_t kFull = 127;
    switch (controller) {
        case Controller::kModulation:
        case Controller::kPortamento:
        case Controller::kSoftPedal:
        case Controller::kLegato:
        case Controller::kChorus:
            return std::uint8_t{0};
        case Controller::kBalance:
        case Controller::kPan:
            return kCentre;
        case Controller::kReverb:
            return kSomeReverb;
        case Controller::kVolume:
        case Controller::kExpression:
            return kFull;
        default:
            return controller >= kFirstCentred && controller <= kLastCentred ? std::optional(kCentre) : std::nullopt;
    }
}

/// What the keyboard ends its notes or lifts its pedal with.
bool EndsLatched(TMIDIMessage message) {
    return message.status == TMIDIMessage::kControlChange &&
           ((message.data1 == Controller::kSustain && message.data2 == 0) ||
            message.data1 == Controller::kAllSoundOff || message.data1 == Controller::kResetControllers ||
            message.data1 >= Controller::kAllNotesOff);
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
    HeardInput& heard = extras_->heard;
    for (std::int32_t i = 0; i < count; ++i) {
        const bool isTaken = controls.IsActive() && controls.Take(events[i], inputPort_.load(), heard.Holds(events[i]));
        if (isTaken) {
            if (heard.TakeMoved(events[i])) {
                RestController(events[i].data1);  // by which it has moved the voices before
            }
        } else if (const std::optional<TMIDIMessage> message = heard.Follow(events[i])) {
            ProcessInput(*message);
        }
    }
    EndHold();
}

void CKivora::ProcessInput(TMIDIMessage message) {
    inputKeys_.Follow(message);
    if (extras_->pedal.FollowInput(message)) {
        return;
    }
    if (EndsLatched(message)) {
        arpeggiators_.EndLatched();
    }
    switch (message.status) {
        case TMIDIMessage::kNoteOff:
        case TMIDIMessage::kNoteOn:
        case TMIDIMessage::kKeyPressure: {
            const bool released = message.status == TMIDIMessage::kNoteOn && message.data2 == 0;
            const std::uint8_t velocity =
                message.status == TMIDIMessage::kNoteOn ? extras_->velocity.Play(message.data2) : message.data2;
            SendVoiceNote(released ? TMIDIMessage::kNoteOff : message.status, message.data1, velocity,
                          voices_.GetSlotOfNote(message.data1));
            return;
        }
        default:
            PlayControl(message);
    }
}

void CKivora::PlayControl(TMIDIMessage message) {
    const Hold hold(*this);
    if (IsReady()) {
        if (!TMIDIMessage::IsOfChannel(message.status)) {
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
            SendVoiceNote(TMIDIMessage::kNoteOff, note, 0, voices_.GetSlotOfNote(note));
        }
    }
    for (const std::uint8_t pedal : HeldKeys::kPedals) {
        LiftInputPedal(pedal);
    }
    inputKeys_.Clear();
    extras_->heard.ForgetHeld();
    extras_->controls.LetGo();
    extras_->pedal.input = 0;
}

void CKivora::LiftInputHolds() {
    const Hold hold(*this);
    LiftInputPedal(Controller::kSostenuto);
    LiftInputPedal(Controller::kHold2);
}

void CKivora::LiftInputPedal(std::uint8_t controller) {
    if (!sink_ || !inputKeys_.IsPedalDown(controller)) {
        return;
    }
    inputKeys_.LiftPedal(controller);
    extras_->heard.ForgetPedal(controller);
    if (controller != Controller::kSustain || !extras_->pedal.IsHeldByPanel()) {
        SendController(controller, 0);
    }
}

void CKivora::RestController(std::uint8_t controller) {
    const std::optional<std::uint8_t> rest = RestOf(controller);
    if (!sink_ || !rest) {
        return;
    }
    if (controller == Controller::kVolume) {
        SendVolumes();
    } else {
        SendController(controller, *rest);
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
