#include "libmidi/SynthSettingsFile.h"

#include <gtest/gtest.h>

#include <string>

#include "nk/nk_memory_file.h"

namespace {

using namespace LibMidi;

SynthSettings Read(const std::string& keys) {
    NK::CMemoryFile file("[Synth]\n" + keys);
    NK::CIniFile ini;
    EXPECT_TRUE(ini.Load(file));
    EXPECT_TRUE(ini.SelectSection(L"Synth"));
    return ReadSynthSettings(ini);
}

TEST(SynthSettingsFile, AnEmptySectionGivesTheDefaults) {
    EXPECT_EQ(Read(""), SynthSettings());
}

TEST(SynthSettingsFile, WhatIsWrittenIsReadBack) {
    SynthSettings settings;
    settings.audioDriver = L"alsa";
    settings.soundFont = L"/home/я/Шрифт=1.sf2";
    settings.latencyFrames = 1024;
    settings.gain = 0.35;
    settings.reverb = false;
    settings.chorus = false;
    NK::CIniFile ini;
    ini.SelectOrAddSection(L"Synth");
    WriteSynthSettings(ini, settings);
    NK::CMemoryFile file;
    ASSERT_TRUE(ini.Write(file));
    ASSERT_TRUE(file.SeekToStart());
    NK::CIniFile again;
    ASSERT_TRUE(again.Load(file));
    ASSERT_TRUE(again.SelectSection(L"Synth"));
    EXPECT_EQ(ReadSynthSettings(again), settings);
}

TEST(SynthSettingsFile, TheKeysHaveTheirNames) {
    const SynthSettings read = Read(
        "AudioDriver=jack\nSoundFont=/a.sf2\nLatencyFrames=256\nGain=1.5\nReverb=0\n"
        "Chorus=off\n");
    EXPECT_EQ(read.audioDriver, L"jack");
    EXPECT_EQ(read.soundFont, L"/a.sf2");
    EXPECT_EQ(read.latencyFrames, 256U);
    EXPECT_EQ(read.gain, 1.5);
    EXPECT_FALSE(read.reverb);
    EXPECT_FALSE(read.chorus);
}

TEST(SynthSettingsFile, NumbersOutsideTheirRangeAreClamped) {
    EXPECT_EQ(Read("LatencyFrames=-5").latencyFrames, SynthSettings::kMinLatencyFrames);
    EXPECT_EQ(Read("LatencyFrames=100000").latencyFrames, SynthSettings::kMaxLatencyFrames);
    EXPECT_EQ(Read("Gain=-1").gain, 0.0);
    EXPECT_EQ(Read("Gain=9").gain, SynthSettings::kMaxGain);
}

TEST(SynthSettingsFile, WhatIsNoNumberTakesTheDefault) {
    for (const char* const gain : {"nan", "inf", "-inf", "1e309", "loud", ""}) {
        EXPECT_EQ(Read(std::string("Gain=") + gain).gain, SynthSettings::kDefaultGain) << gain;
    }
    EXPECT_EQ(Read("LatencyFrames=99999999999").latencyFrames, SynthSettings::kDefaultLatencyFrames);
    EXPECT_TRUE(Read("Reverb=perhaps").reverb);
}

}  // namespace
