// Listing, opening and closing the ports.
#include <exception>
#include <utility>
#include <vector>

#include "engine/CKivora.h"
#include "engine/ClickOutput.h"
#include "engine/EngineExtras.h"
#include "engine/PortSelection.h"
#include "engine/SongPlayback.h"
#include "nk/nk_exception.h"
#include "nk/nk_thread_role.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

void CKivora::InitMidi() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    ShutdownMidi();
    switch (ports_.Make(dependencies_.backends, [this] { emit DevicesChanged(); })) {
        case PortList::Made::kNothing:
            Fail(QT_TR_NOOP("MIDI engine initalization failed (PortMIDI interface couldn't be created)."));
        case PortList::Made::kRefused:
            Fail(QT_TR_NOOP("MIDI engine initalization failed (error listing MIDI ports)."));
        case PortList::Made::kNoPorts:
            Fail(QT_TR_NOOP("No MIDI ports found."));
        case PortList::Made::kHasPorts:
            break;
    }
    player_ = dependencies_.createPlayer ? dependencies_.createPlayer() : nullptr;
    if (!player_) {
        Fail(QT_TR_NOOP("MIDI engine initalization failed (error creating MIDI player)."));
    }
    player_->SetTimeSource(&timeSource_);
    playerTellsFailure_ = tickTimer_ && player_->TellOfFailure([this] { tickTimer_->SetEnabled(true); });
    sink_ = player_->GetSink();
    sink_->SetKeepsOrder(keepsOrder_);
    sink_->SetHistory(extras_->GetPlayed());
    extras_->song.SetQueue(sink_);
    ListPortNames();
}

void CKivora::ListPortNames() {
    if (!ports_.ListNames()) {
        Fail(QT_TR_NOOP("MIDI engine initalization failed (NULL port address)."));
    }
}

void CKivora::ShutdownMidi() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    StopRecording();
    clickOutput_.reset();
    extras_->song.SetQueue(nullptr);
    player_.reset();
    sink_.reset();
    CloseInputPort();
    CloseOutputPort();
    ports_.Clear();
}

void CKivora::SetOutputPort(LibMidi::MIDIOutPort* port) {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (port == nullptr) {
        Fail(QT_TR_NOOP("Attempt to set a NULL port as out."));
    }
    CloseOutputPort();
    CloseClickOn(port);
    if (!player_ || !output_.Open(*port, *player_, ports_)) {
        Fail(QT_TR_NOOP("Failed to open output MIDI port."));
    }
    if (!player_->IsRunning() && !player_->Start()) {
        sink_->SetAccepting(false);
        sink_->Clear();
        Fail(QT_TR_NOOP("Failed to start MIDI player."));
    }
    sink_->SetAccepting(true);
    ResetSynth();
    emit SynthSet();
    SendPatches();
}

void CKivora::CloseOutputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    ResetSynth();
    if (player_) {
        player_->Stop();
        output_.Detach(*player_);
        if (!output_.IsLost() && player_->HasWriteFailed()) {
            LoseOutput(false);  // by the last that was written, which nobody has looked at yet
        }
        if (output_.IsLost()) {
            sink_->Clear();
        }
    }
    output_.Close();
}

void CKivora::SetInputPort(LibMidi::MIDIInPort* port) {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (port != nullptr && port == input_.GetPort()) {
        return;
    }
    CloseInputPort();
    if (port == nullptr) {
        Fail(QT_TR_NOOP("NULL input port."));
    }
    if (!input_.Open(*port, *this, ports_)) {
        Fail(QT_TR_NOOP("Failed to open input MIDI port:"), NK::ToQt(port->GetName()));
    }
    inputKeys_.Clear();
    extras_->heard.ForgetHeld();
    extras_->controls.LetGo();
    extras_->pedal.input = 0;
}

void CKivora::CloseInputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    input_.Close(*this);
}

bool CKivora::SetOutputPortByName(const NK::CString& name) {
    const Hold hold(*this);
    LibMidi::MIDIOutPort* const port = ports_.FindOutput(name);
    if (port == nullptr) {
        return false;
    }
    SetOutputPort(port);
    return true;
}

bool CKivora::SetInputPortByName(const NK::CString& name) {
    const Hold hold(*this);
    LibMidi::MIDIInPort* const port = ports_.FindInput(name);
    if (port == nullptr) {
        return false;
    }
    SetInputPort(port);
    return true;
}

bool CKivora::SetOutputPortByIndex(int index) {
    const Hold hold(*this);
    const NK::CStringArray& names = ports_.GetOutputNames();
    return index >= 0 && index < static_cast<int>(names.GetSize()) &&
           SetOutputPortByName(NK::CString(names[static_cast<std::uint32_t>(index)]));
}

bool CKivora::SetInputPortByIndex(int index) {
    const Hold hold(*this);
    const NK::CStringArray& names = ports_.GetInputNames();
    return index >= 0 && index < static_cast<int>(names.GetSize()) &&
           SetInputPortByName(NK::CString(names[static_cast<std::uint32_t>(index)]));
}

int CKivora::FindDefaultOutputPort() const {
    const CLockGuard guard(lock_);
    const int index =
        FindByCandidates({L"Программный синтезатор звуковой", L"Программный синтезатор", L"Microsoft Synthesizer",
                          L"Microsoft synthesizer", L"Microsoft GS Wavetable Synth", L"Software synthesizer",
                          NK::FromQt(tr("Microsoft Synthesizer", "System software synthesizer name for the locale"))},
                         ports_.GetOutputNames());
    if (index >= 0) {
        return index;
    }
    const LibMidi::PortFactory* const factory = ports_.GetFactory();
    const LibMidi::MIDIOutPort* const port = factory != nullptr ? factory->GetDefaultOutput() : nullptr;
    return port == nullptr ? -1 : ports_.GetOutputNames().Find(port->GetName());
}

NK::CString CKivora::GetDefaultOutputPortName() const {
    const CLockGuard guard(lock_);
    const int index = FindDefaultOutputPort();
    if (index < 0) {
        Fail(QT_TR_NOOP("No default output MIDI port found."));
    }
    return ports_.GetOutputNames()[static_cast<std::uint32_t>(index)];
}

void CKivora::OpenPorts() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    const LibMidi::PortFactory* const factory = ports_.GetFactory();
    const bool outputSaved = !output_.GetName().IsEmpty();
    if (outputSaved) {
        SetOutputPortByName(NK::CString(output_.GetName()));
    }
    if (!input_.GetName().IsEmpty()) {
        SetInputPortByName(NK::CString(input_.GetName()));
    } else if (factory != nullptr && factory->GetDefaultInput() != nullptr) {
        SetInputPortByIndex(0);
    }
    if (!outputSaved) {
        SetOutputPortByName(GetDefaultOutputPortName());
    }
}

bool CKivora::KeepsThroughRescan(LibMidi::MIDIPort* port) {
    return ports_.IsFixed(port) ||
           (ports_.StaysThroughRescan(port) && port->LookAtDevice() == LibMidi::DeviceState::kWorks);
}

bool CKivora::RescanPorts() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    LibMidi::PortFactory* const factory = ports_.GetFactory();
    if (factory == nullptr || IsRecording()) {
        return false;
    }
    const bool outputStays = output_.GetPort() != nullptr && !output_.IsLost() && !player_->HasWriteFailed() &&
                             KeepsThroughRescan(output_.GetPort());
    const bool inputWasLost = input_.IsLost();
    const bool inputStays = !inputWasLost && KeepsThroughRescan(input_.GetPort());
    if (!inputStays) {
        CloseInputPort();
    }
    if (!outputStays && output_.GetPort() != nullptr) {
        CloseOutputPort();
    }
    if (clickOutput_ && !ports_.StaysThroughRescan(&clickOutput_->GetPort())) {
        clickOutput_.reset();
    }
    const bool found = factory->Rescan() && factory->HasPorts();
    ListPortNames();
    std::exception_ptr failure;
    const auto attempt = [&failure](auto open) {
        try {
            open();
        } catch (const NK::CException&) {
            failure = failure ? failure : std::current_exception();
        }
    };
    if (outputStays) {
        output_.Follow(ports_);
    } else if (!output_.GetName().IsEmpty()) {
        attempt([this] { SetOutputPortByName(NK::CString(GetOutputPortName())); });
    }
    if (inputStays) {
        input_.Follow(ports_);
    } else if (!input_.GetName().IsEmpty()) {
        attempt([this] { SetInputPortByName(NK::CString(GetInputPortName())); });
    }
    input_.SetLost(input_.IsLost() || (inputWasLost && input_.GetPort() == nullptr));
    if (failure) {
        std::rethrow_exception(failure);
    }
    return found;
}

bool CKivora::UpdatePorts() {
    NK_ASSERT_THREAD_ROLE(gui);
    LibMidi::PortFactory* factory = nullptr;
    {
        const CLockGuard guard(lock_);
        factory = ports_.GetPorts() != nullptr ? ports_.GetFactory() : nullptr;
    }
    if (factory == nullptr) {
        return false;
    }
    // Without the lock: what it takes is the system's matter, and only this thread lists, opens and closes ports.
    factory->Update();
    const Hold hold(*this);
    extras_->controls.LetGo();  // the knobs of one among several devices may have been away
    const auto take = [](const NK::CStringArray& names) {
        std::vector<NK::CString> taken;
        for (std::uint32_t i = 0; i < names.GetSize(); ++i) {
            taken.push_back(names[i]);
        }
        return taken;
    };
    const auto before = std::pair(take(ports_.GetInputNames()), take(ports_.GetOutputNames()));
    ListPortNames();
    input_.Follow(ports_);
    output_.Follow(ports_);
    return before != std::pair(take(ports_.GetInputNames()), take(ports_.GetOutputNames()));
}

NK::CStringArray CKivora::GetInputPortNames() const {
    const CLockGuard guard(lock_);
    return ports_.GetInputNames();
}

NK::CStringArray CKivora::GetOutputPortNames() const {
    const CLockGuard guard(lock_);
    return ports_.GetOutputNames();
}

NK::CString CKivora::GetInputPortName() const {
    const CLockGuard guard(lock_);
    return input_.GetName();
}

NK::CString CKivora::GetOutputPortName() const {
    const CLockGuard guard(lock_);
    return output_.GetName();
}

void CKivora::SetSavedInputPortName(const NK::CString& name) {
    const Hold hold(*this);
    input_.SetName(name);
}

void CKivora::SetSavedOutputPortName(const NK::CString& name) {
    const Hold hold(*this);
    output_.SetName(name);
}

int CKivora::GetInputPortIndex() const {
    const CLockGuard guard(lock_);
    return input_.GetIndex();
}

int CKivora::GetOutputPortIndex() const {
    const CLockGuard guard(lock_);
    return output_.GetIndex();
}

bool CKivora::IsOutputReady() const {
    const CLockGuard guard(lock_);
    return IsReady();
}

bool CKivora::IsOutputLost() const {
    const CLockGuard guard(lock_);
    return output_.IsLost();
}

}  // namespace Kivora
