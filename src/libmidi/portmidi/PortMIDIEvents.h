// What becomes of a message that PortMidi has received. [any]
#pragma once

#include <portmidi.h>

#include <optional>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// As for every backend (libmidi/InputEvents.h), but that channel pressure keeps its low four bits only.
std::optional<MIDIEvent> ToInputEvent(PmMessage message);

}  // namespace LibMidi
