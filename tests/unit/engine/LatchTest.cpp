// What ends a latched chord, and that presets keep the latch.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "engine/EngineControls.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using NK::MIDI::CArpeggiator1;

namespace {

class Latch : public testing::Test {
protected:
    Latch() {
        rig.CreateOpen();
        rig.engine->SetInputPortByName(kKeyboard);
        controls = std::make_unique<Kivora::EngineControls>(Engine());
        controls->SetArpeggiating(true);
        controls->ChangeArpeggiator(0, [](CArpeggiator1& arpeggiator) {
            arpeggiator.SetNoteStep(48, 50);
            arpeggiator.SetLatch(true);
        });
    }

    Kivora::CKivora& Engine() { return *rig.engine; }
    void PlayAndRelease() {
        for (const std::uint8_t note : std::initializer_list<std::uint8_t>{60, 64}) {
            Engine().PlayNoteOn(note, 100);
        }
        rig.Run(10);
        for (const std::uint8_t note : std::initializer_list<std::uint8_t>{60, 64}) {
            Engine().PlayNoteOff(note);
        }
    }
    /// Whether a note begins within a second, once what sounds has ended.
    bool Plays() {
        rig.Run(300);
        rig.TakeWritten();
        rig.Run(1000);
        const std::vector<std::string> written = rig.TakeWritten();
        return std::any_of(written.begin(), written.end(),
                           [](const std::string& line) { return line.substr(0, 1) == "9"; });
    }

    EngineRig rig;
    std::unique_ptr<Kivora::EngineControls> controls;
};

}  // namespace

TEST_F(Latch, TheChordPlaysOnWhenItsKeysAreUp) {
    PlayAndRelease();
    EXPECT_TRUE(Plays());
}

TEST_F(Latch, WhateverEndsNotesEndsIt) {
    const std::vector<std::pair<const char*, std::function<void()>>> ends = {
        {"panic", [this] { controls->Panic(); }},
        {"silence", [this] { controls->AllNotesOff(); }},
        {"voice mode", [this] { controls->SetVoiceMode(!Engine().IsDual(), false); }},
        {"transposition", [this] { controls->TransposeUp(0); }},
        {"the computer's pedal going up",
         [this] {
             controls->SetSustain(true);
             EXPECT_TRUE(Plays());
             controls->SetSustain(false);
         }},
        {"the keyboard's pedal going up", [this] { rig.GetKeyboard().Deliver(0xB0, 64, 0); }},
        {"all sound off", [this] { rig.GetKeyboard().Deliver(0xB0, 120, 0); }},
        {"reset all controllers", [this] { rig.GetKeyboard().Deliver(0xB0, 121, 0); }},
        {"all notes off", [this] { rig.GetKeyboard().Deliver(0xB0, 123, 0); }},
        {"the latch switched off",
         [this] { controls->ChangeArpeggiator(0, [](CArpeggiator1& arpeggiator) { arpeggiator.SetLatch(false); }); }},
    };
    for (const auto& [name, end] : ends) {
        PlayAndRelease();
        ASSERT_TRUE(Plays()) << name;
        end();
        EXPECT_FALSE(Plays()) << name;
    }
}

TEST_F(Latch, OtherControllersAndAPedalThatGoesDownDoNot) {
    PlayAndRelease();
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    rig.GetKeyboard().Deliver(0xB0, 1, 0);
    EXPECT_TRUE(Plays());
}

TEST_F(Latch, PresetsKeepItAndTheSwing) {
    controls->ChangeArpeggiator(0, [](CArpeggiator1& arpeggiator) { arpeggiator.SetSwing(60); });
    ASSERT_TRUE(Engine().SavePreset(L"Latched"));
    controls->ChangeArpeggiator(0, [](CArpeggiator1& arpeggiator) { arpeggiator.SetDefaults(); });
    ASSERT_TRUE(Engine().SavePreset(L"Plain"));
    ASSERT_TRUE(controls->LoadPreset(L"Latched", false));
    const auto settings = [this] {
        return Engine().WithArpeggiator(0, [](const CArpeggiator1& arpeggiator) { return arpeggiator.GetSettings(); });
    };
    EXPECT_TRUE(settings().latch);
    EXPECT_EQ(settings().swing, 60);
    ASSERT_TRUE(controls->LoadPreset(L"Plain", false));
    EXPECT_FALSE(settings().latch);
    EXPECT_EQ(settings().swing, 50);
}
