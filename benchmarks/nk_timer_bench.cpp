// The tick period of CThreadSleepingTimer against a bare thread that sleeps 1 ms at a time, both in one run.
#include <benchmark/benchmark.h>
#include <sys/prctl.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "nk/nk_sleeping_timer.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Takes the time of each tick into a store that is as large as it gets.
class CTickTimes : public NK::CTimerListener {
public:
    explicit CTickTimes(std::size_t count) : times_(count) {}

    void OnTimer(std::uint32_t) override {
        const std::size_t index = count_.load(std::memory_order_relaxed);
        if (index < times_.size()) {
            times_[index] = Clock::now();
            count_.store(index + 1, std::memory_order_release);
        }
    }
    bool IsFull() const { return count_.load(std::memory_order_acquire) == times_.size(); }
    /// Microseconds between neighbouring ticks, ascending.
    std::vector<double> GetSortedPeriods() const {
        std::vector<double> periods;
        for (std::size_t i = 1; i < times_.size(); ++i) {
            periods.push_back(std::chrono::duration<double, std::micro>(times_[i] - times_[i - 1]).count());
        }
        std::sort(periods.begin(), periods.end());
        return periods;
    }

private:
    std::vector<Clock::time_point> times_;
    std::atomic<std::size_t> count_{0};
};

/// The floor: nothing but the system's sleep of 1 ms with the smallest slack.
void SleepBare(CTickTimes& ticks) {
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    constexpr timespec kMillisecond{0, 1'000'000};
    while (!ticks.IsFull()) {
        clock_nanosleep(CLOCK_MONOTONIC, 0, &kMillisecond, nullptr);
        ticks.OnTimer(0);
    }
}

double Quantile(const std::vector<double>& sorted, double share) {
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

/// Both side by side, so that they see the same load.
void TickPeriod(benchmark::State& state) {
    constexpr std::size_t kTicks = 5000;
    for (auto _ : state) {
        CTickTimes bare(kTicks);
        CTickTimes timed(kTicks);
        {
            const NK::CThreadSleepingTimer timer(&timed, 0, 1, true, NK::CThread::kLevelNormal);
            std::thread floor([&] { SleepBare(bare); });
            floor.join();
            while (!timed.IsFull()) {
                std::this_thread::yield();
            }
        }
        const std::vector<double> floorPeriods = bare.GetSortedPeriods();
        const std::vector<double> timerPeriods = timed.GetSortedPeriods();
        state.counters["bare_median_us"] = Quantile(floorPeriods, 0.5);
        state.counters["bare_p99_us"] = Quantile(floorPeriods, 0.99);
        state.counters["timer_median_us"] = Quantile(timerPeriods, 0.5);
        state.counters["timer_p99_us"] = Quantile(timerPeriods, 0.99);
        state.counters["median_ratio"] = Quantile(timerPeriods, 0.5) / Quantile(floorPeriods, 0.5);
        state.counters["p99_ratio"] = Quantile(timerPeriods, 0.99) / Quantile(floorPeriods, 0.99);
    }
}
BENCHMARK(TickPeriod)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
