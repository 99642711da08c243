// A sound font of a few kilobytes: one program, a sine.
#pragma once

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>

namespace KivoraTest {

namespace TinySoundFontDetail {

inline std::string Number(std::uint32_t value, int bytes) {
    std::string text;
    for (int index = 0; index < bytes; ++index) {
        text += static_cast<char>(value >> (8 * index) & 0xFF);
    }
    return text;
}
inline std::string Name(std::string name, std::size_t size) {
    name.resize(size);
    return name;
}
inline std::string Chunk(const std::string& id, const std::string& data) {
    return id + Number(static_cast<std::uint32_t>(data.size()), 4) + data + std::string(data.size() % 2, '\0');
}
inline std::string Samples() {
    constexpr int kCount = 1000;  // ten turns of 441 Hz at 44,100 Hz
    constexpr int kPeriod = 100;
    constexpr double kLevel = 16000.0;
    std::string data;
    for (int index = 0; index < kCount; ++index) {
        const double value = kLevel * std::sin(2.0 * std::numbers::pi * index / kPeriod);
        data += Number(static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(value))), 2);
    }
    return data + std::string(92, '\0');  // 46 zero samples end a sample
}

}  // namespace TinySoundFontDetail

/// The bytes of a SoundFont 2.01 bank whose program 0 is a looped sine of 441 Hz on note 69 (A4, 4 cents sharp).
inline std::string MakeTinySoundFont() {
    using namespace TinySoundFontDetail;
    const std::string info = "INFO" + Chunk("ifil", Number(2, 2) + Number(1, 2)) + Chunk("isng", Name("EMU8000", 8)) +
                             Chunk("INAM", Name("Tiny", 6));
    const std::string sdta = "sdta" + Chunk("smpl", Samples());
    const std::string zeros(12, '\0');
    const std::string phdr = Name("Sine", 20) + Number(0, 2) + Number(0, 2) + Number(0, 2) + zeros + Name("EOP", 20) +
                             Number(0, 2) + Number(0, 2) + Number(1, 2) + zeros;
    const std::string pbag = Number(0, 4) + Number(1, 2) + Number(0, 2);
    const std::string mod(10, '\0');
    const std::string pgen = Number(41, 2) + Number(0, 2) + Number(0, 4);  // 41: instrument
    const std::string inst = Name("Sine", 20) + Number(0, 2) + Name("EOI", 20) + Number(1, 2);
    const std::string ibag = Number(0, 4) + Number(2, 2) + Number(0, 2);
    const std::string igen = Number(54, 2) + Number(1, 2) +  // 54: sample modes, looped
                             Number(53, 2) + Number(0, 2) +  // 53: sample
                             Number(0, 4);
    const std::string shdr = Name("Sine", 20) + Number(0, 4) + Number(1000, 4) + Number(100, 4) + Number(900, 4) +
                             Number(44100, 4) + Number(69, 1) + Number(0, 1) + Number(0, 2) + Number(1, 2) +
                             Name("EOS", 46);
    const std::string pdta = "pdta" + Chunk("phdr", phdr) + Chunk("pbag", pbag) + Chunk("pmod", mod) +
                             Chunk("pgen", pgen) + Chunk("inst", inst) + Chunk("ibag", ibag) + Chunk("imod", mod) +
                             Chunk("igen", igen) + Chunk("shdr", shdr);
    return Chunk("RIFF", "sfbk" + Chunk("LIST", info) + Chunk("LIST", sdta) + Chunk("LIST", pdta));
}

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace KivoraTest
