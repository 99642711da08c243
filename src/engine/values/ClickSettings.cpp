#include "engine/values/ClickSettings.h"

#include <algorithm>

#include "engine/values/ExtraKey.h"

namespace Kivora {

namespace {

constexpr const wchar_t* kSection = L"Kivora_Click";
constexpr int kHighest = 127;

constexpr ExtraKey kSound{kSection, L"Sound", 0};
constexpr ExtraKey kBarNote{kSection, L"BarNote", ClickSettings{}.barNote};
constexpr ExtraKey kBeatNote{kSection, L"BeatNote", ClickSettings{}.beatNote};
constexpr ExtraKey kLoudness{kSection, L"Loudness", ClickSettings{}.loudness};
constexpr ExtraKey kBeatsPerBar{kSection, L"BeatsPerBar", ClickSettings{}.beatsPerBar};
constexpr ExtraKey kCountIn{kSection, L"CountIn", ClickSettings{}.countInBars};

}  // namespace

ClickSettings ClickSettings::Read(NK::CIniFile& file) {
    ClickSettings read;
    const int sound = ReadExtraInt(file, kSound);
    read.sound = sound == 1 || sound == 2 ? static_cast<Sound>(sound) : Sound::kSilent;
    read.barNote = std::clamp(ReadExtraInt(file, kBarNote), 0, kHighest);
    read.beatNote = std::clamp(ReadExtraInt(file, kBeatNote), 0, kHighest);
    read.loudness = std::clamp(ReadExtraInt(file, kLoudness), 1, kHighest);
    read.beatsPerBar = std::clamp(ReadExtraInt(file, kBeatsPerBar), 1, kMostBeats);
    read.countInBars = std::clamp(ReadExtraInt(file, kCountIn), 0, kMostCountIn);
    return read;
}

void ClickSettings::Write(NK::CIniFile& file) const {
    WriteExtraInt(file, kSound, static_cast<int>(sound));
    WriteExtraInt(file, kBarNote, barNote);
    WriteExtraInt(file, kBeatNote, beatNote);
    WriteExtraInt(file, kLoudness, loudness);
    WriteExtraInt(file, kBeatsPerBar, beatsPerBar);
    WriteExtraInt(file, kCountIn, countInBars);
}

}  // namespace Kivora
