// The tick period of CThreadSleepingTimer against a bare thread that sleeps 1 ms at a time, both in one run.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "Measure.h"
#include "nk/nk_sleeping_timer.h"

namespace {

using namespace KivoraBench;

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
    /// Microseconds between neighbouring ticks.
    std::vector<double> GetPeriods() const {
        std::vector<double> periods;
        for (std::size_t i = 1; i < times_.size(); ++i) {
            periods.push_back(std::chrono::duration<double, std::micro>(times_[i] - times_[i - 1]).count());
        }
        return periods;
    }

private:
    std::vector<Clock::time_point> times_;
    std::atomic<std::size_t> count_{0};
};

/// Both side by side, so that they see the same load.
void TickPeriod(benchmark::State& state) {
    constexpr std::size_t kTicks = 5000;
    for (auto _ : state) {
        CTickTimes timed(kTicks);
        CBareSleeper bare;
        {
            const NK::CThreadSleepingTimer timer(&timed, 0, 1, true, NK::CThread::kLevelNormal);
            while (!timed.IsFull()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        const std::vector<double>& floor = bare.End();
        const std::vector<double> periods = timed.GetPeriods();
        Report(state, "bare", floor);
        Report(state, "timer", periods);
        state.counters["median_ratio"] = Quantile(periods, 0.5) / Quantile(floor, 0.5);
        state.counters["p99_ratio"] = Quantile(periods, 0.99) / Quantile(floor, 0.99);
    }
}
BENCHMARK(TickPeriod)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
