#include "midi/reader/SMFReader.h"

#include <algorithm>

#include "midi/reader/ByteCursor.h"
#include "midi/reader/SMFTrackReader.h"
#include "nk/nk_file_content.h"

namespace NK::MIDI {

namespace {

constexpr std::string_view kHeaderTag = "MThd";
constexpr std::string_view kTrackTag = "MTrk";
constexpr std::size_t kChunkHeadSize = 8;
constexpr std::uint32_t kHeaderSize = 6;
constexpr std::uint32_t kSeveralTracks = 1;
constexpr std::uint32_t kMostTracks = 0xFFFF;

/// Reads chunk by chunk.
class FileReader {
public:
    explicit FileReader(std::string_view bytes) : bytes_(bytes, 0) {}

    SMFContent Read() {
        if (ReadHeader()) {
            ReadTracks();
            SetTimes();
        }
        return std::move(content_);
    }

private:
    bool Fail(SMFDefect defect, std::int64_t offset) {
        if (!content_.damage) {
            content_.damage = SMFDamage{defect, offset};
        }
        return false;
    }

    bool ReadHeader() {
        if (bytes_.GetLeft() < kChunkHeadSize + kHeaderSize || bytes_.TakeBytes(kHeaderTag.size()) != kHeaderTag) {
            return Fail(SMFDefect::kNoHeader, 0);
        }
        const std::uint32_t size = bytes_.TakeNumber(4);
        const std::int64_t start = bytes_.GetOffset();
        if (size < kHeaderSize) {
            return Fail(SMFDefect::kNoHeader, start);
        }
        const std::uint32_t format = bytes_.TakeNumber(2);
        const std::uint32_t announced = bytes_.TakeNumber(2);
        const auto map = TempoMap::FromDivision(static_cast<std::uint16_t>(bytes_.TakeNumber(2)));
        if (format > kSeveralTracks) {
            return Fail(SMFDefect::kUnknownFormat, start);
        }
        if (!map) {
            return Fail(SMFDefect::kBadDivision, start + 4);
        }
        content_.format = static_cast<int>(format);
        content_.tempoMap = *map;
        announced_ = announced;
        bytes_.TakeBytes(std::min<std::size_t>(size - kHeaderSize, bytes_.GetLeft()));
        return true;
    }

    void ReadTracks() {
        while (bytes_.GetLeft() >= kChunkHeadSize && content_.trackCount < kMostTracks) {
            const bool isTrack = bytes_.TakeBytes(kTrackTag.size()) == kTrackTag;
            const std::uint32_t size = bytes_.TakeNumber(4);
            const bool isWhole = size <= bytes_.GetLeft();
            const std::int64_t offset = bytes_.GetOffset();
            const ByteCursor chunk(bytes_.TakeBytes(isWhole ? size : bytes_.GetLeft()), offset);
            if (isTrack) {
                ReadTrack(chunk, isWhole);
            }
        }
        if (content_.trackCount < announced_) {
            Fail(SMFDefect::kTrackMissing, bytes_.GetOffset() + static_cast<std::int64_t>(bytes_.GetLeft()));
        }
    }

    void ReadTrack(ByteCursor bytes, bool isWhole) {
        const auto number = static_cast<std::uint16_t>(content_.trackCount++);
        SMFTrackReader track(bytes, number, {content_, tempi_});
        if (!isWhole) {
            Fail(SMFDefect::kFileCutShort, bytes.GetOffset() + static_cast<std::int64_t>(bytes.GetLeft()));
        }
        track.Read();
        endTick_ = std::max(endTick_, track.GetTick());
    }

    void SetTimes() {
        const auto isEarlier = [](const auto& a, const auto& b) { return a.tick < b.tick; };
        std::stable_sort(tempi_.begin(), tempi_.end(), isEarlier);
        for (const TempoMap::Change& tempo : tempi_) {
            content_.tempoMap.Add(tempo);
        }
        const auto setTimes = [&](auto& list) {
            std::stable_sort(list.begin(), list.end(), isEarlier);
            for (auto& entry : list) {
                entry.timeUs = content_.tempoMap.GetTimeUs(entry.tick);
            }
        };
        setTimes(content_.events);
        setTimes(content_.texts);
        content_.lengthUs = content_.tempoMap.GetTimeUs(endTick_);
    }

    ByteCursor bytes_;
    SMFContent content_;
    std::vector<TempoMap::Change> tempi_;
    std::uint32_t announced_ = 0;
    std::uint32_t endTick_ = 0;
};

}  // namespace

SMFContent ReadSMF(std::string_view bytes) {
    return FileReader(bytes).Read();
}

std::optional<SMFContent> ReadSMFFile(const CString& path) {
    const std::optional<std::string> bytes = ReadFileContent(path, kMaxSMFBytes);
    return bytes ? std::optional(ReadSMF(*bytes)) : std::nullopt;
}

}  // namespace NK::MIDI
