// Which of the messages that wait together may leave together. [owner]
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "libmidi/MIDIEvent.h"

namespace LibMidi {

/// Gives each message a turn. What has one turn may leave in any order; a turn begins when all of the one before has
/// left. Two messages whose order matters never get the same turn, and the one that came first gets the earlier.
///
/// Order matters between messages of one channel, unless they are about different notes: those of a chord are for one
/// turn. Between channels it does not matter; a system message stands in order with all others.
///
/// Plain value, whoever owns one says what guards it. Each operation takes the same short time and allocates nothing.
class ArrivalOrder {
public:
    using Turn = std::uint64_t;

    /// The turn of a message that comes now: the present one or a later one.
    Turn Place(const MIDIEvent& event) noexcept {
        if (!event.IsOfChannel()) {
            return PlaceInOrderWithAll();
        }
        Channel& channel = ChannelOf(event);
        Turn turn = std::max(After(lastInOrderWithAll_), After(channel.lastOther));
        if (IsAboutNote(event)) {
            turn = std::max(turn, After(NoteOf(channel, event)));
        } else {
            turn = std::max(turn, After(channel.lastAboutNote));
        }
        Mark(event, turn);
        return turn;
    }
    /// As Place() for what stands in order with all others.
    Turn PlaceInOrderWithAll() noexcept {
        lastInOrderWithAll_ = After(last_);
        last_ = lastInOrderWithAll_;
        return last_;
    }
    /// A message leaves in the present turn without having been placed.
    void MarkPresent(const MIDIEvent& event) noexcept { Mark(event, present_); }

    Turn GetPresent() const noexcept { return present_; }
    /// All of the present turn has left.
    void BeginNextTurn() noexcept { ++present_; }
    /// Nothing waits any more, whatever turns were given.
    void Clear() noexcept { present_ = std::max(present_, last_) + 1; }

private:
    static constexpr int kChannels = 16;
    static constexpr int kNotes = 128;

    /// The latest turns given; one before the present says that nothing waits.
    struct Channel {
        Turn lastOther = 0;
        Turn lastAboutNote = 0;
        std::array<Turn, kNotes> note{};
    };

    static bool IsAboutNote(const MIDIEvent& event) noexcept {
        return event.status < NK::MIDI::TMIDIMessage::kControlChange;
    }
    static Turn& NoteOf(Channel& channel, const MIDIEvent& event) noexcept {
        return channel.note[NK::MIDI::TMIDIMessage::DataOf(event.data1)];
    }
    Channel& ChannelOf(const MIDIEvent& event) noexcept { return channels_[event.GetChannel()]; }
    Turn After(Turn turn) const noexcept { return std::max(present_, turn + 1); }

    void Mark(const MIDIEvent& event, Turn turn) noexcept {
        Channel& channel = ChannelOf(event);
        Turn& group = IsAboutNote(event) ? channel.lastAboutNote : channel.lastOther;
        group = std::max(group, turn);
        if (IsAboutNote(event)) {
            Turn& note = NoteOf(channel, event);
            note = std::max(note, turn);
        }
        last_ = std::max(last_, turn);
    }

    Turn present_ = 1;
    Turn last_ = 0;
    Turn lastInOrderWithAll_ = 0;
    std::array<Channel, kChannels> channels_{};
};

}  // namespace LibMidi
