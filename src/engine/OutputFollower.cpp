#include "engine/OutputFollower.h"

namespace Kivora {

using LibMidi::MIDIEvent;
using LibMidi::Result;

Result OutputFollower::Write(const MIDIEvent* events, std::int32_t count) {
    if (events == nullptr || count < 1) {
        return port_.Write(events, count);
    }
    for (std::int32_t index = 0; index < count; ++index) {
        if (const Result result = port_.Write(events + index, 1); result != LibMidi::kSuccess) {
            return result;
        }
        const CLockGuard guard(lock_);
        sounding_.Follow(events[index].ToMessage());
    }
    return LibMidi::kSuccess;
}

LibMidi::OpenSounds OutputFollower::GetSounding() const {
    const CLockGuard guard(lock_);
    return sounding_;
}

void OutputFollower::EndSounding() {
    bool works = true;
    GetSounding().VisitEnds([&](NK::MIDI::TMIDIMessage message) {
        const MIDIEvent ending = MIDIEvent::FromMessage(message, 0);
        works = works && Write(&ending, 1) == LibMidi::kSuccess;
    });
}

}  // namespace Kivora
