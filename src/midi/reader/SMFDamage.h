// What keeps a Standard MIDI File from being read as a whole. [any]
#pragma once

#include <cstdint>

#include "nk/nk_string.h"

namespace NK::MIDI {

enum class SMFDefect {
    kNoHeader,       ///< it does not begin as a MIDI file, or ends inside its header
    kUnknownFormat,  ///< neither one track nor tracks that are played together
    kBadDivision,    ///< the header does not say how long a tick is
    kFileCutShort,   ///< it ends before what it has announced
    kTrackMissing,   ///< it holds fewer tracks than its header says
    kEventCutShort,  ///< a track ends inside an event
    kLongQuantity,   ///< a number that takes more than four bytes
    kTooLate,        ///< an event beyond TempoMap::kLatestTick
    kNoStatus,       ///< a data byte where a message begins
    kBadStatus,      ///< a status that no MIDI file can hold
    kBadData,        ///< a status where a data byte belongs
    kBadTempo,       ///< a tempo of no time or of a wrong size
};

struct SMFDamage {
    SMFDefect defect;
    std::int64_t offset;  ///< bytes from the file's begin
};

/// A sentence that says what is wrong at which byte, translated.
CString Describe(const SMFDamage& damage);

}  // namespace NK::MIDI
