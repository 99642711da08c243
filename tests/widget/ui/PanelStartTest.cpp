// What the panel tells when a port cannot be opened, is lost or loses messages, and when its settings are damaged.
#include "widget/ui/PanelRig.h"

#include <filesystem>

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
    QWidget& Lamp() { return Find("midi-led"); }
};

TEST_F(PanelStart, AnOutputThatCannotBeOpenedIsToldAndThePanelIsThere) {
    rig.GetDevice(kSynth).failsToOpen = true;
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    EXPECT_EQ(answers.seen, Seen{"MIDI Engine Error: Failed to open output MIDI port."});
    EXPECT_EQ(Caption("patch1"), "1");
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), Seen{});
}

TEST_F(PanelStart, AnInputThatCannotBeOpenedIsToldWithItsName) {
    rig.backend.defaultInput = kKeyboard;
    rig.GetDevice(kKeyboard).failsToOpen = true;
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
    ASSERT_EQ(answers.seen.size(), 1u);
    EXPECT_EQ(answers.seen[0].substr(0, 19), "MIDI Engine Error: ");
    EXPECT_NE(answers.seen[0].find("Failed to open input MIDI port:"), std::string::npos);
    EXPECT_NE(answers.seen[0].find("Keyboard"), std::string::npos);
}

TEST_F(PanelStart, WithoutADefaultOutputTheUserIsTold) {
    rig.backend.defaultOutput.clear();
    rig.backend.Unplug(kSynth);
    rig.backend.Unplug(kOtherSynth);
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    CreateEngine();
    CreateWindow();
    EXPECT_EQ(answers.seen, Seen{"MIDI Engine Error: No default output MIDI port found."});
}

TEST_F(PanelStart, DamagedSettingsAreTold) {
    std::filesystem::create_directories(rig.folder / "user");
    WriteFileBytes(rig.folder / "user/Kivora.ini", std::string(2'000'000, 'x'));
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Start();
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
    EXPECT_TRUE(windowIsThere);
    ASSERT_EQ(answers.seen.size(), 1u);
    EXPECT_NE(answers.seen[0].find("cannot be read at present"), std::string::npos) << answers.seen[0];
    EXPECT_EQ(answers.details, Seen{(rig.folder / "user/Kivora.ini").native() + "\nInput/output error"});
}

TEST_F(PanelStart, AnOutputThatIsLostIsToldAndWhatIsHeldIsReleased) {
    Start();
    Press(Qt::Key_Z);
    Show();
    ASSERT_TRUE(Piano().IsPressed(60));
    rig.GetDevice(kSynth).failsToWrite = true;
    Type(Qt::Key_X);
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    rig.Run(5);
    Wait([&] { return answers.AllGiven() && QApplication::activeModalWidget() == nullptr; });
    EXPECT_EQ(answers.seen,
              Seen{"MIDI Engine Error: The connection to the MIDI synthesizer was lost: Software synthesizer"});
    QApplication::processEvents();
    EXPECT_FALSE(Piano().IsPressed(60));
}

TEST_F(PanelStart, LostMessagesAreToldOnceByABoxThatStopsNobodyAndCountedAtTheLamp) {
    rig.backend.defaultInput = kKeyboard;
    Start();
    EXPECT_EQ(Lamp().toolTip(), "");
    rig.GetKeyboard().Deliver(0x90, 60, 100);
    rig.GetKeyboard().Lose(1);
    QApplication::processEvents();
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
}

}  // namespace
