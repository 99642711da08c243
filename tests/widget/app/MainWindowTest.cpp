// The main window with an engine, without one, and at its end.
#include "app/MainWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <QAbstractButton>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QtTest/QTest>
#include <QWindow>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "locale/Locale.h"
#include "midi/SMFWriter.h"
#include "support/FakeSynth.h"
#include "support/FatalLog.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/SoundFindings.h"
#include "ui/KivoraWidget.h"
#include "unit/engine/EngineRig.h"
#include "widget/ui/PanelRig.h"

namespace {

using Kivora::CKivora;
using Kivora::EngineControls;
using Kivora::MainWindow;

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        Kivora::SetLocale("en_US", false);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr && answersUnasked_) {
                box = KivoraTest::FindUnaskedBox();
            }
            if (box != nullptr) {
                titles_ << box->windowTitle();
                texts_ << box->text();
                icons_.push_back(box->icon());
                if (onBox_) {
                    std::exchange(onBox_, {})();
                }
                box->accept();
            }
        });
        timer_.start(1);
    }

    void WaitForBoxes(qsizetype count) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return titles_.size() >= count; }, 30000));
    }
    std::string Notice(MainWindow& window) {
        auto* const line = window.GetPanel()->findChild<QLabel*>("display-notice");
        return line->isVisible() ? line->text().toStdString() : "";
    }
    MainWindow::EngineCreator RealEngine() {
        return [this] { return std::make_unique<CKivora>(rig_.GetDependencies()); };
    }
    /// A note and the pedal, held.
    void Play(MainWindow& window) {
        window.GetControls()->SetSustain(true);
        window.GetControls()->PlayNoteOn(60, 100);
        rig_.TakeWritten();
    }
    static void ExpectSilenceIn(const std::vector<std::string>& written) {
        for (const char* message : {"b0 40 00", "b0 7b 00"}) {
            EXPECT_NE(std::find(written.begin(), written.end(), message), written.end()) << message;
        }
    }
    void ExpectLifeWithoutAnEngine(MainWindow& window, const QString& text) {
        EXPECT_EQ(titles_, QStringList()) << "the window comes first";
        window.show();
        WaitForBoxes(1);
        EXPECT_EQ(titles_, QStringList("Fatal Error"));
        EXPECT_EQ(texts_, QStringList(text + "\r\nSorry, the application cannot continue."));
        EXPECT_EQ(icons_, std::vector{QMessageBox::Critical});
        EXPECT_EQ(window.GetControls(), nullptr);
        EXPECT_TRUE(window.isVisible());
        ASSERT_NE(window.GetPanel(), nullptr);
        EXPECT_TRUE(window.GetPanel()->isVisible());
    }

    KivoraTest::EngineRig rig_;
    std::string last_;
    bool ended_ = false;
    bool answersUnasked_ = true;
    std::function<void()> onBox_;  ///< called with the first box that is there
    QStringList titles_;
    QStringList texts_;
    std::vector<QMessageBox::Icon> icons_;

private:
    QTimer timer_;
};

TEST_F(MainWindowTest, TheSettingsLeadToThePageAboutTheSound) {
    MainWindow window(RealEngine());
    const CKivora* asked = nullptr;
    window.SetSoundDoctor([&asked](const CKivora* engine) {
        asked = engine;
        return SoundFindings();
    });
    window.show();
    QTimer::singleShot(0, [&] {
        QWidget* const settings = QApplication::activeModalWidget();
        ASSERT_NE(settings, nullptr);
        QTimer::singleShot(0, [&] {
            QWidget* const page = QApplication::activeModalWidget();
            ASSERT_TRUE(page != nullptr && page->objectName() == "SoundCheck");
            EXPECT_TRUE(QTest::qWaitFor([&] { return asked != nullptr; }, 30000));
            rig_.TakeWritten();
            page->findChild<QAbstractButton*>("noteBtn")->click();
            page->close();
        });
        settings->findChild<QAbstractButton*>("soundCheckBtn")->click();
        settings->close();
    });
    window.GetPanel()->settingsClicked();
    EXPECT_EQ(asked, &window.GetControls()->GetEngine());
    rig_.RunPlayer();
    const std::vector<std::string> written = rig_.TakeWritten();
    EXPECT_NE(std::find(written.begin(), written.end(), "90 3c 50"), written.end());
    EXPECT_NE(std::find(written.begin(), written.end(), "80 3c 00"), written.end()) << "the page has gone";
}

TEST_F(MainWindowTest, AFileThatIsDroppedOnItIsOpened) {
    MainWindow window(RealEngine());
    window.show();
    EngineControls& controls = *window.GetControls();
    controls.SetPatch(11, 0);
    ASSERT_TRUE(controls.SavePreset(L"Mine"));
    controls.SetPatch(3, 0);
    const QUrl preset =
        QUrl::fromLocalFile(QString::fromStdString((rig_.folder / "user/Presets/Mine.kivoraLXPreset").string()));
    const auto drop = [&window](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(window.GetPanel(), &enter);  // as anything in the window, it passes it on
        QApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent event({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(drop({preset}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return controls.GetEngine().GetPatch(0) == 11; }, 30000));
    EXPECT_FALSE(drop({preset, preset})) << "two cannot be played";
    EXPECT_FALSE(drop({}));
    EXPECT_FALSE(drop({QUrl("https://example.org/a.kivoraLXPreset")}));
    EXPECT_EQ(titles_, QStringList());
    EXPECT_TRUE(drop({QUrl::fromLocalFile("/none.mid")}));
    WaitForBoxes(1);
    EXPECT_EQ(titles_, QStringList("Cannot Open File"));
    EXPECT_EQ(texts_, QStringList("/none.mid cannot be read: No such file or directory."));
}

TEST_F(MainWindowTest, WhatCannotBeOpenedAtTheStartIsToldOnceTheWindowIsThere) {
    MainWindow window(RealEngine());
    window.OpenFile("/none");
    EXPECT_EQ(titles_, QStringList());
    window.show();
    WaitForBoxes(1);
    EXPECT_EQ(texts_, QStringList("The preset /none cannot be read: No such file or directory."));
}

TEST_F(MainWindowTest, AFileThatComesWhileADialogAsksIsOpenedAfterIt) {
    MainWindow window(RealEngine());
    window.show();
    const std::string song = (rig_.folder / "song.mid").string();
    NK::CArray<NK::MIDI::CMIDIMessageX> events;
    events.Push({{0x90, 1, 60, 100}, 0});
    events.Push({{0x80, 1, 60, 64}, 500});
    ASSERT_TRUE(NK::MIDI::WriteMIDIFile(NK::CString::FromUtf8(song), events, 120));
    const auto isPlayerShown = [&window] {
        const auto* const player = window.GetPanel()->findChild<PlayerWindow*>();
        return player != nullptr && player->isVisible();
    };
    QDialog dialog(&window);
    dialog.open();
    window.OpenFile("/none");
    window.OpenFile(QString::fromStdString(song));
    window.ComeToFront();
    EXPECT_TRUE(QTest::qWaitFor([&dialog] { return dialog.isActiveWindow(); }, 30000));
    QCoreApplication::processEvents();
    EXPECT_FALSE(isPlayerShown()) << "nobody could work it";
    dialog.close();
    EXPECT_TRUE(QTest::qWaitFor(isPlayerShown, 30000));
    EXPECT_EQ(titles_, QStringList()) << "the last one counts";
}

TEST_F(MainWindowTest, HasItsNameTitleAndParts) {
    MainWindow window(RealEngine());
    EXPECT_EQ(window.objectName(), "KivoraMainWindowClass");
    EXPECT_EQ(window.windowTitle(), "Kivora LX");
    EXPECT_EQ(window.centralWidget(), window.GetPanel());
    EXPECT_NE(window.findChild<QMenuBar*>(), nullptr);
    EXPECT_NE(window.GetControls(), nullptr);
    EXPECT_EQ(titles_, QStringList());
}

TEST_F(MainWindowTest, IsExactlyThePanel) {
    MainWindow window(RealEngine());
    window.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(1180, 520));
    EXPECT_EQ(window.GetPanel()->geometry(), QRect(0, 0, 1180, 520));
}

TEST_F(MainWindowTest, CannotBeResizedWhereThePanelIsWantedAsDesigned) {
    MainWindow window(RealEngine(), MainWindow::Ports::kOpen, nullptr, MainWindow::EPanelSize::kAsDesigned);
    window.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.minimumSize(), QSize(1180, 520));
    EXPECT_EQ(window.maximumSize(), QSize(1180, 520));
    EXPECT_EQ(window.size(), QSize(1180, 520));
    EXPECT_EQ(window.GetPanel()->geometry(), QRect(0, 0, 1180, 520));
}

TEST_F(MainWindowTest, StandsInTheMiddleOfTheAvailableArea) {
    const MainWindow window(RealEngine());
    const QRect available = window.screen()->availableGeometry();
    EXPECT_EQ(window.pos().x(), available.left() + (available.width() - window.frameGeometry().width()) / 2);
    EXPECT_EQ(window.pos().y(), available.top() + (available.height() - window.frameGeometry().height()) / 2);
}

TEST_F(MainWindowTest, WithoutAnyPortTheUserSeesWhyAndTheWindowStillAppears) {
    rig_.backend.devices.clear();
    MainWindow window(RealEngine());
    ExpectLifeWithoutAnEngine(window, "No MIDI ports found.");
}

TEST_F(MainWindowTest, AnEngineThatIsNotThereIsAnError) {
    MainWindow window([] { return std::unique_ptr<CKivora>(); });
    ExpectLifeWithoutAnEngine(window, "Engine creation failed.");
}

TEST_F(MainWindowTest, AnyOtherExceptionIsAnUnknownOne) {
    MainWindow window([]() -> std::unique_ptr<CKivora> { throw std::runtime_error("no"); });
    ExpectLifeWithoutAnEngine(window, "Failed to create MIDI engine (unknown exception).");
}

TEST_F(MainWindowTest, WithoutAnEngineTheDisplaySaysWhyAndAVisitToTheSettingsBringsOne) {
    const auto devices = rig_.backend.devices;
    rig_.backend.devices.clear();
    rig_.synth = std::make_shared<KivoraTest::FakeSynth>();
    MainWindow window(RealEngine(), MainWindow::Ports::kOpenWhenPainted, rig_.synth.get());
    window.show();
    WaitForBoxes(1);
    EXPECT_EQ(Notice(window), "No sound: No MIDI ports found.");
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto small =
        std::find_if(screens.begin(), screens.end(), [](const QScreen* screen) { return screen->name() == "small"; });
    ASSERT_NE(small, screens.end());
    window.windowHandle()->setScreen(*small);
    window.move((*small)->availableGeometry().topLeft());
    const auto isFitted = [&] { return window.GetPanel()->panelScale() < 1.0; };
    EXPECT_TRUE(QTest::qWaitFor(isFitted, 30000));
    bool hadSynth = false;
    const auto visit = [&](const std::function<void()>& meanwhile) {
        QTimer::singleShot(0, [&] {
            auto* const dialog = qobject_cast<midiSettings*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            hadSynth = dialog->findChild<QWidget*>("synthGroup")->isVisible();
            meanwhile();
            dialog->closeClicked();
        });
        window.GetPanel()->settingsClicked();
        QCoreApplication::processEvents();
    };
    visit([] {});
    EXPECT_TRUE(hadSynth) << "its sound font can be chosen";
    EXPECT_EQ(window.GetControls(), nullptr) << "there is still no port";
    LibMidi::SynthSettings chosen;
    chosen.gain = 1.5;
    visit([&] {
        rig_.backend.devices = devices;
        static_cast<void>(rig_.synth->ApplySettings(chosen));
    });
    ASSERT_NE(window.GetControls(), nullptr);
    EXPECT_TRUE(window.GetControls()->GetEngine().IsOutputReady());
    EXPECT_TRUE(window.GetPanel()->isVisible());
    EXPECT_EQ(window.centralWidget(), window.GetPanel());
    EXPECT_TRUE(QTest::qWaitFor(isFitted, 30000)) << "the new one too";
    EXPECT_EQ(Notice(window), "");
    EXPECT_EQ(rig_.synth->GetSettings(), chosen);
    std::ifstream stream(rig_.folder / "user" / "Kivora.ini");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NE(text.find("Gain=1.5\n"), std::string::npos) << text;
    EXPECT_EQ(titles_.size(), 1) << "nothing more was asked or told";
}

TEST_F(MainWindowTest, WhatWasNotToldWithoutAnEngineIsToldWithIt) {
    const auto devices = std::exchange(rig_.backend.devices, {});
    answersUnasked_ = false;
    MainWindow window(RealEngine());
    window.TellAboutLocaleFile(Kivora::LocaleFileState::kDamaged, {});
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([] { return KivoraTest::FindUnaskedBox() != nullptr; }, 30000));
    EXPECT_EQ(KivoraTest::FindUnaskedBox()->windowTitle(), "Fatal Error");
    QTimer::singleShot(0, [&] {
        rig_.backend.devices = devices;
        qobject_cast<midiSettings*>(QApplication::activeModalWidget())->closeClicked();
    });
    window.GetPanel()->settingsClicked();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.GetControls() != nullptr; }, 30000));
    answersUnasked_ = true;
    WaitForBoxes(1);
    EXPECT_EQ(titles_, QStringList("Warning")) << "and the failure no more";
}

TEST_F(MainWindowTest, ThePortsAreOpenedOnceTheWindowIsPainted) {
    MainWindow window(RealEngine(), MainWindow::Ports::kOpenWhenPainted);
    EXPECT_FALSE(window.GetControls()->GetEngine().IsOutputReady());
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.GetControls()->GetEngine().IsOutputReady(); }, 30000));
    EXPECT_EQ(rig_.GetDevice(KivoraTest::kSynth).openCount, 1);
    window.OpenPorts();
    EXPECT_EQ(rig_.GetDevice(KivoraTest::kSynth).openCount, 1) << "once";
}

TEST_F(MainWindowTest, TheFatalBoxIsInTheLanguageInForce) {
    Kivora::SetLocale("ru_RU", false);
    MainWindow window([] { return std::unique_ptr<CKivora>(); });
    window.show();
    WaitForBoxes(1);
    EXPECT_EQ(titles_, QStringList("Неустранимая ошибка"));
    EXPECT_EQ(texts_, QStringList("Не удалось создать движок.\r\nК сожалению, программа не может продолжать работу."));
    Kivora::SetLocale("en_US", false);
}

TEST_F(MainWindowTest, WhyThereIsNoEngineIsSaidInTheLanguageOfTheMoment) {
    rig_.backend.devices.clear();
    MainWindow withoutPorts(RealEngine());
    MainWindow withoutEngine([] { return std::unique_ptr<CKivora>(); });
    withoutPorts.show();
    withoutEngine.show();
    WaitForBoxes(2);
    EXPECT_EQ(Notice(withoutPorts), "No sound: No MIDI ports found.");
    EXPECT_EQ(Notice(withoutEngine), "No sound: Engine creation failed.");
    Kivora::SetLocale("ru_RU", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(Notice(withoutPorts), "Нет звука: Порты MIDI не найдены.");
    EXPECT_EQ(Notice(withoutEngine), "Нет звука: Не удалось создать движок.");
    Kivora::SetLocale("en_US", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(Notice(withoutPorts), "No sound: No MIDI ports found.");
}

TEST_F(MainWindowTest, ChangingTheLanguageRetranslatesWhatIsOpen) {
    MainWindow window(RealEngine());
    window.show();
    auto* help = window.findChild<QAbstractButton*>("help");
    kivoraAbout about(&window);
    midiSettings settings(window.GetControls(), &window);
    about.show();
    settings.show();
    EXPECT_EQ(help->text(), "Help");
    Kivora::SetLocale("ru_RU", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(help->text(), "Справка");
    EXPECT_EQ(about.windowTitle(), "О программе");
    EXPECT_EQ(settings.windowTitle(), "Настройки MIDI");
    EXPECT_EQ(window.windowTitle(), "Kivora LX");
    Kivora::SetLocale("en_US", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(help->text(), "Help");
    EXPECT_EQ(settings.windowTitle(), "MIDI Settings");
}

TEST_F(MainWindowTest, AFirstStartShowsTheCardWithTheComputerKeys) {
    const auto showsArpeggiators = [](const MainWindow& window) {
        return window.findChild<QAbstractButton*>("arpeggio-view")->isChecked();
    };
    EXPECT_TRUE(showsArpeggiators(
        MainWindow(RealEngine(), MainWindow::Ports::kOpen, nullptr, MainWindow::EPanelSize::kAsDesigned)))
        << "pictures show the panel as designed";
    std::filesystem::remove_all(rig_.folder / "user");
    EXPECT_FALSE(showsArpeggiators(MainWindow(RealEngine())));
    EXPECT_TRUE(showsArpeggiators(MainWindow(RealEngine()))) << "the settings were saved meanwhile";
}

TEST_F(MainWindowTest, SavesTheSettingsWhenItIsDestroyed) {
    const std::filesystem::path file = rig_.folder / "user" / "Kivora.ini";
    {
        MainWindow window(RealEngine());
        window.GetControls()->SetShowNoteNames(true);
        EXPECT_FALSE(std::filesystem::exists(file));
    }
    std::ifstream stream(file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NE(text.find("ShowNoteNames=1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Output=Software synthesizer\n"), std::string::npos) << text;
}

TEST_F(MainWindowTest, SettingsThatCannotBeSavedAreLoggedAndTheUserTold) {
    std::ofstream(rig_.folder / "user") << "a file where the folder should be";
    KivoraTest::CFatalLog::Instance().Expect(L"settings could not be saved");
    {
        const MainWindow window(RealEngine());
        EXPECT_EQ(titles_, QStringList());
    }
    EXPECT_EQ(titles_, QStringList("Error"));
    EXPECT_EQ(texts_, QStringList("Failed to save the settings."));
    EXPECT_EQ(icons_, std::vector{QMessageBox::Critical});
}

TEST_F(MainWindowTest, EverythingIsSilentBeforeABoxIsShown) {
    std::ofstream(rig_.folder / "user") << "a file where the folder should be";
    KivoraTest::CFatalLog::Instance().Expect(L"settings could not be saved");
    std::vector<std::string> written;
    {
        MainWindow window(RealEngine());
        Play(window);
        onBox_ = [&] { written = rig_.TakeWritten(); };
    }
    EXPECT_EQ(titles_, QStringList("Error"));
    ExpectSilenceIn(written);
}

TEST_F(MainWindowTest, EverythingIsSilentBeforeATakeIsAskedFor) {
    std::vector<std::string> written;
    MainWindow window(RealEngine());
    window.show();
    ASSERT_TRUE(window.GetControls()->StartRecording());
    Play(window);
    rig_.RunPlayer();
    onBox_ = [&] { written = rig_.TakeWritten(); };
    window.close();
    ASSERT_FALSE(titles_.isEmpty());
    EXPECT_EQ(titles_.front(), "Recording Not Saved");
    ExpectSilenceIn(written);
}

TEST_F(MainWindowTest, TheEndWithoutADisplaySilencesAndSaves) {
    MainWindow window(RealEngine());
    ASSERT_TRUE(window.GetControls()->StartRecording());
    Play(window);
    rig_.RunPlayer();
    window.EndAtOnce();
    ExpectSilenceIn(rig_.TakeWritten());
    EXPECT_TRUE(std::filesystem::exists(rig_.folder / "user" / "Kivora.ini"));
    EXPECT_FALSE(std::filesystem::is_empty(rig_.folder / "user" / "Takes"));
    EXPECT_FALSE(window.GetControls()->GetEngine().IsOutputReady());
    EXPECT_EQ(titles_, QStringList());
}

TEST_F(MainWindowTest, ALanguageThatIsNotKnownIsToldOnceTheWindowIsThere) {
    MainWindow window(RealEngine());
    window.TellAboutLocaleFile(Kivora::LocaleFileState::kGood, "path");
    window.TellAboutLocaleFile(Kivora::LocaleFileState::kUnreadable, "path\nreason");
    window.TellAboutLocaleFile(Kivora::LocaleFileState::kDamaged, {});
    EXPECT_EQ(titles_, QStringList());
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return titles_.size() == 2; }));
    EXPECT_TRUE(texts_[0].contains("cannot be read at present"));
    EXPECT_TRUE(texts_[1].contains("is damaged"));
}

TEST_F(MainWindowTest, WhatWasNotShownIsToldAtTheEnd) {
    {
        answersUnasked_ = false;
        MainWindow window(RealEngine());
        window.TellAboutLocaleFile(Kivora::LocaleFileState::kUnreadable, "path\nreason");
        window.TellAboutLocaleFile(Kivora::LocaleFileState::kDamaged, {});
        window.show();
        ASSERT_TRUE(QTest::qWaitFor([] { return KivoraTest::FindUnaskedBox() != nullptr; }, 30000));
    }
    ASSERT_EQ(texts_.size(), 1) << "the first one was open";
    EXPECT_TRUE(texts_[0].contains("is damaged"));
}

TEST_F(MainWindowTest, WhatWaitedForADialogIsToldAtTheEnd) {
    {
        MainWindow window(RealEngine());
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window, 30000));
        QCoreApplication::processEvents();
        QDialog dialog(&window);
        QTimer::singleShot(0, &dialog, [&] {
            window.TellAboutLocaleFile(Kivora::LocaleFileState::kUnreadable, "path\nreason");
            window.TellAboutLocaleFile(Kivora::LocaleFileState::kDamaged, {});
            dialog.reject();
        });
        dialog.exec();
    }
    ASSERT_EQ(texts_.size(), 2);
    EXPECT_TRUE(texts_[0].contains("cannot be read at present"));
    EXPECT_TRUE(texts_[1].contains("is damaged"));
}

TEST_F(MainWindowTest, NoKeyOfWhoPlaysOnDismissesTheBoxesOfTheEnd) {
    std::ofstream(rig_.folder / "user") << "a file where the folder should be";
    KivoraTest::CFatalLog::Instance().Expect(L"settings could not be saved");
    onBox_ = [] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_O, Qt::Key_Escape}) {
            QTest::keyClick(box->focusWidget() != nullptr ? box->focusWidget() : box, key);
            EXPECT_TRUE(box->isVisible()) << key;
        }
    };
    { const MainWindow window(RealEngine()); }
    EXPECT_EQ(titles_, QStringList("Error"));
}

TEST_F(MainWindowTest, QuietItSaysNothing) {
    std::ofstream(rig_.folder / "user") << "a file where the folder should be";
    KivoraTest::CFatalLog::Instance().Expect(L"settings could not be saved");
    {
        MainWindow window(RealEngine());
        window.SetQuiet();
    }
    EXPECT_EQ(titles_, QStringList());
}

TEST_F(MainWindowTest, QuietItSetsADamagedFileAsideWithoutAWord) {
    const std::filesystem::path file = rig_.folder / "user" / "Kivora.ini";
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << std::string(2 * 1024 * 1024, 'x');
    {
        MainWindow window(RealEngine());
        window.SetQuiet();
    }
    EXPECT_EQ(titles_, QStringList());
    EXPECT_TRUE(std::filesystem::exists(file.string() + ".bad"));
}

TEST_F(MainWindowTest, SavesTheSettingsAndKeepsTheTakeWhenItIsToldTo) {
    MainWindow window(RealEngine());
    EngineControls& controls = *window.GetControls();
    ASSERT_TRUE(controls.StartRecording());
    controls.PlayNoteOn(60, 100);
    rig_.RunPlayer();
    window.Save();
    EXPECT_TRUE(std::filesystem::exists(rig_.folder / "user" / "Kivora.ini"));
    EXPECT_FALSE(std::filesystem::is_empty(rig_.folder / "user" / "Takes"));
    EXPECT_TRUE(controls.GetEngine().IsRecording()) << "the session may go on";
}

TEST_F(MainWindowTest, WithoutAnEngineThereIsNothingToSave) {
    MainWindow window([] { return std::unique_ptr<CKivora>(); });
    window.Save();
    EXPECT_FALSE(std::filesystem::exists(rig_.folder / "user"));
}

TEST_F(MainWindowTest, ADamagedSettingsFileIsKeptAsideAndTheUserTold) {
    const std::filesystem::path file = rig_.folder / "user" / "Kivora.ini";
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << std::string(2 * 1024 * 1024, 'x');
    {
        MainWindow window(RealEngine());
        window.show();
        WaitForBoxes(1);
        EXPECT_EQ(titles_, QStringList("Warning")) << "at the start: the defaults are in force";
    }
    ASSERT_EQ(texts_.size(), 2);
    EXPECT_TRUE(texts_[1].endsWith("Kivora.ini.bad")) << texts_[1].toStdString();
    EXPECT_EQ(std::filesystem::file_size(file.string() + ".bad"), 2U * 1024 * 1024);
}

TEST_F(MainWindowTest, NothingSoundsOnAfterItIsDestroyed) {
    {
        MainWindow window(RealEngine());
        window.GetControls()->PlayNoteOn(60, 100);
        rig_.TakeWritten();
        rig_.GetDevice(KivoraTest::kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) {
            last_ = KivoraTest::ToText(event);
            ended_ = ended_ || last_ == "80 3c 00" || last_ == "b0 7b 00";
        };
    }
    EXPECT_TRUE(ended_) << last_;
}

}  // namespace
