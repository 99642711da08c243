// The plain collaborators of the engine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/ClockPosition.h"
#include "engine/PortSelection.h"
#include "engine/values/HeldKeys.h"
#include "engine/values/VelocityScaling.h"
#include "engine/values/VoiceSlots.h"
#include "nk/nk_exception.h"

using namespace Kivora;

TEST(VelocityScaling, Volume100LeavesEveryVelocityUnchanged) {
    for (int velocity = 0; velocity < 128; ++velocity) {
        EXPECT_EQ(ScaleVelocity(static_cast<std::uint8_t>(velocity), 100), velocity);
    }
}

TEST(VelocityScaling, Volume1TurnsAnyNonZeroVelocityInto1) {
    EXPECT_EQ(ScaleVelocity(0, 1), 0);
    EXPECT_EQ(ScaleVelocity(1, 1), 1);
    EXPECT_EQ(ScaleVelocity(127, 1), 1);
}

TEST(VelocityScaling, Volume127AndVelocity127AreLimitedTo127) {
    EXPECT_EQ(ScaleVelocity(127, 127), 127);
}

TEST(VelocityScaling, ExactHalvesGoDown) {
    EXPECT_EQ(ScaleVelocity(5, 50), 2);
    EXPECT_EQ(ScaleVelocity(7, 50), 3);
}

TEST(VelocityScaling, Volume0TurnsEveryNonZeroVelocityInto1) {
    EXPECT_EQ(ScaleVelocity(0, 0), 0);
    EXPECT_EQ(ScaleVelocity(1, 0), 1);
    EXPECT_EQ(ScaleVelocity(127, 0), 1);
}

TEST(VoiceSlots, DefaultsAreThoseOfTheInstrument) {
    const VoiceSlots voices;
    EXPECT_THAT(voices.patch, testing::ElementsAre(0, 40, 32));
    EXPECT_THAT(voices.transpose, testing::ElementsAre(0, 0, 0));
    EXPECT_THAT(voices.velocityPercent, testing::ElementsAre(100, 100, 100));
    EXPECT_THAT(voices.volume, testing::ElementsAre(100, 100, 100));
    EXPECT_FALSE(voices.dual);
    EXPECT_FALSE(voices.split);
}

TEST(VoiceSlots, ChannelIsTheSlotOrThePercussionChannelForANegativePatch) {
    VoiceSlots voices;
    EXPECT_EQ(voices.GetChannel(0), 0);
    EXPECT_EQ(voices.GetChannel(1), 1);
    EXPECT_EQ(voices.GetChannel(2), 2);
    voices.patch = {-1, -2, 127};
    EXPECT_EQ(voices.GetChannel(0), 9);
    EXPECT_EQ(voices.GetChannel(1), 9);
    EXPECT_EQ(voices.GetChannel(2), 2);
}

TEST(VoiceSlots, SplitOnSendsNotesBelow60ToTheBass) {
    VoiceSlots voices;
    EXPECT_EQ(voices.GetSlotOfNote(59), 0);
    voices.split = true;
    EXPECT_EQ(voices.GetSlotOfNote(59), 2);
    EXPECT_EQ(voices.GetSlotOfNote(60), 0);
}

TEST(VoiceSlots, PatchesStepInACircle) {
    EXPECT_EQ(VoiceSlots::GetNextPatch(127), -1);
    EXPECT_EQ(VoiceSlots::GetNextPatch(-1), 0);
    EXPECT_EQ(VoiceSlots::GetPreviousPatch(0), -1);
    EXPECT_EQ(VoiceSlots::GetPreviousPatch(-1), 127);
}

TEST(VoiceSlots, StepsAreClamped) {
    VoiceSlots voices;
    voices.volume = {126, 3, 0};
    voices.StepVolume(0, 3);
    voices.StepVolume(1, -3);
    voices.StepVolume(2, -3);
    EXPECT_THAT(voices.volume, testing::ElementsAre(127, 1, 1));
    voices.transpose = {120, -120, 0};
    voices.StepTranspose(0, 1);
    voices.StepTranspose(1, -1);
    EXPECT_THAT(voices.transpose, testing::ElementsAre(120, -120, 0));
}

TEST(VoiceSlots, ASlotThatIsNoneThrows) {
    VoiceSlots voices;
    EXPECT_THROW(voices.StepVolume(3, 3), NK::CBadIndexException);
    EXPECT_THROW(voices.StepTranspose(-1, 1), NK::CBadIndexException);
    EXPECT_THROW(static_cast<void>(voices.GetChannel(3)), NK::CBadIndexException);
}

TEST(ClockPosition, At120BpmAndElapsed2499TheClockReadsBar1Beat0Offset499) {
    NK::MIDI::MusicalClock clock;
    SetClockPosition(clock, 2499);
    EXPECT_EQ(clock.bar, 1);
    EXPECT_EQ(clock.beat, 0);
    EXPECT_EQ(clock.offset, 499);
    SetClockPosition(clock, 2500);
    EXPECT_EQ(clock.bar, 1);
    EXPECT_EQ(clock.beat, 1);
    EXPECT_EQ(clock.offset, 0);
}

TEST(ClockPosition, BarBeatAndOffsetAddUpAtEveryTempo) {
    for (int tempo = 40; tempo <= 220; ++tempo) {
        NK::MIDI::MusicalClock clock;
        clock.tempo = tempo;
        for (std::int64_t elapsed = 0; elapsed < 40'000; elapsed += 7) {
            SetClockPosition(clock, elapsed);
            ASSERT_TRUE(clock.beat >= 0 && clock.beat < 4 && clock.offset >= 0) << tempo << ' ' << elapsed;
            const double back = (clock.bar * 4 + clock.beat) * clock.BeatLength() + clock.offset;
            ASSERT_NEAR(back, static_cast<double>(elapsed), 1.0) << tempo << ' ' << elapsed;
        }
    }
}

TEST(ClockPosition, TenMinutesDriftByNoTick) {
    NK::MIDI::MusicalClock clock;
    for (const int tempo : {40, 97, 120, 133, 220}) {
        clock.tempo = tempo;
        const std::int64_t elapsed = 10 * 60 * 1000;
        SetClockPosition(clock, elapsed);
        EXPECT_EQ(clock.ToTick(), 10 * tempo * NK::MIDI::MusicalClock::kTicksPerQuarter) << tempo;
    }
}

namespace {
NK::CStringArray Names(std::initializer_list<const wchar_t*> texts) {
    NK::CStringArray names;
    for (const wchar_t* text : texts) {
        names.Push(text);
    }
    return names;
}
}  // namespace

TEST(PortSelection, AnEarlierCandidateWinsWhateverTheOrderOfThePorts) {
    EXPECT_EQ(FindByCandidates({L"A", L"B"}, Names({L"B", L"A"})), 1);
    EXPECT_EQ(FindByCandidates({L"A", L"B"}, Names({L"A", L"B"})), 0);
}

TEST(PortSelection, TheFirstOfSeveralNamesWithACandidateWins) {
    EXPECT_EQ(FindByCandidates({L"A"}, Names({L"x", L"1 A", L"2 A"})), 1);
}

TEST(PortSelection, MatchesPartsOfNamesAndIsCaseSensitive) {
    EXPECT_EQ(FindByCandidates({L"Synth"}, Names({L"my Synth 1"})), 0);
    EXPECT_EQ(FindByCandidates({L"Synth"}, Names({L"MY SYNTH 1"})), -1);
    EXPECT_EQ(FindByCandidates({L"Synth"}, Names({})), -1);
}

TEST(HeldKeys, FollowsNotesAndPedalsOnAnyChannel) {
    HeldKeys keys;
    EXPECT_FALSE(keys.IsAnyHeld());
    keys.Follow({0x90, 3, 60, 1});
    keys.Follow({0xB0, 5, 64, 127});
    keys.Follow({0xB0, 5, 66, 1});
    EXPECT_TRUE(keys.IsHeld(60));
    EXPECT_FALSE(keys.IsHeld(61));
    EXPECT_TRUE(keys.IsPedalDown(64));
    EXPECT_TRUE(keys.IsPedalDown(66));
    EXPECT_FALSE(keys.IsPedalDown(69));
    keys.Follow({0x90, 4, 60, 0});
    EXPECT_FALSE(keys.IsHeld(60));
    keys.Follow({0xB0, 1, 64, 0});
    EXPECT_FALSE(keys.IsPedalDown(64));
    EXPECT_TRUE(keys.IsAnyHeld());
    keys.LiftPedal(66);
    EXPECT_FALSE(keys.IsAnyHeld());
    keys.Follow({0xB0, 1, 69, 127});
    EXPECT_TRUE(keys.IsPedalDown(69));
}

TEST(HeldKeys, OtherMessagesChangeNothingAndClearForgetsAll) {
    HeldKeys keys;
    keys.Follow({0x90, 1, 60, 1});
    keys.Follow({0xA0, 1, 60, 0});
    keys.Follow({0xB0, 1, 7, 127});
    keys.Follow({0xB0, 1, 65, 127});
    keys.Follow({0xB0, 1, 200, 127});
    keys.Follow({0x90, 1, 200, 1});
    EXPECT_TRUE(keys.IsHeld(60));
    EXPECT_FALSE(keys.IsHeld(200));
    for (int controller = 0; controller < 256; ++controller) {
        EXPECT_FALSE(keys.IsPedalDown(static_cast<std::uint8_t>(controller))) << controller;
    }
    keys.LiftPedal(200);
    keys.Clear();
    EXPECT_FALSE(keys.IsAnyHeld());
}
