#include "libmidi/synth/Synthesizer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "FakeSynthApi.h"
#include "libmidi/synth/SynthErrors.h"
#include "libmidi/synth/SynthLog.h"
#include "libmidi/synth/SynthOutPort.h"
#include "nk/nk_translate.h"
#include "support/FatalLog.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaitUntil.h"

namespace {

namespace fs = std::filesystem;
using KivoraTest::CFatalLog;
using KivoraTest::CTemporaryFolder;
using KivoraTest::FakeSynthApi;
using KivoraTest::WaitUntil;
using namespace LibMidi;
using namespace std::chrono_literals;

class SynthesizerTest : public testing::Test {
protected:
    SynthesizerTest() {
        KivoraTest::WriteBytes(font_, KivoraTest::MakeTinySoundFont());
        KivoraTest::WriteBytes(otherFont_, KivoraTest::MakeTinySoundFont());
        environment_.soundFont = font_;
        environment_.deviceFolder = folder_ / "dev";
        environment_.runtimeFolder = folder_ / "run";
    }
    Synthesizer& Make() {
        synthesizer_ = std::make_unique<Synthesizer>(api_, environment_, limits_);
        return *synthesizer_;
    }
    /// Opens, and chooses a driver that does not start when the former one does not start again either.
    void LoseEveryDriver() {
        SynthSettings settings;
        settings.audioDriver = L"pulseaudio";
        ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
        ASSERT_TRUE(synthesizer_->Open());
        api_.failingDrivers = {"alsa", "pulseaudio"};
        settings.audioDriver = L"alsa";
        ASSERT_EQ(synthesizer_->ApplySettings(settings), kDeviceError);
        ASSERT_FALSE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
    }
    /// An attempt that is given up goes on by itself and may call after the test: so what it calls is kept.
    static FakeSynthApi& MakeLastingApi() {
        static auto& kept = *new std::vector<std::unique_ptr<FakeSynthApi>>;
        return *kept.emplace_back(std::make_unique<FakeSynthApi>());
    }
    void MakeFile(const std::string& name) {
        fs::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name) << "x";
    }
    void ShowSoundCard() { MakeFile("dev/snd/pcmC0D0p"); }
    void ShowJackServer() { MakeFile("dev/shm/jack-0"); }

    CTemporaryFolder folder_;
    const fs::path font_ = folder_ / "font.sf2";
    const fs::path otherFont_ = folder_ / "other.sf2";
    FakeSynthApi& api_ = MakeLastingApi();
    SynthEnvironment environment_;
    Synthesizer::Limits limits_{.driverStart = 60s, .fontLoad = 60s, .apply = 60s, .close = 60s};
    std::unique_ptr<Synthesizer> synthesizer_;
};

NK::CString Explain(const std::string& message, const char* otherwise) {
    return ExplainSynthError(message, SynthReason(otherwise)).ToText();
}

TEST(SynthErrors, WhatIsKnownToBeMeantIsSaidInTheProgramsWords) {
    EXPECT_EQ(Explain("Failed to create PulseAudio connection, because pa_simple_new() failed with error: "
                      "Connection refused",
                      "?"),
              L"The sound server does not run or refuses the connection. (Connection refused)");
    EXPECT_EQ(Explain("Failed to connect to Jack server.", "?"), L"No JACK server runs.");
    EXPECT_EQ(Explain("The \"hw:0\" audio device is used by another application", "?"),
              L"The sound card is used by another program.");
    EXPECT_EQ(Explain("Failed to open the \"hw:0\" audio device", "?"), L"The sound card cannot be opened.");
}

TEST(SynthErrors, WhatIsNotKnownStandsBehindTheProgramsWords) {
    EXPECT_EQ(Explain("Bad things", "Ours."), L"Ours. (Bad things)");
    EXPECT_EQ(Explain("", "Ours."), L"Ours.");
}

TEST_F(SynthesizerTest, TriesPipeWireThenJackThenPulseAudioThenAlsa) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    ShowSoundCard();
    ShowJackServer();
    api_.drivers = {"alsa", "file", "jack", "oss", "pipewire", "pulseaudio", "sdl2"};
    api_.failingDrivers = api_.drivers;
    EXPECT_FALSE(Make().Open());
    std::vector<std::string> tried;
    for (const std::string& text : api_.GetTexts()) {
        if (text.starts_with("driver")) {
            tried.push_back(text);
        }
    }
    EXPECT_EQ(tried,
              (std::vector<std::string>{"driver2 pipewire", "driver jack", "driver2 pulseaudio", "driver2 alsa"}));
    EXPECT_EQ(synthesizer_->GetLastError(),
              L"No sound can be played.\n"
              L"pipewire: The audio driver does not start.\n"
              L"jack: The audio driver does not start.\n"
              L"pulseaudio: The audio driver does not start.\n"
              L"alsa: The audio driver does not start.");
}

TEST_F(SynthesizerTest, AReasonIsToldInTheLanguageOfTheMoment) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    api_.failingDrivers = {"pulseaudio"};
    EXPECT_FALSE(Make().Open());
    NK::SetTranslateFunction([](const char* context, const char* text, const char*) {
        return NK::CString::FromUtf8(std::string(context) + "/" + text);
    });
    const NK::CString told = synthesizer_->GetLastError();
    NK::SetTranslateFunction(nullptr);
    EXPECT_EQ(told,
              L"Synthesizer/No sound can be played.\n"
              L"jack: Synthesizer/No JACK server runs.\n"
              L"pulseaudio: Synthesizer/The audio driver does not start.\n"
              L"alsa: Synthesizer/There is no sound card.");
}

TEST_F(SynthesizerTest, TheFirstDriverThatStartsPlays) {
    ShowSoundCard();
    api_.failingDrivers = {"pulseaudio"};
    ASSERT_TRUE(Make().Open());
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "alsa");
    EXPECT_EQ(api_.Count("driver jack"), 0);
    EXPECT_EQ(synthesizer_->GetLastError(), L"");
}

TEST_F(SynthesizerTest, AMachineWithoutAnyAudioSystemGetsAReasonForEach) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    api_.failingDrivers = {"pulseaudio"};
    EXPECT_FALSE(Make().Open());
    EXPECT_EQ(synthesizer_->GetLastError(),
              L"No sound can be played.\n"
              L"jack: No JACK server runs.\n"
              L"pulseaudio: The audio driver does not start.\n"
              L"alsa: There is no sound card.");
}

TEST_F(SynthesizerTest, TheEnvironmentForcesADriverOverTheSettings) {
    environment_.audioDriver = "alsa";
    SynthSettings settings;
    settings.audioDriver = L"pulseaudio";
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "alsa");
}

TEST_F(SynthesizerTest, TheSettingsForceADriver) {
    SynthSettings settings;
    settings.audioDriver = L"jack";
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "jack");
    EXPECT_TRUE(api_.Has("audio.jack.id=Kivora LX"));
}

TEST_F(SynthesizerTest, ADriverThatDoesNotExistGivesAReason) {
    CFatalLog::Instance().Expect(L"FluidSynth has no such audio driver here.");
    environment_.audioDriver = "nonesuch";
    EXPECT_FALSE(Make().Open());
    EXPECT_EQ(api_.Count("driver2 nonesuch"), 0);
}

TEST_F(SynthesizerTest, TheFileDriverNeedsItsFile) {
    CFatalLog::Instance().Expect(L"KIVORA_AUDIO_FILE names no file to write.");
    environment_.audioDriver = "file";
    EXPECT_FALSE(Make().Open());
    environment_.audioFile = folder_ / "out.wav";
    EXPECT_TRUE(Make().Open());
    EXPECT_TRUE(api_.Has("audio.file.name=" + environment_.audioFile));
}

TEST_F(SynthesizerTest, ListsTheDriversThatCanBeChosen) {
    EXPECT_EQ(Make().GetAudioDrivers(), (std::vector<NK::CString>{L"jack", L"pulseaudio", L"alsa"}));
}

TEST_F(SynthesizerTest, LatencyIsTheBufferAndAlsaGetsItInFourPeriods) {
    environment_.audioDriver = "alsa";
    SynthSettings settings;
    settings.latencyFrames = 1050;
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSettings().latencyFrames, 1024U);
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_TRUE(api_.Has("audio.periods=4"));
    EXPECT_TRUE(api_.Has("audio.period-size=256"));
    EXPECT_DOUBLE_EQ(synthesizer_->GetLatencyMs(480), 10.0);

    synthesizer_->Close();
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    EXPECT_TRUE(api_.Has("audio.period-size=512"));
}

TEST_F(SynthesizerTest, SettingsAreClamped) {
    SynthSettings settings;
    settings.latencyFrames = 1;
    settings.gain = 99.0;
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSettings().latencyFrames, SynthSettings::kMinLatencyFrames);
    EXPECT_EQ(synthesizer_->GetSettings().gain, SynthSettings::kMaxGain);
    settings.latencyFrames = std::numeric_limits<std::uint32_t>::max();
    settings.gain = std::numeric_limits<double>::quiet_NaN();
    ASSERT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSettings().latencyFrames, SynthSettings::kMaxLatencyFrames);
    EXPECT_EQ(synthesizer_->GetSettings().gain, 0.0);
}

TEST_F(SynthesizerTest, GainAndEffectsChangeWhileItPlays) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    api_.Forget();
    SynthSettings settings;
    settings.gain = 0.25;
    settings.reverb = false;
    settings.chorus = false;
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(api_.GetTexts(), (std::vector<std::string>{"gain 0.250000", "reverb 0", "chorus 0"}));
}

TEST_F(SynthesizerTest, AnotherLatencyRestartsTheDriverAndKeepsTheSynthesizer) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    api_.Forget();
    SynthSettings settings;
    settings.latencyFrames = 2048;
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(api_.Count("delete driver"), 1);
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 1);
    EXPECT_TRUE(api_.Has("audio.period-size=2048"));
    EXPECT_EQ(api_.Count("load " + font_.native()), 0);
    EXPECT_EQ(api_.GetLive(), 3);
}

TEST_F(SynthesizerTest, AnotherFontReplacesTheOneThatPlays) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    api_.Forget();
    SynthSettings settings;
    settings.soundFont = NK::CString::FromUtf8(otherFont_.native());
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_TRUE(api_.Has("load " + otherFont_.native()));
    EXPECT_TRUE(api_.Has("unload 1"));
    EXPECT_EQ(api_.Count("delete driver"), 0);
    EXPECT_EQ(synthesizer_->GetSoundFontPath(), settings.soundFont);
}

TEST_F(SynthesizerTest, AFontOfTheRunIsPlayedAndIsNoSetting) {
    SynthSettings settings;
    settings.soundFont = NK::CString::FromUtf8(font_.native());
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    synthesizer_->SetRunFont(otherFont_);
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(synthesizer_->GetSoundFontPath().ToUtf8(), otherFont_.native());
    EXPECT_EQ(synthesizer_->GetSettings(), settings);
    settings.gain = 1.0;
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSoundFontPath().ToUtf8(), otherFont_.native()) << "the font was not chosen anew";
    settings.soundFont = L"missing.sf2";
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kDeviceError);
    EXPECT_EQ(synthesizer_->GetSoundFontPath().ToUtf8(), otherFont_.native());
    settings.soundFont.Clear();
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSoundFontPath().ToUtf8(), font_.native()) << "the environment's";
}

TEST_F(SynthesizerTest, AFontThatCannotBeReadLeavesTheFormerSettings) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    const SynthSettings former = synthesizer_->GetSettings();
    SynthSettings settings;
    settings.gain = 0.1;
    settings.soundFont = L"/nowhere/at/all.sf2";
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kDeviceError);
    EXPECT_EQ(synthesizer_->GetSettings(), former);
    EXPECT_EQ(synthesizer_->GetLastError(), L"The sound font cannot be read.");
    EXPECT_FALSE(api_.Has("gain 0.100000"));
}

TEST_F(SynthesizerTest, AFontThatFluidSynthRefusesLeavesTheFormerSettings) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    api_.failingFont = otherFont_;
    api_.Forget();
    SynthSettings settings;
    settings.gain = 0.1;
    settings.soundFont = NK::CString::FromUtf8(otherFont_.native());
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kDeviceError);
    EXPECT_EQ(synthesizer_->GetSettings(), SynthSettings());
    EXPECT_EQ(synthesizer_->GetLastError(), L"The sound font cannot be loaded.");
    EXPECT_EQ(api_.GetTexts().back(), "chorus 1") << "the former sound is set again last";
    EXPECT_TRUE(api_.Has("gain 0.600000"));
    EXPECT_FALSE(api_.Has("unload 1"));
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
}

TEST_F(SynthesizerTest, ADriverThatDoesNotStartGivesTheFormerOneBack) {
    SynthSettings settings;
    settings.audioDriver = L"pulseaudio";
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    ASSERT_TRUE(synthesizer_->Open());
    api_.failingDrivers = {"alsa"};
    api_.Forget();
    settings.audioDriver = L"alsa";
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kDeviceError);
    EXPECT_EQ(synthesizer_->GetLastError(), L"The audio driver does not start.");
    EXPECT_EQ(synthesizer_->GetSettings().audioDriver, L"pulseaudio");
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "pulseaudio");
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 1);
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
}

TEST_F(SynthesizerTest, WhereNoDriverStartsAgainWritingFails) {
    LoseEveryDriver();
    EXPECT_EQ(synthesizer_->GetLastError(), L"The audio driver does not start.");
}

TEST_F(SynthesizerTest, AnotherDriverHelpsWhereNoneStartedAgain) {
    LoseEveryDriver();
    SynthSettings settings;
    settings.audioDriver = L"oss";
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSettings().audioDriver, L"oss");
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "oss");
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
    EXPECT_EQ(synthesizer_->Test(), L"");
}

TEST_F(SynthesizerTest, AnotherFontCanBeChosenAfterOneThatFailedInTheBackground) {
    environment_.audioDriver = "pulseaudio";
    limits_.fontLoad = 1ms;
    api_.failingFont = font_;
    api_.fontLoad.Shut();
    ASSERT_TRUE(Make().Open());
    SynthSettings settings;
    settings.soundFont = NK::CString::FromUtf8(otherFont_.native());
    api_.fontLoad.Open();
    api_.WaitUntilFreed();
    EXPECT_FALSE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
    EXPECT_EQ(synthesizer_->ApplySettings(settings), kSuccess);
    EXPECT_EQ(synthesizer_->GetSettings(), settings);
    EXPECT_FALSE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90))) << "until the port is opened again";
    synthesizer_->Close();
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
    api_.WaitFor("load " + otherFont_.native());
}

TEST_F(SynthesizerTest, InPlaceOfASessionThatFailedAnotherIsBegunBehindTheCallersBack) {
    ShowSoundCard();
    ASSERT_TRUE(Make().Open());
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kWorks);
    api_.failingDrivers = {"pulseaudio"};
    std::thread([] { SynthLog::Write(true, "the server has gone"); }).join();
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kLost);
    EXPECT_EQ(synthesizer_->GetLastError(), L"The audio system has stopped.");
    const auto look = [this] { return synthesizer_->LookAtSession(); };
    DeviceState state = DeviceState::kLost;
    EXPECT_TRUE(WaitUntil([&] { return (state = look()) != DeviceState::kLost; }));
    EXPECT_EQ(state, DeviceState::kBack);
    EXPECT_FALSE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90))) << "until the port is opened again";
    synthesizer_->Close();
    const auto started = api_.Count("driver2 alsa");
    EXPECT_EQ(started, 1);
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "alsa");
    EXPECT_EQ(api_.Count("driver2 alsa"), started);
    EXPECT_EQ(look(), DeviceState::kWorks);
    EXPECT_EQ(synthesizer_->GetLastError(), L"");
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
}

TEST_F(SynthesizerTest, WhatWasBegunInPlaceOfASessionGoesWhereNobodyOpensItAgain) {
    ShowSoundCard();
    const auto synthesizer = std::make_shared<Synthesizer>(api_, environment_, limits_);
    SynthOutPort port(synthesizer);
    ASSERT_EQ(port.Open(), kSuccess);
    std::thread([] { SynthLog::Write(true, "the server has gone"); }).join();
    ASSERT_TRUE(WaitUntil([&] { return port.LookAtDevice() == DeviceState::kBack; }));
    EXPECT_EQ(port.Close(), kSuccess);
    EXPECT_GT(api_.GetLive(), 0) << "ready for the next opening";
    EXPECT_EQ(port.Close(), kNotOpen);
    api_.WaitUntilFreed();
    // Where a look at a closed port has begun one.
    ASSERT_TRUE(WaitUntil([&] { return port.LookAtDevice() == DeviceState::kBack; }));
    EXPECT_EQ(port.Close(), kNotOpen);
    api_.WaitUntilFreed();
}

TEST_F(SynthesizerTest, AnAudioSystemThatHangsIsTakenForLostAndAnotherOneIsBegun) {
    limits_.hang = 1ms;
    ASSERT_TRUE(Make().Open());
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kWorks);
    api_.TakeSound(64);
    ASSERT_TRUE(WaitUntil([&] { return synthesizer_->LookAtSession() != DeviceState::kWorks; }));
    EXPECT_EQ(synthesizer_->GetLastError(), L"The audio system does not answer.");
    ASSERT_TRUE(WaitUntil([&] { return synthesizer_->LookAtSession() == DeviceState::kBack; }));
    synthesizer_->Close();
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 2);
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kWorks);
}

TEST_F(SynthesizerTest, AnAudioSystemThatGoesOnAfterAllWorks) {
    limits_.hang = 1ms;
    ASSERT_TRUE(Make().Open());
    api_.TakeSound(64);
    ASSERT_TRUE(WaitUntil([&] { return synthesizer_->LookAtSession() != DeviceState::kWorks; }));
    api_.TakeSound(64);
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kWorks);
}

TEST_F(SynthesizerTest, ClosingDoesNotWaitForAnAttemptThatHangs) {
    ShowSoundCard();
    ASSERT_TRUE(Make().Open());
    api_.driverStart.Shut();
    std::thread([] { SynthLog::Write(true, "the server has gone"); }).join();
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kLost);
    api_.driverStart.WaitUntilReached();
    EXPECT_EQ(synthesizer_->LookAtSession(), DeviceState::kLost) << "it may still start";
    synthesizer_->Close();
    api_.driverStart.Open();
    synthesizer_.reset();
    api_.WaitUntilFreed();
}

TEST_F(SynthesizerTest, SettingsOutliveTheSession) {
    environment_.audioDriver = "pulseaudio";
    SynthSettings settings;
    settings.gain = 0.5;
    settings.chorus = false;
    ASSERT_EQ(Make().ApplySettings(settings), kSuccess);
    ASSERT_TRUE(synthesizer_->Open());
    synthesizer_->Close();
    api_.Forget();
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_TRUE(api_.Has("gain 0.500000"));
    EXPECT_TRUE(api_.Has("chorus 0"));
    EXPECT_EQ(synthesizer_->GetSettings(), settings);
}

TEST_F(SynthesizerTest, TheTestPlaysANoteAndEndsItWhileThePortIsOpen) {
    environment_.audioDriver = "pulseaudio";
    ASSERT_TRUE(Make().Open());
    EXPECT_EQ(synthesizer_->Test(), L"");
    api_.WaitFor("off 15 60");
    EXPECT_EQ(api_.Count("on 15 60 100"), 1);
    EXPECT_TRUE(synthesizer_->IsOpen());
    EXPECT_EQ(api_.GetLive(), 3);
}

TEST_F(SynthesizerTest, TheTestOfAClosedPortFreesTheAudioSystemByItself) {
    environment_.audioDriver = "pulseaudio";
    EXPECT_EQ(Make().Test(), L"");
    EXPECT_FALSE(synthesizer_->IsOpen());
    api_.WaitFor("off 15 60");
    api_.WaitUntilFreed();
}

TEST_F(SynthesizerTest, EveryDriverIsTriedWithANoteEach) {
    ShowSoundCard();
    api_.failingDrivers = {"pulseaudio"};
    int heard = 0;
    const SynthDriverTrials trials = Make().TryDrivers([&heard] { ++heard; });
    ASSERT_EQ(trials.size(), 3U);
    EXPECT_EQ(trials[0].driver, "jack");
    EXPECT_EQ(trials[0].reason, L"No JACK server runs.");
    EXPECT_EQ(trials[1].driver, "pulseaudio");
    EXPECT_FALSE(trials[1].reason.IsEmpty());
    EXPECT_EQ(trials[2].driver, "alsa");
    EXPECT_TRUE(trials[2].reason.IsEmpty());
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "");
    EXPECT_EQ(api_.GetLive(), 0) << "nothing is left open";
}

TEST_F(SynthesizerTest, WhatPlaysGoesOnWhileTheDriversAreTried) {
    ASSERT_TRUE(Make().Open());
    ASSERT_EQ(synthesizer_->GetActiveDriver(), "pulseaudio");
    api_.Forget();
    int heard = 0;
    synthesizer_->TryDrivers([&heard] { ++heard; });
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(api_.Count("driver2 pulseaudio"), 0) << "it is not opened a second time";
    EXPECT_EQ(api_.Count("delete driver"), 0);
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "pulseaudio");
    EXPECT_TRUE(synthesizer_->Write(NoteEvent(0, 0, 60, 100, 0x90)));
}

TEST_F(SynthesizerTest, OpeningDuringATestTakesOver) {
    environment_.audioDriver = "pulseaudio";
    EXPECT_EQ(Make().Test(), L"");
    ASSERT_TRUE(synthesizer_->Open());
    EXPECT_EQ(api_.GetLive(), 3);
}

TEST_F(SynthesizerTest, TheTestSaysWhatFailed) {
    CFatalLog::Instance().Expect(L"No sound can be played.");
    environment_.audioDriver = "pulseaudio";
    api_.failingDrivers = {"pulseaudio"};
    EXPECT_EQ(Make().Test(), L"No sound can be played.\npulseaudio: The audio driver does not start.");
    CFatalLog::Instance().Expect(L"No sound font is found.");
    environment_.soundFont = folder_ / "missing.sf2";
    EXPECT_EQ(Make().Test(), L"No sound font is found.");
}

}  // namespace
