// The panel's pop-up menu and its shortcuts.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <QActionGroup>
#include <QMenu>
#include <set>

using namespace KivoraTest;

namespace {

class PanelMenu : public PanelTest {
protected:
    QMenu& Menu() { return Find<QMenu>("panel-menu"); }
    static QAction* FindEntry(const QMenu& menu, const QString& text) {
        for (QAction* action : menu.actions()) {
            if (action->text().remove('&') == text) {
                return action;
            }
            if (action->menu() != nullptr) {
                if (QAction* const found = FindEntry(*action->menu(), text)) {
                    return found;
                }
            }
        }
        return nullptr;
    }
    QAction& Entry(const QString& text) {
        QAction* const found = FindEntry(Menu(), text);
        if (found == nullptr) {
            throw std::runtime_error(text.toStdString());
        }
        return *found;
    }
    void Choose(const QString& text) { Entry(text).trigger(); }
    /// Opens the menu, looks at it, closes it again; whether it opened.
    bool Opens(
        const std::function<void()>& action, const std::function<void()>& look = [] {}) {
        action();
        QApplication::processEvents();
        const bool opened = QApplication::activePopupWidget() == &Menu();
        look();
        while (QWidget* const popUp = QApplication::activePopupWidget()) {
            popUp->close();
        }
        return opened;
    }
};

TEST_F(PanelMenu, OpensByF10TheMenuKeyAndARightClickOnTheFreeSurface) {
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }));
    EXPECT_TRUE(Opens([&] {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, panel->rect().center(),
                                panel->mapToGlobal(panel->rect().center()));
        QApplication::sendEvent(panel, &event);
    }));
    for (const QPoint& free : {QPoint(254, 150), QPoint(30, 52), QPoint(500, 308), QPoint(400, 20)}) {
        EXPECT_TRUE(Opens([&] { RightClick(*panel, free); })) << free.x() << ", " << free.y();
    }
}

TEST_F(PanelMenu, OpensByF10FromEveryControl) {
    for (const char* name : {"voice-mode-single", "jog", "arpeggio-on", "piano", "about"}) {
        Find(name).setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); })) << name;
    }
}

TEST_F(PanelMenu, DoesNotOpenByARightClickOnAControlOrThePiano) {
    for (const char* name :
         {"voice-mode-single", "jog", "plus", "piano", "main-display", "arp1", "midi-led", "volume2", "octave-value"}) {
        EXPECT_FALSE(Opens([&] { RightClick(Find(name), Find(name).rect().center()); })) << name;
    }
}

TEST_F(PanelMenu, EveryShortcutIsAFunctionKeyOrWithAltAndNoneTwice) {
    std::set<QString> seen;
    int count = 0;
    const std::function<void(const QMenu&)> check = [&](const QMenu& menu) {
        for (const QAction* action : menu.actions()) {
            if (action->menu() != nullptr) {
                check(*action->menu());
            }
            for (const QKeySequence& shortcut : action->shortcuts()) {
                ++count;
                ASSERT_EQ(shortcut.count(), 1);
                const QKeyCombination key = shortcut[0];
                EXPECT_FALSE(key.keyboardModifiers().testFlag(Qt::ControlModifier))
                    << shortcut.toString().toStdString();
                const bool function = key.key() >= Qt::Key_F1 && key.key() <= Qt::Key_F35;
                EXPECT_TRUE(function || key.keyboardModifiers().testFlag(Qt::AltModifier))
                    << shortcut.toString().toStdString();
                EXPECT_TRUE(seen.insert(shortcut.toString()).second) << shortcut.toString().toStdString();
            }
        }
    };
    check(Menu());
    EXPECT_GE(count, 12);
    for (const QAction* action : panel->findChildren<QAction*>()) {
        for (const QKeySequence& shortcut : action->shortcuts()) {
            EXPECT_FALSE(shortcut.toString().contains("Ctrl")) << shortcut.toString().toStdString();
        }
    }
}

TEST_F(PanelMenu, NoTwoEntriesOfAMenuShareALetterInEitherLanguage) {
    const std::function<int(const QMenu&, const char*)> check = [&](const QMenu& menu, const char* locale) {
        std::set<QString> seen;
        int count = 0;
        for (const QAction* action : menu.actions()) {
            if (action->menu() != nullptr) {
                count += check(*action->menu(), locale);
            }
            const QString text = action->text();
            if (const qsizetype mark = text.indexOf('&'); mark >= 0) {
                ++count;
                EXPECT_TRUE(seen.insert(text.mid(mark + 1, 1).toLower()).second) << locale << " " << text.toStdString();
            }
        }
        return count;
    };
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        EXPECT_EQ(check(Menu(), locale), 32);
    }
}

TEST_F(PanelMenu, TheVoiceModesActAndAreChecked) {
    const struct {
        const char* entry;
        bool dual;
        bool split;
    } modes[] = {{"Dual Voices", true, false}, {"Split Keyboard", false, true}, {"Single Voice", false, false}};
    for (const auto& mode : modes) {
        QAction* const entry = FindEntry(Menu(), mode.entry);
        ASSERT_NE(entry, nullptr) << mode.entry;
        entry->trigger();
        EXPECT_EQ(Engine().IsDual(), mode.dual);
        EXPECT_EQ(Engine().IsSplit(), mode.split);
        EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }));
        for (const auto& other : modes) {
            EXPECT_EQ(Entry(other.entry).isChecked(), &other == &mode) << other.entry;
        }
    }
}

TEST_F(PanelMenu, TheFunctionKeysActWhileTheMenuIsClosed) {
    Type(Qt::Key_F7);
    EXPECT_TRUE(Engine().IsSplit());
    Type(Qt::Key_F6);
    EXPECT_TRUE(Engine().IsDual());
    Type(Qt::Key_F5);
    EXPECT_FALSE(Engine().IsDual() || Engine().IsSplit());
    Type(Qt::Key_F8);
    EXPECT_TRUE(Engine().IsArpeggiating());
    Type(Qt::Key_F9);
    EXPECT_TRUE(Engine().IsMetronomeOn());
    Type(Qt::Key_F11);
    EXPECT_TRUE(Engine().IsRecording());
    Type(Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(Engine().GetShowNoteNames());
    rig.TakeWritten();
    Type(Qt::Key_F12);
    const std::vector<std::string> written = rig.TakeWritten();
    EXPECT_NE(std::find(written.begin(), written.end(), "ff"), written.end());
}

TEST_F(PanelMenu, ArpeggioMetronomeAndNoteNamesSwitchAndAreChecked) {
    const struct {
        const char* entry;
        std::function<bool()> state;
    } switches[] = {{"Arpeggio", [&] { return Engine().IsArpeggiating(); }},
                    {"Metronome", [&] { return Engine().IsMetronomeOn(); }},
                    {"Note Names", [&] { return Engine().GetShowNoteNames(); }}};
    for (const auto& entry : switches) {
        for (const bool on : {true, false}) {
            Choose(entry.entry);
            EXPECT_EQ(entry.state(), on) << entry.entry;
            EXPECT_EQ(Entry(entry.entry).isChecked(), on) << entry.entry;
        }
    }
}

TEST_F(PanelMenu, TheKeyColoursAreChosen) {
    int scheme = 0;
    for (const char* entry : {"None", "Rainbow", "Scriabin"}) {
        Choose(entry);
        EXPECT_EQ(Engine().GetKeyboardColoring(), scheme++);
        EXPECT_TRUE(Entry(entry).isChecked());
    }
}

TEST_F(PanelMenu, WhatIsOneOfSeveralIsMarkedAsAChoice) {
    for (const char* entry : {"Single Voice", "Dual Voices", "Split Keyboard", "None", "Rainbow", "Scriabin",
                              "English (United States)", "Russian"}) {
        ASSERT_NE(Entry(entry).actionGroup(), nullptr) << entry;
        EXPECT_TRUE(Entry(entry).actionGroup()->isExclusive()) << entry;
    }
    EXPECT_NE(Entry("Dual Voices").actionGroup(), Entry("Rainbow").actionGroup());
    EXPECT_EQ(Entry("Arpeggio").actionGroup(), nullptr);
    Choose("Dual Voices");
    Choose("Dual Voices");
    EXPECT_TRUE(Entry("Dual Voices").isChecked()) << "chosen again it stays";
    EXPECT_FALSE(Entry("Single Voice").isChecked());
}

TEST_F(PanelMenu, RecordStartsAndStopsAndTheTakeCanBeSaved) {
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }, [&] { EXPECT_FALSE(Entry("Save Recording...").isEnabled()); }));
    Choose("Record");
    EXPECT_TRUE(Engine().IsRecording());
    EXPECT_TRUE(Entry("Record").isChecked());
    EXPECT_TRUE(Find("record-time").isVisible()) << "one sees that it runs";
    EXPECT_TRUE(Button("record-view").isChecked());
    Type(Qt::Key_Z);
    rig.RunPlayer();
    ModalAnswers answers;
    answers.Refuse();
    Choose("Record");
    EXPECT_FALSE(Engine().IsRecording());
    EXPECT_FALSE(Entry("Record").isChecked());
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }, [&] { EXPECT_TRUE(Entry("Save Recording...").isEnabled()); }));
    answers.TypeFile(PathOf("menu.mid"));
    Choose("Save Recording...");
    EXPECT_TRUE(QFile::exists(PathOf("menu.mid")));
}

TEST_F(PanelMenu, TheTakeCanBeSavedByItsShortcutAfterTheMenuWasOpenWithNothingToSave) {
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }));
    Type(Qt::Key_F11);
    Type(Qt::Key_Z);
    rig.RunPlayer();
    ModalAnswers answers;
    answers.Refuse().TypeFile(PathOf("shortcut.mid"));
    Type(Qt::Key_F11);
    window->activateWindow();  // as a window manager does when a dialog has closed
    Wait([&] { return window->isActiveWindow(); });
    Type(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_TRUE(QFile::exists(PathOf("shortcut.mid")));
}

TEST_F(PanelMenu, TheLanguageIsChangedAndTheMenuWithIt) {
    Choose("Russian");
    Wait([] { return Kivora::GetCurrentLocale() == "ru_RU"; });
    QApplication::processEvents();
    EXPECT_EQ(FindEntry(Menu(), "Quit"), nullptr);
    EXPECT_EQ(panel->findChildren<QMenu*>("panel-menu").size(), 1);
    Choose("English (United States)");
    Wait([] { return Kivora::GetCurrentLocale() == "en_US"; });
    QApplication::processEvents();
    EXPECT_NE(FindEntry(Menu(), "Quit"), nullptr);
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }));
}

TEST_F(PanelMenu, ALanguageThatCannotBeSavedIsTold) {
    setenv("XDG_DATA_HOME", rig.folder.GetPath().c_str(), 1);
    // A folder stands where the file belongs.
    std::filesystem::create_directories(rig.folder / "Brennholt" / "Kivora" / "Locale.ini" / "full");
    ModalAnswers answers;
    answers.Refuse();
    panel->notices().Begin();
    Choose("Russian");
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(Kivora::GetCurrentLocale(), "ru_RU");
    EXPECT_EQ(answers.seen, std::vector<std::string>{"Предупреждение: Не удалось сохранить настройки."});
    unsetenv("XDG_DATA_HOME");
}

TEST_F(PanelMenu, AShortcutWorksAfterAChangeOfTheLanguage) {
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    Type(Qt::Key_F7);
    EXPECT_TRUE(Engine().IsSplit());
}

TEST_F(PanelMenu, QuitClosesTheWindow) {
    Choose("Quit");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PanelMenu, AboutOpens) {
    ModalAnswers answers;
    answers.Refuse();
    Choose("About");
    EXPECT_EQ(answers.seen, std::vector<std::string>{"About"});
}

TEST_F(PanelMenu, OpeningTheMenuEndsWhatIsHeld) {
    Press(Qt::Key_Z);
    Press(Qt::Key_Space);
    rig.TakeWritten();
    EXPECT_TRUE(Opens([&] { Type(Qt::Key_F10); }));
    const std::vector<std::string> written = rig.TakeWritten();
    for (const char* message : {"80 3c 00", "b0 40 00"}) {
        EXPECT_EQ(std::count(written.begin(), written.end(), message), 1) << message;
    }
}

}  // namespace
