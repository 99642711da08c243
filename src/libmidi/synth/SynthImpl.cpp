#include "libmidi/synth/SynthImpl.h"

#include "libmidi/synth/SynthOutPort.h"

namespace LibMidi {

SynthImpl::SynthImpl(const std::shared_ptr<Synthesizer>& synthesizer) {
    if (synthesizer->HasSoundFont()) {
        ports_.Append(std::make_unique<SynthOutPort>(synthesizer));
    }
}

}  // namespace LibMidi
