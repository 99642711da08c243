// What the panel tells when a port cannot be opened, is lost or loses messages, and when its settings are damaged.
#include "widget/ui/PanelRig.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "support/FakeSynth.h"
#include "support/Files.h"

using namespace KivoraTest;

namespace {

using Seen = std::vector<std::string>;

class PanelStart : public PanelTest {
protected:
    void SetUp() override {}  // each test first says what is wrong
    void Start() {
        CreateEngine();
        ShowPanel();
    }
    void DamageSettings() {
        std::filesystem::create_directories(rig.folder / "user");
        WriteFileBytes(rig.folder / "user/Kivora.ini", std::string(2'000'000, 'x'));
    }
    QMessageBox& WaitForBox() {
        Wait([] { return FindUnaskedBox() != nullptr; });
        QMessageBox* const box = FindUnaskedBox();
        return box != nullptr ? *box : throw std::runtime_error("no box");
    }
    QWidget& Lamp() { return Find("midi-led"); }
    /// What the display's line says; empty while it is hidden.
    std::string Notice() {
        const QLabel& line = Find<QLabel>("display-notice");
        return line.isVisible() ? line.text().toStdString() : "";
    }
};

TEST_F(PanelStart, AnOutputThatCannotBeOpenedIsToldAndThePanelIsThere) {
    rig.GetDevice(kSynth).failsToOpen = true;
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(answers.seen, Seen{"MIDI Engine Error: Failed to open output MIDI port."});
    EXPECT_EQ(Caption("patch1"), "1");
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), Seen{});
}

TEST_F(PanelStart, APortThatCannotBeOpenedIsToldWithTheReasonsAndOnceUntilTheyChange) {
    const auto synth = std::make_shared<FakeSynth>();
    synth->failure = L"No sound can be played.\nalsa: There is no sound card.";
    rig.synth = synth;
    rig.GetDevice(kSynth).failsToOpen = true;
    const auto start = [this](bool isTold) {
        ModalAnswers answers;
        answers.Click(QMessageBox::Ok);
        Start();
        if (isTold) {
            Wait([&] { return answers.AllGiven(); });
        } else {
            QApplication::processEvents();
            EXPECT_EQ(FindUnaskedBox(), nullptr);
        }
        CloseWindow();
        controls->Close();
        controls.reset();
        rig.engine.reset();
        return answers.details;
    };
    const Seen why{
        "No sound: no synthesizer could be opened.\nNo sound can be played.\nalsa: There is no sound card.\n"
        "Choose another synthesizer here, or another audio system or sound font for the software synthesizer."};
    EXPECT_EQ(start(true), why);
    EXPECT_EQ(start(false), Seen{});
    synth->failure = L"No sound can be played.";
    EXPECT_NE(start(true), why);
    rig.GetDevice(kSynth).failsToOpen = false;
    start(false);
    rig.GetDevice(kSynth).failsToOpen = true;
    EXPECT_EQ(start(true).size(), 1u) << "it worked in between";
}

TEST_F(PanelStart, TheBuiltInSynthesizersReasonIsNotGivenForAnotherOutput) {
    const auto synth = std::make_shared<FakeSynth>();
    synth->failure = L"No sound can be played.";
    rig.synth = synth;
    rig.backend.defaultOutput = kOtherSynth;
    rig.backend.Unplug(kSynth);
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    CreateEngine();
    Engine().SetSavedOutputPortName(kOtherSynth);
    Engine().SaveSettings();
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    CreateWindow();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(
        answers.details,
        Seen{"No sound: no synthesizer could be opened.\nChoose another synthesizer here, or another audio system "
             "or sound font for the software synthesizer."});
}

TEST_F(PanelStart, TheBuiltInSynthesizerThatWasChosenAndHasNoFontIsTold) {
    rig.synth = std::make_shared<FakeSynth>();
    rig.backend.Unplug(kSynth);
    CreateEngine();
    Engine().SetSavedOutputPortName(kSynth);
    Engine().SaveSettings();
    CreateWindow();
    Wait([&] { return !Notice().empty(); });
    EXPECT_EQ(Notice(), "No sound: the software synthesizer has no sound font");
}

TEST_F(PanelStart, AWayToOtherProgramsThatStandsInForTheSynthesizerIsTold) {
    for (const wchar_t* const port : {L"Midi Through Port-0", L"Other programs (Kivora LX out)"}) {
        rig.synth = std::make_shared<FakeSynth>();
        rig.backend.devices.clear();
        rig.backend.Plug(port, LibMidi::kOutput);
        rig.backend.defaultOutput = port;
        CloseWindow();
        controls.reset();
        CreateEngine();
        CreateWindow();
        Wait([&] { return !Notice().empty(); });
        EXPECT_EQ(Notice(), "No sound here: " + NK::CString(port).ToUtf8() + " hands the notes to other programs");
    }
}

TEST_F(PanelStart, AnInputThatCannotBeOpenedIsToldWithItsName) {
    rig.backend.defaultInput = kKeyboard;
    rig.GetDevice(kKeyboard).failsToOpen = true;
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    Wait([&] { return answers.AllGiven(); });
    ASSERT_EQ(answers.seen.size(), 1u);
    EXPECT_EQ(answers.seen[0].substr(0, 19), "MIDI Engine Error: ");
    EXPECT_NE(answers.seen[0].find("Failed to open input MIDI port:"), std::string::npos);
    EXPECT_NE(answers.seen[0].find("Keyboard"), std::string::npos);
}

TEST_F(PanelStart, DamagedSettingsAreTold) {
    DamageSettings();
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(answers.seen, Seen{"Warning: The settings file is damaged. The default settings are in force; the file "
                                 "will be kept under another name."});
}

TEST_F(PanelStart, SettingsThatCannotBeReadAreToldWithThePathAndTheReasonOnceTheWindowIsThere) {
    std::filesystem::create_directories(rig.folder / "user");
    std::filesystem::create_symlink("/proc/self/mem", rig.folder / "user/Kivora.ini");
    ModalAnswers answers;
    bool windowIsThere = false;
    answers.Then([&](QDialog& box) {
        windowIsThere = window && window->isVisible();
        box.reject();
    });
    Start();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_TRUE(windowIsThere);
    ASSERT_EQ(answers.seen.size(), 1u);
    EXPECT_NE(answers.seen[0].find("cannot be read at present"), std::string::npos) << answers.seen[0];
    EXPECT_EQ(answers.details, Seen{(rig.folder / "user/Kivora.ini").native() + "\nInput/output error"});
}

TEST_F(PanelStart, SettingsThatStayUnreadableAreToldInABoxOnceAndInTheLineFromThenOn) {
    std::filesystem::create_directories(rig.folder / "user");
    const auto file = rig.folder / "user/Kivora.ini";
    const auto restart = [this] {
        CloseWindow();
        controls->Close();
        controls.reset();
        rig.engine.reset();
        Start();
    };
    const auto answerBox = [this] {
        const std::string text = WaitForBox().text().toStdString();
        QTest::mouseClick(WaitForBox().button(QMessageBox::Ok), Qt::LeftButton);
        return text;
    };
    std::filesystem::create_symlink("/proc/self/mem", file);
    Start();
    const std::string told = answerBox();
    EXPECT_EQ(Notice(), "");

    restart();
    EXPECT_EQ(FindUnaskedBox(), nullptr);
    EXPECT_EQ(Notice(), "A file cannot be read. Press here for more.");
    QTest::mouseClick(&Find<QLabel>("display-notice"), Qt::LeftButton);
    EXPECT_EQ(Notice(), "");
    EXPECT_EQ(answerBox(), told);

    std::filesystem::remove(file);
    restart();
    EXPECT_EQ(FindUnaskedBox(), nullptr);
    EXPECT_EQ(Notice(), "");

    std::filesystem::remove(file);
    std::filesystem::create_symlink("/proc/self/mem", file);
    restart();
    EXPECT_EQ(answerBox(), told) << "it could be read in between";
}

TEST_F(PanelStart, NoBoxComesBeforeThePanel) {
    rig.GetDevice(kSynth).failsToOpen = true;
    DamageSettings();
    ModalAnswers answers;
    std::vector<bool> panelWasThere;
    for (int box = 0; box < 2; ++box) {
        answers.Then([&](QDialog& dialog) {
            panelWasThere.push_back(panel != nullptr && panel->isVisible());
            dialog.accept();
        });
    }
    Start();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(panelWasThere, (std::vector<bool>{true, true}));
}

TEST_F(PanelStart, WhatIsToldStopsNobodyAndIsDismissedByNoKeyOfWhoPlays) {
    DamageSettings();
    Start();
    QMessageBox& box = WaitForBox();
    EXPECT_FALSE(box.isModal());
    box.activateWindow();  // as where the system gives it the keyboard
    Wait([&] { return QApplication::activeWindow() == &box; });
    Type(Qt::Key_Escape);
    EXPECT_TRUE(box.isVisible()) << "in its first second";
    EndDeafTime(box);
    rig.TakeWritten();
    Press(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten().front(), "90 3c 50");
    Type(Qt::Key_Space);
    Type(Qt::Key_Return);
    EXPECT_TRUE(box.isVisible());
    EXPECT_THAT(rig.TakeWritten(), testing::Not(testing::Contains("80 3c 00")));
    Release(Qt::Key_Z);
    QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    EXPECT_EQ(FindUnaskedBox(), nullptr);
}

TEST_F(PanelStart, OneIsToldAfterTheOther) {
    rig.GetDevice(kSynth).failsToOpen = true;
    DamageSettings();
    Start();
    const auto boxes = [&] { return panel->findChildren<QMessageBox*>(); };
    QMessageBox& first = WaitForBox();
    EXPECT_EQ(first.windowTitle(), "Warning");
    EXPECT_EQ(boxes().size(), 1);
    first.reject();
    Wait([&] { return boxes().size() == 1 && FindUnaskedBox() != nullptr; });
    EXPECT_EQ(FindUnaskedBox()->windowTitle(), "MIDI Engine Error");
}

TEST_F(PanelStart, AFileThatIsSetAsideIsToldWhileNotesGoOn) {
    DamageSettings();
    Start();
    WaitForBox().reject();
    Press(Qt::Key_Z);
    rig.TakeWritten();
    ASSERT_TRUE(Engine().SaveSettings());
    Wait([&] { return FindUnaskedBox() != nullptr && FindUnaskedBox()->text().endsWith("Kivora.ini.bad"); });
    EXPECT_THAT(rig.TakeWritten(), testing::Not(testing::Contains("80 3c 00")));
    Release(Qt::Key_Z);
}

TEST_F(PanelStart, AnOutputThatIsLostIsToldAndWhatIsHeldIsReleased) {
    Start();
    EXPECT_EQ(Notice(), "");
    Press(Qt::Key_Z);
    Show();
    ASSERT_TRUE(Piano().IsPressed(60));
    rig.GetDevice(kSynth).failsToWrite = true;
    Type(Qt::Key_X);
    rig.Run(5);
    Wait([&] { return Notice() != ""; });
    EXPECT_EQ(Notice(), "No sound: the connection to Software synthesizer was lost");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "who plays on is not stopped";
    QApplication::processEvents();
    EXPECT_FALSE(Piano().IsPressed(60));
    rig.GetDevice(kSynth).failsToWrite = false;
    Wait([&] { return Notice() == ""; });
    rig.TakeWritten();
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten().front(), "90 3c 50") << "it is opened again by itself";
}

TEST_F(PanelStart, AKeyboardThatIsPulledOutIsToldUntilItIsBack) {
    rig.backend.defaultInput = kKeyboard;
    Start();
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    Show();
    ASSERT_TRUE(Piano().IsPressed(60));
    rig.GetDevice(kKeyboard).state = LibMidi::DeviceState::kLost;
    Wait([&] { return Notice() != ""; });
    EXPECT_EQ(Notice(), "The MIDI keyboard was disconnected: Keyboard");
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
    rig.GetDevice(kKeyboard).state = LibMidi::DeviceState::kBack;
    Wait([&] { return Notice() != "The MIDI keyboard was disconnected: Keyboard"; });
    EXPECT_EQ(Notice(), "The MIDI keyboard is connected again: Keyboard");
    rig.GetDevice(kKeyboard).state = LibMidi::DeviceState::kWorks;
}

TEST_F(PanelStart, ASavedOutputThatIsMissingIsToldByTheDisplayAndAPressOpensTheSettings) {
    CreateEngine();
    Engine().SetSavedOutputPortName(L"Grand <b>piano</b>");
    Engine().SaveSettings();
    Engine().SetSavedOutputPortName({});
    ModalAnswers answers;
    QString trouble;
    answers.Then([&](QDialog& dialog) {
        trouble = dialog.findChild<QLabel*>("troubleLabel")->text();
        dialog.reject();
    });
    ShowPanel();
    EXPECT_EQ(Notice(), "No sound: Grand <b>piano</b> is not connected");
    Click("display-notice");
    EXPECT_EQ(answers.seen, Seen{"MIDI Settings"});
    EXPECT_EQ(trouble,
              "No sound: Grand <b>piano</b> is not connected.\nConnect it and look for the devices again, or choose "
              "another synthesizer here.");
}

TEST_F(PanelStart, WithoutAnyOutputTheUserIsToldAndTheDisplayGoesOnSayingSo) {
    rig.backend.defaultOutput.clear();
    rig.backend.Unplug(kSynth);
    rig.backend.Unplug(kOtherSynth);
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    CreateEngine();
    CreateWindow();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(answers.seen, Seen{"MIDI Engine Error: No default output MIDI port found."});
    EXPECT_EQ(Notice(), "No sound: there is no synthesizer");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Notice(), "Нет звука: нет ни одного синтезатора");
}

TEST_F(PanelStart, WithoutAWorkingOutputNothingIsRecordedAndTheDisplaySaysSo) {
    rig.GetDevice(kSynth).failsToOpen = true;
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(Notice(), "No sound: no synthesizer could be opened");
    panel->onRecord();
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_FALSE(Button("record").isChecked());
    EXPECT_EQ(Notice(), "Not recording: nothing sounds, so nothing would be recorded");
    rig.GetDevice(kSynth).failsToOpen = false;
    EXPECT_TRUE(controls->SetOutputPortByIndex(0));
    panel->onRecord();
    EXPECT_TRUE(Engine().IsRecording());
    EXPECT_EQ(Notice(), "");
}

TEST_F(PanelStart, ATakeWhoseOutputIsLostSaysSoAndIsNotStoppedForNotPlaying) {
    Start();
    panel->onRecord();
    ASSERT_TRUE(Engine().IsRecording());
    Type(Qt::Key_Z);
    rig.Run(5);
    rig.GetDevice(kSynth).state = LibMidi::DeviceState::kLost;
    Wait([&] { return Engine().IsOutputLost(); });
    Wait([&] { return Notice() != ""; });
    EXPECT_EQ(Notice(), "Nothing sounds or is recorded: the connection to Software synthesizer was lost");
    rig.time.AdvanceMs(31000);
    panel->timerTick();
    EXPECT_TRUE(Engine().IsRecording());
    rig.GetDevice(kSynth).state = LibMidi::DeviceState::kBack;
    Wait([&] { return !Engine().IsOutputLost(); });
    rig.GetDevice(kSynth).state = LibMidi::DeviceState::kWorks;
    EXPECT_TRUE(Engine().IsRecording()) << "it goes on";
    EXPECT_EQ(Notice(), "");
}

TEST_F(PanelStart, LostMessagesAreToldOnceByABoxThatStopsNobodyAndCountedAtTheLamp) {
    rig.backend.defaultInput = kKeyboard;
    Start();
    EXPECT_EQ(Lamp().toolTip(), "");
    Press(Qt::Key_Z);
    rig.GetKeyboard().Deliver(0x90, 67, 100);
    Show();
    ASSERT_TRUE(Piano().IsPressed(60));
    ASSERT_TRUE(Piano().IsPressed(67));
    rig.GetKeyboard().Lose(1);
    Show();
    EXPECT_FALSE(Piano().IsPressed(67));
    EXPECT_TRUE(Piano().IsPressed(60)) << "of the computer's keys nothing was lost";
    const auto boxes = [&] { return panel->findChildren<QMessageBox*>(); };
    ASSERT_EQ(boxes().size(), 1);
    EXPECT_FALSE(boxes().first()->isModal());
    EXPECT_TRUE(boxes().first()->isVisible());
    EXPECT_EQ(boxes().first()->windowTitle(), "Warning");
    EXPECT_TRUE(boxes().first()->testAttribute(Qt::WA_ShowWithoutActivating)) << "the keys go on playing";
    const QString once = Lamp().toolTip();
    EXPECT_NE(once, "");
    rig.GetKeyboard().Lose(1);
    QApplication::processEvents();
    EXPECT_EQ(boxes().size(), 1);
    EXPECT_NE(Lamp().toolTip(), once);
    EXPECT_TRUE(Lamp().toolTip().contains("2"));
    EXPECT_EQ(Lamp().accessibleDescription(), Lamp().toolTip());
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_TRUE(Lamp().toolTip().startsWith("Сообщения")) << Lamp().toolTip().toStdString();
    EXPECT_TRUE(Lamp().toolTip().contains("2"));
}

}  // namespace
