// All MIDI keyboards as one input port. [base]
#pragma once

#include <memory>
#include <optional>

#include "libmidi/alsa/AlsaInPort.h"

namespace LibMidi {

/// Everything plays that sends on the sequencer now or later, and what other programs connect to the client. Left out
/// are the loop-back, through which we would hear ourselves, and other instances of this program, which would hear us.
class AlsaKeyboardsInPort final : public AlsaInPort {
public:
    explicit AlsaKeyboardsInPort(const std::shared_ptr<AlsaClient>& client);
    ~AlsaKeyboardsInPort() override;

    DeviceState LookAtDevice() override;

private:
    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    void CloseDevice() override NK_REQUIRES(deviceLock_);
    bool IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const override;
    /// A keyboard that somebody has connected to the public port too.
    std::optional<snd_seq_addr_t> FindOtherWay(snd_seq_addr_t sender, snd_seq_addr_t receiver) const override;
    void FollowDevices() override;

    snd_seq_addr_t own_{};  ///< does not change while the port is open
};

}  // namespace LibMidi
