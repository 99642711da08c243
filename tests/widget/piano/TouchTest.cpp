#include <memory>
#include <QPointingDevice>
#include <QWindow>

#include "PianoFixture.h"

namespace {

class PianoTouchTest : public PianoTest {
protected:
    PianoTouchTest() {
        piano_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&piano_));
        Signals();
    }
    QTest::QTouchEventWidgetSequence Touch() { return QTest::touchEvent(&piano_, Screen()); }

    static QPointingDevice* Screen() {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        return screen;
    }
};

TEST_F(PianoTouchTest, OneFingerPlaysOneKeyOnce) {
    Touch().press(1, QPoint(5, 90));
    QCoreApplication::processEvents();
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114", "cursor 60"}));
    Touch().release(1, QPoint(5, 90));
    QCoreApplication::processEvents();
    EXPECT_EQ(Signals(), CSignals{"released 60"}) << "no mouse event beside the touch";
}

TEST_F(PianoTouchTest, SeveralFingersPlaySeveralKeysEachAtItsVelocity) {
    Touch().press(1, QPoint(5, 90)).press(2, QPoint(45, 70)).press(3, QPoint(85, 80));
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114", "cursor 60", "pressed 64", "pressed 64 89",
                                   "cursor 64", "pressed 67", "pressed 67 102", "cursor 67"}));
    Touch().stationary(1).release(2, QPoint(45, 70)).stationary(3);
    EXPECT_EQ(Signals(), CSignals{"released 64"});
    Touch().release(1, QPoint(5, 90)).release(3, QPoint(85, 80));
    EXPECT_EQ(Signals(), (CSignals{"released 60", "released 67"}));
}

TEST_F(PianoTouchTest, FingersGlideAndPressOnTheirOwn) {
    Touch().press(1, QPoint(5, 90)).press(2, QPoint(85, 80));
    Signals();
    Touch().move(1, QPoint(25, 90)).stationary(2);
    EXPECT_EQ(Signals(), (CSignals{"released 60", "pressed 62", "pressed 62 114", "cursor 62"}));
    Touch().stationary(1).move(2, QPoint(86, 90));
    EXPECT_EQ(Signals(), CSignals{"touch 67 114"});
    Touch().release(1, QPoint(25, 90)).release(2, QPoint(86, 90));
    EXPECT_EQ(Signals(), (CSignals{"released 62", "released 67"}));
}

TEST_F(PianoTouchTest, KeyUnderTwoFingersSoundsUntilTheLastIsLifted) {
    Touch().press(1, QPoint(5, 90));
    Touch().stationary(1).press(2, QPoint(8, 95));
    EXPECT_EQ(Signals(), (CSignals{"pressed 60", "pressed 60 114", "cursor 60"}));
    Touch().release(1, QPoint(5, 90)).stationary(2);
    EXPECT_EQ(Signals(), CSignals{});
    Touch().release(2, QPoint(8, 95));
    EXPECT_EQ(Signals(), CSignals{"released 60"});
}

TEST_F(PianoTouchTest, HidingReleasesEveryFinger) {
    piano_.setStandalone(true);
    Touch().press(1, QPoint(5, 90)).press(2, QPoint(85, 80));
    EXPECT_TRUE(piano_.IsPressed(60) && piano_.IsPressed(67));
    Signals();
    piano_.hide();
    EXPECT_EQ(Signals(), (CSignals{"released 60", "released 67"}));
    EXPECT_FALSE(piano_.IsPressed(60) || piano_.IsPressed(67));
}

TEST_F(PianoTouchTest, CancelledTouchReleasesItsKeys) {
    Touch().press(1, QPoint(5, 90));
    Signals();
    QTouchEvent cancel(QEvent::TouchCancel, Screen());
    QCoreApplication::sendEvent(&piano_, &cancel);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
}

TEST_F(PianoTouchTest, CancelledTouchLeavesTheMouseAndOtherScreensTheirKeys) {
    const std::unique_ptr<QPointingDevice> other(QTest::createTouchDevice());
    QTest::mousePress(&piano_, Qt::LeftButton, Qt::NoModifier, QPoint(45, 90));
    Touch().press(1, QPoint(5, 90));
    QTest::touchEvent(&piano_, other.get()).press(2, QPoint(85, 90));
    Signals();
    QTouchEvent cancel(QEvent::TouchCancel, Screen());
    QCoreApplication::sendEvent(&piano_, &cancel);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    QTest::touchEvent(&piano_, other.get()).release(2, QPoint(85, 90));
    QTest::mouseRelease(&piano_, Qt::LeftButton, Qt::NoModifier, QPoint(45, 90));
    EXPECT_EQ(Signals(), (CSignals{"released 67", "released 64"}));
}

TEST_F(PianoTouchTest, FingerWhoseLiftingWasLostLeavesNoKeyHeld) {
    Touch().press(1, QPoint(85, 80));
    Signals();
    const QEventPoint again(1, QEventPoint::State::Pressed, QPointF(), QPointF());
    QTouchEvent begin(QEvent::TouchBegin, Screen(), Qt::NoModifier, {again});
    QCoreApplication::sendEvent(&piano_, &begin);
    EXPECT_EQ(Signals(), (CSignals{"released 67", "pressed 60", "pressed 60 1", "cursor 60"}));
    Touch().release(1, QPoint(0, 0));
    EXPECT_EQ(Signals(), CSignals{"released 60"});
}

TEST_F(PianoTouchTest, DisabledPianoIsNotPlayed) {
    Touch().press(1, QPoint(5, 90));
    Signals();
    piano_.setEnabled(false);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    Touch().release(1, QPoint(5, 90));
    Touch().press(2, QPoint(5, 90));
    Touch().release(2, QPoint(5, 90));
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoTouchTest, MouseEventMadeOfATouchPlaysNothing) {
    QMouseEvent made(QEvent::MouseButtonPress, QPointF(5, 90), QPointF(5, 90), QPointF(5, 90), Qt::LeftButton,
                     Qt::LeftButton, Qt::NoModifier, Qt::MouseEventSynthesizedByQt, Screen());
    QCoreApplication::sendEvent(&piano_, &made);
    EXPECT_EQ(Signals(), CSignals{});
}

}  // namespace
