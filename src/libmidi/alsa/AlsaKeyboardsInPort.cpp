#include "libmidi/alsa/AlsaKeyboardsInPort.h"

#include "libmidi/alsa/AlsaNames.h"
#include "libmidi/PortNames.h"
#include "libmidi/SpecialPorts.h"

namespace LibMidi {

AlsaKeyboardsInPort::AlsaKeyboardsInPort(const std::shared_ptr<AlsaClient>& client)
    : MIDIPortImpl(0, NK::CString::FromUtf8(SpecialPorts::kAllKeyboards), kInput), AlsaInPort(client) {
}

AlsaKeyboardsInPort::~AlsaKeyboardsInPort() {
    Close();
}

bool AlsaKeyboardsInPort::OpenDevice() {
    const std::optional<snd_seq_addr_t> own = GetClient().CreateReceiver();
    own_ = own.value_or(snd_seq_addr_t{});
    return own.has_value();
}

void AlsaKeyboardsInPort::CloseDevice() {
    GetClient().DeletePort(own_);
}

DeviceState AlsaKeyboardsInPort::LookAtDevice() {
    return GetClient().Works() ? DeviceState::kWorks : DeviceState::kLost;
}

bool AlsaKeyboardsInPort::IsMeant(snd_seq_addr_t, snd_seq_addr_t receiver) const {
    return receiver == own_ || receiver == GetClient().GetPublicReceiver();
}

std::optional<snd_seq_addr_t> AlsaKeyboardsInPort::FindOtherWay(snd_seq_addr_t sender, snd_seq_addr_t receiver) const {
    return !(receiver == own_) && GetClient().IsConnected(sender, own_) ? std::optional(own_) : std::nullopt;
}

void AlsaKeyboardsInPort::FollowDevices() {
    for (const AlsaListedPort& port : GetClient().ListPorts()) {
        if (port.sends && !IsLoopBack(port.port) && !AlsaNames::IsOwnKind(port)) {
            GetClient().Connect(port.address, own_);  // one that has just gone fails, and nothing is lost by it
        }
    }
}

}  // namespace LibMidi
