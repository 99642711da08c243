// From a key of the X server to the write to PortMidi, of the program in its window and of the shortest programs that
// do it, without the toolkit and with it, all over the stand-in for the library. Needs no sequencer.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Measure.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "XKeyboard.h"

namespace {

using namespace KivoraBench;

constexpr char kDisplay[] = ":98";
constexpr int kPresses = 300;

/// The time of day in microseconds, which is what the stand-in writes beside each message.
double GetWallUs() {
    return std::chrono::duration<double, std::micro>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// The times of the note-ons in the stand-in's log.
std::vector<double> ReadNoteOns(const std::filesystem::path& log) {
    constexpr std::size_t kTimeColumn = 9;  // behind "90 3C 50 "
    std::vector<double> times;
    std::ifstream file(log);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("90")) {
            times.push_back(std::stod(line.substr(kTimeColumn)) * 1e6);
        }
    }
    return times;
}

/// Runs a program, presses and releases keys at random times, and returns the microseconds from each press to its note.
/// Empty when notes are missing.
std::vector<double> PressKeys(CXKeyboard& keyboard, const std::filesystem::path& log, std::vector<std::string> program,
                              const char* title) {
    constexpr std::uint8_t kKeyOfZ = 52;
    std::filesystem::remove(log);
    const KivoraTest::CChildProcess process(std::move(program));
    if (!keyboard.FocusWindow(title)) {
        return {};
    }
    std::mt19937 random(1);
    const auto rest = [&random] { std::this_thread::sleep_for(std::chrono::microseconds(20000 + random() % 30000)); };
    std::vector<double> times;
    for (int i = 0; i < kPresses; ++i) {
        const auto key = static_cast<std::uint8_t>(kKeyOfZ + i % 7);
        times.push_back(GetWallUs());
        keyboard.Move(key, true);
        rest();
        keyboard.Move(key, false);
        rest();
    }
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const std::vector<double> noteOns = ReadNoteOns(log);
    if (noteOns.size() != times.size()) {
        return {};
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        times[i] = noteOns[i] - times[i];
    }
    return times;
}

void KeyToWrite(benchmark::State& state) {
    const KivoraTest::CTemporaryFolder home;
    const std::filesystem::path log = home / "log";
    setenv("HOME", home.GetPath().c_str(), 1);
    setenv("XDG_DATA_HOME", home.GetPath().c_str(), 1);
    setenv("DISPLAY", kDisplay, 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("KIVORA_SOUNDFONT", "/no-such-file", 1);  // without the built-in synthesizer
    setenv("LD_LIBRARY_PATH", KIVORA_STANDIN_DIR, 1);
    setenv("KIVORA_MIDI", "portmidi", 1);
    setenv("KIVORA_STANDIN_LOG", log.c_str(), 1);
    for (auto _ : state) {
        CXKeyboard keyboard(kDisplay);
        CBareSleeper sleeper;
        const std::vector<double> bare =
            PressKeys(keyboard, log, {KIVORA_X11_TO_PORTMIDI, "Software synthesizer"}, "Bare");
        const std::vector<double> toolkit =
            PressKeys(keyboard, log, {KIVORA_QT_TO_PORTMIDI, "Software synthesizer"}, "Bare Qt");
        const std::vector<double> key = PressKeys(keyboard, log, {KIVORA_PROGRAM}, "Kivora LX");
        if (bare.empty() || toolkit.empty() || key.empty()) {
            state.SkipWithError("notes are missing");
            return;
        }
        constexpr double kOwnShareUs = 300.0;
        const double period = Quantile(sleeper.End(), 0.5);
        Report(state, "bare", bare);
        Report(state, "toolkit", toolkit);
        Report(state, "key", key);
        state.counters["period_us"] = period;
        state.counters["over_bare_us"] = Quantile(key, 0.5) - Quantile(bare, 0.5);
        state.counters["share_of_allowed"] = Quantile(key, 0.5) / (Quantile(bare, 0.5) + period + kOwnShareUs);
    }
}
BENCHMARK(KeyToWrite)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

}  // namespace
