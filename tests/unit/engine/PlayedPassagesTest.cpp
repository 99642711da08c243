// What was played and not recorded, saved all the same.
#include "engine/takes/PlayedPassages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/SavedTake.h"

using namespace KivoraTest;
using Kivora::PlayedPassages;
using testing::IsEmpty;

namespace {

using Range = PlayedPassages::Range;

class PlayedPassagesTest : public testing::Test {
protected:
    PlayedPassagesTest() {
        rig.CreateOpen();
        controls = std::make_unique<Kivora::EngineControls>(*rig.engine);
    }

    Kivora::CKivora& Engine() { return *rig.engine; }
    std::shared_ptr<LibMidi::PlayedHistory> History() {
        return Engine().WithExtras([](Kivora::EngineExtras& extras) { return extras.GetPlayed(); });
    }
    PlayedPassages Played() { return PlayedPassages(History()->Get()); }
    /// The player's time does not stand still, but nothing happens.
    void Pass(int milliseconds) {
        rig.RunPlayer();
        rig.time.AdvanceMs(milliseconds);
    }
    void Play(int note, int milliseconds = 100) {
        Engine().PlayNoteOn(static_cast<std::uint8_t>(note), 100);
        Pass(milliseconds);
        Engine().PlayNoteOff(static_cast<std::uint8_t>(note));
        rig.RunPlayer();
    }
    std::vector<SavedEvent> Save(Range range) {
        const auto path = rig.folder / "played.mid";
        EXPECT_TRUE(Played().Save(range, NK::CString::FromUtf8(path.string())));
        return ReadSavedTake(path);
    }
    static std::vector<int> NotesOf(const std::vector<SavedEvent>& events) {
        std::vector<int> notes;
        for (const SavedEvent& event : events) {
            if ((event.status & 0xF0) == 0x90) {
                notes.push_back(event.data1);
            }
        }
        return notes;
    }

    EngineRig rig;
    std::unique_ptr<Kivora::EngineControls> controls;
};

}  // namespace

TEST_F(PlayedPassagesTest, NothingIsThereBeforeANoteAndWhileItIsOff) {
    EXPECT_FALSE(Played().IsAny());
    Engine().SetPatch(5, 0);
    rig.RunPlayer();
    EXPECT_FALSE(Played().IsAny());
    History()->SetOn(false);
    Play(60);
    EXPECT_FALSE(Played().IsAny());
    History()->SetOn(true);
    EXPECT_FALSE(Played().IsAny());
    Play(60);
    EXPECT_TRUE(Played().IsAny());
}

TEST_F(PlayedPassagesTest, ATakeBeginsWithTheFirstNoteAndTheStateOfTheChannels) {
    Engine().SetPatch(19, 0);
    Engine().VolumeDown(0);
    Pass(5000);
    Play(60, 250);
    Pass(1000);
    EXPECT_EQ(Played().GetLengthMs(Range::kAll), 250);
    EXPECT_EQ(Played().GetAgeMs(Range::kAll), 1250);
    const std::vector<SavedEvent> saved = Save(Range::kAll);
    EXPECT_EQ(FindEnd(saved, 0x90, 60), 350) << "the first note stands at 100";
    const auto has = [&saved](int status, int data1, int data2) {
        return std::any_of(saved.begin(), saved.end(), [&](const SavedEvent& event) {
            return event.tick == 0 && event.status == status && event.data1 == data1 && event.data2 == data2;
        });
    };
    EXPECT_TRUE(has(0xC0, 19, 0));
    EXPECT_TRUE(has(0xB0, 7, 97));
}

TEST_F(PlayedPassagesTest, APauseIsTenSecondsInWhichNothingSounds) {
    Play(60);
    Pass(9999);
    Play(61);
    EXPECT_FALSE(Played().HasPause());
    Play(62, 20000);
    Play(63);
    EXPECT_FALSE(Played().HasPause()) << "a note was held";
    Engine().PlayNoteOn(40, 100);
    Pass(10000);
    Play(64);
    Engine().PlayNoteOff(40);
    EXPECT_FALSE(Played().HasPause()) << "something sounded";
    Pass(10000);
    EXPECT_FALSE(Played().HasPause()) << "a pause at the end is none yet";
    Play(65);
    EXPECT_TRUE(Played().HasPause());
    EXPECT_EQ(NotesOf(Save(Range::kAll)), (std::vector<int>{60, 61, 62, 63, 40, 64, 65}));
    EXPECT_EQ(NotesOf(Save(Range::kSincePause)), (std::vector<int>{65}));
    EXPECT_EQ(Played().GetLengthMs(Range::kSincePause), 100);
    Pass(10000);
    Play(66);
    Pass(300000);
    EXPECT_EQ(NotesOf(Save(Range::kSincePause)), (std::vector<int>{66})) << "the last pause counts";
    EXPECT_EQ(NotesOf(Save(Range::kAll)), (std::vector<int>{60, 61, 62, 63, 40, 64, 65, 66}));
}

TEST_F(PlayedPassagesTest, WhatStoodBeforeThePauseStandsAtTheBeginningAfterIt) {
    Play(60);
    Engine().SetPatch(7, 0);
    controls->SetSustain(true);
    Pass(20000);
    Play(61);
    const std::vector<SavedEvent> saved = Save(Range::kSincePause);
    std::vector<std::pair<int, int>> atStart;
    for (const SavedEvent& event : saved) {
        if (event.tick == 0) {
            atStart.emplace_back(event.status, event.data1);
        }
    }
    EXPECT_THAT(atStart, testing::IsSupersetOf({std::pair{0xC0, 7}, std::pair{0xB0, 64}, std::pair{0xB0, 7}}));
    EXPECT_THAT(FindOpen(saved), IsEmpty()) << "the pedal goes up at the end";
}

TEST_F(PlayedPassagesTest, FifteenMinutesAreKept) {
    Play(60);
    Pass(5 * 60 * 1000);
    Play(61);
    Pass(10 * 60 * 1000);
    EXPECT_EQ(NotesOf(Save(Range::kAll)), (std::vector<int>{61}));
    Pass(5 * 60 * 1000 + 1000);
    EXPECT_FALSE(Played().IsAny());
}

TEST_F(PlayedPassagesTest, WhatIsHeldEndsAtTheMomentOfTheQuestion) {
    Engine().PlayNoteOn(60, 100);
    Pass(700);
    const std::vector<SavedEvent> saved = Save(Range::kAll);
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_EQ(FindEnd(saved, 0x90, 60), 800);
}

TEST_F(PlayedPassagesTest, IsThereWhileATakeRunsAfterAPanicAndAfterANewSetUp) {
    Play(60);
    ASSERT_TRUE(controls->StartRecording());
    Play(61);
    EXPECT_EQ(NotesOf(Save(Range::kAll)), (std::vector<int>{60, 61}));
    EXPECT_TRUE(Engine().IsRecording());
    controls->StopRecording();
    controls->Panic();
    Play(62);
    Engine().InitMidi();
    Engine().SetOutputPortByName(kOtherSynth);
    Play(63);
    EXPECT_EQ(NotesOf(Save(Range::kAll)), (std::vector<int>{60, 61, 62, 63}));
    EXPECT_FALSE(Played().HasPause());
}

TEST_F(PlayedPassagesTest, IsThereAfterTheOutputWasLostAndWhatSoundedEndsThere) {
    Engine().PlayNoteOn(60, 100);
    Pass(500);
    rig.GetDevice(kSynth).failsToWrite = true;
    Engine().PlayNoteOn(61, 100);
    rig.RunPlayer();
    Engine().OnTimer(0);
    ASSERT_TRUE(Engine().IsOutputLost());
    Pass(2000);
    Play(62);
    const std::vector<SavedEvent> saved = Save(Range::kAll);
    EXPECT_THAT(NotesOf(saved), testing::Contains(60));
    EXPECT_THAT(FindOpen(saved), IsEmpty());
    EXPECT_EQ(FindEnd(saved, 0x90, 60), 600);
}

TEST_F(PlayedPassagesTest, AFileThatCannotBeWrittenIsTold) {
    Play(60);
    EXPECT_FALSE(Played().Save(Range::kAll, NK::CString::FromUtf8((rig.folder / "no folder/played.mid").string())));
}

TEST_F(PlayedPassagesTest, TheSettingIsOnAndIsWrittenWhereItIsOff) {
    const auto settings = rig.folder / "user" / "Kivora.ini";
    EXPECT_TRUE(History()->IsOn());
    ASSERT_TRUE(Engine().SaveSettings());
    EXPECT_EQ(ReadFileBytes(settings).find("Kivora_Played"), std::string::npos);
    for (const bool on : {false, true}) {
        History()->SetOn(on);
        ASSERT_TRUE(Engine().SaveSettings());
        EXPECT_NE(ReadFileBytes(settings).find("[Kivora_Played]"), std::string::npos);
        History()->SetOn(!on);
        ASSERT_TRUE(Engine().LoadSettings());
        EXPECT_EQ(History()->IsOn(), on);
    }
}

TEST_F(PlayedPassagesTest, WhatIsSetAfterTheLastSoundIsNoPartOfIt) {
    Play(60, 1000);
    Pass(600'000);
    controls->Panic();
    rig.RunPlayer();
    EXPECT_EQ(Played().GetLengthMs(Range::kAll), 1000);
    const std::vector<SavedEvent> saved = Save(Range::kAll);
    ASSERT_FALSE(saved.empty());
    EXPECT_LT(saved.back().tick, 2000) << "no ten minutes of silence at its end";
}

TEST_F(PlayedPassagesTest, APanicSetsInTheFileBackWhatItSetsBackOnTheSynthesizer) {
    Engine().SetInputPortByName(kKeyboard);
    rig.GetKeyboard().Deliver(0xB0, 1, 90);
    rig.GetKeyboard().Deliver(0xB0, 10, 20);
    rig.GetKeyboard().Deliver(0xE0, 0, 127);
    Play(60);
    Pass(500);
    controls->Panic();
    Pass(1000);
    Play(62);
    const std::vector<SavedEvent> saved = Save(Range::kAll);
    const auto second = std::find_if(saved.begin(), saved.end(),
                                     [](const SavedEvent& event) { return event.status == 0x90 && event.data1 == 62; });
    ASSERT_NE(second, saved.end());
    std::map<std::pair<int, int>, std::pair<int, int>> last;
    bool isReset = false;
    for (auto event = saved.begin(); event != second; ++event) {
        const bool isController = (event->status & 0xF0) == 0xB0;
        last[{event->status, isController ? event->data1 : 0}] = {event->data1, event->data2};
        isReset = isReset || (event->status == 0xB0 && event->data1 == 121);
    }
    EXPECT_TRUE(isReset);
    EXPECT_EQ((last[{0xB0, 1}]), std::pair(1, 0));
    EXPECT_EQ((last[{0xB0, 10}]), std::pair(10, 64));
    EXPECT_EQ((last[{0xE0, 0}]), std::pair(0, 64));
    EXPECT_EQ((last[{0xB0, 7}]), std::pair(7, 100)) << "which the panic sent";
}
