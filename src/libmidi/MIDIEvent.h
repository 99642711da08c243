// The records that cross the MIDI I/O layer. [owner]
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace LibMidi {

/// A message of up to three bytes with a time stamp. The subclasses differ in their type only.
struct MIDIEvent {
    /// Milliseconds from the start of a capture, or of what is rendered; 0 of what is live, which waits for nothing.
    std::uint32_t time = 0;
    std::uint8_t status = 0;  ///< as on the wire: a channel, 0..15, in its low nibble
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    /// Who sent what an input port hands on, see MIDIInPort::GetSourceName(); 0 elsewhere.
    std::uint8_t source = 0;

    MIDIEvent() = default;
    MIDIEvent(std::uint32_t timeStamp, std::uint8_t statusByte, std::uint8_t first, std::uint8_t second)
        : time(timeStamp), status(statusByte), data1(first), data2(second) {}

    /// NK::MIDI::TMIDIMessage::kNoteOff..kPitchWheel of a channel message.
    std::uint8_t GetCommand() const noexcept { return NK::MIDI::TMIDIMessage::CommandOf(status); }
    /// 0..15 of a channel message.
    std::uint8_t GetChannel() const noexcept { return NK::MIDI::TMIDIMessage::ChannelOf(status); }
    bool IsOfChannel() const noexcept { return NK::MIDI::TMIDIMessage::IsOfChannel(status); }
    /// The channel as 1..16 for channel messages, 0 for system messages.
    NK::MIDI::TMIDIMessage ToMessage() const noexcept;
    static MIDIEvent FromMessage(NK::MIDI::TMIDIMessage message, std::uint32_t timeStamp) noexcept;

protected:
    static constexpr std::uint8_t StatusByte(int command, int channel) noexcept {
        return NK::MIDI::TMIDIMessage::StatusByte(command, channel);
    }
};

// Of all these the channel is 0..15, and what stands for a data byte 0..127.

/// The command is TMIDIMessage::kNoteOff or kNoteOn.
struct NoteEvent : MIDIEvent {
    NoteEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
              std::uint8_t command)
        : MIDIEvent(timeStamp, StatusByte(command, channel), note, velocity) {}
};
/// Control change.
struct CtrlEvent : MIDIEvent {
    CtrlEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t controller, std::uint8_t value)
        : MIDIEvent(timeStamp, StatusByte(NK::MIDI::TMIDIMessage::kControlChange, channel), controller, value) {}
};
/// Program change.
struct PatchEvent : MIDIEvent {
    PatchEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t program)
        : MIDIEvent(timeStamp, StatusByte(NK::MIDI::TMIDIMessage::kProgramChange, channel), program, 0) {}
};
/// Pitch wheel; low and high 7 bits.
struct WheelEvent : MIDIEvent {
    WheelEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t low, std::uint8_t high)
        : MIDIEvent(timeStamp, StatusByte(NK::MIDI::TMIDIMessage::kPitchWheel, channel), low, high) {}
};
/// Polyphonic key pressure.
struct KATEvent : MIDIEvent {
    KATEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t note, std::uint8_t value)
        : MIDIEvent(timeStamp, StatusByte(NK::MIDI::TMIDIMessage::kKeyPressure, channel), note, value) {}
};
/// Channel pressure.
struct CATEvent : MIDIEvent {
    CATEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t value)
        : MIDIEvent(timeStamp, StatusByte(NK::MIDI::TMIDIMessage::kChannelPressure, channel), value, 0) {}
};
/// A moment without a message.
struct TimeEvent : MIDIEvent {
    explicit TimeEvent(std::uint32_t timeStamp) : MIDIEvent(timeStamp, 0, 0, 0) {}
};

}  // namespace LibMidi
