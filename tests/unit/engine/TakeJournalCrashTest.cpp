// A recording program is killed in the middle of anything, and the next start offers the take.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "engine/TakeJournal.h"
#include "support/ChildProcess.h"
#include "support/KillAtSystemCall.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/RecordUntilKilled.h"

using namespace KivoraTest;
using Kivora::TakeJournal;
using Kivora::WaitingTake;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr int kNotePeriodMs = 10;
constexpr const char* kTakes = "Takes";
constexpr const char* kPlayed = "played";

NK::CString ToPath(const std::filesystem::path& path) {
    return NK::CString::FromUtf8(path.string());
}

/// When the last note was played that was begun before the end.
std::uint32_t ReadLastPlayed(const CTemporaryFolder& folder) {
    std::ifstream stream(folder / kPlayed, std::ios::binary);
    std::uint32_t last = 0;
    while (stream.read(reinterpret_cast<char*>(&last), sizeof(last))) {
    }
    return last;
}

/// The ticks of the note-ons in a saved take.
std::vector<long> ReadNoteOns(const std::filesystem::path& path) {
    const std::string textPath = path.string() + ".csv";
    EXPECT_EQ(std::system(("midicsv '" + path.string() + "' > '" + textPath + "'").c_str()), 0);
    std::ifstream csv(textPath);
    std::vector<long> ticks;
    for (std::string line; std::getline(csv, line);) {
        if (line.find("Note_on_c") != std::string::npos) {
            ticks.push_back(std::stol(line.substr(line.find(' '))));
        }
    }
    return ticks;
}

class TakeJournalCrash : public testing::TestWithParam<int> {};

}  // namespace

int KivoraTest::RecordUntilKilled(const char* folder) {
    const std::filesystem::path root = folder;
    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    TakeJournal journal(engine, ToPath(root / kTakes), TakeJournal::Settings{.runThread = false});
    std::FILE* const played = std::fopen((root / kPlayed).c_str(), "wb");
    if (played == nullptr || !engine.StartRecording()) {
        return 1;
    }
    std::setvbuf(played, nullptr, _IONBF, 0);
    const std::int64_t start = rig.time.GetTimeMs();
    rig.RunPlayer();
    for (std::int64_t lastWrite = start; rig.time.GetTimeMs() - start < 3'600'000;) {
        const auto now = static_cast<std::uint32_t>(rig.time.GetTimeMs() - start);
        if (std::fwrite(&now, sizeof(now), 1, played) != 1) {
            return 1;
        }
        engine.PlayNoteOn(60, 100);
        rig.RunPlayer();
        rig.time.AdvanceMs(kNotePeriodMs / 2);
        engine.PlayNoteOff(60);
        rig.RunPlayer();
        rig.time.AdvanceMs(kNotePeriodMs / 2);
        if (rig.time.GetTimeMs() - lastWrite >= TakeJournal::kPeriodMs) {
            lastWrite = rig.time.GetTimeMs();
            journal.WriteOut();
        }
    }
    return 0;
}

TEST_P(TakeJournalCrash, ATakeIsThereWithAtMostTwoSecondsLost) {
    const CTemporaryFolder folder;
    {
        CChildProcess recorder({"/proc/self/exe", "--record", folder.GetPath().string()});
        // Anything above the parameter: the kill strikes wherever the program happens to be.
        ASSERT_TRUE(WaitUntil([&] { return ReadLastPlayed(folder) >= static_cast<std::uint32_t>(GetParam()); }));
        recorder.End(SIGKILL);
    }
    const std::uint32_t lastPlayed = ReadLastPlayed(folder);

    EngineRig rig;
    TakeJournal journal(rig.Create(), ToPath(folder / kTakes), TakeJournal::Settings{.runThread = false});
    const std::vector<WaitingTake> waiting = journal.GetWaiting();
    ASSERT_THAT(waiting, SizeIs(1));
    EXPECT_TRUE(waiting[0].isFromEarlierRun);
    EXPECT_GE(waiting[0].lengthMs, static_cast<int>(lastPlayed) - 2000);
    EXPECT_LE(waiting[0].lengthMs, static_cast<int>(lastPlayed) + kNotePeriodMs);
    ASSERT_TRUE(journal.Save(waiting[0].id, ToPath(folder / "take.mid")));
    EXPECT_THAT(journal.GetWaiting(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(folder / kTakes));

    // The note at 0 stays there; the others are 100 ms later, as each take begins.
    const std::vector<long> ticks = ReadNoteOns(folder / "take.mid");
    ASSERT_GE(static_cast<std::int64_t>(ticks.size()), (std::int64_t{lastPlayed} - 2000) / kNotePeriodMs);
    for (std::size_t i = 1; i < ticks.size(); ++i) {
        ASSERT_EQ(ticks[i], 100 + kNotePeriodMs * static_cast<long>(i));
    }
}

INSTANTIATE_TEST_SUITE_P(AtAnyMoment, TakeJournalCrash, testing::Values(2000, 2500, 3500, 5000, 10000, 20000, 60000));

TEST(TakeJournalKilled, AtAnySystemCallNothingIsLostThatWasJournalledAndNoHalfFileIsThere) {
    /// What the killed program had come to; in memory that it shares with this one.
    struct Progress {
        int journalledMs;
    };
    void* const shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    auto* const progress = new (shared) Progress{};
    std::uintmax_t wholeSize = 0;
    int waitingTakes = 0;
    int savedTakes = 0;
    EndOfRun end = EndOfRun::kKilled;
    for (int number = 1; end == EndOfRun::kKilled; ++number) {
        const CTemporaryFolder folder;
        const NK::CString takes = ToPath(folder / kTakes);
        const NK::CString path = ToPath(folder / "take.mid");
        *progress = {};
        end = KillAtSystemCall(number, [&](const std::function<void()>& begin) {
            EngineRig rig;
            Kivora::CKivora& engine = rig.CreateOpen();
            TakeJournal journal(engine, takes, TakeJournal::Settings{.runThread = false});
            engine.StartRecording();
            rig.RunPlayer();
            const std::int64_t start = rig.time.GetTimeMs();
            begin();
            for (int i = 0; i < 3; ++i) {
                engine.PlayNoteOn(60, 100);
                rig.RunPlayer();
                const auto playedMs = static_cast<int>(rig.time.GetTimeMs() - start);
                journal.WriteOut();
                progress->journalledMs = playedMs;
                rig.time.AdvanceMs(TakeJournal::kPeriodMs);
            }
            engine.StopRecording();
            journal.WriteOut();
            journal.Save(journal.GetWaiting()[0].id, path);
        });
        if (end == EndOfRun::kNotAllowed) {
            GTEST_SKIP() << "this machine lets no process be traced";
        }

        EngineRig rig;
        TakeJournal journal(rig.Create(), takes, TakeJournal::Settings{.runThread = false});
        const std::vector<WaitingTake> waiting = journal.GetWaiting();
        ASSERT_LE(waiting.size(), 1U) << number;
        const bool isSaved = std::filesystem::exists(folder / "take.mid");
        if (progress->journalledMs > 0 && !isSaved) {
            ASSERT_EQ(waiting.size(), 1U) << number;
            ASSERT_GE(waiting[0].lengthMs, progress->journalledMs) << number;
        }
        if (isSaved) {
            const std::uintmax_t size = std::filesystem::file_size(folder / "take.mid");
            wholeSize = wholeSize == 0 ? size : wholeSize;
            ASSERT_EQ(size, wholeSize) << number;
            ++savedTakes;
        }
        for (const WaitingTake& take : waiting) {
            ++waitingTakes;
            ASSERT_TRUE(journal.Save(take.id, ToPath(folder / "again.mid"))) << number;
            if (isSaved) {
                ASSERT_EQ(std::filesystem::file_size(folder / "again.mid"), wholeSize) << number;
            }
        }
        if (std::filesystem::exists(folder / kTakes)) {
            ASSERT_TRUE(std::filesystem::is_empty(folder / kTakes)) << number;
        }
    }
    munmap(shared, sizeof(Progress));
    EXPECT_EQ(end, EndOfRun::kFinished);
    EXPECT_GT(waitingTakes, 20);
    EXPECT_GT(savedTakes, 2);
}
