// What becomes of a message that PortMidi has received.
#pragma once

#include <portmidi.h>

#include <optional>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// The event of a channel message, with time 0 and data bytes of 7 bits. Channel pressure keeps its low four bits only.
/// Nothing for system messages and for a first byte that is no status.
std::optional<MIDIEvent> ToInputEvent(PmMessage message);

}  // namespace LibMidi
