// The pedals that a song and the player hold on the same channels. [owner]
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "midi/MIDIControllers.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

/// Sustain, sostenuto, soft and hold 2 of each of the sixteen channels: a pedal stands as the one of the two has it
/// that holds it most, and goes up with the last. Plain value; whoever owns one says what guards it.
class SharedPedals {
public:
    using Visit = std::function<void(NK::MIDI::TMIDIMessage message)>;

    static bool IsPedal(NK::MIDI::TMIDIMessage message) noexcept;

    /// What goes on of a movement of a pedal: the greater value of the two. While the song holds nothing, all of the
    /// player's goes on as it came.
    std::optional<NK::MIDI::TMIDIMessage> MoveByPlayer(NK::MIDI::TMIDIMessage message) noexcept;
    /// The same of the song; and nothing of what changes nothing while the player holds that pedal, as a sostenuto
    /// pedal that comes again catches other notes.
    std::optional<NK::MIDI::TMIDIMessage> MoveBySong(NK::MIDI::TMIDIMessage message) noexcept;

    bool IsHeldBySong(NK::MIDI::TMIDIMessage message) const noexcept;
    /// Any pedal, on a channel 1..16.
    bool IsAnyHeldByPlayer(std::uint8_t channel) const noexcept;
    /// Visits, at 0, the pedals that the song holds on a channel 1..16.
    void VisitLifted(std::uint8_t channel, const Visit& visit) const;

    /// All pedals of a channel 1..16 were lifted at one blow.
    void Lift(std::uint8_t channel) noexcept;
    void ForgetPlayer() noexcept { player_ = {}; }

private:
    static constexpr std::array<std::uint8_t, 4> kPedals{
        NK::MIDI::Controller::kSustain, NK::MIDI::Controller::kSostenuto, NK::MIDI::Controller::kSoftPedal,
        NK::MIDI::Controller::kHold2};
    using Values = std::array<std::array<std::uint8_t, kPedals.size()>, 16>;

    static std::size_t Find(NK::MIDI::TMIDIMessage message) noexcept;

    Values player_{};
    Values song_{};
};

}  // namespace Kivora
