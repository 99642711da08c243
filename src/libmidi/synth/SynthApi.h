// The calls of FluidSynth that the backend makes, one to one, so that its code runs against a mock too.
#pragma once

#include <fluidsynth.h>

#include <string>
#include <vector>

namespace LibMidi {

/// Each operation is the FluidSynth function of the same name, `fluid_` left out; results and ownership are that
/// function's. FluidSynth 2.2 or later. [any]
class SynthApi {
public:
    virtual ~SynthApi() = default;

    virtual fluid_settings_t* NewSettings() = 0;
    virtual void DeleteSettings(fluid_settings_t* settings) = 0;
    virtual int SettingsSetStr(fluid_settings_t* settings, const char* name, const char* value) = 0;
    virtual int SettingsSetNum(fluid_settings_t* settings, const char* name, double value) = 0;
    virtual int SettingsSetInt(fluid_settings_t* settings, const char* name, int value) = 0;
    /// `fluid_settings_foreach_option`, as a list.
    virtual std::vector<std::string> SettingsOptions(fluid_settings_t* settings, const char* name) = 0;

    virtual fluid_synth_t* NewSynth(fluid_settings_t* settings) = 0;
    virtual void DeleteSynth(fluid_synth_t* synth) = 0;
    virtual fluid_audio_driver_t* NewAudioDriver(fluid_settings_t* settings, fluid_synth_t* synth) = 0;
    virtual fluid_audio_driver_t* NewAudioDriver2(fluid_settings_t* settings, fluid_audio_func_t function,
                                                  void* data) = 0;
    virtual void DeleteAudioDriver(fluid_audio_driver_t* driver) = 0;
    virtual int SynthSfload(fluid_synth_t* synth, const char* path, int resetPresets) = 0;
    virtual int SynthSfunload(fluid_synth_t* synth, int id, int resetPresets) = 0;

    virtual int SynthNoteon(fluid_synth_t* synth, int channel, int key, int velocity) = 0;
    virtual int SynthNoteoff(fluid_synth_t* synth, int channel, int key) = 0;
    virtual int SynthKeyPressure(fluid_synth_t* synth, int channel, int key, int value) = 0;
    virtual int SynthChannelPressure(fluid_synth_t* synth, int channel, int value) = 0;
    virtual int SynthCc(fluid_synth_t* synth, int channel, int controller, int value) = 0;
    virtual int SynthProgramChange(fluid_synth_t* synth, int channel, int program) = 0;
    virtual int SynthPitchBend(fluid_synth_t* synth, int channel, int value) = 0;
    virtual int SynthSystemReset(fluid_synth_t* synth) = 0;
    virtual int SynthAllSoundsOff(fluid_synth_t* synth, int channel) = 0;

    virtual void SynthSetGain(fluid_synth_t* synth, float gain) = 0;
    virtual int SynthReverbOn(fluid_synth_t* synth, int group, int on) = 0;
    virtual int SynthChorusOn(fluid_synth_t* synth, int group, int on) = 0;
    virtual int SynthProcess(fluid_synth_t* synth, int length, int effectCount, float* effects[], int outCount,
                             float* out[]) = 0;
};

/// The installed FluidSynth, one object for the process. Its messages go to SynthLog instead of the standard error.
SynthApi& SystemSynthApi();

}  // namespace LibMidi
