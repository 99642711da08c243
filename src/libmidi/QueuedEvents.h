// The events that the player's queue holds. [owner]
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// Target port selectors. Any number above 0 is the output attached at that place, 0-based; any other value is the
/// first output.
enum TargetPort : int { kAllPorts = -1, kFirstPort = 0 };

/// A message with what the player needs to play it.
struct SynthEventBase {
    static constexpr int kDefaultPriority = 100;

    MIDIEvent event;
    int duration = 0;  ///< ms; above 0 a note-on is followed by its note-off
    int target = kFirstPort;
    int priority = kDefaultPriority;
    // Of a note with a duration also for its end.
    bool isWritten = true;     ///< else nothing but captured and remembered, and no duration counts
    bool isCaptured = true;    ///< by a capture that runs
    bool isRemembered = true;  ///< as what was played last

    SynthEventBase() = default;
    explicit SynthEventBase(const MIDIEvent& message, int targetPort = kFirstPort)
        : event(message), target(targetPort) {}

    /// Written, and neither captured nor remembered.
    static SynthEventBase Aside(NK::MIDI::TMIDIMessage message) {
        SynthEventBase event(MIDIEvent::FromMessage(message, 0));
        event.isCaptured = false;
        event.isRemembered = false;
        return event;
    }

    /// A note-off, or a note-on with velocity 0, which means the same (MIDI 1.0).
    bool IsNoteOff() const noexcept {
        return event.GetCommand() == NK::MIDI::TMIDIMessage::kNoteOff ||
               (event.GetCommand() == NK::MIDI::TMIDIMessage::kNoteOn && event.data2 == 0);
    }
    bool IsNote() const noexcept {
        return event.GetCommand() == NK::MIDI::TMIDIMessage::kNoteOff ||
               event.GetCommand() == NK::MIDI::TMIDIMessage::kNoteOn;
    }
};

/// A note-on with a duration, or a note-off where the velocity is 0. Channel 0..15; the time as MIDIEvent's.
struct NoteSynthEvent : SynthEventBase {
    NoteSynthEvent(std::uint8_t velocity, int durationMs, std::uint32_t time, std::uint8_t channel, std::uint8_t note,
                   int targetPort, int eventPriority)
        : SynthEventBase(
              NoteEvent(time, channel, NK::MIDI::TMIDIMessage::DataOf(note), NK::MIDI::TMIDIMessage::DataOf(velocity),
                        velocity > 0 ? NK::MIDI::TMIDIMessage::kNoteOn : NK::MIDI::TMIDIMessage::kNoteOff),
              targetPort) {
        duration = durationMs;
        priority = eventPriority;
    }
};

/// A run of messages that are sent together, in order. Its own `event` holds the time stamp only.
struct BlockSynthEvent : SynthEventBase {
    std::vector<MIDIEvent> events;

    BlockSynthEvent(std::uint32_t time, std::vector<MIDIEvent> messages, int targetPort)
        : SynthEventBase(TimeEvent(time), targetPort), events(std::move(messages)) {}
};

}  // namespace LibMidi
