// The PortMidi backend: its devices as ports, and the timer that reads the open inputs.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "libmidi/PortFactory.h"
#include "libmidi/portmidi/DeviceWatch.h"
#include "libmidi/portmidi/MIDIPortContext.h"
#include "libmidi/portmidi/PortMidiApi.h"
#include "nk/nk_sleep.h"

namespace LibMidi {

/// PortMidi is initialised while this exists; at most one at a time. A library that cannot be initialised counts as
/// having no ports. The ports stand in the order of the devices, with the loop-back ports of the sequencer last. Of
/// several devices of one name and direction the second becomes "name (2)", and so on, as ports are chosen by their
/// names. [gui]
class PortMIDIImpl : public MIDIPortsImpl {
public:
    /// Whether the input timer and the input ports run threads, or the rounds are called by hand.
    enum class Threads { kRun, kByHand };

    explicit PortMIDIImpl(PortMidiApi& api = RealPortMidiApi(), NK::CSleeper& sleeper = NK::SystemSleeper(),
                          Threads threads = Threads::kRun, SequencerLister lister = NK::Platform::ListSequencerPorts);
    /// Stops the timer, closes and deletes the ports, terminates PortMidi.
    ~PortMIDIImpl() override;
    PortMIDIImpl(const PortMIDIImpl&) = delete;
    PortMIDIImpl& operator=(const PortMIDIImpl&) = delete;

    const MIDIPortContainer& GetPorts() const override { return ports_; }
    /// The first input that is no loop-back: what is played to a loop-back port would come back as if played anew.
    MIDIInPort* GetDefaultInput() const override;
    /// The first output.
    MIDIOutPort* GetDefaultOutput() const override;

    /// Advances the tick counter, then reads each open input port once. [input-timer]
    void RunInputRound();

    /// Follows that device of PortMidi's.
    DeviceWatch MakeWatch(PmDeviceID device) const;

    PortMidiApi& GetApi() const { return api_; }
    NK::CSleeper& GetSleeper() const { return sleeper_; }
    /// An input port has been opened, or is about to be closed: the timer runs while any is open.
    void CountOpenInput(bool opened);
    bool RunsThreads() const { return threads_ == Threads::kRun; }

private:
    class InputTimer;

    void AddPorts(bool loopBack);
    void AddPort(PmDeviceID device, const PmDeviceInfo& info);

    PortMidiApi& api_;
    NK::CSleeper& sleeper_;
    const Threads threads_;
    const SequencerLister lister_;
    bool initialized_ = false;
    std::optional<DeviceWatch::Ports> sequencerAtStart_;
    MIDIPortContainerImpl ports_;
    std::vector<MIDIPortContext*> inputs_;  ///< among ports_, in its order
    std::atomic<int> openInputs_{0};
    std::unique_ptr<InputTimer> timer_;
};

}  // namespace LibMidi
