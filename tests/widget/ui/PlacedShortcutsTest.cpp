#include "ui/PlacedShortcuts.h"

#include <optional>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMenu>
#include <QWindow>

#include "support/SystemLayout.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;

namespace {

constexpr quint32 kScanMinus = 20;
constexpr quint32 kScanEqual = 21;
constexpr quint32 kScanS = 39;
constexpr quint32 kScanL = 46;
constexpr quint32 kScanSemicolon = 47;
constexpr quint32 kScanC = 54;
constexpr quint32 kScanN = 57;

class PlacedShortcutsOnPanel : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        UseLayout("gr");
        panel->computerKeys().setSource([this] { return active_; });
        shortcuts_.emplace([this] { return active_; });
    }
    void UseLayout(const char* layout, const char* variant = "") {
        active_ = std::make_shared<const NK::TKeyboardLayout>(SystemLayout(layout, variant));
    }
    /// As the window system sends it to a window, after it was no shortcut by its own letter.
    void Press(QWindow* receiver, quint32 scanCode, Qt::KeyboardModifiers modifiers = {}, bool autoRepeat = false) {
        const char32_t character = (*active_)[scanCode].character;
        const QString text = QString::fromUcs4(&character, 1);
        const auto code = static_cast<int>(QChar::toUpper(character));
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, modifiers, scanCode, 0, 0, text, autoRepeat);
            QCoreApplication::sendEvent(receiver, &event);
        }
    }
    void Press(quint32 scanCode, Qt::KeyboardModifiers modifiers = {}, bool autoRepeat = false) {
        Press(window->windowHandle(), scanCode, modifiers, autoRepeat);
    }

    std::shared_ptr<const NK::TKeyboardLayout> active_;
    std::optional<PlacedShortcuts> shortcuts_;
};

TEST_F(PlacedShortcutsOnPanel, WithAltAnEntryOfTheMenuActsByThePlaceOfItsLetter) {
    ASSERT_FALSE(Engine().GetShowNoteNames());
    Press(kScanN, Qt::AltModifier);
    EXPECT_TRUE(Engine().GetShowNoteNames());
    Press(kScanN, Qt::AltModifier, true);
    EXPECT_TRUE(Engine().GetShowNoteNames()) << "a repeat does nothing";
    Press(kScanN, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_TRUE(Engine().GetShowNoteNames()) << "that is another shortcut";
    UseLayout("us", "dvorak");
    Press(kScanN, Qt::AltModifier);
    EXPECT_TRUE(Engine().GetShowNoteNames()) << "a layout with Latin letters goes by them";
}

TEST_F(PlacedShortcutsOnPanel, AnotherLayoutOfTheKeyboardGivesTheLetter) {
    active_ =
        std::make_shared<const NK::TKeyboardLayout>(NK::ReadKeyboardLayouts(SystemKeymap("us,gr", "dvorak,")).at(1));
    Press(kScanN, Qt::AltModifier);
    EXPECT_FALSE(Engine().GetShowNoteNames()) << "a US keyboard's, which this is not";
    Press(kScanL, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_FALSE(Engine().GetShowNoteNames());
    Press(kScanL, Qt::AltModifier);
    EXPECT_TRUE(Engine().GetShowNoteNames());
}

TEST_F(PlacedShortcutsOnPanel, AltWithThePlacesOfMinusAndEqualTurnsTheValue) {
    const std::string before = Caption("patch1");
    UseLayout("th");
    Press(kScanEqual, Qt::AltModifier);
    Show();
    EXPECT_NE(Caption("patch1"), before);
    Press(kScanMinus, Qt::AltModifier);
    Show();
    EXPECT_EQ(Caption("patch1"), before);
}

TEST_F(PlacedShortcutsOnPanel, WithCtrlAKeyOfThePanelPlaysOnly) {
    Engine().SetPCKeyWay(NK::Piano::EPCKeyWay::kAsTyped);
    Press(kScanC, Qt::ControlModifier);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{}) << "what it types plays nothing";
}

TEST_F(PlacedShortcutsOnPanel, AnOpenMenuTakesTheLetterAtThePlace) {
    auto& menu = Find<QMenu>("panel-menu");
    menu.popup(window->pos());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu, kWaitMs));
    Press(menu.windowHandle(), kScanN);
    EXPECT_TRUE(Engine().GetShowNoteNames());
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(PlacedShortcutsOnPanel, AMenuInTheUsersLettersIsReachedFromAnyLayoutByTheirPlaces) {
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();  // which makes the menu anew
    auto& menu = Find<QMenu>("panel-menu");
    QAction* names = nullptr;
    for (QAction* const entry : menu.actions()) {
        names = entry->shortcut() == QKeySequence(Qt::ALT | Qt::Key_N) ? entry : names;
    }
    ASSERT_NE(names, nullptr);
    names->setText("&\u0416");  // on the key of the semicolon
    menu.popup(window->pos());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu, kWaitMs));
    Press(menu.windowHandle(), kScanSemicolon);
    EXPECT_TRUE(Engine().GetShowNoteNames());
}

TEST_F(PlacedShortcutsOnPanel, ADialogsControlsAreReachedByThePlacesOfTheirLetters) {
    QDialog dialog(window.get());
    QCheckBox box("&Names", &dialog);
    QLabel label("&Sound", &dialog);
    QComboBox combo(&dialog);
    label.setBuddy(&combo);
    QLineEdit field("text", &dialog);
    dialog.show();
    dialog.activateWindow();
    Wait([&] { return QApplication::activeWindow() == &dialog; });
    field.setFocus();
    Press(dialog.windowHandle(), kScanN, Qt::AltModifier);
    Wait([&] { return box.isChecked(); });
    EXPECT_FALSE(Engine().GetShowNoteNames()) << "the panel's window is not the active one";
    Press(dialog.windowHandle(), kScanS, Qt::AltModifier);
    EXPECT_TRUE(combo.hasFocus());
    field.setFocus();
    field.selectAll();
    Press(dialog.windowHandle(), kScanC, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "text");
    EXPECT_EQ(field.text(), "text");
    // As the toolkit finds it where another layout of the keyboard types x there.
    QKeyEvent cut(QEvent::KeyPress, Qt::Key_X, Qt::ControlModifier, kScanC, 0, 0);
    QCoreApplication::sendEvent(dialog.windowHandle(), &cut);
    EXPECT_EQ(field.text(), "");
}

}  // namespace
