#include "render/RenderedSound.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "libmidi/synth/WaveFile.h"
#include "nk/nk_atomic_save.h"
#include "nk/nk_file_failure.h"

namespace Kivora {

namespace {

constexpr std::uint32_t kWindowMs = 100;
constexpr int kMostTailWindows = 300;
constexpr float kSilence = 1.0F / 65536;  // half of the smallest sample

/// Renders one window after the other, so that no more than one is kept.
class SoundWriter {
public:
    SoundWriter(NK::CFile& file, LibMidi::OfflineRenderer& renderer)
        : wave_(file, LibMidi::OfflineRenderer::kSampleRate), renderer_(renderer) {}

    void Take(const LibMidi::CapturedEvent& event) {
        while (isWhole_ && event.time >= begin_ + kWindowMs) {
            RenderWindow();
        }
        pending_.push_back(LibMidi::MIDIEvent::FromMessage(event.message, event.time - begin_));
    }

    bool Finish() {
        for (int count = 0; isWhole_ && count < kMostTailWindows && (RenderWindow() || count == 0); ++count) {
        }
        return isWhole_ && wave_.Finish();
    }

private:
    /// Whether anything sounds in it.
    bool RenderWindow() {
        const std::vector<float> samples = renderer_.Render(pending_, kWindowMs);
        pending_.clear();
        begin_ += kWindowMs;
        isWhole_ = wave_.Write(samples);
        return std::any_of(samples.begin(), samples.end(), [](float sample) { return std::abs(sample) >= kSilence; });
    }

    LibMidi::WaveWriter wave_;
    LibMidi::OfflineRenderer& renderer_;
    std::vector<LibMidi::MIDIEvent> pending_;  ///< of the window that begins now
    std::uint32_t begin_ = 0;                  ///< ms
    bool isWhole_ = true;
};

}  // namespace

bool SaveRenderedSound(const LibMidi::CaptureStore::View& captured, LibMidi::OfflineRenderer& renderer,
                       const NK::CString& path) {
    NK::ForgetFileFailure();
    return NK::SaveAtomically(path, [&](NK::CFile& file) {
        SoundWriter sound(file, renderer);
        captured.Visit(0, [&sound](const LibMidi::CapturedEvent& event) { sound.Take(event); });
        return sound.Finish();
    });
}

}  // namespace Kivora
