// Where the ports of devices come from. [gui]
#pragma once

#include "libmidi/PortFactory.h"

namespace Kivora {

/// The ALSA sequencer, as one client for as long as the backend or a copy of it lives. Where there is none, or the
/// environment says KIVORA_MIDI=portmidi, PortMidi; the sequencer is looked for at each new start of the list until it
/// is found.
LibMidi::BackendCreator MakeDeviceBackend();

}  // namespace Kivora
