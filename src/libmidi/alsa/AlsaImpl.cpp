#include "libmidi/alsa/AlsaImpl.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "nk/nk_thread_role.h"

namespace LibMidi {

namespace {

std::vector<AlsaListedPort> Select(const std::vector<AlsaListedPort>& listed, bool AlsaListedPort::*direction) {
    std::vector<AlsaListedPort> selected;
    std::copy_if(listed.begin(), listed.end(), std::back_inserter(selected),
                 [direction](const AlsaListedPort& port) { return port.*direction; });
    std::stable_partition(selected.begin(), selected.end(),
                          [](const AlsaListedPort& port) { return !IsLoopBack(port.port); });
    return selected;
}

/// `programs` goes before the loop-backs, which stand last.
template <class Port>
void Append(std::vector<MIDIPort*>& ports, const std::vector<Port*>& devices, MIDIPort& programs) {
    const auto loopBack = std::find_if(devices.begin(), devices.end(),
                                       [](const Port* port) { return IsLoopBack(port->GetName().ToUtf8()); });
    ports.insert(ports.end(), devices.begin(), loopBack);
    ports.push_back(&programs);
    ports.insert(ports.end(), loopBack, devices.end());
}

}  // namespace

AlsaImpl::AlsaImpl(std::shared_ptr<AlsaClient> client)
    : client_(std::move(client)),
      inputs_(client_),
      outputs_(client_),
      keyboards_(std::make_unique<AlsaKeyboardsInPort>(client_)),
      programsIn_(std::make_unique<AlsaProgramsInPort>(client_)),
      programsOut_(std::make_unique<AlsaProgramsOutPort>(client_)) {
    Update();
}

AlsaImpl::~AlsaImpl() {
    TellOfDevices({});
}

void AlsaImpl::Update() {
    NK_ASSERT_THREAD_ROLE(gui);
    isTold_ = false;
    const std::vector<AlsaListedPort> listed = client_->ListPorts();
    inputs_.Update(Select(listed, &AlsaListedPort::sends));
    NameSenders();
    outputs_.Update(Select(listed, &AlsaListedPort::receives));
    list_.ports = {keyboards_.get()};
    Append(list_.ports, inputs_.GetPresent(), *programsIn_);
    Append(list_.ports, outputs_.GetPresent(), *programsOut_);
}

void AlsaImpl::NameSenders() {
    std::vector<AlsaInPort::SenderName> names;
    for (const AlsaDeviceInPort* device : inputs_.GetPresent()) {
        names.push_back({device->GetPlace().value_or(snd_seq_addr_t{}), device->GetName()});
    }
    keyboards_->SetSenderNames(names);
    programsIn_->SetSenderNames(std::move(names));
}

MIDIInPort* AlsaImpl::GetDefaultInput() const {
    return keyboards_.get();
}

MIDIOutPort* AlsaImpl::GetDefaultOutput() const {
    return list_.FindFirstOutput(true);
}

void AlsaImpl::TellOfDevices(std::function<void()> tell) {
    NK_ASSERT_THREAD_ROLE(gui);
    if (tell_) {
        client_->RemoveWatcher(*this);
    }
    tell_ = std::move(tell);
    isTold_ = false;
    if (tell_) {
        client_->AddWatcher(*this);
    }
}

void AlsaImpl::OnNews() {
    if (!isTold_.exchange(true)) {
        tell_();
    }
}

}  // namespace LibMidi
