#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QtTest/QTest>
#include <QVBoxLayout>

#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "nk/qt/nk_qt_string.h"
#include "support/FakeSynth.h"
#include "ui/dialogs/midiSettings.h"
#include "unit/engine/EngineRig.h"
#include "widget/ui/DialogTexts.h"
#include "widget/ui/ModalBoxes.h"

using KivoraTest::kKeyboard;
using KivoraTest::kOtherKeyboard;
using KivoraTest::kOtherSynth;
using KivoraTest::kSynth;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr QSize kUsualScreen(1366, 728);  ///< without its task bar

class SettingsDialog : public testing::Test {
protected:
    SettingsDialog() {
        setenv("XDG_DATA_HOME", rig.folder.GetPath().c_str(), 1);
        Kivora::SetLocale("en_US", false);
        rig.synth = synth;
        rig.CreateOpen();
        controls.emplace(*rig.engine);
    }
    ~SettingsDialog() override {
        dialog.reset();
        Kivora::SetLocale("en_US", false);
        unsetenv("XDG_DATA_HOME");
    }
    void Open() {
        dialog = std::make_unique<midiSettings>(&*controls);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    template <class Widget>
    Widget& Find(const char* name) {
        auto* const found = dialog->findChild<Widget*>(name);
        if (found == nullptr) {
            throw std::runtime_error(name);
        }
        return *found;
    }
    QComboBox& Combo(const char* name) { return Find<QComboBox>(name); }
    QSpinBox& Spin(const char* name) { return Find<QSpinBox>(name); }
    QCheckBox& Check(const char* name) { return Find<QCheckBox>(name); }
    void Click(const char* name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
    void ClickCheck(const char* name) {
        QTest::mouseClick(&Check(name), Qt::LeftButton, {}, QPoint(8, Check(name).height() / 2));
    }
    QStringList Items(const char* name) {
        QStringList items;
        for (int i = 0; i < Combo(name).count(); ++i) {
            items << Combo(name).itemText(i);
        }
        return items;
    }
    QColor SwatchColor(const char* name) {
        QWidget& swatch = Find<QWidget>(name);
        return swatch.grab().toImage().pixelColor(swatch.width() / 2, swatch.height() / 2);
    }
    bool IsSaved() { return std::filesystem::exists(rig.folder / "user" / "Kivora.ini"); }

    KivoraTest::EngineRig rig;
    std::shared_ptr<KivoraTest::FakeSynth> synth = std::make_shared<KivoraTest::FakeSynth>();
    std::optional<Kivora::EngineControls> controls;
    std::unique_ptr<midiSettings> dialog;
    ModalBoxes boxes;
};

TEST_F(SettingsDialog, ThePortsAreListedInTheEnginesOrderWithThoseInUse) {
    rig.engine->SetInputPortByName(kOtherKeyboard);
    Open();
    EXPECT_EQ(Items("insCb"), (QStringList{"Keyboard", "Other keyboard"}));
    EXPECT_EQ(Items("outsCb"), (QStringList{"Software synthesizer", "Other synthesizer"}));
    EXPECT_EQ(Combo("insCb").currentText(), "Other keyboard");
    EXPECT_EQ(Combo("outsCb").currentText(), "Software synthesizer");
}

TEST_F(SettingsDialog, WithoutInputPortsTheirComboBoxIsDisabledAndClosingLeavesTheInputAlone) {
    rig.backend.Unplug(kKeyboard);
    rig.backend.Unplug(kOtherKeyboard);
    rig.engine->SetSavedInputPortName(L"Gone");
    rig.engine->RescanPorts();
    Open();
    EXPECT_FALSE(Combo("insCb").isEnabled());
    EXPECT_TRUE(Combo("outsCb").isEnabled());
    Click("pushButton");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_THAT(boxes.take(), IsEmpty());
    EXPECT_EQ(rig.engine->GetInputPortName(), L"Gone");
}

TEST_F(SettingsDialog, ClosingTakesThePortsOver) {
    Open();
    Combo("insCb").setCurrentIndex(1);
    Combo("outsCb").setCurrentIndex(1);
    EXPECT_EQ(rig.engine->GetOutputPortName(), kSynth);
    Click("pushButton");
    EXPECT_EQ(rig.engine->GetInputPortName(), kOtherKeyboard);
    EXPECT_EQ(rig.engine->GetOutputPortName(), kOtherSynth);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(SettingsDialog, PortsThatCannotBeOpenedAreReportedAndTheRestIsTakenOver) {
    rig.GetDevice(kOtherKeyboard).failsToOpen = true;
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    Open();
    Combo("insCb").setCurrentIndex(1);
    Combo("outsCb").setCurrentIndex(1);
    Spin("spinLow").setValue(33);
    boxes.click(QMessageBox::Ok);
    boxes.click(QMessageBox::Ok);
    Click("pushButton");
    EXPECT_THAT(boxes.take(), ElementsAre(testing::StartsWith("Error|Setting input port failed"),
                                          testing::StartsWith("Error|Setting output port failed")));
    EXPECT_EQ(rig.engine->GetVelocityLow(), 33);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(IsSaved());
}

TEST_F(SettingsDialog, TheControlsAreLoadedOnEveryShow) {
    Open();
    dialog->hide();
    rig.engine->SetVelocityLow(11);
    rig.engine->SetVelocityNormal(22);
    rig.engine->SetVelocityHigh(33);
    rig.engine->SetTranslatePatchNames(false);
    rig.engine->SetTranslateKeyNames(false);
    rig.engine->SetShowNoteNames(true);
    rig.engine->SetKeyboardColoring(2);
    rig.engine->SetUIColor(Qt::red);
    rig.engine->SetUIDisplayColor(Qt::green);
    rig.engine->SetUIDisplay2Color(Qt::blue);
    rig.engine->SetWallpaper("/pictures/sea.png");
    synth->settings.reverb = false;
    dialog->show();
    EXPECT_FALSE(Check("synthReverb").isChecked());
    EXPECT_EQ(Spin("spinLow").value(), 11);
    EXPECT_EQ(Spin("spinNormal").value(), 22);
    EXPECT_EQ(Spin("spinHigh").value(), 33);
    EXPECT_FALSE(Check("translatePatchNames").isChecked());
    EXPECT_FALSE(Check("translateKeyNames").isChecked());
    EXPECT_TRUE(Check("showNoteNames").isChecked());
    EXPECT_EQ(Combo("coloringCombo").currentIndex(), 2);
    EXPECT_EQ(SwatchColor("bgColorDisplay"), QColor(Qt::red));
    EXPECT_EQ(SwatchColor("dispColorDisplay"), QColor(Qt::green));
    EXPECT_EQ(SwatchColor("disp2ColorDisplay"), QColor(Qt::blue));
    EXPECT_EQ(Find<QLineEdit>("wpEdit").text(), "/pictures/sea.png");
}

TEST_F(SettingsDialog, LoadingTheControlsSetsNothing) {
    rig.engine->SetKeyboardColoring(2);
    KivoraTest::SignalLog signalLog(*rig.engine);
    Open();
    EXPECT_THAT(signalLog.Take(), IsEmpty());
    EXPECT_EQ(synth->applied, 0);
}

TEST_F(SettingsDialog, TheDefaultVelocitiesReachTheEngineOnClosing) {
    rig.engine->SetVelocityLow(11);
    rig.engine->SetVelocityNormal(22);
    rig.engine->SetVelocityHigh(33);
    Open();
    Click("restoreDefaultVelocities");
    EXPECT_EQ(Spin("spinLow").value(), 40);
    EXPECT_EQ(Spin("spinNormal").value(), 80);
    EXPECT_EQ(Spin("spinHigh").value(), 127);
    EXPECT_EQ(rig.engine->GetVelocityLow(), 11);
    Click("pushButton");
    EXPECT_EQ(rig.engine->GetVelocityLow(), 40);
    EXPECT_EQ(rig.engine->GetVelocityNormal(), 80);
    EXPECT_EQ(rig.engine->GetVelocityHigh(), 127);
}

TEST_F(SettingsDialog, EscapeDropsWhatWaitsForTheClosing) {
    Open();
    Spin("spinLow").setValue(11);
    Combo("outsCb").setCurrentIndex(1);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(rig.engine->GetVelocityLow(), 40);
    EXPECT_EQ(rig.engine->GetOutputPortName(), kSynth);
    EXPECT_FALSE(IsSaved());
}

TEST_F(SettingsDialog, EnterConfirms) {
    Open();
    Spin("spinLow").setValue(11);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(rig.engine->GetVelocityLow(), 11);
}

TEST_F(SettingsDialog, VelocitiesGoFrom1To127) {
    Open();
    for (const char* name : {"spinLow", "spinNormal", "spinHigh"}) {
        EXPECT_EQ(Spin(name).minimum(), 1);
        EXPECT_EQ(Spin(name).maximum(), 127);
    }
}

TEST_F(SettingsDialog, TheLanguageOptionsReachTheEngineOnClosing) {
    Open();
    for (const char* name : {"translatePatchNames", "translateKeyNames", "showNoteNames"}) {
        ClickCheck(name);
    }
    EXPECT_TRUE(rig.engine->GetTranslatePatchNames());
    EXPECT_FALSE(rig.engine->GetShowNoteNames());
    Click("pushButton");
    EXPECT_FALSE(rig.engine->GetTranslatePatchNames());
    EXPECT_FALSE(rig.engine->GetTranslateKeyNames());
    EXPECT_TRUE(rig.engine->GetShowNoteNames());
}

TEST_F(SettingsDialog, TheWayOfTheComputerKeysIsShownAndReachesTheEngineOnClosing) {
    using NK::Piano::EPCKeyWay;
    rig.engine->SetPCKeyWay(EPCKeyWay::kByPlace);
    Open();
    EXPECT_EQ(Combo("pcKeyWayCombo").currentText(), "By place");
    Combo("pcKeyWayCombo").setCurrentIndex(Combo("pcKeyWayCombo").findText("As typed"));
    EXPECT_EQ(rig.engine->GetPCKeyWay(), EPCKeyWay::kByPlace);
    Click("pushButton");
    EXPECT_EQ(rig.engine->GetPCKeyWay(), EPCKeyWay::kAsTyped);
    Open();
    Combo("pcKeyWayCombo").setCurrentIndex(Combo("pcKeyWayCombo").findText("Automatic"));
    Click("pushButton");
    EXPECT_EQ(rig.engine->GetPCKeyWay(), EPCKeyWay::kAutomatic);
}

TEST_F(SettingsDialog, TheKeyColouringAppliesAtOnce) {
    Open();
    Combo("coloringCombo").setFocus();
    QTest::keyClick(&Combo("coloringCombo"), Qt::Key_Down);
    EXPECT_EQ(rig.engine->GetKeyboardColoring(), 1);
    QTest::keyClick(&Combo("coloringCombo"), Qt::Key_Down);
    EXPECT_EQ(rig.engine->GetKeyboardColoring(), 2);
    Combo("coloringCombo").setCurrentIndex(0);
    EXPECT_EQ(rig.engine->GetKeyboardColoring(), 0);
    dialog->onKeyboardColorChanged(7);
    EXPECT_EQ(rig.engine->GetKeyboardColoring(), 0);
}

TEST_F(SettingsDialog, EachColourFollowsItsColourDialogLive) {
    struct Case {
        const char* button;
        const char* swatch;
        const char* title;
        QColor (Kivora::CKivora::*color)() const;
    };
    Open();
    for (const Case& entry :
         {Case{"setBgColorBtn", "bgColorDisplay", "Select Background Color", &Kivora::CKivora::GetUIColor},
          Case{"setDispColorBtn", "dispColorDisplay", "Select Primary LCD Display Color",
               &Kivora::CKivora::GetUIDisplayColor},
          Case{"setDisp2ColorBtn", "disp2ColorDisplay", "Select Secondary LCD Display Color",
               &Kivora::CKivora::GetUIDisplay2Color}}) {
        const QColor before = (*rig.engine.*entry.color)();
        QColor meanwhile;
        boxes.add([&](QWidget& window) {
            auto& colors = *window.findChild<QColorDialog*>();
            EXPECT_EQ(window.windowTitle(), entry.title);
            EXPECT_EQ(colors.currentColor(), before);
            colors.setCurrentColor(QColor(12, 34, 56));
            meanwhile = (*rig.engine.*entry.color)();
            QTest::mouseClick(window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
        Click(entry.button);
        EXPECT_EQ(meanwhile, QColor(12, 34, 56)) << entry.title;
        EXPECT_EQ(SwatchColor(entry.swatch), QColor(12, 34, 56));
        boxes.add([&](QWidget& window) {
            auto& colors = *window.findChild<QColorDialog*>();
            colors.setCurrentColor(Qt::red);
            QTest::keyClick(&colors, Qt::Key_Escape);
        });
        Click(entry.button);
        EXPECT_EQ((*rig.engine.*entry.color)(), QColor(12, 34, 56)) << "cancelled";
    }
}

TEST_F(SettingsDialog, TheChoiceOfAColourFitsASmallScreenWithItsButtonsInSight) {
    constexpr QSize kSmall(525, 360);
    Open();
    boxes.add([&](QWidget& window) {
        auto& chooser = dynamic_cast<FittedDialog&>(window);
        chooser.fitInto(kSmall);
        QApplication::processEvents();
        EXPECT_LE(chooser.width(), kSmall.width());
        EXPECT_LE(chooser.height(), kSmall.height());
        auto* const buttons = chooser.findChild<QDialogButtonBox*>();
        EXPECT_EQ(buttons->visibleRegion().boundingRect().size(), buttons->size());
        chooser.reject();
    });
    Click("setBgColorBtn");
}

TEST(FittedDialog, StaysOnTheScreenWhenItGrows) {
    FittedDialog grown;
    auto* const label = new QLabel("1", &grown);
    auto* const layout = new QVBoxLayout(&grown);
    layout->addWidget(label);
    grown.show();
    const QRect screen = grown.screen()->availableGeometry();
    grown.move(screen.bottomRight() - QPoint(grown.frameGeometry().width(), grown.frameGeometry().height()));
    const int before = grown.height();
    label->setText("1\n2\n3\n4\n5\n6\n7\n8\n9");
    QApplication::processEvents();
    EXPECT_GT(grown.height(), before);
    EXPECT_TRUE(screen.contains(grown.frameGeometry()));
}

TEST_F(SettingsDialog, TheDefaultColoursAreTheEngines) {
    rig.engine->SetUIColor(Qt::red);
    rig.engine->SetUIDisplayColor(Qt::red);
    rig.engine->SetUIDisplay2Color(Qt::red);
    Open();
    Click("setDefaultBgColorBtn");
    Click("setDefaultDispColorBtn");
    Click("setDefaultDisp2ColorBtn");
    EXPECT_EQ(rig.engine->GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(rig.engine->GetUIDisplayColor(), QColor(83, 149, 255));
    EXPECT_EQ(rig.engine->GetUIDisplay2Color(), QColor(83, 255, 149));
    EXPECT_EQ(SwatchColor("bgColorDisplay"), QColor(110, 112, 93));
    EXPECT_EQ(SwatchColor("dispColorDisplay"), QColor(83, 149, 255));
    EXPECT_EQ(SwatchColor("disp2ColorDisplay"), QColor(83, 255, 149));
}

TEST_F(SettingsDialog, TheSwatchHasTheColourInFourRoles) {
    Open();
    dialog->bgColorChanged(QColor(1, 2, 3));
    const QPalette palette = Find<QWidget>("bgColorDisplay").palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_EQ(palette.color(group, QPalette::Window), QColor(1, 2, 3));
        EXPECT_EQ(palette.color(group, QPalette::Button), QColor(1, 2, 3));
    }
}

TEST_F(SettingsDialog, AWallpaperIsChosenAndCleared) {
    const QString path = QString::fromStdString((rig.folder / "sea.png").string());
    ASSERT_TRUE(QPixmap(":/Resources/Preset_User.png").save(path));
    Open();
    boxes.add([&](QWidget& window) {
        auto& files = dynamic_cast<QFileDialog&>(window);
        EXPECT_EQ(files.windowTitle(), "Select wallpaper image");
        EXPECT_THAT(files.nameFilters(), ElementsAre("Image files (*.png *.xpm *.jpg *.jpeg *.bmp)"));
        files.findChild<QLineEdit*>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(&files, "accept");
    });
    Click("wpBrowseBtn");
    EXPECT_EQ(Find<QLineEdit>("wpEdit").text(), path);
    EXPECT_EQ(rig.engine->GetWallpaper(), path);
    boxes.add([](QWidget& window) { window.close(); });
    Click("wpBrowseBtn");
    EXPECT_EQ(rig.engine->GetWallpaper(), path);
    Click("wpClearBtn");
    EXPECT_EQ(Find<QLineEdit>("wpEdit").text(), QString());
    EXPECT_EQ(rig.engine->GetWallpaper(), QString());
}

TEST_F(SettingsDialog, ConfirmingSavesTheSettingsFile) {
    Open();
    Click("pushButton");
    EXPECT_TRUE(IsSaved());
}

TEST_F(SettingsDialog, ASettingsFileThatCannotBeWrittenIsReported) {
    std::filesystem::create_directories(rig.folder / "user" / "Kivora.ini" / "in the way");
    Open();
    std::string details;
    boxes.add([&details](QWidget& box) {
        details = dynamic_cast<QMessageBox&>(box).informativeText().toStdString();
        box.close();
    });
    Click("pushButton");
    EXPECT_THAT(boxes.take(), ElementsAre("Error|Failed to save the settings."));
    const std::string path = (rig.folder / "user/Kivora.ini").native();
    EXPECT_EQ(details, path + "\nIt is no regular file\nWhat was changed is kept in this file until then:\n" + path +
                           ".changes");
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(SettingsDialog, TheFolderOfTheLastWallpaperIsOfferedAgain) {
    Open();
    std::filesystem::create_directories(rig.folder / "pictures");
    std::ofstream(rig.folder / "pictures/blue.png") << "not decoded here";
    const QString folder = QString::fromStdString((rig.folder / "pictures").native());
    boxes.add([&](QWidget& files) {
        files.findChild<QLineEdit*>("fileNameEdit")->setText(folder + "/blue.png");
        QMetaObject::invokeMethod(&files, "accept");
    });
    Click("wpBrowseBtn");
    Click("wpClearBtn");
    QString offered;
    boxes.add([&](QWidget& files) {
        offered = dynamic_cast<QFileDialog&>(files).directory().absolutePath();
        files.close();
    });
    Click("wpBrowseBtn");
    EXPECT_EQ(offered, folder);
}

TEST_F(SettingsDialog, TheChosenLanguageIsTakenAndRememberedOnClosing) {
    Open();
    QComboBox& combo = Combo("localeCombo");
    EXPECT_EQ(combo.currentText(), "English (United States)");
    EXPECT_EQ(combo.count(), 2);
    combo.setCurrentIndex(1);
    EXPECT_EQ(Kivora::GetCurrentLocale(), "en_US");
    Click("pushButton");
    EXPECT_EQ(Kivora::GetCurrentLocale(), "ru_RU");
    EXPECT_TRUE(std::filesystem::exists(rig.folder / "Brennholt" / "Kivora" / "Locale.ini"));
}

TEST_F(SettingsDialog, ARescanShowsTheDevicesThatAreThereNow) {
    Open();
    Combo("outsCb").setCurrentIndex(1);
    rig.backend.Plug(L"New keys", LibMidi::kInput);
    Click("rescanBtn");
    EXPECT_EQ(Items("insCb"), (QStringList{"Keyboard", "Other keyboard", "New keys"}));
    EXPECT_EQ(Combo("outsCb").currentText(), "Other synthesizer");
    EXPECT_EQ(rig.engine->GetOutputPortName(), kSynth);
    EXPECT_TRUE(rig.GetDevice(kSynth).isOpen);
}

TEST_F(SettingsDialog, PortsThatAreNoDevicesHaveTheirNamesInTheUsersLanguage) {
    rig.backend.Plug(L"All MIDI keyboards", LibMidi::kInput);
    rig.backend.Plug(L"Other programs (Kivora LX out)", LibMidi::kOutput);
    rig.engine->RescanPorts();
    Kivora::SetLocale("ru_RU", false);
    Open();
    EXPECT_EQ(Items("insCb"), (QStringList{"Keyboard", "Other keyboard", "Все MIDI-клавиатуры"}));
    EXPECT_EQ(Items("outsCb").last(), "Другие программы (Kivora LX out)");
    Combo("insCb").setCurrentIndex(2);
    dialog->portsChanged();
    EXPECT_EQ(Combo("insCb").currentIndex(), 2) << "chosen, and not yet taken over";
    Click("pushButton");
    EXPECT_EQ(rig.engine->GetInputPortName(), L"All MIDI keyboards") << "and is saved so in every language";
}

TEST_F(SettingsDialog, ARescanIsRefusedWhileRecording) {
    ASSERT_TRUE(rig.engine->StartRecording());
    Open();
    rig.backend.Plug(L"New keys", LibMidi::kInput);
    boxes.click(QMessageBox::Ok);
    Click("rescanBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Error|MIDI devices cannot be looked for while recording."));
    EXPECT_EQ(Combo("insCb").count(), 2);
    EXPECT_TRUE(rig.engine->IsRecording());
}

TEST_F(SettingsDialog, APortThatCannotBeOpenedAgainIsReported) {
    Open();
    rig.GetDevice(kSynth).failsToOpen = true;
    boxes.click(QMessageBox::Ok);
    Click("rescanBtn");
    EXPECT_THAT(boxes.take(), ElementsAre(testing::StartsWith("Error|Looking for MIDI devices failed\n")));
    EXPECT_EQ(Combo("outsCb").count(), 2);
}

TEST_F(SettingsDialog, WithoutAnEngineNothingIsTakenOver) {
    midiSettings alone(nullptr);
    alone.show();
    EXPECT_FALSE(alone.findChild<QComboBox*>("insCb")->isEnabled());
    EXPECT_FALSE(alone.findChild<QComboBox*>("outsCb")->isEnabled());
    alone.rescanPorts();
    alone.bgColorChanged(Qt::red);
    alone.onWPClear();
    alone.closeClicked();
    EXPECT_FALSE(alone.isVisible());
    EXPECT_THAT(boxes.take(), IsEmpty());
}

TEST_F(SettingsDialog, TextsAreAsGiven) {
    Open();
    const auto text = [&](const char* name) { return Find<QWidget>(name).property("text").toString().remove('&'); };
    EXPECT_EQ(dialog->windowTitle(), "MIDI Settings");
    QStringList titles;
    for (const QGroupBox* group : dialog->findChildren<QGroupBox*>()) {
        titles << group->title();
    }
    EXPECT_EQ(titles, (QStringList{"MIDI I/O", "PC Keyboard Playing", "Language", "Recording", "Interface Options",
                                   "Built-in synthesizer"}));
    EXPECT_EQ(text("labelHighVel"), "Note velocity with SHIFT:");
    EXPECT_EQ(text("labelNormVvel"), "Normal velocity:");
    EXPECT_EQ(text("labelLowVel"), "Note velocity with CTRL:");
    EXPECT_EQ(text("restoreDefaultVelocities"), "Restore Default Values");
    EXPECT_EQ(text("translateKeyNames"), "Show local alphabet letters in PC keyboard key hint");
    EXPECT_EQ(Items("coloringCombo"), (QStringList{"None", "Rainbow", "Scriabin"}));
    EXPECT_EQ(Combo("coloringCombo").toolTip(), "Piano keyboard coloring");
}

TEST_F(SettingsDialog, FitsEveryScreenAndReachesAllOfItThere) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        for (const QSize& room : {QSize(792, 560), QSize(1016, 560), QSize(1085, 574), QSize(903, 472)}) {
            Open();
            dialog->fitInto(room);
            QApplication::processEvents();
            EXPECT_LE(dialog->width(), room.width());
            EXPECT_LE(dialog->height(), room.height());
            EXPECT_EQ(Find<QScrollArea>("form").horizontalScrollBar()->maximum(), 0) << locale << room.width();
            Combo("insCb").setFocus();
            for (QWidget* control = nullptr; control != &Combo("insCb"); control = QApplication::focusWidget()) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                const QWidget& focused = *QApplication::focusWidget();
                EXPECT_FALSE(focused.visibleRegion().isEmpty()) << focused.objectName().toStdString();
                EXPECT_EQ(focused.visibleRegion().boundingRect().height(), focused.height())
                    << focused.objectName().toStdString();
            }
        }
    }
}

TEST_F(SettingsDialog, PortsThatChangeMeanwhileAreListedAnewAndTheChosenOnesStay) {
    Open();
    Combo("outsCb").setCurrentIndex(Combo("outsCb").findText(NK::ToQt(kOtherSynth)));
    rig.backend.Unplug(kSynth);
    rig.engine->RescanPorts();
    dialog->portsChanged();
    EXPECT_EQ(Combo("outsCb").currentText(), NK::ToQt(kOtherSynth));
    dialog->closeClicked();
    EXPECT_EQ(rig.engine->GetOutputPortName(), kOtherSynth);
}

TEST_F(SettingsDialog, TheWheelTurnsOnlyWhatHasTheFocus) {
    Open();
    Combo("insCb").setFocus();
    auto& low = Find<QSpinBox>("spinLow");
    const int value = low.value();
    const auto turn = [&low] {
        const QPointF at = low.rect().center();
        QWheelEvent wheel(at, low.mapToGlobal(at), {}, QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&low, &wheel);
        return wheel.isAccepted();
    };
    EXPECT_FALSE(low.focusPolicy() == Qt::WheelFocus);
    EXPECT_FALSE(turn()) << "left to the form, which scrolls";
    EXPECT_EQ(low.value(), value);
    low.setFocus();
    EXPECT_TRUE(turn());
    EXPECT_EQ(low.value(), value - 1);
}

TEST_F(SettingsDialog, TheTabKeyReachesEveryControlInTheFormsOrder) {
    rig.engine->SetInputPortByName(kKeyboard);
    Open();
    Combo("insCb").setFocus();
    QStringList reached{"insCb"};
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached << QApplication::focusWidget()->objectName();
        if (reached.last() == "insCb") {
            break;
        }
    }
    EXPECT_EQ(reached, (QStringList{"insCb",
                                    "outsCb",
                                    "rescanBtn",
                                    "pcKeyWayCombo",
                                    "spinHigh",
                                    "spinNormal",
                                    "spinLow",
                                    "restoreDefaultVelocities",
                                    "translatePatchNames",
                                    "translateKeyNames",
                                    "showNoteNames",
                                    "localeCombo",
                                    "keepPlayed",
                                    "writeTempo",
                                    "coloringCombo",
                                    "setBgColorBtn",
                                    "setDefaultBgColorBtn",
                                    "setDispColorBtn",
                                    "setDefaultDispColorBtn",
                                    "setDisp2ColorBtn",
                                    "setDefaultDisp2ColorBtn",
                                    "wpEdit",
                                    "wpBrowseBtn",
                                    "wpClearBtn",
                                    "synthDriverCb",
                                    "synthFontEdit",
                                    "synthFontBrowseBtn",
                                    "synthFontDefaultBtn",
                                    "synthLatency",
                                    "synthGain",
                                    "synthReverb",
                                    "synthChorus",
                                    "synthTestBtn",
                                    "pushButton",
                                    "insCb"}));
}

TEST_F(SettingsDialog, EveryControlHasANameAndNoMnemonicIsSharedInEitherLanguage) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        Open();
        dialog->fitInto(kUsualScreen);
        EXPECT_EQ(NamelessControls(*dialog), "") << locale;
        EXPECT_EQ(SharedMnemonics(*dialog), "") << locale;
        EXPECT_EQ(ClippedTexts(*dialog), "") << locale;
        EXPECT_EQ(Find<QLabel>("synthLatencyDisplay").text(),
                  QString(locale).startsWith("ru") ? QString::fromUtf8("10,2 мс") : QString("10.2 ms"));
        EXPECT_LE(dialog->height(), 700) << locale;
        EXPECT_LE(dialog->width(), 1280) << locale;
    }
}

TEST_F(SettingsDialog, AChangeOfLanguageWhileItIsOpenRetranslatesAllOfIt) {
    synth->defaultFont = L"";
    Open();
    dialog->fitInto(kUsualScreen);
    for (const char* locale : {"ru_RU", "en_US"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        const bool russian = QString(locale) == "ru_RU";
        EXPECT_EQ(Items("localeCombo").last(), russian ? "Русский" : "Russian");
        EXPECT_EQ(Items("coloringCombo").first(), russian ? "Нет" : "None");
        EXPECT_EQ(Find<QGroupBox>("synthGroup").title(), russian ? "Встроенный синтезатор" : "Built-in synthesizer");
        EXPECT_TRUE(Find<QLabel>("synthFontLabel").text().contains('&')) << locale;
        EXPECT_EQ(SharedMnemonics(*dialog), "") << locale;
        EXPECT_EQ(NamelessControls(*dialog), "") << locale;
        EXPECT_TRUE(QTest::qWaitFor([&] { return ClippedTexts(*dialog).empty(); })) << ClippedTexts(*dialog);
    }
}

TEST_F(SettingsDialog, AMnemonicReachesItsControl) {
    Open();
    const QString label = Find<QLabel>("outsLabel").text();
    const QChar letter = label[label.indexOf('&') + 1];
    QTest::keyClick(dialog.get(), letter.toLower().toLatin1(), Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Combo("outsCb"));
}

using SynthGroup = SettingsDialog;

TEST_F(SynthGroup, ShowsTheSettings) {
    synth->settings.audioDriver = L"alsa";
    synth->settings.latencyFrames = 1024;
    synth->settings.gain = 0.75;
    synth->settings.chorus = false;
    Open();
    EXPECT_EQ(Items("synthDriverCb"), (QStringList{"Automatic", "PulseAudio", "ALSA"}));
    EXPECT_EQ(Combo("synthDriverCb").currentText(), "ALSA");
    EXPECT_EQ(Find<QLineEdit>("synthFontEdit").text(), QString());
    EXPECT_EQ(Find<QLineEdit>("synthFontEdit").placeholderText(), "/fonts/default-GM.sf2");
    EXPECT_EQ(Find<QLabel>("synthLatencyDisplay").text(), "20.5 ms");
    EXPECT_EQ(Find<QLabel>("synthGainDisplay").text(), "75 %");
    EXPECT_TRUE(Check("synthReverb").isChecked());
    EXPECT_FALSE(Check("synthChorus").isChecked());
}

TEST_F(SynthGroup, EachControlTakesEffectAtOnce) {
    Open();
    ClickCheck("synthReverb");
    EXPECT_FALSE(synth->settings.reverb);
    ClickCheck("synthChorus");
    EXPECT_FALSE(synth->settings.chorus);
    Find<QSlider>("synthGain").setValue(120);
    EXPECT_DOUBLE_EQ(synth->settings.gain, 1.2);
    EXPECT_EQ(Find<QLabel>("synthGainDisplay").text(), "120 %");
    Combo("synthDriverCb").setFocus();
    QTest::keyClick(&Combo("synthDriverCb"), Qt::Key_Down);
    EXPECT_EQ(synth->settings.audioDriver, L"pulseaudio");
    QTest::keyClick(&Combo("synthDriverCb"), Qt::Key_Up);
    EXPECT_EQ(synth->settings.audioDriver, L"");
}

TEST_F(SynthGroup, TheLatencyGoesFromSafeToFast) {
    Open();
    QSlider& slider = Find<QSlider>("synthLatency");
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(synth->settings.latencyFrames, LibMidi::SynthSettings::kMaxLatencyFrames);
    EXPECT_EQ(Find<QLabel>("synthLatencyDisplay").text(), "81.9 ms");
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(synth->settings.latencyFrames, LibMidi::SynthSettings::kMinLatencyFrames);
    EXPECT_EQ(Find<QLabel>("synthLatencyDisplay").text(), "2.6 ms");
}

TEST_F(SynthGroup, ALatencyBetweenTwoPlacesIsKeptUntilTheSliderMoves) {
    synth->settings.latencyFrames = 320;
    Open();
    ClickCheck("synthReverb");
    EXPECT_EQ(synth->settings.latencyFrames, 320U);
}

TEST_F(SynthGroup, WhatIsRefusedIsShownAsBeforeAndSaidInWords) {
    Open();
    synth->failure = L"There is no sound card.";
    boxes.click(QMessageBox::Ok);
    ClickCheck("synthReverb");
    EXPECT_THAT(boxes.take(), ElementsAre("Warning|There is no sound card."));
    EXPECT_TRUE(Check("synthReverb").isChecked());
    EXPECT_TRUE(synth->settings.reverb);
}

TEST_F(SynthGroup, TheTestSaysInWordsWhatFailed) {
    Open();
    Click("synthTestBtn");
    EXPECT_EQ(synth->tested, 1);
    EXPECT_THAT(boxes.take(), IsEmpty());
    synth->failure = L"No sound font is found.";
    boxes.click(QMessageBox::Ok);
    Click("synthTestBtn");
    EXPECT_THAT(boxes.take(), ElementsAre("Warning|No sound font is found."));
}

TEST_F(SynthGroup, ASoundFontIsChosenAndTheDefaultTakenBack) {
    const std::filesystem::path path = rig.folder / "piano.sf2";
    std::ofstream(path) << "any";
    Open();
    boxes.add([&](QWidget& window) {
        auto& files = dynamic_cast<QFileDialog&>(window);
        files.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path.string()));
        QMetaObject::invokeMethod(&files, "accept");
    });
    Click("synthFontBrowseBtn");
    EXPECT_EQ(synth->settings.soundFont.ToUtf8(), path.string());
    EXPECT_EQ(Find<QLineEdit>("synthFontEdit").text().toStdString(), path.string());
    Click("synthFontDefaultBtn");
    EXPECT_TRUE(synth->settings.soundFont.IsEmpty());
    EXPECT_EQ(Find<QLineEdit>("synthFontEdit").text(), QString());
}

TEST_F(SynthGroup, TheFirstSoundFontBringsTheSynthesizersPort) {
    synth->defaultFont = L"";
    const std::filesystem::path path = rig.folder / "piano.sf2";
    std::ofstream(path) << "any";
    Open();
    EXPECT_EQ(Find<QLineEdit>("synthFontEdit").placeholderText(), "No sound font is installed");
    rig.backend.Plug(L"Built in", LibMidi::kOutput);
    boxes.add([&](QWidget& window) {
        auto& files = dynamic_cast<QFileDialog&>(window);
        files.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path.string()));
        QMetaObject::invokeMethod(&files, "accept");
    });
    Click("synthFontBrowseBtn");
    EXPECT_TRUE(Items("outsCb").contains("Built in"));
}

TEST_F(SynthGroup, IsHiddenWithoutASynthesizer) {
    rig.synth = nullptr;
    controls.reset();
    rig.CreateOpen();
    controls.emplace(*rig.engine);
    Open();
    EXPECT_FALSE(Find<QWidget>("synthGroup").isVisible());
    dialog->fitInto(kUsualScreen);
    QApplication::processEvents();
    // Both columns are of about the same height.
    const auto bottom = [&](const char* name) {
        return Find<QWidget>(name).mapTo(dialog.get(), Find<QWidget>(name).rect().bottomLeft()).y();
    };
    EXPECT_LT(std::abs(bottom("pcGroup") - bottom("interfaceGroup")), 130);
    Click("pushButton");
    EXPECT_FALSE(dialog->isVisible());
}

}  // namespace
