// The settings of the built-in synthesizer in an INI file. [any]
#pragma once

#include "libmidi/SynthSettings.h"
#include "nk/nk_ini_file.h"

namespace LibMidi {

/// The keys are "AudioDriver", "SoundFont", "LatencyFrames", "Gain", "Reverb" and "Chorus". Both work on the section
/// that the file's cursor stands on. Reading: a key that is missing or no (finite) number takes the default of
/// SynthSettings, a number outside its range the nearest one inside.
SynthSettings ReadSynthSettings(const NK::CIniFile& section);
void WriteSynthSettings(NK::CIniFile& section, const SynthSettings& settings);

}  // namespace LibMidi
