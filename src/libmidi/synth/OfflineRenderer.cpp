#include "libmidi/synth/OfflineRenderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <limits>
#include <string_view>

#include "libmidi/MIDIPortContainer.h"
#include "libmidi/synth/SoundFontFile.h"

namespace LibMidi {

namespace {

constexpr std::uint32_t kFramesPerMs = OfflineRenderer::kSampleRate / 1000;
constexpr std::size_t kBlockFrames = 4096;
constexpr std::uint32_t kBytesPerSample = 2;
constexpr std::uint32_t kWaveHeaderSize = 44;
constexpr float kFullScale = 32767.0F;

void Append(std::vector<char>& bytes, std::uint32_t value, int size) {
    for (int index = 0; index < size; ++index) {
        bytes.push_back(static_cast<char>(value >> (8 * index) & 0xFF));
    }
}

void Append(std::vector<char>& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

}  // namespace

OfflineRenderer::OfflineRenderer(const std::filesystem::path& soundFont, const SynthSettings& settings)
    : device_(SystemSynthApi()) {
    NK::CString reason = CheckSoundFont(soundFont);
    device_.SetSound({.soundFont = {},
                      .audioDriver = {},
                      .audioFile = {},
                      .latencyFrames = 0,
                      .gain = settings.gain,
                      .reverb = settings.reverb,
                      .chorus = settings.chorus});
    if (!reason.IsEmpty() || !device_.LoadFont(soundFont.native(), reason)) {
        throw CMIDIException(reason.c_str());
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

bool WriteWaveFile(const std::filesystem::path& path, const std::vector<float>& samples, std::uint32_t sampleRate) {
    if (samples.size() > (std::numeric_limits<std::uint32_t>::max() - kWaveHeaderSize) / kBytesPerSample) {
        return false;
    }
    const auto dataSize = static_cast<std::uint32_t>(samples.size() * kBytesPerSample);
    constexpr std::uint32_t frameSize = kBytesPerSample * OfflineRenderer::kChannels;
    std::vector<char> bytes;
    bytes.reserve(kWaveHeaderSize + dataSize);
    Append(bytes, "RIFF");
    Append(bytes, kWaveHeaderSize - 8 + dataSize, 4);
    Append(bytes, "WAVEfmt ");
    Append(bytes, 16, 4);  // size of the format chunk
    Append(bytes, 1, 2);   // PCM
    Append(bytes, OfflineRenderer::kChannels, 2);
    Append(bytes, sampleRate, 4);
    Append(bytes, sampleRate * frameSize, 4);
    Append(bytes, frameSize, 2);
    Append(bytes, kBytesPerSample * 8, 2);
    Append(bytes, "data");
    Append(bytes, dataSize, 4);
    for (const float sample : samples) {
        const float scaled = std::clamp(sample, -1.0F, 1.0F) * kFullScale;
        Append(bytes, static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(scaled))), 2);
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file.good();
}

}  // namespace LibMidi
