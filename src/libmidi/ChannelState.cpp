#include "libmidi/ChannelState.h"

#include <algorithm>

namespace LibMidi {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

/// What "reset all controllers" brings to rest, by RP-015.
constexpr std::array<std::uint8_t, 7> kResting{Controller::kModulation, Controller::kExpression, Controller::kSustain,
                                               Controller::kPortamento, Controller::kSostenuto,  Controller::kSoftPedal,
                                               Controller::kHold2};

/// Of controllers that are not 0 after a reset; the reverb's by General MIDI level 2, the rest as usual.
constexpr std::uint8_t AfterReset(std::size_t number) {
    switch (number) {
        case Controller::kVolume:
            return 100;
        case Controller::kExpression:
            return 127;
        case Controller::kReverb:
            return 40;
        case Controller::kBalance:
        case Controller::kPan:
            return 64;
        default:
            return number >= Controller::kFirstSound && number <= Controller::kLastSound ? 64 : 0;
    }
}

/// The bend range, two semitones, and the tunings' middle.
constexpr std::array<std::array<std::uint8_t, 2>, 3> kParametersAfterReset{{{2, 0}, {64, 0}, {64, 0}}};

/// Controllers that say what others mean, or where they belong.
bool IsSelecting(std::size_t number) {
    return number == Controller::kBank || number == Controller::kBankLow || number == Controller::kDataEntry ||
           number == Controller::kDataEntryLow ||
           (number >= Controller::kDataIncrement && number <= Controller::kRegistered);
}

}  // namespace

void ChannelState::Channel::ResetControllers() noexcept {
    for (const std::uint8_t number : kResting) {
        controllers[number] = kUnset;
    }
    parameterHigh = Controller::kNoParameter;
    parameterLow = Controller::kNoParameter;
    pressure = kUnset;
    wheelLow = kUnset;
    wheelHigh = kUnset;
}

void ChannelState::Channel::Control(std::uint8_t number, std::uint8_t value) noexcept {
    if (number == Controller::kResetControllers) {
        ResetControllers();
    }
    if (number >= kControllers) {
        return;
    }
    controllers[number] = value;
    if (number == Controller::kRegistered) {
        parameterHigh = value;
    } else if (number == Controller::kRegisteredLow) {
        parameterLow = value;
    } else if (number == Controller::kUnregistered || number == Controller::kUnregisteredLow) {
        parameterHigh = Controller::kNoParameter;
    } else if (HasParameter() && (number == Controller::kDataEntry || number == Controller::kDataEntryLow)) {
        parameters[parameterLow][number == Controller::kDataEntry ? 0 : 1] = value;
    }
}

void ChannelState::Follow(TMIDIMessage message) noexcept {
    if (message.status == TMIDIMessage::kSystemReset) {
        channels_ = {};
    }
    if (message.status >= TMIDIMessage::kFirstSystemStatus || message.channel < 1 ||
        message.channel > channels_.size() || message.data1 >= 128) {
        return;
    }
    Channel& channel = channels_[message.channel - 1U];
    switch (message.status) {
        case TMIDIMessage::kControlChange:
            return channel.Control(message.data1, message.data2);
        case TMIDIMessage::kProgramChange:
            channel.program = message.data1;
            break;
        case TMIDIMessage::kChannelPressure:
            channel.pressure = message.data1;
            break;
        case TMIDIMessage::kPitchWheel:
            channel.wheelLow = message.data1;
            channel.wheelHigh = message.data2;
            break;
        default:
            break;
    }
}

void ChannelState::Channel::TakeUnsetFrom(const Channel& other) noexcept {
    const auto take = [](std::uint8_t& value, std::uint8_t otherValue) {
        value = value == kUnset ? otherValue : value;
    };
    for (std::size_t number = 0; number < kControllers; ++number) {
        take(controllers[number], other.controllers[number]);
    }
    for (std::size_t parameter = 0; parameter < kParameters; ++parameter) {
        take(parameters[parameter][0], other.parameters[parameter][0]);
        take(parameters[parameter][1], other.parameters[parameter][1]);
    }
    take(program, other.program);
    take(pressure, other.pressure);
    if (wheelHigh == kUnset) {
        wheelLow = other.wheelLow;
        wheelHigh = other.wheelHigh;
    }
}

void ChannelState::Channel::ReplaceSetFrom(const Channel& other) noexcept {
    const auto replace = [](std::uint8_t& value, std::uint8_t otherValue) {
        value = value == kUnset || otherValue == kUnset ? value : otherValue;
    };
    for (std::size_t number = 0; number < kControllers; ++number) {
        replace(controllers[number], other.controllers[number]);
    }
    for (std::size_t parameter = 0; parameter < kParameters; ++parameter) {
        replace(parameters[parameter][0], other.parameters[parameter][0]);
        replace(parameters[parameter][1], other.parameters[parameter][1]);
    }
    replace(program, other.program);
    replace(pressure, other.pressure);
    replace(wheelLow, other.wheelLow);
    replace(wheelHigh, other.wheelHigh);
    const bool isAnyParameter = std::any_of(parameters.begin(), parameters.end(), [](const auto& parameter) {
        return parameter[0] != kUnset || parameter[1] != kUnset;
    });
    if (isAnyParameter) {
        parameterHigh = other.parameterHigh;
        parameterLow = other.parameterLow;
    }
}

void ChannelState::ReplaceSetFrom(const ChannelState& other) noexcept {
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        channels_[i].ReplaceSetFrom(other.channels_[i]);
    }
}

void ChannelState::TakeUnsetFrom(const ChannelState& other) noexcept {
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        channels_[i].TakeUnsetFrom(other.channels_[i]);
    }
}

void ChannelState::VisitAll(const Visit& visit) const {
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        VisitChannel(channels_[i], static_cast<std::uint8_t>(i + 1), visit);
    }
}

ChannelState::Channel ChannelState::AtReset(const Channel& channel) noexcept {
    Channel reset;
    const auto bring = [](std::uint8_t& to, std::uint8_t from, std::uint8_t value) {
        to = from == kUnset ? kUnset : value;
    };
    for (std::size_t number = 0; number < kControllers; ++number) {
        bring(reset.controllers[number], channel.controllers[number], AfterReset(number));
    }
    for (std::size_t parameter = 0; parameter < kParameters; ++parameter) {
        for (std::size_t part = 0; part < 2; ++part) {
            bring(reset.parameters[parameter][part], channel.parameters[parameter][part],
                  kParametersAfterReset[parameter][part]);
        }
    }
    bring(reset.program, channel.program, 0);
    bring(reset.pressure, channel.pressure, 0);
    constexpr std::uint8_t kWheelMiddle = TMIDIMessage::kPitchWheelCentre >> 7;
    bring(reset.wheelLow, channel.wheelLow, 0);
    bring(reset.wheelHigh, channel.wheelHigh, kWheelMiddle);
    return reset;
}

ChannelState ChannelState::GetReset() const noexcept {
    ChannelState reset;
    std::transform(channels_.begin(), channels_.end(), reset.channels_.begin(), AtReset);
    return reset;
}

void ChannelState::VisitReset(const Visit& visit) const {
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        const Channel& channel = channels_[i];
        if (!(channel == Channel())) {
            const auto number = static_cast<std::uint8_t>(i + 1);
            visit({TMIDIMessage::kControlChange, number, Controller::kResetControllers, 0});
            VisitChannel(AtReset(channel), number, visit);
        }
    }
}

void ChannelState::VisitControllersAtRest(std::uint8_t channel, const Visit& visit) {
    for (const std::uint8_t number : kResting) {
        visit({TMIDIMessage::kControlChange, channel, number, AfterReset(number)});
    }
    visit({TMIDIMessage::kControlChange, channel, Controller::kRegistered, Controller::kNoParameter});
    visit({TMIDIMessage::kControlChange, channel, Controller::kRegisteredLow, Controller::kNoParameter});
    visit({TMIDIMessage::kChannelPressure, channel, 0, 0});
    TMIDIMessage wheel{TMIDIMessage::kPitchWheel, channel, 0, 0};
    wheel.SetPitchWheel(TMIDIMessage::kPitchWheelCentre);
    visit(wheel);
}

void ChannelState::VisitChannel(const Channel& channel, std::uint8_t number, const Visit& visit) {
    const auto control = [&](std::size_t controller, std::uint8_t value) {
        if (value != kUnset) {
            visit({TMIDIMessage::kControlChange, number, static_cast<std::uint8_t>(controller), value});
        }
    };
    control(Controller::kBank, channel.controllers[Controller::kBank]);
    control(Controller::kBankLow, channel.controllers[Controller::kBankLow]);
    if (channel.program != kUnset) {
        visit({TMIDIMessage::kProgramChange, number, channel.program, 0});
    }
    for (std::size_t controller = 0; controller < kControllers; ++controller) {
        if (!IsSelecting(controller)) {
            control(controller, channel.controllers[controller]);
        }
    }
    bool anyParameter = false;
    for (std::size_t parameter = 0; parameter < kParameters; ++parameter) {
        const auto& [coarse, fine] = channel.parameters[parameter];
        if (coarse != kUnset || fine != kUnset) {
            anyParameter = true;
            control(Controller::kRegistered, 0);
            control(Controller::kRegisteredLow, static_cast<std::uint8_t>(parameter));
            control(Controller::kDataEntry, coarse);
            control(Controller::kDataEntryLow, fine);
        }
    }
    if (anyParameter || channel.HasParameter()) {
        control(Controller::kRegistered, channel.parameterHigh);
        control(Controller::kRegisteredLow, channel.parameterLow);
    }
    if (channel.pressure != kUnset) {
        visit({TMIDIMessage::kChannelPressure, number, channel.pressure, 0});
    }
    if (channel.wheelHigh != kUnset) {
        visit({TMIDIMessage::kPitchWheel, number, channel.wheelLow, channel.wheelHigh});
    }
}

}  // namespace LibMidi
