#include "render/OfflineEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "libmidi/MIDIPlayer.h"
#include "support/WaitUntil.h"
#include "unit/render/RenderRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsSupersetOf;

namespace {

constexpr int kRandomDirection = NK::MIDI::ArpeggiatorSettings::kRandom;

std::vector<std::string> PlayArpeggio(int direction) {
    RenderRig rig;
    rig.GetControls().SetTempoInBar(120);
    rig.GetControls().SetArpeggiating(true);
    rig.GetControls().ChangeArpeggiator(0, [direction](NK::MIDI::CArpeggiator1& arpeggiator) {
        arpeggiator.SetBypassed(false);
        arpeggiator.SetDirection(direction);
        arpeggiator.SetNoteStep(48, 50);  // 125 ms
    });
    return ListNotes(
        rig.Play(Piece().Note(10, 60).Note(10, 64).Note(10, 67).Off(2000, 60).Off(2000, 64).Off(2000, 67)));
}

}  // namespace

TEST(OfflineEngine, PlaysTheNotesAtTheirTimes) {
    RenderRig rig;
    EXPECT_THAT(ListNotes(rig.Play(Piece().Note(0, 60).Note(7, 62).Off(500, 60).Off(86400, 62))),
                ElementsAre("0: 90 3c 64", "7: 90 3e 64", "500: 80 3c 40", "86400: 80 3e 40"));
}

TEST(OfflineEngine, BeginsWithTheSoundsOfTheVoices) {
    RenderRig rig;
    rig.GetControls().SetPatch(19, 0);
    const std::vector<std::string> lines = List(rig.Play(Piece().Note(5, 60).Off(6, 60)));
    EXPECT_THAT(lines, IsSupersetOf({std::string("0: c0 13"), std::string("0: b0 07 64"), std::string("5: 90 3c 64")}));
}

TEST(OfflineEngine, SendsTheNotesThroughSplitAndLayers) {
    RenderRig rig;
    rig.GetControls().SetVoiceMode(true, true);
    rig.GetControls().TransposeUp(1);
    EXPECT_THAT(ListNotes(rig.Play(Piece().Note(1, 59).Note(2, 60).Off(3, 59).Off(4, 60))),
                ElementsAre("1: 92 3b 64", "2: 90 3c 64", "2: 91 3d 64", "3: 82 3b 40", "4: 80 3c 40", "4: 81 3d 40"));
}

TEST(OfflineEngine, SplitsWhereThePlayerPutTheSplitPoint) {
    RenderRig rig;
    rig.GetControls().SetVoiceMode(false, true);
    rig.GetControls().SetSplitPoint(64);
    EXPECT_THAT(ListNotes(rig.Play(Piece().Note(1, 63).Note(2, 64).Off(3, 63).Off(4, 64))),
                ElementsAre("1: 92 3f 64", "2: 90 40 64", "3: 82 3f 40", "4: 80 40 40"));
}

TEST(OfflineEngine, SendsPedalsAndWheelsToEveryVoice) {
    RenderRig rig;
    const std::vector<std::string> lines =
        List(rig.Play(Piece().At(1, 0xB9, 64, 127).At(2, 0xE3, 1, 70).At(3, 0xB9, 64, 0)));
    EXPECT_THAT(lines, IsSupersetOf({std::string("1: b0 40 7f"), std::string("1: b1 40 7f"), std::string("1: b2 40 7f"),
                                     std::string("2: e0 01 46"), std::string("3: b0 40 00")}));
}

TEST(OfflineEngine, LeavesOutWhatWouldChangeTheSounds) {
    const auto play = [](const Piece& piece) {
        RenderRig rig;
        return List(rig.Play(piece));
    };
    EXPECT_EQ(
        play(Piece().Note(5, 60).At(6, 0xC0, 40, 0).At(6, 0xB0, 0, 1).At(6, 0xB0, 32, 1).At(6, 0xB0, 7, 10).Off(7, 60)),
        play(Piece().Note(5, 60).Off(7, 60)));
}

TEST(OfflineEngine, LetsGoWhatTheFileHoldsAtItsEnd) {
    RenderRig rig;
    Piece piece;
    piece.Note(5, 60).At(6, 0xB0, 64, 127);
    piece.content.lengthUs = 40000;
    const std::vector<std::string> lines = List(rig.Play(piece));
    EXPECT_THAT(lines, IsSupersetOf({std::string("40: 80 3c 00"), std::string("40: b0 40 00")}));
}

TEST(OfflineEngine, PlaysArpeggiosOnTheClockOfThePiece) {
    const std::vector<std::string> notes = PlayArpeggio(0);
    ASSERT_GE(notes.size(), 20U);
    // A step each 125 ms, which the engine's clock reaches half a tick early.
    EXPECT_THAT(std::vector(notes.begin(), notes.begin() + 6),
                ElementsAre("124: 90 3c 64", "187: 80 3c 00", "249: 90 40 64", "312: 80 40 00", "374: 90 43 64",
                            "437: 80 43 00"));
}

TEST(OfflineEngine, TwoRunsGiveTheSame) {
    EXPECT_EQ(PlayArpeggio(kRandomDirection), PlayArpeggio(kRandomDirection));
    EXPECT_NE(PlayArpeggio(kRandomDirection), PlayArpeggio(0));
}

TEST(OfflineEngine, AnEmptyFileEndsAtOnce) {
    RenderRig rig;
    EXPECT_THAT(ListNotes(rig.Play(Piece())), ElementsAre());
}

TEST(OfflineEngine, SendsWhatIsSentWhenTheSameNotesArePlayed) {
    const auto prepare = [](Kivora::EngineControls& controls) {
        controls.SetVoiceMode(true, true);
        controls.SetPatch(48, 1);
        controls.TransposeDown(2);
    };
    Piece piece;
    for (std::uint8_t i = 0; i < 60; ++i) {
        const auto note = static_cast<std::uint8_t>(40 + i * 7 % 41);
        piece.Note(i * 10, note).At(i * 10 + 3, 0xE0, i, 64).At(i * 10 + 4, 0xB0, 64, i % 3 == 0 ? 127 : 0);
        piece.Off(i * 10 + 5, note);
    }
    const auto withoutTimes = [](const LibMidi::CaptureStore::View& captured) {
        std::vector<std::string> lines = List(captured);
        for (std::string& line : lines) {
            line.erase(0, line.find(' ') + 1);
        }
        return lines;
    };

    RenderRig rig;
    prepare(rig.GetControls());
    const std::vector<std::string> rendered = withoutTimes(rig.Play(piece));

    const CTemporaryFolder folder;
    FakeBackend backend;
    backend.Plug(L"Synthesizer", LibMidi::kOutput);
    backend.Plug(L"Keyboard", LibMidi::kInput);
    Kivora::CKivora engine(
        Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                   .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                                   .userDataDir = NK::CString::FromUtf8((folder / "user").string()),
                                   .factoryPresetsDir = NK::CString::FromUtf8((folder / "factory").string())});
    Kivora::EngineControls controls(engine);
    engine.SetOutputPortByIndex(0);
    engine.SetInputPortByIndex(0);
    prepare(controls);
    controls.StartRecording();
    for (const NK::MIDI::SMFEvent& event : piece.content.events) {
        const int captured = engine.GetRecordedCount();
        backend.GetIn(L"Keyboard")->Deliver({LibMidi::MIDIEvent::FromMessage(event.message, 0)});
        ASSERT_TRUE(WaitUntil([&] { return engine.GetRecordedCount() > captured && engine.SettleOutput(); }));
    }
    controls.FallSilent();
    controls.StopRecording();
    EXPECT_EQ(withoutTimes(engine.GetCapture()->GetCaptured()), rendered);
    EXPECT_GT(rendered.size(), 400U);
}
