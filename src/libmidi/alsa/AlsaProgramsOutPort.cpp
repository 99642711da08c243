#include "libmidi/alsa/AlsaProgramsOutPort.h"

#include <utility>

#include "libmidi/alsa/AlsaEvents.h"
#include "libmidi/SpecialPorts.h"

namespace LibMidi {

AlsaProgramsOutPort::AlsaProgramsOutPort(std::shared_ptr<AlsaClient> client)
    : MIDIPortImpl(0, NK::CString::FromUtf8(SpecialPorts::kProgramsOut), kOutput), client_(std::move(client)) {
}

AlsaProgramsOutPort::~AlsaProgramsOutPort() {
    Close();
}

DeviceState AlsaProgramsOutPort::LookAtDevice() {
    if (!client_->Works()) {
        return DeviceState::kLost;
    }
    return IsOpen() ? DeviceState::kWorks : DeviceState::kBack;
}

bool AlsaProgramsOutPort::WriteEvent(const MIDIEvent& event) {
    snd_seq_event_t sent{};
    if (FillEvent(event, sent)) {
        sent.source = client_->GetPublicSender();
        sent.dest = {SND_SEQ_ADDRESS_SUBSCRIBERS, SND_SEQ_ADDRESS_UNKNOWN};
        client_->Send(sent);
    }
    return client_->Works();
}

}  // namespace LibMidi
