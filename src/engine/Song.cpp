#include "engine/Song.h"

#include <algorithm>
#include <utility>

#include "engine/takes/RecordedTrack.h"
#include "midi/MIDIControllers.h"

namespace Kivora {

using NK::MIDI::CMIDIMessageX;
using NK::MIDI::TMIDIMessage;

namespace {

bool ResetsControllers(TMIDIMessage message) {
    return message.status == TMIDIMessage::kControlChange && message.data1 == NK::MIDI::Controller::kResetControllers;
}

}  // namespace

Song::Song(NK::MIDI::SMFContent file) : events_(std::move(file.events)) {
    Begin(file.lengthUs);
}

Song::Song(const LibMidi::CaptureStore::View& take) {
    VisitRecordedTrack(take, [this](const CMIDIMessageX& event) {
        if (event.kind == CMIDIMessageX::kShort) {
            const auto ms = static_cast<std::uint32_t>(std::max(event.time, 0));
            events_.push_back({std::int64_t{ms} * 1000, ms, 0, event.message});
        }
    });
    if (events_.size() == 1) {
        events_.clear();  // the message that closes the track, and nothing before it
    }
    Begin(0);
}

void Song::Begin(std::int64_t lengthUs) {
    const auto isLate = [](const Event& event) { return event.timeUs > kLongestUs; };
    events_.erase(std::find_if(events_.begin(), events_.end(), isLate), events_.end());
    lengthUs_ = std::min(std::max(lengthUs, IsEmpty() ? 0 : events_.back().timeUs), kLongestUs);
    LibMidi::ChannelState ever;
    LibMidi::ChannelState state;
    for (std::size_t i = 0; i < events_.size(); ++i) {
        if (i % kEventsPerState == 0) {
            states_.push_back(state);
        }
        const TMIDIMessage message = events_[i].message;
        state.Follow(message);
        parameters_.Follow(message, i);
        if (!ResetsControllers(message)) {  // what was set before stays set here
            ever.Follow(message);
        }
    }
    states_.push_back(state);
    rest_ = ever.GetReset();
}

std::size_t Song::FindEvent(std::int64_t timeUs) const {
    const auto found = std::lower_bound(events_.begin(), events_.end(), timeUs,
                                        [](const Event& event, std::int64_t sought) { return event.timeUs < sought; });
    return static_cast<std::size_t>(found - events_.begin());
}

void Song::VisitState(std::size_t event, const Visit& visit) const {
    const std::size_t known = std::min(event / kEventsPerState, states_.size() - 1);
    LibMidi::ChannelState state = states_[known];
    for (std::size_t i = known * kEventsPerState; i < event; ++i) {
        state.Follow(events_[i].message);
    }
    state.TakeUnsetFrom(rest_);
    state.VisitAll(visit);
    parameters_.VisitState(event, visit);
}

void Song::VisitRest(const LibMidi::ChannelState& others, const Visit& visit) const {
    LibMidi::ChannelState rest = rest_;
    rest.ReplaceSetFrom(others);
    parameters_.VisitRest(visit);
    rest.VisitAll(visit);
}

}  // namespace Kivora
