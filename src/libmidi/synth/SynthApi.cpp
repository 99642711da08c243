#include "libmidi/synth/SynthApi.h"

#include "libmidi/synth/SynthLog.h"

namespace LibMidi {

namespace {

class FluidSynthApi : public SynthApi {
public:
    FluidSynthApi() {
        for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG}) {
            fluid_set_log_function(level, OnLog, nullptr);
        }
    }

    fluid_settings_t* NewSettings() override { return new_fluid_settings(); }
    void DeleteSettings(fluid_settings_t* settings) override { delete_fluid_settings(settings); }
    int SettingsSetStr(fluid_settings_t* settings, const char* name, const char* value) override {
        return fluid_settings_setstr(settings, name, value);
    }
    int SettingsSetNum(fluid_settings_t* settings, const char* name, double value) override {
        return fluid_settings_setnum(settings, name, value);
    }
    int SettingsSetInt(fluid_settings_t* settings, const char* name, int value) override {
        return fluid_settings_setint(settings, name, value);
    }
    std::vector<std::string> SettingsOptions(fluid_settings_t* settings, const char* name) override {
        std::vector<std::string> options;
        const auto append = [](void* list, const char*, const char* option) {
            static_cast<std::vector<std::string>*>(list)->emplace_back(option);
        };
        fluid_settings_foreach_option(settings, name, &options, append);
        return options;
    }

    fluid_synth_t* NewSynth(fluid_settings_t* settings) override { return new_fluid_synth(settings); }
    void DeleteSynth(fluid_synth_t* synth) override { delete_fluid_synth(synth); }
    fluid_audio_driver_t* NewAudioDriver(fluid_settings_t* settings, fluid_synth_t* synth) override {
        return new_fluid_audio_driver(settings, synth);
    }
    fluid_audio_driver_t* NewAudioDriver2(fluid_settings_t* settings, fluid_audio_func_t function,
                                          void* data) override {
        return new_fluid_audio_driver2(settings, function, data);
    }
    void DeleteAudioDriver(fluid_audio_driver_t* driver) override { delete_fluid_audio_driver(driver); }
    int SynthSfload(fluid_synth_t* synth, const char* path, int resetPresets) override {
        return fluid_synth_sfload(synth, path, resetPresets);
    }
    int SynthSfunload(fluid_synth_t* synth, int id, int resetPresets) override {
        return fluid_synth_sfunload(synth, id, resetPresets);
    }

    int SynthNoteon(fluid_synth_t* synth, int channel, int key, int velocity) override {
        return fluid_synth_noteon(synth, channel, key, velocity);
    }
    int SynthNoteoff(fluid_synth_t* synth, int channel, int key) override {
        return fluid_synth_noteoff(synth, channel, key);
    }
    int SynthKeyPressure(fluid_synth_t* synth, int channel, int key, int value) override {
        return fluid_synth_key_pressure(synth, channel, key, value);
    }
    int SynthChannelPressure(fluid_synth_t* synth, int channel, int value) override {
        return fluid_synth_channel_pressure(synth, channel, value);
    }
    int SynthCc(fluid_synth_t* synth, int channel, int controller, int value) override {
        return fluid_synth_cc(synth, channel, controller, value);
    }
    int SynthProgramChange(fluid_synth_t* synth, int channel, int program) override {
        return fluid_synth_program_change(synth, channel, program);
    }
    int SynthPitchBend(fluid_synth_t* synth, int channel, int value) override {
        return fluid_synth_pitch_bend(synth, channel, value);
    }
    int SynthSystemReset(fluid_synth_t* synth) override { return fluid_synth_system_reset(synth); }
    int SynthAllSoundsOff(fluid_synth_t* synth, int channel) override {
        return fluid_synth_all_sounds_off(synth, channel);
    }

    void SynthSetGain(fluid_synth_t* synth, float gain) override { fluid_synth_set_gain(synth, gain); }
    int SynthReverbOn(fluid_synth_t* synth, int group, int on) override {
        return fluid_synth_reverb_on(synth, group, on);
    }
    int SynthChorusOn(fluid_synth_t* synth, int group, int on) override {
        return fluid_synth_chorus_on(synth, group, on);
    }
    int SynthProcess(fluid_synth_t* synth, int length, int effectCount, float* effects[], int outCount,
                     float* out[]) override {
        return fluid_synth_process(synth, length, effectCount, effects, outCount, out);
    }

private:
    static void OnLog(int level, const char* message, void*) { SynthLog::Write(level <= FLUID_ERR, message); }
};

}  // namespace

SynthApi& SystemSynthApi() {
    static FluidSynthApi* const api = new FluidSynthApi;
    return *api;
}

}  // namespace LibMidi
