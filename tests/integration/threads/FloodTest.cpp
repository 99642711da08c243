// The instrument as it runs, all threads alive, under a flood of input while everything is changed.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

#include "engine/EngineControls.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/portmidi/PortMIDIImpl.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

/// KIVORA_FLOOD_SECONDS, 2 by default.
std::chrono::seconds GetDuration() {
    const char* const text = std::getenv("KIVORA_FLOOD_SECONDS");
    return std::chrono::seconds(text == nullptr ? 2 : std::atoi(text));
}

/// Has a note for the reader each time it asks, which is each millisecond.
class FloodedPortMidi : public LibMidiTest::CFakePortMidi {
public:
    FloodedPortMidi()
        : CFakePortMidi({{"Software synthesizer", false, true},
                         {"Other synthesizer", false, true},
                         {"Keyboard", true, false},
                         {"Other keyboard", true, false}}) {
        flood = true;
        keepWritten = false;
    }
};

TEST(Flood, EverythingChangesUnderAFloodOfInputAndNothingStops) {
    const KivoraTest::CTemporaryFolder folder;
    FloodedPortMidi api;
    std::atomic<int> shown{0};
    int rounds = 0;
    Kivora::CKivora engine({.backends = {[&] { return std::make_unique<LibMidi::PortMIDIImpl>(api); }},
                            .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                            .userDataDir = NK::CString::FromUtf8(folder.GetPath().c_str())});
    Kivora::EngineControls controls(engine);
    QObject::connect(&engine, &Kivora::CKivora::OnMIDIEvent, [&shown](int) { ++shown; });
    controls.OpenPorts();
    ASSERT_TRUE(engine.SavePreset(L"Plain"));
    controls.SetVoiceMode(true, true);
    engine.SetPatch(-1, 1);
    controls.SetArpeggiating(true);
    ASSERT_TRUE(engine.SavePreset(L"Arpeggiated"));
    engine.SetMetronome(true);

    const auto start = std::chrono::steady_clock::now();
    const auto end = start + GetDuration();
    for (; std::chrono::steady_clock::now() < end || rounds < 2; ++rounds) {
        ASSERT_TRUE(controls.SetInputPortByIndex(rounds % 2));
        const int floodedBefore = api.GetFlooded();
        for (int i = 0; i < 12; ++i) {
            const int turn = rounds + i;
            engine.PlayPcKey(static_cast<std::uint8_t>(40 + i), i % 3);
            controls.SetVoiceMode(turn % 2 == 0, turn % 3 == 0);
            controls.SetPatch(turn % 5 == 0 ? -1 : i, i % 3);
            controls.SetArpeggiating(turn % 4 != 0);
            controls.ChangeArpeggiator(i % 2, [turn](NK::MIDI::CArpeggiator1& arpeggiator) {
                arpeggiator.SetDirection(turn % 9);
                arpeggiator.SetNoteStep(6, 50);
            });
            engine.SetTempo(100 + turn % 100);
            controls.SetSustain(i % 2 == 0);
            engine.PlayNoteOff(static_cast<std::uint8_t>(40 + i));
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        ASSERT_TRUE(controls.LoadPreset(rounds % 2 == 0 ? L"Plain" : L"Arpeggiated", false));
        if (rounds % 4 == 1) {
            ASSERT_TRUE(controls.SetOutputPortByIndex(rounds / 4 % 2));
        }
        if (rounds % 8 == 7) {
            ASSERT_TRUE(controls.RescanPorts());
        }
        EXPECT_TRUE(KivoraTest::WaitUntil([&] { return api.GetFlooded() >= floodedBefore + 20; }));
    }
    const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start;
    RecordProperty("messages_a_second", static_cast<int>(api.GetFlooded() / lasted.count()));
    RecordProperty("rounds", rounds);
    std::printf("%d rounds, %d messages in %.1f s, %.0f a second; %d shown\n", rounds, api.GetFlooded(), lasted.count(),
                api.GetFlooded() / lasted.count(), shown.load());
    EXPECT_FALSE(engine.IsOutputLost());
    EXPECT_GT(shown, 0);
    controls.Close();
}

}  // namespace
