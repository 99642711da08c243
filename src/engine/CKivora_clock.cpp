// Tempo, the musical clock and its tick.
#include <algorithm>
#include <cmath>

#include "engine/CKivora.h"
#include "engine/ClockPosition.h"
#include "engine/EngineExtras.h"
#include "engine/SongPlayback.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

namespace {
/// Below this the position in ticks fits an int at every tempo.
constexpr std::int64_t kLongestRunMs = std::int64_t{24} * 24 * 60 * 60 * 1000;
}  // namespace

void CKivora::SetTempo(int beatsPerMinute) {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        if (!StoreTempo(beatsPerMinute)) {
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
        const std::int64_t now = dependencies_.wallClockMs();
        const double shownBeats = static_cast<double>(now - clockStartMs_) / clock_.BeatLength();
        const double beats = shownBeats - extras_->clockAheadMs / clock_.BeatLength();
        if (!StoreTempo(beatsPerMinute)) {
            return;
        }
        // The arpeggiators count in ticks, which a place in the bar has at every tempo: they need no word of it.
        // What the nearest millisecond is off is made up for by the next change. A beat that has begun does not begin
        // again.
        const double exact = beats * clock_.BeatLength();
        const double begun = std::ceil(std::floor(shownBeats) * clock_.BeatLength());
        const double elapsed = std::max(std::round(exact), begun);
        extras_->clockAheadMs = elapsed - exact;
        clockStartMs_ = now - static_cast<std::int64_t>(elapsed);
        SetClockPosition(clock_, static_cast<std::int64_t>(elapsed));
        if (sink_ && sink_->IsCapturing()) {
            extras_->grid.Add(sink_->GetCaptureTimeMs(), clock_, false);
        }
    }
    emit TempoChanged();
}

bool CKivora::StoreTempo(int beatsPerMinute) {
    const int clamped = std::clamp(beatsPerMinute, kMinTempo, kMaxTempo);
    if (clamped == tempo_) {
        return false;
    }
    tempo_ = clamped;
    clock_.tempo = clamped;
    return true;
}

void CKivora::TempoUp() {
    SetTempo(GetTempo() + 1);
}

void CKivora::TempoDown() {
    SetTempo(GetTempo() - 1);
}

int CKivora::GetTempo() const {
    const CLockGuard guard(lock_);
    return tempo_;
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
    clockStartMs_ = dependencies_.wallClockMs();
    extras_->clockAheadMs = 0;
    lastBarSeen_ = -1;
    lastBeatSeen_ = -1;
    clock_.bar = 0;
    clock_.beat = 0;
    clock_.offset = 0;
    extras_->click.Restart();
    SyncArpeggiators();
    if (sink_ && sink_->IsCapturing()) {
        extras_->grid.Add(sink_->GetCaptureTimeMs(), clock_, true);
    }
}

void CKivora::SyncArpeggiators() {
    for (NK::MIDI::CArpeggiator1& arpeggiator : arpeggiators_) {
        arpeggiator.SyncToTime(&clock_);
    }
}

NK::MIDI::MusicalClock CKivora::GetMusicalClock() const {
    const CLockGuard guard(lock_);
    NK::MIDI::MusicalClock clock = clock_;
    if (IsTickParked()) {
        const std::int64_t elapsed = std::max<std::int64_t>(0, dependencies_.wallClockMs() - clockStartMs_);
        SetClockPosition(clock, elapsed % (kLongestRunMs + 1));
    }
    return clock;
}

void CKivora::CatchUpWithTicks() {
    // No tick would come between the notes of one operation.
    if (IsTickParked() && !IsArpeggioHeld()) {
        AdvanceClock();
        if (IsReady()) {
            PlayArpeggiators();
        }
    }
}

void CKivora::PlayArpeggiators() {
    for (NK::MIDI::CArpeggiator1& arpeggiator : arpeggiators_) {
        arpeggiator.Process(nullptr, 0, clock_, *sink_);
    }
}

bool CKivora::IsFailureUntold() const {
    return IsReady() && !outputLost_ && player_->HasWriteFailed();
}

bool CKivora::IsArpeggioHeld() const {
    return arpeggiators_[0].HasNotes() || arpeggiators_[1].HasNotes();
}

bool CKivora::NeedsTicks() const {
    return IsArpeggioHeld() || extras_->click.NeedsTick() || extras_->song->NeedsTick() ||
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
    std::int64_t elapsed = now - clockStartMs_;
    if (elapsed < 0) {
        clockStartMs_ = now;
        extras_->clockAheadMs = 0;
        elapsed = 0;
    }
    if (elapsed > kLongestRunMs) {
        elapsed = IsTickParked() ? elapsed % (kLongestRunMs + 1) : 0;
        RestartClock();
        clockStartMs_ -= elapsed;
    }
    const int tickBefore = clock_.ToTick();
    SetClockPosition(clock_, elapsed);
    if (clock_.ToTick() < tickBefore) {
        // Else a held chord would be silent until the time that the wall clock had shown comes again.
        SyncArpeggiators();
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
            PlayArpeggiators();
        }
        extras_->click.Play(clock_, GetClickQueue());
        if (!IsReady()) {
            extras_->song->Pause();  // nobody takes from the queue
        } else if (extras_->song->Tick(dependencies_.wallClockMs())) {
            SendPatches();
            SendVolumes();
            if (extras_->onSongEnd) {
                extras_->onSongEnd();
            }
        }
    }
    if (lost) {
        emit OutputLost();
    }
}

void CKivora::onMetronomeTimer() {
    NK_ASSERT_THREAD_ROLE(gui);
    bool newBar = false;
    bool newBeat = false;
    {
        const Hold hold(*this);
        CatchUpWithTicks();
        newBar = clock_.bar != lastBarSeen_;
        newBeat = newBar || clock_.beat != lastBeatSeen_;
        lastBarSeen_ = clock_.bar;
        lastBeatSeen_ = clock_.beat;
    }
    if (newBar) {
        emit Bar();
    }
    if (newBeat) {
        emit Beat();
    }
}

}  // namespace Kivora
