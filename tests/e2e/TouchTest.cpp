// The panel under fingers, on a Wayland compositor that has a touch screen.
#include <gtest/gtest.h>

#include <QPointF>
#include <set>
#include <string>

#include "e2e/InstrumentProcess.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

/// The parameter is the toolkit's scale.
class TouchOnWayland : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!InstrumentProcess::HasWaylandPlugin()) {
            GTEST_SKIP() << "needs Qt's platform plugin for Wayland";
        }
        instrument.UseTouchScreen();
        ASSERT_TRUE(instrument.Start({"--locale", "en_US"}, {QString("QT_SCALE_FACTOR=") + GetParam()}));
    }
    void TearDown() override {
        if (instrument.IsRunning()) {
            EXPECT_EQ(instrument.Terminate(), 0);
        }
    }
    /// The number of keys that sound becomes this.
    bool Sound(std::size_t count) {
        return WaitUntil([&] { return SoundingAfter(instrument.GetMessages()).size() == count; });
    }
    void Put(const char* deed, int finger, QPointF place) {
        const QSize window = instrument.GetWindowSize();
        instrument.Touch(QString("%1 %2 %3 %4")
                             .arg(deed)
                             .arg(finger)
                             .arg(place.x() * window.width())
                             .arg(place.y() * window.height()));
    }

    InstrumentProcess instrument;
};

// On white keys near the front edge of the piano, as parts of the window.
constexpr QPointF kLeft(0.25, 0.95);
constexpr QPointF kMiddle(0.5, 0.95);
constexpr QPointF kRight(0.75, 0.95);

TEST_P(TouchOnWayland, EachFingerHoldsAKey) {
    Put("down", 0, kLeft);
    ASSERT_TRUE(Sound(1));
    const std::set<std::string> lowest = SoundingAfter(instrument.GetMessages());
    Put("down", 1, kMiddle);
    ASSERT_TRUE(Sound(2));
    Put("down", 2, kRight);
    ASSERT_TRUE(Sound(3));
    Put("up", 2, kRight);
    Put("up", 1, kMiddle);
    ASSERT_TRUE(Sound(1));
    EXPECT_EQ(SoundingAfter(instrument.GetMessages()), lowest);
    Put("up", 0, kLeft);
    EXPECT_TRUE(Sound(0));
}

TEST_P(TouchOnWayland, AFingerThatSlidesPlaysTheKeyBelowIt) {
    Put("down", 0, kLeft);
    ASSERT_TRUE(Sound(1));
    const std::set<std::string> first = SoundingAfter(instrument.GetMessages());
    Put("move", 0, kRight);
    EXPECT_TRUE(WaitUntil([&] {
        const std::set<std::string> now = SoundingAfter(instrument.GetMessages());
        return now.size() == 1 && now != first;
    }));
    Put("up", 0, kRight);
    EXPECT_TRUE(Sound(0));
}

TEST_P(TouchOnWayland, WhatFingersHoldEndsWithTheProgram) {
    Put("down", 0, kLeft);
    Put("down", 1, kRight);
    ASSERT_TRUE(Sound(2));
    EXPECT_EQ(instrument.Terminate(), 0);
    EXPECT_TRUE(Sound(0));
}

INSTANTIATE_TEST_SUITE_P(Scales, TouchOnWayland, testing::Values("1", "1.25", "1.5"));

}  // namespace
