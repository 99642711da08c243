// PortMidi as a backend of the port factory. [gui]
#pragma once

#include "libmidi/PortFactory.h"

namespace LibMidi {

/// Makes the port set of the PortMidi library.
BackendCreator PortMIDIBackend();

}  // namespace LibMidi
