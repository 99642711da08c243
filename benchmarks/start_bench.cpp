// How long the program takes to a window that plays, what memory it takes, and what it costs while nobody plays.
#include <benchmark/benchmark.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Measure.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "XKeyboard.h"

namespace {

using namespace KivoraBench;
using KivoraTest::CChildProcess;

constexpr char kDisplay[] = ":97";
constexpr char kTitle[] = "Kivora LX";
/// Three resets of the synthesizer, of 150 ms each by their definition: with the settings, before the output is opened
/// and after.
constexpr double kPrescribedMs = 450.0;
constexpr double kAllowedMs = 450.0;

void Wait(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// A home folder of its own and the stand-in for PortMidi.
void SetEnvironment(const KivoraTest::CTemporaryFolder& home) {
    setenv("HOME", home.GetPath().c_str(), 1);
    setenv("XDG_DATA_HOME", home.GetPath().c_str(), 1);
    setenv("DISPLAY", kDisplay, 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("LD_LIBRARY_PATH", KIVORA_STANDIN_DIR, 1);
}

/// Milliseconds from the start of a program to its visible window.
double TimeToWindow(CXKeyboard& keyboard, const std::string& program, const std::string& title) {
    const Clock::time_point begin = Clock::now();
    const CChildProcess process({program});
    while (keyboard.FindWindow(title) == XCB_NONE) {
        Wait(1);
    }
    const double milliseconds = Microseconds(Clock::now() - begin) / 1000.0;
    Wait(300);
    return milliseconds;
}

/// The ports are open before the window shows, so that a window that shows plays.
void Start(benchmark::State& state) {
    const KivoraTest::CTemporaryFolder home;
    SetEnvironment(home);
    CXKeyboard keyboard(kDisplay);
    constexpr int kStarts = 15;
    for (auto _ : state) {
        std::vector<double> bare;
        std::vector<double> program;
        for (int i = 0; i < kStarts; ++i) {
            bare.push_back(TimeToWindow(keyboard, KIVORA_BARE_WINDOW, "Bare window"));
            program.push_back(TimeToWindow(keyboard, KIVORA_PROGRAM, kTitle));
        }
        const double median = Quantile(program, 0.5);
        state.counters["bare_ms"] = Quantile(bare, 0.5);
        state.counters["program_ms"] = median;
        state.counters["beyond_prescribed_ms"] = median - kPrescribedMs;
        state.counters["share_of_allowed"] = (median - kPrescribedMs) / kAllowedMs;
    }
}
BENCHMARK(Start)->Iterations(1)->Unit(benchmark::kMillisecond);

/// In MB, as the kernel counts it.
double GetResidentMb(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024.0;
        }
    }
    return 0.0;
}

/// What the threads of a process have taken of the processor, in ms, and how often each was given it.
struct Threads {
    double processorMs = 0;
    double wakeups = 0;
    std::map<std::string, double> runs;  ///< by the thread's number
};

Threads GetThreads(pid_t process) {
    Threads threads;
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream file(task.path() / "schedstat");
        double onProcessorNs = 0;
        double waitingNs = 0;
        double runs = 0;
        if (file >> onProcessorNs >> waitingNs >> runs) {
            threads.processorMs += onProcessorNs / 1e6;
            threads.wakeups += runs;
            threads.runs[task.path().filename()] = runs;
        }
    }
    return threads;
}

/// How many threads of a process run at least every other millisecond.
int CountTicking(pid_t process) {
    constexpr int kPeriodMs = 500;
    const Threads before = GetThreads(process);
    Wait(kPeriodMs);
    const Threads after = GetThreads(process);
    return static_cast<int>(std::count_if(after.runs.begin(), after.runs.end(), [&before](const auto& thread) {
        const auto earlier = before.runs.find(thread.first);
        return earlier != before.runs.end() && thread.second - earlier->second > kPeriodMs / 2.0;
    }));
}

double GetProcessorMsOfSleepers(int count, int milliseconds) {
    std::vector<std::unique_ptr<CBareSleeper>> sleepers;
    for (int i = 0; i < count; ++i) {
        sleepers.push_back(std::make_unique<CBareSleeper>());
        std::this_thread::sleep_for(std::chrono::microseconds(1000 / count));
    }
    const double before = GetThreads(getpid()).processorMs;
    Wait(milliseconds);
    return GetThreads(getpid()).processorMs - before;
}

/// The whole program with its ports open and nobody playing, against as many bare sleepers as it has threads that wake
/// each millisecond, one at least.
void Rest(benchmark::State& state) {
    const KivoraTest::CTemporaryFolder home;
    SetEnvironment(home);
    CXKeyboard keyboard(kDisplay);
    constexpr int kTurns = 10;
    constexpr int kTurnMs = 500;
    for (auto _ : state) {
        const CChildProcess process({KIVORA_PROGRAM});
        if (!keyboard.FocusWindow(kTitle)) {
            state.SkipWithError("the window does not appear");
            return;
        }
        Wait(1000);
        const int ticking = CountTicking(process.GetId());
        // By turns, as what else runs on the machine makes each waking dearer, and as threads that wake together share
        // the cost of waking the processor.
        double program = 0;
        double wakeups = 0;
        double bare = 0;
        for (int turn = 0; turn < kTurns; ++turn) {
            const Threads before = GetThreads(process.GetId());
            Wait(kTurnMs);
            const Threads after = GetThreads(process.GetId());
            program += after.processorMs - before.processorMs;
            wakeups += after.wakeups - before.wakeups;
            kill(process.GetId(), SIGSTOP);
            bare += GetProcessorMsOfSleepers(std::max(ticking, 1), kTurnMs);
            kill(process.GetId(), SIGCONT);
        }
        state.counters["ticking_threads"] = ticking;
        state.counters["wakeups_per_s"] = 1000.0 * wakeups / (kTurns * kTurnMs);
        state.counters["program_percent"] = 100.0 * program / (kTurns * kTurnMs);
        state.counters["bare_percent"] = 100.0 * bare / (kTurns * kTurnMs);
        state.counters["ratio"] = program / bare;
    }
}
BENCHMARK(Rest)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

/// With the built-in synthesizer playing into a file, as there may be no sound card.
void Memory(benchmark::State& state) {
    const KivoraTest::CTemporaryFolder home;
    SetEnvironment(home);
    setenv("KIVORA_AUDIO_DRIVER", "file", 1);
    setenv("KIVORA_AUDIO_FILE", "/dev/null", 1);
    unsetenv("LD_LIBRARY_PATH");
    CXKeyboard keyboard(kDisplay);
    for (auto _ : state) {
        const CChildProcess process({KIVORA_PROGRAM});
        if (!keyboard.FocusWindow(kTitle)) {
            state.SkipWithError("the window does not appear");
            return;
        }
        constexpr std::uint8_t kKeyOfZ = 52;
        for (const bool down : {true, false}) {
            keyboard.Move(kKeyOfZ, down);
            Wait(500);
        }
        state.counters["resident_mb"] = GetResidentMb(process.GetId());
    }
}
BENCHMARK(Memory)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
