#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <QApplication>
#include <QMouseEvent>
#include <QtTest/QTest>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "QtWidgets/skin/QJogDial.h"

namespace {

class Jog : public testing::Test {
protected:
    Jog() {
        jog.resize(200, 200);
        QObject::connect(&jog, &QJogDial::jogLeft, [this] { emitted.emplace_back("left"); });
        QObject::connect(&jog, &QJogDial::jogRight, [this] { emitted.emplace_back("right"); });
        QObject::connect(&jog, &QJogDial::jog,
                         [this](bool forward) { emitted.emplace_back(forward ? "jog+" : "jog-"); });
        QObject::connect(&jog, &QJogDial::jogClicks,
                         [this](int count) { emitted.push_back("clicks " + std::to_string(count)); });
        QObject::connect(&jog, &QJogDial::jogTest, [this] { ++tests; });
        jog.show();
    }
    static QPointF At(double degrees) {
        const double radians = degrees * std::numbers::pi / 180.0;
        return {100.0 + 80.0 * std::cos(radians), 100.0 - 80.0 * std::sin(radians)};
    }
    void Send(QEvent::Type type, QPointF point) {
        QMouseEvent event(type, point, jog.mapToGlobal(point),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&jog, &event);
    }
    void Press(double degrees) { Send(QEvent::MouseButtonPress, At(degrees)); }
    void Move(double degrees) { Send(QEvent::MouseMove, At(degrees)); }
    void Release(double degrees) { Send(QEvent::MouseButtonRelease, At(degrees)); }
    void Wheel(int delta) {
        QWheelEvent event(QPointF(100, 100), jog.mapToGlobal(QPointF(100, 100)), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&jog, &event);
        EXPECT_TRUE(event.isAccepted());
    }
    std::vector<std::string> Take() { return std::exchange(emitted, {}); }

    QJogDial jog;
    std::vector<std::string> emitted;
    int tests = 0;
};

using Strings = std::vector<std::string>;
constexpr int kClickValue = 27777778;  // 5 of 360 degrees of 2000000000, rounded

TEST_F(Jog, FixedSettingsAreNotChangedBySetters) {
    jog.setZeroAngle(5.0);
    jog.setMaxAngle(6.0);
    jog.setVirtualSlider(true);
    EXPECT_EQ(jog.zeroAngle(), -180.0);
    EXPECT_EQ(jog.maxAngle(), 180.0);
    EXPECT_FALSE(jog.virtualSlider());
    jog.setAngles(-90.0, 90.0);
    EXPECT_EQ(jog.zeroAngle(), -90.0);
    EXPECT_EQ(jog.maxAngle(), 90.0);
    EXPECT_EQ(jog.maximum(), 2000000000);
    EXPECT_EQ(jog.value(), 0);
}

TEST_F(Jog, TurningCounterClockwiseClicksLeft) {
    jog.setValue(1000000000);
    Press(0);
    Move(6);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
    EXPECT_EQ(jog.value(), 1000000000 - kClickValue);
    EXPECT_EQ(tests, 1);
}

TEST_F(Jog, TurningClockwiseClicksRight) {
    jog.setValue(1000000000);
    Press(0);
    Move(-11);
    EXPECT_EQ(Take(), (Strings{"right", "jog+", "right", "jog+", "clicks 2"}));
    EXPECT_EQ(jog.value(), 1000000000 + 55555556);
}

TEST_F(Jog, SmallMotionsAccumulate) {
    Press(0);
    Move(2);
    Move(4);
    EXPECT_EQ(Take(), Strings{});
    Move(5.5);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
    Move(9);
    EXPECT_EQ(Take(), Strings{});
    Move(10.5);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
}

TEST_F(Jog, TheSeamIsCrossedBothWays) {
    Press(178);
    Move(-176);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
    Move(177);
    EXPECT_EQ(Take(), (Strings{"right", "jog+", "clicks 1"}));
}

TEST_F(Jog, AFullTurnWrapsAroundToWhereItBegan) {
    jog.setValue(1500000000);
    Press(0);
    for (int step = 1; step <= 72; ++step) {
        Move(-5.0 * step - 0.1);
    }
    EXPECT_NEAR(jog.value(), 1500000000, 72);
    EXPECT_EQ(std::count(emitted.begin(), emitted.end(), "right"), 72);
}

TEST_F(Jog, MovesWithoutThePressAreIgnored) {
    Move(30);
    Press(0);
    Release(0);
    Move(40);
    EXPECT_EQ(Take(), Strings{});
}

TEST_F(Jog, AWheelNotchUpIsOneClickLeft) {
    jog.setValue(1000000000);
    Wheel(120);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
    EXPECT_EQ(jog.value(), 1000000000 - kClickValue);
    Wheel(-240);
    EXPECT_EQ(Take(), (Strings{"right", "jog+", "right", "jog+", "clicks 2"}));
}

TEST_F(Jog, HalfANotchEmitsNoClickAndASecondHalfCompletesIt) {
    Wheel(60);
    EXPECT_EQ(Take(), (Strings{"clicks 0"}));
    Wheel(60);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
}

TEST_F(Jog, AMoveAndAShowClearTheWheelsRest) {
    Wheel(60);
    Move(10);
    Wheel(60);
    EXPECT_EQ(Take(), (Strings{"clicks 0", "clicks 0"}));
    jog.hide();
    jog.show();
    Wheel(60);
    EXPECT_EQ(Take(), (Strings{"clicks 0"}));
}

TEST_F(Jog, TheValueWrapsBelowZero) {
    Wheel(120);
    EXPECT_EQ(jog.value(), 2000000000 - kClickValue);
}

TEST_F(Jog, AnEmptyRangeClicksAndStays) {
    for (const int only : {0, 7}) {
        jog.setRange(only, only);
        Wheel(-120);
        EXPECT_EQ(Take(), (Strings{"right", "jog+", "clicks 1"}));
        EXPECT_EQ(jog.value(), only);
    }
}

TEST_F(Jog, OnlyTheLeftButtonTurns) {
    QTest::mousePress(&jog, Qt::RightButton, {}, QPoint(180, 100));
    Move(30);
    EXPECT_EQ(Take(), Strings{});
}

TEST_F(Jog, ArrowKeysClick) {
    QTest::keyClick(&jog, Qt::Key_Up);
    EXPECT_EQ(Take(), (Strings{"right", "jog+", "clicks 1"}));
    QTest::keyClick(&jog, Qt::Key_Left);
    EXPECT_EQ(Take(), (Strings{"left", "jog-", "clicks -1"}));
}

TEST_F(Jog, AClickAngleNotAboveZeroIsIgnored) {
    jog.setClickAngle(0.0);
    jog.setClickAngle(std::nan(""));
    EXPECT_EQ(jog.clickAngle(), 5.0);
    jog.setClickAngle(10.0);
    EXPECT_EQ(jog.property("clickAngle").toReal(), 10.0);
}

}  // namespace
