// What a stream of messages has begun and not ended. [owner]
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>

#include "midi/MIDIControllers.h"
#include "midi/MIDINotes.h"
#include "midi/TMIDIMessage.h"

namespace LibMidi {

/// Follows the notes and the pedals (sustain, sostenuto, soft, hold 2) of each of the sixteen channels. A note that was
/// struck twice is ended by one note-off, as synthesizers have it. Plain value; whoever owns one says what guards it.
class OpenSounds {
public:
    using Visit = std::function<void(NK::MIDI::TMIDIMessage message)>;

    void Follow(NK::MIDI::TMIDIMessage message) noexcept;
    /// What another stream has begun too.
    void Add(const OpenSounds& others) noexcept;
    bool IsAny() const noexcept;
    bool IsAnyNote() const noexcept;
    /// On any channel, or on one of 0..15; false for a note beyond 127.
    bool IsNoteOpen(std::uint8_t note) const noexcept;
    bool IsNoteOpen(std::uint8_t note, int channel) const noexcept;
    /// Whether the message lifts a pedal that is not down here.
    bool LiftsNothing(NK::MIDI::TMIDIMessage message) const noexcept;
    /// Visits what says by itself, note by note and pedal by pedal, what `message` ends of these at one blow: a
    /// channel's notes (controllers 120 and 123 to 127) or pedals (121), or everything (System Reset).
    void VisitEndedBy(NK::MIDI::TMIDIMessage message, const Visit& visit) const;
    /// Visits the note-offs, then the pedals at 0, that end all of it.
    void VisitEnds(const Visit& visit) const;

private:
    static constexpr int kChannels = 16;
    static constexpr std::array<std::uint8_t, 4> kPedals{
        NK::MIDI::Controller::kSustain, NK::MIDI::Controller::kSostenuto, NK::MIDI::Controller::kSoftPedal,
        NK::MIDI::Controller::kHold2};

    struct Channel {
        std::bitset<NK::MIDI::kNoteCount> notes;
        std::bitset<kPedals.size()> pedals;
    };

    /// The number of the pedal that a control change moves; kPedals.size() for all other messages.
    static std::size_t FindPedal(NK::MIDI::TMIDIMessage message) noexcept;
    void VisitNotes(int channel, const Visit& visit) const;
    void VisitPedals(int channel, const Visit& visit) const;

    std::array<Channel, kChannels> channels_{};
};

}  // namespace LibMidi
