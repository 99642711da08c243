// The records that cross the MIDI I/O layer.
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace LibMidi {

/// A message of up to three bytes with a time stamp. The subclasses differ in their type only.
struct MIDIEvent {
    std::uint32_t time = 0;   ///< 0 for live input
    std::uint8_t status = 0;  ///< with the channel in its low nibble
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    /// Who sent what an input port hands on, see MIDIInPort::GetSourceName(); 0 elsewhere.
    std::uint8_t source = 0;

    MIDIEvent() = default;
    MIDIEvent(std::uint32_t timeStamp, std::uint8_t statusByte, std::uint8_t first, std::uint8_t second)
        : time(timeStamp), status(statusByte), data1(first), data2(second) {}

    /// The channel as 1..16 for channel messages, 0 for system messages.
    NK::MIDI::TMIDIMessage ToMessage() const noexcept;
    static MIDIEvent FromMessage(NK::MIDI::TMIDIMessage message, std::uint32_t timeStamp) noexcept;
};

/// Channel 0..15; note and velocity 0..127; command 0x80 or 0x90.
struct NoteEvent : MIDIEvent {
    NoteEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
              std::uint8_t command)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(command | (channel & 0x0F)), note, velocity) {}
};
/// Control change.
struct CtrlEvent : MIDIEvent {
    CtrlEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t controller, std::uint8_t value)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(0xB0 | (channel & 0x0F)), controller, value) {}
};
/// Program change.
struct PatchEvent : MIDIEvent {
    PatchEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t program)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(0xC0 | (channel & 0x0F)), program, 0) {}
};
/// Pitch wheel; low and high 7 bits.
struct WheelEvent : MIDIEvent {
    WheelEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t low, std::uint8_t high)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(0xE0 | (channel & 0x0F)), low, high) {}
};
/// Polyphonic key pressure.
struct KATEvent : MIDIEvent {
    KATEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t note, std::uint8_t value)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(0xA0 | (channel & 0x0F)), note, value) {}
};
/// Channel pressure.
struct CATEvent : MIDIEvent {
    CATEvent(std::uint32_t timeStamp, std::uint8_t channel, std::uint8_t value)
        : MIDIEvent(timeStamp, static_cast<std::uint8_t>(0xD0 | (channel & 0x0F)), value, 0) {}
};
/// A moment without a message.
struct TimeEvent : MIDIEvent {
    explicit TimeEvent(std::uint32_t timeStamp) : MIDIEvent(timeStamp, 0, 0, 0) {}
};

}  // namespace LibMidi
