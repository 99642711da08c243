// A sleeper that tells how often it was waited.
#pragma once

#include <atomic>
#include <cstdint>

#include "nk/nk_sleep.h"

namespace KivoraTest {

/// Sleeps and waits as the system does, and counts the waits that have begun. [any]
class CCountingSleeper : public NK::CSleeper {
public:
    void Sleep(std::uint32_t milliseconds) override { NK::SystemSleeper().Sleep(milliseconds); }
    void Wait(NK::CWakeup& wakeup, std::int64_t untilNs) override {
        ++waits;
        NK::SystemSleeper().Wait(wakeup, untilNs);
    }
    std::atomic<int> waits{0};
};

}  // namespace KivoraTest
