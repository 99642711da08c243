#include "midi/reader/SMFTrackReader.h"

#include <string_view>

#include "midi/CMIDIMessageX.h"

namespace NK::MIDI {

namespace {

constexpr std::uint8_t kEscape = TMIDIMessage::kEndOfExclusive;
constexpr std::uint8_t kMeta = CMIDIMessageX::kMetaPrefix;
constexpr std::uint8_t kLastTextType = 0x0F;
constexpr int kMaxQuantityBytes = 4;
constexpr std::size_t kTempoBytes = 3;

CString Decode(std::string_view text) {
    const std::optional<CString> decoded = CString::FromStrictUtf8(text);
    return decoded ? *decoded : CString::FromLatin1(text);
}

}  // namespace

void SMFTrackReader::Read() {
    while (!isEnded_ && !bytes_.IsAtEnd() && ReadDeltaTime() && ReadEvent()) {
    }
}

bool SMFTrackReader::Fail(SMFDefect defect, std::int64_t offset) {
    if (!lists_.content.damage) {
        lists_.content.damage = SMFDamage{defect, offset};
    }
    return false;
}

std::optional<std::uint32_t> SMFTrackReader::ReadQuantity() {
    const std::int64_t start = bytes_.GetOffset();
    std::uint32_t value = 0;
    for (int i = 0; i < kMaxQuantityBytes; ++i) {
        if (bytes_.IsAtEnd()) {
            Fail(SMFDefect::kEventCutShort);
            return std::nullopt;
        }
        const std::uint8_t byte = bytes_.Take();
        value = value << 7 | (byte & 0x7FU);
        if ((byte & kQuantityContinues) == 0) {
            return value;
        }
    }
    Fail(SMFDefect::kLongQuantity, start);
    return std::nullopt;
}

bool SMFTrackReader::ReadDeltaTime() {
    const std::int64_t start = bytes_.GetOffset();
    const std::optional<std::uint32_t> delta = ReadQuantity();
    if (!delta) {
        return false;
    }
    if (*delta > TempoMap::kLatestTick - tick_) {
        return Fail(SMFDefect::kTooLate, start);
    }
    tick_ += *delta;
    return true;
}

bool SMFTrackReader::ReadEvent() {
    if (bytes_.IsAtEnd()) {
        return Fail(SMFDefect::kEventCutShort);
    }
    const std::uint8_t first = bytes_.Peek();
    if (first < TMIDIMessage::kFirstStatus) {
        return runningStatus_ != 0 ? ReadChannelMessage(runningStatus_) : Fail(SMFDefect::kNoStatus);
    }
    if (first < TMIDIMessage::kFirstSystemStatus) {
        bytes_.Take();
        return ReadChannelMessage(first);
    }
    if (first != kMeta && first != TMIDIMessage::kSystemExclusive && first != kEscape) {
        return Fail(SMFDefect::kBadStatus);
    }
    bytes_.Take();
    return first == kMeta ? ReadMeta() : SkipSystemExclusive();
}

bool SMFTrackReader::ReadChannelMessage(std::uint8_t status) {
    runningStatus_ = status;
    std::uint8_t data[2] = {0, 0};
    for (int i = 0; i < TMIDIMessage::GetLength(status) - 1; ++i) {
        if (bytes_.IsAtEnd()) {
            return Fail(SMFDefect::kEventCutShort);
        }
        if (bytes_.Peek() >= TMIDIMessage::kFirstStatus) {
            return Fail(SMFDefect::kBadData);
        }
        data[i] = bytes_.Take();
    }
    const std::uint8_t command = TMIDIMessage::CommandOf(status);
    const auto channel = static_cast<std::uint8_t>(TMIDIMessage::ChannelOf(status) + 1);
    lists_.content.events.push_back({0, tick_, track_, {command, channel, data[0], data[1]}});
    return true;
}

bool SMFTrackReader::ReadMeta() {
    if (bytes_.IsAtEnd()) {
        return Fail(SMFDefect::kEventCutShort);
    }
    const std::uint8_t type = bytes_.Take();
    const std::optional<std::uint32_t> size = ReadQuantity();
    if (!size) {
        return false;
    }
    if (*size > bytes_.GetLeft()) {
        return Fail(SMFDefect::kEventCutShort, bytes_.GetOffset() + static_cast<std::int64_t>(bytes_.GetLeft()));
    }
    const std::int64_t offset = bytes_.GetOffset();
    const std::string_view data = bytes_.TakeBytes(*size);
    if (type == CMIDIMessageX::kTempo) {
        return TakeTempo(data, offset);
    }
    if (type >= CMIDIMessageX::kText && type <= kLastTextType) {
        lists_.content.texts.push_back({0, tick_, track_, type, Decode(data)});
    }
    isEnded_ = type == CMIDIMessageX::kEndOfTrack;
    return true;
}

bool SMFTrackReader::TakeTempo(std::string_view data, std::int64_t offset) {
    ByteCursor number(data, offset);
    const std::uint32_t tempo = data.size() == kTempoBytes ? number.TakeNumber(kTempoBytes) : 0;
    if (tempo == 0) {
        static_cast<void>(Fail(SMFDefect::kBadTempo, offset));  // where the next event begins is known all the same
    } else {
        lists_.tempi.push_back({tick_, tempo});
    }
    return true;
}

bool SMFTrackReader::SkipSystemExclusive() {
    const std::optional<std::uint32_t> size = ReadQuantity();
    if (!size) {
        return false;
    }
    if (*size > bytes_.GetLeft()) {
        return Fail(SMFDefect::kEventCutShort, bytes_.GetOffset() + static_cast<std::int64_t>(bytes_.GetLeft()));
    }
    bytes_.TakeBytes(*size);
    ++lists_.content.systemExclusives;
    return true;
}

}  // namespace NK::MIDI
