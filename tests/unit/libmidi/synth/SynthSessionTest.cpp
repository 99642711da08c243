#include "libmidi/synth/SynthSession.h"

#include <gtest/gtest.h>

#include "FakeSynthApi.h"
#include "libmidi/synth/Synthesizer.h"
#include "libmidi/synth/SynthLog.h"
#include "support/FatalLog.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"

namespace {

using KivoraTest::CFatalLog;
using KivoraTest::CTemporaryFolder;
using KivoraTest::FakeSynthApi;
using namespace LibMidi;
using namespace std::chrono_literals;
using Phase = SynthSession::Phase;
using Texts = std::vector<std::string>;

constexpr std::chrono::milliseconds kLong = 60s;
constexpr std::chrono::milliseconds kShort = 20ms;

const SynthDeviceConfig kConfig{.soundFont = "font.sf2",
                                .audioDriver = "pulseaudio",
                                .audioFile = {},
                                .latencyFrames = 512,
                                .gain = 0.6,
                                .reverb = true,
                                .chorus = true};
const NoteEvent kOn{0, 0, 60, 100, 0x90};
const NoteEvent kOff{0, 0, 60, 0, 0x80};

class SynthSessionTest : public testing::Test {
protected:
    static void BecomeReady(SynthSession& session) {
        ASSERT_NE(session.WaitForDriver(kLong), Phase::kStarting);
        ASSERT_EQ(session.WaitForFont(kLong), Phase::kReady);
    }
    Texts GetMessages() const {
        Texts texts;
        for (const std::string& text : api_.GetTexts()) {
            if (text.starts_with("on ") || text.starts_with("off ") || text.starts_with("program ") ||
                text.starts_with("cc ") || text == "reset") {
                texts.push_back(text);
            }
        }
        return texts;
    }

    FakeSynthApi api_;
};

TEST_F(SynthSessionTest, MessagesWaitInOrderWhileTheFontLoads) {
    api_.fontLoad.Shut();
    SynthSession session(api_, kConfig);
    ASSERT_EQ(session.WaitForDriver(kLong), Phase::kLoading);
    EXPECT_EQ(session.WaitForFont(kShort), Phase::kLoading);
    EXPECT_TRUE(session.Write(PatchEvent(0, 0, 5)));
    EXPECT_TRUE(session.Write(kOn));
    EXPECT_TRUE(session.Write(CtrlEvent(0, 0, 7, 90)));
    EXPECT_TRUE(session.Write(kOff));
    EXPECT_TRUE(GetMessages().empty());
    api_.fontLoad.Open();
    api_.WaitFor("off 0 60");
    EXPECT_EQ(GetMessages(), (Texts{"program 0 5", "on 0 60 100", "cc 0 7 90", "off 0 60"}));
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, AProgramChangeNeverRunsOnTheWritersThreadAndHoldsBackWhatFollows) {
    SynthSession session(api_, kConfig);
    BecomeReady(session);
    api_.programChange.Shut();
    ASSERT_TRUE(session.Write(PatchEvent(0, 0, 9)));
    api_.programChange.WaitUntilReached();
    ASSERT_TRUE(session.Write(kOn));
    ASSERT_TRUE(session.Write(kOff));
    EXPECT_FALSE(api_.Has("on 0 60 100"));
    api_.programChange.Open();
    api_.WaitFor("off 0 60");
    EXPECT_EQ(GetMessages(), (Texts{"program 0 9", "on 0 60 100", "off 0 60"}));
    for (const FakeSynthApi::Call& call : api_.GetCalls()) {
        EXPECT_NE(call.thread, std::this_thread::get_id()) << call.text;
    }
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, ASystemResetRunsOnTheSessionsThreadToo) {
    SynthSession session(api_, kConfig);
    BecomeReady(session);
    ASSERT_TRUE(session.Write(MIDIEvent(0, 0xFF, 0, 0)));
    api_.WaitFor("reset");
    EXPECT_NE(api_.GetCalls().back().thread, std::this_thread::get_id());
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, ANoteOfAnIdleSessionIsPlayedAtOnceByTheWriter) {
    SynthSession session(api_, kConfig);
    BecomeReady(session);
    ASSERT_TRUE(session.Write(kOn));
    ASSERT_TRUE(api_.Has("on 0 60 100"));
    EXPECT_EQ(api_.GetCalls().back().thread, std::this_thread::get_id());
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, AFullQueueFailsTheWriteWithAReason) {
    api_.fontLoad.Shut();
    SynthSession session(api_, kConfig);
    for (std::size_t count = 0; count < SynthSession::kMaxWaiting; ++count) {
        ASSERT_TRUE(session.Write(kOn));
    }
    EXPECT_FALSE(session.Write(kOn));
    EXPECT_EQ(session.GetReason().ToText(), L"The sound font is still being loaded.");
    api_.fontLoad.Open();
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, AFontThatFailsInTheBackgroundFailsTheWritesFromThenOn) {
    api_.fontLoad.Shut();
    api_.failingFont = "font.sf2";
    SynthSession session(api_, kConfig);
    ASSERT_EQ(session.WaitForDriver(kLong), Phase::kLoading);
    EXPECT_TRUE(session.Write(kOn));
    api_.fontLoad.Open();
    EXPECT_EQ(session.WaitForFont(kLong), Phase::kFailed);
    EXPECT_FALSE(session.Write(kOn));
    EXPECT_EQ(session.GetReason().ToText(), L"The sound font cannot be loaded.");
    api_.WaitUntilFreed();
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, WritingFailsOnceTheAudioSystemHasStopped) {
    SynthSession session(api_, kConfig);
    BecomeReady(session);
    std::thread([] { SynthLog::Write(true, "Error writing to the device"); }).join();
    EXPECT_FALSE(session.Write(kOn));
    EXPECT_EQ(session.GetReason().ToText(), L"The audio system has stopped.");
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, ApplyingTheSameSettingsStartsAStoppedAudioSystemAgain) {
    SynthSession session(api_, kConfig);
    BecomeReady(session);
    std::thread([] { SynthLog::Write(true, "Error writing to the device"); }).join();
    SynthReason reason;
    EXPECT_TRUE(session.Apply(kConfig, kLong, reason));
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 2);
    EXPECT_TRUE(session.Write(kOn));
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, SettingsThatCannotBeAppliedWhileTheFontLoadsStayUndone) {
    api_.fontLoad.Shut();
    SynthSession session(api_, kConfig);
    ASSERT_EQ(session.WaitForDriver(kLong), Phase::kLoading);
    SynthDeviceConfig config = kConfig;
    config.gain = 0.25;
    SynthReason reason;
    EXPECT_FALSE(session.Apply(config, kShort, reason));
    EXPECT_EQ(reason.ToText(), L"The sound font is still being loaded.");
    api_.fontLoad.Open();
    ASSERT_EQ(session.WaitForFont(kLong), Phase::kReady);
    ASSERT_TRUE(session.Write(PatchEvent(0, 0, 5)));
    api_.WaitFor("program 0 5");
    EXPECT_TRUE(session.End(kLong));
    EXPECT_FALSE(api_.Has("gain 0.250000"));
    EXPECT_TRUE(api_.Has("gain 0.600000"));
}

TEST_F(SynthSessionTest, SettingsThatWaitForAFontThatFailsFailWithItsReason) {
    api_.fontLoad.Shut();
    api_.failingFont = "font.sf2";
    SynthSession session(api_, kConfig);
    ASSERT_EQ(session.WaitForDriver(kLong), Phase::kLoading);
    EXPECT_FALSE(session.IsOver());
    SynthReason reason;
    std::thread opener([this] {
        api_.fontLoad.WaitUntilReached();
        api_.fontLoad.Open();
    });
    EXPECT_FALSE(session.Apply(kConfig, kLong, reason));
    opener.join();
    EXPECT_EQ(reason.ToText(), L"The sound font cannot be loaded.");
    EXPECT_TRUE(session.IsOver());
    EXPECT_TRUE(session.End(kLong));
}

TEST_F(SynthSessionTest, EndingWhileTheFontLoadsWaitsForIt) {
    api_.fontLoad.Shut();
    SynthSession session(api_, kConfig);
    api_.fontLoad.WaitUntilReached();
    EXPECT_FALSE(session.End(kShort));
    EXPECT_FALSE(session.Write(kOn));
    api_.fontLoad.Open();
    EXPECT_TRUE(session.End(kLong));
    EXPECT_EQ(api_.GetLive(), 0);
}

class HangingAudioTest : public testing::Test {
protected:
    HangingAudioTest() {
        KivoraTest::WriteBytes(folder_ / "font.sf2", KivoraTest::MakeTinySoundFont());
        environment_.soundFont = folder_ / "font.sf2";
        environment_.audioDriver = "pulseaudio";
    }

    CTemporaryFolder folder_;
    FakeSynthApi api_;
    SynthEnvironment environment_;
    Synthesizer::Limits limits_{.driverStart = kShort, .fontLoad = kLong, .apply = kShort, .close = kShort};
};

TEST_F(HangingAudioTest, AnAudioServerThatNeverAnswersFailsTheOpening) {
    CFatalLog::Instance().Expect(L"The audio system does not answer.");
    {
        Synthesizer synthesizer(api_, environment_, limits_);
        api_.driverStart.Shut();
        EXPECT_FALSE(synthesizer.Open());
        api_.driverStart.WaitUntilReached();
        EXPECT_EQ(synthesizer.GetLastError(),
                  L"No sound can be played.\npulseaudio: The audio system does not answer.");
    }
    EXPECT_EQ(api_.GetLive(), 2) << "the synthesizer is gone, its thread still hangs";
    api_.driverStart.Open();
    api_.WaitUntilFreed();
}

TEST_F(HangingAudioTest, NoSecondThreadIsSentIntoAServerThatHangs) {
    CFatalLog::Instance().Expect(L"The audio system does not answer.");
    Synthesizer synthesizer(api_, environment_, limits_);
    api_.driverStart.Shut();
    EXPECT_FALSE(synthesizer.Open());
    api_.driverStart.WaitUntilReached();
    EXPECT_FALSE(synthesizer.Open());
    EXPECT_NE(synthesizer.Test(), L"");
    EXPECT_EQ(api_.GetLive(), 2);
    api_.driverStart.Open();
    api_.WaitUntilFreed();
}

TEST_F(HangingAudioTest, TheNextDriverIsTried) {
    environment_.audioDriver.clear();
    environment_.deviceFolder = folder_.GetPath();
    std::filesystem::create_directories(folder_ / "snd/pcmC0D0p");
    std::filesystem::create_directories(folder_ / "shm/jack-0");
    limits_ = {.driverStart = kLong, .fontLoad = kLong, .apply = kLong, .close = kLong};
    api_.failingDrivers = {"jack", "pulseaudio"};
    Synthesizer synthesizer(api_, environment_, limits_);
    EXPECT_TRUE(synthesizer.Open());
    EXPECT_EQ(synthesizer.GetActiveDriver(), "alsa");
}

TEST_F(HangingAudioTest, AServerThatHangsWhileThePortClosesDoesNotHoldItUp) {
    limits_.driverStart = kLong;
    Synthesizer synthesizer(api_, environment_, limits_);
    ASSERT_TRUE(synthesizer.Open());
    api_.driverEnd.Shut();
    synthesizer.Close();
    EXPECT_FALSE(synthesizer.IsOpen());
    api_.driverEnd.WaitUntilReached();
    EXPECT_EQ(api_.GetTexts().back(), "delete driver");
    EXPECT_TRUE(api_.Has("sounds off -1"));
    EXPECT_TRUE(synthesizer.Open()) << "while the former session is still being freed";
    EXPECT_EQ(api_.GetLive(), 6);
    api_.driverEnd.Open();
    synthesizer.Close();
    api_.WaitUntilFreed();
}

TEST_F(HangingAudioTest, SettingsThatHangAreGivenUp) {
    limits_.driverStart = kLong;
    Synthesizer synthesizer(api_, environment_, limits_);
    ASSERT_TRUE(synthesizer.Open());
    api_.driverStart.Shut();
    SynthSettings settings;
    settings.latencyFrames = 1024;
    EXPECT_EQ(synthesizer.ApplySettings(settings), kDeviceError);
    EXPECT_EQ(synthesizer.GetLastError(), L"The audio system does not answer.");
    api_.driverStart.WaitUntilReached();
    api_.driverStart.Open();
    synthesizer.Close();
    api_.WaitUntilFreed();
}

}  // namespace
