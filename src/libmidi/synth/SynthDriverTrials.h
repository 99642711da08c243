// What came of starting the audio systems one by one. [owner]
#pragma once

#include <string>
#include <vector>

#include "nk/nk_string.h"

namespace LibMidi {

struct SynthDriverTrial {
    std::string driver;  ///< FluidSynth's name
    NK::CString reason;  ///< why it does not play, in words; empty: it plays
};

using SynthDriverTrials = std::vector<SynthDriverTrial>;

}  // namespace LibMidi
