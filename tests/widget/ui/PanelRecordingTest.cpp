// Recording from the panel: its controls, its limits, saving, and the takes that wait to be saved.
#include "widget/ui/PanelRig.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "support/Files.h"
#include "unit/engine/SavedTake.h"

using namespace KivoraTest;

namespace {

const std::string kAsk = "Do you want to save the recording?";
const std::string kIdle =
    "Recording has been automatically stopped because you were not playing anything for too long.";
const std::string kLong = "Recording has been automatically stopped because the recording is too long.";
constexpr int kLongestIdleMs = 30000;
constexpr int kLongestMs = 3600000;
using Seen = std::vector<std::string>;

class PanelRecording : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        Click("record-view");
    }
    /// Starts by the record key and lets the first program changes be captured.
    void Record() {
        Click("record");
        ASSERT_TRUE(Engine().IsRecording());
        rig.RunPlayer();
    }
    void PlayNote() {
        Type(Qt::Key_Z);
        Show();
    }
    void Pass(std::int64_t milliseconds) { rig.time.AdvanceMs(milliseconds); }
    /// Lets time pass, with a note now and then, until the recording has that length.
    void RecordUntil(int milliseconds) {
        constexpr int kPause = 20000;
        while (Engine().GetRecordingTime() + kPause < milliseconds) {
            Pass(kPause);
            PlayNote();
        }
        Pass(milliseconds - Engine().GetRecordingTime());
    }
    bool IsMIDIFile(const std::string& name) {
        return std::filesystem::exists(rig.folder / name) && ReadFileBytes(rig.folder / name).substr(0, 4) == "MThd";
    }
    /// Whether a dialog that nobody expects comes up within a few turns of the event loop.
    bool IsQuiet(const ModalAnswers& answers) {
        const std::size_t before = answers.seen.size();
        for (int i = 0; i < 5; ++i) {
            QTest::qWait(2);
        }
        return answers.seen.size() == before;
    }
    /// Until all answers were given and nothing is open.
    void WaitAnswered(const ModalAnswers& answers) {
        Wait([&] {
            return answers.AllGiven() && QApplication::activeModalWidget() == nullptr && FindUnaskedBox() == nullptr;
        });
    }
    /// That a limit, which is reached just now, stops the recording only a millisecond later, and says why.
    void ExpectTheStopAMillisecondLater(ModalAnswers& answers, const std::string& reason) {
        panel->timerTick();
        EXPECT_TRUE(IsQuiet(answers));
        EXPECT_TRUE(Engine().IsRecording());
        answers.Click(QMessageBox::No);
        Pass(1);
        panel->timerTick();
        WaitAnswered(answers);
        EXPECT_EQ(answers.seen, Seen{"Warning: " + reason + " " + kAsk});
        EXPECT_FALSE(Engine().IsRecording());
    }
    void CreateAgain() {
        CloseWindow();
        controls->Close();
        controls.reset();
        rig.engine.reset();
        CreateEngine();
    }
};

TEST_F(PanelRecording, TheRecordKeyStartsAndShowsIt) {
    EXPECT_EQ(Label("record-time"), "00:00");
    EXPECT_FALSE(Button("record").isChecked());
    EXPECT_FALSE(Button("stop").isEnabled());
    Record();
    EXPECT_TRUE(Button("record").isChecked());
    EXPECT_TRUE(Button("stop").isEnabled());
    Click("record");
    EXPECT_TRUE(Engine().IsRecording()) << "a second click does not stop";
    EXPECT_TRUE(Button("record").isChecked());
    Engine().StopRecording();
    EXPECT_FALSE(Button("record").isChecked());
    EXPECT_FALSE(Button("stop").isEnabled());
}

TEST_F(PanelRecording, TheDisplayCountsIn) {
    Engine().SetClick({.sound = Kivora::ClickSettings::Sound::kOutput, .beatsPerBar = 3, .countInBars = 1});
    Engine().SetTempo(60);
    const auto line = [this] {
        QApplication::processEvents();
        const auto& notice = Find<QLabel>("display-notice");
        return notice.isVisible() ? notice.text().toStdString() : "";
    };
    const auto pass = [this](int milliseconds) {
        rig.Run(milliseconds);
        QTest::qWait(250);  // the panel looks each 100 ms
    };
    Click("record");
    EXPECT_EQ(line(), "Count-in: 3");
    pass(1100);
    EXPECT_EQ(line(), "Count-in: 2");
    pass(1000);
    EXPECT_EQ(line(), "Count-in: 1");
    pass(1000);
    EXPECT_EQ(line(), "");
    Engine().StopRecording();
    Click("record");
    EXPECT_EQ(line(), "Count-in: 3");
    Engine().StopRecording();
    EXPECT_EQ(line(), "");
}

TEST_F(PanelRecording, AStartThatFailsIsTold) {
    Engine().ShutdownMidi();
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Click("record");
    EXPECT_EQ(answers.seen, Seen{"Error: Failed to start MIDI recording."});
    EXPECT_FALSE(Button("record").isChecked());
}

TEST_F(PanelRecording, TheElapsedTimeIsShown) {
    Record();
    Pass(59400 - Engine().GetRecordingTime());
    PlayNote();
    panel->timerTick();
    EXPECT_EQ(Label("record-time"), "00:59");
    Pass(59500 - Engine().GetRecordingTime());
    panel->timerTick();
    EXPECT_EQ(Label("record-time"), "01:00");
    Pass(1000);
    Wait([&] { return Label("record-time") == "01:01"; });
}

TEST_F(PanelRecording, AClickOnRecordMeanwhileLeavesTheElapsedTime) {
    Record();
    Pass(59500 - Engine().GetRecordingTime());
    PlayNote();
    panel->timerTick();
    Click("record");
    EXPECT_EQ(Label("record-time"), "01:00");
}

TEST_F(PanelRecording, TheHelpOfTheRecordKeyTellsTheLimits) {
    EXPECT_EQ(Button("record").toolTip(),
              "Maximal recording time is 60 minutes.\nIf you are not playing for 30 seconds, recording is stopped.");
}

TEST_F(PanelRecording, StopSavesUnderTheChosenName) {
    Record();
    PlayNote();
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        auto* const files = qobject_cast<QFileDialog*>(&dialog);
        ASSERT_NE(files, nullptr);
        EXPECT_EQ(files->acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(files->nameFilters(), QStringList{"MIDI Files (*.mid *.midi)"});
        EXPECT_EQ(files->directory().absolutePath(), PathOf("user"));
        files->findChild<QLineEdit*>("fileNameEdit")->setText(PathOf("take.mid"));
        QTest::keyClick(files->findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    });
    Click("stop");
    EXPECT_EQ(answers.seen, Seen{"Save MIDI File"});
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_TRUE(IsMIDIFile("take.mid"));
    EXPECT_TRUE(IsQuiet(answers)) << "a saved take is not offered again";
    window->close();
    EXPECT_TRUE(IsQuiet(answers));
}

TEST_F(PanelRecording, ANameWithoutAnExtensionGetsOne) {
    Record();
    PlayNote();
    ModalAnswers answers;
    answers.TypeFile(PathOf("take"));
    Click("stop");
    EXPECT_TRUE(IsMIDIFile("take.mid"));
}

TEST_F(PanelRecording, StopWithNothingCapturedAsksNothing) {
    Click("record");
    ASSERT_TRUE(Engine().IsRecording());
    ASSERT_EQ(Engine().GetRecordedCount(), 0);
    ModalAnswers answers;
    Click("stop");
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_EQ(answers.seen, Seen{});
}

TEST_F(PanelRecording, AFileThatCannotBeWrittenLeadsToAnotherName) {
    Record();
    PlayNote();
    ModalAnswers answers;
    answers.TypeFile(PathOf("missing folder/take.mid")).Click(QMessageBox::Ok).TypeFile(PathOf("second.mid"));
    Click("stop");
    EXPECT_EQ(answers.seen, (Seen{"Save MIDI File", "Error: Failed to write MIDI file.", "Save MIDI File"}));
    EXPECT_EQ(answers.details, Seen{PathOf("missing folder/take.mid").toStdString() + "\nNo such file or directory"});
    EXPECT_TRUE(IsMIDIFile("second.mid"));
}

TEST_F(PanelRecording, NobodyWaitsForAFifoInPlaceOfTheFile) {
    ASSERT_EQ(mkfifo((rig.folder / "fifo.mid").c_str(), 0600), 0);
    Record();
    PlayNote();
    ModalAnswers answers;
    answers.TypeFile(PathOf("fifo.mid")).Click(QMessageBox::Yes).Click(QMessageBox::Ok);
    answers.TypeFile(PathOf("other.mid"));
    Click("stop");
    EXPECT_EQ(answers.details, Seen{PathOf("fifo.mid").toStdString() + "\nIt is no regular file"});
    EXPECT_TRUE(IsMIDIFile("other.mid"));
}

TEST_F(PanelRecording, TheFolderOfTheLastSavedTakeIsOfferedAgain) {
    const auto folderOfDialog = [this] {
        QString offered;
        Record();
        PlayNote();
        ModalAnswers answers;
        answers.Then([&offered](QDialog& dialog) {
            offered = dynamic_cast<QFileDialog&>(dialog).directory().absolutePath();
            dialog.reject();
        });
        Click("stop");
        return offered;
    };
    EXPECT_EQ(folderOfDialog(), PathOf("user"));
    std::filesystem::create_directories(rig.folder / "mine/takes");
    {
        ModalAnswers answers;
        answers.TypeFile(PathOf("mine/takes/first.mid"));
        panel->onStopRecording();
    }
    ASSERT_TRUE(IsMIDIFile("mine/takes/first.mid"));
    EXPECT_EQ(folderOfDialog(), PathOf("mine/takes"));
    ASSERT_TRUE(Engine().SaveSettings());
    Engine().GetLastFolders() = {};
    ASSERT_TRUE(Engine().LoadSettings());
    EXPECT_EQ(folderOfDialog(), PathOf("mine/takes")) << "by the next start";
    std::filesystem::rename(rig.folder / "mine", rig.folder / "gone");
    EXPECT_EQ(folderOfDialog(), PathOf("user"));
}

TEST_F(PanelRecording, ATakeWhoseDialogWasRefusedCanBeSavedLater) {
    Record();
    PlayNote();
    ModalAnswers answers;
    answers.Refuse();
    Click("stop");
    EXPECT_EQ(answers.seen, Seen{"Save MIDI File"});
    EXPECT_TRUE(IsQuiet(answers)) << "not again at once";
    answers.TypeFile(PathOf("later.mid"));
    panel->onStopRecording();
    EXPECT_TRUE(IsMIDIFile("later.mid"));
}

TEST_F(PanelRecording, ThirtySecondsOfSilenceDoNotStopButAMillisecondMoreDoes) {
    Record();
    PlayNote();
    ModalAnswers answers;
    Pass(kLongestIdleMs - Engine().GetIdleTime());
    ExpectTheStopAMillisecondLater(answers, kIdle);
}

TEST_F(PanelRecording, SixtyMinutesDoNotStopButAMillisecondMoreDoes) {
    ModalAnswers answers;
    Record();
    RecordUntil(kLongestMs);
    PlayNote();
    ASSERT_EQ(Engine().GetRecordingTime(), kLongestMs);
    panel->timerTick();
    EXPECT_EQ(Label("record-time"), "60:00");
    ExpectTheStopAMillisecondLater(answers, kLong);
}

TEST_F(PanelRecording, TheIdleReasonWinsWhenBothHold) {
    ModalAnswers answers;
    Record();
    RecordUntil(kLongestMs);
    Pass(kLongestIdleMs + 1);
    answers.Click(QMessageBox::No);
    panel->timerTick();
    WaitAnswered(answers);
    EXPECT_EQ(answers.seen, Seen{"Warning: " + kIdle + " " + kAsk});
}

TEST_F(PanelRecording, YesAtTheLimitSaves) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::Yes).TypeFile(PathOf("limit.mid"));
    Pass(kLongestIdleMs + 1);
    panel->timerTick();
    WaitAnswered(answers);
    EXPECT_EQ(answers.seen, (Seen{"Warning: " + kIdle + " " + kAsk, "Save MIDI File"}));
    EXPECT_TRUE(IsMIDIFile("limit.mid"));
}

TEST_F(PanelRecording, NoAtTheLimitIsNotAskedAgain) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::No);
    Pass(kLongestIdleMs + 1);
    panel->timerTick();
    WaitAnswered(answers);
    EXPECT_TRUE(IsQuiet(answers));
    window->close();
    EXPECT_TRUE(IsQuiet(answers));
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PanelRecording, ATakeWhoseQuestionAtTheLimitGotNoAnswerWaits) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Then([](QDialog& dialog) { dialog.close(); });
    Pass(kLongestIdleMs + 1);
    panel->timerTick();
    WaitAnswered(answers);
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_TRUE(IsQuiet(answers)) << "not again at once";
    answers.Click(QMessageBox::Save).TypeFile(PathOf("unanswered.mid"));
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(IsMIDIFile("unanswered.mid"));
}

TEST_F(PanelRecording, AtTheLimitWithNothingCapturedOnlyTheReasonIsShown) {
    ModalAnswers answers;
    Click("record");
    ASSERT_EQ(Engine().GetRecordedCount(), 0);
    Pass(kLongestIdleMs + 1);
    answers.Click(QMessageBox::Ok);
    panel->timerTick();
    WaitAnswered(answers);
    EXPECT_EQ(answers.seen, Seen{"Warning: " + kIdle});
    EXPECT_FALSE(Engine().IsRecording());
}

TEST_F(PanelRecording, TheLimitsAreCheckedBehindAnotherDialog) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Then([&](QDialog& about) {
        Pass(1000);
        Wait([&] { return Label("record-time") == "00:01"; });
        answers.Click(QMessageBox::No);
        Pass(kLongestIdleMs + 1);
        Wait([&] { return !Engine().IsRecording(); });
        about.reject();
    });
    QTimer::singleShot(0, panel, &KivoraWidget::aboutClicked);
    Wait([&] { return !Engine().IsRecording() && QApplication::activeModalWidget() == nullptr; });
    WaitAnswered(answers);
    EXPECT_EQ(answers.seen, (Seen{"About", "Warning: " + kIdle + " " + kAsk}));
}

TEST_F(PanelRecording, ATakeEndedByAPanicIsOffered) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::Save).TypeFile(PathOf("panic.mid"));
    Type(Qt::Key_Escape);
    EXPECT_FALSE(Engine().IsRecording());
    Wait([&] {
        return answers.AllGiven() && QApplication::activeModalWidget() == nullptr && FindUnaskedBox() == nullptr;
    });
    EXPECT_TRUE(IsMIDIFile("panic.mid"));
    ASSERT_EQ(answers.seen.size(), 2u);
    EXPECT_EQ(answers.seen[0].substr(0, 21), "Recording Not Saved: ");
    EXPECT_NE(answers.seen[0].find(kAsk), std::string::npos);
}

TEST_F(PanelRecording, ATakeThatIsRefusedIsNotOfferedAgain) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::Discard);
    Click("reset");
    WaitAnswered(answers);
    window->close();
    EXPECT_TRUE(IsQuiet(answers));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(answers.seen.size(), 1u);
}

TEST_F(PanelRecording, ClosingTheWindowOffersTheTakeThatRuns) {
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::Save).TypeFile(PathOf("closing.mid"));
    EXPECT_TRUE(window->close());
    EXPECT_EQ(answers.seen.size(), 2u);
    EXPECT_TRUE(IsMIDIFile("closing.mid"));
}

TEST_F(PanelRecording, ATakeForLaterIsOfferedAtTheNextStart) {
    {
        ModalAnswers answers;
        Record();
        PlayNote();
        answers.Click(QMessageBox::Cancel);
        EXPECT_TRUE(window->close()) << "what waits is on the disk";
        EXPECT_EQ(answers.seen.size(), 1u);
    }
    CreateAgain();
    ModalAnswers answers;
    answers.Click(QMessageBox::Save).TypeFile(PathOf("next start.mid"));
    CreateWindow();
    WaitAnswered(answers);
    EXPECT_TRUE(IsMIDIFile("next start.mid"));
    CreateAgain();
    CreateWindow();
    EXPECT_TRUE(IsQuiet(answers));
    EXPECT_EQ(answers.seen.size(), 2u);
}

TEST_F(PanelRecording, ATakeThatTheDiskDoesNotKeepHoldsTheWindowOpenAndTheUserIsTold) {
    WriteFileBytes(rig.folder / "user/Takes", "a file where the folder should be");
    ModalAnswers answers;
    Record();
    PlayNote();
    answers.Click(QMessageBox::Cancel).Click(QMessageBox::Ok);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    ASSERT_EQ(answers.seen.size(), 2u);
    EXPECT_NE(answers.seen[0].find("It is not safe on the disk: it is lost when the program ends."), std::string::npos);
    EXPECT_EQ(answers.seen[1],
              "Warning: The recording cannot be kept on the disk until the next start, so the program goes on. Save "
              "the recording in another folder, or discard it.");
    answers.Click(QMessageBox::Discard);
    EXPECT_TRUE(window->close());
}

TEST_F(PanelRecording, ASaveAtTheCloseThatIsBrokenOffKeepsTheTake) {
    {
        ModalAnswers answers;
        Record();
        PlayNote();
        answers.Click(QMessageBox::Save).Refuse();
        EXPECT_TRUE(window->close());
    }
    CreateAgain();
    ModalAnswers answers;
    answers.Click(QMessageBox::Discard);
    CreateWindow();
    WaitAnswered(answers);
    EXPECT_EQ(answers.seen.size(), 1u);
}

TEST_F(PanelRecording, ATakeThatCannotBeKeptIsTold) {
    CloseWindow();
    std::filesystem::create_directories(rig.folder / "user");
    WriteFileBytes(rig.folder / "user/Takes", "a file in the folder's place");
    ShowPanel();
    Click("record-view");
    ModalAnswers answers;
    Record();
    Press(Qt::Key_Z);
    Show();
    Wait([&] { return Find("display-notice").isVisible(); });
    EXPECT_EQ(Label("display-notice"), "The recording goes on, but it cannot be kept safe on the disk meanwhile.");
    EXPECT_TRUE(Engine().IsRecording());
    rig.TakeWritten();
    Release(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), Seen{"80 3c 00"}) << "the key was held until then";
    EXPECT_EQ(answers.seen, Seen{});
    answers.Refuse();
    Click("stop");
    EXPECT_EQ(Label("display-notice"), "A recording is not safe on the disk. Press here to save it.");
    EXPECT_TRUE(IsQuiet(answers));
    answers.Click(QMessageBox::Save).TypeFile(PathOf("pressed.mid"));
    QTest::mouseClick(&Find("display-notice"), Qt::LeftButton);
    WaitAnswered(answers);
    EXPECT_TRUE(IsMIDIFile("pressed.mid"));
    EXPECT_FALSE(Find("display-notice").isVisible());
}

TEST_F(PanelRecording, AChordThatIsHeldAtTheStopEndsInTheFileAndGoesOnSounding) {
    Record();
    Press(Qt::Key_Z);
    Show();
    Pass(500);
    ModalAnswers answers;
    answers.TypeFile(PathOf("held.mid"));
    Engine().SetDual(true);
    Engine().PlayNoteOn(72, 100);
    Show();
    rig.TakeWritten();
    panel->onStopRecording();
    EXPECT_THAT(FindOpen(ReadSavedTake(rig.folder / "held.mid")), testing::IsEmpty());
    const std::vector<std::string> written = rig.TakeWritten();
    EXPECT_EQ(std::count(written.begin(), written.end(), "80 48 00"), 0);
}

TEST_F(PanelRecording, ADamagedTakeIsOfferedWithWhatIsMissingAndItsFileIsKept) {
    {
        ModalAnswers answers;
        Record();
        for (int i = 0; i < 10; ++i) {
            PlayNote();
        }
        answers.Click(QMessageBox::Cancel);
        EXPECT_TRUE(window->close());
    }
    CreateAgain();
    std::filesystem::path journal = std::filesystem::directory_iterator(rig.folder / "user/Takes")->path();
    journal.replace_extension("kivtake");  // the grid stands beside it
    std::string bytes = ReadFileBytes(journal);
    bytes.replace(20 + 8 * 12, 2 * 12, std::string(2 * 12, '?'));
    WriteFileBytes(journal, bytes);
    ModalAnswers answers;
    answers.Click(QMessageBox::Save).TypeFile(PathOf("damaged.mid")).Click(QMessageBox::Ok);
    CreateWindow();
    WaitAnswered(answers);
    ASSERT_EQ(answers.seen.size(), 3u);
    EXPECT_NE(answers.seen[0].find("Its file is damaged: 2 events of it are missing."), std::string::npos)
        << answers.seen[0];
    EXPECT_EQ(answers.seen[2],
              "Warning: The damaged file of a recording was kept under another name:\n" + journal.string() + ".bad");
    EXPECT_TRUE(IsMIDIFile("damaged.mid"));
}

TEST_F(PanelRecording, RecordingEndsTheKeysThatAreHeld) {
    Press(Qt::Key_Z);
    rig.TakeWritten();
    Click("record");
    const std::vector<std::string> written = rig.TakeWritten();
    EXPECT_EQ(std::count(written.begin(), written.end(), "80 3c 00"), 1);
    Release(Qt::Key_Z);
}

}  // namespace
