// The roads that run for every key and every millisecond allocate nothing once warm.
#include <gtest/gtest.h>

#include "support/AllocationCounter.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;

namespace {
class Warm : public testing::Test {
protected:
    Warm() { rig.GetDevice(kSynth).keepsWritten = false; }

    /// Allocations of `action` when it is done the hundredth time.
    template <class Action>
    std::uint64_t CountAllocations(Action action) {
        for (int i = 0; i < 99; ++i) {
            action();
        }
        const std::uint64_t before = GetAllocationCount();
        action();
        return GetAllocationCount() - before;
    }
    void PlayAChord() {
        for (const int note : {48, 60, 64, 67}) {
            engine.PlayNoteOn(static_cast<std::uint8_t>(note), 100);
        }
        for (const int note : {48, 60, 64, 67}) {
            engine.PlayNoteOff(static_cast<std::uint8_t>(note));
        }
        rig.RunPlayer();
    }

    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
};
}  // namespace

TEST_F(Warm, PlayingOnTheMainVoice) {
    EXPECT_EQ(CountAllocations([this] { PlayAChord(); }), 0U);
}

TEST_F(Warm, PlayingInDualMode) {
    engine.SetDual(true);
    EXPECT_EQ(CountAllocations([this] { PlayAChord(); }), 0U);
}

TEST_F(Warm, PlayingInSplitMode) {
    engine.SetSplit(true);
    EXPECT_EQ(CountAllocations([this] { PlayAChord(); }), 0U);
}

TEST_F(Warm, PlayingThroughTheArpeggiators) {
    engine.SetDual(true);
    engine.SetArpeggiating(true);
    EXPECT_EQ(CountAllocations([this] {
                  PlayAChord();
                  engine.PlayNoteOn(60, 100);
                  rig.Run(300);
                  engine.PlayNoteOff(60);
                  rig.Run(300);
              }),
              0U);
}

TEST_F(Warm, Input) {
    engine.SetInputPortByName(kKeyboard);
    FakeInPort& port = rig.GetKeyboard();
    const std::vector<LibMidi::MIDIEvent> events{{0, 0x90, 60, 100}, {0, 0xB0, 1, 5}, {0, 0x80, 60, 0}};
    EXPECT_EQ(CountAllocations([&] {
                  engine.OnMIDIData(events.data(), static_cast<std::int32_t>(events.size()));
                  rig.RunPlayer();
              }),
              0U);
    EXPECT_FALSE(port.IsClosing());
}

TEST_F(Warm, TheTick) {
    EXPECT_EQ(CountAllocations([this] { rig.Run(10); }), 0U);
}
