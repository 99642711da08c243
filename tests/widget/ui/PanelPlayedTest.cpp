// Saving what was played and not recorded, from the panel.
#include "widget/ui/PanelRig.h"

#include <filesystem>
#include <QAction>
#include <QCheckBox>
#include <QMenu>

#include "engine/EngineExtras.h"
#include "ui/dialogs/midiSettings.h"
#include "unit/engine/SavedTake.h"

using namespace KivoraTest;

namespace {

using Seen = std::vector<std::string>;
const std::string kTitle = "Save What I Just Played: ";
const std::string kMemory = "\nIt is kept in memory only, for 15 minutes, and is lost when the program ends.";

class PanelPlayed : public PanelTest {
protected:
    void PlayNote() {
        Engine().PlayNoteOn(60, 100);
        Show();
        rig.time.AdvanceMs(2000);
        Engine().PlayNoteOff(60);
        Show();
    }
    /// By the menu, until all answers were given.
    void Ask(ModalAnswers& answers) {
        for (QAction* const entry : Find<QMenu>("panel-menu").actions()) {
            if (entry->shortcut() == QKeySequence(Qt::ALT | Qt::Key_J)) {
                entry->trigger();
            }
        }
        Wait([&] { return answers.AllGiven() && QApplication::activeModalWidget() == nullptr; });
    }
    int CountNotes(const std::string& name) {
        int count = 0;
        for (const SavedEvent& event : ReadSavedTake(rig.folder / name)) {
            count += (event.status & 0xF0) == 0x90 ? 1 : 0;
        }
        return count;
    }
    bool IsKept() {
        return Engine().WithExtras([](Kivora::EngineExtras& extras) { return extras.KeepsPlayed(); });
    }
};

TEST_F(PanelPlayed, WhatWasPlayedIsSavedWithoutAPauseAtOnce) {
    PlayNote();
    ModalAnswers answers;
    answers.Click(QMessageBox::Save).TypeFile(PathOf("played.mid"));
    Type(Qt::Key_J, Qt::AltModifier);
    Wait([&] { return answers.AllGiven() && QApplication::activeModalWidget() == nullptr; });
    ASSERT_EQ(answers.seen.size(), 2U);
    EXPECT_EQ(answers.seen[0], kTitle + "You have played 00:02 (minutes and seconds)." + kMemory);
    EXPECT_EQ(answers.seen[1], "Save MIDI File");
    EXPECT_EQ(CountNotes("played.mid"), 1);
}

TEST_F(PanelPlayed, AfterAPauseTheUserChooses) {
    PlayNote();
    rig.time.AdvanceMs(20000);
    PlayNote();
    const std::string question =
        kTitle + "You have played 00:02 since your last pause, and 00:24 in all (minutes and seconds)." + kMemory;
    ModalAnswers answers;
    answers.Click(QMessageBox::Save).TypeFile(PathOf("since.mid"));
    Ask(answers);
    answers.Click(QMessageBox::SaveAll).TypeFile(PathOf("all.mid"));
    Ask(answers);
    answers.Click(QMessageBox::Cancel);
    Ask(answers);
    EXPECT_EQ(answers.seen, (Seen{question, "Save MIDI File", question, "Save MIDI File", question}));
    EXPECT_EQ(CountNotes("since.mid"), 1);
    EXPECT_EQ(CountNotes("all.mid"), 2);
}

TEST_F(PanelPlayed, NothingPlayedAndNothingKeptAreTold) {
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Ask(answers);
    Engine().WithExtras([](Kivora::EngineExtras& extras) { extras.KeepPlayed(false); });
    PlayNote();
    answers.Click(QMessageBox::Ok);
    Ask(answers);
    EXPECT_EQ(answers.seen,
              (Seen{kTitle + "Nothing was played in the last 15 minutes. What was played before the program was "
                             "started is not kept.",
                    kTitle + "What you play is not kept, since that is switched off in the settings."}));
}

TEST_F(PanelPlayed, ARecordingGoesOnMeanwhile) {
    Type(Qt::Key_F11);
    ASSERT_TRUE(Engine().IsRecording());
    PlayNote();
    ModalAnswers answers;
    answers.Click(QMessageBox::Save).TypeFile(PathOf("played.mid"));
    Ask(answers);
    EXPECT_TRUE(Engine().IsRecording());
    EXPECT_EQ(CountNotes("played.mid"), 1);
    controls->StopRecording();
    ASSERT_TRUE(Engine().SaveRecording(NK::CString::FromUtf8((rig.folder / "take.mid").native())));
    EXPECT_EQ(CountNotes("take.mid"), 1);
}

TEST_F(PanelPlayed, TheSettingsSwitchItOff) {
    midiSettings settings(controls.get());
    auto& keep = *settings.findChild<QCheckBox*>("keepPlayed");
    EXPECT_TRUE(keep.isChecked());
    keep.setChecked(false);
    EXPECT_TRUE(IsKept()) << "not before the dialog is confirmed";
    settings.closeClicked();
    EXPECT_FALSE(IsKept());
    midiSettings again(controls.get());
    EXPECT_FALSE(again.findChild<QCheckBox*>("keepPlayed")->isChecked());
}

}  // namespace
