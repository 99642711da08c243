#include "libmidi/synth/SynthDevice.h"

#include <algorithm>
#include <cmath>

#include "libmidi/MIDIPortContainer.h"
#include "libmidi/synth/SynthErrors.h"
#include "libmidi/synth/SynthLog.h"
#include "libmidi/synth/SynthMessages.h"
#include "nk/nk_translation_mark.h"

namespace LibMidi {

namespace {

constexpr int kAllGroups = -1;
constexpr int kAllChannels = -1;
constexpr int kBlockFrames = 64;  // FluidSynth computes sound in blocks of 64 frames
constexpr int kMinAlsaPeriods = 2;
constexpr int kMaxAlsaPeriods = 4;
constexpr const char* kAlsa = "alsa";
constexpr const char* kFile = "file";
constexpr const char* kJack = "jack";

// The first calls FluidSynth itself, as the others do not know our limiter: "file" takes no callback, and a JACK server
// may run at another rate than ours, which FluidSynth follows only where it knows the synthesizer.
bool DrivesSynthItself(const std::string& driver) {
    return driver == kFile || driver == kJack;
}

SynthReason ReasonOr(const SynthLog& log, const SynthReason& otherwise) {
    return log.GetError().empty() ? otherwise : ExplainSynthError(log.GetError(), otherwise);
}

}  // namespace

SynthDevice::SynthDevice(SynthApi& api) : api_(api), settings_(api.NewSettings()) {
    const SynthLog log;
    if (settings_ != nullptr) {
        api_.SettingsSetNum(settings_, "synth.sample-rate", kSampleRate);
        api_.SettingsSetInt(settings_, "synth.cpu-cores", 1);
        api_.SettingsSetInt(settings_, "synth.dynamic-sample-loading", 1);
        api_.SettingsSetStr(settings_, "audio.jack.id", "Kivora LX");
        api_.SettingsSetInt(settings_, "audio.jack.autoconnect", 1);
        synth_ = api_.NewSynth(settings_);
    }
    if (synth_ == nullptr) {
        if (settings_ != nullptr) {
            api_.DeleteSettings(settings_);
        }
        throw CMIDIException(
            ReasonOr(log, SynthReason(KIVORA_TR_NOOP("Synthesizer", "The synthesizer cannot be created.")))
                .ToText()
                .c_str());
    }
}

SynthDevice::~SynthDevice() {
    const SynthLog log;
    api_.SynthAllSoundsOff(synth_, kAllChannels);
    StopDriver();
    api_.DeleteSynth(synth_);
    api_.DeleteSettings(settings_);
}

void SynthDevice::SetSound(const SynthDeviceConfig& config) {
    const SynthLog log;
    isTouched_ = true;
    api_.SynthSetGain(synth_, static_cast<float>(config.gain));
    api_.SynthReverbOn(synth_, kAllGroups, config.reverb ? 1 : 0);
    api_.SynthChorusOn(synth_, kAllGroups, config.chorus ? 1 : 0);
}

bool SynthDevice::StartDriver(const SynthDeviceConfig& config, SynthReason& reason) {
    const SynthLog log;
    StopDriver();
    const int frames = static_cast<int>(config.latencyFrames);
    const bool isAlsa = config.audioDriver == kAlsa;
    const int periods = isAlsa ? std::clamp(frames / kBlockFrames, kMinAlsaPeriods, kMaxAlsaPeriods) : kMinAlsaPeriods;
    api_.SettingsSetInt(settings_, "audio.periods", periods);
    api_.SettingsSetInt(settings_, "audio.period-size", isAlsa ? frames / periods : frames);
    api_.SettingsSetStr(settings_, "audio.file.name", config.audioFile.c_str());
    if (api_.SettingsSetStr(settings_, "audio.driver", config.audioDriver.c_str()) == FLUID_OK) {
        driver_ = DrivesSynthItself(config.audioDriver) ? api_.NewAudioDriver(settings_, synth_)
                                                        : api_.NewAudioDriver2(settings_, OnAudio, this);
    }
    if (driver_ == nullptr) {
        reason = ReasonOr(log, SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio driver does not start.")));
    }
    return driver_ != nullptr;
}

bool SynthDevice::LoadFont(const std::string& path, SynthReason& reason) {
    const SynthLog log;
    const int font = api_.SynthSfload(synth_, path.c_str(), 1);
    if (font == FLUID_FAILED) {
        reason = ReasonOr(log, SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound font cannot be loaded.")));
        return false;
    }
    if (font_ != FLUID_FAILED) {
        api_.SynthSfunload(synth_, font_, 1);
    }
    font_ = font;
    return true;
}

void SynthDevice::Send(const MIDIEvent& event) {
    const SynthLog log;
    isTouched_ = true;  // first, for the audio thread to render this event's sound from its start
    SendToSynth(api_, synth_, event);
}

void SynthDevice::Render(float* left, float* right, int frames) noexcept {
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    float* out[] = {left, right};
    api_.SynthProcess(synth_, frames, 2, out, 2, out);
    limiter_.Process(left, right, static_cast<std::size_t>(frames));
}

std::vector<std::string> SynthDevice::ListDrivers(SynthApi& api) {
    const SynthLog log;
    fluid_settings_t* settings = api.NewSettings();
    if (settings == nullptr) {
        return {};
    }
    std::vector<std::string> drivers = api.SettingsOptions(settings, "audio.driver");
    api.DeleteSettings(settings);
    return drivers;
}

bool SynthDevice::IsAtRest() noexcept {
    if (isTouched_.exchange(false)) {
        silentFrames_ = 0;
    }
    return silentFrames_ >= kFramesToRest;
}

void SynthDevice::NoteSound(const float* left, const float* right, int frames) noexcept {
    const auto isHeard = [](float sample) { return std::abs(sample) > kSilence; };
    const bool isSilent = std::none_of(left, left + frames, isHeard) && std::none_of(right, right + frames, isHeard);
    silentFrames_ = isSilent ? silentFrames_ + static_cast<std::uint64_t>(frames) : 0;
}

int SynthDevice::OnAudio(void* self, int frames, int, float*[], int outCount, float* out[]) {
    if (outCount < 2) {
        return FLUID_FAILED;
    }
    auto& device = *static_cast<SynthDevice*>(self);
    if (device.IsAtRest()) {
        std::fill_n(out[0], frames, 0.0F);
        std::fill_n(out[1], frames, 0.0F);
    } else {
        device.Render(out[0], out[1], frames);
        device.NoteSound(out[0], out[1], frames);
    }
    device.playedFrames_.fetch_add(static_cast<std::uint64_t>(frames), std::memory_order_relaxed);
    return FLUID_OK;
}

void SynthDevice::StopDriver() {
    if (driver_ != nullptr) {
        api_.DeleteAudioDriver(driver_);
        driver_ = nullptr;
    }
}

}  // namespace LibMidi
