// A knob, button, key or pad of a MIDI keyboard, by what it sends. [owner]
#pragma once

#include <cstdint>
#include <optional>

#include "libmidi/MIDIEvent.h"

namespace Kivora {

/// Plain value.
struct MidiControl {
    enum class Kind : std::uint8_t { kController, kNote, kProgram };

    Kind kind = Kind::kController;
    std::uint8_t channel = 0;  ///< 0..15
    std::uint8_t number = 0;   ///< controller, note or program, 0..127

    bool operator==(const MidiControl&) const = default;

    /// What sends notes, their ends and pressures, controllers and programs; nothing for other messages.
    static std::optional<MidiControl> Of(const LibMidi::MIDIEvent& event);
    /// Whether its messages are needed for playing: pedals that hold notes, resets and channel modes (MIDI 1.0, tables
    /// III and IV). Nothing else can be done with it.
    bool IsReserved() const;
};

}  // namespace Kivora
