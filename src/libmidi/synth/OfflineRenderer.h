// Plays MIDI into memory or a sound file, faster than real time. [owner]
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "libmidi/synth/SynthDevice.h"
#include "libmidi/SynthSettings.h"

namespace LibMidi {

/// A synthesizer without an audio system, with the sound of the built-in one. One thread at a time.
class OfflineRenderer {
public:
    static constexpr std::uint32_t kSampleRate = 48000;
    static constexpr std::uint32_t kChannels = 2;

    /// Loads the font; gain, reverb and chorus are the settings', the rest of them is not used. Throws CMIDIException
    /// with the reason when the font cannot be played.
    explicit OfflineRenderer(const std::filesystem::path& soundFont, const SynthSettings& settings = {});

    /// The next `lengthMs` milliseconds of sound, left and right in turn. The events are in the order of their times,
    /// which are milliseconds from the begin of this call; those at or behind its end are not played. What still sounds
    /// goes on in the next call.
    std::vector<float> Render(const std::vector<MIDIEvent>& events, std::uint32_t lengthMs);

private:
    SynthDevice device_;
};

}  // namespace LibMidi
