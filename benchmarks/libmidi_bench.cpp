// How long a message takes from the sink to the port, how late note-offs are, and what an append to the capture costs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "libmidi/CaptureStore.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "Measure.h"

namespace {

using namespace KivoraBench;
using namespace LibMidi;

/// Remembers when it was last written to.
class ClockedPort : public MIDIOutPort {
public:
    const NK::CString& GetName() const override { return name_; }
    std::uint32_t GetFlags() const override { return kOutput | kOpen; }
    Result Open() override { return kAlreadyOpen; }
    Result Close() override { return kSuccess; }
    Result Write(const MIDIEvent*, std::int32_t count) override {
        last_.store(Clock::now().time_since_epoch().count(), std::memory_order_release);
        writes_.fetch_add(count, std::memory_order_release);
        return kSuccess;
    }
    int GetWrites() const { return writes_.load(std::memory_order_acquire); }
    Clock::time_point GetLast() const {
        return Clock::time_point(Clock::duration(last_.load(std::memory_order_acquire)));
    }

private:
    NK::CString name_{L"Port"};
    std::atomic<Clock::rep> last_{0};
    std::atomic<int> writes_{0};
};

void SinkToPort(benchmark::State& state) {
    constexpr int kMessages = 2000;
    constexpr int kNoteMs = 3;
    for (auto _ : state) {
        ClockedPort port;
        NK::CSysTimeSource clock;
        const std::unique_ptr<MIDIPlayer> player = CreateMIDIPlayer();
        player->SetTimeSource(&clock);
        player->AttachOutput(&port);
        player->Start();
        CBareSleeper bare;
        std::vector<double> latencies;
        std::vector<double> lateness;
        std::mt19937 random(1);
        const auto awaitWrites = [&](int count) {
            while (port.GetWrites() < count) {
                std::this_thread::sleep_for(std::chrono::microseconds(20));
            }
        };
        for (int i = 0; i < kMessages; ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
            const int before = port.GetWrites();
            const Clock::time_point sent = Clock::now();
            player->GetSink()->PlayNote(0, 60, 100, kNoteMs, 0);
            awaitWrites(before + 1);
            const Clock::time_point written = port.GetLast();
            latencies.push_back(Microseconds(written - sent));
            awaitWrites(before + 2);
            lateness.push_back(Microseconds(port.GetLast() - written) - 1000.0 * kNoteMs);
        }
        const std::vector<double>& floor = bare.End();
        player->Stop();
        state.counters["bare_period_us"] = Quantile(floor, 0.5);
        state.counters["send_to_write_us"] = Quantile(latencies, 0.5);
        state.counters["note_off_late_us"] = Quantile(lateness, 0.5);
        state.counters["send_ratio"] = Quantile(latencies, 0.5) / Quantile(floor, 0.5);
        state.counters["late_ratio"] = Quantile(lateness, 0.5) / Quantile(floor, 0.5);
    }
}
BENCHMARK(SinkToPort)->Iterations(1)->Unit(benchmark::kMillisecond);

void Capture(benchmark::State& state) {
    constexpr std::uint32_t kEvents = 3'600'000;
    for (auto _ : state) {
        CaptureStore store;
        double worst = 0.0;
        Clock::time_point before = Clock::now();
        for (std::uint32_t i = 0; i < kEvents; ++i) {
            store.Append({i, {0x90, 1, 60, 100}});
            const Clock::time_point now = Clock::now();
            worst = std::max(worst, Microseconds(now - before));
            before = now;
        }
        state.counters["worst_append_us"] = worst;
        state.counters["bytes_an_event"] = sizeof(CapturedEvent);
    }
}
BENCHMARK(Capture)->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
