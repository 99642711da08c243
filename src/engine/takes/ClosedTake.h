// The end of what a take leaves open.
#pragma once

#include <cstdint>

#include "libmidi/CaptureStore.h"

namespace Kivora {

/// The events with a note-off for every note-on and a 0 for every pedal that is down: where a message ends several at
/// one blow (all notes off, reset all controllers) right before it, and at `endMs`, when the take ended, for what was
/// held then. A take in which nothing is open stays as it is. [any]
LibMidi::CaptureStore::View CloseTake(const LibMidi::CaptureStore::View& captured, std::uint32_t endMs);

}  // namespace Kivora
