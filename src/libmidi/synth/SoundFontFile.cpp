#include "libmidi/synth/SoundFontFile.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

#include "nk/nk_translation_mark.h"

namespace LibMidi {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kChunkHeaderSize = 8;
constexpr std::uint64_t kFormTypeSize = 4;
constexpr std::uint64_t kVersionSize = 4;
constexpr std::uint32_t kInstrumentGenerator = 41;
constexpr std::uint32_t kSampleGenerator = 53;

/// A chunk of the file: four letters and where its data stand.
struct Chunk {
    std::array<char, 4> id{};
    std::uint64_t begin = 0;
    std::uint64_t size = 0;

    bool Is(std::string_view name) const { return std::string_view(id.data(), id.size()) == name; }
    std::uint64_t GetEnd() const { return begin + size; }
};

/// One of the tables of the list pdta: records of one size, the last one a terminator.
struct Table {
    const char* name;
    std::uint32_t recordSize;
    std::uint32_t minRecords;
};
constexpr std::array<Table, 9> kTables = {{{"phdr", 38, 2},
                                           {"pbag", 4, 1},
                                           {"pmod", 10, 0},
                                           {"pgen", 4, 1},
                                           {"inst", 22, 2},
                                           {"ibag", 4, 1},
                                           {"imod", 10, 0},
                                           {"igen", 4, 1},
                                           {"shdr", 46, 2}}};
/// Records count each other in 16 bits.
constexpr std::uint64_t kMaxRecords = 65536;
enum TableIndex : std::size_t { kPhdr, kPbag, kPmod, kPgen, kInst, kIbag, kImod, kIgen, kShdr };

/// A field of 16 bits in each record of one table that counts up inside another.
struct Link {
    TableIndex from;
    std::uint32_t offset;
    TableIndex to;
};
constexpr std::array<Link, 6> kLinks = {{{kPhdr, 24, kPbag},
                                         {kPbag, 0, kPgen},
                                         {kPbag, 2, kPmod},
                                         {kInst, 20, kIbag},
                                         {kIbag, 0, kIgen},
                                         {kIbag, 2, kImod}}};

std::uint32_t ReadUint32(const char* bytes) {
    std::uint32_t value = 0;
    for (int index = 3; index >= 0; --index) {
        value = (value << 8) | static_cast<std::uint8_t>(bytes[index]);
    }
    return value;
}

std::uint32_t ReadUint16(const char* bytes) {
    return static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[0]) | static_cast<std::uint8_t>(bytes[1]) << 8);
}

class Checker {
public:
    explicit Checker(std::istream& stream) : stream_(stream) {
        stream_.seekg(0, std::ios::end);
        const std::streamoff end = stream_.tellg();
        readable_ = stream_.good() && end >= 0;
        size_ = readable_ ? static_cast<std::uint64_t>(end) : 0;
    }

    bool IsReadable() const { return readable_; }

    bool IsSoundFont() {
        std::array<char, kChunkHeaderSize + kFormTypeSize> header{};
        const std::string_view letters(header.data(), header.size());
        return Read(0, header.data(), header.size()) && letters.starts_with("RIFF") && letters.ends_with("sfbk");
    }

    bool IsWhole() {
        Chunk riff;
        if (!ReadChunk(0, size_, riff) || riff.GetEnd() != size_) {
            return false;
        }
        std::uint64_t position = riff.begin + kFormTypeSize;
        constexpr std::array<const char*, 3> kListNames = {"INFO", "sdta", "pdta"};
        std::array<Chunk, kListNames.size()> lists;
        for (std::size_t index = 0; index < kListNames.size(); ++index) {
            Chunk list;
            if (!ReadList(position, riff.GetEnd(), kListNames[index], list)) {
                return false;
            }
            position = NextChunk(list);
            lists[index] = list;
        }
        return CheckInfo(lists[0]) && CheckSamples(lists[1]) && CheckTables(lists[2]);
    }

private:
    bool Read(std::uint64_t position, char* out, std::size_t size) {
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(position));
        stream_.read(out, static_cast<std::streamsize>(size));
        return stream_.gcount() == static_cast<std::streamsize>(size);
    }

    /// Chunks begin at even offsets (RIFF).
    static std::uint64_t NextChunk(const Chunk& chunk) { return chunk.GetEnd() + (chunk.size & 1); }

    bool ReadChunk(std::uint64_t position, std::uint64_t end, Chunk& out) {
        std::array<char, kChunkHeaderSize> header{};
        if (position > end || end - position < kChunkHeaderSize || !Read(position, header.data(), header.size())) {
            return false;
        }
        std::memcpy(out.id.data(), header.data(), out.id.size());
        out.begin = position + kChunkHeaderSize;
        out.size = ReadUint32(header.data() + 4);
        return out.size <= end - out.begin;
    }

    bool ReadList(std::uint64_t position, std::uint64_t end, const char* name, Chunk& out) {
        std::array<char, kFormTypeSize> type{};
        return ReadChunk(position, end, out) && out.Is("LIST") && out.size >= kFormTypeSize &&
               Read(out.begin, type.data(), type.size()) && std::string_view(type.data(), type.size()) == name;
    }

    bool CheckInfo(const Chunk& list) {
        bool hasVersion = false;
        for (std::uint64_t position = list.begin + kFormTypeSize; position < list.GetEnd();) {
            Chunk chunk;
            if (!ReadChunk(position, list.GetEnd(), chunk)) {
                return false;
            }
            std::array<char, kVersionSize> version{};
            if (chunk.Is("ifil")) {
                hasVersion = chunk.size == kVersionSize && Read(chunk.begin, version.data(), version.size()) &&
                             (version[0] == 2 || version[0] == 3) && version[1] == 0;
            }
            position = NextChunk(chunk);
        }
        return hasVersion;
    }

    bool CheckSamples(const Chunk& list) {
        Chunk samples;
        return ReadChunk(list.begin + kFormTypeSize, list.GetEnd(), samples) && samples.Is("smpl");
    }

    bool CheckTables(const Chunk& list) {
        std::array<std::vector<char>, kTables.size()> contents;
        std::uint64_t position = list.begin + kFormTypeSize;
        for (std::size_t index = 0; index < kTables.size(); ++index) {
            const Table& table = kTables[index];
            Chunk chunk;
            if (!ReadChunk(position, list.GetEnd(), chunk) || !chunk.Is(table.name) ||
                chunk.size % table.recordSize != 0) {
                return false;
            }
            const std::uint64_t records = chunk.size / table.recordSize;
            if (records < table.minRecords || records > kMaxRecords) {
                return false;
            }
            contents[index].resize(static_cast<std::size_t>(chunk.size));
            if (!Read(chunk.begin, contents[index].data(), contents[index].size())) {
                return false;
            }
            position = NextChunk(chunk);
        }
        for (const Link& link : kLinks) {
            if (!CheckLink(contents[link.from], kTables[link.from].recordSize, link.offset,
                           contents[link.to].size() / kTables[link.to].recordSize)) {
                return false;
            }
        }
        // The last record of each table only ends it.
        const std::size_t instruments = contents[kInst].size() / kTables[kInst].recordSize - 1;
        const std::size_t samples = contents[kShdr].size() / kTables[kShdr].recordSize - 1;
        return CheckReferences(contents[kPgen], kInstrumentGenerator, instruments) &&
               CheckReferences(contents[kIgen], kSampleGenerator, samples);
    }

    /// Generator records are pairs of 16 bits: a number and, for those that refer, an index below `count`.
    static bool CheckReferences(const std::vector<char>& generators, std::uint32_t number, std::size_t count) {
        for (std::size_t at = 0; at < generators.size(); at += 4) {
            if (ReadUint16(generators.data() + at) == number && ReadUint16(generators.data() + at + 2) >= count) {
                return false;
            }
        }
        return true;
    }

    static bool CheckLink(const std::vector<char>& records, std::uint32_t recordSize, std::uint32_t offset,
                          std::size_t count) {
        std::uint32_t previous = 0;
        for (std::size_t at = offset; at < records.size(); at += recordSize) {
            const std::uint32_t value = ReadUint16(records.data() + at);
            if (value < previous || value > count) {
                return false;
            }
            previous = value;
        }
        return true;
    }

    std::istream& stream_;
    std::uint64_t size_ = 0;
    bool readable_ = false;
};

}  // namespace

SynthReason CheckSoundFont(std::istream& stream) {
    Checker checker(stream);
    if (!checker.IsReadable()) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound font cannot be read."));
    }
    if (!checker.IsSoundFont()) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "The file is no sound font."));
    }
    return checker.IsWhole() ? SynthReason() : SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound font is damaged."));
}

SynthReason CheckSoundFont(const fs::path& path) {
    std::error_code ignored;
    std::ifstream file;
    if (fs::is_regular_file(path, ignored)) {
        file.open(path, std::ios::binary);
    } else {
        file.setstate(std::ios::failbit);
    }
    return CheckSoundFont(file);
}

}  // namespace LibMidi
