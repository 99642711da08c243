#include "libmidi/SynthSettingsFile.h"

#include <algorithm>
#include <cmath>

namespace LibMidi {

namespace {

std::uint32_t ReadLatency(const NK::CIniFile& section) {
    constexpr auto kLowest = static_cast<std::int32_t>(SynthSettings::kMinLatencyFrames);
    constexpr auto kHighest = static_cast<std::int32_t>(SynthSettings::kMaxLatencyFrames);
    constexpr auto kDefault = static_cast<std::int32_t>(SynthSettings::kDefaultLatencyFrames);
    return static_cast<std::uint32_t>(std::clamp(section.GetInt(L"LatencyFrames", kDefault), kLowest, kHighest));
}

double ReadGain(const NK::CIniFile& section) {
    double gain = SynthSettings::kDefaultGain;
    section.GetDouble(L"Gain", gain);
    return std::isfinite(gain) ? std::clamp(gain, 0.0, SynthSettings::kMaxGain) : SynthSettings::kDefaultGain;
}

}  // namespace

SynthSettings ReadSynthSettings(const NK::CIniFile& section) {
    SynthSettings settings;
    settings.audioDriver = section.GetString(L"AudioDriver").value_or(NK::CString());
    settings.soundFont = section.GetString(L"SoundFont").value_or(NK::CString());
    settings.latencyFrames = ReadLatency(section);
    settings.gain = ReadGain(section);
    section.GetBool(L"Reverb", settings.reverb);
    section.GetBool(L"Chorus", settings.chorus);
    return settings;
}

void WriteSynthSettings(NK::CIniFile& section, const SynthSettings& settings) {
    section.SetString(L"AudioDriver", settings.audioDriver);
    section.SetString(L"SoundFont", settings.soundFont);
    section.SetUnsigned(L"LatencyFrames", settings.latencyFrames);
    section.SetDouble(L"Gain", settings.gain);
    section.SetInt(L"Reverb", settings.reverb ? 1 : 0);
    section.SetInt(L"Chorus", settings.chorus ? 1 : 0);
}

}  // namespace LibMidi
