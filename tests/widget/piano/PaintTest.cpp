#include <QPaintEvent>

#include "PianoFixture.h"

namespace {

class CPaintCounter : public QPiano {
public:
    int paints = 0;
    QRegion painted;

protected:
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        painted += event->region();
        QPiano::paintEvent(event);
    }
};

class PianoPaintTest : public testing::Test {
protected:
    PianoPaintTest() {
        piano_.resize(1152, 176);
        piano_.SetKeys(36, 61);
        piano_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&piano_));
        EXPECT_TRUE(QTest::qWaitFor([&] { return piano_.paints > 0; }));
        Forget();
    }
    void Forget() {
        QCoreApplication::processEvents();
        piano_.paints = 0;
        piano_.painted = QRegion();
    }
    /// What the next frame paints.
    QRegion Frame() {
        QCoreApplication::processEvents();
        return piano_.painted;
    }
    /// The picture on the screen against one drawn from nothing in the same state.
    bool ShowsWhatIsThere() {
        const QImage shown = piano_.screen()->grabWindow(piano_.winId()).toImage();
        QPiano fresh;
        fresh.resize(piano_.size());
        fresh.SetKeys(36, 61);
        for (BYTE note = 0; note < 128; ++note) {
            if (piano_.IsPressed(note)) {
                fresh.PressKey(note);
            }
        }
        const QImage expected = fresh.grab().toImage().convertToFormat(shown.format());
        return !shown.isNull() && shown == expected;
    }

    CPaintCounter piano_;
};

TEST_F(PianoPaintTest, ThousandMessagesBetweenTwoFramesCostOnePaint) {
    for (int i = 0; i < 1000; ++i) {
        const auto note = static_cast<BYTE>(36 + i * 7 % 61);
        piano_.ProcessMessage({static_cast<BYTE>(i % 3 == 0 ? 0x80 : 0x90), 1, note, 100});
    }
    Frame();
    EXPECT_EQ(piano_.paints, 1);
}

TEST_F(PianoPaintTest, WhiteKeyPaintsItsOwnRectangleOnly) {
    piano_.PressKey(62);
    const QRegion frame = Frame();
    EXPECT_EQ(frame, QRegion(piano_.keyRect(62).toRect()));
}

TEST_F(PianoPaintTest, BlackKeyPaintsItsRectangleAndItsShadow) {
    piano_.PressKey(61);
    const QRegion frame = Frame();
    const QRect key = piano_.keyRect(61).toAlignedRect();
    EXPECT_TRUE(QRegion(key).subtracted(frame).isEmpty());
    EXPECT_TRUE(frame.subtracted(key.adjusted(-4, 0, 9, 11)).isEmpty());
}

TEST_F(PianoPaintTest, BlackKeyWithoutShadowsPaintsItsOwnRectangleOnly) {
    piano_.setShadows(false);
    Forget();
    piano_.PressKey(61);
    EXPECT_TRUE(Frame().subtracted(piano_.keyRect(61).toAlignedRect()).isEmpty());
}

TEST_F(PianoPaintTest, WhatDoesNotChangeIsNotPainted) {
    piano_.PressKey(64);
    Forget();
    piano_.PressKey(64);
    piano_.ReleaseKey(65);
    piano_.PressKey(20);
    piano_.ProcessMessage({0xB0, 1, 64, 127});
    EXPECT_TRUE(Frame().isEmpty());
}

TEST_F(PianoPaintTest, ReleaseAllPaintsTheKeysThatWereDown) {
    piano_.PressKey(64);
    piano_.PressKey(77);
    Forget();
    piano_.ReleaseAll();
    const QRegion frame = Frame();
    EXPECT_TRUE(frame.subtracted(QRegion(piano_.keyRect(64).toRect()) + piano_.keyRect(77).toRect()).isEmpty());
    EXPECT_TRUE(frame.intersects(piano_.keyRect(64).toRect()) && frame.intersects(piano_.keyRect(77).toRect()));
}

TEST_F(PianoPaintTest, EndOfAPollPaintsTheReleasedKeys) {
    piano_.PressKey(64);
    piano_.PressKey(65);
    Forget();
    piano_.BeginPoll();
    piano_.PressKey(64);
    piano_.EndPoll();
    EXPECT_TRUE(Frame().subtracted(piano_.keyRect(65).toRect()).isEmpty());
    EXPECT_EQ(piano_.paints, 1);
}

TEST_F(PianoPaintTest, AssignedStatePaintsWhatDiffers) {
    NK::Piano::CKeyboardStatePoll state;
    state.PressKey(64);
    piano_.Assign(state);
    EXPECT_TRUE(piano_.IsPressed(64));
    EXPECT_TRUE(Frame().intersects(piano_.keyRect(64).toRect()));
    Forget();
    EXPECT_TRUE(piano_.AssignCompare(state, true));
    EXPECT_TRUE(Frame().isEmpty());
}

TEST_F(PianoPaintTest, CursorPaintsTheTwoKeysItMovesBetweenAndOnlyWhileItIsShown) {
    piano_.setEnableCursor(true);
    piano_.clearFocus();
    Forget();
    QTest::mouseClick(&piano_, Qt::LeftButton, Qt::NoModifier, piano_.keyRect(64).toRect().center() + QPoint(0, 60));
    EXPECT_TRUE(Frame().isEmpty());
    piano_.activateWindow();
    piano_.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return piano_.isCursorShown(); }));
    EXPECT_EQ(Frame(), QRegion(piano_.rect())) << "it comes into sight";
    Forget();
    QTest::keyClick(&piano_, Qt::Key_Right);
    EXPECT_EQ(piano_.cursorNote(), 65);
    EXPECT_EQ(Frame(), QRegion(piano_.keyRect(64).toRect()) + piano_.keyRect(65).toRect());
    Forget();
    piano_.clearFocus();
    EXPECT_EQ(Frame(), QRegion(piano_.rect())) << "it goes out of sight";
}

TEST_F(PianoPaintTest, PartialPaintsShowWhatAFullPaintShows) {
    // Neighbours, a black key between pressed and raised keys, both ends.
    for (const int note : {60, 61, 62, 66, 36, 96, 95, 70, 71}) {
        piano_.PressKey(static_cast<BYTE>(note));
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(ShowsWhatIsThere());
    for (const int note : {61, 36, 71, 60}) {
        piano_.ReleaseKey(static_cast<BYTE>(note));
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(ShowsWhatIsThere());
    piano_.ReleaseAll();
    QCoreApplication::processEvents();
    EXPECT_TRUE(ShowsWhatIsThere());
}

TEST_F(PianoPaintTest, EverySizeCanBePainted) {
    for (const QSize& size :
         {QSize(0, 0), QSize(1, 1), QSize(36, 20), QSize(61, 3), QSize(1000, 77), QSize(3000, 700)}) {
        piano_.resize(size);
        piano_.PressKey(61);
        piano_.PressKey(62);
        EXPECT_EQ(piano_.grab().isNull(), size.isEmpty());
    }
}

}  // namespace
