#include "libmidi/synth/WaveFile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace LibMidi {

namespace {

constexpr std::uint32_t kBytesPerSample = 2;
constexpr std::uint32_t kHeadSize = 44;
constexpr std::uint32_t kRiffSizeAt = 4;
constexpr std::uint32_t kDataSizeAt = 40;
constexpr float kFullScale = 32767.0F;

/// Low byte first.
void Append(std::string& bytes, std::uint32_t value, int size) {
    for (int index = 0; index < size; ++index) {
        bytes += static_cast<char>(value >> (8 * index) & 0xFF);
    }
}

bool Write(NK::CFile& file, std::string_view bytes) {
    return file.Write(bytes.data(), 1, bytes.size()) == bytes.size();
}

bool WriteSize(NK::CFile& file, std::int64_t position, std::uint32_t size) {
    std::string bytes;
    Append(bytes, size, 4);
    return file.SetPosition(position) && Write(file, bytes);
}

/// With sizes of nothing.
std::string MakeHead(std::uint32_t sampleRate) {
    constexpr std::uint32_t frameSize = kBytesPerSample * WaveWriter::kChannels;
    std::string bytes = "RIFF";
    Append(bytes, 0, 4);
    bytes += "WAVEfmt ";
    Append(bytes, 16, 4);  // size of the format chunk
    Append(bytes, 1, 2);   // PCM
    Append(bytes, WaveWriter::kChannels, 2);
    Append(bytes, sampleRate, 4);
    Append(bytes, sampleRate * frameSize, 4);
    Append(bytes, frameSize, 2);
    Append(bytes, kBytesPerSample * 8, 2);
    bytes += "data";
    Append(bytes, 0, 4);
    return bytes;
}

}  // namespace

WaveWriter::WaveWriter(NK::CFile& file, std::uint32_t sampleRate)
    : file_(file), start_(file.GetPosition()), isWhole_(LibMidi::Write(file, MakeHead(sampleRate))) {
}

bool WaveWriter::Write(const std::vector<float>& samples) {
    isWhole_ = isWhole_ &&
               samples.size() <= (std::numeric_limits<std::uint32_t>::max() - kHeadSize - dataSize_) / kBytesPerSample;
    if (!isWhole_) {
        return false;
    }
    std::string bytes;
    bytes.reserve(samples.size() * kBytesPerSample);
    for (const float sample : samples) {
        const float scaled = std::clamp(sample, -1.0F, 1.0F) * kFullScale;
        Append(bytes, static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(scaled))), kBytesPerSample);
    }
    dataSize_ += static_cast<std::uint32_t>(bytes.size());
    isWhole_ = LibMidi::Write(file_, bytes);
    return isWhole_;
}

bool WaveWriter::Finish() {
    isWhole_ = isWhole_ && WriteSize(file_, start_ + kRiffSizeAt, kHeadSize - 8 + dataSize_) &&
               WriteSize(file_, start_ + kDataSizeAt, dataSize_) && file_.SeekToEnd();
    return isWhole_;
}

}  // namespace LibMidi
