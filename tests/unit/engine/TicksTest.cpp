// The tick's thread runs while there is something to tick for, and who reads the clock sees what it would have shown.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "engine/EngineControls.h"
#include "engine/values/ClickSettings.h"
#include "libmidi/MIDIPlayer.h"
#include "nk/nk_wakeup.h"
#include "support/WaitUntil.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;

namespace {

constexpr std::int64_t kStartMs = 1'000'000;
constexpr std::int64_t kDayMs = std::int64_t{24} * 60 * 60 * 1000;

class Ticks : public testing::Test {
protected:
    Ticks() {
        backend.Plug(kSynth, LibMidi::kOutput);
        engine = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                       .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                                       .userDataDir = NK::CString::FromUtf8((folder / "user").native()),
                                       .wallClockMs =
                                           [this] {
                                               ticks += std::this_thread::get_id() == own ? 0 : 1;
                                               return nowMs.load();
                                           },
                                       .sleeper = time});
        engine->SetOutputPortByName(kSynth);
        ForgetWritten();
    }

    FakeDevice& GetSynth() { return *backend.devices.front(); }
    /// What has been written, once it is so many messages.
    std::vector<std::string> TakeWritten(std::size_t count) {
        std::vector<std::string> written;
        WaitUntil([&] {
            for (std::string& text : GetSynth().TakeWritten()) {
                written.push_back(std::move(text));
            }
            return written.size() >= count;
        });
        return written;
    }
    /// Everything that has been sent, once it has been written.
    void ForgetWritten() {
        engine->SettleOutput();
        engine->SendVolumes();
        const std::string last = "b2 07 " + ToHex(engine->GetVolume(2));
        WaitUntil([&] {
            const auto written = GetSynth().TakeWritten();
            return !written.empty() && written.back() == last;
        });
    }
    static std::string ToHex(int value) {
        constexpr const char* kDigits = "0123456789abcdef";
        return {kDigits[value >> 4], kDigits[value & 15]};
    }
    bool DoTicksRun() {
        const int before = ticks;
        return WaitUntil([&] { return ticks > before + 20; });
    }
    /// Whether the tick comes to rest.
    bool DoTicksStop() {
        return WaitUntil([&] {
            const int before = ticks;
            NK::CWakeup nobody;
            for (int i = 0; i < 20; ++i) {
                nobody.WaitUntil(NK::CWakeup::NowNs() + 1'000'000);
            }
            return ticks == before;
        });
    }
    void StartArpeggiator() {
        engine->WithArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(false); });
        engine->SetArpeggiating(true);
        ForgetWritten();
    }

    const std::thread::id own = std::this_thread::get_id();
    CTemporaryFolder folder;
    CVirtualTime time;
    std::atomic<std::int64_t> nowMs{kStartMs};
    std::atomic<int> ticks{0};
    FakeBackend backend;
    std::unique_ptr<Kivora::CKivora> engine;
};

TEST_F(Ticks, StandStillAtRest) {
    EXPECT_TRUE(DoTicksStop());
    engine->PlayNoteOn(60, 100);
    EXPECT_EQ(TakeWritten(1), (std::vector<std::string>{"90 3c 64"}));
    EXPECT_TRUE(DoTicksStop());
}

TEST_F(Ticks, RunWhileAnArpeggiatorHasNotes) {
    StartArpeggiator();
    EXPECT_TRUE(DoTicksStop()) << "there is nothing to play yet";
    engine->PlayNoteOn(60, 100);
    EXPECT_TRUE(DoTicksRun());
    engine->PlayNoteOff(60);
    EXPECT_TRUE(DoTicksStop());
}

TEST_F(Ticks, RunWhileTheMetronomeIsHeard) {
    engine->SetMetronome(true);
    EXPECT_TRUE(DoTicksStop()) << "it is seen alone";
    engine->SetClick({.sound = Kivora::ClickSettings::Sound::kOutput});
    EXPECT_TRUE(DoTicksRun());
    EXPECT_EQ(TakeWritten(2), (std::vector<std::string>{"99 4c 64", "89 4c 00"})) << "its clock stands on the beat";
    engine->SetMetronome(false);
    EXPECT_TRUE(DoTicksStop());
}

TEST_F(Ticks, RunWhileATakeRuns) {
    engine->StartRecording();
    EXPECT_TRUE(DoTicksRun());
    engine->StopRecording();
    EXPECT_TRUE(DoTicksStop());
}

TEST_F(Ticks, TheClockIsReadAsATickWouldHaveSetIt) {
    ASSERT_TRUE(DoTicksStop());
    nowMs = kStartMs + 2499;
    const NK::MIDI::MusicalClock clock = engine->GetMusicalClock();
    EXPECT_EQ(clock.bar, 1);
    EXPECT_EQ(clock.beat, 0);
    EXPECT_EQ(clock.offset, 499);
    nowMs = kStartMs - 5000;
    EXPECT_EQ(engine->GetMusicalClock().ToTick(), 0);
}

TEST_F(Ticks, AClockThatNobodyReadForMonthsBeganAnewInTime) {
    ASSERT_TRUE(DoTicksStop());
    const std::int64_t runMs = 24 * kDayMs + 1;
    nowMs = kStartMs + 2 * runMs + 2499;
    EXPECT_EQ(engine->GetMusicalClock().bar, 1);
    engine->onMetronomeTimer();
    EXPECT_EQ(engine->GetMusicalClock().bar, 1);
    nowMs += 2000;
    EXPECT_EQ(engine->GetMusicalClock().bar, 2);
}

TEST_F(Ticks, TheMetronomeFindsTheBeat) {
    ASSERT_TRUE(DoTicksStop());
    std::string told;
    QObject::connect(engine.get(), &Kivora::CKivora::Bar, [&] { told += "bar "; });
    QObject::connect(engine.get(), &Kivora::CKivora::Beat, [&] { told += "beat "; });
    engine->onMetronomeTimer();
    nowMs = kStartMs + 500;
    engine->onMetronomeTimer();
    engine->onMetronomeTimer();
    nowMs = kStartMs + 2000;
    engine->onMetronomeTimer();
    EXPECT_EQ(told, "bar beat beat bar beat ");
}

TEST_F(Ticks, AFirstKeyWaitsForItsStepAsIfTheTickHadRun) {
    StartArpeggiator();
    ASSERT_TRUE(DoTicksStop());
    const int stepTicks = engine->WithArpeggiator(
        0, [](const NK::MIDI::CArpeggiator1& arpeggiator) { return arpeggiator.GetNoteStep(); });
    const std::int64_t stepMs = stepTicks * 500 / NK::MIDI::MusicalClock::kTicksPerQuarter;
    nowMs = kStartMs + 10 * stepMs + stepMs / 2;
    engine->PlayNoteOn(60, 100);
    ASSERT_TRUE(DoTicksRun());
    EXPECT_TRUE(GetSynth().TakeWritten().empty()) << "the step had begun before the key";
    nowMs = kStartMs + 11 * stepMs + 1;
    EXPECT_EQ(TakeWritten(1).front(), "90 3c 64");
}

TEST_F(Ticks, AFailedWriteIsToldAtRest) {
    std::atomic<bool> lost{false};
    QObject::connect(engine.get(), &Kivora::CKivora::OutputLost, [&] { lost = true; });
    ASSERT_TRUE(DoTicksStop());
    GetSynth().failsToWrite = true;
    engine->PlayNoteOn(60, 100);
    EXPECT_TRUE(WaitUntil([&] { return lost.load(); }));
    EXPECT_TRUE(engine->IsOutputLost());
    EXPECT_TRUE(DoTicksStop());
}

TEST_F(Ticks, RunWhereThePlayerTellsNothing) {
    Kivora::CKivora other(
        Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                   .createPlayer = [this] { return std::make_unique<FakePlayer>(time, time); },
                                   .wallClockMs =
                                       [this] {
                                           ticks += std::this_thread::get_id() == own ? 0 : 1;
                                           return nowMs.load();
                                       },
                                   .sleeper = time});
    EXPECT_TRUE(DoTicksRun());
}

}  // namespace
