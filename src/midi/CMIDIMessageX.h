// A time-stamped event: short message, meta event or System Exclusive. [owner]
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"
#include "nk/nk_array.h"
#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK::MIDI {

/// One event of a recording or a MIDI file (Standard MIDI Files 1.0). Value semantics.
class CMIDIMessageX {
public:
    enum Kind : std::uint32_t { kShort = 0, kMeta = 1, kSysEx = 2, kEmpty = 3 };
    /// Meta types (Standard MIDI Files 1.0, "Meta-Events").
    enum MetaType : std::uint8_t {
        kSequenceNumber = 0x00,
        kText = 0x01,
        kCopyright = 0x02,
        kTrackName = 0x03,
        kInstrumentName = 0x04,
        kLyric = 0x05,
        kMarker = 0x06,
        kCuePoint = 0x07,
        kChannelPrefix = 0x20,
        kPort = 0x21,
        kEndOfTrack = 0x2F,
        kTempo = 0x51,
        kSMPTEOffset = 0x54,
        kTimeSignature = 0x58,
        kKeySignature = 0x59,
        kSequencerSpecific = 0x7F
    };

    /// Before the type of a meta event in a file, which has no use for the message of that status.
    static constexpr std::uint8_t kMetaPrefix = TMIDIMessage::kSystemReset;

    std::uint32_t kind = kEmpty;
    TMIDIMessage message;       ///< kind 0
    CArray<std::uint8_t> data;  ///< meta data (kind 1), or all bytes from the status to the end (kind 2)
    std::uint8_t metaType = 0;  ///< kind 1
    std::int32_t time = -1;     ///< ms from the start of the recording; -1 = none

    CMIDIMessageX() = default;
    CMIDIMessageX(TMIDIMessage shortMessage, std::int32_t timeMs);

    void SetShort(TMIDIMessage shortMessage, std::int32_t timeMs);

    // Builders of meta events: kind 1, the type, the time, the data replaced.
    void SetSequenceNumber(std::uint16_t number, std::int32_t timeMs);
    /// Types 1..7, at most 127 bytes of text, null meaning none; anything else throws CInvalidParameterException.
    void SetText(std::uint8_t type, const char* text, std::int32_t timeMs);
    /// Channel 0..15, as the standard has it.
    void SetChannelPrefix(std::uint8_t channel, std::int32_t timeMs);
    void SetPort(std::uint8_t port, std::int32_t timeMs);
    void SetEndOfTrack(std::int32_t timeMs);
    /// Kept in three bytes: a slower tempo than 0xFFFFFF microseconds becomes that.
    void SetTempo(std::uint32_t microsecondsPerQuarter, std::int32_t timeMs);
    /// The time becomes -1 whatever is given. Throws CInvalidParameterException "Cannot set zero tempo." for a tempo
    /// of 0 or below.
    void SetTempoBPM(double beatsPerMinute, std::int32_t timeMs);
    void SetSMPTEOffset(std::uint8_t hr, std::uint8_t mn, std::uint8_t se, std::uint8_t fr, std::uint8_t ff,
                        std::int32_t timeMs);
    void SetTimeSignature(std::uint8_t nn, std::uint8_t dd, std::uint8_t cc, std::uint8_t bb, std::int32_t timeMs);
    void SetKeySignature(std::int8_t sf, std::uint8_t mi, std::int32_t timeMs);
    /// At most 127 bytes, else CInvalidParameterException
    /// "Sequencer-specific meta MIDI message data size exceeds the limit."
    void SetSequencerSpecific(std::uint32_t size, const std::uint8_t* bytes, std::int32_t timeMs);
    /// Up to five byte values in order; the first negative one ends them.
    void SetMeta(std::uint8_t type, std::int32_t timeMs, int b0 = -1, int b1 = -1, int b2 = -1, int b3 = -1,
                 int b4 = -1);
    /// All bytes from 0xF0..0xF6 to the end. Throws CInvalidParameterException
    /// "SysEx message code must be in the range of [0xF0..0xF6]." or "SysEx message is too short."
    void SetSysEx(const std::uint8_t* bytes, std::uint32_t size, std::int32_t timeMs);

    /// Kind 1: the data as 8-bit text; else empty.
    CString GetText() const;
    /// Throws CCoderException "Unknown MIDI message type code." for a kind other than 0..2.
    bool Equals(const CMIDIMessageX& other, bool compareTime) const;
    /// Throws CCoderException "Unknown MIDI message type." for a kind other than 0..3.
    bool Write(CFile& file) const;
    /// False, the event unchanged, when the file ends early.
    bool Read(CFile& file);
};

/// Moves a list so that its first note (status 0x80 or 0x90) is at `startTime` ms: events before it get time 0, it and
/// every later event with a time above 0 are shifted. Without a note every time becomes 0.
void AlignToFirstNote(CMIDIMessageX* events, std::uint32_t count, std::int32_t startTime);
/// A time above 0 moved by `byMs`, within the range of its type; any other time stays.
std::int32_t ShiftTime(std::int32_t timeMs, std::int64_t byMs) noexcept;

/// The bit of a byte of a variable-length quantity that another byte follows.
inline constexpr std::uint8_t kQuantityContinues = 1U << 7;

/// A variable-length quantity (Standard MIDI Files 1.0) into at most 5 bytes; returns how many.
int EncodeVariableLength(std::uint32_t value, std::uint8_t out[5]) noexcept;
/// A variable-length quantity (Standard MIDI Files 1.0), 1 to 5 bytes; true when all were written.
bool WriteVariableLength(CFile& file, std::uint32_t value);
/// 0 with `error` true when the quantity takes more than 5 bytes or the file ends, else `error` is false. Bits above
/// the 32nd are lost.
std::uint32_t ReadVariableLength(CFile& file, bool& error);

}  // namespace NK::MIDI
