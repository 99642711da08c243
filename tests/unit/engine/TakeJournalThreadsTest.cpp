// The journal's own thread beside the player, the tick and the window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <memory>
#include <thread>

#include "engine/EngineControls.h"
#include "engine/TakeJournal.h"
#include "libmidi/MIDIPlayer.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

using namespace KivoraTest;
using Kivora::TakeJournal;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class TakeJournalThreads : public testing::Test {
protected:
    TakeJournalThreads() {
        backend.Plug(L"Software synthesizer", LibMidi::kOutput).keepsWritten = false;
        backend.Plug(L"Other synthesizer", LibMidi::kOutput).keepsWritten = false;
        engine = std::make_unique<Kivora::CKivora>(Kivora::EngineDependencies{
            .backends = {backend.GetCreator()}, .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); }});
        controls = std::make_unique<Kivora::EngineControls>(*engine);
        controls->SetOutputPortByIndex(0);
        journal = std::make_unique<TakeJournal>(*engine, GetPath("Takes"));
    }
    ~TakeJournalThreads() override { StopPlaying(); }

    NK::CString GetPath(const char* name) const { return NK::CString::FromUtf8((folder / name).string()); }
    std::uintmax_t GetJournalSize() const {
        std::uintmax_t size = 0;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "Takes", none)) {
            size += entry.file_size();
        }
        return size;
    }
    void StartPlaying() {
        playing = std::thread([this] {
            while (!stop) {
                engine->PlayNoteOn(60, 100);
                engine->PlayNoteOff(60);
                std::this_thread::yield();
            }
        });
    }
    void StopPlaying() {
        stop = true;
        if (playing.joinable()) {
            playing.join();
        }
    }

    CTemporaryFolder folder;
    FakeBackend backend;
    std::unique_ptr<Kivora::CKivora> engine;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<TakeJournal> journal;
    std::atomic<bool> stop{false};
    std::thread playing;
};

}  // namespace

TEST_F(TakeJournalThreads, TheJournalGrowsByItselfWhileTheRecordingRuns) {
    ASSERT_TRUE(controls->StartRecording());
    StartPlaying();
    ASSERT_TRUE(WaitUntil([this] { return GetJournalSize() > 0; }));
    const std::uintmax_t size = GetJournalSize();
    ASSERT_TRUE(WaitUntil([&] { return GetJournalSize() > size; }));
    EXPECT_TRUE(engine->StopRecording());
    ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
    ASSERT_TRUE(WaitUntil([this] { return journal->GetWaiting()[0].isOnDisk; }));
    EXPECT_TRUE(journal->Refuse(journal->GetWaiting()[0].id));
    EXPECT_EQ(GetJournalSize(), 0U);
}

TEST_F(TakeJournalThreads, AFolderThatCannotBeWrittenIsToldFromTheJournalsThread) {
    journal = std::make_unique<TakeJournal>(*engine, NK::CString(L"/dev/null/Takes"));
    std::atomic<int> told = 0;
    std::atomic<std::thread::id> teller;
    QObject::connect(journal.get(), &TakeJournal::JournalFailed, [&](const QString&) {
        teller = std::this_thread::get_id();
        ++told;
    });
    ASSERT_TRUE(controls->StartRecording());
    engine->PlayNoteOn(60, 100);
    ASSERT_TRUE(WaitUntil([&told] { return told > 0; }));
    EXPECT_NE(teller.load(), std::this_thread::get_id());
    EXPECT_TRUE(engine->IsRecording());
    EXPECT_TRUE(engine->StopRecording());
    journal->WriteOut();
    EXPECT_EQ(told, 1);
    journal.reset();  // it is not to tell what is gone
}

TEST_F(TakeJournalThreads, RecordingsEndSaveAndBeginWhileSomebodyPlaysAndTheJournalIsWritten) {
    StartPlaying();
    std::thread writing([this] {
        while (!stop) {
            journal->WriteOut();
        }
    });
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(controls->StartRecording());
        ASSERT_TRUE(WaitUntil([this] { return engine->GetRecordedCount() > 50; }));
        if (i % 2 == 0) {
            EXPECT_TRUE(engine->SaveRecording(GetPath("take.mid")));
        } else {
            controls->SetOutputPortByIndex(i / 2);
            ASSERT_THAT(journal->GetWaiting(), SizeIs(1));
            EXPECT_TRUE(journal->Refuse(journal->GetWaiting()[0].id));
        }
        EXPECT_THAT(journal->GetWaiting(), IsEmpty());
        EXPECT_EQ(GetJournalSize(), 0U);
    }
    StopPlaying();
    writing.join();
    journal.reset();
    EXPECT_EQ(GetJournalSize(), 0U);
}
