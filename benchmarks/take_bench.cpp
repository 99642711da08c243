// An hour's recording: capturing it, journalling it and saving it, each against a bare loop over the same events or
// bytes in the same run.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "engine/CKivora.h"
#include "engine/TakeJournal.h"
#include "engine/takes/RecordedTrack.h"
#include "libmidi/CaptureStore.h"
#include "support/FakeBackend.h"
#include "support/FakePlayer.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualTime.h"

using namespace KivoraTest;
using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;

namespace {

constexpr std::int64_t kMillion = 1'000'000;
constexpr std::int64_t kHour = 3'600'000;  ///< events: one each millisecond

CapturedEvent GetEvent(std::uint32_t number) {
    const bool isOn = number % 2 == 0;
    return {number,
            {static_cast<std::uint8_t>(isOn ? 0x90 : 0x80), static_cast<std::uint8_t>(1 + number % 16),
             static_cast<std::uint8_t>(number / 2 % 128), static_cast<std::uint8_t>(isOn ? 100 : 0)}};
}

CaptureStore MakeStore(std::int64_t count) {
    CaptureStore store;
    for (std::uint32_t i = 0; i < count; ++i) {
        store.Append(GetEvent(i));
    }
    return store;
}

std::string Join(const CTemporaryFolder& folder, const char* name) {
    return folder / name;
}

void AppendToAReservedVector(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<CapturedEvent> events;
        events.reserve(static_cast<std::size_t>(state.range(0)));
        for (std::uint32_t i = 0; i < state.range(0); ++i) {
            events.push_back(GetEvent(i));
        }
        benchmark::DoNotOptimize(events.data());
    }
}
BENCHMARK(AppendToAReservedVector)->Arg(kHour)->Unit(benchmark::kMillisecond);

void AppendToTheCaptureStore(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(MakeStore(state.range(0)));
    }
}
BENCHMARK(AppendToTheCaptureStore)->Arg(kHour)->Unit(benchmark::kMillisecond);

/// The floor of the journal: the records as they lie in memory, one fwrite an event.
void WriteRecordsBare(benchmark::State& state) {
    const CTemporaryFolder folder;
    std::vector<CapturedEvent> events;
    for (std::uint32_t i = 0; i < state.range(0); ++i) {
        events.push_back(GetEvent(i));
    }
    for (auto _ : state) {
        std::FILE* file = std::fopen(Join(folder, "bare").c_str(), "wb");
        for (const CapturedEvent& event : events) {
            if (std::fwrite(&event, sizeof(event), 1, file) != 1) {
                state.SkipWithError("the disk is full");
            }
        }
        std::fflush(file);
        fdatasync(fileno(file));
        std::fclose(file);
    }
}
BENCHMARK(WriteRecordsBare)->Arg(kHour)->Unit(benchmark::kMillisecond);

/// All of a take in one append, as after a disk that was full.
void Journal(benchmark::State& state) {
    CVirtualTime time;
    FakeBackend backend;
    FakePlayer* player = nullptr;
    backend.Plug(L"Software synthesizer", LibMidi::kOutput).keepsWritten = false;
    time.onSleep = [&](std::uint32_t) {
        if (player != nullptr) {
            player->RunRound();
        }
    };
    Kivora::CKivora engine({.backends = {backend.GetCreator()},
                            .createPlayer =
                                [&] {
                                    auto made = std::make_unique<FakePlayer>(time, time);
                                    player = made.get();
                                    return made;
                                },
                            .wallClockMs = [&] { return time.GetTimeMs(); },
                            .sleeper = time,
                            .runTickTimer = false});
    engine.SetOutputPortByName(L"Software synthesizer");
    const CTemporaryFolder folder;
    for (auto _ : state) {
        state.PauseTiming();
        auto journal = std::make_unique<Kivora::TakeJournal>(engine, NK::CString::FromUtf8(Join(folder, "takes")),
                                                             Kivora::TakeJournal::Settings{.runThread = false});
        engine.StartRecording();
        for (std::uint32_t i = 0; i < state.range(0); ++i) {
            player->GetSink()->SendMessage(GetEvent(i).message, 0);
            if (i % 16 == 15) {
                time.AdvanceMs(16);
                player->RunRound();
            }
        }
        state.ResumeTiming();
        journal->WriteOut();
        state.PauseTiming();
        engine.StopRecording();
        journal->Refuse(journal->GetWaiting().back().id);
        journal.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(Journal)->Arg(kHour)->Unit(benchmark::kMillisecond);

/// The floor of saving: the bytes of the file, encoded and written by a bare loop, and one fsync.
void EncodeWriteAndFlushBare(benchmark::State& state) {
    const CTemporaryFolder folder;
    struct Event {
        std::int32_t time;
        std::uint8_t bytes[3];
    };
    std::vector<Event> events;
    for (std::uint32_t i = 0; i < state.range(0); ++i) {
        const CapturedEvent captured = GetEvent(i);
        Event event{static_cast<std::int32_t>(captured.time), {}};
        captured.message.Pack(event.bytes);
        events.push_back(event);
    }
    for (auto _ : state) {
        std::FILE* file = std::fopen(Join(folder, "bare").c_str(), "wb");
        std::int32_t now = 0;
        for (const Event& event : events) {
            const std::int32_t delta = event.time - now;
            now = event.time;
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
        std::fflush(file);
        fsync(fileno(file));
        std::fclose(file);
    }
}
BENCHMARK(EncodeWriteAndFlushBare)->Arg(kMillion)->Arg(kHour)->Unit(benchmark::kMillisecond);

void Save(benchmark::State& state) {
    const CTemporaryFolder folder;
    const CaptureStore store = MakeStore(state.range(0));
    for (auto _ : state) {
        if (!Kivora::SaveRecordedTrack(store.GetView(), NK::CString::FromUtf8(Join(folder, "take.mid")))) {
            state.SkipWithError("the disk is full");
        }
    }
}
BENCHMARK(Save)->Arg(kMillion)->Arg(kHour)->Unit(benchmark::kMillisecond);

/// The floor of saving as far as the disk goes: the bytes of the file, ready, in one write, and one fsync.
void WriteAndFlushBytes(benchmark::State& state) {
    const CTemporaryFolder folder;
    if (!Kivora::SaveRecordedTrack(MakeStore(state.range(0)).GetView(),
                                   NK::CString::FromUtf8(Join(folder, "take.mid")))) {
        state.SkipWithError("the disk is full");
    }
    std::ifstream stream(Join(folder, "take.mid"), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    for (auto _ : state) {
        const int file = open(Join(folder, "bare").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0664);
        if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
            state.SkipWithError("the disk is full");
        }
        fsync(file);
        close(file);
    }
}
BENCHMARK(WriteAndFlushBytes)->Arg(kMillion)->Arg(kHour)->Unit(benchmark::kMillisecond);

}  // namespace
