// A player whose rounds the test runs, over the real queue.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"

namespace KivoraTest {

/// Writes what the queue holds to the first output whenever RunRound() is called; time is the clock's. For one thread.
class FakePlayer : public LibMidi::MIDIPlayer {
public:
    FakePlayer(NK::CTimeSource& clock, NK::CSleeper& sleeper)
        : clock_(clock), queue_(std::make_shared<ListenedQueue>(*this, sleeper)), previousMs_(clock.GetTimeMs()) {
        queue_->SetTimeSource(&clock);
    }
    ~FakePlayer() override {
        queue_->SetAccepting(false);
        log("player destroyed");
    }

    void SetTimeSource(NK::CTimeSource* source) override { timeSource = source; }
    std::shared_ptr<LibMidi::MIDIPlayerQueue> GetSink() override { return queue_; }
    int AttachOutput(LibMidi::MIDIOutPort* port) override {
        outputs_.emplace_back(nextBinding_, port);
        return nextBinding_++;
    }
    void DetachOutput(int binding) override {
        std::erase_if(outputs_, [binding](const auto& output) { return output.first == binding; });
    }
    bool Start() override {
        if (failsToStart) {
            return false;
        }
        running_ = true;
        writeFailed_ = false;
        previousMs_ = clock_.GetTimeMs();
        queue_->SetAccepting(true);
        return true;
    }
    void Stop() override { running_ = false; }
    bool IsRunning() const override { return running_; }
    bool HasWriteFailed() const override { return writeFailed_; }
    void AddListener(LibMidi::MIDIPlayerListener*) override {}
    void RemoveListener(LibMidi::MIDIPlayerListener*) override {}

    void RunRound() {
        if (!running_) {
            return;
        }
        const std::int64_t now = clock_.GetTimeMs();
        const auto elapsed = static_cast<std::uint32_t>(now > previousMs_ ? now - previousMs_ : 0);
        previousMs_ = now;
        taken_.clear();
        queue_->AdvanceAndTake(elapsed, taken_);
        for (const LibMidi::TakenEvent& taken : taken_) {
            if (!outputs_.empty() && outputs_.front().second->Write(&taken.event.event, 1) != LibMidi::kSuccess) {
                writeFailed_ = true;
                running_ = false;
                return;
            }
        }
    }

    std::size_t GetOutputCount() const { return outputs_.size(); }

    bool failsToStart = false;
    NK::CTimeSource* timeSource = nullptr;
    std::function<void(const std::string&)> log = [](const std::string&) {};
    /// Called with each message that is handed to the sink, and whether it is a note with a duration.
    std::function<void(const LibMidi::MIDIEvent&, bool timed)> onSend;

private:
    class ListenedQueue : public LibMidi::MIDIPlayerQueue {
    public:
        ListenedQueue(FakePlayer& player, NK::CSleeper& sleeper) : MIDIPlayerQueue(sleeper), player_(player) {}

        using MIDIPlayerQueue::Queue;
        void Queue(const LibMidi::SynthEventBase& event) override {
            if (player_.onSend && event.isWritten) {
                player_.onSend(event.event, event.duration > 0);
            }
            MIDIPlayerQueue::Queue(event);
        }

    private:
        FakePlayer& player_;
    };

    NK::CTimeSource& clock_;
    std::shared_ptr<LibMidi::MIDIPlayerQueue> queue_;
    std::int64_t previousMs_;
    std::vector<std::pair<int, LibMidi::MIDIOutPort*>> outputs_;
    std::vector<LibMidi::TakenEvent> taken_;
    int nextBinding_ = 0;
    bool running_ = false;
    bool writeFailed_ = false;
};

}  // namespace KivoraTest
