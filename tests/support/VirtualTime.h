// A clock and a sleep that the test moves.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"

namespace KivoraTest {

/// Time stands still until somebody sleeps or the test advances it.
class CVirtualTime : public NK::CTimeSource, public NK::CSleeper {
public:
    std::int64_t GetTimeNs() override { return nowNs_.load(); }
    void Sleep(std::uint32_t milliseconds) override {
        slept_ += milliseconds;
        AdvanceMs(milliseconds);
        if (onSleep) {
            onSleep(milliseconds);
        }
    }
    void AdvanceMs(std::int64_t milliseconds) { nowNs_ += milliseconds * 1000000; }
    void SetMs(std::int64_t milliseconds) { nowNs_ = milliseconds * 1000000; }
    std::uint64_t GetSleptMs() const { return slept_; }

    /// Called after each sleep, on the sleeping thread.
    std::function<void(std::uint32_t milliseconds)> onSleep;

private:
    std::atomic<std::int64_t> nowNs_{0};
    std::atomic<std::uint64_t> slept_{0};
};

}  // namespace KivoraTest
