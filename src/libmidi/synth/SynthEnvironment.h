// What the synthesizer takes from the machine and from the process's environment.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace LibMidi {

/// Variables and folders; a test fills in its own. Text is in the system's 8-bit form.
struct SynthEnvironment {
    std::string soundFont;                           ///< KIVORA_SOUNDFONT: the one font to use; empty: look for one
    std::string audioDriver;                         ///< KIVORA_AUDIO_DRIVER: the one driver to use; empty: choose
    std::string audioFile;                           ///< KIVORA_AUDIO_FILE: what FluidSynth's `file` driver writes
    std::vector<std::filesystem::path> fontFolders;  ///< searched in this order
    std::filesystem::path deviceFolder;              ///< "/dev"
    std::filesystem::path runtimeFolder;             ///< XDG_RUNTIME_DIR; may be empty

    /// The process's own. [any]
    static SynthEnvironment FromProcess();
};

/// The font named by the environment if that is a file; where none is named, "default-GM.sf2" and ".sf3" of the
/// folders, else the first of the known General MIDI fonts there. Empty if there is none. [any]
std::filesystem::path FindSoundFont(const SynthEnvironment& environment);

/// Whether a trace of a JACK server can be seen, or of PipeWire, which can answer in its place. [any]
bool IsJackServerLikely(const SynthEnvironment& environment);
/// Whether the kernel shows any sound device. [any]
bool HasSoundDevices(const SynthEnvironment& environment);

/// Names the program to PulseAudio ("Kivora LX") and keeps JACK's library from starting a server, by setting
/// PULSE_PROP_OVERRIDE and JACK_NO_START_SERVER where they are not set. As nobody may read the environment meanwhile,
/// the first call belongs into the start-up, before other threads run.
void PrepareAudioEnvironment();

}  // namespace LibMidi
