#include "libmidi/synth/SynthBackend.h"

#include <utility>

#include "libmidi/synth/SynthImpl.h"

namespace LibMidi {

BackendCreator MakeSynthBackend(std::shared_ptr<Synthesizer> synthesizer) {
    return [synthesizer = std::move(synthesizer)] { return std::make_unique<SynthImpl>(synthesizer); };
}

}  // namespace LibMidi
