// The input port of a device on the ALSA sequencer. [base]
#pragma once

#include <memory>

#include "libmidi/alsa/AlsaDevicePort.h"
#include "libmidi/alsa/AlsaInPort.h"

namespace LibMidi {

class AlsaDeviceInPort final : public AlsaInPort, public AlsaDevicePort {
public:
    AlsaDeviceInPort(const std::shared_ptr<AlsaClient>& client, const NK::CString& name);
    ~AlsaDeviceInPort() override;

    /// Its own, as nobody else is meant.
    const NK::CString& GetSourceName(std::uint8_t) const override { return GetName(); }

private:
    std::optional<snd_seq_addr_t> CreateOwn() override;
    bool Connect(snd_seq_addr_t own, snd_seq_addr_t device) override;
    bool IsConnected(snd_seq_addr_t own, snd_seq_addr_t device) const override;
    bool IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const override;
};

}  // namespace LibMidi
