// What a MIDI message does to a synthesizer. [owner]
#pragma once

#include "libmidi/MIDIEvent.h"
#include "libmidi/synth/SynthApi.h"

namespace LibMidi {

/// Whether the message can make FluidSynth read samples from the sound font: program change and system reset.
bool LoadsSamples(const MIDIEvent& event) noexcept;

/// Plays one message. Notes, key pressure, controllers, program change, channel pressure, pitch wheel and the system
/// reset (0xFF) act; any other status is dropped. That FluidSynth has nothing to do, as for the end of a note that does
/// not sound or a program that the sound font lacks, is no failure. Data bytes are taken AND 0x7F.
void SendToSynth(SynthApi& api, fluid_synth_t* synth, const MIDIEvent& event);

}  // namespace LibMidi
