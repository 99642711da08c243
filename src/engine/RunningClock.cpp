#include "engine/RunningClock.h"

#include <algorithm>
#include <cmath>

#include "engine/ClockPosition.h"

namespace Kivora {

namespace {
/// Below this the position in ticks fits an int at every tempo.
constexpr std::int64_t kLongestRunMs = std::int64_t{24} * 24 * 60 * 60 * 1000;
}  // namespace

bool RunningClock::SetTempo(int beatsPerMinute) noexcept {
    const int clamped = std::clamp(beatsPerMinute, kMinTempo, kMaxTempo);
    if (clamped == tempo_) {
        return false;
    }
    tempo_ = clamped;
    clock_.tempo = clamped;
    return true;
}

bool RunningClock::SetTempoInBar(int beatsPerMinute, std::int64_t now) noexcept {
    const double shownBeats = static_cast<double>(now - start_) / clock_.BeatLength();
    const double beats = shownBeats - aheadMs_ / clock_.BeatLength();
    if (!SetTempo(beatsPerMinute)) {
        return false;
    }
    // What the nearest millisecond is off is made up for by the next change.
    const double exact = beats * clock_.BeatLength();
    const double begun = std::ceil(std::floor(shownBeats) * clock_.BeatLength());
    const double elapsed = std::max(std::round(exact), begun);
    aheadMs_ = elapsed - exact;
    start_ = now - static_cast<std::int64_t>(elapsed);
    SetClockPosition(clock_, static_cast<std::int64_t>(elapsed));
    return true;
}

bool RunningClock::SetBeatsPerBar(int beats) noexcept {
    if (beats == clock_.beatsPerBar) {
        return false;
    }
    clock_.beatsPerBar = beats;
    return true;
}

void RunningClock::Restart(std::int64_t now) noexcept {
    start_ = now;
    aheadMs_ = 0;
    lastBarSeen_ = -1;
    lastBeatSeen_ = -1;
    clock_.bar = 0;
    clock_.beat = 0;
    clock_.offset = 0;
}

std::optional<std::int64_t> RunningClock::FindOverrun(std::int64_t now) const noexcept {
    const std::int64_t elapsed = now - start_;
    return elapsed > kLongestRunMs ? std::optional(elapsed % (kLongestRunMs + 1)) : std::nullopt;
}

bool RunningClock::Advance(std::int64_t now) noexcept {
    if (now < start_) {
        start_ = now;
        aheadMs_ = 0;
    }
    const int tickBefore = clock_.ToTick();
    SetClockPosition(clock_, now - start_);
    return clock_.ToTick() < tickBefore;
}

NK::MIDI::MusicalClock RunningClock::GetAt(std::int64_t now) const noexcept {
    NK::MIDI::MusicalClock clock = clock_;
    SetClockPosition(clock, std::max<std::int64_t>(0, now - start_) % (kLongestRunMs + 1));
    return clock;
}

RunningClock::Begun RunningClock::TakeBegun() noexcept {
    const bool bar = clock_.bar != lastBarSeen_;
    const bool beat = bar || clock_.beat != lastBeatSeen_;
    lastBarSeen_ = clock_.bar;
    lastBeatSeen_ = clock_.beat;
    return {bar, beat};
}

}  // namespace Kivora
