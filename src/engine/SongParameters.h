// The parameters that a song sets by their numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "midi/MIDIControllers.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

/// What the controllers 98 to 101 choose and "data entry" sets, but for the registered ones that LibMidi::ChannelState
/// follows: at each event of a song, and at rest where it is known what that is. Plain value, read by any thread once
/// it has followed a song. [any]
class SongParameters {
public:
    using Visit = std::function<void(NK::MIDI::TMIDIMessage message)>;

    /// Messages in the order of the song, with their numbers, which grow.
    void Follow(NK::MIDI::TMIDIMessage message, std::size_t event);
    /// Visits what brings each parameter that is set anywhere to its value before that event, or to its rest, and what
    /// is chosen there.
    void VisitState(std::size_t event, const Visit& visit) const;
    /// Visits what brings all of them to rest; then none is chosen on a channel on which the song has chosen any.
    void VisitRest(const Visit& visit) const { VisitState(0, visit); }

private:
    struct Number {
        bool isRegistered = true;
        std::uint8_t high = NK::MIDI::Controller::kNoParameter;
        std::uint8_t low = NK::MIDI::Controller::kNoParameter;
        friend bool operator<(const Number& a, const Number& b) {
            return std::tie(a.isRegistered, a.high, a.low) < std::tie(b.isRegistered, b.high, b.low);
        }
    };
    using Parameter = std::pair<std::uint8_t, Number>;  ///< of a channel 1..16
    /// Data, high and low seven bits; kUnset for what was not set.
    using Data = std::array<std::uint8_t, 2>;
    static constexpr std::uint8_t kUnset = 0xFF;

    /// What holds from an event on.
    template <class Value>
    struct Change {
        std::size_t event;
        Value value;
    };
    template <class Value>
    using Changes = std::vector<Change<Value>>;

    template <class Value>
    static Value FindBefore(const Changes<Value>& changes, std::size_t event, const Value& none);
    static Data RestOf(const Number& number);
    static void Choose(std::uint8_t channel, const Number& number, const Visit& visit);

    std::map<std::uint8_t, Changes<Number>> chosen_;  ///< by channel 1..16
    std::map<Parameter, Changes<Data>> set_;
};

}  // namespace Kivora
