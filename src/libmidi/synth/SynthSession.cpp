#include "libmidi/synth/SynthSession.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "libmidi/synth/SynthLog.h"
#include "libmidi/synth/SynthMessages.h"
#include "midi/MIDINotes.h"
#include "nk/nk_exception.h"
#include "nk/nk_translation_mark.h"

namespace LibMidi {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kUsualWaiting = 256;
constexpr std::uint8_t kTestChannel = 15;
constexpr std::uint8_t kTestNote = NK::MIDI::kMiddleC;
constexpr std::uint8_t kTestVelocity = 100;
constexpr std::chrono::milliseconds kTestLength{500};
constexpr std::chrono::milliseconds kTestRelease{500};

}  // namespace

/// What the thread and the session share; it lives until both are done.
class SynthSession::Worker {
public:
    Worker(SynthApi& api, const SynthDeviceConfig& config)
        : api_(api), failuresBefore_(SynthLog::GetAudioFailures()), config_(config) {
        waiting_.reserve(kUsualWaiting);
        batch_.reserve(kUsualWaiting);
    }

    /// The thread's body.
    void Run() noexcept {
        try {
            SynthDevice device(api_);
            if (Start(device)) {
                Serve(device);
            }
        } catch (const NK::CException& failure) {
            Fail(SynthReason::AsItIs(failure.GetMessage()));
        } catch (const std::exception& failure) {
            Fail(SynthReason::AsItIs(NK::CString::FromUtf8(failure.what())));
        }
        const std::lock_guard guard(mutex_);
        ended_ = true;
        changed_.notify_all();
    }

    Phase WaitWhile(Phase phase, Milliseconds limit) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, limit, [&] { return phase_ != phase; });
        return phase_;
    }

    SynthReason GetReason() const {
        const std::lock_guard guard(mutex_);
        if (HasAudioStopped()) {
            return SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio system has stopped."));
        }
        return waiting_.size() >= kMaxWaiting
                   ? SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound font is still being loaded."))
                   : reason_;
    }

    bool Write(const MIDIEvent& event) {
        const std::lock_guard guard(mutex_);
        if (phase_ == Phase::kFailed || endRequested_ || HasAudioStopped()) {
            return false;
        }
        if (!busy_ && !LoadsSamples(event)) {
            device_->Send(event);
            return true;
        }
        return Enqueue(event);
    }

    bool HasFailed() const {
        const std::lock_guard guard(mutex_);
        return phase_ == Phase::kFailed || HasAudioStopped();
    }

    std::uint64_t GetPlayedFrames() const {
        const std::lock_guard guard(mutex_);
        return device_ != nullptr ? device_->GetPlayedFrames() : 0;
    }

    bool IsOver() const {
        const std::lock_guard guard(mutex_);
        return phase_ == Phase::kFailed && device_ == nullptr;
    }

    bool Apply(const SynthDeviceConfig& config, Milliseconds limit, SynthReason& reason) {
        std::unique_lock lock(mutex_);
        if ((phase_ == Phase::kFailed && device_ == nullptr) || endRequested_) {
            reason = reason_;
            return false;
        }
        requested_ = config;
        isApplied_ = false;
        busy_ = true;
        wake_.notify_one();
        if (!changed_.wait_for(lock, limit, [&] { return isApplied_ || ended_; })) {
            // What the thread has not begun stays undone.
            requested_.reset();
            reason = phase_ == Phase::kLoading
                         ? SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound font is still being loaded."))
                         : SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio system does not answer."));
            return false;
        }
        reason = isApplied_ ? applyReason_ : reason_;
        return isApplied_ && reason.IsEmpty();
    }

    void PlayTestNote(bool endAfterwards) {
        const std::lock_guard guard(mutex_);
        isTestWanted_ = true;
        endsAfterTest_ = endAfterwards;
        wake_.notify_one();
    }

    bool End(Milliseconds limit) {
        std::unique_lock lock(mutex_);
        endRequested_ = true;
        wake_.notify_one();
        return changed_.wait_for(lock, limit, [&] { return ended_; });
    }

private:
    bool Start(SynthDevice& device) {
        SynthReason reason;
        device.SetSound(config_);
        if (!device.StartDriver(config_, reason)) {
            Fail(reason);
            return false;
        }
        SetPhase(Phase::kLoading);
        if (!device.LoadFont(config_.soundFont, reason)) {
            Fail(reason);
            return false;
        }
        const std::lock_guard guard(mutex_);
        device_ = &device;
        phase_ = Phase::kReady;
        busy_ = !waiting_.empty() || requested_.has_value();
        changed_.notify_all();
        return true;
    }

    /// Until the end is requested. Messages first, so that settings come after what was written before them.
    void Serve(SynthDevice& device) {
        std::unique_lock lock(mutex_);
        while (!endRequested_) {
            if (!waiting_.empty()) {
                batch_.swap(waiting_);
                lock.unlock();
                for (const MIDIEvent& event : batch_) {
                    device.Send(event);
                }
                batch_.clear();
                lock.lock();
            } else if (requested_) {
                const SynthDeviceConfig target = *std::exchange(requested_, std::nullopt);
                lock.unlock();
                SynthReason reason;
                const bool works = Reconfigure(device, target, reason);
                lock.lock();
                applyReason_ = reason;
                isApplied_ = true;
                phase_ = works ? Phase::kReady : Phase::kFailed;
                reason_ = works ? SynthReason() : reason;
                changed_.notify_all();
            } else if (!ServeTest(device)) {
                busy_ = false;
                Wait(lock);
            }
        }
        device_ = nullptr;
    }

    /// The test note's next step, if one is due. Called with the lock held: a note's begin and end read no disk.
    bool ServeTest(SynthDevice& device) {
        const auto now = Clock::now();
        if (isTestWanted_) {
            isTestWanted_ = false;
            device.Send(NoteEvent(0, kTestChannel, kTestNote, kTestVelocity, NK::MIDI::TMIDIMessage::kNoteOn));
            noteEnd_ = now + kTestLength;
            return true;
        }
        if (noteEnd_ && now >= *noteEnd_) {
            noteEnd_.reset();
            device.Send(NoteEvent(0, kTestChannel, kTestNote, 0, NK::MIDI::TMIDIMessage::kNoteOff));
            if (endsAfterTest_) {
                testEnd_ = now + kTestRelease;
            }
            return true;
        }
        endRequested_ = endRequested_ || (testEnd_ && now >= *testEnd_);
        return endRequested_;
    }

    void Wait(std::unique_lock<std::mutex>& lock) {
        if (const auto& until = noteEnd_ ? noteEnd_ : testEnd_) {
            wake_.wait_until(lock, *until);
        } else {
            wake_.wait(lock);
        }
    }

    /// False when neither the target nor what was in force before can be had. `reason` is empty when the target can.
    bool Reconfigure(SynthDevice& device, const SynthDeviceConfig& target, SynthReason& reason) {
        const SynthDeviceConfig former = config_;
        SynthReason ignored;
        return TryConfigure(device, target, reason) || TryConfigure(device, former, ignored);
    }

    /// Changes what differs from what is in force, and keeps that up to date.
    bool TryConfigure(SynthDevice& device, const SynthDeviceConfig& target, SynthReason& reason) {
        device.SetSound(target);
        if (config_.soundFont != target.soundFont && !device.LoadFont(target.soundFont, reason)) {
            return false;
        }
        config_.soundFont = target.soundFont;
        const bool keepsDriver = isDriverRunning_ && !HasAudioStopped() && config_.audioDriver == target.audioDriver &&
                                 config_.audioFile == target.audioFile && config_.latencyFrames == target.latencyFrames;
        if (!keepsDriver) {
            failuresBefore_ = SynthLog::GetAudioFailures();
            isDriverRunning_ = device.StartDriver(target, reason);
        }
        if (isDriverRunning_) {
            config_ = target;
        }
        return isDriverRunning_;
    }

    bool Enqueue(const MIDIEvent& event) {
        if (waiting_.size() >= kMaxWaiting) {
            return false;
        }
        waiting_.push_back(event);
        busy_ = true;
        wake_.notify_one();
        return true;
    }

    void SetPhase(Phase phase) {
        const std::lock_guard guard(mutex_);
        phase_ = phase;
        changed_.notify_all();
    }

    void Fail(const SynthReason& reason) {
        const std::lock_guard guard(mutex_);
        reason_ = reason;
        phase_ = Phase::kFailed;
        changed_.notify_all();
    }

    bool HasAudioStopped() const { return SynthLog::GetAudioFailures() != failuresBefore_.load(); }

    SynthApi& api_;
    std::atomic<std::uint32_t> failuresBefore_;

    // The thread's own.
    SynthDeviceConfig config_;
    bool isDriverRunning_ = true;
    std::vector<MIDIEvent> batch_;

    // Under the lock. While `busy_` is set, the device is the thread's, else of whoever holds the lock.
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable changed_;
    Phase phase_ = Phase::kStarting;
    SynthReason reason_;
    SynthDevice* device_ = nullptr;
    std::vector<MIDIEvent> waiting_;
    bool busy_ = true;
    std::optional<SynthDeviceConfig> requested_;
    SynthReason applyReason_;
    bool isApplied_ = false;
    bool isTestWanted_ = false;
    bool endsAfterTest_ = false;
    std::optional<Clock::time_point> noteEnd_;
    std::optional<Clock::time_point> testEnd_;
    bool endRequested_ = false;
    bool ended_ = false;
};

SynthSession::SynthSession(SynthApi& api, const SynthDeviceConfig& config)
    : worker_(std::make_shared<Worker>(api, config)), thread_([worker = worker_] { worker->Run(); }) {
}

SynthSession::~SynthSession() {
    End(Milliseconds(0));
}

SynthSession::Phase SynthSession::WaitForDriver(Milliseconds limit) {
    return worker_->WaitWhile(Phase::kStarting, limit);
}

SynthSession::Phase SynthSession::WaitForFont(Milliseconds limit) {
    return worker_->WaitWhile(Phase::kLoading, limit);
}

SynthReason SynthSession::GetReason() const {
    return worker_->GetReason();
}

bool SynthSession::Write(const MIDIEvent& event) {
    return worker_->Write(event);
}

bool SynthSession::HasFailed() const {
    return worker_->HasFailed();
}

std::uint64_t SynthSession::GetPlayedFrames() const {
    return worker_->GetPlayedFrames();
}

bool SynthSession::IsOver() const {
    return worker_->IsOver();
}

bool SynthSession::Apply(const SynthDeviceConfig& config, Milliseconds limit, SynthReason& reason) {
    return worker_->Apply(config, limit, reason);
}

void SynthSession::PlayTestNote(bool endAfterwards) {
    worker_->PlayTestNote(endAfterwards);
}

bool SynthSession::End(Milliseconds limit) {
    if (!thread_.joinable()) {
        return true;
    }
    if (worker_->End(limit)) {
        thread_.join();
        return true;
    }
    if (limit == Milliseconds(0)) {
        thread_.detach();
    }
    return false;
}

}  // namespace LibMidi
