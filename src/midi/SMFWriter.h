// Writing event lists as Standard MIDI Files. [any]
#pragma once

#include <cstdint>

#include "midi/CMIDIMessageX.h"
#include "nk/nk_array.h"
#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK::MIDI {

// Standard MIDI Files 1.0, format 0 with one track. Event times are milliseconds and become ticks as they are: the
// division is 60000 / tempo (tempo in beats per minute), or 500 for a tempo below 1, so that a tick is one millisecond
// at that tempo. A tempo of 0 writes no tempo event.
//
// The list's order is kept. The running time starts at the first entry's time, or at 0 if that is negative; an entry
// with an earlier time is written at the running time. Entries of kind short with status 255 are skipped. Every short
// message carries its status byte; System Exclusive is written as stored, without the standard's length field.
//
// All return false as soon as a write or seek fails, leaving the file as far as it was written. They throw
// CInvalidParameterException "Cannot set zero tempo." for a tempo below 0, and CCoderException "Unknown MIDI message
// type." for an entry of a kind other than 0..3. From any thread; the caller owns the file.

/// Creates or overwrites a file on disk. True when the whole file was accepted by the system.
bool WriteMIDIFile(const CString& fileName, const CMIDIMessageX* events, std::uint32_t count, int tempo);
bool WriteMIDIFile(const CString& fileName, const CArray<CMIDIMessageX>& events, int tempo);

/// Writes the header and the track at the file's position.
bool WriteMIDIStream(CFile& file, const CMIDIMessageX* events, std::uint32_t count, int tempo);
bool WriteMIDIStream(CFile& file, const CArray<CMIDIMessageX>& events, int tempo);

/// Writes the header alone, of a file with one track, at the file's position.
bool WriteMIDIHeader(CFile& file, int tempo);
/// The same with that many ticks a quarter note; the times of the track that follows are ticks then.
bool WriteMIDIHeaderOfTicks(CFile& file, std::uint16_t ticksPerQuarter);

/// Writes a track alone at the file's position and leaves the position at its end.
bool WriteMIDITrack(CFile& file, const CMIDIMessageX* events, std::uint32_t count, int tempo);
bool WriteMIDITrack(CFile& file, const CArray<CMIDIMessageX>& events, int tempo);

/// Writes a track event by event, for lists that are not kept in memory. Once something could not be written, all
/// further calls return false and write nothing. The file outlives the writer; between the calls its position is the
/// writer's.
class CMIDITrackWriter {
public:
    /// Writes the head of the track at the file's position, and the tempo event.
    CMIDITrackWriter(CFile& file, int tempo);

    bool Write(const CMIDIMessageX& event);
    /// Writes the end of the track and then its length, and leaves the position at the track's end.
    bool Finish();

private:
    bool WriteLength();

    CFile& file_;
    std::int64_t start_;
    std::int32_t now_ = 0;  ///< ms: the running time
    bool isFirst_ = true;
    bool isWhole_;
};

}  // namespace NK::MIDI
