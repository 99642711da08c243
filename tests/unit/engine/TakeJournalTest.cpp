// Recordings that wait until they are saved or refused, in this run and the next.
#include "engine/TakeJournal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/EngineControls.h"
#include "engine/takes/RecordedTrack.h"
#include "libmidi/CaptureFile.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::CKivora;
using Kivora::TakeJournal;
using Kivora::WaitingTake;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::int64_t kNow = 1'700'000'000;

class TakeJournalTest : public testing::Test {
protected:
    TakeJournalTest() { Start(); }

    std::unique_ptr<TakeJournal> MakeJournal(CKivora& engine) {
        return std::make_unique<TakeJournal>(engine, NK::CString::FromUtf8(GetTakes().string()),
                                             TakeJournal::Settings{.now = [this] { return now; }, .runThread = false});
    }
    /// The program's start.
    void Start() {
        rig.emplace();
        rig->CreateOpen();
        journal = MakeJournal(*rig->engine);
    }
    /// The program's end, as a crash leaves it: nothing is written out any more.
    void Crash() {
        // What the crash leaves stands in the folder; the objects of the old run end in another one.
        const std::filesystem::path aside = folder / "aside";
        std::filesystem::copy(GetTakes(), aside);
        Quit();
        std::filesystem::remove_all(GetTakes());
        std::filesystem::rename(aside, GetTakes());
    }
    void Quit() {
        journal.reset();
        rig.reset();
    }
    CKivora& GetEngine() { return *rig->engine; }
    std::filesystem::path GetTakes() const { return folder / "user" / "Takes"; }
    /// And whatever else is there, but for the grids that belong to journals.
    std::vector<std::filesystem::path> ListJournals() const {
        std::vector<std::filesystem::path> files;
        if (std::filesystem::exists(GetTakes())) {
            for (const auto& entry : std::filesystem::directory_iterator(GetTakes())) {
                std::filesystem::path take = entry.path();
                if (take.extension() != ".kivgrid" || !exists(take.replace_extension("kivtake"))) {
                    files.push_back(entry.path());
                }
            }
        }
        return files;
    }

    /// A note of 100 ms in each second.
    void Play(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            GetEngine().PlayNoteOn(60, 100);
            rig->RunPlayer();
            rig->Run(100);
            GetEngine().PlayNoteOff(60);
            rig->RunPlayer();
            rig->Run(900);
            journal->WriteOut();
        }
    }
    void Record(int seconds) {
        ASSERT_TRUE(GetEngine().StartRecording());
        rig->RunPlayer();
        Play(seconds);
    }

    NK::CString Path(const std::string& name) const { return NK::CString::FromUtf8((folder / name).string()); }
    std::string Bytes(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    CTemporaryFolder folder;
    std::int64_t now = kNow;
    std::optional<EngineRig> rig;
    std::unique_ptr<TakeJournal> journal;
};

}  // namespace

TEST_F(TakeJournalTest, NothingWaitsAndNothingIsMadeBeforeSomethingWasPlayed) {
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    ASSERT_TRUE(GetEngine().StartRecording());
    rig->Run(3000);
    journal->WriteOut();
    EXPECT_FALSE(std::filesystem::exists(GetTakes()));
    GetEngine().StopRecording();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_GT(GetEngine().GetRecordedCount(), 0);
}

TEST_F(TakeJournalTest, ARecordingThatRunsIsJournalledAndDoesNotWait) {
    Record(3);
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    ASSERT_THAT(ListJournals(), SizeIs(1));
    EXPECT_EQ(std::filesystem::file_size(ListJournals()[0]), 20 + 12 * (6 + 6));
}

TEST_F(TakeJournalTest, AStoppedRecordingWaitsWithItsTimeAndLength) {
    Record(3);
    now += 3;
    ASSERT_TRUE(GetEngine().StopRecording());
    const std::vector<WaitingTake> waiting = journal->GetWaiting();
    ASSERT_THAT(waiting, SizeIs(1));
    EXPECT_EQ(waiting[0].startedAt, kNow);
    EXPECT_EQ(waiting[0].lengthMs, 2100);
    EXPECT_FALSE(waiting[0].isFromEarlierRun);
    EXPECT_TRUE(waiting[0].isOnDisk);
}

TEST_F(TakeJournalTest, SavingWritesTheFileOfTheEngineAndLeavesNoJournal) {
    Record(3);
    GetEngine().StopRecording();
    int changes = 0;
    QObject::connect(journal.get(), &TakeJournal::WaitingChanged, [&changes] { ++changes; });
    ASSERT_TRUE(journal->Save(journal->GetWaiting()[0].id, Path("take.mid")));
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(ListJournals(), IsEmpty());
    ASSERT_TRUE(GetEngine().SaveRecording(Path("engine.mid")));
    EXPECT_EQ(Bytes("take.mid"), Bytes("engine.mid"));
    EXPECT_FALSE(Bytes("take.mid").empty());
}

TEST_F(TakeJournalTest, SavingThroughTheEngineCountsAsSaving) {
    Record(3);
    EXPECT_TRUE(GetEngine().SaveRecording(Path("take.mid")));
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(ListJournals(), IsEmpty());
}

TEST_F(TakeJournalTest, ARefusedTakeLeavesNoJournalAndCannotBeSaved) {
    Record(3);
    GetEngine().StopRecording();
    const int id = journal->GetWaiting()[0].id;
    EXPECT_TRUE(journal->Refuse(id));
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(ListJournals(), IsEmpty());
    EXPECT_FALSE(journal->Refuse(id));
    EXPECT_FALSE(journal->Save(id, Path("take.mid")));
    journal->WriteOut();
    EXPECT_THAT(ListJournals(), IsEmpty());
    Quit();
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
}

TEST_F(TakeJournalTest, RefusingTheLatestLeavesEveryOtherTakeAlone) {
    Record(2);
    Crash();
    Start();
    EXPECT_FALSE(journal->ForgetLatest()) << "the take that waits is of an earlier run";
    Record(2);
    EXPECT_FALSE(journal->ForgetLatest()) << "it is being recorded";
    GetEngine().StopRecording();
    EXPECT_TRUE(journal->ForgetLatest());
    EXPECT_FALSE(journal->ForgetLatest());
    Record(0);
    GetEngine().StopRecording();
    EXPECT_FALSE(journal->ForgetLatest()) << "nothing was played";
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_TRUE(journal->GetWaiting()[0].isFromEarlierRun);
}

TEST_F(TakeJournalTest, AfterAFailedWriteTheTakeWaitsAndCanBeSavedElsewhere) {
    Record(3);
    GetEngine().StopRecording();
    const int id = journal->GetWaiting()[0].id;
    EXPECT_FALSE(journal->Save(id, Path("no such folder/take.mid")));
    EXPECT_FALSE(GetEngine().SaveRecording(Path("no such folder/take.mid")));
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_THAT(ListJournals(), SizeIs(1));
    EXPECT_TRUE(journal->Save(id, Path("take.mid")));
}

TEST_F(TakeJournalTest, APanicEndsTheTakeAndItWaits) {
    Kivora::EngineControls controls(GetEngine());
    Record(3);
    controls.Panic();
    EXPECT_FALSE(GetEngine().IsRecording());
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
}

TEST_F(TakeJournalTest, AChangeOfTheOutputEndsTheTakeAndItWaits) {
    Kivora::EngineControls controls(GetEngine());
    Record(3);
    controls.SetOutputPortByIndex(1);
    EXPECT_FALSE(GetEngine().IsRecording());
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
}

TEST_F(TakeJournalTest, SettingUpThePortsAnewEndsTheTakeAndItCanBeSavedAllTheSame) {
    Record(3);
    GetEngine().InitMidi();
    EXPECT_EQ(GetEngine().GetRecordedCount(), 0);
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_TRUE(journal->Save(journal->GetWaiting()[0].id, Path("take.mid")));
    EXPECT_THAT(ListJournals(), IsEmpty());
}

TEST_F(TakeJournalTest, ATakeThatRunsWhenTheProgramEndsWaitsAtTheNextStart) {
    Record(3);
    GetEngine().PlayNoteOn(64, 100);  // not journalled yet
    rig->RunPlayer();
    Quit();
    EXPECT_THAT(ListJournals(), SizeIs(1));
    Start();
    const std::vector<WaitingTake> waiting = journal->GetWaiting();
    ASSERT_THAT(waiting, SizeIs(1));
    EXPECT_TRUE(waiting[0].isFromEarlierRun);
    EXPECT_TRUE(waiting[0].isOnDisk);
    EXPECT_EQ(waiting[0].startedAt, kNow);
    EXPECT_EQ(waiting[0].lengthMs, 3000);
}

TEST_F(TakeJournalTest, TheEngineMayEndBeforeTheJournal) {
    Record(3);
    rig->engine.reset();
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
    Quit();
    Start();
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
}

TEST_F(TakeJournalTest, ATakeOfAnEarlierRunIsSavedAsItWouldHaveBeenThen) {
    Record(3);
    GetEngine().StopRecording();
    ASSERT_TRUE(Kivora::SaveRecordedTrack(GetEngine().GetCapture()->GetCaptured(), Path("then.mid")));
    Quit();
    Start();
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_FALSE(journal->Save(journal->GetWaiting()[0].id, Path("no such folder/take.mid")));
    EXPECT_TRUE(journal->Save(journal->GetWaiting()[0].id, Path("now.mid")));
    EXPECT_EQ(Bytes("now.mid"), Bytes("then.mid"));
    EXPECT_THAT(ListJournals(), IsEmpty());
}

TEST_F(TakeJournalTest, ARefusedTakeOfAnEarlierRunLeavesNoJournal) {
    Record(3);
    Crash();
    Start();
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_TRUE(journal->Refuse(journal->GetWaiting()[0].id));
    EXPECT_THAT(ListJournals(), IsEmpty());
}

TEST_F(TakeJournalTest, ACrashLosesOnlyWhatCameAfterTheLastAppend) {
    Record(5);
    GetEngine().PlayNoteOn(64, 100);
    rig->Run(TakeJournal::kPeriodMs);
    Crash();
    Start();
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_EQ(journal->GetWaiting()[0].lengthMs, 4100);
    static_assert(TakeJournal::kPeriodMs < 2000);
}

TEST_F(TakeJournalTest, ANewRecordingLosesNoneThatWaits) {
    Record(2);
    Crash();
    Start();
    now += 60;
    Record(3);
    GetEngine().StopRecording();
    now += 60;
    Record(4);
    EXPECT_THAT(ListJournals(), SizeIs(3));
    GetEngine().StopRecording();
    const std::vector<WaitingTake> waiting = journal->GetWaiting();
    ASSERT_THAT(waiting, SizeIs(3));
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        EXPECT_EQ(waiting[i].startedAt, kNow + 60 * static_cast<std::int64_t>(i));
        EXPECT_EQ(waiting[i].lengthMs, 1100 + 1000 * static_cast<int>(i));
        EXPECT_EQ(waiting[i].isFromEarlierRun, i == 0);
    }
    EXPECT_TRUE(journal->Save(waiting[1].id, Path("take.mid")));
    EXPECT_THAT(journal->GetWaiting(), SizeIs(2));
    EXPECT_THAT(ListJournals(), SizeIs(2));
}

TEST_F(TakeJournalTest, TwoTakesOfOneSecondHaveAJournalEach) {
    Record(1);
    GetEngine().StopRecording();
    Record(1);
    GetEngine().StopRecording();
    EXPECT_THAT(journal->GetWaiting(), SizeIs(2));
    EXPECT_THAT(ListJournals(), SizeIs(2));
}

TEST_F(TakeJournalTest, AnotherRunningProgramDoesNotOfferWhatThisOneHolds) {
    Record(2);
    GetEngine().StopRecording();
    now += 60;
    Record(2);
    EngineRig otherRig;
    const std::unique_ptr<TakeJournal> other = MakeJournal(otherRig.Create());
    EXPECT_THAT(other->GetWaiting(), IsEmpty());
    EXPECT_THAT(ListJournals(), SizeIs(2));
    GetEngine().StopRecording();
    EXPECT_THAT(journal->GetWaiting(), SizeIs(2));
}

TEST_F(TakeJournalTest, OfTwoRunningProgramsOneOffersAnEarlierTake) {
    Record(2);
    Crash();
    Start();
    EngineRig otherRig;
    const std::unique_ptr<TakeJournal> other = MakeJournal(otherRig.Create());
    EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_THAT(other->GetWaiting(), IsEmpty());
    Quit();
    EXPECT_THAT(MakeJournal(*otherRig.engine)->GetWaiting(), SizeIs(1));
}

TEST_F(TakeJournalTest, AJournalThatIsCutOffAnywhereGivesTheWholeRecordsBefore) {
    Record(3);
    Quit();
    ASSERT_THAT(ListJournals(), SizeIs(1));
    const std::filesystem::path path = ListJournals()[0];
    std::ifstream file(path, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    constexpr std::size_t kFirstNoteEnd = 20 + 12 * 7;  // the set-up's six and a note
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        std::ofstream(path, std::ios::binary) << whole.substr(0, size);
        Start();
        const std::vector<WaitingTake> waiting = journal->GetWaiting();
        if (size < kFirstNoteEnd) {
            EXPECT_THAT(waiting, IsEmpty()) << size;
            EXPECT_FALSE(std::filesystem::exists(path)) << size;
        } else {
            ASSERT_THAT(waiting, SizeIs(1)) << size;
            ASSERT_TRUE(journal->Save(waiting[0].id, Path("take.mid"))) << size;
            const std::size_t more = (size - kFirstNoteEnd) / 12;
            EXPECT_EQ(waiting[0].lengthMs, static_cast<int>(more / 2 * 1000 + more % 2 * 100)) << size;
        }
        Quit();
    }
}

TEST_F(TakeJournalTest, WhatIsNoJournalIsLeftAlone) {
    std::filesystem::create_directories(GetTakes());
    std::ofstream(GetTakes() / "take-1-1.kivtake") << "KivTake3 of a later version";
    std::ofstream(GetTakes() / "notes.txt") << "KivTake1";
    std::filesystem::create_directory(GetTakes() / "folder.kivtake");
    std::filesystem::create_symlink(folder / "nowhere", GetTakes() / "link.kivtake");
    Quit();
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(ListJournals(), SizeIs(4));
}

TEST_F(TakeJournalTest, AFullDiskIsToldOnceAndTheRecordingGoesOn) {
    std::vector<QString> told;
    QObject::connect(journal.get(), &TakeJournal::JournalFailed,
                     [&told](const QString& text) { told.push_back(text); });
    {
        const CFileSizeLimit limit(90);
        Record(5);
        EXPECT_THAT(told, SizeIs(1));
        EXPECT_TRUE(GetEngine().IsRecording());
        EXPECT_EQ(GetEngine().GetRecordedCount(), 6 + 10);
        GetEngine().StopRecording();
        journal->WriteOut();
        ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
        EXPECT_FALSE(journal->GetWaiting()[0].isOnDisk);
        EXPECT_TRUE(journal->GetWaiting()[0].isFailing);
        EXPECT_TRUE(journal->IsFailing());
    }
    // There is room again.
    int changes = 0;
    QObject::connect(journal.get(), &TakeJournal::WaitingChanged, [&changes] { ++changes; });
    journal->WriteOut();
    EXPECT_THAT(told, SizeIs(1));
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(journal->IsFailing());
    journal->WriteOut();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(journal->GetWaiting()[0].isOnDisk);
    Quit();
    Start();
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_EQ(journal->GetWaiting()[0].lengthMs, 4100);
}

TEST_F(TakeJournalTest, WithoutAFolderToWriteToTheTakeCanBeSavedInThisRun) {
    std::vector<QString> told;
    QObject::connect(journal.get(), &TakeJournal::JournalFailed,
                     [&told](const QString& text) { told.push_back(text); });
    std::ofstream(folder / "user") << "a file where the folder should be";
    Record(2);
    GetEngine().StopRecording();
    EXPECT_THAT(told, SizeIs(1));
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_FALSE(journal->GetWaiting()[0].isOnDisk);
    Record(2);
    GetEngine().StopRecording();
    EXPECT_THAT(told, SizeIs(2)) << "once for each recording";
    EXPECT_TRUE(journal->Save(journal->GetWaiting()[0].id, Path("take.mid")));
    EXPECT_TRUE(journal->Refuse(journal->GetWaiting()[0].id));
}
