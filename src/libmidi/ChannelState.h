// What a stream of messages has set on the sixteen channels, apart from notes. [owner]
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "midi/MIDIControllers.h"
#include "midi/TMIDIMessage.h"

namespace LibMidi {

/// Follows programs, controllers, the first three registered parameters (bend range, fine and coarse tuning), channel
/// pressure and the wheel. Plain value; whoever owns one says what guards it.
class ChannelState {
public:
    using Visit = std::function<void(NK::MIDI::TMIDIMessage message)>;

    void Follow(NK::MIDI::TMIDIMessage message) noexcept;
    /// Of everything that is set here, what a device has there after a reset.
    ChannelState GetReset() const noexcept;
    /// Takes from `other` what is not set here.
    void TakeUnsetFrom(const ChannelState& other) noexcept;
    /// Takes from `other` what is set here and there.
    void ReplaceSetFrom(const ChannelState& other) noexcept;
    /// Visits, one by one, what "reset all controllers" does on a channel 1..16, but for the pressures of keys.
    static void VisitControllersAtRest(std::uint8_t channel, const Visit& visit);
    /// Visits what brings a device that was reset to this state: of each channel the banks before the program, and what
    /// was never set not at all.
    void VisitAll(const Visit& visit) const;
    /// Visits what brings a device in this state to that of one that was reset: "reset all controllers", and whatever
    /// was set at what it is after a reset.
    void VisitReset(const Visit& visit) const;

private:
    static constexpr std::uint8_t kUnset = 0xFF;
    static constexpr std::size_t kControllers = NK::MIDI::Controller::kFirstMode;
    static constexpr std::size_t kParameters = 3;

    struct Channel {
        Channel() noexcept { controllers.fill(kUnset); }
        void Control(std::uint8_t number, std::uint8_t value) noexcept;
        void ResetControllers() noexcept;
        void TakeUnsetFrom(const Channel& other) noexcept;
        void ReplaceSetFrom(const Channel& other) noexcept;
        bool HasParameter() const noexcept { return parameterHigh == 0 && parameterLow < kParameters; }
        bool operator==(const Channel&) const = default;

        std::array<std::uint8_t, kControllers> controllers;
        std::array<std::array<std::uint8_t, 2>, kParameters> parameters{
            {{kUnset, kUnset}, {kUnset, kUnset}, {kUnset, kUnset}}};      ///< coarse and fine
        std::uint8_t parameterHigh = NK::MIDI::Controller::kNoParameter;  ///< what kDataEntry sets now
        std::uint8_t parameterLow = NK::MIDI::Controller::kNoParameter;
        std::uint8_t program = kUnset;
        std::uint8_t pressure = kUnset;
        std::uint8_t wheelLow = kUnset;
        std::uint8_t wheelHigh = kUnset;
    };

    static void VisitChannel(const Channel& channel, std::uint8_t number, const Visit& visit);
    /// What is set, at what it is after a reset.
    static Channel AtReset(const Channel& channel) noexcept;

    std::array<Channel, 16> channels_;
};

}  // namespace LibMidi
