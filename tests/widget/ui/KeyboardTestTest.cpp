// The dialog that shows what the computer's keyboard reports at once.
#include "ui/dialogs/KeyboardTest.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QtTest/QTest>

#include "locale/Locale.h"
#include "support/SystemLayout.h"
#include "ui/dialogs/KeyboardFigure.h"
#include "widget/ui/DialogTexts.h"

namespace {

constexpr quint32 kScanQ = 24;
constexpr quint32 kScanZ = 52;
constexpr quint32 kScanC = 54;
constexpr quint32 kScanB = 56;
constexpr quint32 kScanISO = 94;

class KeyboardTestDialog : public testing::Test {
protected:
    KeyboardTestDialog() { Kivora::SetLocale("en_US", false); }
    ~KeyboardTestDialog() override { Kivora::SetLocale("en_US", false); }

    void Open(const char* layout) {
        const NK::TKeyboardLayout read = KivoraTest::SystemLayout(layout);
        dialog = std::make_unique<KeyboardTest>(&read);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    bool Send(QEvent::Type type, quint32 scanCode, quint64 timeMs) {
        QKeyEvent event(type, Qt::Key_unknown, {}, scanCode, 0, 0);
        event.setTimestamp(timeMs);
        QApplication::sendEvent(QApplication::focusWidget(), &event);
        return event.isAccepted();
    }
    void Press(quint32 scanCode) { Send(QEvent::KeyPress, scanCode, now += 100); }
    void Release(quint32 scanCode) {
        const std::string before = Lit();
        Send(QEvent::KeyRelease, scanCode, now += 100);
        EXPECT_TRUE(before.empty() || QTest::qWaitFor([&] { return Lit() != before; }));
    }
    /// As X11 repeats a held key.
    void Repeat(quint32 scanCode) {
        now += 30;
        Send(QEvent::KeyRelease, scanCode, now);
        Send(QEvent::KeyPress, scanCode, now);
    }
    std::string Text(const char* name) { return dialog->findChild<QLabel*>(name)->text().toStdString(); }
    std::string Lit() { return dialog->findChild<KeyboardFigure*>()->accessibleDescription().toStdString(); }
    QPushButton& Button(const char* name) { return *dialog->findChild<QPushButton*>(name); }

    std::unique_ptr<KeyboardTest> dialog;
    quint64 now = 5000;
};

TEST_F(KeyboardTestDialog, LightsWhatIsDownAndCounts) {
    Open("us");
    Press(kScanZ);
    Press(kScanQ);
    EXPECT_EQ(Lit(), "Q Z");
    EXPECT_EQ(Text("keyboardCount"), "Keys at once: 2. Most so far: 2.");
    const QImage both = dialog->findChild<KeyboardFigure*>()->grab().toImage();
    Release(kScanQ);
    EXPECT_NE(dialog->findChild<KeyboardFigure*>()->grab().toImage(), both);
    EXPECT_EQ(Lit(), "Z");
    EXPECT_EQ(Text("keyboardCount"), "Keys at once: 1. Most so far: 2.");
    Send(QEvent::KeyPress, kScanISO, now);
    EXPECT_EQ(Lit(), "Z") << "no key of the figure";
}

TEST_F(KeyboardTestDialog, NamesTheKeysAsTheLayoutDoes) {
    Open("fr");
    EXPECT_EQ(
        Text("keyboardTask"),
        "Chord 1 of 12: hold W + C + B, then let go. If the third key stays dark, let go of another one first, or "
        "press the button.");
    Open("gr");
    Press(kScanZ);
    EXPECT_EQ(Lit(), "\u0396");
    dialog = std::make_unique<KeyboardTest>(nullptr);
    EXPECT_NE(Text("keyboardTask").find("Z + C + B"), std::string::npos) << "of a layout that is not known";
}

TEST_F(KeyboardTestDialog, NamesAChordOfWhichTheKeyboardDropsAKeyAndTheReason) {
    Open("de");
    Press(kScanZ);
    Press(kScanC);
    EXPECT_EQ(Text("keyboardResult"), "");
    Release(kScanZ);
    Send(QEvent::KeyPress, kScanB, now);
    EXPECT_EQ(
        Text("keyboardResult"),
        "Your keyboard cannot report: Y + C + B (without B). That is the wiring of the keyboard, which no program "
        "can change. A keyboard with \u201Cn-key rollover\u201D reports every chord.");
    Release(kScanC);
    Release(kScanB);
    EXPECT_TRUE(Text("keyboardTask").starts_with("Chord 2 of 12")) << Text("keyboardTask");
    QTest::mouseClick(&Button("keyboardAgain"), Qt::LeftButton);
    EXPECT_EQ(Text("keyboardResult"), "");
    EXPECT_TRUE(Text("keyboardTask").starts_with("Chord 1 of 12"));
}

TEST_F(KeyboardTestDialog, TheButtonTellsThatAKeyStaysDarkAndLeavesTheKeyboardAlone) {
    Open("us");
    EXPECT_FALSE(Button("keyDropped").isEnabled());
    Press(kScanZ);
    Press(kScanB);
    EXPECT_TRUE(Button("keyDropped").isEnabled());
    QTest::mouseClick(&Button("keyDropped"), Qt::LeftButton);
    EXPECT_TRUE(Text("keyboardResult").starts_with("Your keyboard cannot report: Z + C + B (without C)."));
    EXPECT_FALSE(Button("keyDropped").isEnabled());
    EXPECT_EQ(Lit(), "Z B");
}

TEST_F(KeyboardTestDialog, RepeatsOfHeldKeysTellNothingAndLeaveTheButtonAlone) {
    Open("us");
    Press(kScanZ);
    for (int repeat = 0; repeat < 5; ++repeat) {
        Repeat(kScanZ);
    }
    Send(QEvent::KeyPress, kScanC, now + 2);
    EXPECT_EQ(Text("keyboardResult"), "");
    EXPECT_EQ(Lit(), "Z C");
    QPushButton& button = Button("keyDropped");
    QTest::mousePress(&button, Qt::LeftButton);
    Repeat(kScanC);
    EXPECT_TRUE(button.isDown());
    QTest::mouseRelease(&button, Qt::LeftButton);
    EXPECT_NE(Text("keyboardResult"), "");
}

TEST_F(KeyboardTestDialog, WhatIsHeldWhenTheWindowIsLeftIsNotDownAnyMore) {
    Open("us");
    Press(kScanZ);
    QEvent left(QEvent::WindowDeactivate);
    QApplication::sendEvent(dialog.get(), &left);
    EXPECT_EQ(Lit(), "");
}

TEST_F(KeyboardTestDialog, OtherKeysDoWhatTheyDoInADialog) {
    Open("us");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), dialog->findChild<KeyboardFigure*>());
    Press(kScanZ);
    EXPECT_EQ(Lit(), "Z") << "with the focus on a button too";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(KeyboardTestDialog, CanBeReadHeardAndReachedInBothLanguages) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        Open("us");
        Press(kScanZ);
        Press(kScanC);
        Release(kScanZ);
        Send(QEvent::KeyPress, kScanB, now);
        EXPECT_EQ(ClippedTexts(*dialog), "") << locale;
        EXPECT_EQ(NamelessControls(*dialog), "") << locale;
        EXPECT_EQ(SharedMnemonics(*dialog), "") << locale;
    }
}

}  // namespace
