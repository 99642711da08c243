#include "render/RenderedSound.h"

#include <gtest/gtest.h>

#include "engine/takes/RecordedTrack.h"
#include "midi/reader/SMFReader.h"
#include "nk/nk_file_failure.h"
#include "support/Files.h"
#include "support/Pitch.h"
#include "support/TinySoundFont.h"
#include "support/WaveFile.h"
#include "unit/render/RenderRig.h"

using namespace KivoraTest;

namespace {

class RenderedSound : public testing::Test {
protected:
    RenderedSound() { WriteFileBytes(folder / "tiny.sf2", MakeTinySoundFont()); }

    bool Save(const LibMidi::CaptureStore::View& captured, const std::string& name) {
        LibMidi::OfflineRenderer renderer(folder / "tiny.sf2");
        return Kivora::SaveRenderedSound(captured, renderer, GetPath(name));
    }
    NK::CString GetPath(const std::string& name) const { return NK::CString::FromUtf8((folder / name).string()); }
    static LibMidi::CaptureStore::View Play(const Piece& piece) {
        RenderRig rig;
        return rig.Play(piece);
    }

    CTemporaryFolder folder;
};

}  // namespace

TEST_F(RenderedSound, TwoRendersAreTheSameToTheByte) {
    const Piece piece = Piece().Note(0, 60).Note(333, 64).Off(700, 60).Off(1200, 64);
    ASSERT_TRUE(Save(Play(piece), "a.wav"));
    ASSERT_TRUE(Save(Play(piece), "b.wav"));
    const std::string bytes = ReadFileBytes(folder / "a.wav");
    EXPECT_EQ(bytes, ReadFileBytes(folder / "b.wav"));
    EXPECT_GT(bytes.size(), 48000U * 4);
}

TEST_F(RenderedSound, BeginsWithTheFileAndEndsWhenNothingSounds) {
    ASSERT_TRUE(Save(Play(Piece().Note(1000, 60).Off(2000, 60)), "a.wav"));
    const auto wave = ReadWaveFile(folder / "a.wav");
    ASSERT_EQ(wave.sampleRate, 48000U);
    ASSERT_GT(wave.samples.size(), 2U * 48000 * 2);
    const auto second = wave.samples.begin() + 2 * 48000;
    EXPECT_EQ(GetPeak({wave.samples.begin(), second}), 0.0F);
    EXPECT_GT(GetPeak({second, second + 2 * 48000}), 0.01F);
    EXPECT_EQ(GetPeak({wave.samples.end() - 2 * 4800, wave.samples.end()}), 0.0F) << "the last tenth of a second";
    EXPECT_NE(GetPeak({wave.samples.end() - 2 * 9600, wave.samples.end()}), 0.0F) << "the one before it";
}

TEST_F(RenderedSound, AFolderThatIsMissingIsTold) {
    EXPECT_FALSE(Save(Play(Piece().Note(0, 60).Off(10, 60)), "missing/a.wav"));
    EXPECT_NE(NK::GetFileFailure().error, 0);
}

TEST_F(RenderedSound, AsATrackItKeepsItsTimes) {
    const auto captured = Play(Piece().Note(3000, 60).Off(3500, 60));
    ASSERT_TRUE(Kivora::SaveRecordedTrack(captured, GetPath("a.mid"), Kivora::TrackBegin::kCapture));
    ASSERT_TRUE(Kivora::SaveRecordedTrack(Play(Piece().Note(3000, 60).Off(3500, 60)), GetPath("b.mid"),
                                          Kivora::TrackBegin::kCapture));
    EXPECT_EQ(ReadFileBytes(folder / "a.mid"), ReadFileBytes(folder / "b.mid"));
    const auto read = NK::MIDI::ReadSMFFile(GetPath("a.mid"));
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->damage);
    std::vector<std::int64_t> times;
    for (const NK::MIDI::SMFEvent& event : read->events) {
        if (event.message.status <= 0x90) {
            times.push_back(event.timeUs);
        }
    }
    EXPECT_EQ(times, (std::vector<std::int64_t>{3000000, 3500000}));
}
