#include "libmidi/CaptureFile.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

namespace {

constexpr char kTag[] = {'K', 'i', 'v', 'T', 'a', 'k', 'e', '1'};
constexpr std::uint8_t kCheckSeed = 0xA5;
constexpr std::size_t kCheckedSize = kCaptureRecordSize - 1;
constexpr std::size_t kStatusPlace = 4;
constexpr std::uint8_t kStatusBit = 0x80;
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

std::uint8_t GetCheck(const std::uint8_t* record) {
    std::uint8_t check = kCheckSeed;
    for (std::size_t i = 0; i < kCheckedSize; ++i) {
        check ^= record[i];
    }
    return check;
}

}  // namespace

void EncodeCaptureHeader(std::int64_t startedAt, std::uint8_t* out) {
    std::memcpy(out, kTag, sizeof(kTag));
    EncodeNumber(static_cast<std::uint64_t>(startedAt), out + sizeof(kTag), 8);
}

void EncodeCapturedEvent(const CapturedEvent& event, std::uint8_t* out) {
    const MIDIEvent wire = MIDIEvent::FromMessage(event.message, event.time);
    EncodeNumber(event.time, out, 4);
    out[kStatusPlace] = wire.status;
    out[5] = wire.data1;
    out[6] = wire.data2;
    out[kCheckedSize] = GetCheck(out);
}

CaptureFileKind ReadCaptureHeader(NK::CFile& file, std::int64_t& startedAt) {
    std::array<std::uint8_t, kCaptureHeaderSize> header{};
    const std::size_t read = file.Read(header.data(), 1, header.size());
    if (std::memcmp(header.data(), kTag, std::min(read, sizeof(kTag))) != 0) {
        return CaptureFileKind::kForeign;
    }
    if (read < header.size()) {
        return CaptureFileKind::kCutShort;
    }
    startedAt = static_cast<std::int64_t>(DecodeNumber(header.data() + sizeof(kTag), 8));
    return CaptureFileKind::kCapture;
}

void ReadCapturedEvents(NK::CFile& file, const std::function<void(const CapturedEvent&)>& visit) {
    std::array<std::uint8_t, kRecordsAtOnce * kCaptureRecordSize> records;
    std::uint32_t previous = 0;
    for (std::size_t count = kRecordsAtOnce; count == kRecordsAtOnce;) {
        count = file.Read(records.data(), kCaptureRecordSize, kRecordsAtOnce);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* const record = records.data() + i * kCaptureRecordSize;
            const auto time = static_cast<std::uint32_t>(DecodeNumber(record, 4));
            if (record[kCheckedSize] != GetCheck(record) || time < previous || time > kLatestTime ||
                (record[kStatusPlace] & kStatusBit) == 0) {
                return;
            }
            previous = time;
            visit({time, MIDIEvent(time, record[kStatusPlace], record[5], record[6]).ToMessage()});
        }
    }
}

}  // namespace LibMidi
