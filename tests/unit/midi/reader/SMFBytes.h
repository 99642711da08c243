// Bytes of MIDI files, put together by hand.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

namespace KivoraTest {

inline std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) {
        bytes += static_cast<char>(value);
    }
    return bytes;
}

inline std::string Number(std::uint32_t value, int size) {
    std::string bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

inline std::string Header(std::uint32_t format, std::uint32_t tracks, std::uint32_t division) {
    return "MThd" + Number(6, 4) + Number(format, 2) + Number(tracks, 2) + Number(division, 2);
}

inline std::string Chunk(const std::string& tag, const std::string& content) {
    return tag + Number(static_cast<std::uint32_t>(content.size()), 4) + content;
}

inline const std::string kEnd = Bytes({0, 0xFF, 0x2F, 0});

/// With the end of the track behind the content.
inline std::string Track(const std::string& content) {
    return Chunk("MTrk", content + kEnd);
}

inline constexpr std::int64_t kFirstTrackByte = 14 + 8;  ///< of a file that begins with Header()

}  // namespace KivoraTest
