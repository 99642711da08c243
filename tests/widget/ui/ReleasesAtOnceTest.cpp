// On an X server: a key that goes up is released at once, and one that only repeats is not.
#include "widget/ui/PanelRig.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <memory>

#include "piano/PCKeyPlaces.h"
#include "ui/dialogs/KeyboardFigure.h"
#include "ui/dialogs/KeyboardTest.h"
#include "widget/piano/PianoFixture.h"

using namespace KivoraTest;

namespace {

constexpr quint32 kUnusedKey = 93;  ///< that no keyboard has
constexpr quint64 kShortMs = 50;
constexpr quint64 kLongMs = 5000;  ///< by then the server repeats what is held

/// Presses and lets go of a key as the window system tells it, and lets nothing else happen in between. What the server
/// itself knows of the key is another matter.
class ToldKey {
public:
    ToldKey(Qt::Key key, quint32 scanCode) : key_(key), scanCode_(scanCode) {}

    void Press(QWidget& receiver) { Send(receiver, QEvent::KeyPress, now_ += kLongMs); }
    void Release(QWidget& receiver, quint64 afterMs = kLongMs) { Send(receiver, QEvent::KeyRelease, now_ += afterMs); }
    void Repeat(QWidget& receiver) {
        Release(receiver);
        Send(receiver, QEvent::KeyPress, now_);
    }

private:
    void Send(QWidget& receiver, QEvent::Type type, quint64 timeMs) {
        QKeyEvent event(type, key_, {}, scanCode_, 0, 0);
        event.setTimestamp(timeMs);
        QApplication::sendEvent(&receiver, &event);
    }

    const Qt::Key key_;
    const quint32 scanCode_;
    quint64 now_ = 5000;
};

/// Holds a key down on the server while it lives.
class ServersKey {
public:
    explicit ServersKey(quint32 scanCode) : scanCode_(scanCode) { Move(XCB_KEY_PRESS); }
    ~ServersKey() {
        Move(XCB_KEY_RELEASE);
        xcb_disconnect(server_);
    }
    ServersKey(const ServersKey&) = delete;
    ServersKey& operator=(const ServersKey&) = delete;

private:
    void Move(int type) {
        xcb_test_fake_input(server_, static_cast<uint8_t>(type), static_cast<uint8_t>(scanCode_), XCB_CURRENT_TIME,
                            XCB_NONE, 0, 0, 0);
        std::free(xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
    }

    xcb_connection_t* const server_ = xcb_connect(nullptr, nullptr);
    const quint32 scanCode_;
};

class PanelReleases : public PanelTest {
protected:
    using Written = std::vector<std::string>;
    ToldKey z{Qt::Key_Z, kUnusedKey};
};

TEST_F(PanelReleases, AKeysReleaseGoesOutWithoutAWait) {
    for (const quint64 heldMs : {kShortMs, kLongMs, kShortMs}) {
        z.Press(*panel);
        EXPECT_EQ(rig.TakeWritten(), Written{"90 3c 50"});
        z.Release(*panel, heldMs);
        EXPECT_EQ(rig.TakeWritten(), Written{"80 3c 00"});
    }
}

TEST_F(PanelReleases, AKeyThatRepeatsIsHeld) {
    const ServersKey held(kUnusedKey);
    z.Press(*panel);
    rig.TakeWritten();
    for (int i = 0; i < 3; ++i) {
        z.Repeat(*panel);
        EXPECT_EQ(rig.TakeWritten(), Written{});
    }
}

class CursorReleases : public PianoTest {
protected:
    CursorReleases() {
        ShowWithCursor();
        Type(Qt::Key_Home);
        Signals();
    }
    ToldKey space{Qt::Key_Space, kUnusedKey};
    ToldKey right{Qt::Key_Right, kUnusedKey};
};

TEST_F(CursorReleases, SpaceEndsItsNoteWithoutAWait) {
    for (const quint64 heldMs : {kShortMs, kLongMs, kShortMs}) {
        space.Press(piano_);
        Signals();
        space.Release(piano_, heldMs);
        EXPECT_EQ(Signals(), CSignals{"released 60"});
    }
}

TEST_F(CursorReleases, ARepeatThatIsReadAfterTheKeyWentUpPlaysAndMovesNothing) {
    space.Press(piano_);
    space.Repeat(piano_);
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 100", "released 60"}));
    space.Repeat(piano_);
    space.Release(piano_);
    EXPECT_EQ(Signals(), CSignals{});
    right.Press(piano_);
    right.Repeat(piano_);
    right.Release(piano_);
    EXPECT_EQ(Signals(), CSignals{"cursor 61"});
    space.Press(piano_);
    space.Release(piano_);
    EXPECT_EQ(Signals(), (CSignals{"pressed 61", "pressed 61 100", "released 61"}));
}

TEST_F(CursorReleases, SpaceThatRepeatsHoldsItsNote) {
    const ServersKey held(kUnusedKey);
    space.Press(piano_);
    Signals();
    for (int i = 0; i < 3; ++i) {
        space.Repeat(piano_);
        EXPECT_EQ(Signals(), CSignals{});
    }
}

TEST(KeyboardTestReleases, AKeyGoesDarkWithoutAWait) {
    KeyboardTest dialog(nullptr);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog, kWaitMs));
    const auto lit = [&dialog] { return dialog.findChild<KeyboardFigure*>()->accessibleDescription(); };
    ToldKey p(Qt::Key_unknown, NK::Piano::GetScanCodeOfPlace('p'));
    for (const quint64 heldMs : {kShortMs, kLongMs}) {
        p.Press(dialog);
        EXPECT_EQ(lit(), "P");
        p.Release(dialog, heldMs);
        EXPECT_EQ(lit(), "");
    }
}

}  // namespace
