// What becomes of a message that a device has sent. [any]
#pragma once

#include <cstdint>
#include <optional>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// The event of a channel message, with time 0 and data bytes of 7 bits. Nothing for system messages and for a first
/// byte that is no status.
std::optional<MIDIEvent> ToInputEvent(std::uint8_t status, std::uint8_t data1, std::uint8_t data2);

}  // namespace LibMidi
