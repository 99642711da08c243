#include "libmidi/alsa/AlsaDeviceOutPort.h"

#include "libmidi/alsa/AlsaEvents.h"

namespace LibMidi {

AlsaDeviceOutPort::AlsaDeviceOutPort(const std::shared_ptr<AlsaClient>& client, const NK::CString& name)
    : MIDIPortImpl(0, name, kOutput), AlsaDevicePort(client) {
}

AlsaDeviceOutPort::~AlsaDeviceOutPort() {
    Close();
}

std::optional<snd_seq_addr_t> AlsaDeviceOutPort::CreateOwn() {
    return GetClient().CreateSender();
}

bool AlsaDeviceOutPort::Connect(snd_seq_addr_t own, snd_seq_addr_t device) {
    return GetClient().Connect(own, device);
}

bool AlsaDeviceOutPort::IsConnected(snd_seq_addr_t own, snd_seq_addr_t device) const {
    return GetClient().IsConnected(own, device);
}

bool AlsaDeviceOutPort::WriteEvent(const MIDIEvent& event) {
    snd_seq_event_t sent{};
    if (!FillEvent(event, sent)) {
        return true;
    }
    sent.source = GetOwn();
    sent.dest = GetAddress();
    const bool isWritten = GetClient().Send(sent);
    if (!isWritten) {
        SetFailed();
    }
    return isWritten;
}

}  // namespace LibMidi
