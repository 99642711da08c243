// The built-in synthesizer: its settings, the choice of the audio driver and the font, and the open session.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "libmidi/MIDIPort.h"
#include "libmidi/synth/SynthDriverTrials.h"
#include "libmidi/synth/SynthEnvironment.h"
#include "libmidi/synth/SynthReason.h"
#include "libmidi/SynthSettings.h"
#include "nk/nk_critical_section.h"

namespace LibMidi {

class SynthApi;
class SynthSession;
struct SynthDeviceConfig;

/// Outlives the port sets that play through it, so that the settings survive a new set. Open(), Close() and the
/// settings are for one thread [gui]; Write() excludes Open() and Close() by the caller's lock.
class Synthesizer : public SynthControl {
public:
    /// How long the caller of an operation is held up at most, one by one.
    struct Limits {
        std::chrono::milliseconds driverStart{2500};  ///< each driver; then the audio system counts as hanging
        std::chrono::milliseconds fontLoad{150};      ///< a slower font goes on loading while the port is open
        std::chrono::milliseconds apply{5000};
        std::chrono::milliseconds close{250};   ///< then the thread frees the rest in its own time
        std::chrono::milliseconds stall{2000};  ///< that long without taking any sound the audio system stands still
        std::chrono::milliseconds hang{10000};  ///< that long, and it is taken for lost
    };

    /// With the installed FluidSynth and the process's environment; calls PrepareAudioEnvironment().
    Synthesizer();
    /// The API object outlives this and every thread that hangs in it.
    Synthesizer(SynthApi& api, SynthEnvironment environment, Limits limits);
    ~Synthesizer() override;
    Synthesizer(const Synthesizer&) = delete;
    Synthesizer& operator=(const Synthesizer&) = delete;

    bool HasSoundFont() const { return !FindFont().empty(); }
    /// A font that goes before the one of the settings, and is none of them, until settings with another font are
    /// applied. Before Open(); CheckSoundFont() has nothing against it.
    void SetRunFont(std::filesystem::path font) { runFont_ = std::move(font); }
    /// Starts the audio system and loads the font. The drivers are tried in the order pipewire, jack, pulseaudio, alsa,
    /// unless the environment or the settings name one. False, with the reason in GetLastError(), when nothing can
    /// sound.
    bool Open();
    /// Silences at once and frees everything; an audio system that is slow to let go does so behind the caller's back.
    void Close();
    bool IsOpen() const { return session_ != nullptr; }
    /// Nobody is to open it again: what a look has begun goes.
    void LetGo();
    /// What has become of the session that Open() began. When it has failed or hangs, each look takes the attempt to
    /// begin another one a step further, in that one's thread; with kBack one plays already, and Open() after Close()
    /// takes it over.
    DeviceState LookAtSession();
    /// False when the session has failed, with the reason in GetLastError(). [any]
    bool Write(const MIDIEvent& event);
    /// FluidSynth's name of the driver that plays; empty while closed.
    const std::string& GetActiveDriver() const { return activeDriver_; }

    /// Starts each audio system that Open() would try, for as long as `listen` takes, while a test note plays. The
    /// session goes on, and is what plays on its own. Needs a sound font that can be played.
    SynthDriverTrials TryDrivers(const std::function<void()>& listen);

    NK::CString GetPortName() const override;
    std::vector<NK::CString> GetAudioDrivers() const override;
    SynthSettings GetSettings() const override { return settings_; }
    Result ApplySettings(const SynthSettings& settings) override;
    double GetLatencyMs(std::uint32_t latencyFrames) const override;
    NK::CString GetSoundFontPath() const override;
    NK::CString Test() override;
    NK::CString GetLastError() const override;

private:
    using StuckThread = std::pair<std::string, std::weak_ptr<const void>>;

    std::filesystem::path FindFont() const;
    std::string GetForcedDriver(const SynthSettings& settings) const;
    SynthDeviceConfig MakeConfig(const SynthSettings& settings) const;
    /// Why the driver is not worth a try; empty if it is.
    SynthReason FindObstacle(const std::string& driver, bool isForced) const;
    std::unique_ptr<SynthSession> StartSession(SynthReason& reason);
    std::unique_ptr<SynthSession> TryDriver(const std::string& driver, bool isForced, SynthReason& reason);
    void EndSession(std::unique_ptr<SynthSession>& session);
    std::vector<std::string> GetCandidates() const;
    /// How long the session has been taking no sound.
    std::chrono::steady_clock::duration GetStandstill();
    bool IsSpareReady() const;
    bool LookForSpare();
    void BeginSpare();
    void NoteStuck(const std::string& driver, const SynthSession& session);
    bool IsStuck(const std::string& driver) const;
    void SetLastError(const SynthReason& reason);

    SynthApi& api_;
    const SynthEnvironment environment_;
    const Limits limits_;
    const std::vector<std::string> installedDrivers_;
    SynthSettings settings_;
    std::filesystem::path runFont_;  ///< empty for none
    std::string activeDriver_;
    std::unique_ptr<SynthSession> session_;
    std::unique_ptr<SynthSession> testSession_;
    std::unique_ptr<SynthSession> spare_;  ///< is to take over from one that has failed
    std::string spareDriver_;
    std::chrono::steady_clock::time_point spareBegin_;
    std::size_t nextCandidate_ = 0;
    int looksToWait_ = 0;             ///< before the next attempt
    std::uint64_t playedFrames_ = 0;  ///< at the last look at which there were more than before
    std::chrono::steady_clock::time_point playedAt_;
    std::vector<StuckThread> stuck_;  ///< the driver in whose start each hangs
    mutable CCriticalSection errorLock_;
    SynthReason lastError_ NK_GUARDED_BY(errorLock_);
};

}  // namespace LibMidi
