// The port set of the ALSA sequencer.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "libmidi/alsa/AlsaDeviceInPort.h"
#include "libmidi/alsa/AlsaDeviceList.h"
#include "libmidi/alsa/AlsaDeviceOutPort.h"
#include "libmidi/alsa/AlsaKeyboardsInPort.h"
#include "libmidi/alsa/AlsaProgramsInPort.h"
#include "libmidi/alsa/AlsaProgramsOutPort.h"
#include "libmidi/PortFactory.h"

namespace LibMidi {

/// Lists all MIDI keyboards as one input, the devices, what other programs connect, and last the loop-back. [gui]
class AlsaImpl final : public MIDIPortsImpl, private AlsaWatcher {
public:
    /// The client is open.
    explicit AlsaImpl(std::shared_ptr<AlsaClient> client);
    ~AlsaImpl() override;
    AlsaImpl(const AlsaImpl&) = delete;
    AlsaImpl& operator=(const AlsaImpl&) = delete;

    const MIDIPortContainer& GetPorts() const override { return list_; }
    /// All MIDI keyboards.
    MIDIInPort* GetDefaultInput() const override;
    /// The first device, else what other programs connect.
    MIDIOutPort* GetDefaultOutput() const override;
    /// Until the sequencer fails.
    bool StaysThroughRescan() const override { return client_->Works(); }
    void Update() override;
    /// Tells once until the next Update(), however much comes and goes.
    void TellOfDevices(std::function<void()> tell) override;

private:
    /// In the order in which they are shown.
    class List : public MIDIPortWalker {
    public:
        std::uint32_t GetCount() const override { return static_cast<std::uint32_t>(ports.size()); }
        MIDIPort* GetPort(std::uint32_t index) const override { return index < ports.size() ? ports[index] : nullptr; }

        std::vector<MIDIPort*> ports;
    };

    void OnNews() override;
    void NameSenders();

    const std::shared_ptr<AlsaClient> client_;
    std::function<void()> tell_;       ///< does not change while this watches
    std::atomic<bool> isTold_{false};  ///< and nobody has looked since
    AlsaDeviceList<AlsaDeviceInPort> inputs_;
    AlsaDeviceList<AlsaDeviceOutPort> outputs_;
    std::unique_ptr<AlsaKeyboardsInPort> keyboards_;
    std::unique_ptr<AlsaProgramsInPort> programsIn_;
    std::unique_ptr<AlsaProgramsOutPort> programsOut_;
    List list_;
};

}  // namespace LibMidi
