// Devices that are lost and come back while their ports are open.
#include "engine/CKivora.h"
#include "engine/ClickOutput.h"
#include "engine/EngineExtras.h"
#include "engine/SongPlayback.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

using LibMidi::DeviceState;

namespace {
bool IsGone(DeviceState state) {
    return state == DeviceState::kLost || state == DeviceState::kBack || state == DeviceState::kElsewhere;
}
}  // namespace

void CKivora::LoseOutput(bool isGone) {
    output_.Lose();
    arpeggiators_.EndLatched();  // else it would begin by itself when the output comes back
    sink_->LoseOutput();
    extras_->song.Lose();
    sink_->Clear();
    // A device that lives on after a failed write may take what ends its notes; a recording that goes on later needs
    // that in any case.
    output_.Strand(isGone, sink_->IsCapturing());
}

DeviceState CKivora::LookAtOutput() {
    NK_ASSERT_THREAD_ROLE(gui);
    LibMidi::MIDIOutPort* const port = FindWatchedOutput();
    // Without the lock: what it takes is the system's matter, and only this thread closes ports.
    DeviceState state = port != nullptr ? port->LookAtDevice() : DeviceState::kWorks;
    bool lost = false;
    {
        const Hold hold(*this);
        if (!IsReady()) {
            return state;
        }
        lost = !output_.IsLost() && (IsGone(state) || player_->HasWriteFailed());
        if (lost) {
            player_->Stop();
            LoseOutput(IsGone(state));
        }
        if (output_.IsLost() && !IsGone(state)) {
            state = DeviceState::kBack;
        }
    }
    if (lost) {
        emit OutputLost();
    }
    return state;
}

LibMidi::MIDIOutPort* CKivora::FindWantedOutput() {
    if (output_.GetPort() != nullptr) {
        return output_.GetPort();
    }
    const NK::CStringArray& names = ports_.GetOutputNames();
    const int index = output_.GetName().IsEmpty() ? FindDefaultOutputPort() : names.Find(output_.GetName());
    return index >= 0 ? ports_.FindOutput(names[static_cast<std::uint32_t>(index)]) : nullptr;
}

LibMidi::MIDIOutPort* CKivora::FindWatchedOutput() {
    const Hold hold(*this);
    LibMidi::MIDIOutPort* const port = FindWantedOutput();
    return IsReady() || ports_.StaysThroughRescan(port) ? port : nullptr;
}

DeviceState CKivora::LookAtInput() {
    NK_ASSERT_THREAD_ROLE(gui);
    LibMidi::MIDIInPort* const port = inputPort_.load();
    const DeviceState state = port != nullptr ? port->LookAtDevice() : DeviceState::kElsewhere;  // without the lock too
    const Hold hold(*this);
    if (port == nullptr) {
        return input_.IsLost() ? state : DeviceState::kWorks;  // where it is, only a re-scan finds
    }
    const bool lost = IsGone(state);
    if (lost && !input_.IsLost()) {
        ReleaseInputKeys();
    }
    input_.SetLost(lost);
    return state;
}

bool CKivora::ReopenOutputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!IsReady() || !output_.IsLost()) {
        return false;
    }
    player_->Stop();
    output_.Leave(*player_);
    sink_->Clear();
    if (!output_.Return(*player_)) {
        sink_->SetAccepting(false);
        return false;
    }
    sink_->SetAccepting(true);
    EndStrandedNotes();
    extras_->song.Rest();
    SendPatches();
    SendVolumes();
    SettleOutput();
    return true;
}

bool CKivora::ReopenInputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (input_.GetPort() == nullptr || !input_.IsLost()) {
        return false;
    }
    ReleaseInputKeys();
    return input_.Reopen();
}

bool CKivora::IsInputLost() const {
    const CLockGuard guard(lock_);
    return input_.IsLost();
}

bool CKivora::IsRescanQuiet() const {
    const CLockGuard guard(lock_);
    const LibMidi::MIDIOutPort* const port = output_.GetPort();
    return ports_.GetFactory() != nullptr && !IsRecording() &&
           (port == nullptr || (!output_.IsLost() && ports_.StaysThroughRescan(port)));
}

bool CKivora::HasOutputFailed() const {
    const CLockGuard guard(lock_);
    return IsReady() && !output_.IsLost() && player_->HasWriteFailed();
}

bool CKivora::HasStrandedNotes() const {
    const CLockGuard guard(lock_);
    return output_.HasStranded();
}

void CKivora::EndStrandedNotes() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    LibMidi::MIDIOutPort* const port = output_.FindStranded(ports_);
    if (port == nullptr || (port == output_.GetPort() && output_.IsLost())) {
        return;
    }
    bool ended = true;
    if (port == output_.GetPort()) {
        output_.VisitStrandedEnds([&sink = *sink_, &click = extras_->click](NK::MIDI::TMIDIMessage ending) {
            if (click.IsNote(ending)) {
                sink.Queue(LibMidi::SynthEventBase::Aside(ending));
            } else {
                sink.SendMessage(ending, 0);
            }
        });
    } else if (!ports_.IsFixed(port)) {  // what a fixed port plays through was made anew, and nothing sounds there
        ended = output_.EndStrandedOn(*port);
    }
    if (ended) {
        output_.ForgetStranded();
    }
}

void CKivora::EndStrandedNotesAtLast() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (ports_.GetFactory() == nullptr) {
        return;
    }
    CloseInputPort();
    clickOutput_.reset();
    if (!ports_.IsFixed(output_.GetPort())) {
        CloseOutputPort();
    }
    ports_.GetFactory()->Rescan();
    ListPortNames();
    EndStrandedNotes();
}

}  // namespace Kivora
