#include "libmidi/alsa/AlsaDeviceInPort.h"

namespace LibMidi {

AlsaDeviceInPort::AlsaDeviceInPort(const std::shared_ptr<AlsaClient>& client, const NK::CString& name)
    : MIDIPortImpl(0, name, kInput), AlsaInPort(client), AlsaDevicePort(client) {
}

AlsaDeviceInPort::~AlsaDeviceInPort() {
    Close();
}

std::optional<snd_seq_addr_t> AlsaDeviceInPort::CreateOwn() {
    return AlsaDevicePort::GetClient().CreateReceiver();
}

bool AlsaDeviceInPort::Connect(snd_seq_addr_t own, snd_seq_addr_t device) {
    return AlsaDevicePort::GetClient().Connect(device, own);
}

bool AlsaDeviceInPort::IsConnected(snd_seq_addr_t own, snd_seq_addr_t device) const {
    return AlsaDevicePort::GetClient().IsConnected(device, own);
}

bool AlsaDeviceInPort::IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const {
    return receiver == GetOwn() && sender == GetAddress();
}

}  // namespace LibMidi
