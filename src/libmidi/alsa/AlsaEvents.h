// Messages as the sequencer's events, and the other way. [any]
#pragma once

#include <alsa/asoundlib.h>

#include <functional>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// Visits the channel messages that an event stands for, with time 0, as libmidi/InputEvents.h makes them: one, several
/// for a controller of 14 bits and for a registered or unregistered parameter, none for everything else.
void VisitInputEvents(const snd_seq_event_t& event, const std::function<void(const MIDIEvent&)>& visit);

/// Fills in the type and the data of a message; false, with nothing changed, for one that no event of a fixed length
/// stands for.
bool FillEvent(const MIDIEvent& message, snd_seq_event_t& event);

}  // namespace LibMidi
