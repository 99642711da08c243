#include "libmidi/portmidi/PortMIDIImpl.h"

#include <utility>

#include "libmidi/portmidi/PortMIDIInPort.h"
#include "libmidi/portmidi/PortMIDIOutPort.h"
#include "libmidi/portmidi/TickCounter.h"
#include "libmidi/PortNames.h"
#include "nk/nk_thread_role.h"
#include "nk/nk_wakeup.h"

namespace LibMidi {

namespace {
/// The device's name, with a number behind it where a port of the same direction has the name already.
NK::CString FindNameFor(const PmDeviceInfo& device, const MIDIPortContainer& ports) {
    return FindFreeName(NK::CString::FromUtf8(device.name), [&](const NK::CString& name) {
        return device.input != 0 ? ports.FindInputByName(name) != nullptr : ports.FindOutputByName(name) != nullptr;
    });
}
}  // namespace

/// Runs a round of input after each sleep of a millisecond while an input is open, and waits for one otherwise.
class PortMIDIImpl::InputTimer : public RoundThread {
public:
    explicit InputTimer(PortMIDIImpl& implementation)
        : RoundThread(kLevelTimeCritical, L"MIDI input timer"), implementation_(implementation) {}

    void RequestStop() override {
        RoundThread::RequestStop();
        wakeup.Wake();
    }

    NK::CWakeup wakeup;  ///< an input has been opened

private:
    void RunRounds() override {
        NK_REGISTER_THREAD_ROLE(inputTimer);
        while (!IsStopRequested()) {
            if (implementation_.openInputs_ == 0) {
                implementation_.GetSleeper().Wait(wakeup, NK::CWakeup::kNever);
                continue;
            }
            implementation_.GetSleeper().Sleep(1);
            if (!IsStopRequested()) {
                implementation_.RunInputRound();
            }
        }
    }

    PortMIDIImpl& implementation_;
};

PortMIDIImpl::PortMIDIImpl(PortMidiApi& api, NK::CSleeper& sleeper, Threads threads, SequencerLister lister)
    : api_(api), sleeper_(sleeper), threads_(threads), lister_(std::move(lister)) {
    initialized_ = api_.Initialize() == pmNoError;
    if (!initialized_) {
        return;
    }
    sequencerAtStart_ = lister_();
    AddPorts(false);
    AddPorts(true);
    if (RunsThreads() && ports_.GetCount() != 0) {
        timer_ = std::make_unique<InputTimer>(*this);
        timer_->Begin();
    }
}

PortMIDIImpl::~PortMIDIImpl() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (timer_ != nullptr) {
        timer_->End();
    }
    inputs_.clear();
    ports_.CloseAll();
    ports_.Clear();
    if (initialized_) {
        api_.Terminate();
    }
}

void PortMIDIImpl::AddPorts(bool loopBack) {
    const int count = api_.CountDevices();
    for (PmDeviceID device = 0; device < count; ++device) {
        const PmDeviceInfo* info = api_.GetDeviceInfo(device);
        if (info != nullptr && info->name != nullptr && IsLoopBack(info->name) == loopBack) {
            AddPort(device, *info);
        }
    }
}

void PortMIDIImpl::AddPort(PmDeviceID device, const PmDeviceInfo& info) {
    const NK::CString name = FindNameFor(info, ports_);
    if (info.input != 0) {
        auto port = std::make_unique<PortMIDIInPort>(*this, device, name);
        inputs_.push_back(port.get());
        ports_.Append(std::move(port));
    } else if (info.output != 0) {
        ports_.Append(std::make_unique<PortMIDIOutPort>(*this, device, name));
    }
}

void PortMIDIImpl::CountOpenInput(bool opened) {
    openInputs_ += opened ? 1 : -1;
    if (opened && timer_ != nullptr) {
        timer_->wakeup.Wake();
    }
}

DeviceWatch PortMIDIImpl::MakeWatch(PmDeviceID device) const {
    const PmDeviceInfo* const info = api_.GetDeviceInfo(device);
    if (info == nullptr || info->name == nullptr) {
        return {lister_, std::nullopt, {}, false, 0};
    }
    const std::string name = info->name;
    const bool isInput = info->input != 0;
    std::size_t ordinal = 0;
    for (PmDeviceID earlier = 0; earlier < device; ++earlier) {
        const PmDeviceInfo* const other = api_.GetDeviceInfo(earlier);
        if (other != nullptr && other->name != nullptr && other->name == name && (other->input != 0) == isInput) {
            ++ordinal;
        }
    }
    return {lister_, sequencerAtStart_, name, isInput, ordinal};
}

MIDIInPort* PortMIDIImpl::GetDefaultInput() const {
    MIDIInPort* port = ports_.FindFirstInput(true);
    return port != nullptr && !IsLoopBack(port->GetName().ToUtf8()) ? port : nullptr;
}

MIDIOutPort* PortMIDIImpl::GetDefaultOutput() const {
    return ports_.FindFirstOutput(true);
}

void PortMIDIImpl::RunInputRound() {
    NK_ASSERT_THREAD_ROLE(inputTimer);
    TickCounter::Advance();
    for (MIDIPortContext* input : inputs_) {
        input->ReceiveRound();
    }
}

}  // namespace LibMidi
