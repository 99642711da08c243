// A piece that can be played back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/SongParameters.h"
#include "libmidi/CaptureStore.h"
#include "libmidi/ChannelState.h"
#include "midi/reader/SMFContent.h"

namespace Kivora {

/// Channel messages in the order of their times. Immutable, so that threads may share it. [any]
class Song {
public:
    using Event = NK::MIDI::SMFEvent;
    using Visit = LibMidi::ChannelState::Visit;

    /// What comes later is left out.
    static constexpr std::int64_t kLongestUs = std::int64_t{6} * 60 * 60 * 1000 * 1000;

    /// Of what is whole in a file.
    explicit Song(NK::MIDI::SMFContent file);
    /// Of a take, with the times that it has in its file; empty where nothing of it can be played.
    explicit Song(const LibMidi::CaptureStore::View& take);

    bool IsEmpty() const { return events_.empty(); }
    const std::vector<Event>& GetEvents() const { return events_; }
    /// Not before the last event.
    std::int64_t GetLengthUs() const { return lengthUs_; }
    /// The first event that is not before that time; the number of events if all are.
    std::size_t FindEvent(std::int64_t timeUs) const;
    /// Visits what brings a device from wherever in the song, or from something else, to the state in which that event
    /// finds it, apart from notes: whatever the song sets anywhere has the value that was set last before the event, or
    /// the one that devices have after a reset. What the song never sets is not visited.
    void VisitState(std::size_t event, const Visit& visit) const;
    /// The same for a device that is to play something else: what the song sets anywhere has the value of `others`, and
    /// where they have set none the one that devices have after a reset.
    void VisitRest(const LibMidi::ChannelState& others, const Visit& visit) const;

private:
    void Begin(std::int64_t lengthUs);

    static constexpr std::size_t kEventsPerState = 8192;

    std::vector<Event> events_;
    std::vector<LibMidi::ChannelState> states_;  ///< before each kEventsPerState-th event
    std::int64_t lengthUs_ = 0;
    LibMidi::ChannelState rest_;  ///< of everything that is set anywhere, after a reset
    SongParameters parameters_;
};

}  // namespace Kivora
