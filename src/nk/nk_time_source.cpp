#include "nk/nk_time_source.h"

#include "nk/nk_exception.h"
#include "nk/nk_steady_clock.h"
#include "nk/platform/platform_clock.h"

namespace NK {

std::int64_t GetSystemNowNs() {
    return Platform::GetWallClockMs() * 1'000'000;
}

std::int64_t GetSteadyNowNs() {
    return Platform::GetSteadyClockMs() * 1'000'000;
}

std::int64_t CTimeSource::GetTimeMs() {
    return GetTimeNs() / 1'000'000;
}

double CTimeSource::GetTimeFrames() {
    return static_cast<double>(GetTimeNs()) * framesPerNs_;
}

double CTimeSource::GetTimeScaled(double factor) {
    return static_cast<double>(GetTimeNs()) * factor;
}

void CTimeSource::SetFrameRate(double rate) {
    if (rate <= 0.0) {
        throw CException(L"Non-positive frame rate.");
    }
    frameRate_ = rate;
    framesPerNs_ = rate * 1e-9;
}

void CWorldClockSource::SetFrameRate(double rate) {
    if (!(rate == frameRate_)) {
        throw CCoderException(L"Cannot change frame rate of World Clock.");
    }
}

CWorldClockSource& CWorldClockSource::Instance() {
    static CWorldClockSource instance;
    return instance;
}

CFrameCounterTimeSource::CFrameCounterTimeSource(double rate) {
    CFrameCounterTimeSource::SetFrameRate(rate);
}

void CFrameCounterTimeSource::Reset() {
    frames = 0;
    offsetNs_ = 0;
}

std::int64_t CFrameCounterTimeSource::CountedNs() const {
    // Far beyond any count that is reached, yet two of them still add up.
    constexpr double kLimitNs = 4.0e18;
    const double rounded = static_cast<double>(frames) / framesPerNs_ + 0.5;
    return rounded < kLimitNs ? static_cast<std::int64_t>(rounded) : static_cast<std::int64_t>(kLimitNs);
}

std::int64_t CFrameCounterTimeSource::GetTimeNs() {
    return CountedNs() + offsetNs_;
}

void CFrameCounterTimeSource::SetFrameRate(double rate) {
    offsetNs_ += CountedNs();
    CTimeSource::SetFrameRate(rate);
}

}  // namespace NK
