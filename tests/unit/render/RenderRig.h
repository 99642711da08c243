// Pieces to play offline, and what came out of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "libmidi/MIDIEvent.h"
#include "midi/reader/SMFContent.h"
#include "render/OfflineEngine.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"

namespace KivoraTest {

/// A piece of messages at milliseconds.
class Piece {
public:
    Piece& At(std::int64_t ms, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
        content.events.push_back({ms * 1000, 0, 0, LibMidi::MIDIEvent(0, status, data1, data2).ToMessage()});
        content.lengthUs = ms * 1000;
        return *this;
    }
    Piece& Note(std::int64_t ms, std::uint8_t note) { return At(ms, 0x90, note, 100); }
    Piece& Off(std::int64_t ms, std::uint8_t note) { return At(ms, 0x80, note, 64); }

    NK::MIDI::SMFContent content;
};

/// An engine in an empty folder.
struct RenderRig {
    Kivora::EngineControls& GetControls() { return engine.GetControls(); }
    LibMidi::CaptureStore::View Play(const Piece& piece) { return engine.Play(piece.content); }

    CTemporaryFolder folder;
    Kivora::OfflineEngine engine{NK::CString::FromUtf8((folder / "user").string()),
                                 NK::CString::FromUtf8((folder / "factory").string())};
};

/// "ms: bytes" of each captured event; of notes alone where that is wanted.
inline std::vector<std::string> List(const LibMidi::CaptureStore::View& captured, bool notesOnly = false) {
    std::vector<std::string> lines;
    captured.Visit(0, [&](const LibMidi::CapturedEvent& event) {
        if (!notesOnly || event.message.status <= 0x90) {
            lines.push_back(std::to_string(event.time) + ": " +
                            ToText(LibMidi::MIDIEvent::FromMessage(event.message, event.time)));
        }
    });
    return lines;
}

inline std::vector<std::string> ListNotes(const LibMidi::CaptureStore::View& captured) {
    return List(captured, true);
}

}  // namespace KivoraTest
