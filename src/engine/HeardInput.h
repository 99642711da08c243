// What came in through the input port and was heard.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/values/HeldKeys.h"
#include "libmidi/MIDIEvent.h"
#include "libmidi/OpenSounds.h"

namespace Kivora {

/// Knows of each keyboard of the input what it holds, so that a note that several of them hold ends with the last, and
/// a pedal stands as the foot has it that holds it most; and whose the controllers' values are. What was taken out of
/// the stream is not followed. Plain value; whoever owns one says what guards it. [any]
class HeardInput {
public:
    /// What goes on of a message that was not taken out: not the end of a note that another keyboard holds, on whatever
    /// channel, as the voices play all channels alike; of a pedal that others hold too, the greatest value, where that
    /// is another one than before. Of one keyboard everything goes on as it came. Allocates nothing once warm.
    std::optional<NK::MIDI::TMIDIMessage> Follow(const LibMidi::MIDIEvent& event);
    /// Whether the keyboard that sent a message about a note holds that note, on that channel.
    bool Holds(const LibMidi::MIDIEvent& event) const;
    /// All notes have ended, and all pedals are up.
    void ForgetHeld();
    /// A pedal was lifted by others, and is held by nobody until it is pressed again.
    void ForgetPedal(std::uint8_t controller);
    /// Whether the value of the controller that a message moves came from the same keyboard and channel; from then on
    /// it is nobody's.
    bool TakeMoved(const LibMidi::MIDIEvent& event);

private:
    struct Keyboard {
        std::uint8_t source;
        LibMidi::OpenSounds held;
        std::array<std::uint8_t, HeldKeys::kPedals.size()> pedals{};  ///< their values
    };
    struct Mover {
        std::uint8_t source;
        std::uint8_t channel;
        bool operator==(const Mover&) const = default;
    };

    static std::size_t IndexOf(std::uint8_t pedal);
    static Mover MoverOf(const LibMidi::MIDIEvent& event);
    Keyboard& Find(std::uint8_t source);
    std::optional<NK::MIDI::TMIDIMessage> MovePedal(std::uint8_t source, NK::MIDI::TMIDIMessage message);

    std::vector<Keyboard> keyboards_;               ///< that have sent something
    std::array<std::optional<Mover>, 128> movers_;  ///< who has moved which controller last
};

}  // namespace Kivora
