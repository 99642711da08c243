// One FluidSynth synthesizer with its sound font and its audio driver.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "libmidi/synth/PeakLimiter.h"
#include "libmidi/synth/SynthApi.h"
#include "libmidi/synth/SynthReason.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// What a synthesizer plays and where. Text is in the system's 8-bit form.
struct SynthDeviceConfig {
    std::string soundFont;    ///< path
    std::string audioDriver;  ///< FluidSynth's name
    std::string audioFile;    ///< path, for the driver "file" only
    std::uint32_t latencyFrames = 0;
    double gain = 0;
    bool reverb = true;
    bool chorus = true;
};

/// Owns the FluidSynth objects. Samples are loaded when a program first needs them. Send() may be called from any one
/// thread at a time while the audio driver runs; everything else from one thread. No operation throws, except where a
/// line says so.
class SynthDevice {
public:
    static constexpr double kSampleRate = 48000.0;
    /// So many frames without a sound and without a message, and the audio driver is given silence without the
    /// synthesizer being asked, until something is sent or set.
    static constexpr std::uint64_t kFramesToRest = 30 * 48000;
    /// What no converter of 16 bits tells from silence: the effects of FluidSynth never come to nothing.
    static constexpr float kSilence = 1e-6F;

    /// Throws CMIDIException when FluidSynth cannot make a synthesizer. No font is loaded and no driver runs.
    explicit SynthDevice(SynthApi& api);
    /// Silences and frees everything.
    ~SynthDevice();
    SynthDevice(const SynthDevice&) = delete;
    SynthDevice& operator=(const SynthDevice&) = delete;

    /// Sets gain, reverb and chorus.
    void SetSound(const SynthDeviceConfig& config);
    /// Starts the audio driver in place of the one that runs. False, `reason` in words, when it does not start: then
    /// none runs.
    bool StartDriver(const SynthDeviceConfig& config, SynthReason& reason);
    /// Loads the font in place of the present one; the channels keep their programs. False, `reason` in words, when it
    /// cannot be loaded: then the present one stays.
    bool LoadFont(const std::string& path, SynthReason& reason);
    void Send(const MIDIEvent& event);
    /// Overwrites both sides with the next frames of sound, limited. Only where no audio driver runs.
    void Render(float* left, float* right, int frames) noexcept;

    /// How much sound the audio driver has taken so far; stays 0 with a driver that makes FluidSynth render by itself.
    /// [any]
    std::uint64_t GetPlayedFrames() const noexcept { return playedFrames_.load(std::memory_order_relaxed); }

    /// The audio drivers that the installed FluidSynth has.
    static std::vector<std::string> ListDrivers(SynthApi& api);

private:
    bool IsAtRest() noexcept;
    void NoteSound(const float* left, const float* right, int frames) noexcept;
    static int OnAudio(void* self, int frames, int effectCount, float* effects[], int outCount, float* out[]);
    void StopDriver();

    SynthApi& api_;
    fluid_settings_t* settings_ = nullptr;
    fluid_synth_t* synth_ = nullptr;
    fluid_audio_driver_t* driver_ = nullptr;
    int font_ = FLUID_FAILED;
    std::atomic<std::uint64_t> playedFrames_{0};
    std::atomic<bool> isTouched_{true};  ///< something was sent or set since the audio driver was given sound last
    std::uint64_t silentFrames_ = 0;     ///< of the audio driver's thread
    PeakLimiter limiter_{static_cast<float>(kSampleRate)};
};

}  // namespace LibMidi
