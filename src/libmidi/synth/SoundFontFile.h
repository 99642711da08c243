// A first look at a sound font before it is loaded. [any]
#pragma once

#include <filesystem>
#include <istream>

#include "libmidi/synth/SynthReason.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// Why the file cannot be played, in words; empty if its outline is that of a SoundFont 2 bank: a RIFF form "sfbk" that
/// is the whole file, with the lists INFO (version 2 or 3), sdta (samples first) and pdta, the nine tables of pdta in
/// order and in whole records, and indices that stay inside the tables (SoundFont Technical Specification 2.04,
/// chapters 4 to 7; .sf3 files keep that outline). Reads the tables but no samples. The file is untrusted: any content
/// is safe to ask about.
SynthReason CheckSoundFont(const std::filesystem::path& path);
/// The same for any seekable binary stream.
SynthReason CheckSoundFont(std::istream& stream);

}  // namespace LibMidi
