// Turns captured events into the track of a MIDI file.
#pragma once

#include <functional>

#include "engine/takes/TakeGrid.h"
#include "libmidi/CaptureStore.h"
#include "midi/CMIDIMessageX.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Beats per minute of a saved recording: the file's tick is then exactly one millisecond.
inline constexpr int kRecordingTempo = 120;

/// Where a track begins. kFirstNote removes the leading silence: the first note stands at 100 ms and what comes before
/// it at 0; a track without a note keeps its times. kCapture keeps all times.
enum class TrackBegin { kFirstNote, kCapture };

/// Calls `visit` for the events of the track in order: four texts that name the program and its maker; the captured
/// channel messages; controller 123 (all notes off) on the first channel at the time of the last event. System messages
/// are left out, since a MIDI file has no room for them. [any]
void VisitRecordedTrack(const LibMidi::CaptureStore::View& captured,
                        const std::function<void(const NK::MIDI::CMIDIMessageX&)>& visit,
                        TrackBegin begin = TrackBegin::kFirstNote);

/// Writes the track of the captured events to a MIDI file for the user. False when there are none and when the file
/// could not be written: then an older file of that name is as it was. [any]
bool SaveRecordedTrack(const LibMidi::CaptureStore::View& captured, const NK::CString& path,
                       TrackBegin begin = TrackBegin::kFirstNote);
/// The same on the bars and beats of a grid, which is not empty: with its tempi and meters, at
/// TakeTicks::kTicksPerBeat, each event at most half a tick from where it was played. What comes before the bar of the
/// first note stands at its beginning. [any]
bool SaveTrackOnGrid(const LibMidi::CaptureStore::View& captured, const TakeGrid& grid, const NK::CString& path);

}  // namespace Kivora
