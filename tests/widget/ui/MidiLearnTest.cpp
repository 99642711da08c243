// The dialog in which controls of MIDI keyboards are bound.
#include "widget/ui/PanelRig.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <QCheckBox>
#include <QTreeWidget>

#include "support/AccessibleChanges.h"
#include "support/Files.h"
#include "ui/dialogs/MidiLearn.h"
#include "ui/dialogs/MidiRemote.h"
#include "widget/ui/DialogParts.h"
#include "widget/ui/DialogTexts.h"

using namespace KivoraTest;
using Kivora::EPanelFunction;
using Kivora::MidiBinding;
using Kivora::MidiBindings;
using Kivora::MidiControl;
using Kind = MidiControl::Kind;
using testing::HasSubstr;

namespace {

class LearnDialog : public PanelTest {
protected:
    LearnDialog() { rig.backend.defaultInput = kKeyboard; }

    void SetUp() override {
        PanelTest::SetUp();
        MakeDialog();
    }
    void TearDown() override { dialog.reset(); }
    void MakeDialog() {
        dialog = std::make_unique<MidiLearn>(Remote());
        dialog->show();
        QApplication::processEvents();
    }

    MidiRemote& Remote() { return *panel->findChild<MidiRemote*>(); }
    QTreeWidget& List() { return In<QTreeWidget>(*dialog, "learnList"); }
    QPushButton& Part(const char* name) { return In<QPushButton>(*dialog, name); }
    std::string State() { return In<QLabel>(*dialog, "learnState").text().toStdString(); }
    std::string Bound(EPanelFunction function) {
        return List().topLevelItem(static_cast<int>(function))->text(1).toStdString();
    }
    void Choose(EPanelFunction function) { List().setCurrentItem(List().topLevelItem(static_cast<int>(function))); }
    void Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
        rig.GetKeyboard().Deliver(status, data1, data2);
        QApplication::processEvents();
    }
    void Learn(EPanelFunction function, std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 100) {
        Choose(function);
        Part("learnBtn").click();
        Send(status, data1, data2);
    }
    const MidiBinding* Find(const MidiControl& control, const wchar_t* device = kKeyboard) {
        return Remote().bindings().Find(device, control);
    }

    std::unique_ptr<MidiLearn> dialog;
};

}  // namespace

TEST_F(LearnDialog, TheMenuOpensIt) {
    dialog.reset();
    ModalAnswers answers;
    answers.Then([](QDialog& opened) { opened.reject(); });
    for (QAction* const action : panel->actions()) {
        if (action->text() == "MIDI Learn...") {
            action->trigger();
        }
    }
    EXPECT_THAT(answers.seen, testing::ElementsAre("MIDI Learn"));
}

TEST_F(LearnDialog, AKnobIsLearnedAndShown) {
    Choose(EPanelFunction::kTempo);
    Part("learnBtn").click();
    EXPECT_THAT(State(), HasSubstr("Tempo: move a knob"));
    EXPECT_TRUE(Part("learnBtn").isChecked());
    rig.TakeWritten();
    Send(0xB2, 33, 5);
    EXPECT_THAT(rig.TakeWritten(), testing::IsEmpty());
    EXPECT_FALSE(Part("learnBtn").isChecked());
    EXPECT_EQ(State(), "Bound: Keyboard: Controller 33, channel 3.");
    EXPECT_EQ(Bound(EPanelFunction::kTempo), "Keyboard: Controller 33, channel 3");
    ASSERT_NE(Find({Kind::kController, 2, 33}), nullptr);
    EXPECT_TRUE(std::filesystem::exists(rig.folder / "user" / "MidiBindings.ini"));
}

TEST_F(LearnDialog, APadAndAProgramAreLearnedForWhatIsPressed) {
    Learn(EPanelFunction::kRecord, 0x99, 36);
    Send(0x89, 36, 0);
    Learn(EPanelFunction::kPanic, 0xC0, 5);
    EXPECT_EQ(Bound(EPanelFunction::kRecord), "Keyboard: Note 36, channel 10");
    EXPECT_EQ(Bound(EPanelFunction::kPanic), "Keyboard: Program 5, channel 1");
}

TEST_F(LearnDialog, WhatPlayingNeedsIsRefusedInWordsAndTheLearningGoesOn) {
    Learn(EPanelFunction::kRecord, 0xB0, 64);
    EXPECT_THAT(State(), HasSubstr("It is needed for playing and cannot be bound."));
    EXPECT_TRUE(Remote().bindings().IsEmpty());
    Send(0xB0, 64, 0);
    Send(0xB0, 22, 127);
    EXPECT_EQ(Bound(EPanelFunction::kRecord), "Keyboard: Controller 22, channel 1");
    Learn(EPanelFunction::kVolume1, 0x90, 60);
    EXPECT_THAT(State(), HasSubstr("It cannot set a value."));
    EXPECT_TRUE(Part("learnBtn").isChecked());
    dialog->reject();
    EXPECT_TRUE(dialog->isVisible()) << "Escape ends the learning first";
    dialog->reject();
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(LearnDialog, APitchBendIsRefusedInWords) {
    Learn(EPanelFunction::kVolume1, 0xE0, 0, 65);
    EXPECT_THAT(State(), HasSubstr("Keyboard: a pitch bend or a pressure cannot be bound."));
    EXPECT_TRUE(Part("learnBtn").isChecked());
    Send(0xB0, 21, 5);
    EXPECT_EQ(State(), "Bound: Keyboard: Controller 21, channel 1.");
}

TEST_F(LearnDialog, AScreenReaderHearsHowTheLearningGoes) {
    AccessibleChanges changes;
    Choose(EPanelFunction::kTempo);
    Part("learnBtn").click();
    Send(0xB0, 64, 127);
    Send(0xB0, 64, 127);
    Send(0xB2, 33, 5);
    EXPECT_THAT(changes.TakeAlerts(),
                testing::ElementsAre(HasSubstr("Tempo: move a knob"), HasSubstr("needed for playing"),
                                     "Bound: Keyboard: Controller 33, channel 3."));
}

TEST_F(LearnDialog, WhatIsBoundAlreadyIsAskedAbout) {
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    ModalAnswers answers;
    answers.Click(QMessageBox::No).Click(QMessageBox::Yes);
    Learn(EPanelFunction::kPanic, 0xB0, 22);
    EXPECT_EQ(Find({Kind::kController, 0, 22})->function, EPanelFunction::kRecord);
    Learn(EPanelFunction::kPanic, 0xB0, 22);
    EXPECT_EQ(Find({Kind::kController, 0, 22})->function, EPanelFunction::kPanic);
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_THAT(answers.seen[0], HasSubstr("is bound already: Record and stop. Bind it to \"Panic\" instead?"));
    Learn(EPanelFunction::kPanic, 0xB0, 22);
    EXPECT_EQ(answers.seen.size(), 2U) << "to the same once more nobody asks";
}

TEST_F(LearnDialog, ClearsOneOrAll) {
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    Learn(EPanelFunction::kPanic, 0xB0, 23);
    Choose(EPanelFunction::kTempo);
    EXPECT_FALSE(Part("learnClearBtn").isEnabled());
    Choose(EPanelFunction::kRecord);
    Part("learnClearBtn").click();
    EXPECT_EQ(Remote().bindings().GetAll().size(), 1U);
    ModalAnswers answers;
    answers.Click(QMessageBox::Yes);
    Part("learnClearAllBtn").click();
    EXPECT_TRUE(Remote().bindings().IsEmpty());
    EXPECT_FALSE(Part("learnExportBtn").isEnabled());
}

TEST_F(LearnDialog, AButtonMayLatch) {
    Learn(EPanelFunction::kArpeggio, 0xB0, 22);
    auto& latching = In<QCheckBox>(*dialog, "learnLatching");
    EXPECT_TRUE(latching.isEnabled());
    latching.click();
    EXPECT_TRUE(Find({Kind::kController, 0, 22})->latches);
    Choose(EPanelFunction::kTempo);
    EXPECT_FALSE(latching.isEnabled());
    EXPECT_FALSE(latching.isChecked());
    Choose(EPanelFunction::kArpeggio);
    EXPECT_TRUE(latching.isChecked());
}

TEST_F(LearnDialog, WhatIsExportedCanBeImported) {
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    const QString path = PathOf("knobs.ini");
    ModalAnswers answers;
    answers.TypeFile(path).Click(QMessageBox::Yes).TypeFile(path);
    Part("learnExportBtn").click();
    ASSERT_TRUE(std::filesystem::exists(path.toStdString()));
    Part("learnClearAllBtn").click();
    Part("learnImportBtn").click();
    EXPECT_EQ(Bound(EPanelFunction::kRecord), "Keyboard: Controller 22, channel 1");
    EXPECT_EQ(State(), "Bindings taken over: 1.");
}

TEST_F(LearnDialog, OfADamagedFileWhatIsWholeIsOfferedAndNothingIsLost) {
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    const QString path = PathOf("damaged.ini");
    WriteFileBytes(path.toStdString(), "[Other]\nController 5 on channel 1=Tempo\nController 6 on ch");
    ModalAnswers answers;
    answers.TypeFile(path).Click(QMessageBox::No).TypeFile(path).Click(QMessageBox::Yes);
    Part("learnImportBtn").click();
    EXPECT_EQ(Remote().bindings().GetAll().size(), 1U);
    Part("learnImportBtn").click();
    EXPECT_EQ(Remote().bindings().GetAll().size(), 2U);
    EXPECT_NE(Find({Kind::kController, 0, 5}, L"Other"), nullptr);
    EXPECT_THAT(answers.seen[1],
                HasSubstr("The file is damaged. Lines that cannot be understood: 1. Take over what is whole: 1?"));
}

TEST_F(LearnDialog, OfANewerFileWhatIsKnownIsOffered) {
    const QString path = PathOf("newer.ini");
    WriteFileBytes(path.toStdString(), "[Other]\nController 5 on channel 1=Tempo\nController 6 on channel 1=Glide\n");
    ModalAnswers answers;
    answers.TypeFile(path).Click(QMessageBox::Yes);
    Part("learnImportBtn").click();
    EXPECT_THAT(answers.seen[1], HasSubstr("mean nothing to this version: 1. Take over the others: 1?"));
    EXPECT_EQ(State(), "Bindings taken over: 1.");
}

TEST_F(LearnDialog, WhatAnImportHasNoRoomForIsCounted) {
    ASSERT_TRUE(Remote().change([](MidiBindings& all) {
        for (std::size_t device = 0; device < MidiBindings::kMost - 1; ++device) {
            const NK::CString name = NK::CString(L"Device ") + NK::CString::FromInt(static_cast<std::int32_t>(device));
            all.Bind({name, {Kind::kController, 0, 5}, EPanelFunction::kTempo, false});
        }
    }));
    const QString path = PathOf("two.ini");
    WriteFileBytes(path.toStdString(),
                   "[One]\nController 5 on channel 1=Tempo\n[Two]\nController 5 on channel 1=Tempo\n");
    ModalAnswers answers;
    answers.TypeFile(path);
    Part("learnImportBtn").click();
    EXPECT_EQ(State(), "Bindings taken over: 1. No room for the others: 1.");
}

TEST_F(LearnDialog, AFileWithoutBindingsChangesNothing) {
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    const QString path = PathOf("picture.ini");
    WriteFileBytes(path.toStdString(), "\x89PNG\r\n");
    ModalAnswers answers;
    answers.TypeFile(path).Click(QMessageBox::Ok);
    Part("learnImportBtn").click();
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_THAT(answers.seen[1], HasSubstr("The file holds no bindings."));
    EXPECT_EQ(Remote().bindings().GetAll().size(), 1U);
}

TEST_F(LearnDialog, WhatCannotBeSavedIsTold) {
    std::filesystem::create_directories(rig.folder / "user" / "MidiBindings.ini");
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Learn(EPanelFunction::kRecord, 0xB0, 22);
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_THAT(answers.seen[0], HasSubstr("could not be saved"));
    EXPECT_EQ(Bound(EPanelFunction::kRecord), "Keyboard: Controller 22, channel 1");
}

TEST_F(LearnDialog, ClosedWhileItLearnsItLearnsNoMore) {
    Choose(EPanelFunction::kRecord);
    Part("learnBtn").click();
    dialog.reset();
    rig.TakeWritten();
    rig.GetKeyboard().Deliver(0xB0, 22, 127);
    EXPECT_THAT(rig.TakeWritten(), testing::UnorderedElementsAre("b0 16 7f", "b1 16 7f", "b2 16 7f"));
}

TEST_F(LearnDialog, IsWholeInBothLanguages) {
    for (const char* language : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(language, false);
        QApplication::processEvents();
        EXPECT_EQ(ClippedTexts(*dialog), "") << language;
        EXPECT_EQ(NamelessControls(*dialog), "") << language;
        EXPECT_EQ(SharedMnemonics(*dialog), "") << language;
    }
    EXPECT_EQ(dialog->windowTitle(), QString::fromUtf8("Управление с MIDI-клавиатуры"));
}
