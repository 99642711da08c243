#include <QCloseEvent>
#include <QMouseEvent>
#include <QPointingDevice>

#include "PianoFixture.h"

namespace {

class PianoMouseTest : public PianoTest {
protected:
    void Send(QEvent::Type type, const QPointF& at, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, piano_.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&piano_, &event);
    }
    void Press(const QPointF& at, Qt::MouseButton button = Qt::LeftButton) {
        Send(QEvent::MouseButtonPress, at, button, button);
    }
    void Move(const QPointF& at, Qt::MouseButtons buttons = Qt::LeftButton) {
        Send(QEvent::MouseMove, at, Qt::NoButton, buttons);
    }
    void Release(const QPointF& at) { Send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton); }
};

TEST_F(PianoMouseTest, ClickEmitsThePressTwiceThenTheCursorThenTheRelease) {
    QTest::mousePress(&piano_, Qt::LeftButton, Qt::NoModifier, {5, 50});
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 64", "cursor 60"}));
    QTest::mouseRelease(&piano_, Qt::LeftButton, Qt::NoModifier, {5, 50});
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    EXPECT_FALSE(piano_.IsPressed(60)) << "not standalone";
}

TEST_F(PianoMouseTest, ClickAtTheVeryTopYields1AndAtTheBottomEdge127) {
    Press({5, 0});
    EXPECT_EQ(Signals()[1], "pressed 60 1");
    Release({5, 0});
    Signals();
    Press({5, 99.99});
    EXPECT_EQ(Signals()[1], "pressed 60 127");
}

TEST_F(PianoMouseTest, ClickOnTheCoveredPartOfAWhiteKeyPlaysTheBlackKey) {
    Press({15, 10});
    EXPECT_EQ(Signals()[0], "pressed 61");
}

TEST_F(PianoMouseTest, CursorStaysWhereItIsClicked) {
    Press({5, 50});
    Release({5, 50});
    Signals();
    Press({5, 50});
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 64"}));
}

TEST_F(PianoMouseTest, DraggingReleasesTheOldKeyBeforeItPressesTheNew) {
    Press({5, 90});
    Signals();
    Move({25, 90});
    EXPECT_EQ(Signals(), (CSignals{"released 60", "pressed 62", "pressed 62 114", "cursor 62"}));
}

TEST_F(PianoMouseTest, DraggingInsideAKeyEmitsAfterTouchOnlyWhenTheVelocityChanges) {
    Press({5, 90});
    Signals();
    Move({6, 90});
    EXPECT_EQ(Signals(), CSignals{});
    Move({6, 80});
    EXPECT_EQ(Signals(), CSignals{"touch 60 102"});
    Move({7, 80});
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoMouseTest, DraggingOutOfTheKeyboardReleasesAndBackInPresses) {
    Press({5, 90});
    Signals();
    Move({5, 120});
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    Move({6, 120});
    EXPECT_EQ(Signals(), CSignals{});
    Move({6, 90});
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114"}));
}

TEST_F(PianoMouseTest, ClickOutsideEveryKeyEmitsNothing) {
    Press({5, 120});
    EXPECT_EQ(Signals(), CSignals{});
    Release({5, 120});
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoMouseTest, MovingWithoutExactlyTheLeftButtonReleases) {
    Press({5, 90});
    Signals();
    Move({6, 90}, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    Move({25, 90}, Qt::NoButton);
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoMouseTest, AnotherButtonReleasesTheHeldKeyAndPlaysNothing) {
    piano_.setStandalone(true);
    Press({5, 90});
    EXPECT_TRUE(piano_.IsPressed(60));
    Signals();
    Press({5, 90}, Qt::RightButton);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    EXPECT_FALSE(piano_.IsPressed(60));
    Press({25, 90}, Qt::MiddleButton);
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoMouseTest, SecondPressReleasesTheHeldNoteByItsSignalOnly) {
    piano_.setStandalone(true);
    Press({5, 90});
    Signals();
    Press({25, 90});
    EXPECT_EQ(Signals(), (CSignals{"released 60", "pressed 62", "pressed 62 114", "cursor 62"}));
    EXPECT_TRUE(piano_.IsPressed(60)) << "the widget's own light stays";
}

TEST_F(PianoMouseTest, StandaloneLightsWhatIsPlayed) {
    piano_.setStandalone(true);
    Press({5, 90});
    EXPECT_TRUE(piano_.IsPressed(60));
    Move({25, 90});
    EXPECT_FALSE(piano_.IsPressed(60));
    EXPECT_TRUE(piano_.IsPressed(62));
    Release({25, 90});
    EXPECT_FALSE(piano_.IsPressed(62));
}

TEST_F(PianoMouseTest, LeaveHideAndCloseReleaseTheHeldKey) {
    piano_.show();
    Press({5, 90});
    Signals();
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&piano_, &leave);
    EXPECT_EQ(Signals(), CSignals{"released 60"});

    Press({5, 90});
    Signals();
    piano_.hide();
    EXPECT_EQ(Signals(), CSignals{"released 60"});

    piano_.show();
    Press({5, 90});
    Signals();
    QCloseEvent close;
    QCoreApplication::sendEvent(&piano_, &close);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    Release({5, 90});
    EXPECT_EQ(Signals(), CSignals{}) << "released already";
}

TEST_F(PianoMouseTest, SecondPressOfADoubleClickPlaysToo) {
    Press({5, 50});
    Release({5, 50});
    Send(QEvent::MouseButtonDblClick, {5, 50}, Qt::LeftButton, Qt::LeftButton);
    Release({5, 50});
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 64", "cursor 60", "released 60", "pressed 60",
                                   "pressed 60 64", "released 60"}));
}

TEST_F(PianoMouseTest, PenPlaysAsTheMouseDoes) {
    const QPointingDevice pen("pen", 7, QInputDevice::DeviceType::Stylus, QPointingDevice::PointerType::Pen,
                              QInputDevice::Capability::Position, 1, 1);
    const auto send = [&](QEvent::Type type, const QPointF& at, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, piano_.mapToGlobal(at), piano_.mapToGlobal(at), button, buttons, Qt::NoModifier,
                          Qt::MouseEventSynthesizedByQt, &pen);
        QCoreApplication::sendEvent(&piano_, &event);
    };
    send(QEvent::MouseButtonPress, {5, 90}, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, {25, 90}, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {25, 90}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114", "cursor 60", "released 60", "pressed 62",
                                   "pressed 62 114", "cursor 62", "released 62"}));
}

TEST_F(PianoMouseTest, DisablingThePianoReleasesTheHeldKey) {
    piano_.show();
    Press({5, 90});
    Signals();
    piano_.setEnabled(false);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    piano_.setEnabled(true);
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoMouseTest, SlotThatHidesThePianoLeavesNoKeyHeld) {
    piano_.show();
    QObject::connect(&piano_, qOverload<BYTE, BYTE>(&QPiano::keyPressed), [&] { piano_.hide(); });
    Press({5, 90});
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114", "released 60", "cursor 60"}));
    Release({5, 90});
    EXPECT_EQ(Signals(), CSignals{});
}

}  // namespace
