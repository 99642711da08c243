// Captured events as bytes on disk. [any]
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "libmidi/CaptureStore.h"
#include "nk/nk_file.h"

namespace LibMidi {

// A header of 20 bytes: the 8 characters "KivTake2", the moment at which the capture began, in seconds since 1970-01-01
// UTC, in 8, and the CRC-32 of these 16. Then a record of 12 bytes for each event, event n at the place of record n:
// its time in 4, an "E", the message as on the wire in 3 (status with the channel folded in; unused data bytes as
// captured), and in 4 the CRC-32 of the record's number, as 4 bytes, and the eight before. Behind the last event a mark
// may stand, which the next event overwrites: the same with a "T" and no message; the capture went on until its time.
// Numbers stand with their high byte first.
//
// There is no end mark: the events end with the file, less a part of a record and what is all zero there, which a disk
// leaves that has not written what it was given. Every other record whose check is wrong, whose status is none or whose
// time goes back or exceeds 2^31 - 1 ms is one event that is missing, and so is a mark before an event.
//
// The first version is read too: "KivTake1", no check of the header, and records of 8 bytes: time, message, and the
// exclusive or of the seven and A5. All of these may be called from any thread.

inline constexpr std::size_t kCaptureHeaderSize = 20;
inline constexpr std::size_t kCaptureRecordSize = 12;

/// Fills kCaptureHeaderSize bytes.
void EncodeCaptureHeader(std::int64_t startedAt, std::uint8_t* out);
/// Fills kCaptureRecordSize bytes. `number` counts from 0.
void EncodeCapturedEvent(const CapturedEvent& event, std::uint32_t number, std::uint8_t* out);
/// The same for a mark at `timeMs`.
void EncodeCaptureMark(std::uint32_t timeMs, std::uint32_t number, std::uint8_t* out);

enum class CaptureFileKind {
    kCapture,   ///< events may follow
    kCutShort,  ///< ends inside the header
    kLater,     ///< of a later version
    kForeign,
};

struct CaptureFileContent {
    CaptureFileKind kind = CaptureFileKind::kForeign;
    std::optional<std::int64_t> startedAt;  ///< none where its check is wrong
    std::uint32_t endMs = 0;                ///< the time of the last event, or of the mark behind it
    std::uint32_t missing = 0;              ///< events whose records are damaged or could not be read
    bool isDamaged = false;                 ///< something is missing, or the header is wrong
    bool isReadable = true;                 ///< false when the system refused to read some of it
};

/// Reads a file from its beginning and calls `visit` for every event that is whole, in order.
CaptureFileContent ReadCaptureFile(NK::CFile& file, const std::function<void(const CapturedEvent&)>& visit);

}  // namespace LibMidi
