#include "libmidi/MIDIPlayerImpl.h"

#include <algorithm>
#include <array>
#include <utility>

#include "libmidi/RoundThread.h"
#include "nk/nk_logger.h"
#include "nk/nk_thread_role.h"

namespace LibMidi {

/// The notes that were written and that the listeners have not been told yet. When it is full the oldest gives way, so
/// that memory is bounded.
class MIDIPlayerImpl::NoteRing {
public:
    void Append(const MIDIEvent& event) {
        const CLockGuard guard(lock_);
        notes_[(first_ + count_) % kSize] = event;
        if (count_ < kSize) {
            count_.store(count_ + 1, std::memory_order_release);
        } else {
            first_ = (first_ + 1) % kSize;
        }
    }

    bool IsEmpty() const noexcept { return count_.load(std::memory_order_acquire) == 0; }

    void Clear() {
        const CLockGuard guard(lock_);
        count_.store(0, std::memory_order_release);
    }

    /// For the thread that takes.
    NK::CWakeup& GetWakeup() noexcept { return wakeup_; }

    bool Take(MIDIEvent& event) {
        const CLockGuard guard(lock_);
        if (IsEmpty()) {
            return false;
        }
        event = notes_[first_];
        first_ = (first_ + 1) % kSize;
        --count_;
        return true;
    }

private:
    static constexpr std::size_t kSize = 4096;

    NK::CWakeup wakeup_;
    CCriticalSection lock_;
    std::array<MIDIEvent, kSize> notes_ NK_GUARDED_BY(lock_);
    std::size_t first_ NK_GUARDED_BY(lock_) = 0;
    std::atomic<std::size_t> count_{0};  ///< written under the lock
};

class MIDIPlayerImpl::PlayerThread : public RoundThread {
public:
    explicit PlayerThread(MIDIPlayerImpl& player) : RoundThread(kLevelHighest, L"MIDI player"), player_(player) {}

    void RequestStop() override {
        RoundThread::RequestStop();
        player_.queue_->GetWakeup().Wake();
    }

private:
    void RunRounds() override {
        NK_REGISTER_THREAD_ROLE(player);
        MIDIPlayerQueue& queue = *player_.queue_;
        player_.BeginRounds();
        while (!IsStopRequested()) {
            std::int64_t untilNs = 0;
            if (!queue.IsRoundDue(untilNs)) {
                player_.sleeper_.Wait(queue.GetWakeup(), untilNs);
            } else if (!player_.RunRound(MIDIPlayerQueue::Round::kIfDue)) {
                player_.OnWriteFailed();
                break;
            }
        }
        queue.EndRounds();
    }

    MIDIPlayerImpl& player_;
};

class MIDIPlayerImpl::EventsThread : public RoundThread {
public:
    explicit EventsThread(MIDIPlayerImpl& player)
        : RoundThread(kLevelHighest, L"MIDI player events"), player_(player) {}

    void RequestStop() override {
        RoundThread::RequestStop();
        player_.played_->GetWakeup().Wake();
    }

private:
    void RunRounds() override {
        NK_REGISTER_THREAD_ROLE(events);
        NoteRing& played = *player_.played_;
        while (!IsStopRequested()) {
            if (played.IsEmpty()) {
                player_.sleeper_.Wait(played.GetWakeup(), NK::CWakeup::kNever);
            } else {
                player_.RunEventsRound();
            }
        }
    }

    MIDIPlayerImpl& player_;
};

MIDIPlayerImpl::MIDIPlayerImpl(NK::CSleeper& sleeper)
    : sleeper_(sleeper),
      queue_(std::make_shared<MIDIPlayerQueue>(sleeper)),
      listeners_(sleeper),
      played_(std::make_unique<NoteRing>()) {
}

MIDIPlayerImpl::~MIDIPlayerImpl() {
    Stop();
    queue_->SetAccepting(false);
    queue_->Clear();
    queue_->SetTimeSource(nullptr);
    queue_->EndRounds();
}

void MIDIPlayerImpl::SetTimeSource(NK::CTimeSource* source) {
    NK_ASSERT_THREAD_ROLE(gui);
    timeSource_ = source;
    queue_->SetTimeSource(source);
}

int MIDIPlayerImpl::AttachOutput(MIDIOutPort* port) {
    NK_ASSERT_THREAD_ROLE(gui);
    const CLockGuard guard(outputsLock_);
    outputs_.push_back({nextBinding_, port});
    return nextBinding_++;
}

void MIDIPlayerImpl::DetachOutput(int binding) {
    NK_ASSERT_THREAD_ROLE(gui);
    const CLockGuard guard(outputsLock_);
    std::erase_if(outputs_, [binding](const Output& output) { return output.binding == binding; });
}

bool MIDIPlayerImpl::Start() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (IsRunning()) {
        return true;
    }
    Stop();
    if (timeSource_ == nullptr) {
        return false;
    }
    writeFailed_ = false;
    stopping_ = false;
    running_ = true;
    queue_->SetAccepting(true);
    playerThread_ = std::make_unique<PlayerThread>(*this);
    eventsThread_ = std::make_unique<EventsThread>(*this);
    if (!playerThread_->Begin() || !eventsThread_->Begin()) {
        Stop();
        return false;
    }
    return true;
}

void MIDIPlayerImpl::Stop() {
    NK_ASSERT_THREAD_ROLE(gui);
    stopping_ = true;
    running_ = false;
    if (playerThread_ != nullptr) {
        playerThread_->End();
        playerThread_.reset();
    }
    if (eventsThread_ != nullptr) {
        eventsThread_->End();
        eventsThread_.reset();
    }
}

void MIDIPlayerImpl::BeginRounds() {
    queue_->BeginRounds(*timeSource_);
}

bool MIDIPlayerImpl::RunRound(MIDIPlayerQueue::Round round) {
    NK_ASSERT_THREAD_ROLE(player);
    {
        const CLockGuard guard(outputsLock_);
        taken_.clear();
        queue_->TakeRound(taken_, round);
        if (!WriteTaken()) {
            return false;
        }
    }
    if (!played_->IsEmpty() && !listeners_.IsEmpty()) {
        played_->GetWakeup().Wake();
    }
    return true;
}

bool MIDIPlayerImpl::WriteTaken() {
    for (const TakenEvent& taken : taken_) {
        for (const MIDIEvent& event : taken.block) {
            if (!WriteEvent(event, taken.event.target)) {
                return false;
            }
        }
        if (!taken.block.empty()) {
            continue;
        }
        if (!WriteEvent(taken.event.event, taken.event.target)) {
            return false;
        }
        if (taken.event.IsNote()) {
            played_->Append(taken.event.event);
        }
    }
    return true;
}

bool MIDIPlayerImpl::WriteEvent(const MIDIEvent& event, int target) {
    if (target == kAllPorts) {
        return WriteToAll(event);
    }
    std::size_t number = target > 0 ? static_cast<std::size_t>(target) : 0;
    if (number != 0 && number >= outputs_.size()) {
        NK::Log(NK::CString(L"Warning: requested MIDI port #") + NK::CString::FromInt(target) + L", number of ports=" +
                NK::CString::FromInt(static_cast<std::int64_t>(outputs_.size())) + L", falling back to port #0.");
        number = 0;
    }
    return outputs_.empty() || outputs_[number].port->Write(&event, 1) == kSuccess;
}

bool MIDIPlayerImpl::WriteToAll(const MIDIEvent& event) {
    for (const Output& output : outputs_) {
        if (stopping_.load()) {
            break;
        }
        if (output.port->Write(&event, 1) != kSuccess) {
            return false;
        }
    }
    return true;
}

void MIDIPlayerImpl::OnWriteFailed() {
    queue_->LoseOutput();
    queue_->Clear();
    writeFailed_ = true;
    running_ = false;
    if (tellFailure_) {
        tellFailure_();
    }
}

bool MIDIPlayerImpl::TellOfFailure(std::function<void()> tell) {
    NK_ASSERT_THREAD_ROLE(gui);
    tellFailure_ = std::move(tell);
    return true;
}

void MIDIPlayerImpl::AddListener(MIDIPlayerListener* listener) {
    if (running_.load() && listeners_.IsEmpty()) {
        played_->Clear();  // nobody was there to be told
    }
    listeners_.Add(listener);
}

void MIDIPlayerImpl::RunEventsRound() {
    NK_ASSERT_THREAD_ROLE(events);
    MIDIEvent event;
    if (played_->Take(event)) {
        listeners_.ForEach([&event](MIDIPlayerListener& listener) { listener.OnNotePlayed(event); });
    }
}

std::unique_ptr<MIDIPlayer> CreateMIDIPlayer(NK::CSleeper& sleeper) {
    return std::make_unique<MIDIPlayerImpl>(sleeper);
}

}  // namespace LibMidi
