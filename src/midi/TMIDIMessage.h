// The four-byte live MIDI message. [owner]
#pragma once

#include <cstddef>
#include <cstdint>

#include "nk/nk_file.h"
#include "nk/nk_sortable_array.h"

namespace NK::MIDI {

/// How names of notes are chosen for ToString().
enum class NoteNameStyle { kSharps, kFlats };

/// A channel or system message with the channel kept apart from the command (MIDI 1.0, table I). A plain record,
/// passed by value. A status of 0 is no message: an effect has taken it over, and senders skip it.
struct TMIDIMessage {
    // Status bytes (MIDI 1.0, table I): the commands of channel messages, with the channel's nibble cleared,
    static constexpr std::uint8_t kNoteOff = 0x80;
    static constexpr std::uint8_t kNoteOn = 0x90;
    static constexpr std::uint8_t kKeyPressure = 0xA0;
    static constexpr std::uint8_t kControlChange = 0xB0;
    static constexpr std::uint8_t kProgramChange = 0xC0;
    static constexpr std::uint8_t kChannelPressure = 0xD0;
    static constexpr std::uint8_t kPitchWheel = 0xE0;
    // and system messages, those from kTimingClock on in real time (table V and VI).
    static constexpr std::uint8_t kSystemExclusive = 0xF0;
    static constexpr std::uint8_t kTimeCode = 0xF1;
    static constexpr std::uint8_t kSongPosition = 0xF2;
    static constexpr std::uint8_t kSongSelect = 0xF3;
    static constexpr std::uint8_t kTuneRequest = 0xF6;
    static constexpr std::uint8_t kEndOfExclusive = 0xF7;
    static constexpr std::uint8_t kTimingClock = 0xF8;
    static constexpr std::uint8_t kStart = 0xFA;
    static constexpr std::uint8_t kContinue = 0xFB;
    static constexpr std::uint8_t kStop = 0xFC;
    static constexpr std::uint8_t kActiveSensing = 0xFE;
    static constexpr std::uint8_t kSystemReset = 0xFF;

    static constexpr std::uint8_t kFirstStatus = kNoteOff;  ///< any lower byte is data
    static constexpr std::uint8_t kFirstSystemStatus = kSystemExclusive;
    static constexpr std::uint8_t kFirstRealTimeStatus = kTimingClock;

    static constexpr int kPitchWheelCentre = 8192;
    static constexpr int kPitchWheelMaximum = 16383;

    /// Of a status byte as on the wire: its command or system status, and the channel 0..15 of a channel message.
    static constexpr std::uint8_t CommandOf(std::uint8_t statusByte) noexcept { return statusByte & 0xF0; }
    static constexpr std::uint8_t ChannelOf(std::uint8_t statusByte) noexcept { return statusByte & 0x0F; }
    static constexpr bool IsOfChannel(std::uint8_t statusByte) noexcept {
        return statusByte >= kFirstStatus && statusByte < kFirstSystemStatus;
    }
    /// The status byte of a channel message on the wire; of the channel the lowest four bits count.
    static constexpr std::uint8_t StatusByte(int command, int channel) noexcept {
        return static_cast<std::uint8_t>(command | (channel & 0x0F));
    }
    /// The seven bits of a data byte.
    static constexpr std::uint8_t DataOf(int value) noexcept { return static_cast<std::uint8_t>(value & 0x7F); }

    std::uint8_t status = 0;   ///< channel messages: kNoteOff..kPitchWheel; system: from kFirstSystemStatus on
    std::uint8_t channel = 0;  ///< 1..16; 0 = none
    std::uint8_t data1 = 0;    ///< note, controller or program number, or the wheel's low 7 bits
    std::uint8_t data2 = 0;    ///< velocity, value, pressure, or the wheel's high 7 bits

    friend bool operator==(const TMIDIMessage& a, const TMIDIMessage& b) noexcept { return a.ToWord() == b.ToWord(); }

    /// The four bytes as one 32-bit word, status lowest.
    std::uint32_t ToWord() const noexcept {
        return std::uint32_t{status} | std::uint32_t{channel} << 8 | std::uint32_t{data1} << 16 |
               std::uint32_t{data2} << 24;
    }
    static TMIDIMessage FromWord(std::uint32_t word) noexcept {
        return {static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8),
                static_cast<std::uint8_t>(word >> 16), static_cast<std::uint8_t>(word >> 24)};
    }

    /// Bytes on the wire, 1..3, by the status (a raw status byte goes by its high nibble). kProgramChange and
    /// kChannelPressure: 2; real time: 1; all else 3, also kTimeCode..kEndOfExclusive where MIDI 1.0 has fewer.
    static int GetLength(std::uint8_t status) noexcept;
    int GetLength() const noexcept { return GetLength(status); }

    /// Status with the channel folded in, then the data bytes that the length requires; returns the length.
    int Pack(std::uint8_t out[3]) const noexcept;
    /// Writes at most `size` bytes; returns the number written.
    std::size_t Pack(std::uint8_t* out, std::size_t size) const noexcept;
    bool Write(CFile& file) const;
    /// No running status is understood. False, the record unchanged, when the file ends early.
    bool Read(CFile& file);
    bool ReadAfterStatus(std::uint8_t firstByte, CFile& file);

    int GetPitchWheel() const noexcept { return DataOf(data1) | (data2 << 7); }  ///< 0..16383
    /// These set the status and the data, never the channel. Raw is 0..16383, centred -8192..8191, float -1..1.
    void SetPitchWheel(int raw) noexcept;
    void SetPitchWheelCentered(int value) noexcept;
    void SetPitchWheelFloat(float value) noexcept;

    /// "Unknown Command" for a status without a name.
    static const wchar_t* GetCommandName(std::uint8_t status) noexcept;
    /// "Unknown Controller" for a number without a name.
    static const wchar_t* GetControllerName(std::uint8_t number) noexcept;

    /// Greater and less by the note byte (data1) alone.
    class CNoteSortingComparator : public CSortingComparator<TMIDIMessage> {
    public:
        bool IsGreater(const TMIDIMessage& a, const TMIDIMessage& b) const override { return a.data1 > b.data1; }
        bool IsLess(const TMIDIMessage& a, const TMIDIMessage& b) const override { return a.data1 < b.data1; }
    };
};

static_assert(sizeof(TMIDIMessage) == 4);

/// The text of a message in a buffer of `bufferSize` characters, cut and terminated. Throws
/// CInvalidParameterException "No output buffer in MIDI message to string converter." without a buffer.
void ToString(const TMIDIMessage& message, wchar_t* buffer, std::size_t bufferSize,
              NoteNameStyle style = NoteNameStyle::kSharps);

/// "Invalid MIDI channel number."
class CInvalidMIDIChannelException : public CException {
public:
    CInvalidMIDIChannelException() noexcept : CException(L"Invalid MIDI channel number.") {}
};

}  // namespace NK::MIDI
