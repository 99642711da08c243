// What came in through the input port and was heard.
#pragma once

#include <bitset>
#include <cstdint>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "libmidi/OpenSounds.h"

namespace Kivora {

/// Knows of each keyboard of the input what it holds, so that a note that several of them hold ends with the last; and
/// which controllers they have moved. What was taken out of the stream is not followed. Plain value; whoever owns one
/// says what guards it. [any]
class HeardInput {
public:
    /// Whether a message that was not taken out goes on: not the end of a note that another keyboard holds, on whatever
    /// channel, as the voices play all channels alike. Of one keyboard each end goes on. Allocates nothing once warm.
    bool Follow(const LibMidi::MIDIEvent& event);
    /// Whether the keyboard that sent a message about a note holds that note, on that channel.
    bool Holds(const LibMidi::MIDIEvent& event) const;
    /// All notes have ended.
    void ForgetNotes();
    /// Whether the controller was moved since the last time that this was asked about it.
    bool TakeMoved(std::uint8_t controller);

private:
    struct Keyboard {
        std::uint8_t source;
        LibMidi::OpenSounds held;
    };

    Keyboard& Find(std::uint8_t source);

    std::vector<Keyboard> keyboards_;  ///< that have sent something
    std::bitset<128> moved_;
};

}  // namespace Kivora
