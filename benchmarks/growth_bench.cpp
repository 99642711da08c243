// What the work costs as it grows: notes that sound, a take's length, presets in the folder, messages that come in. The
// figure is the time of one piece of the work, so that a cost that does not grow with it stays the same.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "engine/CKivora.h"
#include "engine/files/PresetStore.h"
#include "engine/takes/RecordedTrack.h"
#include "libmidi/CaptureStore.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;

namespace {

constexpr int kNotesOfAChannel = 128;

/// A note that ends and begins again while others sound with a duration, and the round that writes it.
void NotesThatSound(benchmark::State& state) {
    LibMidi::MIDIPlayerQueue queue;
    std::vector<LibMidi::TakenEvent> taken;
    constexpr int kLong = 1'000'000'000;
    for (int i = 0; i < state.range(0); ++i) {
        queue.PlayNote(static_cast<std::uint8_t>(i / kNotesOfAChannel), static_cast<std::uint8_t>(i % kNotesOfAChannel),
                       100, kLong, 0);
    }
    queue.AdvanceAndTake(1, taken);
    for (auto _ : state) {
        queue.PlayNote(0, 0, 100, kLong, 0);
        taken.clear();
        queue.AdvanceAndTake(1, taken);
    }
}
BENCHMARK(NotesThatSound)->RangeMultiplier(10)->Range(1, 1000);

/// A take of so many minutes with ten events a second is saved; the time of one event of it.
void MinutesOfATake(benchmark::State& state) {
    constexpr std::int64_t kEventsAMinute = 600;
    constexpr std::uint32_t kEveryMs = 100;
    const CTemporaryFolder folder;
    LibMidi::CaptureStore take;
    const std::int64_t events = state.range(0) * kEventsAMinute;
    for (std::uint32_t i = 0; i < events; ++i) {
        const bool isOn = i % 2 == 0;
        take.Append({i * kEveryMs,
                     {static_cast<std::uint8_t>(isOn ? 0x90 : 0x80), 1,
                      static_cast<std::uint8_t>(i / 2 % kNotesOfAChannel), static_cast<std::uint8_t>(isOn ? 100 : 0)}});
    }
    const NK::CString path = NK::CString::FromUtf8((folder / "take.mid").native());
    for (auto _ : state) {
        if (!Kivora::SaveRecordedTrack(take.GetView(), path)) {
            state.SkipWithError("the disk is full");
            return;
        }
    }
    state.counters["each"] = benchmark::Counter(
        static_cast<double>(events), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(MinutesOfATake)->Arg(10)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond)->UseRealTime();

/// A folder of so many presets is listed; the time of one of them.
void PresetsInAFolder(benchmark::State& state) {
    const CTemporaryFolder folder;
    const std::filesystem::path presets = folder / "Presets";
    std::filesystem::create_directory(presets);
    for (int i = 0; i < state.range(0); ++i) {
        std::ofstream(presets / ("Preset " + std::to_string(i) + ".kivoraLXPreset"));
    }
    Kivora::PresetStore store(L"/nowhere", NK::CString::FromUtf8(presets.native()));
    for (auto _ : state) {
        NK::CStringArray names;
        store.List(names, true);
        benchmark::DoNotOptimize(names.GetData());
    }
    state.counters["each"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(PresetsInAFolder)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

/// So many messages come in within a second of the clock, a thousand rounds of the player; the time of one of them.
void MessagesASecond(benchmark::State& state) {
    constexpr int kRounds = 1000;
    EngineRig rig;
    rig.GetDevice(kSynth).keepsWritten = false;
    rig.CreateOpen();
    int sent = 0;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            const auto due = static_cast<int>(state.range(0) * (round + 1) / kRounds);
            for (sent = round == 0 ? 0 : sent; sent < due; ++sent) {
                const LibMidi::MIDIEvent event = LibMidi::MIDIEvent::FromMessage(
                    {static_cast<std::uint8_t>(sent % 2 == 0 ? 0x90 : 0x80), 1, 60, 100}, 0);
                rig.engine->OnMIDIData(&event, 1);
            }
            rig.Run(1);
        }
    }
    state.counters["each"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(MessagesASecond)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

}  // namespace
