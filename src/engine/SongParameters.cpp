#include "engine/SongParameters.h"

#include <algorithm>
#include <iterator>

namespace Kivora {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

// Registered; ChannelState has those below.
constexpr std::uint8_t kTuningProgram = 3;
constexpr std::uint8_t kTuningBank = 4;
constexpr std::uint8_t kModulationRange = 5;
// The high numbers of unregistered ones that rest in the middle: of a part, by GS and XG, and of a sound font.
constexpr std::uint8_t kOfPart = 1;
constexpr std::uint8_t kOfSoundFont = 120;
constexpr std::uint8_t kMiddle = 64;

}  // namespace

template <class Value>
Value SongParameters::FindBefore(const Changes<Value>& changes, std::size_t event, const Value& none) {
    const auto next =
        std::lower_bound(changes.begin(), changes.end(), event,
                         [](const Change<Value>& change, std::size_t sought) { return change.event < sought; });
    return next == changes.begin() ? none : std::prev(next)->value;
}

SongParameters::Data SongParameters::RestOf(const Number& number) {
    if (!number.isRegistered) {
        const bool isKnown = number.high == kOfPart || number.high == kOfSoundFont;
        return isKnown ? Data{kMiddle, 0} : Data{kUnset, kUnset};
    }
    if (number.high == 0 && (number.low == kTuningProgram || number.low == kTuningBank)) {
        return {0, kUnset};
    }
    return number.high == 0 && number.low == kModulationRange ? Data{0, kMiddle} : Data{kUnset, kUnset};
}

void SongParameters::Follow(TMIDIMessage message, std::size_t event) {
    if (message.status != TMIDIMessage::kControlChange) {
        return;
    }
    const bool isData = message.data1 == Controller::kDataEntry || message.data1 == Controller::kDataEntryLow;
    const bool isNumber = message.data1 >= Controller::kUnregisteredLow && message.data1 <= Controller::kRegistered;
    const bool isReset = message.data1 == Controller::kResetControllers && chosen_.contains(message.channel);
    if (!isData && !isNumber && !isReset) {
        return;
    }
    Number number = FindBefore(chosen_[message.channel], event, Number());
    if (isData) {
        const bool isOfState = number.isRegistered && (number.high != 0 || number.low < kTuningProgram);
        if (!isOfState) {
            Changes<Data>& changes = set_[{message.channel, number}];
            Data data = FindBefore(changes, event, Data{kUnset, kUnset});
            data[message.data1 == Controller::kDataEntry ? 0 : 1] = message.data2;
            changes.push_back({event, data});
        }
        return;
    }
    if (isNumber) {
        const bool isRegistered = message.data1 >= Controller::kRegisteredLow;
        if (number.isRegistered != isRegistered) {
            number = {.isRegistered = isRegistered};
        }
        const bool isHigh = message.data1 == Controller::kRegistered || message.data1 == Controller::kUnregistered;
        (isHigh ? number.high : number.low) = message.data2;
    } else {
        number = {};
    }
    chosen_[message.channel].push_back({event, number});
}

void SongParameters::VisitState(std::size_t event, const Visit& visit) const {
    for (const auto& [parameter, changes] : set_) {
        const auto& [channel, number] = parameter;
        const Data data = FindBefore(changes, event, RestOf(number));
        if (data == Data{kUnset, kUnset}) {
            continue;
        }
        Choose(channel, number, visit);
        if (data[1] != kUnset) {  // first, as devices take both with the high one
            visit({TMIDIMessage::kControlChange, channel, Controller::kDataEntryLow, data[1]});
        }
        if (data[0] != kUnset) {
            visit({TMIDIMessage::kControlChange, channel, Controller::kDataEntry, data[0]});
        }
    }
    for (const auto& [channel, changes] : chosen_) {
        if (!changes.empty()) {
            Choose(channel, FindBefore(changes, event, Number()), visit);
        }
    }
}

void SongParameters::Choose(std::uint8_t channel, const Number& number, const Visit& visit) {
    visit({TMIDIMessage::kControlChange, channel,
           number.isRegistered ? Controller::kRegistered : Controller::kUnregistered, number.high});
    visit({TMIDIMessage::kControlChange, channel,
           number.isRegistered ? Controller::kRegisteredLow : Controller::kUnregisteredLow, number.low});
}

}  // namespace Kivora
