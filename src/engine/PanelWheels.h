// The wheels and pedals that the panel has of its own. [owner]
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "midi/TMIDIMessage.h"

namespace Kivora {

/// What one of them moves. The sustain pedal, which the computer's keyboard has too, is CKivora::SetSustain().
enum class EWheel { kPitch, kModulation, kExpression, kSostenuto, kSoft };

/// Where they stand, as far as the panel has moved them and nobody else since. Plain value; whoever owns one says what
/// guards it.
class PanelWheels {
public:
    static constexpr std::array kAll{EWheel::kPitch, EWheel::kModulation, EWheel::kExpression, EWheel::kSostenuto,
                                     EWheel::kSoft};
    static constexpr int kPitchCentre = 0x2000;
    static constexpr int kPitchHighest = 0x3FFF;
    static constexpr int kHighest = 127;  ///< of the others; their lowest value, and the pitch's, is 0

    /// Where one stands that nobody moves: the pitch in its centre, expression at its highest value, the others at 0.
    static int RestOf(EWheel wheel) noexcept;
    /// The message that moves it, on the first channel.
    static NK::MIDI::TMIDIMessage ToMessage(EWheel wheel, int value) noexcept;

    struct Move {
        EWheel wheel;
        int value;

        friend bool operator==(const Move&, const Move&) = default;
    };
    /// What a message moves; empty for none of these.
    static std::optional<Move> FromMessage(NK::MIDI::TMIDIMessage message) noexcept;
    /// Whether a message brings all of them to rest: a system reset, a reset of the controllers.
    static bool IsReset(NK::MIDI::TMIDIMessage message) noexcept;

    int Get(EWheel wheel) const noexcept { return At(wheel).value_or(RestOf(wheel)); }
    bool IsAtRest(EWheel wheel) const noexcept { return Get(wheel) == RestOf(wheel); }
    /// Whether the panel moved it last, be it to its rest.
    bool IsMoved(EWheel wheel) const noexcept { return At(wheel).has_value(); }
    void Set(EWheel wheel, int value) noexcept { values_[static_cast<std::size_t>(wheel)] = value; }
    /// Sent by whomever: what it moves is not the panel's any more.
    void Follow(NK::MIDI::TMIDIMessage message) noexcept;

private:
    const std::optional<int>& At(EWheel wheel) const noexcept { return values_[static_cast<std::size_t>(wheel)]; }

    std::array<std::optional<int>, kAll.size()> values_;
};

}  // namespace Kivora
