// The log lines about single events.
#pragma once

#include "libmidi/MIDIEvent.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// Writes `what`, the port's name and the event's bytes as a line of the log, if lines about events are wanted. [any]
void LogEvent(const wchar_t* what, const NK::CString& portName, const MIDIEvent& event);

}  // namespace LibMidi
