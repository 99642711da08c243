// Tempo, the musical clock, its tick and the indicator.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class Clock : public testing::Test {
protected:
    void AdvanceTo(std::int64_t elapsedMs) {
        rig.time.SetMs(1'000'000 + elapsedMs);
        engine.OnTimer(0);
    }
    /// Bar, beat and offset.
    std::vector<int> Position() {
        const NK::MIDI::MusicalClock clock = engine.GetMusicalClock();
        return {clock.bar, clock.beat, clock.offset};
    }

    EngineRig rig;
    Kivora::CKivora& engine = rig.Create();
    SignalLog shown{engine};
};
}  // namespace

TEST_F(Clock, TheTempoIsClampedTo40To220) {
    engine.SetTempo(30);
    EXPECT_EQ(engine.GetTempo(), 40);
    engine.SetTempo(500);
    EXPECT_EQ(engine.GetTempo(), 220);
    EXPECT_EQ(engine.GetMusicalClock().tempo, 220.0);
    EXPECT_THAT(shown.Take(), ElementsAre("TempoChanged", "TempoChanged"));
}

TEST_F(Clock, SettingTheCurrentTempoDoesNothing) {
    AdvanceTo(2499);
    engine.SetTempo(120);
    EXPECT_THAT(Position(), ElementsAre(1, 0, 499));
    EXPECT_THAT(shown.Take(), IsEmpty());
}

TEST_F(Clock, AChangedTempoRestartsTheClock) {
    AdvanceTo(2499);
    engine.TempoUp();
    EXPECT_EQ(engine.GetTempo(), 121);
    EXPECT_THAT(Position(), ElementsAre(0, 0, 0));
    engine.TempoDown();
    engine.TempoDown();
    EXPECT_EQ(engine.GetTempo(), 119);
    engine.OnTimer(0);
    EXPECT_THAT(Position(), ElementsAre(0, 0, 0));
}

TEST_F(Clock, TheTempoStopsAtItsLimits) {
    engine.SetTempo(220);
    engine.TempoUp();
    EXPECT_EQ(engine.GetTempo(), 220);
    engine.SetTempo(40);
    engine.TempoDown();
    EXPECT_EQ(engine.GetTempo(), 40);
}

TEST_F(Clock, At120BpmAndElapsed2499TheClockReadsBar1Beat0Offset499) {
    AdvanceTo(2499);
    EXPECT_THAT(Position(), ElementsAre(1, 0, 499));
}

TEST_F(Clock, AWallClockThatGoesBackBeforeTheStartStartsAnew) {
    AdvanceTo(2499);
    AdvanceTo(-5000);
    EXPECT_THAT(Position(), ElementsAre(0, 0, 0));
    AdvanceTo(-4400);
    EXPECT_THAT(Position(), ElementsAre(0, 1, 100));
}

TEST_F(Clock, AWallClockThatGoesBackALittleIsFollowed) {
    AdvanceTo(2499);
    AdvanceTo(700);
    EXPECT_THAT(Position(), ElementsAre(0, 1, 200));
}

TEST_F(Clock, AWallClockThatGoesBackDoesNotSilenceAHeldChord) {
    engine.SetOutputPortByName(kSynth);
    engine.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    for (const std::int64_t backMs : {5'000, 900'000}) {
        rig.Run(6'000);
        rig.time.AdvanceMs(-backMs);
        rig.TakeWritten();
        rig.Run(600);
        EXPECT_THAT(rig.TakeWritten(), testing::Contains("90 3c 64").Times(testing::Ge(2))) << backMs;
    }
}

TEST_F(Clock, TenMinutesOfAHeldChordDriftByNoTick) {
    constexpr int kTempo = 133;
    constexpr double kTickMs = 60'000.0 / kTempo / NK::MIDI::MusicalClock::kTicksPerQuarter;
    constexpr int kStepTicks = 96;
    engine.SetOutputPortByName(kSynth);
    engine.SetTempo(kTempo);
    engine.SetArpeggiating(true);
    rig.Run(1);
    engine.PlayNoteOn(60, 100);
    std::int64_t steps = 0;
    engine.RestartClock();
    const std::int64_t start = rig.time.GetTimeMs();
    rig.GetDevice(kSynth).keepsWritten = false;
    rig.GetDevice(kSynth).onWrite = [&](const LibMidi::MIDIEvent& event) {
        if (event.status != 0x90) {
            return;
        }
        ++steps;
        const double exact = static_cast<double>(steps * kStepTicks) * kTickMs;
        const double late = static_cast<double>(rig.time.GetTimeMs() - start) - exact;
        // Half a tick early at most, and late by the clock's two truncations to a millisecond.
        ASSERT_TRUE(late >= -kTickMs / 2 - 1e-6 && late < 2) << "step " << steps << " late by " << late << " ms";
    };
    rig.Run(600'000);
    EXPECT_EQ(steps, 10 * kTempo * 2);
}

TEST_F(Clock, ARunOfMoreThan24DaysStartsAnew) {
    constexpr std::int64_t kDay = 24LL * 60 * 60 * 1000;
    AdvanceTo(24 * kDay);
    EXPECT_EQ(engine.GetMusicalClock().bar, 24 * kDay / 2000);
    AdvanceTo(24 * kDay + 1);
    EXPECT_THAT(Position(), ElementsAre(0, 0, 0));
    AdvanceTo(24 * kDay + 2001);
    EXPECT_THAT(Position(), ElementsAre(1, 0, 0));
}

TEST_F(Clock, TurningTheMetronomeOnAfterARestartGivesBarAndBeatOnTheFirstPoll) {
    engine.SetMetronome(true);
    EXPECT_TRUE(engine.IsMetronomeOn());
    EXPECT_THAT(shown.Take(), ElementsAre("MetronomeChanged"));
    engine.onMetronomeTimer();
    EXPECT_THAT(shown.Take(), ElementsAre("Bar", "Beat"));
    engine.onMetronomeTimer();
    EXPECT_THAT(shown.Take(), IsEmpty());
}

TEST_F(Clock, EachNewBeatIsToldOnceAndANewBarBeforeItsBeat) {
    engine.onMetronomeTimer();
    shown.Take();
    std::vector<std::string> told;
    for (int elapsed = 5; elapsed <= 2000; elapsed += 5) {
        AdvanceTo(elapsed);
        engine.onMetronomeTimer();
        for (const std::string& name : shown.Take()) {
            told.push_back(name + " " + std::to_string(elapsed));
        }
    }
    EXPECT_THAT(told, ElementsAre("Beat 500", "Beat 1000", "Beat 1500", "Bar 2000", "Beat 2000"));
}

TEST_F(Clock, TurningTheMetronomeOffStopsTheIndicatorAndNotTheClock) {
    engine.SetMetronome(true);
    engine.SetMetronome(false);
    EXPECT_FALSE(engine.IsMetronomeOn());
    EXPECT_THAT(shown.Take(), ElementsAre("MetronomeChanged", "MetronomeChanged"));
    AdvanceTo(2499);
    EXPECT_THAT(Position(), ElementsAre(1, 0, 499));
}

TEST_F(Clock, TurningTheMetronomeOffDoesNotStopTheArpeggiators) {
    engine.SetOutputPortByName(kSynth);
    engine.SetArpeggiating(true);
    engine.SetMetronome(true);
    engine.SetMetronome(false);
    rig.Run(1);
    rig.TakeWritten();
    engine.PlayNoteOn(60, 100);
    rig.Run(260);
    EXPECT_THAT(rig.TakeWritten(), testing::Contains("90 3c 64"));
}

TEST_F(Clock, TheMetronomeSendsNoMidi) {
    rig.engine->SetOutputPortByName(kSynth);
    rig.TakeWritten();
    engine.SetMetronome(true);
    for (int i = 0; i < 3000; ++i) {
        rig.Run(1);
        engine.onMetronomeTimer();
    }
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
}

TEST_F(Clock, SignalsOfTheClockAreEmittedOutsideTheLock) {
    // A thread that gets the lock while the signal is being delivered shows that nobody holds it.
    const auto lockIsFree = [this] {
        bool free = false;
        std::thread([&] {
            engine.GetTempo();
            free = true;
        }).join();
        return free;
    };
    int checked = 0;
    const auto check = [&] { checked += lockIsFree() ? 1 : 0; };
    QObject receiver;
    QObject::connect(&engine, &Kivora::CKivora::TempoChanged, &receiver, check);
    QObject::connect(&engine, &Kivora::CKivora::MetronomeChanged, &receiver, check);
    QObject::connect(&engine, &Kivora::CKivora::Bar, &receiver, check);
    QObject::connect(&engine, &Kivora::CKivora::Beat, &receiver, check);
    engine.SetTempo(100);
    engine.SetMetronome(true);
    engine.onMetronomeTimer();
    EXPECT_EQ(checked, 4);
}

TEST_F(Clock, ATickWaitsForThePlayerAndThenRunsArpeggiator0Then1) {
    engine.SetOutputPortByName(kSynth);
    engine.SetDual(true);
    engine.SetArpeggiating(true);
    rig.Run(1);
    engine.PlayNoteOn(60, 100);
    rig.TakeWritten();
    // A message is ready when the step of both arpeggiators is due: the tick lets the player write it first.
    engine.RestartClock();
    rig.time.AdvanceMs(250);
    engine.SetSustain(true);
    const std::uint64_t before = rig.time.GetSleptMs();
    engine.OnTimer(0);
    EXPECT_EQ(rig.time.GetSleptMs() - before, 1U) << "the sink's wait of at most 1 ms";
    const std::vector<std::string> first = rig.GetDevice(kSynth).TakeWritten();
    EXPECT_EQ(std::count_if(first.begin(), first.end(), [](const std::string& text) { return text[0] == '9'; }), 0);
    EXPECT_EQ(std::count_if(first.begin(), first.end(), [](const std::string& text) { return text[0] == 'b'; }), 3);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3c 64", "91 3c 64"));
}

TEST_F(Clock, WithoutAnOutputTheTickOnlyMovesTheClock) {
    engine.SetArpeggiating(true);
    engine.PlayNoteOn(60, 100);
    const std::uint64_t before = rig.time.GetSleptMs();
    rig.Run(1000);
    EXPECT_EQ(rig.time.GetSleptMs(), before);
    EXPECT_THAT(Position(), ElementsAre(0, 2, 0));
}
