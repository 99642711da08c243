#include "libmidi/MIDIPlayerQueue.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "libmidi/ArrivalOrder.h"
#include "libmidi/CaptureClock.h"
#include "libmidi/MIDIPortContainer.h"
#include "libmidi/PlayedHistory.h"

namespace LibMidi {

namespace {

/// The order in which ready events leave; the smallest first.
enum EventClass : int { kRetriggeredOff = 0, kOther = 2, kNoteOff = 3, kDurationOff = 4 };

constexpr NK::MIDI::TMIDIMessage kNothingSounds{NK::MIDI::TMIDIMessage::kSystemReset, 0, 0, 0};

struct ReadyEvent {
    TakenEvent content;
    EventClass eventClass;
    std::uint32_t sequence;  ///< the place in the order of queueing, process-wide
};

/// Puts the smallest class on top of the heap. Equal classes are never ordered, not by their sequence either.
bool LeavesLater(const ReadyEvent& a, const ReadyEvent& b) noexcept {
    return a.eventClass > b.eventClass;
}

/// An event that is not ready yet.
struct WaitingEvent {
    TakenEvent content;
    ArrivalOrder::Turn turn;
};

struct SoundingNote {
    std::uint32_t remainingMs;
    std::uint8_t channel;  ///< 0..15
    std::uint8_t note;     ///< 0..127
    int target;
    bool isCaptured;
    bool isRemembered;
};

std::uint32_t TakeSequence() noexcept {
    static std::atomic<std::uint32_t> counter{0};
    return counter.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

class MIDIPlayerQueue::State {
public:
    explicit State(NK::CSleeper& sleeperToUse) : sleeper(sleeperToUse) {}

    void Queue(const SynthEventBase& event) NK_REQUIRES(lock) {
        if (event.event.status != 0) {
            Arrive({event, {}});
        }
    }

    void Queue(BlockSynthEvent&& block) NK_REQUIRES(lock) {
        if (!block.events.empty()) {
            Arrive({static_cast<const SynthEventBase&>(block), std::move(block.events)});
        }
    }

    /// Holds the lock for a change; after it the player's thread is woken if something has become ready.
    class NK_SCOPED_CAPABILITY Change {
    public:
        explicit Change(State& state) NK_ACQUIRE(state.lock) : state_(state) {
            state_.lock.Lock();
            wasEmpty_ = state_.ready.empty();
        }
        // The analysis cannot see that this is the lock that was taken above.
        ~Change() NK_RELEASE() NK_NO_THREAD_SAFETY_ANALYSIS {
            const bool wakes = wasEmpty_ && !state_.ready.empty();
            if (wakes) {
                state_.readySinceNs = NK::CWakeup::NowNs();
            }
            state_.lock.Unlock();
            if (wakes) {
                state_.wakeup.Wake();
            }
        }
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;

    private:
        State& state_;
        bool wasEmpty_;
    };

    /// What is ready goes now, held back or not.
    void Release() {
        if (readySinceNs.exchange(kLongAgo) != kLongAgo) {
            wakeup.Wake();
        }
    }

    bool IsRoundDue(std::int64_t& untilNs) NK_REQUIRES(lock) {
        untilNs = NK::CWakeup::kNever;
        if (!ready.empty()) {
            if (!holding) {
                return true;
            }
            untilNs = readySinceNs + kLongestHoldNs;
            return untilNs <= NK::CWakeup::NowNs();
        }
        if (sounding.empty() || roundClock == nullptr) {
            return false;
        }
        const auto next = std::min_element(
            sounding.begin(), sounding.end(),
            [](const SoundingNote& a, const SoundingNote& b) { return a.remainingMs < b.remainingMs; });
        const std::int64_t leftNs = next->remainingMs * kNsPerMs - (ReadRoundClock() - advancedToNs);
        untilNs = NK::CWakeup::NowNs() + std::min(leftNs, kLongestTrustNs);
        return leftNs <= 0;
    }

    /// A clock that goes back stands still: what the rounds have advanced to is never later.
    std::int64_t ReadRoundClock() NK_REQUIRES(lock) {
        const std::int64_t nowNs = roundClock->GetTimeNs();
        advancedToNs = std::min(advancedToNs, nowNs);
        return nowNs;
    }

    /// Whole milliseconds since what the rounds have advanced to; none while nothing sounds that they would end.
    std::uint32_t TakeElapsedMs() NK_REQUIRES(lock) {
        if (roundClock == nullptr || sounding.empty()) {
            return 0;
        }
        const std::int64_t elapsedMs = (ReadRoundClock() - advancedToNs) / kNsPerMs;
        advancedToNs += elapsedMs * kNsPerMs;
        return static_cast<std::uint32_t>(std::min<std::int64_t>(elapsedMs, UINT32_MAX));
    }

    void Advance(std::uint32_t elapsedMs) NK_REQUIRES(lock) {
        if (elapsedMs == 0 && sounding.empty()) {
            return;
        }
        std::size_t kept = 0;
        for (SoundingNote& note : sounding) {
            if (note.remainingMs <= elapsedMs) {
                PushNoteOff(note, 0, kDurationOff);
            } else {
                note.remainingMs -= elapsedMs;
                sounding[kept++] = note;
            }
        }
        sounding.erase(sounding.begin() + static_cast<std::ptrdiff_t>(kept), sounding.end());
        UpdateWork();
    }

    TakenEvent Take() NK_REQUIRES(lock) {
        std::pop_heap(ready.begin(), ready.end(), LeavesLater);
        TakenEvent taken = std::move(ready.back().content);
        ready.pop_back();
        if (ready.empty()) {
            BeginNextTurn();
        }
        UpdateWork();
        if (capturing && taken.event.isCaptured) {
            Capture(taken);
        }
        if (history && taken.event.isRemembered) {
            Remember(taken);
        }
        return taken;
    }

    void TakeReady(std::vector<TakenEvent>& out) NK_REQUIRES(lock) {
        while (!ready.empty()) {
            TakenEvent taken = Take();
            if (taken.event.isWritten) {
                out.push_back(std::move(taken));
            }
        }
    }

    void Clear() NK_REQUIRES(lock) {
        ready.clear();
        waiting.clear();
        firstWaiting = 0;
        sounding.clear();
        order.Clear();
        UpdateWork();
    }

    bool IsDone(bool readyOnly) const NK_REQUIRES(lock) { return ready.empty() && (readyOnly || sounding.empty()); }

    void UpdateWork() NK_REQUIRES(lock) { hasWork.store(!IsDone(false), std::memory_order_release); }

    bool WaitUntilDone(bool readyOnly, std::uint32_t timeOut) NK_EXCLUDES(lock) {
        for (std::uint32_t polls = std::min(timeOut, 1U);; --polls) {
            {
                const CLockGuard guard(lock);
                if (IsDone(readyOnly)) {
                    return true;
                }
            }
            if (polls == 0) {
                return false;
            }
            Release();
            sleeper.Sleep(1);
        }
    }

    static constexpr std::int64_t kNsPerMs = 1'000'000;
    /// The clock of the rounds is looked at again after this, as it need not go as the system's does.
    static constexpr std::int64_t kLongestTrustNs = 10 * kNsPerMs;
    static constexpr std::int64_t kLongAgo = 0;

    NK::CSleeper& sleeper;
    mutable CCriticalSection lock;
    NK::CWakeup wakeup;
    std::atomic<bool> hasWork{false};
    std::atomic<bool> holding{false};
    std::atomic<std::int64_t> readySinceNs{kLongAgo};  ///< on the clock of the waits; of what has been ready longest
    NK::CTimeSource* roundClock NK_GUARDED_BY(lock) = nullptr;
    std::int64_t advancedToNs NK_GUARDED_BY(lock) = 0;      ///< on the clock of the rounds
    std::vector<ReadyEvent> ready NK_GUARDED_BY(lock);      ///< a heap under LeavesLater
    std::vector<WaitingEvent> waiting NK_GUARDED_BY(lock);  ///< by turn; none while nothing is ready
    std::size_t firstWaiting NK_GUARDED_BY(lock) = 0;       ///< what stands before it is ready already
    std::vector<SoundingNote> sounding NK_GUARDED_BY(lock);
    ArrivalOrder order NK_GUARDED_BY(lock);
    bool accepting NK_GUARDED_BY(lock) = true;
    bool keepsOrder NK_GUARDED_BY(lock) = false;
    std::atomic<bool> capturing{false};  ///< written under the lock
    CaptureStore captured NK_GUARDED_BY(lock);
    mutable CaptureClock clock NK_GUARDED_BY(lock);
    NK::CTimeSource* source NK_GUARDED_BY(lock) = nullptr;
    std::shared_ptr<PlayedHistory> history NK_GUARDED_BY(lock);
    std::uint32_t captureTimeMs NK_GUARDED_BY(lock) = 0;   ///< of the capture that was stopped
    std::uint32_t lastCapturedMs NK_GUARDED_BY(lock) = 0;  ///< from the start of the capture

private:
    static std::uint8_t ChannelOf(const SynthEventBase& event) noexcept { return event.event.GetChannel(); }
    static std::uint8_t NoteOf(const SynthEventBase& event) noexcept {
        return NK::MIDI::TMIDIMessage::DataOf(event.event.data1);
    }

    void Arrive(TakenEvent&& content) NK_REQUIRES(lock) {
        if (!accepting) {
            return;
        }
        const ArrivalOrder::Turn turn = keepsOrder ? Place(content) : order.GetPresent();
        if (turn == order.GetPresent()) {
            MakeReady(std::move(content));
            return;
        }
        const auto later =
            std::upper_bound(waiting.begin() + static_cast<std::ptrdiff_t>(firstWaiting), waiting.end(), turn,
                             [](ArrivalOrder::Turn sought, const WaitingEvent& event) { return sought < event.turn; });
        waiting.insert(later, {std::move(content), turn});
    }

    ArrivalOrder::Turn Place(const TakenEvent& content) NK_REQUIRES(lock) {
        return content.block.empty() ? order.Place(content.event.event) : order.PlaceInOrderWithAll();
    }

    void MakeReady(TakenEvent&& content) NK_REQUIRES(lock) {
        const SynthEventBase event = content.event;
        const bool isNote = event.IsNote() && event.isWritten;
        if (isNote) {
            EndSounding(event);
        }
        Push(std::move(content), event.IsNoteOff() ? kNoteOff : kOther);
        if (isNote && !event.IsNoteOff() && event.duration > 0) {
            sounding.push_back({ToRemainingMs(event.duration), ChannelOf(event), NoteOf(event), event.target,
                                event.isCaptured, event.isRemembered});
        }
        UpdateWork();
    }

    /// From the last round on: the next one takes off what has passed since then.
    std::uint32_t ToRemainingMs(std::int32_t durationMs) NK_REQUIRES(lock) {
        const auto duration = static_cast<std::uint32_t>(durationMs);
        if (roundClock == nullptr) {
            return duration;
        }
        const std::int64_t nowNs = ReadRoundClock();
        if (sounding.empty()) {
            advancedToNs = nowNs;
        }
        const std::int64_t passedMs = (nowNs - advancedToNs) / kNsPerMs;
        return static_cast<std::uint32_t>(std::min<std::int64_t>(duration + passedMs, UINT32_MAX));
    }

    /// Everything that was ready has left: what has waited for nothing else becomes ready.
    void BeginNextTurn() NK_REQUIRES(lock) {
        order.BeginNextTurn();
        while (firstWaiting < waiting.size() && waiting[firstWaiting].turn == order.GetPresent()) {
            MakeReady(std::move(waiting[firstWaiting++].content));
        }
        if (firstWaiting == waiting.size()) {
            waiting.clear();
            firstWaiting = 0;
        }
    }

    void EndSounding(const SynthEventBase& event) NK_REQUIRES(lock) {
        const auto earlier = std::find_if(sounding.begin(), sounding.end(), [&event](const SoundingNote& note) {
            return note.target == event.target && note.note == NoteOf(event) && note.channel == ChannelOf(event);
        });
        if (earlier != sounding.end()) {
            PushNoteOff(*earlier, event.event.time, kRetriggeredOff);
            sounding.erase(earlier);
        }
    }

    void PushNoteOff(const SoundingNote& note, std::uint32_t time, EventClass eventClass) NK_REQUIRES(lock) {
        const NoteEvent noteOff(time, note.channel, note.note, 0, NK::MIDI::TMIDIMessage::kNoteOff);
        order.MarkPresent(noteOff);
        SynthEventBase event(noteOff, note.target);
        event.isCaptured = note.isCaptured;
        event.isRemembered = note.isRemembered;
        Push({event, {}}, eventClass);
    }

    void Push(TakenEvent&& content, EventClass eventClass) NK_REQUIRES(lock) {
        ready.push_back({std::move(content), eventClass, TakeSequence()});
        std::push_heap(ready.begin(), ready.end(), LeavesLater);
    }

    void Capture(const TakenEvent& taken) NK_REQUIRES(lock) {
        lastCapturedMs = clock.GetMs();
        if (taken.block.empty()) {
            captured.Append({lastCapturedMs, taken.event.event.ToMessage()});
        }
        for (const MIDIEvent& event : taken.block) {
            captured.Append({lastCapturedMs, event.ToMessage()});
        }
    }

    void Remember(const TakenEvent& taken) NK_REQUIRES(lock) {
        if (taken.block.empty()) {
            history->Append(taken.event.event.ToMessage());
        }
        for (const MIDIEvent& event : taken.block) {
            history->Append(event.ToMessage());
        }
    }
};

MIDIPlayerQueue::MIDIPlayerQueue(NK::CSleeper& sleeper) : state_(std::make_unique<State>(sleeper)) {
}

MIDIPlayerQueue::~MIDIPlayerQueue() = default;

void MIDIPlayerQueue::SendMessage(NK::MIDI::TMIDIMessage message, std::uint32_t time) {
    if (message.status != 0) {
        Queue(SynthEventBase(MIDIEvent::FromMessage(message, time)));
    }
}

void MIDIPlayerQueue::PlayNote(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity, int duration,
                               std::uint32_t time) {
    Queue(NoteSynthEvent(velocity, duration, time, channel, note, kFirstPort, SynthEventBase::kDefaultPriority));
}

void MIDIPlayerQueue::Queue(const SynthEventBase& event) {
    const State::Change change(*state_);
    state_->Queue(event);
}

void MIDIPlayerQueue::Queue(BlockSynthEvent block) {
    std::erase_if(block.events, [](const MIDIEvent& event) { return event.status == 0; });
    const State::Change change(*state_);
    state_->Queue(std::move(block));
}

bool MIDIPlayerQueue::WaitUntilIdle(std::uint32_t timeOut) {
    return state_->WaitUntilDone(false, timeOut);
}

bool MIDIPlayerQueue::WaitUntilEmpty(std::uint32_t timeOut) {
    return state_->WaitUntilDone(true, timeOut);
}

void MIDIPlayerQueue::AdvanceAndTake(std::uint32_t elapsedMs, std::vector<TakenEvent>& out) {
    const CLockGuard guard(state_->lock);
    state_->Advance(elapsedMs);
    state_->TakeReady(out);
}

TakenEvent MIDIPlayerQueue::TakeNext() {
    const CLockGuard guard(state_->lock);
    while (!state_->ready.empty()) {
        if (TakenEvent taken = state_->Take(); taken.event.isWritten) {
            return taken;
        }
    }
    throw CMIDIException(L"MIDI input queue is empty.");
}

void MIDIPlayerQueue::Advance(std::uint32_t elapsedMs) {
    const State::Change change(*state_);
    state_->Advance(elapsedMs);
}

void MIDIPlayerQueue::BeginRounds(NK::CTimeSource& clock) {
    const CLockGuard guard(state_->lock);
    state_->roundClock = &clock;
    state_->advancedToNs = clock.GetTimeNs();
}

void MIDIPlayerQueue::EndRounds() {
    const CLockGuard guard(state_->lock);
    state_->roundClock = nullptr;
}

bool MIDIPlayerQueue::IsRoundDue(std::int64_t& untilNs) {
    const CLockGuard guard(state_->lock);
    return state_->IsRoundDue(untilNs);
}

void MIDIPlayerQueue::TakeRound(std::vector<TakenEvent>& out, Round round) {
    const CLockGuard guard(state_->lock);
    std::int64_t untilNs = 0;
    if (round == Round::kIfDue && !state_->IsRoundDue(untilNs)) {
        return;  // by now somebody holds it back
    }
    state_->Advance(state_->TakeElapsedMs());
    state_->TakeReady(out);
    state_->readySinceNs = State::kLongAgo;
}

NK::CWakeup& MIDIPlayerQueue::GetWakeup() {
    return state_->wakeup;
}

void MIDIPlayerQueue::HoldBack() {
    state_->holding = true;
}

void MIDIPlayerQueue::LetGo() {
    state_->holding = false;
    if (state_->readySinceNs != State::kLongAgo) {
        state_->wakeup.Wake();
    }
}

bool MIDIPlayerQueue::HasWork() const noexcept {
    return state_->hasWork.load(std::memory_order_acquire);
}

void MIDIPlayerQueue::SetAccepting(bool on) {
    const CLockGuard guard(state_->lock);
    state_->accepting = on;
}

void MIDIPlayerQueue::LoseOutput() {
    const CLockGuard guard(state_->lock);
    if (state_->accepting && state_->capturing) {
        state_->captured.Append({state_->clock.GetMs(), kNothingSounds});
    }
    if (state_->accepting && state_->history) {
        state_->history->Append(kNothingSounds);
    }
    state_->accepting = false;
}

void MIDIPlayerQueue::SetKeepsOrder(bool on) {
    const CLockGuard guard(state_->lock);
    state_->keepsOrder = on;
}

void MIDIPlayerQueue::Clear() {
    const CLockGuard guard(state_->lock);
    state_->Clear();
}

void MIDIPlayerQueue::SetTimeSource(NK::CTimeSource* source) {
    const CLockGuard guard(state_->lock);
    state_->clock.SetSource(source);
    state_->source = source;
    if (state_->history) {
        state_->history->SetTimeSource(source);
    }
}

void MIDIPlayerQueue::SetHistory(std::shared_ptr<PlayedHistory> history) {
    const CLockGuard guard(state_->lock);
    state_->history = std::move(history);
    if (state_->history) {
        state_->history->SetTimeSource(state_->source);
    }
}

void MIDIPlayerQueue::StartCapture() {
    CaptureStore former;
    const CLockGuard guard(state_->lock);
    std::swap(former, state_->captured);
    state_->capturing = true;
    state_->lastCapturedMs = 0;
    state_->clock.Restart();
}

void MIDIPlayerQueue::StopCapture() {
    const CLockGuard guard(state_->lock);
    if (state_->capturing) {
        state_->captureTimeMs = state_->clock.GetMs();
        state_->capturing = false;
    }
}

bool MIDIPlayerQueue::IsCapturing() const {
    return state_->capturing;
}

std::uint32_t MIDIPlayerQueue::GetCaptureTimeMs() const {
    const CLockGuard guard(state_->lock);
    return state_->capturing ? state_->clock.GetMs() : state_->captureTimeMs;
}

std::int32_t MIDIPlayerQueue::GetIdleTimeMs() const {
    const CLockGuard guard(state_->lock);
    return state_->capturing ? static_cast<std::int32_t>(state_->clock.GetMs() - state_->lastCapturedMs) : -1;
}

std::uint32_t MIDIPlayerQueue::GetCapturedCount() const {
    const CLockGuard guard(state_->lock);
    return state_->captured.GetCount();
}

void MIDIPlayerQueue::VisitCaptured(std::uint32_t from, const std::function<void(const CapturedEvent&)>& visit) const {
    GetCaptured().Visit(from, visit);
}

CaptureStore::View MIDIPlayerQueue::GetCaptured() const {
    const CLockGuard guard(state_->lock);
    return state_->captured.GetView();
}

void MIDIPlayerQueue::ClearCaptured() {
    CaptureStore former;
    const CLockGuard guard(state_->lock);
    std::swap(former, state_->captured);
}

}  // namespace LibMidi
