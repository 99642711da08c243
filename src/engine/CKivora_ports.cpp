// Listing, opening and closing the ports.
#include <exception>
#include <utility>
#include <vector>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/PortSelection.h"
#include "engine/SongPlayback.h"
#include "nk/nk_exception.h"
#include "nk/nk_thread_role.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {
/// The creators, such that `threw` tells afterwards whether one of them ended with an exception.
std::vector<LibMidi::BackendCreator> Watch(const std::vector<LibMidi::BackendCreator>& backends,
                                           const std::shared_ptr<bool>& threw) {
    std::vector<LibMidi::BackendCreator> watched;
    for (const LibMidi::BackendCreator& create : backends) {
        watched.emplace_back([create, threw] {
            try {
                return create();
            } catch (const NK::CException&) {
                *threw = true;
                throw;
            }
        });
    }
    return watched;
}
}  // namespace

void CKivora::InitMidi() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    ShutdownMidi();
    const auto threw = std::make_shared<bool>(false);
    factory_ = std::make_unique<LibMidi::PortFactory>(Watch(dependencies_.backends, threw));
    factory_->TellOfDevices([this] { emit DevicesChanged(); });
    if (!factory_->Refresh()) {
        if (!*threw) {
            factory_.reset();
            Fail(QT_TR_NOOP("MIDI engine initalization failed (PortMIDI interface couldn't be created)."));
        }
        Fail(QT_TR_NOOP("MIDI engine initalization failed (error listing MIDI ports)."));
    }
    if (!factory_->HasPorts()) {
        Fail(QT_TR_NOOP("No MIDI ports found."));
    }
    player_ = dependencies_.createPlayer ? dependencies_.createPlayer() : nullptr;
    if (!player_) {
        Fail(QT_TR_NOOP("MIDI engine initalization failed (error creating MIDI player)."));
    }
    player_->SetTimeSource(&timeSource_);
    playerTellsFailure_ = tickTimer_ && player_->TellOfFailure([this] { tickTimer_->SetEnabled(true); });
    sink_ = player_->GetSink();
    sink_->SetKeepsOrder(keepsOrder_);
    sink_->SetHistory(extras_->played);
    extras_->song->SetQueue(sink_);
    ListPortNames();
}

void CKivora::ListPortNames() {
    inputNames_.Clear();
    outputNames_.Clear();
    const LibMidi::MIDIPortContainer* ports = factory_->GetPortList();
    if (ports == nullptr) {
        return;
    }
    for (LibMidi::MIDIPortIterator next(ports); next.HasNext();) {
        const LibMidi::MIDIPort* port = next.Next();
        if (port == nullptr) {
            Fail(QT_TR_NOOP("MIDI engine initalization failed (NULL port address)."));
        }
        const std::uint32_t flags = port->GetFlags();
        if ((flags & LibMidi::kUnavailableFlag) != 0) {
            continue;
        }
        if ((flags & LibMidi::kInput) != 0) {
            inputNames_.Push(port->GetName());
        }
        if ((flags & LibMidi::kOutput) != 0) {
            outputNames_.Push(port->GetName());
        }
    }
}

void CKivora::ShutdownMidi() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    StopRecording();
    extras_->clickOutput.reset();
    extras_->song->SetQueue(nullptr);
    player_.reset();
    sink_.reset();
    CloseInputPort();
    CloseOutputPort();
    factory_.reset();
    inputNames_.Clear();
    outputNames_.Clear();
}

void CKivora::SetOutputPort(LibMidi::MIDIOutPort* port) {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (port == nullptr) {
        Fail(QT_TR_NOOP("Attempt to set a NULL port as out."));
    }
    CloseOutputPort();
    CloseClickOn(port);
    if (!player_ || port->Open() != LibMidi::kSuccess) {
        Fail(QT_TR_NOOP("Failed to open output MIDI port."));
    }
    follower_.emplace(*port);
    outputBinding_ = player_->AttachOutput(&*follower_);
    outputPort_ = port;
    outputPortName_ = port->GetName();
    outputIndex_ = outputNames_.Find(outputPortName_);
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
        if (outputBinding_ >= 0) {
            player_->DetachOutput(outputBinding_);
        }
        if (!outputLost_ && player_->HasWriteFailed()) {
            LoseOutput(false);  // by the last that was written, which nobody has looked at yet
        }
        if (outputLost_) {
            sink_->Clear();
        }
    }
    follower_.reset();
    if (outputPort_ != nullptr) {
        outputPort_->Close();
        outputPort_ = nullptr;
    }
    outputBinding_ = -1;
    outputIndex_ = -1;
    outputLost_ = false;
}

void CKivora::SetInputPort(LibMidi::MIDIInPort* port) {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (port != nullptr && port == inputPort_.load()) {
        return;
    }
    CloseInputPort();
    if (port == nullptr) {
        Fail(QT_TR_NOOP("NULL input port."));
    }
    if (port->Open() != LibMidi::kSuccess) {
        Fail(QT_TR_NOOP("Failed to open input MIDI port:"), NK::ToQt(port->GetName()));
    }
    inputKeys_.Clear();
    extras_->pedal.input = 0;
    inputPort_.store(port);
    port->AddListener(this);
    inputPortName_ = port->GetName();
    inputIndex_ = inputNames_.Find(inputPortName_);
}

void CKivora::CloseInputPort() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (LibMidi::MIDIInPort* port = inputPort_.load()) {
        port->RemoveListener(this);
        port->Close();
        inputPort_.store(nullptr);
    }
    inputIndex_ = -1;
    inputLost_ = false;
}

bool CKivora::SetOutputPortByName(const NK::CString& name) {
    const Hold hold(*this);
    const LibMidi::MIDIPortContainer* ports = factory_ ? factory_->GetPortList() : nullptr;
    LibMidi::MIDIOutPort* port = ports == nullptr ? nullptr : ports->FindOutputByName(name);
    if (port == nullptr) {
        return false;
    }
    SetOutputPort(port);
    return true;
}

bool CKivora::SetInputPortByName(const NK::CString& name) {
    const Hold hold(*this);
    const LibMidi::MIDIPortContainer* ports = factory_ ? factory_->GetPortList() : nullptr;
    LibMidi::MIDIInPort* port = ports == nullptr ? nullptr : ports->FindInputByName(name);
    if (port == nullptr) {
        return false;
    }
    SetInputPort(port);
    return true;
}

bool CKivora::SetOutputPortByIndex(int index) {
    const Hold hold(*this);
    return index >= 0 && index < static_cast<int>(outputNames_.GetSize()) &&
           SetOutputPortByName(NK::CString(outputNames_[static_cast<std::uint32_t>(index)]));
}

bool CKivora::SetInputPortByIndex(int index) {
    const Hold hold(*this);
    return index >= 0 && index < static_cast<int>(inputNames_.GetSize()) &&
           SetInputPortByName(NK::CString(inputNames_[static_cast<std::uint32_t>(index)]));
}

int CKivora::FindDefaultOutputPort() const {
    const CLockGuard guard(lock_);
    const int index =
        FindByCandidates({L"Программный синтезатор звуковой", L"Программный синтезатор", L"Microsoft Synthesizer",
                          L"Microsoft synthesizer", L"Microsoft GS Wavetable Synth", L"Software synthesizer",
                          NK::FromQt(tr("Microsoft Synthesizer", "System software synthesizer name for the locale"))},
                         outputNames_);
    if (index >= 0) {
        return index;
    }
    const LibMidi::MIDIOutPort* port = factory_ ? factory_->GetDefaultOutput() : nullptr;
    return port == nullptr ? -1 : outputNames_.Find(port->GetName());
}

NK::CString CKivora::GetDefaultOutputPortName() const {
    const CLockGuard guard(lock_);
    const int index = FindDefaultOutputPort();
    if (index < 0) {
        Fail(QT_TR_NOOP("No default output MIDI port found."));
    }
    return outputNames_[static_cast<std::uint32_t>(index)];
}

void CKivora::OpenPorts() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    const bool outputSaved = !outputPortName_.IsEmpty();
    if (outputSaved) {
        SetOutputPortByName(NK::CString(outputPortName_));
    }
    if (!inputPortName_.IsEmpty()) {
        SetInputPortByName(NK::CString(inputPortName_));
    } else if (factory_ && factory_->GetDefaultInput() != nullptr) {
        SetInputPortByIndex(0);
    }
    if (!outputSaved) {
        SetOutputPortByName(GetDefaultOutputPortName());
    }
}

bool CKivora::KeepsThroughRescan(LibMidi::MIDIPort* port) {
    return factory_->IsFixed(port) ||
           (factory_->StaysThroughRescan(port) && port->LookAtDevice() == LibMidi::DeviceState::kWorks);
}

bool CKivora::RescanPorts() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!factory_ || IsRecording()) {
        return false;
    }
    const bool outputStays =
        outputPort_ != nullptr && !outputLost_ && !player_->HasWriteFailed() && KeepsThroughRescan(outputPort_);
    const bool inputWasLost = inputLost_;
    const bool inputStays = !inputLost_ && KeepsThroughRescan(inputPort_.load());
    if (!inputStays) {
        CloseInputPort();
    }
    if (!outputStays && outputPort_ != nullptr) {
        CloseOutputPort();
    }
    if (extras_->clickOutput && !factory_->StaysThroughRescan(&extras_->clickOutput->GetPort())) {
        extras_->clickOutput.reset();
    }
    const bool found = factory_->Rescan() && factory_->HasPorts();
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
        outputIndex_ = outputNames_.Find(outputPortName_);
    } else if (!outputPortName_.IsEmpty()) {
        attempt([this] { SetOutputPortByName(NK::CString(GetOutputPortName())); });
    }
    if (inputStays) {
        inputIndex_ = inputNames_.Find(inputPortName_);
    } else if (!inputPortName_.IsEmpty()) {
        attempt([this] { SetInputPortByName(NK::CString(GetInputPortName())); });
    }
    inputLost_ = inputLost_ || (inputWasLost && inputPort_.load() == nullptr);
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
        factory = factory_.get();
    }
    if (factory == nullptr || factory->GetPortList() == nullptr) {
        return false;
    }
    // Without the lock: what it takes is the system's matter, and only this thread lists, opens and closes ports.
    factory->Update();
    const Hold hold(*this);
    const auto take = [](const NK::CStringArray& names) {
        std::vector<NK::CString> taken;
        for (std::uint32_t i = 0; i < names.GetSize(); ++i) {
            taken.push_back(names[i]);
        }
        return taken;
    };
    const auto before = std::pair(take(inputNames_), take(outputNames_));
    ListPortNames();
    const LibMidi::MIDIPortContainer& ports = *factory_->GetPortList();
    if (const auto* input = inputPort_.load() == nullptr ? ports.FindInputByName(inputPortName_) : nullptr) {
        inputPortName_ = input->GetName();
    }
    if (const auto* output = outputPort_ == nullptr ? ports.FindOutputByName(outputPortName_) : nullptr) {
        outputPortName_ = output->GetName();
    }
    inputIndex_ = inputPort_.load() != nullptr ? inputNames_.Find(inputPortName_) : -1;
    outputIndex_ = outputPort_ != nullptr ? outputNames_.Find(outputPortName_) : -1;
    return before != std::pair(take(inputNames_), take(outputNames_));
}

NK::CStringArray CKivora::GetInputPortNames() const {
    const CLockGuard guard(lock_);
    return inputNames_;
}

NK::CStringArray CKivora::GetOutputPortNames() const {
    const CLockGuard guard(lock_);
    return outputNames_;
}

NK::CString CKivora::GetInputPortName() const {
    const CLockGuard guard(lock_);
    return inputPortName_;
}

NK::CString CKivora::GetOutputPortName() const {
    const CLockGuard guard(lock_);
    return outputPortName_;
}

void CKivora::SetSavedInputPortName(const NK::CString& name) {
    const Hold hold(*this);
    inputPortName_ = name;
}

void CKivora::SetSavedOutputPortName(const NK::CString& name) {
    const Hold hold(*this);
    outputPortName_ = name;
}

int CKivora::GetInputPortIndex() const {
    const CLockGuard guard(lock_);
    return inputIndex_;
}

int CKivora::GetOutputPortIndex() const {
    const CLockGuard guard(lock_);
    return outputIndex_;
}

bool CKivora::IsOutputReady() const {
    const CLockGuard guard(lock_);
    return IsReady();
}

bool CKivora::IsOutputLost() const {
    const CLockGuard guard(lock_);
    return outputLost_;
}

}  // namespace Kivora
