#include "libmidi/alsa/AlsaProgramsInPort.h"

#include "libmidi/SpecialPorts.h"

namespace LibMidi {

AlsaProgramsInPort::AlsaProgramsInPort(const std::shared_ptr<AlsaClient>& client)
    : MIDIPortImpl(0, NK::CString::FromUtf8(SpecialPorts::kProgramsIn), kInput), AlsaInPort(client) {
}

AlsaProgramsInPort::~AlsaProgramsInPort() {
    Close();
}

DeviceState AlsaProgramsInPort::LookAtDevice() {
    return GetClient().Works() ? DeviceState::kWorks : DeviceState::kLost;
}

bool AlsaProgramsInPort::IsMeant(snd_seq_addr_t, snd_seq_addr_t receiver) const {
    return receiver == GetClient().GetPublicReceiver();
}

}  // namespace LibMidi
