// The port set of the built-in synthesizer. [gui]
#pragma once

#include <memory>

#include "libmidi/PortFactory.h"
#include "libmidi/synth/Synthesizer.h"

namespace LibMidi {

/// One output port where a sound font is found, else no port; then it is looked for again at the next rescan.
class SynthImpl : public MIDIPortsImpl {
public:
    explicit SynthImpl(const std::shared_ptr<Synthesizer>& synthesizer);

    const MIDIPortContainer& GetPorts() const override { return ports_; }
    MIDIInPort* GetDefaultInput() const override { return nullptr; }
    MIDIOutPort* GetDefaultOutput() const override { return ports_.FindFirstOutput(true); }
    bool IsFixed() const override { return ports_.GetCount() > 0; }

private:
    MIDIPortContainerImpl ports_;
};

}  // namespace LibMidi
