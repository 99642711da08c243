// What other programs connect to this one, as an input port. [base]
#pragma once

#include <memory>

#include "libmidi/alsa/AlsaInPort.h"

namespace LibMidi {

/// The client's public port, whose connections are other programs' business.
class AlsaProgramsInPort final : public AlsaInPort {
public:
    explicit AlsaProgramsInPort(const std::shared_ptr<AlsaClient>& client);
    ~AlsaProgramsInPort() override;

    DeviceState LookAtDevice() override;

private:
    bool OpenDevice() override { return GetClient().Works(); }
    void CloseDevice() override {}
    bool IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const override;
};

}  // namespace LibMidi
