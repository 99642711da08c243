// The timed player as the engine holds it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "libmidi/MIDIEvent.h"
#include "libmidi/MIDIPort.h"
#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"

namespace LibMidi {

class MIDIPlayerQueue;

/// Is told which notes were played, on the events thread, with no lock held. It may remove itself and be deleted from
/// inside its own call. [events]
class MIDIPlayerListener {
public:
    virtual ~MIDIPlayerListener() = default;
    virtual void OnNotePlayed(const MIDIEvent& event) = 0;
};

/// Plays what its sink holds to the attached output ports. [gui] unless a line says otherwise.
class MIDIPlayer {
public:
    virtual ~MIDIPlayer() = default;
    /// Not owned, outlives the player; before Start(). The unit is a nanosecond. The sink's capture is timed by it too.
    virtual void SetTimeSource(NK::CTimeSource* source) = 0;
    /// Where messages are handed in. The caller may keep it beyond the player's life.
    virtual std::shared_ptr<MIDIPlayerQueue> GetSink() = 0;
    /// Appends an output, not owned; returns its binding (0 or more).
    virtual int AttachOutput(MIDIOutPort* port) = 0;
    /// Forgets the output of that binding; on return the player does not write to it any more.
    virtual void DetachOutput(int binding) = 0;
    /// Both threads run. False when they cannot be started, or without a time source. Turns the sink's accepting on.
    virtual bool Start() = 0;
    /// Ends both threads; Start() works again afterwards. What is still queued stays queued. Not from a listener.
    virtual void Stop() = 0;
    /// False also once a write has failed: a device was pulled out. [any]
    virtual bool IsRunning() const = 0;
    /// Whether the last run ended with a failed write; cleared by Start(). [any]
    virtual bool HasWriteFailed() const = 0;
    /// `tell` is called with no lock held when a write has failed, as soon as HasWriteFailed() says so; before Start().
    /// It must not stop the player. False: this player tells nobody.
    virtual bool TellOfFailure(std::function<void()> tell) {
        static_cast<void>(tell);
        return false;
    }
    virtual void AddListener(MIDIPlayerListener* listener) = 0;     ///< not owned. [any]
    virtual void RemoveListener(MIDIPlayerListener* listener) = 0;  ///< removes the first equal entry. [any]
};

/// Never null. [any]
std::unique_ptr<MIDIPlayer> CreateMIDIPlayer(NK::CSleeper& sleeper = NK::SystemSleeper());

}  // namespace LibMidi
