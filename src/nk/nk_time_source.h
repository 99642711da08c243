// Clocks that report nanoseconds and convert them to milliseconds, frames or a scaled unit.
#pragma once

#include <cstdint>

namespace NK {

/// Reads "now" as wall-clock nanoseconds since 1970-01-01 UTC.
using NowFunction = std::int64_t (*)();
/// The system's wall clock, truncated to a millisecond. [any]
std::int64_t GetSystemNowNs();

/// An abstract clock. Operations may be called from any thread as long as nobody changes the rate meanwhile.
class CTimeSource {
public:
    CTimeSource() = default;
    virtual ~CTimeSource() = default;
    /// Starts anew where the clock can; the base does nothing.
    virtual void Reset() {}
    virtual std::int64_t GetTimeNs() = 0;
    /// GetTimeNs() / 1000000, truncated toward zero.
    virtual std::int64_t GetTimeMs();
    /// In frames of the rate set by SetFrameRate().
    virtual double GetTimeFrames();
    /// Nanoseconds times `factor`; 1e-9 gives seconds.
    virtual double GetTimeScaled(double factor);

    /// Frames per second. Throws CException "Non-positive frame rate." unless rate is above 0; a NaN passes.
    void SetFrameRate(double rate);
    double GetFrameRate() const { return frameRate_; }

protected:
    double frameRate_ = 44100.0;       ///< frames per second
    double framesPerNs_ = 44100.0e-9;  ///< kept in step with frameRate_
};

/// Wall-clock time since construction or the last Reset(), with millisecond resolution.
class CSysTimeSource : public CTimeSource {
public:
    explicit CSysTimeSource(NowFunction now = &GetSystemNowNs) : now_(now), startNs_(now()) {}
    void Reset() override { startNs_ = now_(); }
    std::int64_t GetTimeNs() override { return now_() - startNs_; }

private:
    NowFunction now_;
    std::int64_t startNs_;
};

/// Wall-clock time since 1970-01-01 UTC, with millisecond resolution.
class CWorldClockSource : public CTimeSource {
public:
    explicit CWorldClockSource(NowFunction now = &GetSystemNowNs) : now_(now) {}
    std::int64_t GetTimeNs() override { return now_(); }
    /// Accepts the present rate; any other throws CCoderException "Cannot change frame rate of World Clock."
    virtual void SetFrameRate(double rate);
    /// The process's one shared instance, created on first use.
    static CWorldClockSource& Instance();

private:
    NowFunction now_;
};

/// A clock that its owner moves by counting frames.
class CFrameCounterTimeSource : public CTimeSource {
public:
    /// Throws CException "Non-positive frame rate." unless rate is above 0.
    explicit CFrameCounterTimeSource(double rate);
    void Reset() override;
    /// round(frames / frames per ns) + the time carried over from earlier rates.
    std::int64_t GetTimeNs() override;
    /// First carries the time so far over, then sets the rate (or throws as the constructor does). The frame count
    /// stays, so the frames counted before are reckoned once more at the new rate; owners rebase `frames` themselves.
    virtual void SetFrameRate(double rate);

    std::uint64_t frames = 0;  ///< written by the owner

private:
    std::int64_t CountedNs() const;
    std::int64_t offsetNs_ = 0;
};

}  // namespace NK
