// The instrument between other programs on a real ALSA sequencer: from a key of the X server to a note, through from a
// MIDI keyboard to the output, and the steps of an arpeggio. Each beside a bare program in the same run. Nothing is
// measured where there is no sequencer.
#include <alsa/asoundlib.h>
#include <benchmark/benchmark.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ArpeggioGrid.h"
#include "engine/CKivora.h"
#include "libmidi/alsa/AlsaBackend.h"
#include "libmidi/MIDIPlayer.h"
#include "Measure.h"
#include "support/ChildProcess.h"
#include "support/SequencerClient.h"
#include "XKeyboard.h"

namespace {

using namespace KivoraBench;
using KivoraTest::CChildProcess;
using KivoraTest::CSequencerClient;

/// What the program takes for the system's synthesizer when nothing else is chosen.
constexpr char kOutput[] = "Benchmark's Software synthesizer";
constexpr char kInput[] = "Benchmark's keyboard";

bool IsMissing(benchmark::State& state) {
    if (!KivoraTest::HasSequencer()) {
        state.SkipWithError("no ALSA sequencer on this machine");
        return true;
    }
    return false;
}

/// Waits for that note; its time. The epoch when it does not come within five seconds.
Clock::time_point Await(const CSequencerClient& client, std::size_t count) {
    if (!client.WaitForCount(count, std::chrono::seconds(5))) {
        return {};
    }
    return client.GetNotes()[count - 1].arrival;
}

/// Microseconds from each press to its note, and from each release to its end. Empty when a note is missing.
struct KeyTimes {
    std::vector<double> presses;
    std::vector<double> releases;

    void Append(const KeyTimes& other) {
        presses.insert(presses.end(), other.presses.begin(), other.presses.end());
        releases.insert(releases.end(), other.releases.begin(), other.releases.end());
    }
};

/// Presses and releases keys at random times.
KeyTimes PressKeys(CXKeyboard& keyboard, CSequencerClient& client) {
    constexpr int kPresses = 150;
    constexpr std::array<std::uint8_t, 7> kRowOfZ = {52, 53, 54, 55, 56, 57, 58};
    KeyTimes times;
    std::mt19937 random(1);
    const auto rest = [&random] { std::this_thread::sleep_for(std::chrono::microseconds(20000 + random() % 30000)); };
    client.Clear();
    for (int i = 0; i < kPresses; ++i) {
        const std::uint8_t key = kRowOfZ[random() % kRowOfZ.size()];
        const std::size_t before = client.GetCount();
        const Clock::time_point pressed = Clock::now();
        keyboard.Move(key, true);
        const Clock::time_point arrived = Await(client, before + 1);
        rest();
        const Clock::time_point released = Clock::now();
        keyboard.Move(key, false);
        const Clock::time_point ended = Await(client, before + 2);
        if (arrived == Clock::time_point() || ended == Clock::time_point()) {
            return {};
        }
        rest();
        times.presses.push_back(Microseconds(arrived - pressed));
        times.releases.push_back(Microseconds(ended - released));
    }
    return times;
}

/// Beside those of the bare program: what a median and a 99th percentile may be over it.
void ReportKeys(benchmark::State& state, const std::string& name, const std::vector<double>& ours,
                const std::vector<double>& bare) {
    constexpr double kMedianShareUs = 150.0;
    constexpr double kRareShareUs = 500.0;
    Report(state, "bare_" + name, bare);
    Report(state, name, ours);
    state.counters[name + "_share_of_allowed"] = std::max(Quantile(ours, 0.5) / (Quantile(bare, 0.5) + kMedianShareUs),
                                                          Quantile(ours, 0.99) / (Quantile(bare, 0.99) + kRareShareUs));
}

void KeyToSequencer(benchmark::State& state) {
    if (IsMissing(state)) {
        return;
    }
    const auto home = std::filesystem::temp_directory_path() / "kivora-sequencer-bench";
    std::filesystem::create_directory(home);
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    setenv("DISPLAY", ":97", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("KIVORA_SOUNDFONT", "/no-such-file", 1);  // without the built-in synthesizer
    for (auto _ : state) {
        CXKeyboard keyboard(":97");
        CSequencerClient client(kOutput, kInput);
        const auto measure = [&](std::vector<std::string> program, const char* title) {
            const CChildProcess process(std::move(program));
            return keyboard.FocusWindow(title) ? PressKeys(keyboard, client) : KeyTimes();
        };
        KeyTimes bare;
        KeyTimes toolkit;
        KeyTimes ours;
        for (int round = 0; round < 2; ++round) {
            const KeyTimes floor = measure({KIVORA_X11_TO_PORTMIDI, kOutput}, "Bare");
            const KeyTimes least = measure({KIVORA_QT_TO_PORTMIDI, kOutput}, "Bare Qt");
            const KeyTimes through = measure({KIVORA_PROGRAM}, "Kivora LX");
            if (floor.presses.empty() || least.presses.empty() || through.presses.empty()) {
                state.SkipWithError(through.presses.empty() ? "no notes from the program"
                                                            : "no notes from a bare program");
                return;
            }
            bare.Append(floor);
            toolkit.Append(least);
            ours.Append(through);
        }
        Report(state, "toolkit_press", toolkit.presses);
        Report(state, "toolkit_release", toolkit.releases);
        ReportKeys(state, "press", ours.presses, bare.presses);
        ReportKeys(state, "release", ours.releases, bare.releases);
    }
    std::filesystem::remove_all(home);
}
BENCHMARK(KeyToSequencer)->Iterations(1)->Unit(benchmark::kMillisecond);

/// The engine with both ports of the client open.
struct Instrument {
    Instrument()
        : engine({.backends = {LibMidi::MakeAlsaBackend(std::make_shared<LibMidi::AlsaClient>())},
                  .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                  .wallClockMs =
                      [this] {
                          lastMs = NK::CWorldClockSource::Instance().GetTimeMs();
                          return lastMs.load();
                      }}) {
        engine.SetOutputPortByName(NK::CString::FromUtf8(kOutput));
        engine.SetInputPortByName(NK::CString::FromUtf8(kInput));
    }
    std::atomic<std::int64_t> lastMs{0};  ///< what the engine last read
    Kivora::CKivora engine;
};

/// The floor: a client that waits for what arrives and sends it on.
class BareThrough {
public:
    BareThrough() {
        snd_seq_open(&sequencer_, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK);
        port_ = snd_seq_create_simple_port(
            sequencer_, "Bare",
            SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_READ | SND_SEQ_PORT_CAP_SUBS_WRITE,
            SND_SEQ_PORT_TYPE_MIDI_GENERIC);
        snd_seq_addr_t address{};
        if (snd_seq_parse_address(sequencer_, &address, kInput) >= 0) {
            snd_seq_connect_from(sequencer_, port_, address.client, address.port);
        }
        if (snd_seq_parse_address(sequencer_, &address, kOutput) >= 0) {
            snd_seq_connect_to(sequencer_, port_, address.client, address.port);
        }
        thread_ = std::thread([this] { Run(); });
    }
    ~BareThrough() {
        stop_ = true;
        thread_.join();
        snd_seq_close(sequencer_);
    }

private:
    void Run() {
        pollfd descriptor{};
        snd_seq_poll_descriptors(sequencer_, &descriptor, 1, POLLIN);
        while (!stop_) {
            constexpr int kStopSeenMs = 50;
            poll(&descriptor, 1, kStopSeenMs);
            for (snd_seq_event_t* event = nullptr; snd_seq_event_input(sequencer_, &event) >= 0;) {
                snd_seq_ev_set_source(event, static_cast<unsigned char>(port_));
                snd_seq_ev_set_subs(event);
                snd_seq_ev_set_direct(event);
                snd_seq_event_output_direct(sequencer_, event);
            }
        }
    }

    snd_seq_t* sequencer_ = nullptr;
    int port_ = 0;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

std::vector<double> SendKeys(CSequencerClient& client) {
    constexpr int kKeys = 1000;
    std::vector<double> latencies;
    std::mt19937 random(1);
    client.Clear();
    for (int i = 0; i < kKeys; ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(3000 + random() % 2000));
        const std::size_t before = client.GetCount();
        const Clock::time_point sent = Clock::now();
        client.Send(0, 60, i % 2 == 0 ? 100 : 0);
        const Clock::time_point arrived = Await(client, before + 1);
        if (arrived == Clock::time_point()) {
            return {};
        }
        latencies.push_back(Microseconds(arrived - sent));
        if (client.GetCount() > 100) {
            client.Clear();
        }
    }
    return latencies;
}

void InputToOutput(benchmark::State& state) {
    if (IsMissing(state)) {
        return;
    }
    for (auto _ : state) {
        CSequencerClient client(kOutput, kInput);
        std::vector<double> bare;
        std::vector<double> through;
        {
            const BareThrough floor;
            bare = SendKeys(client);
        }
        {
            const Instrument instrument;
            through = SendKeys(client);
        }
        if (bare.empty() || through.empty()) {
            state.SkipWithError("a note did not come through");
            return;
        }
        Report(state, "bare", bare);
        Report(state, "through", through);
        constexpr double kMedianShareUs = 300.0;
        constexpr double kRareShareUs = 500.0;
        state.counters["share_of_allowed"] = std::max(Quantile(through, 0.5) / (Quantile(bare, 0.5) + kMedianShareUs),
                                                      Quantile(through, 0.99) / (Quantile(bare, 0.99) + kRareShareUs));
    }
}
BENCHMARK(InputToOutput)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

void Arpeggio(benchmark::State& state) {
    constexpr int kStep = 24;  // ticks; 62.5 ms
    constexpr std::size_t kSteps = 200;
    constexpr double kTolerableUs = 2000.0;
    if (IsMissing(state)) {
        return;
    }
    for (auto _ : state) {
        CSequencerClient client(kOutput, kInput);
        Instrument instrument;
        Kivora::CKivora& engine = instrument.engine;
        const std::int64_t startMs = engine.WithLock([&] {
            engine.SetArpeggiating(true);
            engine.WithArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(kStep, 50); });
            engine.RestartClock();
            return instrument.lastMs.load();
        });
        client.Clear();
        CBareSleeper bare;
        for (const std::uint8_t note : {std::uint8_t{60}, std::uint8_t{64}, std::uint8_t{67}}) {
            client.Send(0, note, 100);
        }
        while (client.GetCount() < kSteps * 2) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        std::vector<double> lateness;
        for (const CSequencerClient::Note& note : client.GetNotes()) {
            if (note.on) {
                lateness.push_back(GetLateness(NK::MIDI::MusicalClock(), note.wallUs - startMs * 1000, kStep));
            }
        }
        const auto inTime =
            std::count_if(lateness.begin(), lateness.end(), [](double us) { return us <= kTolerableUs; });
        Report(state, "late", lateness);
        state.counters["late_max_us"] = Quantile(lateness, 1.0);
        state.counters["within_2_ms"] = static_cast<double>(inTime) / static_cast<double>(lateness.size());
        Report(state, "bare", bare.End());
        state.counters["p50_ratio"] = Quantile(lateness, 0.5) / Quantile(bare.End(), 0.5);
    }
}
BENCHMARK(Arpeggio)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

}  // namespace
