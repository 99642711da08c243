#include "midi/SMFWriter.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "nk/nk_disk_file.h"

namespace NK::MIDI {

namespace {

/// The tag, the header's length, format 0, one track.
constexpr std::string_view kHeader("MThd\0\0\0\6\0\0\0\1", 12);
constexpr std::uint16_t kDefaultDivision = 500;
constexpr std::uint8_t kEmptySlotStatus = TMIDIMessage::kSystemReset;
constexpr std::int64_t kTrackHeaderSize = 8;
constexpr std::int64_t kTrackLengthOffset = 4;

bool IsSkipped(const CMIDIMessageX& event) {
    return event.kind == CMIDIMessageX::kShort && event.message.status == kEmptySlotStatus;
}

/// A short message goes out with its delta time in one write.
bool WriteEvent(CFile& file, std::uint32_t delta, const CMIDIMessageX& event) {
    if (event.kind != CMIDIMessageX::kShort) {
        return WriteVariableLength(file, delta) && event.Write(file);
    }
    std::uint8_t bytes[8];
    int size = EncodeVariableLength(delta, bytes);
    size += event.message.Pack(bytes + size);
    return file.Write(bytes, 1, static_cast<std::size_t>(size)) == static_cast<std::size_t>(size);
}

bool WriteTempo(CFile& file, int tempo) {
    CMIDIMessageX event;
    event.SetTempoBPM(tempo, -1);
    return WriteEvent(file, 0, event);
}

bool WriteEndOfTrack(CFile& file) {
    CMIDIMessageX event;
    event.SetEndOfTrack(-1);
    return WriteEvent(file, 0, event);
}

}  // namespace

CMIDITrackWriter::CMIDITrackWriter(CFile& file, int tempo) : file_(file), start_(file.GetPosition()) {
    // A failure of these two shows up at the next write.
    static_cast<void>(WriteTag(file_, "MTrk"));
    static_cast<void>(WriteUInt32(file_, 0));
    isWhole_ = tempo == 0 || WriteTempo(file_, tempo);
}

bool CMIDITrackWriter::Write(const CMIDIMessageX& event) {
    if (std::exchange(isFirst_, false)) {
        now_ = std::max(event.time, 0);
    }
    if (!IsSkipped(event)) {
        const std::int32_t previous = now_;
        now_ = std::max(now_, event.time);
        isWhole_ = isWhole_ && WriteEvent(file_, static_cast<std::uint32_t>(now_ - previous), event);
    }
    return isWhole_;
}

bool CMIDITrackWriter::Finish() {
    isWhole_ = isWhole_ && WriteEndOfTrack(file_) && WriteLength();
    return isWhole_;
}

bool CMIDITrackWriter::WriteLength() {
    const std::int64_t end = file_.GetPosition();
    return end >= start_ + kTrackHeaderSize && file_.SetPosition(start_ + kTrackLengthOffset) &&
           WriteUInt32(file_, static_cast<std::uint32_t>(end - start_ - kTrackHeaderSize)) && file_.SetPosition(end);
}

bool WriteMIDITrack(CFile& file, const CMIDIMessageX* events, std::uint32_t count, int tempo) {
    CMIDITrackWriter track(file, tempo);
    return std::all_of(events, events + count, [&track](const CMIDIMessageX& event) { return track.Write(event); }) &&
           track.Finish();
}

bool WriteMIDIHeader(CFile& file, int tempo) {
    const auto division = tempo < 1 ? kDefaultDivision : static_cast<std::uint16_t>(60000.0 / tempo);
    return WriteMIDIHeaderOfTicks(file, division);
}

bool WriteMIDIHeaderOfTicks(CFile& file, std::uint16_t ticksPerQuarter) {
    return file.Write(kHeader.data(), 1, kHeader.size()) == kHeader.size() && WriteUInt16(file, ticksPerQuarter);
}

bool WriteMIDIStream(CFile& file, const CMIDIMessageX* events, std::uint32_t count, int tempo) {
    return WriteMIDIHeader(file, tempo) && WriteMIDITrack(file, events, count, tempo);
}

bool WriteMIDIFile(const CString& fileName, const CMIDIMessageX* events, std::uint32_t count, int tempo) {
    CDiskFile file(fileName, CDiskFile::kWrite, 0664);
    return file.IsOpen() && WriteMIDIStream(file, events, count, tempo);
}

bool WriteMIDITrack(CFile& file, const CArray<CMIDIMessageX>& events, int tempo) {
    return WriteMIDITrack(file, events.GetData(), events.GetSize(), tempo);
}

bool WriteMIDIStream(CFile& file, const CArray<CMIDIMessageX>& events, int tempo) {
    return WriteMIDIStream(file, events.GetData(), events.GetSize(), tempo);
}

bool WriteMIDIFile(const CString& fileName, const CArray<CMIDIMessageX>& events, int tempo) {
    return WriteMIDIFile(fileName, events.GetData(), events.GetSize(), tempo);
}

}  // namespace NK::MIDI
