// FluidSynth's messages in the words of the program.
#pragma once

#include <string>

#include "nk/nk_string.h"

namespace LibMidi {

/// Why something failed, in the user's language: what is known to be meant by FluidSynth's message, with the system's
/// own reason where it names one; else `otherwise`, with the message behind it. [any]
NK::CString ExplainSynthError(const std::string& message, const NK::CString& otherwise);

}  // namespace LibMidi
