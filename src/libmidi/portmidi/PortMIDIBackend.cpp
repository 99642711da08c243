#include "libmidi/portmidi/PortMIDIBackend.h"

#include "libmidi/portmidi/PortMIDIImpl.h"

namespace LibMidi {

BackendCreator PortMIDIBackend() {
    return [] { return std::make_unique<PortMIDIImpl>(); };
}

}  // namespace LibMidi
