#include "app/Backends.h"

#include "libmidi/portmidi/PortMIDIBackend.h"
#include "libmidi/synth/SynthImpl.h"

namespace Kivora {

EngineDependencies CreateEngineDependencies() {
    EngineDependencies dependencies;
    dependencies.backends = {LibMidi::PortMIDIBackend(),
                             LibMidi::MakeSynthBackend(std::make_shared<LibMidi::Synthesizer>())};
    dependencies.createPlayer = [] { return LibMidi::CreateMIDIPlayer(); };
    return dependencies;
}

}  // namespace Kivora
