// What the benchmarks that measure time share.
#pragma once

#include <benchmark/benchmark.h>
#include <sys/prctl.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace KivoraBench {

using Clock = std::chrono::steady_clock;

inline double Microseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::micro>(duration).count();
}

/// The value below which that share of the values lies; 0 of none.
inline double Quantile(std::vector<double> values, double share) {
    if (values.empty()) {
        return 0.0;
    }
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

/// <name>_p50_us and <name>_p99_us.
inline void Report(benchmark::State& state, const std::string& name, const std::vector<double>& microseconds) {
    state.counters[name + "_p50_us"] = Quantile(microseconds, 0.5);
    state.counters[name + "_p99_us"] = Quantile(microseconds, 0.99);
}

/// Sleeps 1 ms, ends on time: nothing but the system's call.
inline void SleepBare() {
    constexpr timespec kMillisecond{0, 1'000'000};
    clock_nanosleep(CLOCK_MONOTONIC, 0, &kMillisecond, nullptr);
}

inline void UseSmallestSlack() {
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

/// The floor: a thread that sleeps 1 ms at a time for as long as this exists, and how long each sleep took.
class CBareSleeper {
public:
    CBareSleeper()
        : thread_([this] {
              UseSmallestSlack();
              for (Clock::time_point before = Clock::now(); !stop_;) {
                  SleepBare();
                  const Clock::time_point now = Clock::now();
                  periods_.push_back(Microseconds(now - before));
                  before = now;
              }
          }) {}
    ~CBareSleeper() { End(); }
    CBareSleeper(const CBareSleeper&) = delete;
    CBareSleeper& operator=(const CBareSleeper&) = delete;

    /// Ends the thread; its periods in microseconds.
    const std::vector<double>& End() {
        stop_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        return periods_;
    }

private:
    std::atomic<bool> stop_{false};
    std::vector<double> periods_;
    std::thread thread_;
};

}  // namespace KivoraBench
