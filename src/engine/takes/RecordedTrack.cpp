#include "engine/takes/RecordedTrack.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "engine/takes/TakeTicks.h"
#include "midi/MIDIControllers.h"
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
constexpr TMIDIMessage kAllNotesOff{TMIDIMessage::kControlChange, 1, NK::MIDI::Controller::kAllNotesOff, 0};

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

/// The tempi and meters, in the order of their ticks.
std::vector<CMIDIMessageX> MakeMaster(const TakeTicks& ticks) {
    constexpr std::uint8_t kQuarter = 2;  // as a power of 2
    constexpr std::uint8_t kClocksPerClick = 24;
    constexpr std::uint8_t kNotesPerQuarter = 8;
    std::vector<CMIDIMessageX> master;
    for (const TakeTicks::Tempo& tempo : ticks.GetTempi()) {
        master.emplace_back().SetTempo(tempo.usPerBeat, tempo.tick);
    }
    for (const TakeTicks::Meter& meter : ticks.GetMeters()) {
        master.emplace_back().SetTimeSignature(static_cast<std::uint8_t>(meter.beatsPerBar), kQuarter, kClocksPerClick,
                                               kNotesPerQuarter, meter.tick);
    }
    std::stable_sort(master.begin(), master.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    return master;
}

bool WriteTrackOnGrid(NK::CFile& file, const CaptureStore::View& captured, const TakeTicks& ticks) {
    const std::vector<CMIDIMessageX> master = MakeMaster(ticks);
    NK::MIDI::CMIDITrackWriter track(file, 0);
    auto next = master.begin();
    VisitRecordedTrack(
        captured,
        [&](const CMIDIMessageX& event) {
            CMIDIMessageX placed = event;
            placed.time = event.time < 0 ? 0 : ticks.GetTick(static_cast<std::uint32_t>(event.time));
            for (; next != master.end() && next->time <= placed.time; ++next) {
                track.Write(*next);
            }
            track.Write(placed);
        },
        TrackBegin::kCapture);
    return track.Finish();
}

}  // namespace

bool SaveTrackOnGrid(const CaptureStore::View& captured, const TakeGrid& grid, const NK::CString& path) {
    NK::ForgetFileFailure();
    const TakeTicks ticks(grid, FindFirstNote(captured).value_or(0));
    return captured.GetCount() != 0 && NK::SaveAtomically(path, [&](NK::CFile& file) {
               return NK::MIDI::WriteMIDIHeaderOfTicks(file, TakeTicks::kTicksPerBeat) &&
                      WriteTrackOnGrid(file, captured, ticks);
           });
}

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
