// Turns captured events into the track of a MIDI file.
#pragma once

#include "libmidi/CaptureStore.h"
#include "midi/CMIDIMessageX.h"
#include "nk/nk_array.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Beats per minute of a saved recording: the file's tick is then exactly one millisecond.
inline constexpr int kRecordingTempo = 120;

/// Four text events that name the program and its maker; the captured events in their order; controller 123 (all notes
/// off) on the first channel at the end. The leading silence is removed: the first note stands at 100 ms and what comes
/// before it at 0; a track without a note keeps its times. [any]
NK::CArray<NK::MIDI::CMIDIMessageX> BuildRecordedTrack(const LibMidi::CaptureStore::View& captured);

/// Writes the track of the captured events to a MIDI file for the user. False when there are none and when the file
/// could not be written: then an older file of that name is as it was. [any]
bool SaveRecordedTrack(const LibMidi::CaptureStore::View& captured, const NK::CString& path);

}  // namespace Kivora
