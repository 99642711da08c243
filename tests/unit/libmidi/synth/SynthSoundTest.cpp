// The real FluidSynth with its `file` driver.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "libmidi/synth/SynthApi.h"
#include "libmidi/synth/SynthImpl.h"
#include "libmidi/synth/SynthOutPort.h"
#include "support/AllocationCounter.h"
#include "support/FatalLog.h"
#include "support/Pitch.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaitUntil.h"
#include "support/WaveFile.h"

namespace {

using KivoraTest::CFatalLog;
using KivoraTest::CTemporaryFolder;
using KivoraTest::WaitUntil;
using namespace LibMidi;
using namespace std::chrono_literals;

constexpr double kMiddleC = 261.6256;

class SynthSoundTest : public testing::Test {
protected:
    SynthSoundTest() {
        KivoraTest::WriteBytes(folder_ / "tiny.sf2", KivoraTest::MakeTinySoundFont());
        environment_ = SynthEnvironment::FromProcess();
        environment_.soundFont = folder_ / "tiny.sf2";
        environment_.audioDriver = "file";
        environment_.audioFile = folder_ / "out.wav";
    }
    /// The system's own font, or empty.
    static std::string FindSystemFont() {
        SynthEnvironment environment = SynthEnvironment::FromProcess();
        return FindSoundFont(environment).native();
    }
    std::unique_ptr<SynthOutPort> MakePort() {
        return std::make_unique<SynthOutPort>(std::make_shared<Synthesizer>(SystemSynthApi(), environment_, limits_));
    }
    /// Waits until the driver, which writes in real time, has written so much sound since it was opened.
    void WaitForSound(std::chrono::milliseconds length) {
        const auto bytes = static_cast<std::uintmax_t>(length.count()) * 48 * 4;
        std::error_code ignored;
        EXPECT_TRUE(
            WaitUntil([&] { return std::filesystem::file_size(environment_.audioFile, ignored) + 1 >= bytes + 1; }));
    }

    CTemporaryFolder folder_;
    SynthEnvironment environment_;
    Synthesizer::Limits limits_{.driverStart = 60s, .fontLoad = 60s, .apply = 60s, .close = 60s};
};

TEST_F(SynthSoundTest, Note60OfTheSystemsFontIsMiddleC) {
    environment_.soundFont = FindSystemFont();
    ASSERT_FALSE(environment_.soundFont.empty()) << "no General MIDI sound font is installed";
    const auto port = MakePort();
    ASSERT_EQ(port->Open(), kSuccess);
    const MIDIEvent events[] = {PatchEvent(0, 0, 0), NoteEvent(0, 0, 60, 100, 0x90)};
    ASSERT_EQ(port->Write(events, 2), kSuccess);
    WaitForSound(1200ms);
    ASSERT_EQ(port->Close(), kSuccess);
    const auto wave = KivoraTest::ReadWaveFile(environment_.audioFile);
    EXPECT_EQ(wave.channels, 2U);
    EXPECT_EQ(wave.sampleRate, 48000U);
    const auto left = KivoraTest::GetSide(wave.samples, 0);
    const std::size_t onset = KivoraTest::FindOnset(left, 0.005F);
    const double pitch = KivoraTest::EstimatePitch(left, onset + 4800, 9600, wave.sampleRate);
    EXPECT_NEAR(KivoraTest::GetCents(pitch, kMiddleC), 0.0, 10.0) << pitch << " Hz";
    const float peak = KivoraTest::GetPeak(wave.samples);
    EXPECT_GT(peak, 0.02F);
    EXPECT_LT(peak, 0.99F);
}

TEST_F(SynthSoundTest, TheOwnFontSoundsAtItsPitch) {
    const auto port = MakePort();
    ASSERT_EQ(port->Open(), kSuccess);
    const NoteEvent note(0, 0, 69, 100, 0x90);
    ASSERT_EQ(port->Write(&note, 1), kSuccess);
    WaitForSound(500ms);
    ASSERT_EQ(port->Close(), kSuccess);
    const auto left = KivoraTest::GetSide(KivoraTest::ReadWaveFile(environment_.audioFile).samples, 0);
    const std::size_t onset = KivoraTest::FindOnset(left, 0.01F);
    EXPECT_NEAR(KivoraTest::EstimatePitch(left, onset + 480, 4800, 48000.0), 441.0, 0.5);
}

TEST_F(SynthSoundTest, AFontThatIsBrokenGives6AndAReason) {
    const std::string font = KivoraTest::MakeTinySoundFont();
    for (const std::size_t length : {font.size() / 2, font.size() - 1, std::size_t{20}}) {
        CFatalLog::Instance().Expect(L"The sound font is damaged.");
        KivoraTest::WriteBytes(environment_.soundFont, font.substr(0, length));
        const auto port = MakePort();
        EXPECT_EQ(port->Open(), kDeviceError);
        EXPECT_NE(port->GetLastError(), L"");
    }
    EXPECT_FALSE(std::filesystem::exists(environment_.audioFile));
}

TEST_F(SynthSoundTest, AFileThatCannotBeWrittenGives6AndFluidSynthsReason) {
    CFatalLog::Instance().Expect(L"file: ");
    environment_.audioFile = folder_ / "missing/out.wav";
    const auto port = MakePort();
    EXPECT_EQ(port->Open(), kDeviceError);
    EXPECT_GT(port->GetLastError().GetLength(), NK::CString(L"No sound can be played.\nfile: ").GetLength());
}

TEST_F(SynthSoundTest, ADriverThatDoesNotExistGives6) {
    CFatalLog::Instance().Expect(L"FluidSynth has no such audio driver here.");
    environment_.audioDriver = "nonesuch";
    EXPECT_EQ(MakePort()->Open(), kDeviceError);
}

TEST_F(SynthSoundTest, AWarmWriteAllocatesNothing) {
    const auto port = MakePort();
    ASSERT_EQ(port->Open(), kSuccess);
    const MIDIEvent events[] = {NoteEvent(0, 0, 60, 100, 0x90), CtrlEvent(0, 0, 7, 100), PatchEvent(0, 0, 0),
                                NoteEvent(0, 0, 60, 0, 0x80)};
    ASSERT_EQ(port->Write(events, 4), kSuccess);
    const auto before = KivoraTest::GetAllocationCount();
    for (int round = 0; round < 20; ++round) {
        port->Write(events, 4);
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
}

TEST_F(SynthSoundTest, OpeningAndClosingOverAndOverLeavesNothingBehind) {
    const auto port = MakePort();
    const NoteEvent note(0, 0, 60, 100, 0x90);
    for (int round = 0; round < 200; ++round) {
        ASSERT_EQ(port->Open(), kSuccess) << round;
        ASSERT_EQ(port->Write(&note, 1), kSuccess);
        ASSERT_EQ(port->Close(), kSuccess);
    }
}

TEST_F(SynthSoundTest, ClosingWhileOthersWriteIsSafe) {
    const auto port = MakePort();
    std::atomic<bool> ends{false};
    const auto write = [&](std::uint8_t channel) {
        const MIDIEvent events[] = {NoteEvent(0, channel, 60, 100, 0x90), PatchEvent(0, channel, 1),
                                    NoteEvent(0, channel, 60, 0, 0x80)};
        while (!ends) {
            const Result result = port->Write(events, 3);
            EXPECT_TRUE(result == kSuccess || result == kNotOpen) << result;
            std::this_thread::yield();
        }
    };
    std::thread first(write, std::uint8_t{0});
    std::thread second(write, std::uint8_t{1});
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(port->Open(), kSuccess);
        EXPECT_EQ(port->Close(), kSuccess);
    }
    ends = true;
    first.join();
    second.join();
}

}  // namespace
