// What the engine has played, as a sound file. [any]
#pragma once

#include "libmidi/CaptureStore.h"
#include "libmidi/synth/OfflineRenderer.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Writes the sound of the captured events, from the capture's begin until it has died away, as a WAVE file for the
/// user. False when the file could not be written: then an older one of that name is as it was, and GetFileFailure()
/// may tell why.
bool SaveRenderedSound(const LibMidi::CaptureStore::View& captured, LibMidi::OfflineRenderer& renderer,
                       const NK::CString& path);

}  // namespace Kivora
