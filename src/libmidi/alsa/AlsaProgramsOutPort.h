// The output port for whoever connects to this program. [base]
#pragma once

#include <memory>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/MIDIOutPortImpl.h"

namespace LibMidi {

/// The client's public port, whose connections are other programs' business: one that does not take what is sent keeps
/// nobody else from it, and is not told.
class AlsaProgramsOutPort final : public MIDIOutPortImpl {
public:
    explicit AlsaProgramsOutPort(std::shared_ptr<AlsaClient> client);
    ~AlsaProgramsOutPort() override;

    DeviceState LookAtDevice() override;

private:
    bool OpenDevice() override { return client_->Works(); }
    void CloseDevice() override {}
    bool WriteEvent(const MIDIEvent& event) override NK_REQUIRES(deviceLock_);

    const std::shared_ptr<AlsaClient> client_;
};

}  // namespace LibMidi
