// The output port of a device on the ALSA sequencer. [base]
#pragma once

#include <memory>

#include "libmidi/alsa/AlsaDevicePort.h"
#include "libmidi/MIDIOutPortImpl.h"

namespace LibMidi {

/// Writes to the device itself, on the caller's thread: one that has gone refuses it. The connection is what makes the
/// system open a device.
class AlsaDeviceOutPort final : public AlsaDevicePort, public MIDIOutPortImpl {
public:
    AlsaDeviceOutPort(const std::shared_ptr<AlsaClient>& client, const NK::CString& name);
    ~AlsaDeviceOutPort() override;

private:
    std::optional<snd_seq_addr_t> CreateOwn() override;
    bool Connect(snd_seq_addr_t own, snd_seq_addr_t device) override;
    bool IsConnected(snd_seq_addr_t own, snd_seq_addr_t device) const override;
    bool WriteEvent(const MIDIEvent& event) override NK_REQUIRES(deviceLock_);
};

}  // namespace LibMidi
