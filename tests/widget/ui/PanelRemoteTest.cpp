// The panel worked from a MIDI keyboard.
#include "widget/ui/PanelRig.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "engine/EngineExtras.h"
#include "engine/files/MidiBindingsFile.h"
#include "support/Files.h"
#include "ui/dialogs/MidiRemote.h"
#include "ui/parts/NoticeLine.h"

using namespace KivoraTest;
using Kivora::EPanelFunction;
using Kivora::MidiBindings;
using Kivora::MidiControl;
using Kind = MidiControl::Kind;

namespace {

constexpr const char* kFile = "MidiBindings.ini";

class PanelRemote : public PanelTest {
protected:
    PanelRemote() { rig.backend.defaultInput = kKeyboard; }

    MidiRemote& Remote() { return *panel->findChild<MidiRemote*>(); }
    std::filesystem::path BindingsPath() { return rig.folder / "user" / kFile; }
    void Bind(std::uint8_t controller, EPanelFunction function) {
        ASSERT_TRUE(Remote().change([&](MidiBindings& bindings) {
            bindings.Bind({kKeyboard, {Kind::kController, 0, controller}, function, false});
        }));
    }
    void Turn(std::uint8_t controller, int value) {
        rig.GetKeyboard().Deliver(0xB0, controller, static_cast<std::uint8_t>(value));
        QApplication::processEvents();
    }
    void Press(std::uint8_t controller) {
        Turn(controller, 127);
        Turn(controller, 0);
    }
    /// Binds a button to the function and presses it.
    void Do(EPanelFunction function) {
        Bind(30, function);
        Press(30);
    }
    bool IsBypassed(int index) {
        return Engine().WithArpeggiator(index, [](const auto& arpeggiator) { return arpeggiator.IsBypassed(); });
    }
    bool IsLatched(int index) {
        return Engine().WithArpeggiator(index, [](const auto& arpeggiator) { return arpeggiator.GetSettings().latch; });
    }
};

}  // namespace

TEST_F(PanelRemote, NothingIsWrittenOrListenedForUntilSomethingIsBound) {
    EXPECT_FALSE(std::filesystem::exists(BindingsPath()));
    EXPECT_FALSE(Engine().WithExtras([](auto& extras) { return extras.controls.IsActive(); }));
    Turn(30, 5);
    rig.RunPlayer();
    EXPECT_THAT(rig.TakeWritten(), testing::UnorderedElementsAre("b0 1e 05", "b1 1e 05", "b2 1e 05"));
}

TEST_F(PanelRemote, AKnobTakesTheVolumeOverWhenItPassesIt) {
    Bind(21, EPanelFunction::kVolume1);
    Turn(21, 10);
    EXPECT_EQ(Engine().GetVolume(0), 100);
    Turn(21, 120);
    EXPECT_EQ(Engine().GetVolume(0), 120);
    EXPECT_EQ(Caption("volume1"), "120");
    Engine().VolumeDown(0);
    Turn(21, 126);
    EXPECT_EQ(Engine().GetVolume(0), 117) << "somebody else has changed it";
    Turn(21, 90);
    EXPECT_EQ(Engine().GetVolume(0), 90);
}

TEST_F(PanelRemote, TheSecondVoicesControlsWorkWhileThereIsOne) {
    Bind(21, EPanelFunction::kVolume2);
    Bind(22, EPanelFunction::kPatch2Up);
    Turn(21, 10);
    Turn(21, 120);
    Press(22);
    EXPECT_EQ(Engine().GetVolume(1), 100);
    EXPECT_EQ(Engine().GetPatch(1), 40);
    Click("voice-mode-split");
    Turn(21, 10);
    EXPECT_EQ(Engine().GetVolume(2), 100) << "where it stood without a second voice counts no more";
    Turn(21, 110);
    Press(22);
    EXPECT_EQ(Engine().GetVolume(2), 110);
    EXPECT_EQ(Engine().GetPatch(2), 33);
    Click("voice-mode-dual");
    Press(22);
    EXPECT_EQ(Engine().GetPatch(1), 41);
    Do(EPanelFunction::kPatch2Down);
    EXPECT_EQ(Engine().GetPatch(1), 40);
}

TEST_F(PanelRemote, TheTempoFollowsWithoutANewBar) {
    Bind(21, EPanelFunction::kTempo);
    Turn(21, 0);
    EXPECT_EQ(Engine().GetTempo(), 120);
    Turn(21, 127);
    EXPECT_EQ(Engine().GetTempo(), 220);
    Turn(21, 0);
    EXPECT_EQ(Engine().GetTempo(), 40);
}

TEST_F(PanelRemote, PatchesArpeggiosAndModesFollowButtons) {
    Do(EPanelFunction::kPatch1Up);
    EXPECT_EQ(Engine().GetPatch(0), 1);
    Do(EPanelFunction::kPatch1Down);
    Do(EPanelFunction::kPatch1Down);
    EXPECT_EQ(Engine().GetPatch(0), -1);
    Do(EPanelFunction::kArpeggio);
    EXPECT_TRUE(Button("arpeggio-on").isChecked());
    for (int index = 0; index < 2; ++index) {
        const bool before = IsBypassed(index);
        Do(index == 0 ? EPanelFunction::kArpeggiator1 : EPanelFunction::kArpeggiator2);
        EXPECT_NE(IsBypassed(index), before);
    }
    Do(EPanelFunction::kLatch);
    EXPECT_TRUE(IsLatched(0) && IsLatched(1));
    Do(EPanelFunction::kLatch);
    EXPECT_FALSE(IsLatched(0) || IsLatched(1));
    Do(EPanelFunction::kNextVoiceMode);
    EXPECT_TRUE(Button("voice-mode-dual").isChecked());
    Do(EPanelFunction::kNextVoiceMode);
    EXPECT_TRUE(Button("voice-mode-split").isChecked());
    Do(EPanelFunction::kNextVoiceMode);
    EXPECT_TRUE(Button("voice-mode-single").isChecked());
    Do(EPanelFunction::kSplit);
    EXPECT_TRUE(Engine().IsSplit());
    Do(EPanelFunction::kDual);
    EXPECT_TRUE(Engine().IsDual());
    Do(EPanelFunction::kSingle);
    EXPECT_FALSE(Engine().IsDual() || Engine().IsSplit());
}

TEST_F(PanelRemote, ThatThereIsNoPresetIsTold) {
    auto& notice = *panel->findChild<NoticeLine*>();
    Do(EPanelFunction::kPresetUp);
    EXPECT_TRUE(notice.isVisible());
    EXPECT_EQ(notice.text(), "There is no preset that can be loaded");
    QTest::mouseClick(&notice, Qt::LeftButton);
    EXPECT_FALSE(notice.isVisible());
    Press(30);
    EXPECT_TRUE(notice.isVisible());
    ASSERT_TRUE(Engine().SavePreset(L"One"));
    Press(30);
    EXPECT_EQ(Engine().GetPresetName(), L"One");
    EXPECT_FALSE(notice.isVisible());
}

TEST_F(PanelRemote, PresetsAreSteppedThrough) {
    ASSERT_TRUE(Engine().SavePreset(L"One"));
    ASSERT_TRUE(Engine().SavePreset(L"Two"));
    Do(EPanelFunction::kPresetUp);
    EXPECT_EQ(Engine().GetPresetName(), L"One");
    Do(EPanelFunction::kPresetDown);
    EXPECT_EQ(Engine().GetPresetName(), L"Two");
}

TEST_F(PanelRemote, RecordBeginsAndEndsATakeAndThePanicWorksInItsDialog) {
    Bind(31, EPanelFunction::kPanic);
    Bind(32, EPanelFunction::kArpeggio);
    Bind(21, EPanelFunction::kVolume1);
    Do(EPanelFunction::kRecord);
    EXPECT_TRUE(Engine().IsRecording());
    EXPECT_TRUE(Find("record").isVisible());
    Engine().PlayNoteOn(60, 100);
    rig.Run(5);
    ModalAnswers answers;
    answers.Then([this](QDialog& dialog) {
        Engine().PlayNoteOn(62, 100);
        rig.TakeWritten();
        Press(32);
        Turn(21, 10);
        Turn(21, 120);
        Press(30);
        EXPECT_FALSE(Engine().IsArpeggiating());
        EXPECT_EQ(Engine().GetVolume(0), 100);
        EXPECT_FALSE(Engine().IsRecording());
        Press(31);
        EXPECT_THAT(rig.TakeWritten(), testing::Contains("b0 7b 00"));
        dialog.reject();
    });
    Press(30);
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_EQ(answers.seen.size(), 1U);
    Turn(21, 121);
    EXPECT_EQ(Engine().GetVolume(0), 100) << "the knob was moved while the dialog was open";
    Turn(21, 90);
    EXPECT_EQ(Engine().GetVolume(0), 90);
}

TEST_F(PanelRemote, WhileTheMenuIsOpenOnlyThePanicWorks) {
    Bind(32, EPanelFunction::kArpeggio);
    Bind(31, EPanelFunction::kPanic);
    bool done = false;
    OnPopUp([&](QWidget&) {
        Press(32);
        EXPECT_FALSE(Engine().IsArpeggiating());
        rig.TakeWritten();
        Press(31);
        EXPECT_THAT(rig.TakeWritten(), testing::Contains("b0 7b 00"));
        done = true;
    });
    Type(Qt::Key_F10);
    Wait([&done] { return done; });
}

TEST_F(PanelRemote, WhatIsBoundIsThereAtTheNextStart) {
    Bind(21, EPanelFunction::kTempo);
    CloseWindow();
    ShowPanel();
    Turn(21, 0);
    Turn(21, 127);
    EXPECT_EQ(Engine().GetTempo(), 220);
}

TEST_F(PanelRemote, AControllerThatIsBoundGivesTheVoicesBack) {
    Turn(1, 90);
    rig.TakeWritten();
    Bind(1, EPanelFunction::kTempo);
    EXPECT_THAT(rig.TakeWritten(), testing::IsEmpty()) << "another keyboard may have such a controller";
    Turn(1, 91);
    EXPECT_THAT(rig.TakeWritten(), testing::UnorderedElementsAre("b0 01 00", "b1 01 00", "b2 01 00"));
    Turn(1, 92);
    EXPECT_THAT(rig.TakeWritten(), testing::IsEmpty());
}

TEST_F(PanelRemote, WhatANewerVersionHasBoundIsToldAndStays) {
    CloseWindow();
    WriteFileBytes(BindingsPath(), "; mine\n[Keyboard]\nController 21 on channel 1=Tempo\nNote 1 on channel 1=Glide\n");
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    CreateWindow();
    panel->notices().Begin();
    Wait([&answers] { return answers.AllGiven(); });
    EXPECT_THAT(answers.seen[0], testing::HasSubstr("means nothing to this version"));
    Bind(22, EPanelFunction::kPanic);
    EXPECT_THAT(ReadFileBytes(BindingsPath()),
                testing::AllOf(testing::HasSubstr("; mine"), testing::HasSubstr("Note 1 on channel 1=Glide"),
                               testing::HasSubstr("Controller 22 on channel 1=Panic")));
}

TEST_F(PanelRemote, ADamagedFileIsToldAndKept) {
    CloseWindow();
    WriteFileBytes(BindingsPath(), "[Keyboard]\nController 21 on channel 1=Tempo\nNonsense\n");
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok).Click(QMessageBox::Ok);
    CreateWindow();
    panel->notices().Begin();
    Wait([&answers] { return answers.seen.size() == 1; });
    EXPECT_THAT(answers.seen[0], testing::HasSubstr("The file of what is bound on MIDI keyboards is damaged."));
    Turn(21, 0);
    Turn(21, 127);
    EXPECT_EQ(Engine().GetTempo(), 220) << "what is whole is in force";
    Bind(22, EPanelFunction::kPanic);
    Wait([&answers] { return answers.AllGiven(); });
    EXPECT_THAT(answers.seen[1], testing::HasSubstr("MidiBindings.ini.bad"));
}
