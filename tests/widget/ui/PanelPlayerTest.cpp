// The player's window beside the panel.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <functional>
#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QSlider>
#include <QSpinBox>
#include <vector>

#include "midi/reader/SMFReader.h"
#include "support/Files.h"
#include "ui/dialogs/ListenButton.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/SongFile.h"
#include "unit/engine/SongRig.h"
#include "widget/ui/DialogParts.h"

using namespace KivoraTest;
using Kivora::SongPlayer;

namespace {

class PanelPlayer : public PanelTest {
protected:
    PlayerWindow& Window() { return panel->player(); }
    SongPlayer::Status Status() { return SongPlayer(*controls).GetStatus(); }
    void OpenSong(const QString& damage = {}) {
        Window().openSong(
            {MakeSong({{0, {0x90, 5, 60, 100}}, {60'000, {0x80, 5, 60, 0}}}, 90'000), "a <b>.mid", damage});
        QApplication::setActiveWindow(&Window());
        QApplication::processEvents();
    }
    void ClickIn(const char* name) { QTest::mouseClick(&In<QPushButton>(Window(), name), Qt::LeftButton); }
    QString TextIn(const char* name) { return In<QLabel>(Window(), name).text(); }
    /// Time goes by, and the window looks.
    void Go(int milliseconds) {
        rig.Run(milliseconds);
        QEvent look(QEvent::WindowActivate);
        QApplication::sendEvent(&Window(), &look);
    }
    void PlayANote() {
        rig.RunPlayer();
        Engine().PlayNoteOn(60, 100);
        rig.Run(500);
        Engine().PlayNoteOff(60);
        rig.Run(10);
    }
    QAction& Entry(const QKeySequence& shortcut) {
        const auto entries = Find<QMenu>("panel-menu").actions();
        return **std::find_if(entries.begin(), entries.end(),
                              [&](const QAction* entry) { return entry->shortcut() == shortcut; });
    }
};

}  // namespace

TEST_F(PanelPlayer, PlaysPausesAndStopsAndThePianoFollows) {
    OpenSong();
    EXPECT_TRUE(Window().isVisible());
    EXPECT_FALSE(Window().isModal());
    EXPECT_EQ(TextIn("songTitle"), "a <b>.mid");
    EXPECT_EQ(In<QLabel>(Window(), "songTitle").toolTip(), "a <b>.mid") << "as it is: nothing is read as markup";
    EXPECT_EQ(TextIn("songTime"), "00:00 of 01:30");
    ClickIn("songPlayBtn");
    Go(1502);
    Show();
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
    EXPECT_TRUE(In<QPushButton>(Window(), "songPlayBtn").isChecked());
    EXPECT_EQ(TextIn("songTime"), "00:01 of 01:30");
    EXPECT_EQ(In<QSlider>(Window(), "songPosition").value(), 15);
    EXPECT_TRUE(Piano().IsPressed(60));
    ClickIn("songPlayBtn");
    Show();
    EXPECT_EQ(Status().state, SongPlayer::State::kPaused);
    EXPECT_FALSE(In<QPushButton>(Window(), "songPlayBtn").isChecked());
    EXPECT_FALSE(Piano().IsPressed(60));
    ClickIn("songStopBtn");
    EXPECT_EQ(TextIn("songTime"), "00:00 of 01:30");
}

TEST_F(PanelPlayer, NothingLooksAtTheEngineWhileNothingPlays) {
    OpenSong();
    const auto looks = [this] {
        const auto timers = Window().findChildren<QTimer*>();
        return std::any_of(timers.begin(), timers.end(), [](const QTimer* timer) { return timer->isActive(); });
    };
    EXPECT_FALSE(looks());
    ClickIn("songPlayBtn");
    EXPECT_TRUE(looks());
    ClickIn("songPlayBtn");
    EXPECT_FALSE(looks());
}

TEST_F(PanelPlayer, TheSliderTheLoopTheTempoAndTheTranspositionAreSet) {
    OpenSong();
    auto& position = In<QSlider>(Window(), "songPosition");
    EXPECT_EQ(position.maximum(), 900);
    position.setFocus();
    QTest::keyClick(&position, Qt::Key_PageUp);
    QTest::keyClick(&position, Qt::Key_Right);
    EXPECT_EQ(Status().positionUs, 5'100'000);
    ClickIn("songLoopBeginBtn");
    EXPECT_EQ(TextIn("songLoop"), "00:05 to 01:30");
    position.setValue(200);
    ClickIn("songLoopEndBtn");
    EXPECT_EQ(Status().loop, (SongPlayer::Loop{5'100'000, 20'000'000}));
    EXPECT_EQ(TextIn("songLoop"), "00:05 to 00:20");
    ClickIn("songLoopOffBtn");
    EXPECT_FALSE(Status().loop);
    EXPECT_EQ(TextIn("songLoop"), "");
    In<QSpinBox>(Window(), "songTempo").setValue(50);
    In<QSpinBox>(Window(), "songTransposition").setValue(-3);
    EXPECT_EQ(Status().tempoPercent, 50);
    EXPECT_EQ(Status().transposition, -3);
    OpenSong();
    EXPECT_EQ(In<QSpinBox>(Window(), "songTempo").value(), 100);
}

TEST_F(PanelPlayer, TheLoopBeginsAnewWhereItsEndIsSet) {
    OpenSong();
    In<QSlider>(Window(), "songPosition").setValue(50);
    ClickIn("songLoopBeginBtn");
    ClickIn("songPlayBtn");
    Go(2000);
    ClickIn("songLoopEndBtn");
    ASSERT_TRUE(Status().loop);
    EXPECT_EQ(Status().loop->beginUs, 5'000'000);
    EXPECT_EQ(Status().positionUs, 5'000'000);
    Go(5000);
    EXPECT_LT(Status().positionUs, Status().loop->endUs) << "again and again";
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
    ClickIn("songStopBtn");
    ClickIn("songLoopOffBtn");
    ClickIn("songLoopEndBtn");
    EXPECT_FALSE(Status().loop) << "it would be too short";
}

TEST_F(PanelPlayer, WhatIsBeingTypedStaysWhileTheSongPlays) {
    OpenSong();
    ClickIn("songPlayBtn");
    auto& tempo = In<QSpinBox>(Window(), "songTempo");
    tempo.setFocus();
    tempo.selectAll();
    QTest::keyClicks(&tempo, "15");
    Go(50);
    EXPECT_EQ(tempo.cleanText(), "15");
    QTest::keyClicks(&tempo, "0");
    Go(50);
    QTest::keyClick(&tempo, Qt::Key_Return);
    EXPECT_EQ(Status().tempoPercent, 150);
    tempo.selectAll();
    QTest::keyClicks(&tempo, "30");
    OpenSong();
    EXPECT_EQ(tempo.value(), 100);
    EXPECT_EQ(tempo.cleanText(), "100");
    EXPECT_EQ(Status().tempoPercent, 100) << "it was meant for the former song";
}

TEST_F(PanelPlayer, OnePlaysAlongOnTheComputerKeysWhileItHasTheKeyboard) {
    OpenSong();
    ASSERT_TRUE(Window().isActiveWindow());
    auto& play = In<QPushButton>(Window(), "songPlayBtn");
    QTest::keyPress(&play, Qt::Key_Z);
    Show();
    EXPECT_TRUE(Piano().IsPressed(60));
    QTest::keyRelease(&play, Qt::Key_Z);
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
    auto& tempo = In<QSpinBox>(Window(), "songTempo");
    tempo.setFocus();
    rig.TakeWritten();
    QTest::keyClick(&tempo, Qt::Key_5);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>()) << "a digit is the spin box's";
    QTest::keyPress(&tempo, Qt::Key_Z);
    EXPECT_FALSE(rig.TakeWritten().empty());
    window->activateWindow();
    QApplication::setActiveWindow(window.get());
    QTest::keyRelease(panel, Qt::Key_Z);
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
}

/// On a Russian layout those of the panel go by the keys' places.
TEST_F(PanelPlayer, NoUnderlinedLetterLiesOnTheKeyOfAShortcutOfThePanel) {
    OpenSong();
    const QString taken[] = {"SJHOPLTWNQ", "ЫОРЩЗДЕЦТЙ"};
    for (const char* const locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        int underlined = 0;
        for (const QWidget* part : Window().findChildren<QWidget*>()) {
            const QKeySequence keys = QKeySequence::mnemonic(part->property("text").toString());
            if (!keys.isEmpty()) {
                ++underlined;
                const QChar letter(static_cast<char16_t>(keys[0].key()));
                EXPECT_FALSE(taken[0].contains(letter) || taken[1].contains(letter))
                    << locale << " " << part->objectName().toStdString();
            }
        }
        EXPECT_GE(underlined, 5) << locale;
    }
}

TEST_F(PanelPlayer, TheShortcutsOfThePanelActInItAsWell) {
    OpenSong();
    const auto type = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&Window(), key, modifiers);
        QApplication::processEvents();
    };
    type(Qt::Key_F9);
    EXPECT_TRUE(Engine().IsMetronomeOn());
    type(Qt::Key_F9);
    EXPECT_FALSE(Engine().IsMetronomeOn());
    type(Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(Engine().WithArpeggiator(
        0, [](const NK::MIDI::CArpeggiator1& arpeggiator) { return arpeggiator.GetSettings().latch; }));
    EXPECT_EQ(Status().state, Kivora::SongPlayback::State::kStopped);
    type(Qt::Key_P, Qt::AltModifier);
    EXPECT_EQ(Status().state, Kivora::SongPlayback::State::kPlaying);
    type(Qt::Key_F11);
    EXPECT_TRUE(Engine().IsRecording());
    type(Qt::Key_F11);
    EXPECT_FALSE(Engine().IsRecording());
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    type(Qt::Key_F9);
    EXPECT_TRUE(Engine().IsMetronomeOn()) << "its menu was made anew";
    for (const QPushButton* button : Window().findChildren<QPushButton*>()) {
        for (const QAction* action : panel->actions()) {
            EXPECT_TRUE(button->shortcut().isEmpty() || button->shortcut() != action->shortcut())
                << button->text().toStdString();
        }
    }
}

TEST_F(PanelPlayer, AHeldKeyEndsWhenAnotherProgramsWindowGetsTheKeyboard) {
    OpenSong();
    QTest::keyPress(&In<QPushButton>(Window(), "songPlayBtn"), Qt::Key_Z);
    QApplication::setActiveWindow(nullptr);
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
}

TEST_F(PanelPlayer, AKeyThatWasTheWindowsOnceHangsNoNote) {
    OpenSong();
    auto& tempo = In<QSpinBox>(Window(), "songTempo");
    auto& play = In<QPushButton>(Window(), "songPlayBtn");
    constexpr int kNoteOf5 = 78;
    const auto playIt = [&](const char* when) {
        play.setFocus();
        QTest::keyPress(&play, Qt::Key_5);
        Show();
        EXPECT_TRUE(Piano().IsPressed(kNoteOf5)) << when;
        QTest::keyRelease(&play, Qt::Key_5);
        Show();
        EXPECT_FALSE(Piano().IsPressed(kNoteOf5)) << when;
    };
    tempo.setFocus();
    QTest::keyPress(&tempo, Qt::Key_5);
    playIt("whose release was lost");
    tempo.setFocus();
    QTest::keyPress(&tempo, Qt::Key_5);
    QApplication::setActiveWindow(window.get());
    panel->setFocus();
    QTest::keyPress(panel, Qt::Key_5);
    QApplication::setActiveWindow(&Window());
    QTest::keyRelease(&tempo, Qt::Key_5);
    Show();
    EXPECT_FALSE(Piano().IsPressed(kNoteOf5)) << "which was pressed on the panel since";
}

TEST_F(PanelPlayer, ClosingAndPanicEndWhatPlays) {
    OpenSong();
    ClickIn("songPlayBtn");
    Go(10);
    QTest::keyClick(&Window(), Qt::Key_F12);
    EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
    EXPECT_FALSE(In<QPushButton>(Window(), "songPlayBtn").isChecked());
    ClickIn("songPlayBtn");
    Go(10);
    ClickIn("songCloseBtn");
    EXPECT_FALSE(Window().isVisible());
    EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
    Entry(Qt::ALT | Qt::Key_P).trigger();
    EXPECT_TRUE(Window().isVisible()) << "the song is still there";
    Entry(Qt::ALT | Qt::Key_P).trigger();
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
    Entry(Qt::ALT | Qt::Key_P).trigger();
    EXPECT_EQ(Status().state, SongPlayer::State::kPaused);
}

TEST_F(PanelPlayer, AButtonThatWasPressedByItsLetterDoesNothingOnceTheWindowIsClosed) {
    OpenSong();
    In<QPushButton>(Window(), "songPlayBtn").animateClick();  // as its letter does: it clicks a moment later
    Window().close();
    constexpr int kUntilItHasClicked = 300;
    QTest::qWait(kUntilItHasClicked);
    EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
    OpenSong();
    EXPECT_FALSE(In<QPushButton>(Window(), "songPlayBtn").isChecked());
}

TEST_F(PanelPlayer, WhereNothingWouldBeHeardThatIsSaid) {
    OpenSong();
    Engine().CloseOutputPort();
    ClickIn("songPlayBtn");
    EXPECT_NE(TextIn("songNotice").indexOf("no output plays"), -1);
    EXPECT_FALSE(In<QPushButton>(Window(), "songPlayBtn").isChecked());
    Engine().SetOutputPortByIndex(0);
    ClickIn("songPlayBtn");
    EXPECT_EQ(TextIn("songNotice"), "");
}

TEST_F(PanelPlayer, ADamagedFileIsSaidToBeOne) {
    OpenSong("It is damaged.");
    EXPECT_EQ(TextIn("songNotice"), "It is damaged. What is whole of it can be played.");
    EXPECT_TRUE(In<QLabel>(Window(), "songNotice").isVisible());
    OpenSong();
    EXPECT_FALSE(In<QLabel>(Window(), "songNotice").isVisible());
}

TEST_F(PanelPlayer, TheMenuAsksForAFileAndSaysWhatIsNone) {
    WriteFileBytes(rig.folder / "no.mid", "nothing");
    ModalAnswers answers;
    answers.TypeFile(PathOf("no.mid")).Click(QMessageBox::Ok);
    Entry(Qt::ALT | Qt::Key_O).trigger();
    ASSERT_EQ(answers.seen.size(), 2U);
    EXPECT_EQ(answers.seen[1], "Player: " + PathOf("no.mid").toStdString() + ": It is no MIDI file (byte 0).");
    EXPECT_FALSE(Window().isVisible());
    static constexpr char kBytes[] =
        "MThd\0\0\0\6\0\0\0\1\0\140"
        "MTrk\0\0\0\14\0\220\74\100\140\200\74\100\0\377\57\0";
    WriteFileBytes(rig.folder / "song.mid", std::string(kBytes, sizeof kBytes - 1));
    answers.TypeFile(PathOf("song.mid"));
    Entry(Qt::ALT | Qt::Key_O).trigger();
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(TextIn("songTitle"), "song.mid");
    EXPECT_EQ(Status().lengthUs, 500'000);
}

TEST_F(PanelPlayer, SpeaksTheLanguageInForce) {
    OpenSong();
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Window().windowTitle(), QString::fromUtf8("Проигрыватель"));
    EXPECT_EQ(TextIn("songTime"), QString::fromUtf8("00:00 из 01:30"));
}

TEST_F(PanelPlayer, ATakeIsHeardInTheDialogThatSavesIt) {
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ModalAnswers answers;
    answers.Then([this](QDialog& dialog) {
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        rig.Run(150);
        EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
        EXPECT_TRUE(listen.isChecked());
        Show();
        EXPECT_TRUE(Piano().IsPressed(60));
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
    EXPECT_EQ(SongPlayer(*controls).GetSong(), nullptr);
    Entry(Qt::ALT | Qt::Key_H).trigger();
    EXPECT_EQ(TextIn("songTitle"), "The last recording");
    EXPECT_GT(Status().lengthUs, 500'000);
}

TEST_F(PanelPlayer, ListeningEndsWithTheTake) {
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ModalAnswers answers;
    answers.Then([this](QDialog& dialog) {
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        rig.Run(2000);
        Wait([&listen] { return !listen.isChecked(); });
        listen.click();
        EXPECT_TRUE(listen.isChecked()) << "once more";
        listen.click();
        EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    EXPECT_TRUE(answers.AllGiven());
}

TEST_F(PanelPlayer, WhereATakeWouldNotBeHeardThatIsSaid) {
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ModalAnswers answers;
    answers.Then([this](QDialog& dialog) {
        Engine().CloseOutputPort();
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        EXPECT_FALSE(listen.isChecked());
        dialog.reject();
    });
    answers.Click(QMessageBox::Ok);
    Entry(Qt::ALT | Qt::Key_S).trigger();
    ASSERT_EQ(answers.seen.size(), 2U);
    EXPECT_EQ(answers.seen[1], "Listen: Nothing would be heard: no output plays now. The settings tell why.");
}

TEST_F(PanelPlayer, ListeningLeavesTheSongAsItWas) {
    OpenSong();
    SongPlayer player(*controls);
    player.SetLoop(SongPlayer::Loop{5'000'000, 20'000'000});
    player.SetTempo(50);
    player.SetTransposition(-3);
    player.Seek(7'000'000);
    const auto song = player.GetSong();
    const auto other = MakeSong({{0, {0x90, 5, 62, 100}}}, 30'000);
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        EXPECT_NE(player.GetSong(), song);
        listen.click();
        listen.click();
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    EXPECT_EQ(player.GetSong(), song);
    EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
    EXPECT_EQ(Status().positionUs, 7'000'000);
    EXPECT_EQ(Status().loop, (SongPlayer::Loop{5'000'000, 20'000'000}));
    EXPECT_EQ(Status().tempoPercent, 50);
    EXPECT_EQ(Status().transposition, -3);
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    answers.Then([&](QDialog& dialog) {
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        listen.click();
        player.Open(other);
        listen.click();
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    EXPECT_EQ(player.GetSong(), other) << "which was opened meanwhile";
    EXPECT_TRUE(answers.AllGiven());
}

TEST_F(PanelPlayer, WhileATakeIsHeardTheWindowShowsItsOwnSong) {
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ASSERT_TRUE(controls->StopRecording());
    OpenSong();
    ClickIn("songPlayBtn");
    Go(20'500);
    ASSERT_EQ(TextIn("songTime"), "00:20 of 01:30");
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        In<QPushButton>(dialog, "listenBtn").click();
        Go(100);
        EXPECT_EQ(TextIn("songTime"), "00:20 of 01:30");
        EXPECT_EQ(In<QSlider>(Window(), "songPosition").maximum(), 900);
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    ASSERT_TRUE(answers.AllGiven());
    Wait([&] { return !In<QPushButton>(Window(), "songPlayBtn").isChecked(); });
    EXPECT_EQ(TextIn("songTime"), "00:20 of 01:30");
}

TEST_F(PanelPlayer, WhileATakeIsHeardBesideTheWindowItsControlsAreItsOwnSongs) {
    const auto take = MakeSong({{0, {0x90, 5, 62, 100}}}, 30'000);
    SongPlayer player(*controls);
    OpenSong();
    const auto own = player.GetSong();
    player.SetLoop(SongPlayer::Loop{5'000'000, 20'000'000});
    player.SetTempo(50);
    player.SetTransposition(-3);
    player.Seek(7'000'000);
    Go(10);
    ListenButton listen(
        *controls, [&take] { return take; }, panel);
    listen.show();
    const std::vector<std::function<void()>> deeds{
        [this] { ClickIn("songPlayBtn"); },
        [this] { ClickIn("songLoopBeginBtn"); },
        [this] { In<QSlider>(Window(), "songPosition").setValue(100); },
        [this] { ClickIn("songLoopEndBtn"); },
        [this] { ClickIn("songLoopOffBtn"); },
        [this] { In<QSpinBox>(Window(), "songTempo").setValue(80); },
        [this] { In<QSpinBox>(Window(), "songTransposition").setValue(5); },
        [this] { ClickIn("songStopBtn"); },
    };
    for (std::size_t deed = 0; deed < deeds.size(); ++deed) {
        listen.click();
        Go(200);
        ASSERT_EQ(player.GetSong(), take);
        EXPECT_FALSE(In<QPushButton>(Window(), "songPlayBtn").isChecked()) << "it is not its song that plays";
        deeds[deed]();
        EXPECT_EQ(player.GetSong(), own) << deed;
        EXPECT_EQ(Status().state == SongPlayer::State::kPlaying, deed == 0) << deed;
        EXPECT_EQ(Status().loop.has_value(), deed < 4) << deed;
        EXPECT_EQ(Status().tempoPercent, deed < 5 ? 50 : 80) << deed;
        EXPECT_EQ(Status().transposition, deed < 6 ? -3 : 5) << deed;
        Wait([&listen] { return !listen.isChecked(); });
    }
    EXPECT_EQ(Status().positionUs, 0);
}

TEST_F(PanelPlayer, AWindowThatIsMadeOrClosedWhileATakeIsHeardLeavesThat) {
    const auto take = MakeSong({{0, {0x90, 5, 62, 100}}}, 30'000);
    SongPlayer player(*controls);
    ListenButton listen(
        *controls, [&take] { return take; }, panel);
    listen.show();
    listen.click();
    ModalAnswers answers;
    answers.Refuse();
    Window().present();
    EXPECT_TRUE(answers.AllGiven()) << "it has no song, and asks for one";
    EXPECT_FALSE(Window().isVisible());
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
    listen.click();
    OpenSong();
    listen.click();
    Window().close();
    EXPECT_EQ(player.GetSong(), take);
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
}

TEST_F(PanelPlayer, ListeningEndsNoOtherSong) {
    const auto other = MakeSong({{0, {0x90, 5, 62, 100}}}, 30'000);
    SongPlayer player(*controls);
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        auto& listen = In<QPushButton>(dialog, "listenBtn");
        listen.click();
        player.Open(other);
        EXPECT_TRUE(player.Play());
        Wait([&listen] { return !listen.isChecked(); });
        dialog.reject();
    });
    Entry(Qt::ALT | Qt::Key_S).trigger();
    EXPECT_EQ(player.GetSong(), other);
    EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
}

TEST_F(PanelPlayer, ATakeThatIsOfferedIsNotHeardWhileItIsSaved) {
    OpenSong();
    const auto song = SongPlayer(*controls).GetSong();
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        In<QPushButton>(dialog, "listenBtn").click();
        EXPECT_TRUE(dialog.isVisible()) << "it is no answer";
        EXPECT_EQ(Status().state, SongPlayer::State::kPlaying);
        QTest::mouseClick(qobject_cast<QMessageBox*>(&dialog)->button(QMessageBox::Save), Qt::LeftButton);
    });
    answers.Then([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Save MIDI File");
        EXPECT_EQ(Status().state, SongPlayer::State::kStopped);
        dialog.reject();
    });
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    Engine().StopRecording();
    Wait([&answers] { return answers.AllGiven(); });
    EXPECT_EQ(SongPlayer(*controls).GetSong(), song);
}

TEST_F(PanelPlayer, WhyNoRecordingIsHeardIsSaid) {
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Entry(Qt::ALT | Qt::Key_H).trigger();
    ASSERT_TRUE(controls->StartRecording());
    PlayANote();
    answers.Refuse();
    Entry(Qt::ALT | Qt::Key_S).trigger();
    ASSERT_TRUE(controls->StartRecording());
    answers.Click(QMessageBox::Ok);
    Entry(Qt::ALT | Qt::Key_H).trigger();
    ASSERT_EQ(answers.seen.size(), 3U);
    EXPECT_EQ(answers.seen[0],
              "Hear the Recording: There is no recording that has ended since the program was started.");
    EXPECT_EQ(answers.seen[2], "Hear the Recording: A recording runs. It can be heard once it has ended.");
    EXPECT_TRUE(Engine().IsRecording());
}

TEST_F(PanelPlayer, TheChoiceOfTheTempoIsKeptWhereItIsSaved) {
    const auto save = [this](const std::function<void(QDialog&)>& end) {
        ASSERT_TRUE(controls->StartRecording());
        PlayANote();
        ModalAnswers answers;
        answers.Then([&](QDialog& dialog) {
            In<QCheckBox>(dialog, "writeTempo").setChecked(true);
            end(dialog);
        });
        Entry(Qt::ALT | Qt::Key_S).trigger();
    };
    const auto isKept = [this] {
        return Engine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.savesTempo; });
    };
    save([](QDialog& dialog) { dialog.reject(); });
    EXPECT_FALSE(isKept());
    save([this](QDialog& dialog) {
        auto& file = In<QLineEdit>(dialog, "fileNameEdit");
        QApplication::setActiveWindow(&dialog);
        file.setFocus();
        file.setText(PathOf("saved.mid"));
        QTest::keyClick(&file, Qt::Key_Return);
    });
    EXPECT_TRUE(isKept());
}

TEST_F(PanelPlayer, ATakeIsSavedWithThePanelsTempoWhereThatIsChosen) {
    Engine().SetTempo(90);
    const auto save = [this](const char* name, bool onGrid) {
        ASSERT_TRUE(controls->StartRecording());
        PlayANote();
        ModalAnswers answers;
        answers.Then([&](QDialog& dialog) {
            auto& choice = In<QCheckBox>(dialog, "writeTempo");
            EXPECT_TRUE(choice.isVisible());
            EXPECT_FALSE(choice.isChecked());
            choice.setChecked(onGrid);
            auto& file = In<QLineEdit>(dialog, "fileNameEdit");
            QApplication::setActiveWindow(&dialog);
            file.setFocus();
            file.setText(PathOf(name));
            QTest::keyClick(&file, Qt::Key_Return);
        });
        Entry(Qt::ALT | Qt::Key_S).trigger();
    };
    const auto read = [this](const char* name) {
        return NK::MIDI::ReadSMFFile(NK::CString::FromUtf8((rig.folder / name).native()))->tempoMap;
    };
    save("as-ever.mid", false);
    EXPECT_EQ(read("as-ever.mid").GetTicksPerQuarter(), 500U);
    save("on-grid.mid", true);
    EXPECT_EQ(read("on-grid.mid").GetTicksPerQuarter(), 960U);
    EXPECT_EQ(read("on-grid.mid").GetChanges()[0].tempo, 666667U);
}
