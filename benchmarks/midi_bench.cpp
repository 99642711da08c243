// A tick of the arpeggiator with ten keys held and nothing due, against the arithmetic of the clock.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "midi/arpeggiator/CArpeggiator1.h"

namespace {

using namespace NK::MIDI;

class CNoOutput : public CMIDIOutputBase {
public:
    void SendMessage(TMIDIMessage, std::uint32_t) override {}
    void PlayNote(std::uint8_t, std::uint8_t, std::uint8_t, int, std::uint32_t) override {}
};

MusicalClock AtOffset(int ms) {
    MusicalClock clock;
    clock.bar = 3;
    clock.offset = ms;
    return clock;
}

void TickOfTheClock(benchmark::State& state) {
    MusicalClock clock = AtOffset(100);
    for (auto _ : state) {
        benchmark::DoNotOptimize(clock);
        benchmark::DoNotOptimize(clock.ToTick());
    }
}
BENCHMARK(TickOfTheClock);

void ProcessTenHeldNotesNothingDue(benchmark::State& state) {
    CArpeggiator1 arpeggiator;
    CNoOutput output;
    MusicalClock clock = AtOffset(0);
    TMIDIMessage keys[10];
    for (int i = 0; i < 10; ++i) {
        keys[i] = {0x90, 1, static_cast<std::uint8_t>(48 + 3 * i), 100};
    }
    arpeggiator.Process(keys, 10, clock, output);
    clock = AtOffset(100);
    for (auto _ : state) {
        benchmark::DoNotOptimize(clock);
        arpeggiator.Process(nullptr, 0, clock, output);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ProcessTenHeldNotesNothingDue);

}  // namespace
