// The pop-up menu, and the shortcuts of its entries: function keys and ALT, since CTRL with a letter plays.
#include <QAction>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "nk/nk_file_failure.h"
#include "piano/CPianoColors.h"
#include "ui/ComputerKeys.h"
#include "ui/dialogs/KeyboardTest.h"
#include "ui/dialogs/LatchAndSwing.h"
#include "ui/dialogs/MetronomeSettings.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/VelocitySettings.h"
#include "ui/KivoraWidget.h"
#include "ui/PanelLegends.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/PanelKey.h"

QAction* KivoraWidget::addMenuAction(QMenu& menu, const QString& text, const QKeySequence& shortcut,
                                     std::function<void()> action) {
    QAction* entry = menu.addAction(text);
    entry->setShortcut(shortcut);
    connect(entry, &QAction::triggered, this, std::move(action));
    addAction(entry);  // so that the shortcut works while the menu is closed
    return entry;
}

QAction* KivoraWidget::addMenuState(QMenu& menu, const QString& text, const QKeySequence& shortcut,
                                    std::function<void()> action, std::function<bool()> state, QActionGroup* choice) {
    QAction* entry = addMenuAction(menu, text, shortcut, std::move(action));
    entry->setCheckable(true);
    entry->setActionGroup(choice);
    // A triggered entry checks itself; what is in force tells.
    const auto show = [entry, state = std::move(state)] { entry->setChecked(state()); };
    connect(entry, &QAction::triggered, this, show);
    connect(menu_, &QMenu::aboutToShow, entry, show);
    return entry;
}

void KivoraWidget::createActions() {
    delete menu_;  // with its entries and their shortcuts
    menu_ = new QMenu(this);
    menu_->setObjectName("panel-menu");
    const auto slot = [this](Slot function) { return [this, function] { (this->*function)(); }; };

    addMenuAction(*menu_, tr("&Load Preset..."), Qt::Key_F2, slot(&KivoraWidget::loadPatchClicked));
    addMenuAction(*menu_, tr("&Save Preset..."), Qt::Key_F3, slot(&KivoraWidget::savePatchClicked));
    QAction* saveTake =
        addMenuAction(*menu_, tr("Save Recordin&g..."), Qt::ALT | Qt::Key_S, slot(&KivoraWidget::onStopRecording));
    connect(menu_, &QMenu::aboutToShow, saveTake,
            [this, saveTake] { saveTake->setEnabled(engine_ != nullptr && engine_->GetRecordedCount() > 0); });
    // For the shortcut, since there may be something to save by then.
    connect(menu_, &QMenu::aboutToHide, saveTake, [saveTake] { saveTake->setEnabled(true); });
    addMenuAction(*menu_, tr("Save What I &Just Played..."), Qt::ALT | Qt::Key_J, [this] { savePlayed(); });
    addMenuAction(*menu_, tr("Hear the Recording"), Qt::ALT | Qt::Key_H, [this] { playLatestTake(); });
    const auto inPlayer = [this](void (PlayerWindow::*action)()) {
        return [this, action] {
            if (controls_ != nullptr) {
                (player().*action)();
            }
        };
    };
    addMenuAction(*menu_, tr("Play a MIDI &File..."), Qt::ALT | Qt::Key_O, inPlayer(&PlayerWindow::present));
    addMenuAction(*menu_, tr("Play or Pause the File"), Qt::ALT | Qt::Key_P, inPlayer(&PlayerWindow::toggle));
    menu_->addSeparator();
    createVoiceActions();
    menu_->addSeparator();
    createTimeActions();
    addMenuState(
        *menu_, tr("&Record"), Qt::Key_F11, [this] { toggleRecording(); },
        [this] { return engine_ != nullptr && engine_->IsRecording(); });
    addMenuAction(*menu_, tr("&Panic: Silence and Reset"), Qt::Key_F12, slot(&KivoraWidget::resetClicked));
    menu_->addSeparator();
    createViewActions();
    menu_->addSeparator();
    addMenuAction(*menu_, tr("S&ettings..."), Qt::Key_F4, slot(&KivoraWidget::settingsClicked));
    addMenuAction(*menu_, tr("&Velocity..."), {}, [this] {
        if (engine_ != nullptr) {
            releaseHeld();
            VelocitySettings(*controls_, this).exec();
        }
    });
    addMenuAction(*menu_, tr("MIDI Learn..."), {}, [this] { bindPanel(); });
    addMenuAction(*menu_, tr("Test My &Keyboard..."), {}, [this] {
        releaseHeld();
        KeyboardTest(computerKeys_->layout().get(), this).exec();
    });
    addMenuAction(*menu_, tr("&Help"), Qt::Key_F1, slot(&KivoraWidget::helpClicked));
    addMenuAction(*menu_, tr("A&bout"), {}, slot(&KivoraWidget::aboutClicked));
    menu_->addSeparator();
    addMenuAction(*menu_, tr("&Quit"), Qt::ALT | Qt::Key_Q, [this] { window()->close(); });
    if (auto* const player = findChild<PlayerWindow*>(QString(), Qt::FindDirectChildrenOnly)) {
        player->setPanelActions(actions());
    }
}

void KivoraWidget::createTimeActions() {
    addMenuState(
        *menu_, tr("&Arpeggio"), Qt::Key_F8, [this] { onArpeggiator(); },
        [this] { return engine_ != nullptr && engine_->IsArpeggiating(); });
    addMenuState(
        *menu_, tr("Latch the Chord"), Qt::ALT | Qt::Key_L, [this] { toggleLatch(); }, [this] { return isLatched(); });
    addMenuAction(*menu_, tr("Latch and Swing..."), {}, [this] {
        if (controls_ != nullptr) {
            releaseHeld();
            LatchAndSwing(*controls_, this).exec();
        }
    });
    addMenuState(
        *menu_, tr("&Metronome"), Qt::Key_F9, [this] { onMetronomeSwitch(); },
        [this] { return engine_ != nullptr && engine_->IsMetronomeOn(); });
    addMenuAction(*menu_, tr("Ho&w the Metronome Sounds..."), {}, [this] {
        if (engine_ != nullptr) {
            releaseHeld();
            MetronomeSettings(*controls_, this).exec();
        }
    });
    addMenuAction(*menu_, tr("Tap the Temp&o"), Qt::ALT | Qt::Key_T, [this] { tapClicked(); });
}

bool KivoraWidget::isLatched() const {
    const auto latches = [this](int index) {
        return engine_->WithArpeggiator(
            index, [](const NK::MIDI::CArpeggiator1& arpeggiator) { return arpeggiator.GetSettings().latch; });
    };
    return engine_ != nullptr && (latches(0) || latches(1));
}

void KivoraWidget::toggleLatch() {
    if (controls_ == nullptr) {
        return;
    }
    const bool on = !isLatched();
    for (int index = 0; index < Kivora::CKivora::kArpeggiatorCount; ++index) {
        controls_->ChangeArpeggiator(index, [on](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetLatch(on); });
    }
}

void KivoraWidget::createVoiceActions() {
    const auto mode = [this](bool dual, bool split) {
        return [this, dual, split] {
            return engine_ != nullptr && engine_->IsDual() == dual && engine_->IsSplit() == split;
        };
    };
    auto* const choice = new QActionGroup(menu_);
    addMenuState(
        *menu_, tr("S&ingle Voice"), Qt::Key_F5, [this] { vm1Clicked(); }, mode(false, false), choice);
    addMenuState(
        *menu_, tr("&Dual Voices"), Qt::Key_F6, [this] { vm2Clicked(); }, mode(true, false), choice);
    addMenuState(
        *menu_, tr("Spli&t Keyboard"), Qt::Key_F7, [this] { vmSClicked(); }, mode(false, true), choice);
}

void KivoraWidget::createViewActions() {
    addMenuState(
        *menu_, tr("&Note Names"), Qt::ALT | Qt::Key_N,
        [this] {
            if (engine_ != nullptr) {
                controls_->SetShowNoteNames(!engine_->GetShowNoteNames());
            }
        },
        [this] { return engine_ != nullptr && engine_->GetShowNoteNames(); });

    QMenu* coloring = menu_->addMenu(tr("Key &Colors"));
    auto* const colorings = new QActionGroup(menu_);
    const QString names[NK::Piano::kColoringCount] = {tr("&None"), tr("&Rainbow"), tr("&Scriabin")};
    for (int scheme = 0; scheme < NK::Piano::kColoringCount; ++scheme) {
        addMenuState(
            *coloring, names[scheme], {},
            [this, scheme] {
                if (engine_ != nullptr) {
                    controls_->SetKeyboardColoring(scheme);
                }
            },
            [this, scheme] { return engine_ != nullptr && engine_->GetKeyboardColoring() == scheme; }, colorings);
    }

    createPianoMenu();
    createStripMenu();
    createSizeMenu();
    createAccessibilityMenu();

    QMenu* language = menu_->addMenu(tr("Lang&uage", "interface language"));
    auto* const languages = new QActionGroup(menu_);
    for (const char* code : Kivora::kSupportedLocales) {
        // Queued: the change of language makes this menu anew.
        addMenuState(
            *language, Kivora::LocaleDisplayName(code), {},
            [this, code] { QTimer::singleShot(0, this, [this, code] { chooseLanguage(code); }); },
            [code] { return Kivora::GetCurrentLocale() == code; }, languages);
    }
}

void KivoraWidget::chooseLanguage(const char* code) {
    NK::ForgetFileFailure();
    if (!Kivora::SetLocale(code, true)) {
        notices_.Tell(QMessageBox::Warning, tr("Warning"), tr("Failed to save the settings."),
                      FailureTexts::OfLastFile());
    }
}

void KivoraWidget::showMenu(const QPoint& globalPosition) {
    releaseHeld();
    menu_->popup(globalPosition);
}

void KivoraWidget::contextMenuEvent(QContextMenuEvent* event) {
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
    if (keyboard || childAt(event->pos()) == nullptr) {
        showMenu(keyboard ? mapToGlobal(rect().center()) : event->globalPos());
    }
    event->accept();
}
