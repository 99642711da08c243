// However a take ends, its file ends what it has begun.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/EngineControls.h"
#include "engine/TakeJournal.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/SavedTake.h"

using namespace KivoraTest;
using Kivora::CKivora;
using Kivora::TakeJournal;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class TakeClosing : public testing::Test {
protected:
    TakeClosing() { Start(); }

    void Start() {
        rig.emplace();
        rig->CreateOpen();
        rig->engine->SetInputPortByName(kKeyboard);
        controls = std::make_unique<Kivora::EngineControls>(*rig->engine);
        journal = std::make_unique<TakeJournal>(*rig->engine, NK::CString::FromUtf8((folder / "Takes").string()),
                                                TakeJournal::Settings{.runThread = false});
    }
    void Quit() {
        journal.reset();
        controls.reset();
        rig.reset();
    }
    /// The journals of the old run as they stand now, and a new run.
    void Crash() {
        const std::filesystem::path aside = folder / "aside";
        std::filesystem::copy(folder / "Takes", aside);
        Quit();
        std::filesystem::remove_all(folder / "Takes");
        std::filesystem::rename(aside, folder / "Takes");
        Start();
    }
    CKivora& GetEngine() { return *rig->engine; }
    void Pass(int milliseconds) { rig->Run(milliseconds); }
    void Settle() { rig->RunPlayer(); }

    /// Begins a take with a note of 100 ms, so that its tick 100 is `start`.
    void Record() {
        ASSERT_TRUE(controls->StartRecording());
        Settle();
        start = rig->time.GetTimeMs();
        GetEngine().PlayNoteOn(30, 100);
        Settle();
        Pass(100);
        GetEngine().PlayNoteOff(30);
        Settle();
    }
    /// A chord on the percussion's channel and a note below the split, held for a second with all the pedals over an
    /// arpeggio, one note of which sounds.
    void HoldEverything() {
        controls->SetVoiceMode(true, true);
        controls->SetPatch(-1, 1);
        controls->SetArpeggiating(true);
        controls->ChangeArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(48, 50); });
        controls->ChangeArpeggiator(1, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(true); });
        Settle();
        GetEngine().RestartClock();
        for (const std::uint8_t note : std::initializer_list<std::uint8_t>{40, 60, 64, 67}) {
            GetEngine().PlayNoteOn(note, 100);
        }
        Settle();
        for (const std::uint8_t pedal : std::initializer_list<std::uint8_t>{64, 66, 67, 69}) {
            rig->GetKeyboard().Deliver(0xB0, pedal, 100);
            Settle();
        }
        Pass(1030);
    }
    std::vector<SavedEvent> SaveWaiting() {
        EXPECT_THAT(journal->GetWaiting(), SizeIs(1));
        EXPECT_TRUE(journal->Save(journal->GetWaiting().at(0).id, PathOf("take.mid")));
        return ReadSavedTake(folder / "take.mid");
    }
    NK::CString PathOf(const char* name) const { return NK::CString::FromUtf8((folder / name).string()); }
    int Now() { return static_cast<int>(rig->time.GetTimeMs() - start) + 100; }

    CTemporaryFolder folder;
    std::optional<EngineRig> rig;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<TakeJournal> journal;
    std::int64_t start = 0;
};

}  // namespace

TEST_F(TakeClosing, HoldingEverythingIsAChordOnThreeChannelsAndPedalsOnAll) {
    Record();
    HoldEverything();
    ASSERT_TRUE(GetEngine().StopRecording());
    ASSERT_TRUE(GetEngine().SaveRecording(PathOf("engine.mid")));
    const std::vector<std::string> open = FindOpen(ReadSavedTake(folder / "engine.mid"));
    EXPECT_THAT(open, testing::IsSupersetOf({"99 3c", "99 40", "99 43", "92 28", "b0 40", "b9 42", "b2 43", "b0 45"}))
        << "what the tests below see ended";
    EXPECT_THAT(open, testing::Contains(testing::StartsWith("90 "))) << "a note of the arpeggio";
}

TEST_F(TakeClosing, Stop) {
    Record();
    HoldEverything();
    const int end = Now();
    ASSERT_TRUE(controls->StopRecording());
    Pass(3000);
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_EQ(FindEnd(saved, 0x99, 64), end);
    EXPECT_EQ(FindEnd(saved, 0x92, 40), end);
    EXPECT_EQ(FindEnd(saved, 0xB2, 66), end);
    EXPECT_EQ(saved.back().status, 0xB0);
    EXPECT_EQ(saved.back().data1, 123);
    EXPECT_EQ(saved.back().tick, end);
}

TEST_F(TakeClosing, StopCutsNothingThatIsHeard) {
    Record();
    GetEngine().PlayNoteOn(60, 100);
    rig->GetKeyboard().Deliver(0xB0, 64, 100);
    Pass(500);
    rig->TakeWritten();
    ASSERT_TRUE(controls->StopRecording());
    Pass(500);
    EXPECT_THAT(rig->TakeWritten(), IsEmpty());
    EXPECT_THAT(FindOpen(SaveWaiting()), IsEmpty());
    EXPECT_THAT(rig->TakeWritten(), IsEmpty());
}

TEST_F(TakeClosing, StopLetsOutWhatWasPlayedBefore) {
    Record();
    GetEngine().PlayNoteOn(60, 100);
    Settle();
    Pass(500);
    GetEngine().PlayNoteOff(60);
    GetEngine().PlayNoteOn(62, 100);
    const int end = Now();
    ASSERT_TRUE(controls->StopRecording());
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_NEAR(FindEnd(saved, 0x90, 60), end, 1);
    EXPECT_NEAR(FindEnd(saved, 0x90, 62), end, 1);
}

TEST_F(TakeClosing, TheLatestIsSavedClosedWhetherItWaitsOrNot) {
    Record();
    HoldEverything();
    EXPECT_FALSE(journal->SaveLatest(PathOf("take.mid"))) << "it is being recorded";
    EXPECT_EQ(journal->GetLatest(), 0);
    ASSERT_TRUE(controls->StopRecording());
    EXPECT_EQ(journal->GetLatest(), journal->GetWaiting()[0].id);
    for (const char* name : {"first.mid", "second.mid"}) {
        EXPECT_TRUE(journal->SaveLatest(PathOf(name)));
        EXPECT_THAT(FindOpen(ReadSavedTake(folder / name)), IsEmpty());
        EXPECT_THAT(journal->GetWaiting(), IsEmpty());
        EXPECT_EQ(journal->GetLatest(), 0);
    }
    EXPECT_FALSE(journal->SaveLatest(PathOf("no such folder/take.mid")));
}

TEST_F(TakeClosing, Panic) {
    Record();
    HoldEverything();
    const int end = Now();
    controls->Panic();
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_GE(FindEnd(saved, 0x92, 40), end);
    EXPECT_LE(FindEnd(saved, 0x92, 40), end + 60);
}

TEST_F(TakeClosing, AChangeOfTheOutput) {
    Record();
    HoldEverything();
    controls->SetOutputPortByIndex(1);
    EXPECT_THAT(FindOpen(SaveWaiting()), IsEmpty());
}

TEST_F(TakeClosing, SettingUpThePortsAnew) {
    Record();
    HoldEverything();
    GetEngine().InitMidi();
    EXPECT_THAT(FindOpen(SaveWaiting()), IsEmpty());
}

TEST_F(TakeClosing, AResetOfTheSynthesizer) {
    Record();
    HoldEverything();
    GetEngine().ResetSynth();
    EXPECT_THAT(FindOpen(SaveWaiting()), IsEmpty());
}

TEST_F(TakeClosing, ALostOutputEndsWhatWasHeldThen) {
    Record();
    GetEngine().PlayNoteOn(60, 100);
    Pass(1000);
    rig->GetDevice(kSynth).failsToWrite = true;
    GetEngine().PlayNoteOn(62, 100);
    const int end = Now();
    Pass(2000);
    ASSERT_TRUE(GetEngine().IsOutputLost());
    GetEngine().PlayNoteOff(60);
    GetEngine().PlayNoteOff(62);
    Pass(2000);
    ASSERT_TRUE(controls->StopRecording());
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_NEAR(FindEnd(saved, 0x90, 60), end, 5);
}

TEST_F(TakeClosing, TheEndOfTheProgram) {
    Record();
    HoldEverything();
    const int end = Now();
    Quit();
    Start();
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_EQ(FindEnd(saved, 0x99, 60), end);
}

TEST_F(TakeClosing, ACrashEndsWhatWasHeldAtMostASecondBefore) {
    Record();
    GetEngine().PlayNoteOn(60, 100);
    GetEngine().SetSustain(true);
    for (int second = 0; second < 4; ++second) {
        Pass(TakeJournal::kPeriodMs);
        journal->WriteOut();
    }
    const int end = Now();
    Pass(TakeJournal::kPeriodMs - 1);
    Crash();
    EXPECT_LT(journal->GetWaiting().at(0).lengthMs, 1000) << "the length is that of the last event";
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_EQ(FindEnd(saved, 0x90, 60), end);
    EXPECT_EQ(FindEnd(saved, 0xB0, 64), end);
}

TEST_F(TakeClosing, ACrashInTheMiddleOfEverything) {
    Record();
    HoldEverything();
    journal->WriteOut();
    Crash();
    EXPECT_THAT(FindOpen(SaveWaiting()), IsEmpty());
}

TEST_F(TakeClosing, WhatIsPlayedOnOverwritesTheMarkInTheJournal) {
    Record();
    int end = 0;
    for (int i = 0; i < 3; ++i) {
        GetEngine().PlayNoteOn(60, 100);
        Pass(700);
        journal->WriteOut();
        end = Now();
        GetEngine().PlayNoteOff(60);
        Pass(300);
    }
    journal->WriteOut();
    Crash();
    EXPECT_EQ(journal->GetWaiting().at(0).missing, 0);
    const std::vector<SavedEvent> saved = SaveWaiting();
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_NEAR(FindEnd(saved, 0x90, 60), end, 5);
}
