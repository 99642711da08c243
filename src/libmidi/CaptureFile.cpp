#include "libmidi/CaptureFile.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "nk/nk_crc32.h"

namespace LibMidi {

namespace {

constexpr std::string_view kTag = "KivTake2";
constexpr std::string_view kFirstTag = "KivTake1";
constexpr std::size_t kVersionPlace = 7;
constexpr std::size_t kCheckedHeaderSize = 16;
constexpr std::size_t kFirstHeaderSize = 16;

constexpr std::size_t kKindPlace = 4;
constexpr std::size_t kStatusPlace = 5;
constexpr std::size_t kCheckPlace = 8;
constexpr std::uint8_t kEventSign = 'E';
constexpr std::uint8_t kMarkSign = 'T';

constexpr std::size_t kFirstRecordSize = 8;
constexpr std::size_t kFirstStatusPlace = 4;
constexpr std::size_t kFirstCheckPlace = 7;
constexpr std::uint8_t kFirstCheckSeed = 0xA5;

constexpr std::uint32_t kLatestTime = 0x7FFFFFFF;
constexpr std::size_t kRecordsAtOnce = 4096;

void EncodeNumber(std::uint64_t number, std::uint8_t* out, int size) {
    for (int i = size - 1; i >= 0; --i) {
        out[i] = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

std::uint64_t DecodeNumber(const std::uint8_t* bytes, int size) {
    std::uint64_t number = 0;
    for (int i = 0; i < size; ++i) {
        number = number << 8 | bytes[i];
    }
    return number;
}

std::uint32_t GetCheck(const std::uint8_t* record, std::uint32_t number) {
    std::array<std::uint8_t, 4> place;
    EncodeNumber(number, place.data(), 4);
    return NK::ComputeCrc32(record, kCheckPlace, NK::ComputeCrc32(place.data(), place.size()));
}

/// What a record holds. Of a record that is not whole nothing else counts.
struct Record {
    enum class Kind { kEvent, kMark, kZero, kBad } kind = Kind::kBad;
    MIDIEvent event;
};

Record DecodeRecord(const std::uint8_t* record, std::uint32_t number) {
    const auto time = static_cast<std::uint32_t>(DecodeNumber(record, 4));
    const MIDIEvent event(time, record[kStatusPlace], record[kStatusPlace + 1], record[kStatusPlace + 2]);
    if (DecodeNumber(record + kCheckPlace, 4) != GetCheck(record, number)) {
        return {};
    }
    if (record[kKindPlace] == kMarkSign) {
        return {Record::Kind::kMark, event};
    }
    return {record[kKindPlace] == kEventSign ? Record::Kind::kEvent : Record::Kind::kBad, event};
}

Record DecodeFirstRecord(const std::uint8_t* record, std::uint32_t /*number*/) {
    std::uint8_t check = kFirstCheckSeed;
    for (std::size_t i = 0; i < kFirstCheckPlace; ++i) {
        check ^= record[i];
    }
    const auto time = static_cast<std::uint32_t>(DecodeNumber(record, 4));
    const std::uint8_t* const message = record + kFirstStatusPlace;
    return {check == record[kFirstCheckPlace] ? Record::Kind::kEvent : Record::Kind::kBad,
            MIDIEvent(time, message[0], message[1], message[2])};
}

/// How the records of a version stand in the file.
struct Layout {
    std::size_t headerSize;
    std::size_t recordSize;
    Record (*decode)(const std::uint8_t* record, std::uint32_t number);
};
constexpr Layout kLayout{kCaptureHeaderSize, kCaptureRecordSize, &DecodeRecord};
constexpr Layout kFirstLayout{kFirstHeaderSize, kFirstRecordSize, &DecodeFirstRecord};

/// Takes the records one after the other and tells what they come to.
class RecordReader {
public:
    RecordReader(CaptureFileContent& content, const std::function<void(const CapturedEvent&)>& visit)
        : content_(content), visit_(visit) {}

    void Take(Record record) {
        const bool isTimed = record.event.time >= previous_ && record.event.time <= kLatestTime;
        if (record.kind == Record::Kind::kEvent && isTimed &&
            record.event.status >= NK::MIDI::TMIDIMessage::kFirstStatus) {
            content_.missing += undecided_;
            undecided_ = 0;
            previous_ = record.event.time;
            content_.endMs = previous_;
            visit_({previous_, record.event.ToMessage()});
        } else if (record.kind == Record::Kind::kMark && isTimed) {
            content_.endMs = record.event.time;
            ++undecided_;
        } else if (record.kind == Record::Kind::kZero) {
            ++undecided_;
        } else {
            ++content_.missing;
        }
    }

private:
    CaptureFileContent& content_;
    const std::function<void(const CapturedEvent&)>& visit_;
    std::uint32_t previous_ = 0;
    std::uint32_t undecided_ = 0;  ///< records that are missing events only if one follows
};

bool ReadAt(NK::CFile& file, std::int64_t offset, std::uint8_t* out, std::size_t size) {
    return file.SetPosition(offset) && file.Read(out, 1, size) == size;
}

void ReadRecords(NK::CFile& file, std::int64_t length, const Layout& layout, CaptureFileContent& content,
                 const std::function<void(const CapturedEvent&)>& visit) {
    RecordReader reader(content, visit);
    const auto decode = [&layout](const std::uint8_t* record, std::uint32_t number) {
        const bool isZero =
            std::all_of(record, record + layout.recordSize, [](std::uint8_t byte) { return byte == 0; });
        return isZero ? Record{Record::Kind::kZero, {}} : layout.decode(record, number);
    };
    std::vector<std::uint8_t> bytes(kRecordsAtOnce * layout.recordSize);
    const std::uint64_t all = (static_cast<std::uint64_t>(length) - layout.headerSize) / layout.recordSize;
    const auto total = static_cast<std::uint32_t>(std::min<std::uint64_t>(all, UINT32_MAX));
    for (std::uint32_t number = 0; number < total;) {
        const auto count = std::min<std::uint32_t>(kRecordsAtOnce, total - number);
        const auto place = [&](std::uint32_t i) {
            return static_cast<std::int64_t>(layout.headerSize + std::uint64_t{number + i} * layout.recordSize);
        };
        const bool isWhole = ReadAt(file, place(0), bytes.data(), count * layout.recordSize);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::uint8_t* const record = bytes.data() + i * layout.recordSize;
            // Where a part of the disk cannot be read, the rest of it is not lost.
            const bool isRead = isWhole || ReadAt(file, place(i), record, layout.recordSize);
            content.isReadable = content.isReadable && isRead;
            reader.Take(isRead ? decode(record, number + i) : Record());
        }
        number += count;
    }
}

}  // namespace

void EncodeCaptureHeader(std::int64_t startedAt, std::uint8_t* out) {
    std::copy(kTag.begin(), kTag.end(), out);
    EncodeNumber(static_cast<std::uint64_t>(startedAt), out + kTag.size(), 8);
    EncodeNumber(NK::ComputeCrc32(out, kCheckedHeaderSize), out + kCheckedHeaderSize, 4);
}

void EncodeCapturedEvent(const CapturedEvent& event, std::uint32_t number, std::uint8_t* out) {
    const MIDIEvent wire = MIDIEvent::FromMessage(event.message, event.time);
    EncodeNumber(event.time, out, 4);
    out[kKindPlace] = kEventSign;
    out[kStatusPlace] = wire.status;
    out[kStatusPlace + 1] = wire.data1;
    out[kStatusPlace + 2] = wire.data2;
    EncodeNumber(GetCheck(out, number), out + kCheckPlace, 4);
}

void EncodeCaptureMark(std::uint32_t timeMs, std::uint32_t number, std::uint8_t* out) {
    std::fill_n(out, kCheckPlace, std::uint8_t{0});
    EncodeNumber(timeMs, out, 4);
    out[kKindPlace] = kMarkSign;
    EncodeNumber(GetCheck(out, number), out + kCheckPlace, 4);
}

CaptureFileContent ReadCaptureFile(NK::CFile& file, const std::function<void(const CapturedEvent&)>& visit) {
    CaptureFileContent content;
    const std::int64_t length = file.GetLength();
    std::array<std::uint8_t, kCaptureHeaderSize> header{};
    const auto size = std::min(static_cast<std::size_t>(std::max<std::int64_t>(length, 0)), header.size());
    if (length < 0 || !ReadAt(file, 0, header.data(), size)) {
        content.isReadable = false;
        return content;
    }
    const std::string_view start(reinterpret_cast<const char*>(header.data()), size);
    const std::string_view tag = start.substr(0, kTag.size());
    std::array<std::uint8_t, kCaptureHeaderSize> expected;
    const auto startedAt = static_cast<std::int64_t>(DecodeNumber(header.data() + kTag.size(), 8));
    EncodeCaptureHeader(startedAt, expected.data());
    const bool isChecked =
        std::equal(header.begin() + kCheckedHeaderSize, header.end(), expected.begin() + kCheckedHeaderSize);
    const Layout* layout = nullptr;
    if (size == header.size() && (tag == kTag || isChecked)) {
        layout = &kLayout;
        content.isDamaged = header != expected;
    } else if (size >= kFirstHeaderSize && tag == kFirstTag) {
        layout = &kFirstLayout;
    } else if (kTag.substr(0, kVersionPlace).starts_with(tag) ||
               ((tag == kTag || tag == kFirstTag) && size < header.size())) {
        content.kind = CaptureFileKind::kCutShort;
        return content;
    } else {
        const bool isLater = tag.substr(0, kVersionPlace) == kTag.substr(0, kVersionPlace) &&
                             tag[kVersionPlace] > kTag[kVersionPlace] && tag[kVersionPlace] <= '9';
        content.kind = isLater ? CaptureFileKind::kLater : CaptureFileKind::kForeign;
        return content;
    }
    content.kind = CaptureFileKind::kCapture;
    if (layout == &kFirstLayout || isChecked) {
        content.startedAt = startedAt;
    }
    ReadRecords(file, length, *layout, content, visit);
    content.isDamaged = content.isDamaged || content.missing != 0;
    return content;
}

}  // namespace LibMidi
