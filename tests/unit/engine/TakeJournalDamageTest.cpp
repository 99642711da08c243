// Journals that are damaged or cannot be read: nothing is removed, and what can be read is offered.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/TakeJournal.h"
#include "engine/takes/JournalFile.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_file_failure.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/SavedTake.h"

using namespace KivoraTest;
using Kivora::LostJournal;
using Kivora::TakeJournal;
using Kivora::WaitingTake;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::size_t kHeader = 20;
constexpr std::size_t kRecord = 12;
constexpr int kNotes = 1000;
constexpr int kSetUp = 6;  // programs and volumes

/// A file on disk of which the system refuses to read some bytes, or all.
class CFailingFile : public NK::CDiskFile {
public:
    CFailingFile(const NK::CString& path, std::int64_t from, std::int64_t to)
        : CDiskFile(path, kRead), from_(from), to_(to) {}
    std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) override {
        const std::int64_t begin = GetPosition();
        const auto end = begin + static_cast<std::int64_t>(elementSize * count);
        return begin < to_ && end > from_ ? 0 : CDiskFile::Read(buffer, elementSize, count);
    }

private:
    const std::int64_t from_;
    const std::int64_t to_;
};

class TakeJournalDamage : public testing::Test {
protected:
    TakeJournalDamage() {
        EngineRig recorder;
        Kivora::CKivora& engine = recorder.CreateOpen();
        TakeJournal recording(engine, ToPath(GetTakes()), TakeJournal::Settings{.runThread = false});
        engine.StartRecording();
        recorder.RunPlayer();
        for (int i = 0; i < kNotes; ++i) {
            engine.PlayNoteOn(60, 100);
            recorder.Run(5);
            engine.PlayNoteOff(60);
            recorder.Run(5);
        }
        engine.StopRecording();
        recording.WriteOut();
        for (const auto& entry : std::filesystem::directory_iterator(GetTakes())) {
            file = entry.path().extension() == ".kivtake" ? entry.path() : file;  // the grid stands beside it
        }
        whole = ReadFileBytes(file);
    }

    void Start() {
        journal.reset();
        rig.emplace();
        journal = std::make_unique<TakeJournal>(
            rig->Create(), ToPath(GetTakes()),
            TakeJournal::Settings{.runThread = false, .open = [this](const NK::CString& path) {
                                      return std::make_unique<CFailingFile>(path, failingFrom, failingTo);
                                  }});
    }
    void StartWith(const std::string& bytes) {
        WriteFileBytes(file, bytes);
        Start();
    }
    std::filesystem::path GetTakes() const { return folder / "Takes"; }
    static NK::CString ToPath(const std::filesystem::path& path) { return NK::CString::FromUtf8(path.string()); }
    std::string GetBadName() const { return file.string() + ".bad"; }
    /// "path" of each that was set aside, "? path" of each that could not be read.
    std::vector<std::string> TakeLost() {
        std::vector<std::string> lost;
        for (const LostJournal& one : journal->TakeLost()) {
            lost.push_back((one.isSetAside ? "" : "? ") + one.path.ToUtf8());
        }
        return lost;
    }
    int CountSaved() {
        EXPECT_TRUE(journal->Save(journal->GetWaiting().at(0).id, ToPath(folder / "take.mid")));
        const std::vector<SavedEvent> saved = ReadSavedTake(folder / "take.mid");
        EXPECT_THAT(FindOpen(saved), IsEmpty());
        return static_cast<int>(saved.size());
    }
    /// The bytes with those of some records replaced.
    std::string Damage(std::size_t firstRecord, std::size_t count) const {
        std::string bytes = whole;
        bytes.replace(kHeader + firstRecord * kRecord, count * kRecord, std::string(count * kRecord, 'x'));
        return bytes;
    }

    CTemporaryFolder folder;
    std::filesystem::path file;
    std::string whole;
    std::int64_t failingFrom = 0;
    std::int64_t failingTo = 0;
    std::optional<EngineRig> rig;
    std::unique_ptr<TakeJournal> journal;
};

constexpr int kSavedWhole = kSetUp + 2 * kNotes + 1;  // and "all notes off"

}  // namespace

TEST_F(TakeJournalDamage, AWholeJournalIsOfferedAndRemovedOnceItIsSaved) {
    ASSERT_EQ(whole.size(), kHeader + kRecord * (kSetUp + 2 * kNotes));
    Start();
    EXPECT_EQ(journal->GetWaiting().at(0).missing, 0);
    EXPECT_EQ(CountSaved(), kSavedWhole);
    EXPECT_THAT(TakeLost(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(GetTakes()));
}

TEST_F(TakeJournalDamage, DamageNearTheStartCostsTheEventsThatItHitAndTheFileIsKept) {
    StartWith(Damage(2, 3));
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_EQ(journal->GetWaiting()[0].missing, 3);
    EXPECT_THAT(TakeLost(), IsEmpty());
    EXPECT_EQ(CountSaved(), kSavedWhole - 3);
    EXPECT_THAT(TakeLost(), ElementsAre(GetBadName()));
    EXPECT_THAT(TakeLost(), IsEmpty()) << "told once";
    EXPECT_EQ(ReadFileBytes(GetBadName()), Damage(2, 3));
    EXPECT_FALSE(std::filesystem::exists(file));
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
}

TEST_F(TakeJournalDamage, ADamagedTakeThatIsRefusedIsKeptToo) {
    StartWith(Damage(0, 1));
    EXPECT_TRUE(journal->Refuse(journal->GetWaiting().at(0).id));
    EXPECT_THAT(TakeLost(), ElementsAre(GetBadName()));
    EXPECT_EQ(ReadFileBytes(GetBadName()), Damage(0, 1));
}

TEST_F(TakeJournalDamage, AWrongByteAnywhereInTheHeaderCostsNoEvent) {
    for (std::size_t place = 0; place < kHeader; ++place) {
        std::string bytes = whole;
        bytes[place] = '#';
        std::filesystem::remove(GetBadName());
        StartWith(bytes);
        ASSERT_THAT(journal->GetWaiting(), SizeIs(1)) << place;
        EXPECT_EQ(journal->GetWaiting()[0].missing, 0);
        EXPECT_EQ(CountSaved(), kSavedWhole);
        EXPECT_EQ(ReadFileBytes(GetBadName()), bytes) << place;
    }
}

TEST_F(TakeJournalDamage, NothingThatCanBeReadIsSetAsideAtOnceAndTold) {
    StartWith(Damage(0, kSetUp + 2 * kNotes));
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), ElementsAre(GetBadName()));
    EXPECT_TRUE(std::filesystem::exists(GetBadName()));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(TakeJournalDamage, AFileWithoutAJournalsTagIsSetAsideByName) {
    std::string first = "KivTake1" + whole.substr(8, 8) + std::string("\0\0\0\0\x90\x3C\x64\x6D", 8);
    first[3] = 't';
    StartWith(first);
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), ElementsAre(GetBadName()));
    EXPECT_EQ(ReadFileBytes(GetBadName()), first);
    StartWith("another one");
    EXPECT_THAT(TakeLost(), ElementsAre(GetBadName() + "2"));
}

TEST_F(TakeJournalDamage, AJournalOfALaterVersionIsLeftToIt) {
    StartWith("KivTake3 and what only a later version knows");
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(TakeJournalDamage, AReadErrorInTheMiddleCostsOnlyWhatItHits) {
    failingFrom = static_cast<std::int64_t>(kHeader + 500 * kRecord);
    failingTo = failingFrom + 2 * static_cast<std::int64_t>(kRecord);
    Start();
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_EQ(journal->GetWaiting()[0].missing, 2);
    EXPECT_EQ(CountSaved(), kSavedWhole - 2);
    EXPECT_EQ(ReadFileBytes(GetBadName()), whole);
}

TEST_F(TakeJournalDamage, AJournalThatCannotBeReadStaysAndIsToldAndOfferedOnceItCan) {
    failingTo = INT64_MAX;
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), ElementsAre("? " + file.string()));
    EXPECT_EQ(ReadFileBytes(file), whole);
    failingTo = 0;
    Start();
    EXPECT_EQ(journal->GetWaiting().at(0).missing, 0);
    EXPECT_EQ(CountSaved(), kSavedWhole);
}

TEST_F(TakeJournalDamage, AJournalThatCannotBeHeldIsToldAndStays) {
    const std::filesystem::path elsewhere = folder / "elsewhere";
    std::filesystem::rename(file, elsewhere);
    std::filesystem::create_symlink(elsewhere, file);
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), ElementsAre("? " + file.string()));
    EXPECT_THAT(TakeLost(), IsEmpty()) << "told once";
    EXPECT_EQ(ReadFileBytes(elsewhere), whole);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
}

TEST_F(TakeJournalDamage, AJournalThatAnotherProgramHoldsIsNotTold) {
    const auto held = Kivora::JournalFile::Claim(ToPath(file));
    ASSERT_TRUE(held);
    NK::SetFileFailure(L"earlier", EIO);
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), IsEmpty());
}

TEST_F(TakeJournalDamage, AFolderThatCannotBeReadIsToldAndOneThatIsAbsentIsNot) {
    std::filesystem::remove_all(GetTakes());
    NK::SetFileFailure(L"earlier", EIO);
    Start();
    EXPECT_THAT(TakeLost(), IsEmpty());
    std::filesystem::create_symlink(GetTakes(), GetTakes());  // to itself
    Start();
    EXPECT_THAT(journal->GetWaiting(), IsEmpty());
    EXPECT_THAT(TakeLost(), ElementsAre("? " + GetTakes().string()));
}

TEST_F(TakeJournalDamage, ATakeOfTheFirstVersionIsOffered) {
    const std::string first = "KivTake1" + whole.substr(8, 8) + std::string("\0\0\0\0\x90\x3C\x64\x6D", 8) +
                              std::string("\0\0\3\xE8\x80\x3C\0\xF2", 8);
    StartWith(first);
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    EXPECT_EQ(journal->GetWaiting()[0].lengthMs, 1000);
    EXPECT_EQ(CountSaved(), 3);
    EXPECT_TRUE(std::filesystem::is_empty(GetTakes()));
}
