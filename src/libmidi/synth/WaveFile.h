// Writing sound files. [owner]
#pragma once

#include <cstdint>
#include <vector>

#include "nk/nk_file.h"

namespace LibMidi {

/// Writes a RIFF WAVE file of 16-bit samples, left and right in turn, piece by piece. Samples beyond -1..1 are cut.
/// Once something could not be written, or the file would pass 4 GB, all further calls return false and write nothing.
/// The file outlives the writer and is the writer's between the calls.
class WaveWriter {
public:
    static constexpr std::uint32_t kChannels = 2;

    /// Writes the head at the file's position.
    WaveWriter(NK::CFile& file, std::uint32_t sampleRate);
    bool Write(const std::vector<float>& samples);
    /// Writes the lengths into the head and leaves the position at the file's end.
    bool Finish();

private:
    NK::CFile& file_;
    const std::int64_t start_;
    std::uint32_t dataSize_ = 0;
    bool isWhole_;
};

}  // namespace LibMidi
