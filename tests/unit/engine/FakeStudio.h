// The devices of the made-up backend.
#pragma once

#include <vector>

#include "unit/engine/EngineRig.h"
#include "unit/engine/Studio.h"

namespace KivoraTest {

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
    void Play(int input, const std::vector<LibMidi::MIDIEvent>& events) override { GetIn(input).Deliver(events); }
    void Lose(int input) override { GetIn(input).Lose(1); }

private:
    static constexpr const wchar_t* kOutputs[] = {kSynth, kOtherSynth};
    static constexpr const wchar_t* kInputs[] = {kKeyboard, kOtherKeyboard};

    FakeDevice& GetSynth(std::size_t index) { return rig_.GetDevice(kOutputs[index]); }
    FakeInPort& GetIn(int index) { return *rig_.backend.GetIn(kInputs[index]); }

    EngineRig& rig_;
};

}  // namespace KivoraTest
