#include "libmidi/synth/OfflineRenderer.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "libmidi/MIDIPortContainer.h"
#include "libmidi/synth/SoundFontFile.h"

namespace LibMidi {

namespace {

constexpr std::uint32_t kFramesPerMs = OfflineRenderer::kSampleRate / 1000;
constexpr std::size_t kBlockFrames = 4096;

}  // namespace

OfflineRenderer::OfflineRenderer(const std::filesystem::path& soundFont, const SynthSettings& settings)
    : device_(SystemSynthApi()) {
    SynthReason reason = CheckSoundFont(soundFont);
    device_.SetSound({.soundFont = {},
                      .audioDriver = {},
                      .audioFile = {},
                      .latencyFrames = 0,
                      .gain = settings.gain,
                      .reverb = settings.reverb,
                      .chorus = settings.chorus});
    if (!reason.IsEmpty() || !device_.LoadFont(soundFont.native(), reason)) {
        throw CMIDIException(reason.ToText().c_str());
    }
}

std::vector<float> OfflineRenderer::Render(const std::vector<MIDIEvent>& events, std::uint32_t lengthMs) {
    const std::size_t frames = std::size_t{lengthMs} * kFramesPerMs;
    std::vector<float> samples(frames * kChannels);
    std::array<float, kBlockFrames> left;
    std::array<float, kBlockFrames> right;
    std::size_t done = 0;
    const auto renderUntil = [&](std::size_t end) {
        while (done < end) {
            const std::size_t count = std::min(end - done, kBlockFrames);
            device_.Render(left.data(), right.data(), static_cast<int>(count));
            for (std::size_t index = 0; index < count; ++index) {
                samples[(done + index) * kChannels] = left[index];
                samples[(done + index) * kChannels + 1] = right[index];
            }
            done += count;
        }
    };
    for (const MIDIEvent& event : events) {
        if (event.time >= lengthMs) {
            break;
        }
        renderUntil(std::size_t{event.time} * kFramesPerMs);
        device_.Send(event);
    }
    renderUntil(frames);
    return samples;
}

}  // namespace LibMidi
