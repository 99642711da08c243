// An open synthesizer: the thread that starts it, does what takes long, and frees it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>

#include "libmidi/MIDIEvent.h"
#include "libmidi/synth/SynthDevice.h"
#include "libmidi/synth/SynthReason.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// Starts the audio driver and loads the font in a thread of its own. A message is played in the caller's thread,
/// except while that thread has work that may read the disk (the loading of the font, a program change, a system reset,
/// new settings): then it waits in a queue, and everything behind it too, so that the order stays and no caller waits
/// for the disk. Nothing waits without limit for an audio system that hangs: such a thread is left to itself, and frees
/// what it holds when the audio system lets it go. The operations without a mark are [gui].
class SynthSession {
public:
    using Milliseconds = std::chrono::milliseconds;
    enum class Phase { kStarting, kLoading, kReady, kFailed };
    static constexpr std::size_t kMaxWaiting = 65536;  ///< messages

    /// Throws std::system_error when no thread can be had. The API object outlives the thread.
    SynthSession(SynthApi& api, const SynthDeviceConfig& config);
    /// End() with no time granted.
    ~SynthSession();
    SynthSession(const SynthSession&) = delete;
    SynthSession& operator=(const SynthSession&) = delete;

    /// Waits while the audio driver starts; kStarting when the limit passes first.
    Phase WaitForDriver(Milliseconds limit);
    /// Waits while the font loads; kLoading when the limit passes first.
    Phase WaitForFont(Milliseconds limit);
    /// Why the session failed, in words; empty while it works. [any]
    SynthReason GetReason() const;

    /// False once the session has failed, its audio system has stopped, or kMaxWaiting messages wait. Allocates nothing
    /// once warm. [any]
    bool Write(const MIDIEvent& event);
    /// Whether it plays nothing any more: it could not be started, or its audio system has stopped.
    bool HasFailed() const;
    /// As SynthDevice::GetPlayedFrames(); 0 while it starts.
    std::uint64_t GetPlayedFrames() const;
    /// Whether it has failed for good: it plays nothing any more, whatever is applied.
    bool IsOver() const;
    /// Puts the configuration in force; on failure the former one, `reason` in words. A session that is not over works
    /// again when a configuration with which it can is applied.
    bool Apply(const SynthDeviceConfig& config, Milliseconds limit, SynthReason& reason);
    /// Plays a note for a moment, and ends the session afterwards if asked to.
    void PlayTestNote(bool endAfterwards);
    /// Silences and frees everything. False when the thread does not come back in time.
    bool End(Milliseconds limit);
    /// Expires when the thread has freed everything and this object is gone.
    std::weak_ptr<const void> GetLife() const { return worker_; }

private:
    class Worker;

    std::shared_ptr<Worker> worker_;
    std::thread thread_;
};

}  // namespace LibMidi
