// FluidSynth's messages in the words of the program.
#pragma once

#include <string>

#include "libmidi/synth/SynthReason.h"

namespace LibMidi {

/// Why something failed, what is known to be meant by FluidSynth's message, with the system's
/// own reason where it names one; else `otherwise`, with the message behind it. [any]
SynthReason ExplainSynthError(const std::string& message, const SynthReason& otherwise);

}  // namespace LibMidi
