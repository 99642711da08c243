// Where effects send what they play.
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace NK::MIDI {

/// A destination for messages and for notes with a duration. Times are in the implementing output's units.
class CMIDIOutputBase {
public:
    virtual void SendMessage(TMIDIMessage message, std::uint32_t time) = 0;
    /// Channel 0..15. A note-on at `time` and its note-off after `duration`.
    virtual void PlayNote(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity, int duration,
                          std::uint32_t time) = 0;
    virtual ~CMIDIOutputBase() = default;
};

}  // namespace NK::MIDI
