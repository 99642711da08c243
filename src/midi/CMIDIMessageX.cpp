#include "midi/CMIDIMessageX.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "nk/nk_rounding.h"

namespace NK::MIDI {

namespace {

constexpr std::uint32_t kMaximumMetaSize = 127;
constexpr std::uint32_t kMaximumTempo = 0xFFFFFF;

void SetBytes(CArray<std::uint8_t>& data, const void* bytes, std::uint32_t size) {
    data.SetSize(size, false);
    if (size > 0) {
        std::memcpy(data.GetData(), bytes, size);
    }
}

void SetMetaBytes(CMIDIMessageX& event, std::uint8_t type, std::int32_t timeMs, const void* bytes, std::uint32_t size) {
    SetBytes(event.data, bytes, size);
    event.kind = CMIDIMessageX::kMeta;
    event.metaType = type;
    event.time = timeMs;
}

bool AreEqual(const CArray<std::uint8_t>& a, const CArray<std::uint8_t>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

bool IsNote(const CMIDIMessageX& event) {
    return event.kind == CMIDIMessageX::kShort &&
           (event.message.status == TMIDIMessage::kNoteOff || event.message.status == TMIDIMessage::kNoteOn);
}

}  // namespace

CMIDIMessageX::CMIDIMessageX(TMIDIMessage shortMessage, std::int32_t timeMs)
    : kind(kShort), message(shortMessage), time(timeMs) {
}

void CMIDIMessageX::SetShort(TMIDIMessage shortMessage, std::int32_t timeMs) {
    kind = kShort;
    message = shortMessage;
    time = timeMs;
    // An empty array that is cleared allocates its first block.
    if (!data.IsEmpty()) {
        data.Clear();
    }
}

void CMIDIMessageX::SetSequenceNumber(std::uint16_t number, std::int32_t timeMs) {
    SetMeta(kSequenceNumber, timeMs, number >> 8, number & 0xFF);
}

void CMIDIMessageX::SetText(std::uint8_t type, const char* text, std::int32_t timeMs) {
    const std::size_t size = text == nullptr ? 0 : std::strlen(text);
    if (type < kText || type > kCuePoint || size > kMaximumMetaSize) {
        throw CInvalidParameterException();
    }
    SetMetaBytes(*this, type, timeMs, text, static_cast<std::uint32_t>(size));
}

void CMIDIMessageX::SetChannelPrefix(std::uint8_t channel, std::int32_t timeMs) {
    SetMeta(kChannelPrefix, timeMs, channel);
}

void CMIDIMessageX::SetPort(std::uint8_t port, std::int32_t timeMs) {
    SetMeta(kPort, timeMs, port);
}

void CMIDIMessageX::SetEndOfTrack(std::int32_t timeMs) {
    SetMeta(kEndOfTrack, timeMs);
}

void CMIDIMessageX::SetTempo(std::uint32_t microsecondsPerQuarter, std::int32_t timeMs) {
    const auto tempo = static_cast<int>(std::min(microsecondsPerQuarter, kMaximumTempo));
    SetMeta(MetaType::kTempo, timeMs, tempo >> 16, (tempo >> 8) & 0xFF, tempo & 0xFF);
}

void CMIDIMessageX::SetTempoBPM(double beatsPerMinute, std::int32_t) {
    if (beatsPerMinute <= 0) {
        throw CInvalidParameterException(L"Cannot set zero tempo.");
    }
    const double tempo = 60000000 / beatsPerMinute + kAlmostHalf;
    const bool fits = tempo < static_cast<double>(kMaximumTempo);
    SetTempo(fits ? static_cast<std::uint32_t>(tempo) : kMaximumTempo, -1);
}

void CMIDIMessageX::SetSMPTEOffset(std::uint8_t hr, std::uint8_t mn, std::uint8_t se, std::uint8_t fr, std::uint8_t ff,
                                   std::int32_t timeMs) {
    SetMeta(kSMPTEOffset, timeMs, hr, mn, se, fr, ff);
}

void CMIDIMessageX::SetTimeSignature(std::uint8_t nn, std::uint8_t dd, std::uint8_t cc, std::uint8_t bb,
                                     std::int32_t timeMs) {
    SetMeta(kTimeSignature, timeMs, nn, dd, cc, bb);
}

void CMIDIMessageX::SetKeySignature(std::int8_t sf, std::uint8_t mi, std::int32_t timeMs) {
    SetMeta(kKeySignature, timeMs, static_cast<std::uint8_t>(sf), mi);
}

void CMIDIMessageX::SetSequencerSpecific(std::uint32_t size, const std::uint8_t* bytes, std::int32_t timeMs) {
    if (size > kMaximumMetaSize) {
        throw CInvalidParameterException(L"Sequencer-specific meta MIDI message data size exceeds the limit.");
    }
    SetMetaBytes(*this, kSequencerSpecific, timeMs, bytes, size);
}

void CMIDIMessageX::SetMeta(std::uint8_t type, std::int32_t timeMs, int b0, int b1, int b2, int b3, int b4) {
    std::uint8_t bytes[5] = {};
    std::uint32_t size = 0;
    for (const int value : {b0, b1, b2, b3, b4}) {
        if (value < 0) {
            break;
        }
        bytes[size++] = static_cast<std::uint8_t>(value);
    }
    SetMetaBytes(*this, type, timeMs, bytes, size);
}

void CMIDIMessageX::SetSysEx(const std::uint8_t* bytes, std::uint32_t size, std::int32_t timeMs) {
    if (size > 0 && (bytes[0] < TMIDIMessage::kSystemExclusive || bytes[0] > TMIDIMessage::kTuneRequest)) {
        throw CInvalidParameterException(L"SysEx message code must be in the range of [0xF0..0xF6].");
    }
    if (size < 2) {
        throw CInvalidParameterException(L"SysEx message is too short.");
    }
    SetBytes(data, bytes, size);
    kind = kSysEx;
    time = timeMs;
}

CString CMIDIMessageX::GetText() const {
    if (kind != kMeta) {
        return {};
    }
    return CString(std::string(data.begin(), std::find(data.begin(), data.end(), 0)).c_str());
}

bool CMIDIMessageX::Equals(const CMIDIMessageX& other, bool compareTime) const {
    if (kind != other.kind || (compareTime && time != other.time)) {
        return false;
    }
    switch (kind) {
        case kShort:
            return message == other.message;
        case kMeta:
            return metaType == other.metaType && AreEqual(data, other.data);
        case kSysEx:
            return AreEqual(data, other.data);
        default:
            throw CCoderException(L"Unknown MIDI message type code.");
    }
}

void AlignToFirstNote(CMIDIMessageX* events, std::uint32_t count, std::int32_t startTime) {
    CMIDIMessageX* const end = events + count;
    CMIDIMessageX* const firstNote = std::find_if(events, end, IsNote);
    std::for_each(events, firstNote, [](CMIDIMessageX& event) { event.time = 0; });
    if (firstNote == end) {
        return;
    }
    const std::int64_t shift = std::int64_t{startTime} - firstNote->time;
    std::for_each(firstNote, end, [shift](CMIDIMessageX& event) { event.time = ShiftTime(event.time, shift); });
}

std::int32_t ShiftTime(std::int32_t timeMs, std::int64_t byMs) noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    return timeMs <= 0
               ? timeMs
               : static_cast<std::int32_t>(std::clamp<std::int64_t>(timeMs + byMs, Limits::min(), Limits::max()));
}

}  // namespace NK::MIDI
