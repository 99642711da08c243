// A built-in synthesizer that does what the test says.
#pragma once

#include <string>
#include <vector>

#include "libmidi/SynthSettings.h"

namespace KivoraTest {

class FakeSynth : public LibMidi::SynthControl {
public:
    NK::CString GetPortName() const override { return L"Software synthesizer"; }
    std::vector<NK::CString> GetAudioDrivers() const override { return {L"pulseaudio", L"alsa"}; }
    LibMidi::SynthSettings GetSettings() const override { return settings; }
    LibMidi::Result ApplySettings(const LibMidi::SynthSettings& wanted) override {
        ++applied;
        if (!failure.IsEmpty() || (!missingFont.IsEmpty() && wanted.soundFont == missingFont)) {
            return LibMidi::kDeviceError;
        }
        settings = wanted;
        return LibMidi::kSuccess;
    }
    double GetLatencyMs(std::uint32_t latencyFrames) const override { return latencyFrames / 50.0; }
    NK::CString GetSoundFontPath() const override {
        return settings.soundFont.IsEmpty() ? defaultFont : settings.soundFont;
    }
    NK::CString Test() override {
        ++tested;
        return failure;
    }
    NK::CString GetLastError() const override { return failure; }

    LibMidi::SynthSettings settings;
    NK::CString defaultFont = L"/fonts/default-GM.sf2";
    NK::CString missingFont;  ///< which cannot be chosen
    NK::CString failure;      ///< why nothing works; empty: everything does
    int applied = 0;
    int tested = 0;
};

}  // namespace KivoraTest
