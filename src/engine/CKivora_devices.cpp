// Devices that are lost and come back while their ports are open.
#include "engine/CKivora.h"
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
    outputLost_ = true;
    EndLatched();  // else it would begin by itself when the output comes back
    sink_->LoseOutput();
    extras_->song->Lose();
    sink_->Clear();
    if (!follower_) {
        return;
    }
    // A device that lives on after a failed write may take this; a recording that goes on later needs it in any case.
    const LibMidi::OpenSounds sounding = follower_->GetSounding();
    if (!isGone) {
        follower_->EndSounding();
    }
    if (sounding.IsAny() && (sink_->IsCapturing() || follower_->GetSounding().IsAny())) {
        stranded_ = sounding;
        strandedPortName_ = outputPortName_;
    }
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
        lost = !outputLost_ && (IsGone(state) || player_->HasWriteFailed());
        if (lost) {
            player_->Stop();
            LoseOutput(IsGone(state));
        }
        if (outputLost_ && !IsGone(state)) {
            state = DeviceState::kBack;
        }
    }
    if (lost) {
        emit OutputLost();
    }
    return state;
}

LibMidi::MIDIOutPort* CKivora::FindWantedOutput() {
    if (outputPort_ != nullptr) {
        return outputPort_;
    }
    const LibMidi::MIDIPortContainer* const ports = factory_ ? factory_->GetPortList() : nullptr;
    const int index = outputPortName_.IsEmpty() ? FindDefaultOutputPort() : outputNames_.Find(outputPortName_);
    return ports != nullptr && index >= 0
               ? ports->FindOutputByName(NK::CString(outputNames_[static_cast<std::uint32_t>(index)]))
               : nullptr;
}

LibMidi::MIDIOutPort* CKivora::FindWatchedOutput() {
    const Hold hold(*this);
    LibMidi::MIDIOutPort* const port = FindWantedOutput();
    return IsReady() || (factory_ && factory_->StaysThroughRescan(port)) ? port : nullptr;
}

DeviceState CKivora::LookAtInput() {
    NK_ASSERT_THREAD_ROLE(gui);
    LibMidi::MIDIInPort* const port = inputPort_.load();
    const DeviceState state = port != nullptr ? port->LookAtDevice() : DeviceState::kElsewhere;  // without the lock too
    const Hold hold(*this);
    if (port == nullptr) {
        return inputLost_ ? state : DeviceState::kWorks;  // where it is, only a re-scan finds
    }
    const bool lost = IsGone(state);
    if (lost && !inputLost_) {
        ReleaseInputKeys();
    }
    inputLost_ = lost;
    return state;
}

bool CKivora::ReopenOutputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!IsReady() || !outputLost_) {
        return false;
    }
    player_->Stop();
    player_->DetachOutput(outputBinding_);
    outputPort_->Close();
    sink_->Clear();
    follower_.emplace(*outputPort_);
    outputBinding_ = player_->AttachOutput(&*follower_);
    if (outputPort_->Open() != LibMidi::kSuccess || !player_->Start()) {
        sink_->SetAccepting(false);
        return false;
    }
    outputLost_ = false;
    sink_->SetAccepting(true);
    EndStrandedNotes();
    extras_->song->Rest();
    SendPatches();
    SendVolumes();
    SettleOutput();
    return true;
}

bool CKivora::ReopenInputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    LibMidi::MIDIInPort* const port = inputPort_.load();
    if (port == nullptr || !inputLost_) {
        return false;
    }
    ReleaseInputKeys();
    port->Close();
    inputLost_ = port->Open() != LibMidi::kSuccess;
    return !inputLost_;
}

bool CKivora::IsInputLost() const {
    const CLockGuard guard(lock_);
    return inputLost_;
}

bool CKivora::IsRescanQuiet() const {
    const CLockGuard guard(lock_);
    return factory_ && !IsRecording() &&
           (outputPort_ == nullptr || (!outputLost_ && factory_->StaysThroughRescan(outputPort_)));
}

bool CKivora::HasOutputFailed() const {
    const CLockGuard guard(lock_);
    return IsReady() && !outputLost_ && player_->HasWriteFailed();
}

bool CKivora::HasStrandedNotes() const {
    const CLockGuard guard(lock_);
    return stranded_.IsAny();
}

void CKivora::EndStrandedNotes() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    const LibMidi::MIDIPortContainer* const ports = factory_ ? factory_->GetPortList() : nullptr;
    LibMidi::MIDIOutPort* const port =
        ports != nullptr && stranded_.IsAny() ? ports->FindOutputByName(strandedPortName_) : nullptr;
    if (port == nullptr || (port == outputPort_ && outputLost_)) {
        return;
    }
    bool ended = true;
    if (port == outputPort_) {
        stranded_.VisitEnds([&sink = *sink_, &click = extras_->click](NK::MIDI::TMIDIMessage ending) {
            if (click.IsNote(ending)) {
                LibMidi::SynthEventBase aside(LibMidi::MIDIEvent::FromMessage(ending, 0));
                aside.isAside = true;
                sink.Queue(aside);
            } else {
                sink.SendMessage(ending, 0);
            }
        });
    } else if (!factory_->IsFixed(port)) {  // what a fixed port plays through was made anew, and nothing sounds there
        ended = port->Open() == LibMidi::kSuccess;
        if (ended) {
            stranded_.VisitEnds([port, &ended](NK::MIDI::TMIDIMessage message) {
                const auto ending = LibMidi::MIDIEvent::FromMessage(message, 0);
                ended = port->Write(&ending, 1) == LibMidi::kSuccess && ended;
            });
            port->Close();
        }
    }
    if (ended) {
        stranded_ = {};
    }
}

void CKivora::EndStrandedNotesAtLast() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!factory_) {
        return;
    }
    CloseInputPort();
    extras_->clickOutput.reset();
    if (!factory_->IsFixed(outputPort_)) {
        CloseOutputPort();
    }
    factory_->Rescan();
    ListPortNames();
    EndStrandedNotes();
}

}  // namespace Kivora
