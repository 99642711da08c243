#include "libmidi/synth/SynthImpl.h"

#include <utility>

#include "libmidi/synth/SynthOutPort.h"

namespace LibMidi {

SynthImpl::SynthImpl(const std::shared_ptr<Synthesizer>& synthesizer) {
    if (synthesizer->HasSoundFont()) {
        ports_.Append(std::make_unique<SynthOutPort>(synthesizer));
    }
}

BackendCreator MakeSynthBackend(std::shared_ptr<Synthesizer> synthesizer) {
    return [synthesizer = std::move(synthesizer)] { return std::make_unique<SynthImpl>(synthesizer); };
}

}  // namespace LibMidi
