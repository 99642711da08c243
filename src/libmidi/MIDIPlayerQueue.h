// The queue that the engine and the arpeggiators write to, and the capture of what leaves it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "libmidi/CaptureStore.h"
#include "libmidi/QueuedEvents.h"
#include "midi/CMIDIOutputBase.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"
#include "nk/nk_wakeup.h"

namespace LibMidi {

class PlayedHistory;

/// An event that has left the queue.
struct TakenEvent {
    SynthEventBase event;
    std::vector<MIDIEvent> block;  ///< the run of a BlockSynthEvent; empty for a single event
};

/// Ready events in a heap by class, sounding notes with their remaining time, and the captured history. One lock
/// guards all of it; every operation may be called from any thread. The order of equal classes in the heap is the
/// standard library's (std::push_heap, std::pop_heap) and is not the order of queueing.
class MIDIPlayerQueue : public NK::MIDI::CMIDIOutputBase {
public:
    explicit MIDIPlayerQueue(NK::CSleeper& sleeper = NK::SystemSleeper());
    ~MIDIPlayerQueue() override;
    MIDIPlayerQueue(const MIDIPlayerQueue&) = delete;
    MIDIPlayerQueue& operator=(const MIDIPlayerQueue&) = delete;

    /// `time` is stored, not waited for. A record with status 0 is not queued.
    void SendMessage(NK::MIDI::TMIDIMessage message, std::uint32_t time) override;
    /// Channel 0..15; `duration` in ms, 0 schedules no note-off.
    void PlayNote(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity, int duration,
                  std::uint32_t time) override;
    /// What both of the above come to. A note first ends its own sounding instance (same target, channel and note).
    virtual void Queue(const SynthEventBase& event);
    /// Not queued when empty. Its notes end no sounding ones.
    void Queue(BlockSynthEvent block);

    /// Nothing ready and nothing sounding (Empty: nothing ready). A time-out (ms) above 0 waits at most 1 ms; 0 not at
    /// all.
    bool WaitUntilIdle(std::uint32_t timeOut);
    bool WaitUntilEmpty(std::uint32_t timeOut);

    /// One round under one hold of the lock: advances the sounding notes by `elapsedMs`, then takes everything that is
    /// ready, in heap order, and captures it if a capture runs. Appends what is to be written to `out`. [player]
    void AdvanceAndTake(std::uint32_t elapsedMs, std::vector<TakenEvent>& out);
    /// Takes the next ready event that is to be written. Throws CMIDIException "MIDI input queue is empty." [player]
    TakenEvent TakeNext();
    void Advance(std::uint32_t elapsedMs);
    /// Whether anything is ready or sounding; takes no lock.
    bool HasWork() const noexcept;

    // The rounds of a player, timed by a clock. Queueing wakes its thread: what is queued is to be taken at once,
    // unless it is held back.
    /// The time of a note with a duration counts from its queueing until EndRounds(). The clock is not owned. [player]
    void BeginRounds(NK::CTimeSource& clock);
    void EndRounds();
    /// Whether something is to be taken or ended now; else the wait for it on GetWakeup() ends at `untilNs`. [player]
    bool IsRoundDue(std::int64_t& untilNs);
    enum class Round {
        kIfDue,  ///< nothing while it is held back
        kAtOnce  ///< what is held back too, for whoever calls the rounds by hand
    };
    /// AdvanceAndTake() by the whole milliseconds since the last round; the rest is carried to the next. [player]
    void TakeRound(std::vector<TakenEvent>& out, Round round = Round::kIfDue);
    NK::CWakeup& GetWakeup();

    /// Until LetGo(), what is queued is held back from rounds that are not due otherwise, so that one takes all of it;
    /// yet no longer than kLongestHoldNs, and not while somebody waits for the queue. What a round takes that is called
    /// by hand is the same with and without. [any]
    void HoldBack();
    void LetGo();
    static constexpr std::int64_t kLongestHoldNs = 1'000'000;

    /// While off, queueing drops everything, so that a player that has ended lets no memory grow. On by default; the
    /// player turns it off when a write fails and when it is destroyed, and on when it starts.
    void SetAccepting(bool on);
    /// SetAccepting(false), where what was written does not sound on: a running capture gets a system reset, once until
    /// queueing is turned on again. It is not sent, and counts as nothing that was played.
    void LoseOutput();
    /// While on, a message whose order with one that is ready matters (see ArrivalOrder) is held back until that one is
    /// taken, and is taken in the same round. Off by default: everything is ready as soon as it is queued.
    void SetKeepsOrder(bool on);
    /// Drops what is ready and what sounds.
    void Clear();

    /// The clock of the capture, not owned; null is a clock of the queue's own. A running capture goes on at the time
    /// that it has reached. A clock that goes back counts as standing still.
    void SetTimeSource(NK::CTimeSource* source);

    /// Capture of every event that leaves the queue and is to be captured, and of a System Reset where queueing is
    /// turned off meanwhile: what sounded ends there. Start clears what was captured before.
    void StartCapture();
    void StopCapture();
    bool IsCapturing() const;                ///< takes no lock
    std::uint32_t GetCaptureTimeMs() const;  ///< length so far; the final length after StopCapture()
    std::int32_t GetIdleTimeMs() const;      ///< ms since the last captured event (or the start); -1 when not capturing
    std::uint32_t GetCapturedCount() const;
    /// Calls `visit` for events from..count-1 in capture order, with no lock held. Events captured meanwhile are not
    /// visited.
    void VisitCaptured(std::uint32_t from, const std::function<void(const CapturedEvent&)>& visit) const;
    /// What was captured so far; it outlives the queue.
    CaptureStore::View GetCaptured() const;
    /// Forgets what was captured; a running capture goes on.
    void ClearCaptured();

    /// What is told of every event that leaves the queue and is to be remembered, capture or not, and of the end of
    /// what sounded where queueing is turned off; null for none. It is given the queue's time source.
    void SetHistory(std::shared_ptr<PlayedHistory> history);

private:
    class State;
    std::unique_ptr<State> state_;
};

}  // namespace LibMidi
