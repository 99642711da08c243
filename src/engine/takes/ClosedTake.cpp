#include "engine/takes/ClosedTake.h"

#include <algorithm>

#include "libmidi/OpenSounds.h"

namespace Kivora {

using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::MIDI::TMIDIMessage;

CaptureStore::View CloseTake(const CaptureStore::View& captured, std::uint32_t endMs) {
    CaptureStore closed;
    LibMidi::OpenSounds open;
    std::uint32_t time = 0;
    const LibMidi::OpenSounds::Visit append = [&](TMIDIMessage message) { closed.Append({time, message}); };
    captured.Visit(0, [&](const CapturedEvent& event) {
        time = event.time;
        open.VisitEndedBy(event.message, append);
        open.Follow(event.message);
        closed.Append(event);
    });
    time = std::max(time, endMs);
    open.VisitEnds(append);
    return closed.GetView();
}

}  // namespace Kivora
