// Tempo, the musical clock and its tick.
#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/SongPlayback.h"
#include "libmidi/PlayedHistory.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

void CKivora::SetTempo(int beatsPerMinute) {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        if (!clock_.SetTempo(beatsPerMinute)) {
            return;
        }
        RestartClock();
    }
    emit TempoChanged();
}

void CKivora::SetTempoInBar(int beatsPerMinute) {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        AdvanceClock();
        // The arpeggiators count in ticks, which a place in the bar has at every tempo: they need no word of it.
        if (!clock_.SetTempoInBar(beatsPerMinute, dependencies_.wallClockMs())) {
            return;
        }
        NoteClock(false);
    }
    emit TempoChanged();
}

void CKivora::TempoUp() {
    SetTempo(GetTempo() + 1);
}

void CKivora::TempoDown() {
    SetTempo(GetTempo() - 1);
}

int CKivora::GetTempo() const {
    const CLockGuard guard(lock_);
    return clock_.GetTempo();
}

void CKivora::SetMetronome(bool on) {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        if (on) {
            indicatorTimer_.start(kIndicatorPeriodMs);
        } else {
            indicatorTimer_.stop();
        }
        extras_->click.SetMetronome(on);
    }
    emit MetronomeChanged();
}

bool CKivora::IsMetronomeOn() const {
    const CLockGuard guard(lock_);
    return indicatorTimer_.isActive();
}

void CKivora::RestartClock() {
    const Hold hold(*this);
    clock_.Restart(dependencies_.wallClockMs());
    extras_->click.Restart();
    arpeggiators_.SyncTo(clock_.Get());
    NoteClock(true);
}

void CKivora::NoteClock(bool beginsBar) {
    extras_->playedGrid.Add(extras_->GetPlayed()->GetTimeMs(), clock_.Get(), beginsBar);
    if (sink_ && sink_->IsCapturing()) {
        extras_->GetGrid()->Add(sink_->GetCaptureTimeMs(), clock_.Get(), beginsBar);
    }
}

NK::MIDI::MusicalClock CKivora::GetMusicalClock() const {
    const CLockGuard guard(lock_);
    return IsTickParked() ? clock_.GetAt(dependencies_.wallClockMs()) : clock_.Get();
}

void CKivora::CatchUpWithTicks() {
    // No tick would come between the notes of one operation.
    if (IsTickParked() && !arpeggiators_.HasNotes()) {
        AdvanceClock();
        if (IsReady()) {
            arpeggiators_.Play(clock_.Get(), *sink_);
        }
    }
}

bool CKivora::IsFailureUntold() const {
    return IsReady() && !output_.IsLost() && player_->HasWriteFailed();
}

bool CKivora::NeedsTicks() const {
    return arpeggiators_.HasNotes() || extras_->click.NeedsTick() || extras_->song.NeedsTick() ||
           (sink_ && sink_->IsCapturing()) || IsFailureUntold() || (player_ && !playerTellsFailure_);
}

void CKivora::ParkOrRunTicks() {
    if (!hasBegun_ || closed_ || !tickTimer_) {
        return;  // before it is made and while it is destroyed the timer is not to be touched
    }
    const bool needsTicks = NeedsTicks();
    if (needsTicks && !ticking_) {
        AdvanceClock();  // whoever has the lock before the first tick finds the present time
    }
    ticking_ = needsTicks;
    tickTimer_->SetEnabled(ticking_);
    // What has failed between these lines may have been told before the tick was parked.
    if (!ticking_ && IsFailureUntold()) {
        ticking_ = true;
        tickTimer_->SetEnabled(true);
    }
}

void CKivora::AdvanceClock() {
    const std::int64_t now = dependencies_.wallClockMs();
    if (const std::optional<std::int64_t> elapsed = clock_.FindOverrun(now)) {
        RestartClock();
        clock_.RunFor(IsTickParked() ? *elapsed : 0);
    }
    if (clock_.Advance(now)) {
        // Else a held chord would be silent until the time that the wall clock had shown comes again.
        arpeggiators_.SyncTo(clock_.Get());
    }
}

void CKivora::OnTimer(std::uint32_t) {
    if (dependencies_.runTickTimer) {
        NK_REGISTER_THREAD_ROLE(tick);
    }
    NK_ASSERT_THREAD_ROLE(tick);
    bool lost = false;
    {
        const Hold hold(*this);
        if (closed_) {
            return;
        }
        AdvanceClock();
        if (IsReady()) {
            lost = IsFailureUntold();
            if (lost) {
                LoseOutput(false);
            }
            sink_->WaitUntilEmpty(kPlayedOut);
            arpeggiators_.Play(clock_.Get(), *sink_);
        }
        extras_->click.Play(clock_.Get(), GetClickQueue());
        if (!IsReady()) {
            extras_->song.Pause();  // nobody takes from the queue
        } else {
            extras_->song.Tick(dependencies_.wallClockMs());
        }
    }
    if (lost) {
        emit OutputLost();
    }
}

void CKivora::onMetronomeTimer() {
    NK_ASSERT_THREAD_ROLE(gui);
    RunningClock::Begun begun{};
    {
        const Hold hold(*this);
        CatchUpWithTicks();
        begun = clock_.TakeBegun();
    }
    if (begun.bar) {
        emit Bar();
    }
    if (begun.beat) {
        emit Beat();
    }
}

}  // namespace Kivora
