#include "engine/PanelWheels.h"

#include <algorithm>

#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;

namespace {

// MIDI 1.0, table III; the pitch has a message of its own.
constexpr std::array<std::uint8_t, PanelWheels::kAll.size()> kControllers{
    0, NK::MIDI::Controller::kModulation, NK::MIDI::Controller::kExpression, NK::MIDI::Controller::kSostenuto,
    NK::MIDI::Controller::kSoftPedal};

std::uint8_t ControllerOf(EWheel wheel) {
    return kControllers[static_cast<std::size_t>(wheel)];
}

}  // namespace

int PanelWheels::RestOf(EWheel wheel) noexcept {
    switch (wheel) {
        case EWheel::kPitch:
            return kPitchCentre;
        case EWheel::kExpression:
            return kHighest;
        default:
            return 0;
    }
}

TMIDIMessage PanelWheels::ToMessage(EWheel wheel, int value) noexcept {
    TMIDIMessage message{TMIDIMessage::kControlChange, 1, ControllerOf(wheel),
                         static_cast<std::uint8_t>(std::clamp(value, 0, kHighest))};
    if (wheel == EWheel::kPitch) {
        message.SetPitchWheel(std::clamp(value, 0, kPitchHighest));
    }
    return message;
}

std::optional<PanelWheels::Move> PanelWheels::FromMessage(TMIDIMessage message) noexcept {
    if (message.status == TMIDIMessage::kPitchWheel) {
        return Move{EWheel::kPitch, message.GetPitchWheel()};
    }
    if (message.status == TMIDIMessage::kControlChange) {
        for (const EWheel wheel : kAll) {
            if (wheel != EWheel::kPitch && ControllerOf(wheel) == message.data1) {
                return Move{wheel, message.data2};
            }
        }
    }
    return std::nullopt;
}

bool PanelWheels::IsReset(TMIDIMessage message) noexcept {
    return message.status == TMIDIMessage::kSystemReset ||
           (message.status == TMIDIMessage::kControlChange && message.data1 == NK::MIDI::Controller::kResetControllers);
}

void PanelWheels::Follow(TMIDIMessage message) noexcept {
    if (IsReset(message)) {
        for (const EWheel wheel : kAll) {
            if (IsMoved(wheel)) {
                Set(wheel, RestOf(wheel));  // of which an output that is lost at present has to be told
            }
        }
    } else if (const std::optional<Move> move = FromMessage(message)) {
        values_[static_cast<std::size_t>(move->wheel)].reset();
    }
}

}  // namespace Kivora
