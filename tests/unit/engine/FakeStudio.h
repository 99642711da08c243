// The devices of the made-up backend.
#pragma once

#include <vector>

#include "unit/engine/EngineRig.h"
#include "unit/engine/Studio.h"

namespace KivoraTest {

/// The first input is two keyboards together.
class FakeStudio : public Studio {
public:
    explicit FakeStudio(EngineRig& rig) : rig_(rig) {
        rig_.backend.defaultInput = kInputs[0];
        for (std::size_t i = 0; i < kSynths; ++i) {
            GetSynth(i).keepsWritten = false;
            GetSynth(i).onWrite = [this, i](const LibMidi::MIDIEvent& event) { onWrite(i, event); };
        }
    }

    LibMidi::BackendCreator GetCreator() override { return rig_.backend.GetCreator(); }
    void SetFailsToWrite(std::size_t synth, bool fails) override {
        Studio::SetFailsToWrite(synth, fails);
        GetSynth(synth).failsToWrite = fails;
    }
    void SetFailsToOpen(std::size_t synth, bool fails) override { GetSynth(synth).failsToOpen = fails; }
    std::vector<int> GetKeyboards(int input) const override {
        return input == 0 ? std::vector{0, 1} : std::vector{input};
    }
    void Play(int input, int keyboard, const std::vector<LibMidi::MIDIEvent>& events) override {
        FakeInPort& port = GetIn(input);
        std::vector<LibMidi::MIDIEvent> sent = events;
        if (input == 0) {
            for (LibMidi::MIDIEvent& event : sent) {
                event.source = static_cast<std::uint8_t>(1 + keyboard);
            }
            port.sourceNames = {{2, kOtherKeyboard}};
        }
        port.Deliver(sent);
    }
    void Lose(int input) override { GetIn(input).Lose(1); }

private:
    static constexpr const wchar_t* kOutputs[] = {kSynth, kOtherSynth};
    static constexpr const wchar_t* kInputs[] = {kKeyboard, kOtherKeyboard};

    FakeDevice& GetSynth(std::size_t index) { return rig_.GetDevice(kOutputs[index]); }
    FakeInPort& GetIn(int index) { return *rig_.backend.GetIn(kInputs[index]); }

    EngineRig& rig_;
};

}  // namespace KivoraTest
