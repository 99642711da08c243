#include "libmidi/synth/OfflineRenderer.h"

#include <gtest/gtest.h>

#include "libmidi/MIDIPortContainer.h"
#include "libmidi/synth/SynthEnvironment.h"
#include "support/Pitch.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaveFile.h"

namespace {

using KivoraTest::CTemporaryFolder;
using KivoraTest::GetSide;
using namespace LibMidi;

constexpr std::uint8_t kChord[] = {48, 52, 55, 60, 64, 67, 72, 76};

class OfflineRendererTest : public testing::Test {
protected:
    OfflineRendererTest() { KivoraTest::WriteBytes(font_, KivoraTest::MakeTinySoundFont()); }

    CTemporaryFolder folder_;
    const std::filesystem::path font_ = folder_ / "tiny.sf2";
};

TEST_F(OfflineRendererTest, GivesAsMuchSoundAsAskedFor) {
    OfflineRenderer renderer(font_);
    EXPECT_EQ(renderer.Render({}, 0).size(), 0U);
    EXPECT_EQ(renderer.Render({}, 1001).size(), 1001U * 48 * 2);
    EXPECT_LT(KivoraTest::GetPeak(renderer.Render({}, 100)), 0.0001F);
}

TEST_F(OfflineRendererTest, PlaysEveryEventAtItsTime) {
    OfflineRenderer renderer(font_);
    const auto samples = renderer.Render(
        {NoteEvent(500, 0, 69, 127, 0x90), NoteEvent(700, 0, 69, 0, 0x80), NoteEvent(1000, 0, 69, 127, 0x90)}, 1000);
    const auto left = GetSide(samples, 0);
    const std::size_t onset = KivoraTest::FindOnset(left, 0.001F);
    EXPECT_GE(onset, 24000U);
    EXPECT_LE(onset, 24000U + 480);
    EXPECT_NEAR(KivoraTest::EstimatePitch(left, 26400, 4800, 48000.0), 441.0, 0.5);
}

TEST_F(OfflineRendererTest, ACallGoesOnWhereTheLastOneEnded) {
    OfflineRenderer renderer(font_);
    renderer.Render({NoteEvent(0, 0, 69, 127, 0x90)}, 100);
    EXPECT_GT(KivoraTest::GetPeak(renderer.Render({}, 100)), 0.01F);
    renderer.Render({MIDIEvent(0, 0xFF, 0, 0)}, 1000);
    EXPECT_LT(KivoraTest::GetPeak(renderer.Render({}, 100)), 0.001F);
}

TEST_F(OfflineRendererTest, AFontThatCannotBePlayedThrowsTheReason) {
    try {
        OfflineRenderer renderer(folder_ / "missing.sf2");
        FAIL() << "nothing was thrown";
    } catch (const CMIDIException& failure) {
        EXPECT_STREQ(failure.GetMessage(), L"The sound font cannot be read.");
    }
}

TEST_F(OfflineRendererTest, LoudChordsOfEveryProgramOfTheSystemsFontStayBelowFullScale) {
    const std::filesystem::path font = FindSoundFont(SynthEnvironment::FromProcess());
    ASSERT_FALSE(font.empty()) << "no General MIDI sound font is installed";
    OfflineRenderer renderer(font);
    for (std::uint8_t program = 0; program < 128; ++program) {
        std::vector<MIDIEvent> events{MIDIEvent(0, 0xFF, 0, 0), PatchEvent(0, 0, program)};
        for (const std::uint8_t note : kChord) {
            events.push_back(NoteEvent(0, 0, note, 127, 0x90));
        }
        const float peak = KivoraTest::GetPeak(renderer.Render(events, 300));
        EXPECT_LE(peak, 0.96F) << int{program};
    }
}

TEST_F(OfflineRendererTest, APianoChordNeedsNoLimiter) {
    const std::filesystem::path font = FindSoundFont(SynthEnvironment::FromProcess());
    ASSERT_FALSE(font.empty()) << "no General MIDI sound font is installed";
    OfflineRenderer renderer(font);
    std::vector<MIDIEvent> events;
    for (const std::uint8_t note : kChord) {
        events.push_back(NoteEvent(0, 0, note, 127, 0x90));
    }
    const float peak = KivoraTest::GetPeak(renderer.Render(events, 1000));
    EXPECT_GT(peak, 0.2F);
    EXPECT_LT(peak, PeakLimiter::kCeiling);
}

}  // namespace
