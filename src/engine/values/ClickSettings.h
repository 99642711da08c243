// How the metronome is heard. [owner]
#pragma once

#include <cstdint>

#include "nk/nk_ini_file.h"

namespace Kivora {

/// Plain values; the defaults are a metronome that is seen and not heard.
struct ClickSettings {
    enum class Sound : int {
        kSilent,
        kOutput,  ///< on the open output
        kSynth    ///< on the built-in synthesizer alone, whatever plays the rest
    };
    static constexpr int kMostBeats = 12;
    static constexpr int kMostCountIn = 2;

    Sound sound = Sound::kSilent;
    int barNote = 76;    ///< of the percussion, at the first beat of a bar: a high wood block
    int beatNote = 77;   ///< at the others: a low wood block
    int loudness = 100;  ///< 1..127, of the first beat; the others have three quarters of it
    int beatsPerBar = 4;
    int countInBars = 0;  ///< before a recording

    bool operator==(const ClickSettings&) const = default;

    /// From and to a section of their own, which is added, with its keys, where something is not the default. What is
    /// out of range is brought into it.
    static ClickSettings Read(NK::CIniFile& file);
    void Write(NK::CIniFile& file) const;
};

}  // namespace Kivora
