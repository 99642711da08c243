#include "libmidi/alsa/AlsaDevicePort.h"

namespace LibMidi {

bool AlsaDevicePort::OpenDevice() {
    wasOpened_ = true;
    const std::optional<snd_seq_addr_t> own = place_ ? CreateOwn() : std::nullopt;
    if (!own) {
        return false;
    }
    if (!Connect(*own, *place_)) {
        client_->DeletePort(*own);
        return false;
    }
    own_ = *own;
    device_ = *place_;
    hasFailed_ = false;
    return true;
}

void AlsaDevicePort::CloseDevice() {
    client_->DeletePort(own_);
}

DeviceState AlsaDevicePort::LookAtDevice() {
    if (IsOpen() && client_->Works() && !hasFailed_ && IsConnected(own_, device_)) {
        return DeviceState::kWorks;
    }
    return client_->Works() && place_ && client_->IsThere(*place_) ? DeviceState::kBack : DeviceState::kLost;
}

}  // namespace LibMidi
