#include <gtest/gtest.h>

#include <QtTest/QTest>

#include "QtWidgets/skin/QBlinkingLed.h"
#include "widget/skin/Images.h"

namespace {

class Led : public testing::Test {
protected:
    Led() {
        led.resize(9, 9);
        led.setImage(&image);
        led.show();
    }
    QPixmap image = FramesPixmap({Qt::black, Qt::green}, 9, 9, Qt::Vertical);
    QBlinkingLed led;
};

TEST_F(Led, IsDarkUntilItBlinks) {
    EXPECT_EQ(led.blinkTime(), 50);
    EXPECT_EQ(CentreColor(led), QColor(Qt::black));
    led.blink();
    EXPECT_EQ(CentreColor(led), QColor(Qt::green));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !led.isLit(); }));
    EXPECT_EQ(CentreColor(led), QColor(Qt::black));
}

TEST_F(Led, TwoBlinksWithinTheBlinkTimeAreOneFlashThatEndsAfterTheSecond) {
    int ends = 0;
    struct CountingLed : QBlinkingLed {
        int* ends = nullptr;
        void timer() override {
            ++*ends;
            QBlinkingLed::timer();
        }
    } counting;
    counting.ends = &ends;
    counting.blink();
    counting.blink();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !counting.isLit(); }));
    EXPECT_EQ(ends, 1);
}

TEST_F(Led, ABlinkWhileLitStartsTheBlinkTimeAnew) {
    led.setBlinkTime(60000);
    led.blink();
    led.setBlinkTime(5);
    led.blink();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !led.isLit(); }, 30000));

    QBlinkingLed later;
    led.blink();
    led.setBlinkTime(60000);
    led.blink();
    later.blink();  // 50 ms
    EXPECT_TRUE(QTest::qWaitFor([&] { return !later.isLit(); }, 30000));
    EXPECT_TRUE(led.isLit()) << "the first blink's 5 ms are over";
}

TEST_F(Led, TheEndOfAFlashStopsItsTimer) {
    led.setProperty("blinkTime", 60000);
    led.blink();
    led.timer();
    EXPECT_FALSE(led.isLit());
}

TEST_F(Led, WithoutAnImageNothingIsDrawn) {
    led.setImage(nullptr);
    const QColor bare = CentreColor(led);
    led.blink();
    EXPECT_EQ(CentreColor(led), bare);
}

}  // namespace
