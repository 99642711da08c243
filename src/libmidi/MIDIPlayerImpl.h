// The timed player.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "libmidi/ListenerList.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_sleep.h"

namespace LibMidi {

/// Owns its queue and two threads: one writes what is ready and ends what has sounded long enough, the other tells the
/// listeners. Each waits until there is something to do. The rounds below are for whoever runs them without threads.
class MIDIPlayerImpl : public MIDIPlayer {
public:
    explicit MIDIPlayerImpl(NK::CSleeper& sleeper = NK::SystemSleeper());
    ~MIDIPlayerImpl() override;
    MIDIPlayerImpl(const MIDIPlayerImpl&) = delete;
    MIDIPlayerImpl& operator=(const MIDIPlayerImpl&) = delete;

    void SetTimeSource(NK::CTimeSource* source) override;
    std::shared_ptr<MIDIPlayerQueue> GetSink() override { return queue_; }
    int AttachOutput(MIDIOutPort* port) override;
    void DetachOutput(int binding) override;
    bool Start() override;
    void Stop() override;
    bool IsRunning() const override { return running_.load(); }
    bool HasWriteFailed() const override { return writeFailed_.load(); }
    bool TellOfFailure(std::function<void()> tell) override;
    /// The first one is not told what the running threads have written before.
    void AddListener(MIDIPlayerListener* listener) override;
    void RemoveListener(MIDIPlayerListener* listener) override { listeners_.Remove(listener); }

    /// The next round counts from the present time of the time source, which is needed until the player ends. [player]
    void BeginRounds();
    /// One round: the whole milliseconds since the round before elapse, the rest is carried to the next, and everything
    /// ready is written, held back or not. False when a write failed. [player]
    bool RunPlayerRound() { return RunRound(MIDIPlayerQueue::Round::kAtOnce); }
    /// Passes the note that was played first among those not yet told to the listeners. [events]
    void RunEventsRound();

private:
    class PlayerThread;
    class EventsThread;
    class NoteRing;

    struct Output {
        int binding;
        MIDIOutPort* port;
    };

    bool RunRound(MIDIPlayerQueue::Round round);
    bool WriteTaken() NK_REQUIRES(outputsLock_);
    bool WriteEvent(const MIDIEvent& event, int target) NK_REQUIRES(outputsLock_);
    bool WriteToAll(const MIDIEvent& event) NK_REQUIRES(outputsLock_);
    void OnWriteFailed();

    NK::CSleeper& sleeper_;
    NK::CTimeSource* timeSource_ = nullptr;
    const std::shared_ptr<MIDIPlayerQueue> queue_;
    ListenerList<MIDIPlayerListener> listeners_;

    CCriticalSection outputsLock_;  ///< held while a round writes
    std::vector<Output> outputs_ NK_GUARDED_BY(outputsLock_);
    int nextBinding_ NK_GUARDED_BY(outputsLock_) = 0;

    std::vector<TakenEvent> taken_;  ///< of the player thread; kept so that a round allocates nothing
    std::unique_ptr<NoteRing> played_;

    std::function<void()> tellFailure_;
    std::atomic<bool> running_{false};
    std::atomic<bool> stopping_{false};
    std::atomic<bool> writeFailed_{false};
    std::unique_ptr<PlayerThread> playerThread_;
    std::unique_ptr<EventsThread> eventsThread_;
};

}  // namespace LibMidi
