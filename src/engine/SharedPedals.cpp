#include "engine/SharedPedals.h"

#include <algorithm>
#include <utility>

namespace Kivora {

using NK::MIDI::TMIDIMessage;

std::size_t SharedPedals::Find(TMIDIMessage message) noexcept {
    return static_cast<std::size_t>(std::find(kPedals.begin(), kPedals.end(), message.data1) - kPedals.begin());
}

bool SharedPedals::IsPedal(TMIDIMessage message) noexcept {
    return message.status == TMIDIMessage::kControlChange && Find(message) < kPedals.size();
}

std::optional<TMIDIMessage> SharedPedals::MoveByPlayer(TMIDIMessage message) noexcept {
    const std::size_t pedal = Find(message);
    const std::uint8_t before = std::exchange(player_[message.channel - 1U][pedal], message.data2);
    const std::uint8_t song = song_[message.channel - 1U][pedal];
    if (message.data2 < song && before <= song) {
        return std::nullopt;
    }
    message.data2 = std::max(message.data2, song);
    return message;
}

std::optional<TMIDIMessage> SharedPedals::MoveBySong(TMIDIMessage message) noexcept {
    const std::size_t pedal = Find(message);
    const std::uint8_t before = std::exchange(song_[message.channel - 1U][pedal], message.data2);
    const std::uint8_t player = player_[message.channel - 1U][pedal];
    if (player != 0 && std::max(before, player) == std::max(message.data2, player)) {
        return std::nullopt;
    }
    message.data2 = std::max(message.data2, player);
    return message;
}

bool SharedPedals::IsHeldBySong(TMIDIMessage message) const noexcept {
    return song_[message.channel - 1U][Find(message)] != 0;
}

bool SharedPedals::IsAnyHeldByPlayer(std::uint8_t channel) const noexcept {
    const auto& values = player_[channel - 1U];
    return std::any_of(values.begin(), values.end(), [](std::uint8_t value) { return value != 0; });
}

void SharedPedals::VisitLifted(std::uint8_t channel, const Visit& visit) const {
    const auto values = song_[channel - 1U];  // whoever is told may lift them
    for (std::size_t pedal = 0; pedal < kPedals.size(); ++pedal) {
        if (values[pedal] != 0) {
            visit({TMIDIMessage::kControlChange, channel, kPedals[pedal], 0});
        }
    }
}

void SharedPedals::Lift(std::uint8_t channel) noexcept {
    player_[channel - 1U] = {};
    song_[channel - 1U] = {};
}

}  // namespace Kivora
