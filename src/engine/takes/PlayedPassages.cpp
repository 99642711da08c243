#include "engine/takes/PlayedPassages.h"

#include <utility>

#include "engine/takes/ClosedTake.h"
#include "engine/takes/RecordedTrack.h"
#include "libmidi/OpenSounds.h"

namespace Kivora {

using LibMidi::CaptureStore;
using LibMidi::PlayedEvent;
using NK::MIDI::TMIDIMessage;

namespace {

bool IsNote(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOn || message.status == TMIDIMessage::kNoteOff;
}

bool BeginsNote(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOn && message.data2 != 0;
}

}  // namespace

PlayedPassages::PlayedPassages(LibMidi::PlayedHistory::Content content, PlayedGrid grid)
    : content_(std::move(content)), grid_(std::move(grid)) {
    LibMidi::OpenSounds sounding;
    std::int64_t lastNoteMs = 0;
    for (std::size_t i = 0; i < content_.events.size(); ++i) {
        const PlayedEvent& event = content_.events[i];
        if (BeginsNote(event.message)) {
            if (starts_.empty()) {
                starts_.push_back(i);
            } else if (event.timeMs - lastNoteMs >= kPauseMs && !sounding.IsAnyNote()) {
                starts_.resize(1);
                starts_.push_back(i);
            }
        }
        const bool wasSounding = sounding.IsAny();
        sounding.Follow(event.message);
        if (wasSounding || sounding.IsAny() || IsNote(event.message)) {
            end_ = i + 1;
        }
        if (IsNote(event.message)) {
            lastNoteMs = event.timeMs;
        }
    }
}

int PlayedPassages::GetLengthMs(Range range) const {
    return static_cast<int>(content_.events[end_ - 1].timeMs - content_.events[GetStart(range)].timeMs);
}

std::int64_t PlayedPassages::GetAgeMs(Range range) const {
    return content_.nowMs - content_.events[GetStart(range)].timeMs;
}

CaptureStore::View PlayedPassages::GetTake(Range range) const {
    const std::size_t start = GetStart(range);
    LibMidi::ChannelState state = content_.before;
    for (std::size_t i = 0; i < start; ++i) {
        state.Follow(content_.events[i].message);
    }
    CaptureStore take;
    std::uint32_t time = 0;
    const LibMidi::ChannelState::Visit append = [&](TMIDIMessage message) { take.Append({time, message}); };
    state.VisitAll(append);
    const std::int64_t startMs = content_.events[start].timeMs;
    for (std::size_t i = start; i < end_; ++i) {
        const PlayedEvent& event = content_.events[i];
        time = static_cast<std::uint32_t>(event.timeMs - startMs);
        append(event.message);
        if (event.message.status == TMIDIMessage::kSystemReset) {
            state.VisitReset(append);  // a file has no system reset
        }
        state.Follow(event.message);
    }
    return CloseTake(take.GetView(), static_cast<std::uint32_t>(content_.nowMs - startMs));
}

bool PlayedPassages::Save(Range range, const NK::CString& path, bool onGrid) const {
    const TakeGrid grid = onGrid ? grid_.GetFrom(content_.events[GetStart(range)].timeMs) : TakeGrid();
    return grid.IsEmpty() ? SaveRecordedTrack(GetTake(range), path) : SaveTrackOnGrid(GetTake(range), grid, path);
}

}  // namespace Kivora
