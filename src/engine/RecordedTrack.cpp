#include "engine/RecordedTrack.h"

#include <algorithm>

#include "midi/SMFWriter.h"
#include "nk/nk_atomic_save.h"

namespace Kivora {

using NK::MIDI::CMIDIMessageX;
using NK::MIDI::TMIDIMessage;

namespace {

constexpr const char* kTexts[] = {
    "File created using Kivora LX 1.2",
    "https://brennholt.example/kivora/en/",
    "Copyright (C) 2010 Brennholt. All rights reserved.",
    "https://brennholt.example/kivora/ru/",
};
constexpr std::uint32_t kTextCount = std::size(kTexts);
constexpr std::int32_t kFirstNoteMs = 100;
constexpr TMIDIMessage kAllNotesOff{0xB0, 1, 123, 0};

bool IsNote(const CMIDIMessageX& event) {
    return event.kind == CMIDIMessageX::kShort && (event.message.status == 0x80 || event.message.status == 0x90);
}

}  // namespace

NK::CArray<CMIDIMessageX> BuildRecordedTrack(const LibMidi::CaptureStore::View& captured) {
    NK::CArray<CMIDIMessageX> track;
    // Sized once: the array grows by a constant step.
    track.SetSize(captured.GetCount() + kTextCount + 1);
    std::uint32_t size = 0;
    for (const char* text : kTexts) {
        track[size++].SetText(CMIDIMessageX::kText, text, -1);
    }
    captured.Visit(0, [&](const LibMidi::CapturedEvent& event) {
        track[size++].SetShort(event.message, static_cast<std::int32_t>(event.time));
    });
    const std::int32_t end = track[size - 1].time;
    track[size++].SetShort(kAllNotesOff, end);
    track.SetSize(size);
    if (std::any_of(track.begin(), track.end(), IsNote)) {
        NK::MIDI::AlignToFirstNote(track.GetData(), track.GetSize(), kFirstNoteMs);
    }
    return track;
}

bool SaveRecordedTrack(const LibMidi::CaptureStore::View& captured, const NK::CString& path) {
    if (captured.GetCount() == 0) {
        return false;
    }
    const NK::CArray<CMIDIMessageX> track = BuildRecordedTrack(captured);
    return NK::SaveAtomically(path,
                              [&](NK::CFile& file) { return NK::MIDI::WriteMIDIStream(file, track, kRecordingTempo); });
}

}  // namespace Kivora
