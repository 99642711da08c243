// The engine without a device, faster than real time. [owner]
#pragma once

#include <cstdint>
#include <memory>

#include "libmidi/CaptureStore.h"
#include "midi/reader/SMFContent.h"
#include "nk/nk_string.h"

namespace Kivora {

class CKivora;
class EngineControls;
class SteppedClock;

/// Plays MIDI files as if a MIDI keyboard sent them: every note goes through voices, split and arpeggiators as what is
/// played does. The same file gives the same messages at the same times whenever and wherever it is played, random
/// arpeggios included. For a thread without a role, as it plays the parts of all of them; it needs an application
/// object, with or without a display.
class OfflineEngine {
public:
    /// The longest piece that is played.
    static constexpr std::int64_t kLongestMs = std::int64_t{6} * 60 * 60 * 1000;

    /// The folders are those of EngineDependencies, for the presets. No settings are loaded: the engine is as at its
    /// first start.
    OfflineEngine(const NK::CString& userDataDir, const NK::CString& factoryPresetsDir);
    ~OfflineEngine();
    OfflineEngine(const OfflineEngine&) = delete;
    OfflineEngine& operator=(const OfflineEngine&) = delete;

    /// For loading a preset.
    EngineControls& GetControls() { return *controls_; }

    /// What comes out, from the file's begin on; the time is kLongestMs at most. Bank selects, program changes and
    /// channel volumes are left out: the sounds are the engine's. Keys that the file leaves down, and its pedals, are
    /// let go at its end. Once.
    LibMidi::CaptureStore::View Play(const NK::MIDI::SMFContent& file);

private:
    void StepTo(std::int64_t ms);

    const std::unique_ptr<SteppedClock> clock_;
    std::unique_ptr<CKivora> engine_;
    std::unique_ptr<EngineControls> controls_;
    std::int64_t playedMs_ = 0;
};

}  // namespace Kivora
