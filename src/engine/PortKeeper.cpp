#include "engine/PortKeeper.h"

#include <algorithm>
#include <utility>

#include "libmidi/PortNames.h"
#include "libmidi/SynthSettings.h"
#include "nk/nk_exception.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

using LibMidi::DeviceState;

namespace {

constexpr int kLongestPause = 8;  // looks
constexpr int kLongCalm = 5;

/// False also for what throws: then it is tried again, or the user does.
template <class Action>
bool Succeeds(const Action& action) {
    try {
        return action();
    } catch (const NK::CException&) {
        return false;
    }
}

}  // namespace

bool PortKeeper::Pauses::IsOver() {
    calm_ = 0;
    left_ = std::max(left_ - 1, 0);
    return left_ == 0;
}

void PortKeeper::Pauses::NoteAttempt() {
    left_ = next_;
    next_ = std::min(next_ * 2, kLongestPause);
}

void PortKeeper::Pauses::NoteCalm() {
    if (++calm_ >= kLongCalm) {
        *this = Pauses();
    }
}

void PortKeeper::Look() {
    NK_ASSERT_THREAD_ROLE(gui);
    const CKivora& engine = controls_.GetEngine();
    const OutputState outputBefore = GetOutputState();
    const bool inputLostBefore = engine.IsInputLost();
    LookAtOutput();
    LookAtInput();
    controls_.engine_.LookAtClick();
    if (GetOutputState() != outputBefore || engine.IsInputLost() != inputLostBefore) {
        emit StateChanged();
    }
}

void PortKeeper::FollowDevices() {
    NK_ASSERT_THREAD_ROLE(gui);
    CKivora& engine = controls_.engine_;
    const auto output = [&] { return std::pair(GetOutputState(), engine.GetOutputPortName()); };
    const auto outputBefore = output();
    const bool changed = engine.UpdatePorts();
    if (output() != outputBefore) {
        emit StateChanged();
    }
    Look();
    const bool isOpen = engine.IsInputLost() || engine.GetInputPortIndex() >= 0;
    if (!isOpen && Succeeds([&] { return engine.SetInputPortByName(engine.GetInputPortName()); })) {
        emit InputReturned();
    }
    if (changed) {
        emit PortsChanged();
    }
}

void PortKeeper::LookAtOutput() {
    CKivora& engine = controls_.engine_;
    const DeviceState state = engine.LookAtOutput();
    isStalled_ = state == DeviceState::kStalled;
    if (engine.IsOutputReady() && !engine.IsOutputLost()) {
        outputPauses_.NoteCalm();
        return;
    }
    const bool isThere = state == DeviceState::kBack || (state == DeviceState::kElsewhere && !engine.IsRecording());
    if (!isThere || !outputPauses_.IsOver()) {
        return;
    }
    outputPauses_.NoteAttempt();
    if (state == DeviceState::kBack && engine.IsOutputLost()) {
        controls_.ReopenOutput();
    } else {
        const int index = engine.GetOutputPortNames().Find(engine.GetOutputPortName());
        Succeeds([&] { return controls_.SetOutputPortByIndex(index >= 0 ? index : engine.FindDefaultOutputPort()); });
    }
}

void PortKeeper::LookAtInput() {
    CKivora& engine = controls_.engine_;
    const DeviceState state = engine.LookAtInput();
    if (!engine.IsInputLost()) {
        inputPauses_.NoteCalm();
        return;
    }
    const bool isThere = state == DeviceState::kBack || (state == DeviceState::kElsewhere && engine.IsRescanQuiet());
    if (!isThere || !inputPauses_.IsOver()) {
        return;
    }
    inputPauses_.NoteAttempt();
    const bool returned = state == DeviceState::kBack ? engine.ReopenInputPort() : Succeeds([&] {
        engine.RescanPorts();  // what plays stays as it is, so nothing is silenced before
        return engine.GetInputPortIndex() >= 0;
    });
    if (returned) {
        emit InputReturned();
    }
}

PortKeeper::OutputState PortKeeper::GetOutputState() const {
    const CKivora& engine = controls_.GetEngine();
    if (engine.IsOutputLost()) {
        return OutputState::kLost;
    }
    const NK::CStringArray names = engine.GetOutputPortNames();
    const NK::CString name = engine.GetOutputPortName();
    const LibMidi::SynthControl* const synth = engine.GetSynth();
    const bool lacksFont = synth != nullptr && names.Find(synth->GetPortName()) < 0;
    if (engine.IsOutputReady()) {
        if (lacksFont && LibMidi::HandsOn(name.ToUtf8())) {
            return OutputState::kHandsOn;
        }
        return isStalled_ ? OutputState::kStalled : OutputState::kPlays;
    }
    if (names.GetSize() == 0) {
        return OutputState::kNone;
    }
    if (lacksFont && name == synth->GetPortName()) {
        return OutputState::kNoFont;
    }
    return !name.IsEmpty() && names.Find(name) < 0 ? OutputState::kMissing : OutputState::kFailed;
}

bool PortKeeper::IsOutputBuiltIn() const {
    const CKivora& engine = controls_.GetEngine();
    const LibMidi::SynthControl* const synth = engine.GetSynth();
    if (synth == nullptr) {
        return false;
    }
    const NK::CString name = engine.GetOutputPortName();
    return name.IsEmpty() || name == synth->GetPortName();
}

}  // namespace Kivora
