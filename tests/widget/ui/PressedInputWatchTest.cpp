// What is asked of the window system while something is down, and when the answer counts.
#include "ui/PressedInputWatch.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QtTest/QTest>
#include <QWidget>

namespace {

class Watch : public testing::Test {
protected:
    Watch() {
        QObject::connect(&watch, &PressedInputWatch::pressed,
                         [this](const NK::TPressedInput& down) { told.push_back(down); });
    }
    void PressKey() {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Z, Qt::NoModifier, 52, 0, 0);
        QApplication::sendEvent(&widget, &press);
    }
    void PressMouse(Qt::MouseEventSource source) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(), QPointF(), QPointF(), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier, source);
        QApplication::sendEvent(&widget, &press);
    }
    static bool Wait(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 30000); }
    static NK::TPressedInput ZDown() {
        NK::TPressedInput down;
        down.keys.set(52);
        return down;
    }

    int asked = 0;
    std::optional<NK::TPressedInput> answer;
    std::vector<NK::TPressedInput> told;
    PressedInputWatch watch{{[this] { ++asked; }, [this] { return std::exchange(answer, std::nullopt); }}};
    QWidget widget;
};

TEST_F(Watch, AsksFromAPressUntilNothingIsDown) {
    EXPECT_FALSE(watch.isWatching());
    watch.askNow();
    EXPECT_EQ(asked, 0) << "at rest nothing is asked";
    PressKey();
    for (int round = 1; round <= 3; ++round) {
        ASSERT_TRUE(Wait([&] { return asked == round; }));
        answer = ZDown();
        ASSERT_TRUE(Wait([&] { return told.size() == static_cast<std::size_t>(round); }));
        EXPECT_TRUE(told.back().IsKeyDown(52));
        EXPECT_FALSE(told.back().IsKeyDown(53));
    }
    ASSERT_TRUE(Wait([&] { return asked == 4; }));
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return !watch.isWatching(); }));
    EXPECT_EQ(told.size(), 4U);
    EXPECT_FALSE(told.back().IsAnythingDown());
}

TEST_F(Watch, WhatWasPressedSinceItWasAskedCountsAsDown) {
    PressKey();
    ASSERT_TRUE(Wait([&] { return asked == 1; }));
    PressKey();
    PressMouse(Qt::MouseEventNotSynthesized);
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return told.size() == 1; }));
    EXPECT_TRUE(told.back().IsKeyDown(52));
    EXPECT_TRUE(told.back().IsButtonDown(NK::TPressedInput::kLeftButton));
    EXPECT_FALSE(told.back().IsKeyDown(53)) << "a key that is struck all the time keeps the others from ending";
    ASSERT_TRUE(Wait([&] { return asked == 2; }));
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return told.size() == 2; }));
    EXPECT_FALSE(told.back().IsAnythingDown());
}

TEST_F(Watch, RepeatsOfAHeldKeyKeepNoAnswerFromCounting) {
    PressKey();
    ASSERT_TRUE(Wait([&] { return asked == 1; }));
    // As the system repeats a held key: mostly without its flag. A widget would be sent more.
    QObject window;
    for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent repeat(type, Qt::Key_Z, Qt::NoModifier, 52, 0, 0);
        repeat.setTimestamp(500);
        QApplication::sendEvent(&window, &repeat);
    }
    QKeyEvent flagged(QEvent::KeyPress, Qt::Key_Z, Qt::NoModifier, 52, 0, 0, {}, true);
    QApplication::sendEvent(&window, &flagged);
    answer = ZDown();
    ASSERT_TRUE(Wait([&] { return told.size() == 1; }));
    EXPECT_EQ(asked, 1);
}

TEST_F(Watch, AsksAtOnceWhenTheFocusComesBack) {
    PressKey();
    watch.askNow();
    EXPECT_EQ(asked, 1);
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return told.size() == 1; }));
}

TEST_F(Watch, AButtonThatAFingerStandsForIsNotTheServers) {
    PressMouse(Qt::MouseEventSynthesizedByQt);
    watch.askNow();
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return told.size() == 1; }));
    EXPECT_TRUE(told.back().IsButtonDown(NK::TPressedInput::kLeftButton));
    EXPECT_FALSE(watch.isWatching());
    PressMouse(Qt::MouseEventNotSynthesized);
    watch.askNow();
    answer = NK::TPressedInput();
    ASSERT_TRUE(Wait([&] { return told.size() == 2; }));
    EXPECT_FALSE(told.back().IsButtonDown(NK::TPressedInput::kLeftButton));
}

}  // namespace
