// Captured events as bytes on disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "libmidi/CaptureStore.h"
#include "nk/nk_file.h"

namespace LibMidi {

// A header of 16 bytes: the 8 characters "KivTake1", then the moment at which the capture began, in seconds since
// 1970-01-01 UTC. Then a record of 8 bytes for each event: its time in 4, the message as on the wire in 3 (status with
// the channel folded in; unused data bytes as captured), and a check byte, the exclusive or of the seven and A5.
// Numbers stand with their high byte first. There is no end mark: the events end where no whole record follows whose
// check byte is right, whose status is one and whose time neither goes back nor exceeds 2^31 - 1 ms. All of these may
// be called from any thread.

inline constexpr std::size_t kCaptureHeaderSize = 16;
inline constexpr std::size_t kCaptureRecordSize = 8;

/// Fills kCaptureHeaderSize bytes.
void EncodeCaptureHeader(std::int64_t startedAt, std::uint8_t* out);
/// Fills kCaptureRecordSize bytes.
void EncodeCapturedEvent(const CapturedEvent& event, std::uint8_t* out);

enum class CaptureFileKind {
    kCapture,   ///< events may follow
    kCutShort,  ///< ends inside the header
    kForeign,
};

/// Reads the header at the file's position. `startedAt` is set for a capture only.
CaptureFileKind ReadCaptureHeader(NK::CFile& file, std::int64_t& startedAt);
/// Calls `visit` for every event from the file's position, which is behind the header, to where the events end.
void ReadCapturedEvents(NK::CFile& file, const std::function<void(const CapturedEvent&)>& visit);

}  // namespace LibMidi
