#include "libmidi/synth/SynthEnvironment.h"

#include <cstdlib>
#include <string_view>
#include <system_error>

#include "nk/platform/platform_environment.h"

namespace LibMidi {

namespace {

namespace fs = std::filesystem;

// In the order of preference: the distribution's choice first, then from the fullest font down.
constexpr const char* kFontNames[] = {"default-GM.sf2",
                                      "default-GM.sf3",
                                      "default.sf2",
                                      "default.sf3",
                                      "MuseScore_General.sf2",
                                      "MuseScore_General.sf3",
                                      "MuseScore_General_Full.sf2",
                                      "FluidR3_GM.sf2",
                                      "FluidR3_GM.sf3",
                                      "FluidR3Mono_GM.sf3",
                                      "GeneralUser-GS.sf2",
                                      "GeneralUser_GS.sf2",
                                      "MuseScore_General_Lite.sf3",
                                      "MuseScore_General_Lite.sf2",
                                      "TimGM6mb.sf2",
                                      "TimGM6mb.sf3"};

std::string ReadVariable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool IsFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

bool HasEntry(const fs::path& folder, std::string_view prefix) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().filename().native().starts_with(prefix)) {
            return true;
        }
    }
    return false;
}

}  // namespace

SynthEnvironment SynthEnvironment::FromProcess() {
    return {.soundFont = ReadVariable("KIVORA_SOUNDFONT"),
            .audioDriver = ReadVariable("KIVORA_AUDIO_DRIVER"),
            .audioFile = ReadVariable("KIVORA_AUDIO_FILE"),
            .fontFolders = {"/usr/share/sounds/sf2", "/usr/share/sounds/sf3", "/usr/share/soundfonts",
                            "/app/share/sounds/sf2"},  // the last one inside a Flatpak
            .deviceFolder = "/dev",
            .runtimeFolder = ReadVariable("XDG_RUNTIME_DIR")};
}

fs::path FindSoundFont(const SynthEnvironment& environment) {
    if (!environment.soundFont.empty()) {
        return IsFile(environment.soundFont) ? fs::path(environment.soundFont) : fs::path();
    }
    for (const char* name : kFontNames) {
        for (const fs::path& folder : environment.fontFolders) {
            if (fs::path path = folder / name; IsFile(path)) {
                return path;
            }
        }
    }
    return {};
}

bool IsJackServerLikely(const SynthEnvironment& environment) {
    std::error_code ignored;
    return HasEntry(environment.deviceFolder / "shm", "jack") ||
           (!environment.runtimeFolder.empty() && fs::exists(environment.runtimeFolder / "pipewire-0", ignored));
}

bool HasSoundDevices(const SynthEnvironment& environment) {
    return HasEntry(environment.deviceFolder / "snd", "pcm");
}

void PrepareAudioEnvironment() {
    NK::Platform::SetEnvironmentDefault("PULSE_PROP_OVERRIDE", "application.name='Kivora LX'");
    NK::Platform::SetEnvironmentDefault("JACK_NO_START_SERVER", "1");
}

}  // namespace LibMidi
