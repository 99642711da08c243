// A FluidSynth that only notes what is asked of it.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "libmidi/synth/SynthApi.h"

namespace KivoraTest {

/// Holds up whoever passes while it is shut.
class Gate {
public:
    void Shut() { Set(true); }
    void Open() { Set(false); }
    void Pass() {
        std::unique_lock lock(mutex_);
        ++passing_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !shut_; });
    }
    /// Until somebody has come to the gate.
    void WaitUntilReached() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return passing_ > 0; });
    }

private:
    void Set(bool shut) {
        const std::lock_guard guard(mutex_);
        shut_ = shut;
        passing_ = shut ? 0 : passing_;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool shut_ = false;
    int passing_ = 0;
};

/// Notes the calls as texts, in their order, with the thread that made them.
class FakeSynthApi : public LibMidi::SynthApi {
public:
    struct Call {
        std::string text;
        std::thread::id thread;
    };

    // Set before the calls that they concern.
    std::vector<std::string> drivers{"alsa", "file", "jack", "oss", "pulseaudio"};
    std::vector<std::string> failingDrivers;
    std::string failingFont;
    bool canMakeSynth = true;
    int messageResult = FLUID_OK;
    float level = 0;   ///< of the sound that it computes
    int computed = 0;  ///< blocks of sound
    Gate driverStart;
    Gate driverEnd;
    Gate fontLoad;
    Gate programChange;

    std::vector<Call> GetCalls() const {
        const std::lock_guard guard(mutex_);
        return calls_;
    }
    std::vector<std::string> GetTexts() const {
        std::vector<std::string> texts;
        for (const Call& call : GetCalls()) {
            texts.push_back(call.text);
        }
        return texts;
    }
    bool Has(const std::string& text) const {
        const auto texts = GetTexts();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }
    std::ptrdiff_t Count(const std::string& text) const {
        const auto texts = GetTexts();
        return std::count(texts.begin(), texts.end(), text);
    }
    void Forget() {
        const std::lock_guard guard(mutex_);
        calls_.clear();
    }
    /// Waits until the call has been made.
    void WaitFor(const std::string& text) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] {
            return std::any_of(calls_.begin(), calls_.end(), [&](const Call& call) { return call.text == text; });
        });
    }
    /// What the audio system does that was started first.
    void TakeSound(int frames) {
        const std::lock_guard guard(mutex_);
        takers_.front()(frames);
    }
    /// Waits until everything that was made is deleted.
    void WaitUntilFreed() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return live_ == 0; });
    }
    int GetLive() const {
        const std::lock_guard guard(mutex_);
        return live_;
    }

    fluid_settings_t* NewSettings() override { return Make<fluid_settings_t>(); }
    void DeleteSettings(fluid_settings_t*) override { Delete(); }
    int SettingsSetStr(fluid_settings_t*, const char* name, const char* value) override {
        if (std::string(name) == "audio.driver") {
            driver_ = value;
        }
        return Note(std::string(name) + "=" + value, FLUID_OK);
    }
    int SettingsSetNum(fluid_settings_t*, const char* name, double value) override {
        return Note(std::string(name) + "=" + std::to_string(value), FLUID_OK);
    }
    int SettingsSetInt(fluid_settings_t*, const char* name, int value) override {
        return Note(std::string(name) + "=" + std::to_string(value), FLUID_OK);
    }
    std::vector<std::string> SettingsOptions(fluid_settings_t*, const char*) override { return drivers; }

    fluid_synth_t* NewSynth(fluid_settings_t*) override { return canMakeSynth ? Make<fluid_synth_t>() : nullptr; }
    void DeleteSynth(fluid_synth_t*) override { Delete(); }
    fluid_audio_driver_t* NewAudioDriver(fluid_settings_t*, fluid_synth_t*) override { return StartDriver("driver "); }
    fluid_audio_driver_t* NewAudioDriver2(fluid_settings_t*, fluid_audio_func_t function, void* data) override {
        {
            const std::lock_guard guard(mutex_);
            takers_.push_back([function, data](int frames) {
                std::vector<float> left(static_cast<std::size_t>(frames));
                std::vector<float> right(left);
                float* out[] = {left.data(), right.data()};
                function(data, frames, 0, nullptr, 2, out);
            });
        }
        return StartDriver("driver2 ");
    }
    void DeleteAudioDriver(fluid_audio_driver_t*) override {
        Note("delete driver", 0);
        driverEnd.Pass();
        Delete();
    }
    int SynthSfload(fluid_synth_t*, const char* path, int) override {
        fontLoad.Pass();
        return Note(std::string("load ") + path, path == failingFont ? FLUID_FAILED : ++font_);
    }
    int SynthSfunload(fluid_synth_t*, int id, int) override { return Note("unload " + std::to_string(id), FLUID_OK); }

    int SynthNoteon(fluid_synth_t*, int channel, int key, int velocity) override {
        return Message("on", {channel, key, velocity});
    }
    int SynthNoteoff(fluid_synth_t*, int channel, int key) override { return Message("off", {channel, key}); }
    int SynthKeyPressure(fluid_synth_t*, int channel, int key, int value) override {
        return Message("key pressure", {channel, key, value});
    }
    int SynthChannelPressure(fluid_synth_t*, int channel, int value) override {
        return Message("channel pressure", {channel, value});
    }
    int SynthCc(fluid_synth_t*, int channel, int controller, int value) override {
        return Message("cc", {channel, controller, value});
    }
    int SynthProgramChange(fluid_synth_t*, int channel, int program) override {
        programChange.Pass();
        return Message("program", {channel, program});
    }
    int SynthPitchBend(fluid_synth_t*, int channel, int value) override { return Message("bend", {channel, value}); }
    int SynthSystemReset(fluid_synth_t*) override { return Message("reset", {}); }
    int SynthAllSoundsOff(fluid_synth_t*, int channel) override { return Message("sounds off", {channel}); }

    void SynthSetGain(fluid_synth_t*, float gain) override { Note("gain " + std::to_string(gain), 0); }
    int SynthReverbOn(fluid_synth_t*, int, int on) override { return Message("reverb", {on}); }
    int SynthChorusOn(fluid_synth_t*, int, int on) override { return Message("chorus", {on}); }
    int SynthProcess(fluid_synth_t*, int frames, int, float*[], int, float* out[]) override {
        ++computed;
        std::fill_n(out[0], frames, level);
        return FLUID_OK;
    }

private:
    template <class Thing>
    Thing* Make() {
        const std::lock_guard guard(mutex_);
        ++live_;
        return reinterpret_cast<Thing*>(this);
    }
    void Delete() {
        const std::lock_guard guard(mutex_);
        --live_;
        changed_.notify_all();
    }
    fluid_audio_driver_t* StartDriver(const std::string& kind) {
        driverStart.Pass();
        Note(kind + driver_, 0);
        const bool fails = std::find(failingDrivers.begin(), failingDrivers.end(), driver_) != failingDrivers.end();
        return fails ? nullptr : Make<fluid_audio_driver_t>();
    }
    int Message(std::string text, const std::vector<int>& values) {
        for (const int value : values) {
            text += " " + std::to_string(value);
        }
        return Note(text, messageResult);
    }
    int Note(std::string text, int result) {
        const std::lock_guard guard(mutex_);
        calls_.push_back({std::move(text), std::this_thread::get_id()});
        changed_.notify_all();
        return result;
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Call> calls_;
    std::vector<std::function<void(int frames)>> takers_;
    std::string driver_;
    int live_ = 0;
    int font_ = 0;
};

}  // namespace KivoraTest
