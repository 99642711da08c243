// What a Standard MIDI File holds. [owner]
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "midi/reader/SMFDamage.h"
#include "midi/reader/TempoMap.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_string.h"

namespace NK::MIDI {

/// A channel message at its place.
struct SMFEvent {
    std::int64_t timeUs;   ///< from the file's begin
    std::uint32_t tick;    ///< of the file's division, see TempoMap
    std::uint16_t track;   ///< from 0
    TMIDIMessage message;  ///< TMIDIMessage::kNoteOff..kPitchWheel, channel 1..16
};

/// A text at its place.
struct SMFText {
    std::int64_t timeUs;  ///< these three as SMFEvent's
    std::uint32_t tick;
    std::uint16_t track;
    std::uint8_t type;  ///< CMIDIMessageX::kText..kCuePoint, or one of the text types up to 0x0F that have no name
    CString text;       ///< as UTF-8, or as Latin-1 where it is none
};

/// All tracks as one. Events and texts are in the order of their ticks; those at one tick stand in the order of the
/// tracks, and in a track as in the file.
struct SMFContent {
    int format = 0;  ///< 0: one track, 1: tracks that are played together
    std::uint32_t trackCount = 0;
    TempoMap tempoMap;
    std::vector<SMFEvent> events;
    std::vector<SMFText> texts;
    std::int64_t lengthUs = 0;           ///< to the end of the track that ends last
    std::uint32_t systemExclusives = 0;  ///< how many were skipped
    std::optional<SMFDamage> damage;     ///< the first; everything that is whole is here all the same
};

}  // namespace NK::MIDI
