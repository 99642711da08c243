#include "ui/dialogs/PresetList.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest/QTest>

#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "ui/dialogs/QPresetNameValidator.h"
#include "unit/engine/EngineRig.h"
#include "widget/ui/DialogTexts.h"
#include "widget/ui/ModalBoxes.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Presets : public testing::Test {
protected:
    Presets() {
        rig.CreateOpen();
        controls.emplace(*rig.engine);
    }
    void AddUser(const wchar_t* name) { ASSERT_TRUE(rig.engine->SavePreset(name)); }
    void AddMany() {
        for (int number = 10; number < 90; ++number) {
            AddUser(("Preset " + QString::number(number)).toStdWString().c_str());
        }
    }
    void AddFactory(const wchar_t* name) {
        AddUser(name);
        const auto file = std::filesystem::path(name).string() + ".kivoraLXPreset";
        std::filesystem::create_directories(rig.folder / "factory");
        std::filesystem::rename(rig.folder / "user" / "Presets" / file, rig.folder / "factory" / file);
    }
    void Open(bool saveMode) {
        dialog = std::make_unique<PresetList>(&*controls, saveMode);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    QListWidget& List() { return *dialog->findChild<QListWidget*>("presetList"); }
    QLineEdit& Name() { return *dialog->findChild<QLineEdit*>("presetName"); }
    QPushButton& Button(const char* name) { return *dialog->findChild<QPushButton*>(name); }
    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (int row = 0; row < List().count(); ++row) {
            names.push_back(List().item(row)->text().toStdString());
        }
        return names;
    }
    void ClickItem(int row) {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualItemRect(List().item(row)).center());
    }
    void DoubleClickItem(int row) {
        const QPoint point = List().visualItemRect(List().item(row)).center();
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, point);
        QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, point);
    }
    void Click(const char* name) { QTest::mouseClick(&Button(name), Qt::LeftButton); }
    bool IsAccepted() { return !dialog->isVisible() && dialog->result() == QDialog::Accepted; }
    bool UserHas(const wchar_t* name) { return rig.engine->PresetExists(name, false); }

    KivoraTest::EngineRig rig;
    std::optional<Kivora::EngineControls> controls;
    std::unique_ptr<PresetList> dialog;
    ModalBoxes boxes;
};

TEST(PresetNames, AreLettersDigitsAndAFewMarks) {
    const QPresetNameValidator validator;
    int position = 0;
    for (QString name : {"", "Grand 2", " ", "a_b-c!$().,+=&", "Орган", "Ärger", "٣"}) {
        EXPECT_EQ(validator.validate(name, position), QValidator::Acceptable) << name.toStdString();
    }
    for (QString name : {"a/b", "a\\b", "a:b", "a*", "a?", "\"a\"", "a'b", "a<b", "a|b", "a\tb", "a~", "½", "🎹"}) {
        EXPECT_EQ(validator.validate(name, position), QValidator::Invalid) << name.toStdString();
    }
    QString longName(5000, 'x');
    EXPECT_EQ(validator.validate(longName, position), QValidator::Acceptable);
}

TEST_F(Presets, FactoryPresetsComeFirstWithTheirIconAndBold) {
    AddFactory(L"Zither");
    AddUser(L"Alto");
    Open(false);
    EXPECT_THAT(Names(), ElementsAre("Zither", "Alto"));
    const QListWidgetItem& factory = *List().item(0);
    const QListWidgetItem& user = *List().item(1);
    EXPECT_TRUE(factory.data(Qt::UserRole).toBool());
    EXPECT_FALSE(user.data(Qt::UserRole).toBool());
    EXPECT_TRUE(factory.font().bold());
    EXPECT_FALSE(user.font().bold());
    const auto picture = [](const QListWidgetItem& item) { return item.icon().pixmap(QSize(16, 16), 1.0).toImage(); };
    EXPECT_EQ(picture(factory), QPixmap(":/Resources/Preset_Factory.png").toImage());
    EXPECT_EQ(picture(user), QPixmap(":/Resources/Preset_User.png").toImage());
}

TEST_F(Presets, TheCurrentPresetIsNamedAndSelected) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    Open(true);
    EXPECT_EQ(dialog->windowTitle(), "Save Preset");
    EXPECT_EQ(Name().text(), "Bass");
    ASSERT_NE(List().currentItem(), nullptr);
    EXPECT_EQ(List().currentItem()->text(), "Bass");
    Open(false);
    EXPECT_EQ(dialog->windowTitle(), "Load Preset");
}

TEST_F(Presets, OfTwoOfTheCurrentNameTheOwnOneIsSelected) {
    AddFactory(L"Zither");
    AddUser(L"Zither");
    Open(false);
    ASSERT_NE(List().currentItem(), nullptr);
    EXPECT_FALSE(List().currentItem()->font().bold()) << "a factory preset";
    EXPECT_EQ(List().currentItem()->text(), "Zither");
}

TEST_F(Presets, WhatIsTypedFirstReplacesTheNameToSaveUnder) {
    AddUser(L"Alto");
    Open(true);
    ASSERT_EQ(QApplication::focusWidget(), &Name());
    EXPECT_EQ(Name().selectedText(), "Alto");
    QTest::keyClicks(QApplication::focusWidget(), "Mine");
    EXPECT_EQ(Name().text(), "Mine");
    Open(false);
    EXPECT_EQ(QApplication::focusWidget(), &List());
}

TEST_F(Presets, AFactoryPresetCanBeLoadedButNotDeleted) {
    AddFactory(L"Zither");
    AddUser(L"Alto");
    Open(false);
    ClickItem(0);
    EXPECT_TRUE(Button("loadBtn").isEnabled());
    EXPECT_FALSE(Button("delBtn").isEnabled());
    ClickItem(1);
    EXPECT_TRUE(Button("loadBtn").isEnabled());
    EXPECT_TRUE(Button("delBtn").isEnabled());
}

TEST_F(Presets, WhatIsSearchedForIsListedAndEnterLoadsIt) {
    AddFactory(L"Grand Organ");
    AddUser(L"Little organ");
    AddUser(L"Strings");
    Open(false);
    auto& search = *dialog->findChild<QLineEdit*>("presetSearch");
    search.setFocus();
    QTest::keyClicks(&search, "ORGAN");
    EXPECT_THAT(Names(), ElementsAre("Grand Organ", "Little organ")) << "in their two groups";
    QTest::keyClicks(&search, " li");
    EXPECT_THAT(Names(), ElementsAre("Little organ"));
    search.setText("x");
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_FALSE(Button("loadBtn").isEnabled());
    search.setText("org");
    QTest::keyClick(&search, Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), &List());
    QTest::keyClick(&List(), Qt::Key_Down);
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(rig.engine->GetPresetName(), L"Little organ");
}

TEST_F(Presets, WhileSavingEnterGoesFromTheSearchIntoTheList) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        Open(true);
        Name().setText("Mine");
        auto& search = *dialog->findChild<QLineEdit*>("presetSearch");
        search.setFocus();
        QTest::keyClicks(&search, "bas");
        QTest::keyClick(&search, key);
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(QApplication::focusWidget(), &List());
        EXPECT_FALSE(UserHas(L"Mine"));
    }
    EXPECT_THAT(boxes.take(), IsEmpty());
}

TEST_F(Presets, ASearchThatFindsNothingForgetsNotWhatWasSelected) {
    for (const wchar_t* name : {L"A", L"B", L"C"}) {
        AddUser(name);
    }
    Open(false);
    ClickItem(1);
    auto& search = *dialog->findChild<QLineEdit*>("presetSearch");
    search.setText("x");
    search.setText("xx");
    EXPECT_EQ(List().currentItem(), nullptr);
    search.clear();
    ASSERT_NE(List().currentItem(), nullptr);
    EXPECT_EQ(List().currentItem()->text(), "B");
}

TEST_F(Presets, AreSortedByTheirLastUseInTheirTwoGroupsAndThatIsKept) {
    AddFactory(L"Accordion");
    AddFactory(L"Zither");
    for (const wchar_t* name : {L"A", L"B", L"C"}) {
        AddUser(name);
    }
    Open(false);
    for (const int row : {1, 3}) {
        Open(false);
        List().setCurrentRow(row);
        Click("loadBtn");
    }
    Open(false);
    EXPECT_THAT(Names(), ElementsAre("Accordion", "Zither", "A", "B", "C"));
    auto& order = *dialog->findChild<QComboBox*>("presetOrder");
    order.setCurrentIndex(1);
    EXPECT_THAT(Names(), ElementsAre("Zither", "Accordion", "B", "A", "C"));
    EXPECT_EQ(List().currentItem()->text(), "B") << "what was selected still is";
    Open(true);
    EXPECT_THAT(Names(), ElementsAre("Zither", "Accordion", "B", "A", "C"));
    Name().setText("New");
    Click("saveBtn");
    Open(false);
    EXPECT_THAT(Names(), ElementsAre("Zither", "Accordion", "New", "B", "A", "C"));
}

TEST_F(Presets, AnEmptyListOffersNothing) {
    Open(false);
    EXPECT_FALSE(Button("loadBtn").isEnabled());
    EXPECT_FALSE(Button("delBtn").isEnabled());
    dialog->loadPreset();
    dialog->deletePreset();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_THAT(boxes.take(), IsEmpty());
}

TEST_F(Presets, ANameOfNothingOrOfBlanksCannotBeSaved) {
    Open(true);
    Name().clear();
    EXPECT_FALSE(Button("saveBtn").isEnabled());
    QTest::keyClicks(&Name(), "   ");
    EXPECT_EQ(Name().text(), "   ");
    EXPECT_FALSE(Button("saveBtn").isEnabled());
    QTest::keyClicks(&Name(), "x");
    EXPECT_TRUE(Button("saveBtn").isEnabled());
}

TEST_F(Presets, WhatNoFileMayBeNamedCannotBeTyped) {
    Open(true);
    Name().clear();
    QTest::keyClicks(&Name(), "a/b\\c:d*e?f\"g");
    EXPECT_EQ(Name().text(), "abcdefg");
}

TEST_F(Presets, AClickNamesThePreset) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    Open(true);
    ClickItem(0);
    EXPECT_EQ(Name().text(), "Alto");
}

TEST_F(Presets, TheArrowKeysNameThePresetToo) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    Open(true);
    List().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&List(), Qt::Key_Up);
    EXPECT_EQ(Name().text(), "Alto");
}

TEST_F(Presets, TheFocusArrivingAtTheListLeavesTheName) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    controls.reset();
    rig.CreateOpen();  // whose preset has no name
    controls.emplace(*rig.engine);
    Open(true);
    EXPECT_EQ(Name().text(), "");
    EXPECT_FALSE(Button("saveBtn").isEnabled());
    QTest::keyClicks(&Name(), "Mine");
    List().setFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(Name().text(), "Mine");
    QTest::keyClick(&List(), Qt::Key_Down);
    EXPECT_EQ(Name().text(), "Bass");
}

TEST_F(Presets, SavingUnderANewNameAsksNothing) {
    Open(true);
    Name().setText("Mine");
    Click("saveBtn");
    EXPECT_TRUE(IsAccepted());
    EXPECT_TRUE(UserHas(L"Mine"));
    EXPECT_THAT(boxes.take(), IsEmpty());
}

TEST_F(Presets, EnterInTheNameSaves) {
    Open(true);
    Name().setText("Mine");
    Name().setFocus();
    QTest::keyClick(&Name(), Qt::Key_Return);
    EXPECT_TRUE(IsAccepted());
    EXPECT_TRUE(UserHas(L"Mine"));
}

TEST_F(Presets, EscapeAndCancelChangeNothing) {
    Open(true);
    Name().setText("Mine");
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    Open(true);
    Name().setText("Mine");
    Click("cancelBtn");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(UserHas(L"Mine"));
}

TEST_F(Presets, OverwritingIsAskedAndNoLeavesTheDialogOpen) {
    AddUser(L"Mine");
    rig.engine->SetTempo(150);
    Open(true);
    boxes.click(QMessageBox::No);
    Click("saveBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Please Confirm|Overwrite preset \"Mine\"?"));
    EXPECT_TRUE(dialog->isVisible());
    boxes.click(QMessageBox::Yes);
    Click("saveBtn");
    EXPECT_TRUE(IsAccepted());
    rig.engine->SetTempo(90);
    EXPECT_TRUE(rig.engine->LoadPreset(L"Mine", false));
    EXPECT_EQ(rig.engine->GetTempo(), 150);
}

TEST_F(Presets, AFactoryPresetOfThatNameIsNotOverwrittenSoNothingIsAsked) {
    AddFactory(L"Zither");
    Open(true);
    Name().setText("Zither");
    Click("saveBtn");
    EXPECT_TRUE(IsAccepted());
    EXPECT_THAT(boxes.take(), IsEmpty());
    EXPECT_TRUE(UserHas(L"Zither"));
}

TEST_F(Presets, ANameThatIsRefusedIsReportedAndTheDialogStays) {
    Open(true);
    Name().setText("..");
    boxes.click(QMessageBox::Ok);
    Click("saveBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Error|Failed to save preset under this name."));
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(Presets, ADoubleClickLoadsInLoadMode) {
    rig.engine->SetTempo(150);
    AddUser(L"Alto");
    rig.engine->SetTempo(90);
    Open(false);
    DoubleClickItem(0);
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(rig.engine->GetTempo(), 150);
}

TEST_F(Presets, ADoubleClickSavesInSaveMode) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    rig.engine->SetTempo(150);
    Open(true);
    boxes.click(QMessageBox::Yes);
    DoubleClickItem(0);
    EXPECT_THAT(boxes.take(), ElementsAre("Please Confirm|Overwrite preset \"Alto\"?"));
    EXPECT_TRUE(IsAccepted());
}

TEST_F(Presets, AFailureToLoadIsReportedAndTheDialogStays) {
    AddUser(L"Alto");
    Open(false);
    std::filesystem::remove(rig.folder / "user" / "Presets" / "Alto.kivoraLXPreset");
    std::string details;
    boxes.add([&details](QWidget& box) {
        details = dynamic_cast<QMessageBox&>(box).informativeText().toStdString();
        box.close();
    });
    Click("loadBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Error|Failed to load the preset."));
    EXPECT_EQ(details, (rig.folder / "user/Presets/Alto.kivoraLXPreset").native() + "\nNo such file or directory");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(Presets, DeletingIsAsked) {
    AddUser(L"Alto");
    AddUser(L"Bass");
    Open(false);
    ClickItem(0);
    boxes.click(QMessageBox::No);
    Click("delBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Please Confirm|Delete preset \"Alto\"?"));
    EXPECT_TRUE(UserHas(L"Alto"));
    boxes.click(QMessageBox::Yes);
    Click("delBtn");
    EXPECT_FALSE(UserHas(L"Alto"));
    EXPECT_THAT(Names(), ElementsAre("Bass"));
    EXPECT_TRUE(dialog->isVisible());
    boxes.click(QMessageBox::Yes);
    Click("delBtn");
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_FALSE(Button("delBtn").isEnabled());
}

TEST_F(Presets, ALongListStaysWhereItIsWhenAPresetIsDeleted) {
    AddMany();
    Open(false);
    List().setCurrentRow(50);
    const int place = List().verticalScrollBar()->value();
    ASSERT_GT(place, 0);
    boxes.click(QMessageBox::Yes);
    Click("delBtn");
    EXPECT_EQ(List().currentRow(), 50);
    EXPECT_EQ(List().verticalScrollBar()->value(), place);
    List().setCurrentRow(List().count() - 1);
    boxes.click(QMessageBox::Yes);
    Click("delBtn");
    EXPECT_EQ(List().currentRow(), List().count() - 1);
}

TEST_F(Presets, ALongListOpensAtTheCurrentPreset) {
    AddMany();
    ASSERT_TRUE(controls->LoadPreset(L"Preset 65", false));
    for (const bool saveMode : {false, true}) {
        Open(saveMode);
        ASSERT_NE(List().currentItem(), nullptr);
        EXPECT_EQ(List().currentItem()->text(), "Preset 65");
        EXPECT_TRUE(List().viewport()->rect().contains(List().visualItemRect(List().currentItem())));
    }
}

TEST_F(Presets, AFailureToDeleteIsReportedAndTheListIsFilledAnew) {
    AddUser(L"Alto");
    Open(false);
    std::filesystem::remove(rig.folder / "user" / "Presets" / "Alto.kivoraLXPreset");
    boxes.click(QMessageBox::Yes);
    boxes.click(QMessageBox::Ok);
    Click("delBtn");
    EXPECT_THAT(boxes.take(),
                ElementsAre("Please Confirm|Delete preset \"Alto\"?", "Error|Failed to delete the preset."));
    EXPECT_EQ(List().count(), 0);
}

TEST_F(Presets, EachModeKeepsToItsOwnOperation) {
    AddUser(L"Alto");
    Open(true);
    dialog->loadPreset();
    EXPECT_TRUE(dialog->isVisible());
    Open(false);
    Name().setText("Mine");
    dialog->savePreset();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(UserHas(L"Mine"));
}

TEST_F(Presets, WithoutAnEngineTheListIsEmpty) {
    PresetList alone(nullptr, true);
    EXPECT_EQ(alone.findChild<QListWidget*>("presetList")->count(), 0);
    alone.findChild<QLineEdit*>("presetName")->setText("x");
    alone.savePreset();
    EXPECT_EQ(alone.result(), 0);
}

TEST_F(Presets, EveryControlHasANameAndAMnemonicOfItsOwnInEitherLanguage) {
    AddUser(L"Alto");
    for (const char* locale : {"ru_RU", "en_US"}) {
        Kivora::SetLocale(locale, false);
        for (const bool saveMode : {false, true}) {
            Open(saveMode);
            EXPECT_EQ(NamelessControls(*dialog), "");
            EXPECT_EQ(SharedMnemonics(*dialog), "");
            EXPECT_EQ(ClippedTexts(*dialog), "");
        }
    }
}

}  // namespace
