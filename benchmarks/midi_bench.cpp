// Writing a MIDI file of 1,000,000 events against a bare loop that encodes and writes the same bytes; a tick of the
// arpeggiator with ten keys held and nothing due against the arithmetic of the clock.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "midi/arpeggiator/CArpeggiator1.h"
#include "midi/SMFWriter.h"

namespace {

using namespace NK;
using namespace NK::MIDI;

constexpr std::uint32_t kEvents = 1000000;

std::string GetPath() {
    return std::filesystem::temp_directory_path() / "kivora_midi_bench.mid";
}

std::int32_t GetTime(std::uint32_t event) {
    return static_cast<std::int32_t>(event * 4 + event % 200);
}

TMIDIMessage GetMessage(std::uint32_t event) {
    return {static_cast<std::uint8_t>(event % 2 == 0 ? 0x90 : 0x80), static_cast<std::uint8_t>(1 + event % 16),
            static_cast<std::uint8_t>(event % 128), 100};
}

/// The floor: plain records, the delta in its 7-bit groups, one fwrite an event.
void EncodeAndWriteBare(benchmark::State& state) {
    struct Event {
        std::int32_t time;
        std::uint8_t bytes[3];
    };
    std::vector<Event> events;
    events.reserve(kEvents);
    for (std::uint32_t i = 0; i < kEvents; ++i) {
        Event event{GetTime(i), {}};
        GetMessage(i).Pack(event.bytes);
        events.push_back(event);
    }
    for (auto _ : state) {
        std::FILE* file = std::fopen(GetPath().c_str(), "wb");
        std::int32_t now = 0;
        for (const Event& event : events) {
            const std::int32_t delta = event.time > now ? event.time - now : 0;
            now += delta;
            std::uint8_t bytes[8];
            std::size_t size = 0;
            if (delta >= 128) {
                bytes[size++] = static_cast<std::uint8_t>(0x80 | (delta >> 7));
            }
            bytes[size++] = static_cast<std::uint8_t>(delta & 0x7F);
            for (const std::uint8_t byte : event.bytes) {
                bytes[size++] = byte;
            }
            if (std::fwrite(bytes, 1, size, file) != size) {
                state.SkipWithError("the disk is full");
            }
        }
        std::fclose(file);
    }
    std::filesystem::remove(GetPath());
}
BENCHMARK(EncodeAndWriteBare)->Unit(benchmark::kMillisecond);

void WriteMIDIFileOfAMillionEvents(benchmark::State& state) {
    const auto events = std::make_unique<CMIDIMessageX[]>(kEvents);
    for (std::uint32_t i = 0; i < kEvents; ++i) {
        events[i].SetShort(GetMessage(i), GetTime(i));
    }
    for (auto _ : state) {
        if (!WriteMIDIFile(CString::FromUtf8(GetPath()), events.get(), kEvents, 120)) {
            state.SkipWithError("the disk is full");
        }
    }
    std::filesystem::remove(GetPath());
}
BENCHMARK(WriteMIDIFileOfAMillionEvents)->Unit(benchmark::kMillisecond);

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
