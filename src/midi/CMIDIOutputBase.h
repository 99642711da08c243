// Where effects send what they play. [gui] [tick] [input]
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace NK::MIDI {

/// A destination for messages and for notes with a duration. Times and durations are in the implementing output's
/// units: of the player's they are milliseconds.
class CMIDIOutputBase {
public:
    virtual void SendMessage(TMIDIMessage message, std::uint32_t time) = 0;
    /// Channel 0..15, unlike a message's own 1..16. A note-on at `time` and its note-off after `duration`.
    virtual void PlayNote(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity, int duration,
                          std::uint32_t time) = 0;
    virtual ~CMIDIOutputBase() = default;
};

}  // namespace NK::MIDI
