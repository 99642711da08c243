#include "engine/RecordedTrack.h"

#include <optional>

#include "midi/SMFWriter.h"
#include "nk/nk_atomic_save.h"
#include "nk/nk_file_failure.h"

namespace Kivora {

using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::MIDI::CMIDIMessageX;
using NK::MIDI::TMIDIMessage;

namespace {

constexpr const char* kTexts[] = {
    "File created using Kivora LX 1.2",
    "https://brennholt.example/kivora/en/",
    "Copyright (C) 2010 Brennholt. All rights reserved.",
    "https://brennholt.example/kivora/ru/",
};
constexpr std::int32_t kNoTime = -1;
constexpr std::int32_t kFirstNoteMs = 100;
constexpr TMIDIMessage kAllNotesOff{0xB0, 1, 123, 0};

bool IsNote(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOff || message.status == TMIDIMessage::kNoteOn;
}

bool HasRoom(TMIDIMessage message) {
    return message.status < TMIDIMessage::kFirstSystemStatus;
}

/// The time of the first note, where there is one.
std::optional<std::uint32_t> FindFirstNote(const CaptureStore::View& captured) {
    std::optional<std::uint32_t> found;
    captured.Visit(0, [&found](const CapturedEvent& event) {
        if (!found && IsNote(event.message)) {
            found = event.time;
        }
    });
    return found;
}

}  // namespace

void VisitRecordedTrack(const CaptureStore::View& captured, const std::function<void(const CMIDIMessageX&)>& visit,
                        TrackBegin begin) {
    const std::optional<std::uint32_t> firstNote =
        begin == TrackBegin::kFirstNote ? FindFirstNote(captured) : std::nullopt;
    bool isBeforeFirstNote = firstNote.has_value();
    const auto align = [&](std::int32_t time) {
        if (!firstNote) {
            return time;
        }
        return isBeforeFirstNote ? 0 : NK::MIDI::ShiftTime(time, std::int64_t{kFirstNoteMs} - *firstNote);
    };
    CMIDIMessageX out;
    for (const char* text : kTexts) {
        out.SetText(CMIDIMessageX::kText, text, align(kNoTime));
        visit(out);
    }
    std::int32_t last = kNoTime;
    captured.Visit(0, [&](const CapturedEvent& event) {
        if (HasRoom(event.message)) {
            isBeforeFirstNote = isBeforeFirstNote && !IsNote(event.message);
            last = static_cast<std::int32_t>(event.time);
            out.SetShort(event.message, align(last));
            visit(out);
        }
    });
    out.SetShort(kAllNotesOff, align(last));
    visit(out);
}

bool SaveRecordedTrack(const CaptureStore::View& captured, const NK::CString& path, TrackBegin begin) {
    NK::ForgetFileFailure();
    return captured.GetCount() != 0 && NK::SaveAtomically(path, [&captured, begin](NK::CFile& file) {
               if (!NK::MIDI::WriteMIDIHeader(file, kRecordingTempo)) {
                   return false;
               }
               NK::MIDI::CMIDITrackWriter track(file, kRecordingTempo);
               VisitRecordedTrack(
                   captured, [&track](const CMIDIMessageX& event) { track.Write(event); }, begin);
               return track.Finish();
           });
}

}  // namespace Kivora
