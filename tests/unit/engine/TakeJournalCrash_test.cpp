// A recording program is killed in the middle of anything, and the next start offers the take.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
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
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/RecordUntilKilled.h"
#include "unit/nk/WaitUntil.h"

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
