#include "app/Backends.h"

#include "libmidi/portmidi/PortMIDIBackend.h"
#include "libmidi/synth/SynthImpl.h"

namespace Kivora {

EngineDependencies CreateEngineDependencies() {
    EngineDependencies dependencies;
    const auto synthesizer = std::make_shared<LibMidi::Synthesizer>();
    dependencies.synth = synthesizer;
    dependencies.backends = {LibMidi::PortMIDIBackend(), LibMidi::MakeSynthBackend(synthesizer)};
    dependencies.createPlayer = [] { return LibMidi::CreateMIDIPlayer(); };
    return dependencies;
}

}  // namespace Kivora
