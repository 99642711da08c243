#include "PianoFixture.h"

namespace {

class PianoCursorTest : public PianoTest {
protected:
    PianoCursorTest() { ShowWithCursor(); }
    void MoveTo(BYTE note) {
        Type(Qt::Key_Home);
        for (int i = 60; i < note; ++i) {
            Type(Qt::Key_Right);
        }
        ASSERT_EQ(piano_.cursorNote(), note);
        Signals();
    }
};

TEST_F(PianoCursorTest, SpacePlaysTheCursorNoteAt100EvenOutsideStandaloneMode) {
    MoveTo(64);
    EXPECT_TRUE(SendKey(QEvent::KeyPress, Qt::Key_Space));
    EXPECT_EQ(Signals(), (CSignals{"pressed 64", "pressed 64 100"}));
    EXPECT_TRUE(piano_.IsPressed(64));
    EXPECT_TRUE(SendKey(QEvent::KeyRelease, Qt::Key_Space));
    EXPECT_EQ(Signals(), CSignals{"released 64"});
    EXPECT_FALSE(piano_.IsPressed(64));
}

TEST_F(PianoCursorTest, SpaceReleasesTheNoteThatItPressed) {
    MoveTo(64);
    SendKey(QEvent::KeyPress, Qt::Key_Space);
    Type(Qt::Key_Right);
    EXPECT_EQ(piano_.cursorNote(), 65);
    Signals();
    SendKey(QEvent::KeyRelease, Qt::Key_Space);
    EXPECT_EQ(Signals(), CSignals{"released 64"});
}

TEST_F(PianoCursorTest, CursorMovesWhenTheKeyIsReleased) {
    MoveTo(64);
    EXPECT_TRUE(SendKey(QEvent::KeyPress, Qt::Key_Right)) << "the press is accepted too";
    EXPECT_EQ(Signals(), CSignals{});
    EXPECT_TRUE(SendKey(QEvent::KeyRelease, Qt::Key_Right));
    EXPECT_EQ(Signals(), CSignals{"cursor 65"});
}

TEST_F(PianoCursorTest, HomeEndAndSteps) {
    MoveTo(64);
    Type(Qt::Key_End);
    EXPECT_EQ(piano_.cursorNote(), 71);
    Type(Qt::Key_Home);
    EXPECT_EQ(piano_.cursorNote(), 60);
    Type(Qt::Key_Down);
    EXPECT_EQ(piano_.cursorNote(), 61);
    Type(Qt::Key_Up);
    EXPECT_EQ(piano_.cursorNote(), 60);
}

TEST_F(PianoCursorTest, StepsWrapAtBothEnds) {
    Type(Qt::Key_End);
    Signals();
    Type(Qt::Key_Right);
    EXPECT_EQ(Signals(), CSignals{"cursor 60"});
    Type(Qt::Key_Left);
    EXPECT_EQ(Signals(), CSignals{"cursor 71"});
}

TEST_F(PianoCursorTest, PageKeysMoveByAnOctaveOrNotAtAll) {
    piano_.SetKeys(48, 36);
    Type(Qt::Key_Home);
    Type(Qt::Key_PageDown);
    EXPECT_EQ(piano_.cursorNote(), 60);
    Type(Qt::Key_PageUp);
    Type(Qt::Key_PageUp);
    EXPECT_EQ(piano_.cursorNote(), 48);
    Type(Qt::Key_End);
    Signals();
    Type(Qt::Key_PageDown);
    EXPECT_EQ(Signals(), CSignals{}) << "near the top it does nothing";
    EXPECT_EQ(piano_.cursorNote(), 83);
}

TEST_F(PianoCursorTest, CursorOutsideTheRangeStepsIntoIt) {
    MoveTo(64);
    piano_.setKeyRange(72, 12);
    ASSERT_EQ(piano_.cursorNote(), 64);
    Type(Qt::Key_Right);
    EXPECT_EQ(piano_.cursorNote(), 72) << "65 is not in the range either";
    piano_.setKeyRange(48, 12);
    Type(Qt::Key_Left);
    EXPECT_EQ(piano_.cursorNote(), 59);
    piano_.setKeyRange(84, 12);
    Signals();
    Type(Qt::Key_PageDown);
    Type(Qt::Key_PageUp);
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoCursorTest, OtherKeysArePassedOn) {
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_Z));
    EXPECT_FALSE(SendKey(QEvent::KeyRelease, Qt::Key_Escape));
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoCursorTest, WithoutTheCursorAllKeysArePassedOn) {
    piano_.setEnableCursor(false);
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_Space));
    EXPECT_FALSE(SendKey(QEvent::KeyRelease, Qt::Key_Right));
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoCursorTest, WithoutTheFocusAllKeysArePassedOn) {
    piano_.clearFocus();
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_Space));
    EXPECT_FALSE(piano_.isCursorShown());
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoCursorTest, FlaggedRepeatsAreIgnoredAndAccepted) {
    MoveTo(64);
    SendKey(QEvent::KeyPress, Qt::Key_Space);
    Signals();
    EXPECT_TRUE(SendKey(QEvent::KeyRelease, Qt::Key_Space, true));
    EXPECT_TRUE(SendKey(QEvent::KeyPress, Qt::Key_Space, true));
    EXPECT_TRUE(SendKey(QEvent::KeyRelease, Qt::Key_Right, true));
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoCursorTest, UnflaggedRepeatsOfSpacePlayOnce) {
    constexpr quint32 kScanSpace = 65;
    MoveTo(64);
    SendKey(QEvent::KeyPress, Qt::Key_Space, false, kScanSpace, 1000);
    for (quint64 time = 1500; time < 2500; time += 40) {
        SendKey(QEvent::KeyRelease, Qt::Key_Space, false, kScanSpace, time);
        SendKey(QEvent::KeyPress, Qt::Key_Space, false, kScanSpace, time);
    }
    EXPECT_EQ(Signals(), (CSignals{"pressed 64", "pressed 64 100"}));
    SendKey(QEvent::KeyRelease, Qt::Key_Space, false, kScanSpace, 3000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !piano_.IsPressed(64); }, 20000));
    EXPECT_EQ(Signals(), CSignals{"released 64"});
}

TEST_F(PianoCursorTest, LosingTheFocusReleasesWhatSpaceHolds) {
    MoveTo(64);
    SendKey(QEvent::KeyPress, Qt::Key_Space);
    Signals();
    piano_.clearFocus();
    EXPECT_EQ(Signals(), CSignals{"released 64"});
    EXPECT_FALSE(piano_.IsPressed(64));
}

TEST_F(PianoCursorTest, DisablingTheCursorReleasesWhatSpaceHolds) {
    MoveTo(64);
    SendKey(QEvent::KeyPress, Qt::Key_Space);
    Signals();
    piano_.setEnableCursor(false);
    EXPECT_EQ(Signals(), CSignals{"released 64"});
}

TEST_F(PianoTest, WithoutACursorNoteTheKeysDoNothing) {
    QPiano fresh;
    fresh.setEnableCursor(true);
    fresh.show();
    fresh.activateWindow();
    fresh.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&fresh));
    QTest::keyClick(&fresh, Qt::Key_Right);
    QTest::keyClick(&fresh, Qt::Key_Space);
    EXPECT_EQ(fresh.cursorNote(), QPiano::kNoKey);
}

TEST_F(PianoTest, EnablingTheCursorMakesTheTabKeyReachThePiano) {
    EXPECT_EQ(piano_.focusPolicy(), Qt::NoFocus);
    piano_.setEnableCursor(true);
    EXPECT_EQ(piano_.focusPolicy(), Qt::TabFocus);
    QPiano other;
    other.setFocusPolicy(Qt::StrongFocus);
    other.setEnableCursor(true);
    EXPECT_EQ(other.focusPolicy(), Qt::StrongFocus);
}

}  // namespace
