// The engine with all its threads, between ports that are made up: how fast a key gets through, how even an arpeggio
// is, and what the threads cost while nothing is played.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "ArpeggioGrid.h"
#include "engine/CKivora.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "libmidi/portmidi/PortMIDIImpl.h"
#include "Measure.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace KivoraBench;

constexpr int kKeys = 2000;

/// Takes the time of the last write.
class ClockedPortMidi : public LibMidiTest::CFakePortMidi {
public:
    ClockedPortMidi() : CFakePortMidi({{"Software synthesizer", false, true}, {"Keyboard", true, false}}) {
        keepWritten = false;
    }
    PmError Write(PortMidiStream*, PmEvent*, std::int32_t) override {
        last_.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
        writes_.fetch_add(1, std::memory_order_release);
        return pmNoError;
    }
    int GetWrites() const { return writes_.load(std::memory_order_acquire); }
    /// Waits for that write; its time.
    Clock::time_point Await(int write) const {
        while (GetWrites() < write) {
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        }
        return Clock::time_point(Clock::duration(last_.load(std::memory_order_relaxed)));
    }

private:
    std::atomic<Clock::rep> last_{0};
    std::atomic<int> writes_{0};
};

/// Both ports open, nothing held.
struct Instrument {
    Instrument()
        : engine({.backends = {[this] { return std::make_unique<LibMidi::PortMIDIImpl>(api); }},
                  .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); }}) {
        engine.OpenPorts();
    }
    ClockedPortMidi api;
    Kivora::CKivora engine;
};

/// Somewhere in the rounds of the threads.
void SleepAtRandom(std::mt19937& random) {
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
}

void KeyToWrite(benchmark::State& state) {
    for (auto _ : state) {
        Instrument instrument;
        CBareSleeper bare;
        std::vector<double> latencies;
        std::mt19937 random(1);
        for (int i = 0; i < kKeys; ++i) {
            SleepAtRandom(random);
            const int before = instrument.api.GetWrites();
            const Clock::time_point pressed = Clock::now();
            instrument.engine.PlayPcKey(60, 1);
            latencies.push_back(Microseconds(instrument.api.Await(before + 1) - pressed));
            instrument.engine.PlayNoteOff(60);
            instrument.api.Await(before + 2);
        }
        Report(state, "key", latencies);
        Report(state, "bare", bare.End());
        state.counters["p50_ratio"] = Quantile(latencies, 0.5) / Quantile(bare.End(), 0.5);
        state.counters["p99_over_bare_us"] = Quantile(latencies, 0.99) - Quantile(bare.End(), 0.99);
    }
}
BENCHMARK(KeyToWrite)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

/// The floor of the way in and out: three threads that sleep 1 ms and hand a number on.
class BareChain {
public:
    BareChain() {
        for (std::size_t stage = 0; stage < threads_.size(); ++stage) {
            threads_[stage] = std::thread([this, stage] { Run(stage); });
        }
    }
    ~BareChain() {
        stop_ = true;
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    void Put(int number) { passed_[0].store(number, std::memory_order_release); }
    Clock::time_point Await(int number) const {
        while (passed_.back().load(std::memory_order_acquire) < number) {
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        }
        return Clock::time_point(Clock::duration(last_.load(std::memory_order_relaxed)));
    }

private:
    void Run(std::size_t stage) {
        UseSmallestSlack();
        while (!stop_) {
            SleepBare();
            const int number = passed_[stage].load(std::memory_order_acquire);
            if (number != passed_[stage + 1].load(std::memory_order_relaxed)) {
                if (stage + 1 == threads_.size()) {
                    last_.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
                }
                passed_[stage + 1].store(number, std::memory_order_release);
            }
        }
    }

    std::atomic<bool> stop_{false};
    std::atomic<Clock::rep> last_{0};
    std::array<std::atomic<int>, 4> passed_{};
    std::array<std::thread, 3> threads_;
};

void InputToOutput(benchmark::State& state) {
    for (auto _ : state) {
        Instrument instrument;
        BareChain chain;
        std::vector<double> latencies;
        std::vector<double> floor;
        std::mt19937 random(1);
        for (int i = 0; i < kKeys; ++i) {
            SleepAtRandom(random);
            const int before = instrument.api.GetWrites();
            Clock::time_point sent = Clock::now();
            instrument.api.Receive(1, i % 2 == 0 ? Pm_Message(0x90, 60, 100) : Pm_Message(0x80, 60, 0));
            latencies.push_back(Microseconds(instrument.api.Await(before + 1) - sent));
            SleepAtRandom(random);
            sent = Clock::now();
            chain.Put(i + 1);
            floor.push_back(Microseconds(chain.Await(i + 1) - sent));
        }
        Report(state, "through", latencies);
        Report(state, "bare", floor);
        state.counters["p50_ratio"] = Quantile(latencies, 0.5) / Quantile(floor, 0.5);
    }
}
BENCHMARK(InputToOutput)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

/// Takes the time of every note that an arpeggiator plays, and plays nothing.
class ClockedQueue : public LibMidi::MIDIPlayerQueue {
public:
    void SendMessage(NK::MIDI::TMIDIMessage, std::uint32_t) override {}
    void PlayNote(std::uint8_t, std::uint8_t, std::uint8_t, int, std::uint32_t) override {
        const Clock::time_point now = Clock::now();
        const std::lock_guard guard(mutex_);
        times_.push_back(now);
    }
    std::vector<Clock::time_point> GetTimes() const {
        const std::lock_guard guard(mutex_);
        return times_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Clock::time_point> times_;
};

class ClockedPlayer : public LibMidi::MIDIPlayer {
public:
    explicit ClockedPlayer(std::shared_ptr<ClockedQueue> queue) : queue_(std::move(queue)) {}
    void SetTimeSource(NK::CTimeSource*) override {}
    std::shared_ptr<LibMidi::MIDIPlayerQueue> GetSink() override { return queue_; }
    int AttachOutput(LibMidi::MIDIOutPort*) override { return 0; }
    void DetachOutput(int) override {}
    bool Start() override { return true; }
    void Stop() override {}
    bool IsRunning() const override { return true; }
    bool HasWriteFailed() const override { return false; }
    void AddListener(LibMidi::MIDIPlayerListener*) override {}
    void RemoveListener(LibMidi::MIDIPlayerListener*) override {}

private:
    std::shared_ptr<ClockedQueue> queue_;
};

void ArpeggioJitter(benchmark::State& state) {
    constexpr int kStep = 12;  // ticks; 31.25 ms
    constexpr std::size_t kSteps = 200;
    for (auto _ : state) {
        const auto queue = std::make_shared<ClockedQueue>();
        ClockedPortMidi api;
        const Clock::time_point base = Clock::now();
        std::atomic<std::int64_t> lastMs{0};
        Kivora::CKivora engine(
            {.backends = {[&] { return std::make_unique<LibMidi::PortMIDIImpl>(api); }},
             .createPlayer = [&] { return std::make_unique<ClockedPlayer>(queue); },
             .wallClockMs =
                 [&] {
                     lastMs = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - base).count();
                     return lastMs.load();
                 }});
        engine.OpenPorts();
        CBareSleeper bare;
        const std::int64_t startMs = engine.WithLock([&] {
            engine.SetArpeggiating(true);
            engine.WithArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(kStep, 50); });
            engine.RestartClock();
            return lastMs.load();
        });
        for (const std::uint8_t note : {std::uint8_t{60}, std::uint8_t{64}, std::uint8_t{67}}) {
            engine.PlayNoteOn(note, 100);
        }
        while (queue->GetTimes().size() < kSteps) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        std::vector<double> lateness;
        for (const Clock::time_point time : queue->GetTimes()) {
            const auto us = std::chrono::duration_cast<std::chrono::microseconds>(time - base).count();
            lateness.push_back(GetLateness(NK::MIDI::MusicalClock(), us - startMs * 1000, kStep));
        }
        Report(state, "late", lateness);
        state.counters["late_max_us"] = Quantile(lateness, 1.0);
        state.counters["bare_p50_us"] = Quantile(bare.End(), 0.5);
        state.counters["p50_ratio"] = Quantile(lateness, 0.5) / Quantile(bare.End(), 0.5);
    }
}
BENCHMARK(ArpeggioJitter)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

double GetCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double MeasureCpu() {
    const double before = GetCpuSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(3));
    return GetCpuSeconds() - before;
}

/// The tick, the input timer, one input port, the player and its events against as many bare sleepers.
void IdleThreads(benchmark::State& state) {
    constexpr std::size_t kThreads = 5;
    for (auto _ : state) {
        double threads = 0.0;
        double floor = 0.0;
        {
            const Instrument instrument;
            threads = MeasureCpu();
        }
        {
            const std::array<CBareSleeper, kThreads> sleepers;
            floor = MeasureCpu();
        }
        state.counters["threads_cpu_ms_a_second"] = threads * 1000 / 3;
        state.counters["bare_cpu_ms_a_second"] = floor * 1000 / 3;
        state.counters["ratio"] = threads / floor;
    }
}
BENCHMARK(IdleThreads)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

}  // namespace
