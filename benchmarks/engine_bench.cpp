// From a key to the sink: the three routes, against a floor of the same work without an engine.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "engine/CKivora.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "support/FakeBackend.h"
#include "support/FakePlayer.h"
#include "support/VirtualTime.h"

using namespace KivoraTest;

namespace {

constexpr int kNotes = 16;  ///< played between two rounds of the player

/// An engine without threads whose output accepts everything.
struct Instrument {
    Instrument() {
        FakeDevice& device = backend.Plug(L"Software synthesizer", LibMidi::kOutput);
        device.keepsWritten = false;
        time.onSleep = [this](std::uint32_t) {
            if (player != nullptr) {
                player->RunRound();
            }
        };
        engine = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                       .createPlayer =
                                           [this] {
                                               auto made = std::make_unique<FakePlayer>(time, time);
                                               player = made.get();
                                               return made;
                                           },
                                       .wallClockMs = [this] { return time.GetTimeMs(); },
                                       .sleeper = time,
                                       .runTickTimer = false});
        engine->SetOutputPortByName(L"Software synthesizer");
    }

    CVirtualTime time;
    FakeBackend backend;
    FakePlayer* player = nullptr;
    std::unique_ptr<Kivora::CKivora> engine;
};

/// The time of PlayNoteOn() alone, of kNotes in a row; the player's round stands outside the measurement.
void PlayNotes(benchmark::State& state, Instrument& instrument) {
    for (auto _ : state) {
        for (int i = 0; i < kNotes; ++i) {
            instrument.engine->PlayNoteOn(static_cast<std::uint8_t>(52 + i), 100);
        }
        state.PauseTiming();
        instrument.engine->AllNotesOff();
        instrument.time.AdvanceMs(1);
        instrument.player->RunRound();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kNotes);
}

/// The floor: the same messages handed to the queue directly.
void Floor_SinkAlone(benchmark::State& state) {
    LibMidi::MIDIPlayerQueue queue;
    std::vector<LibMidi::TakenEvent> taken;
    for (auto _ : state) {
        for (int i = 0; i < kNotes; ++i) {
            queue.SendMessage({0x90, 1, static_cast<std::uint8_t>(52 + i), 100}, 0);
        }
        state.PauseTiming();
        taken.clear();
        queue.AdvanceAndTake(1, taken);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kNotes);
}

void PlayNoteOn_Single(benchmark::State& state) {
    Instrument instrument;
    PlayNotes(state, instrument);
}

void PlayNoteOn_Dual(benchmark::State& state) {
    Instrument instrument;
    instrument.engine->SetDual(true);
    PlayNotes(state, instrument);
}

void PlayNoteOn_Split(benchmark::State& state) {
    Instrument instrument;
    instrument.engine->SetSplit(true);
    PlayNotes(state, instrument);
}

void PlayNoteOn_Arpeggiated(benchmark::State& state) {
    Instrument instrument;
    instrument.engine->SetArpeggiating(true);
    PlayNotes(state, instrument);
}

}  // namespace

BENCHMARK(Floor_SinkAlone);
BENCHMARK(PlayNoteOn_Single);
BENCHMARK(PlayNoteOn_Dual);
BENCHMARK(PlayNoteOn_Split);
BENCHMARK(PlayNoteOn_Arpeggiated);
