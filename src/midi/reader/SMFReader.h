// Reading Standard MIDI Files.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "midi/reader/SMFContent.h"
#include "nk/nk_string.h"

namespace NK::MIDI {

/// The largest file that is read.
inline constexpr std::size_t kMaxSMFBytes = std::size_t{16} * 1024 * 1024;

/// Reads Standard MIDI Files 1.0 of format 0 and 1 with ticks of every kind. System Exclusive is skipped, and so are
/// chunks that are no tracks. Running status is understood, also across what is no channel message, where the standard
/// has it end. Damage ends the track that it stands in; the tracks behind it are read. Takes memory in proportion to
/// the bytes, whatever they say. [any]
SMFContent ReadSMF(std::string_view bytes);

/// The same from a regular file. Nothing, with the reason in GetFileFailure(), when it cannot be read or is larger than
/// kMaxSMFBytes. Never waits for what is no regular file. [any]
std::optional<SMFContent> ReadSMFFile(const CString& path);

}  // namespace NK::MIDI
