// The clock of a capture. [owner]
#pragma once

#include <algorithm>
#include <cstdint>

#include "nk/nk_steady_clock.h"
#include "nk/nk_time_source.h"

namespace LibMidi {

/// Milliseconds since Restart() by a time source that may be replaced meanwhile. A source that goes back counts as
/// standing still. Not for use from several threads at once.
class CaptureClock {
public:
    static constexpr std::int64_t kLatestMs = INT32_MAX;  ///< 24 days, so that no difference of times is negative

    /// Not owned; null is a source of the clock's own.
    void SetSource(NK::CTimeSource* source) {
        GetElapsedMs();
        source_ = source != nullptr ? source : &own_;
        previousMs_ = source_->GetTimeMs();
    }

    void Restart() {
        elapsedMs_ = 0;
        previousMs_ = source_->GetTimeMs();
    }

    std::int64_t GetElapsedMs() {
        const std::int64_t nowMs = source_->GetTimeMs();
        if (nowMs > previousMs_) {
            elapsedMs_ += nowMs - previousMs_;
        }
        previousMs_ = nowMs;
        return elapsedMs_;
    }
    /// The same, kLatestMs at most.
    std::uint32_t GetMs() { return static_cast<std::uint32_t>(std::min(GetElapsedMs(), kLatestMs)); }

private:
    NK::CSysTimeSource own_{&NK::GetSteadyNowNs};
    NK::CTimeSource* source_ = &own_;
    std::int64_t previousMs_ = 0;
    std::int64_t elapsedMs_ = 0;
};

}  // namespace LibMidi
