// A wall clock that is set while a take runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <memory>

#include "engine/CKivora.h"
#include "libmidi/MIDIPlayer.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

using namespace KivoraTest;

namespace {
std::atomic<long> steppedSeconds{0};
}

/// In place of the C library's, for this program: its wall clock can be set.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, now);
    if (clock == CLOCK_REALTIME) {
        now->tv_sec += steppedSeconds;
    }
    return static_cast<int>(result);
}

namespace {

constexpr long kMonth = 31L * 24 * 60 * 60;
constexpr int kShortMs = 25000;  ///< more than this test takes, less than any step

class SteppedClock : public testing::TestWithParam<long> {
protected:
    SteppedClock() {
        backend.Plug(L"Software synthesizer", LibMidi::kOutput);
        engine = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                       .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                                       .userDataDir = NK::CString::FromUtf8((folder / "user").string())});
        engine->SetOutputPortByIndex(0);
    }
    ~SteppedClock() override { steppedSeconds = 0; }
    void Play(std::uint8_t note) {
        const int count = engine->GetRecordedCount();
        engine->PlayNoteOn(note, 100);
        ASSERT_TRUE(WaitUntil([&] { return engine->GetRecordedCount() > count; }));
    }

    CTemporaryFolder folder;
    FakeBackend backend;
    std::unique_ptr<Kivora::CKivora> engine;
};

}  // namespace

TEST_P(SteppedClock, NeitherEndsATakeNorLeavesAGapInIt) {
    ASSERT_TRUE(engine->StartRecording());
    Play(60);
    const std::int64_t before = NK::CWorldClockSource::Instance().GetTimeMs();
    steppedSeconds = GetParam();
    ASSERT_GT(std::abs(NK::CWorldClockSource::Instance().GetTimeMs() - before), kShortMs) << "the clock was set";
    EXPECT_GE(engine->GetIdleTime(), 0);
    EXPECT_LT(engine->GetIdleTime(), kShortMs);
    Play(62);
    EXPECT_GE(engine->GetRecordingTime(), 0);
    EXPECT_LT(engine->GetRecordingTime(), kShortMs);
    steppedSeconds = 0;
    Play(64);
    ASSERT_TRUE(engine->StopRecording());
    std::uint32_t previous = 0;
    engine->GetCapture()->VisitCaptured(0, [&previous](const LibMidi::CapturedEvent& event) {
        EXPECT_GE(event.time, previous);
        EXPECT_LT(event.time, static_cast<std::uint32_t>(kShortMs));
        previous = event.time;
    });
}

INSTANTIATE_TEST_SUITE_P(By, SteppedClock, testing::Values(45, kMonth, -45, -kMonth));
