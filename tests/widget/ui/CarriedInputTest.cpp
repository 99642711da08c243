// Keys and buttons that are held while windows of the program come and go.
#include "ui/CarriedInput.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QtTest/QTest>
#include <string>
#include <vector>

namespace {

constexpr quint32 kZ = 52;
constexpr quint32 kX = 53;

/// Notes what reaches it.
class Panel : public QWidget {
public:
    Panel() {
        resize(200, 100);
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
    std::vector<std::string> Take() { return std::exchange(came_, {}); }

protected:
    void keyPressEvent(QKeyEvent* event) override { came_.push_back("down " + event->text().toStdString()); }
    void keyReleaseEvent(QKeyEvent* event) override { came_.push_back("up " + event->text().toStdString()); }
    void mousePressEvent(QMouseEvent* event) override { Note("press", *event); }
    void mouseMoveEvent(QMouseEvent* event) override { Note("move", *event); }
    void mouseReleaseEvent(QMouseEvent* event) override { Note("release", *event); }

private:
    void Note(const std::string& what, const QMouseEvent& event) {
        came_.push_back(what + " " + std::to_string(event.buttons().toInt()));
    }
    std::vector<std::string> came_;
};

class Carried : public testing::Test {
protected:
    using Strings = std::vector<std::string>;

    void Key(QObject& receiver, QEvent::Type type, quint32 scanCode, quint64 timeMs, bool autoRepeat = false) {
        QKeyEvent event(type, scanCode == kZ ? Qt::Key_Z : Qt::Key_X, Qt::NoModifier, scanCode, 0, 0,
                        scanCode == kZ ? "z" : "x", autoRepeat);
        event.setTimestamp(timeMs);
        QApplication::sendEvent(&receiver, &event);
    }
    void Press(QObject& receiver, quint32 scanCode, quint64 timeMs) {
        Key(receiver, QEvent::KeyPress, scanCode, timeMs);
    }
    void Release(QObject& receiver, quint32 scanCode, quint64 timeMs) {
        Key(receiver, QEvent::KeyRelease, scanCode, timeMs);
    }
    /// As the system repeats a held key: mostly without its flag.
    void Repeat(QObject& receiver, quint32 scanCode, quint64 timeMs) {
        Release(receiver, scanCode, timeMs);
        Press(receiver, scanCode, timeMs);
        Key(receiver, QEvent::KeyPress, scanCode, timeMs, true);
    }
    /// As the window system sends it.
    static void Mouse(QWidget& window, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons) {
        const QPointF at(20, 20);
        QMouseEvent event(type, at, at, window.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(window.windowHandle(), &event);
    }

    CarriedInput carried;
    Panel panel;
};

TEST_F(Carried, HeldKeysMeanNothingToADialogUntilTheyAreUp) {
    Press(panel, kZ, 1);
    EXPECT_EQ(panel.Take(), Strings{"down z"});
    QDialog dialog(&panel);
    QLineEdit name(&dialog);
    dialog.setModal(true);
    dialog.show();
    Repeat(name, kZ, 2);
    Repeat(name, kZ, 3);
    EXPECT_EQ(name.text(), "");
    Press(name, kX, 4);
    EXPECT_EQ(name.text(), "x") << "a key of its own";
    Release(name, kZ, 5);
    Press(name, kZ, 6);
    EXPECT_EQ(name.text(), "xz") << "pressed anew";
    Repeat(name, kZ, 7);
    EXPECT_EQ(name.text(), "xzzz") << "a key of the dialog repeats";
}

TEST_F(Carried, KeysThatAreHeldWhenADialogClosesMeanNothingToThePanel) {
    QDialog dialog(&panel);
    dialog.setModal(true);
    dialog.show();
    Press(dialog, kZ, 1);
    dialog.close();
    Repeat(panel, kZ, 2);
    Release(panel, kZ, 3);
    EXPECT_EQ(panel.Take(), Strings{});
    Press(panel, kZ, 4);
    Release(panel, kZ, 5);
    EXPECT_EQ(panel.Take(), (Strings{"down z", "up z"}));
}

TEST_F(Carried, AKeyThatIsStruckWithinAMillisecondAfterAWindowWentIsNoRepeat) {
    Press(panel, kZ, 1);
    carried.noteRelease(kZ, 2);
    Release(panel, kZ, 2);
    QMenu menu(&panel);
    menu.addAction("One");
    menu.popup(QPoint(0, 0));
    menu.close();
    panel.Take();
    for (const quint64 strike : {10U, 20U}) {
        carried.noteRelease(kZ, strike);  // read together with the press, which Qt delivers only now
        Press(panel, kZ, strike);
        Release(panel, kZ, strike);
        EXPECT_EQ(panel.Take(), (Strings{"down z", "up z"})) << strike;
    }
}

TEST_F(Carried, RepeatsThatTheSystemTellsOfAheadMeanNothingEither) {
    Press(panel, kZ, 1);
    panel.Take();
    QDialog dialog(&panel);
    QLineEdit name(&dialog);
    dialog.setModal(true);
    dialog.show();
    for (const quint64 first : {10U, 20U}) {
        for (const quint64 time : {first, first + 1, first + 2}) {
            carried.noteRelease(kZ, time);
        }
        for (const quint64 time : {first, first + 1, first + 2}) {
            Repeat(name, kZ, time);
        }
    }
    EXPECT_EQ(name.text(), "");
}

TEST_F(Carried, AMenuIsNotWorkedByAHeldKey) {
    int triggered = 0;
    QMenu menu(&panel);
    QObject::connect(menu.addAction("&Zero"), &QAction::triggered, [&] { ++triggered; });
    Press(panel, kZ, 1);
    menu.popup(QPoint(0, 0));
    Repeat(menu, kZ, 2);
    EXPECT_EQ(triggered, 0);
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}

TEST_F(Carried, AKeyWhoseReleaseWentElsewhereIsPressedAnew) {
    Press(panel, kZ, 1);
    panel.Take();
    QDialog dialog(&panel);
    QLineEdit name(&dialog);
    dialog.setModal(true);
    dialog.show();
    carried.keepOnly({});
    Press(name, kZ, 2);
    EXPECT_EQ(name.text(), "z");
}

TEST_F(Carried, AReleaseThatReachesNoWindowCountsThoughThePressIsHandledLater) {
    for (const bool readTogether : {false, true}) {
        const quint64 begin = readTogether ? 10 : 20;
        if (readTogether) {
            carried.noteRelease(kZ, begin + 1);
        }
        Press(panel, kZ, begin);
        QDialog dialog(&panel);
        dialog.setModal(true);
        dialog.show();
        if (!readTogether) {
            carried.noteRelease(kZ, begin + 1);
        }
        dialog.close();
        panel.Take();
        Press(panel, kZ, begin + 5);
        EXPECT_EQ(panel.Take(), Strings{"down z"});
        Release(panel, kZ, begin + 6);
        panel.Take();
    }
}

TEST_F(Carried, ARepeatWhoseReleaseReachesNoWindowMeansNothing) {
    Press(panel, kZ, 1);
    panel.Take();
    QDialog dialog(&panel);
    QLineEdit name(&dialog);
    dialog.setModal(true);
    dialog.show();
    carried.noteRelease(kZ, 2);
    Press(name, kZ, 2);
    EXPECT_EQ(name.text(), "");
}

TEST_F(Carried, AButtonThatWasPressedInAClosedDialogDoesNotCount) {
    QDialog dialog(&panel);
    dialog.setModal(true);
    dialog.show();
    Mouse(dialog, QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
    dialog.close();
    Mouse(panel, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton | Qt::RightButton);
    Mouse(panel, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    Mouse(panel, QEvent::MouseButtonRelease, Qt::RightButton, Qt::LeftButton);
    Mouse(panel, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(panel.Take(), (Strings{"press 1", "move 1", "release 0"}));
    Mouse(panel, QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
    Mouse(panel, QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(panel.Take(), (Strings{"press 2", "release 0"})) << "pressed anew";
}

TEST_F(Carried, AButtonWhoseReleaseWentElsewhereDoesNotCount) {
    Mouse(panel, QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
    panel.Take();
    carried.keepOnly({});
    Mouse(panel, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton | Qt::RightButton);
    Mouse(panel, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::RightButton);
    EXPECT_EQ(panel.Take(), (Strings{"press 1", "release 0"}));
}

TEST_F(Carried, SeveralButtonsOfOneWindowCountAsEver) {
    Mouse(panel, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    Mouse(panel, QEvent::MouseButtonPress, Qt::RightButton, Qt::LeftButton | Qt::RightButton);
    Mouse(panel, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(panel.Take(), (Strings{"press 1", "press 3", "move 3"}));
    Mouse(panel, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::RightButton);
    Mouse(panel, QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(panel.Take(), (Strings{"release 2", "release 0"}));
}

}  // namespace
