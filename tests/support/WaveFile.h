// Reads back the sound files that a test had written.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace KivoraTest {

struct WaveFile {
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::vector<float> samples;  ///< the channels in turn, -1..1
};

/// Reads 16-bit PCM. Throws std::runtime_error on anything else.
inline WaveFile ReadWaveFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto read = [&](std::size_t at, std::size_t size) {
        std::uint32_t value = 0;
        for (std::size_t index = size; index-- > 0;) {
            value = value << 8 | static_cast<std::uint8_t>(bytes.at(at + index));
        }
        return value;
    };
    if (bytes.size() < 12 || bytes.compare(0, 4, "RIFF") != 0 || bytes.compare(8, 4, "WAVE") != 0) {
        throw std::runtime_error("no RIFF WAVE file: " + path.string());
    }
    WaveFile wave;
    for (std::size_t at = 12; at + 8 <= bytes.size();) {
        const std::size_t size = read(at + 4, 4);
        const std::size_t data = at + 8;
        if (bytes.compare(at, 4, "fmt ") == 0) {
            wave.channels = read(data + 2, 2);
            wave.sampleRate = read(data + 4, 4);
            if (read(data + 14, 2) != 16) {
                throw std::runtime_error("not of 16 bits: " + path.string());
            }
        } else if (bytes.compare(at, 4, "data") == 0) {
            for (std::size_t index = data; index + 2 <= data + size && index + 2 <= bytes.size(); index += 2) {
                const auto value = static_cast<std::int16_t>(read(index, 2));
                wave.samples.push_back(static_cast<float>(value) / 32768.0F);
            }
        }
        at = data + size + (size & 1);
    }
    return wave;
}

}  // namespace KivoraTest
