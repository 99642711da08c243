// How hard a key of a MIDI keyboard sounds.
#include "engine/values/VelocityCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/EngineExtras.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::VelocityCurve;
using Kivora::VelocityMap;
using testing::ElementsAre;

namespace {

using Shape = VelocityCurve::Shape;

int Apply(const VelocityCurve& curve, int velocity) {
    return curve.Apply(static_cast<std::uint8_t>(velocity));
}

class VelocityInput : public testing::Test {
protected:
    VelocityInput() {
        rig.CreateOpen();
        rig.engine->SetInputPortByName(kKeyboard);
    }
    void Set(const VelocityCurve& curve) {
        rig.engine->WithExtras([&curve](auto& extras) { extras.velocity.SetCurve(curve); });
    }

    EngineRig rig;
};

}  // namespace

TEST(VelocityCurve, TheDefaultIsEachVelocityItself) {
    for (int velocity = 0; velocity < 128; ++velocity) {
        EXPECT_EQ(Apply({}, velocity), velocity);
    }
}

TEST(VelocityCurve, EveryShapeKeepsZeroRisesAndStaysInRange) {
    for (const Shape shape : {Shape::kLinear, Shape::kSoft, Shape::kHard, Shape::kFixed, Shape::kDrawn}) {
        const VelocityCurve curve{.shape = shape, .least = 20, .greatest = 110};
        EXPECT_EQ(Apply(curve, 0), 0);
        for (int velocity = 1; velocity < 128; ++velocity) {
            EXPECT_GE(Apply(curve, velocity), 20);
            EXPECT_LE(Apply(curve, velocity), 110);
            EXPECT_TRUE(velocity == 1 || Apply(curve, velocity) >= Apply(curve, velocity - 1));
        }
    }
}

TEST(VelocityCurve, SoftIsLouderAndHardSofterInTheMiddle) {
    EXPECT_EQ(Apply({.shape = Shape::kSoft}, 64), 84);
    EXPECT_EQ(Apply({.shape = Shape::kHard}, 64), 40);
    EXPECT_EQ(Apply({.shape = Shape::kSoft}, 1), 1);
    EXPECT_EQ(Apply({.shape = Shape::kHard}, 127), 127);
    EXPECT_EQ(Apply({.shape = Shape::kFixed, .fixed = 90}, 3), 90);
}

TEST(VelocityCurve, TheDrawnOneGoesThroughItsPoints) {
    const VelocityCurve curve{.shape = Shape::kDrawn, .firstY = 30, .middleX = 50, .middleY = 100, .lastY = 60};
    EXPECT_EQ(Apply(curve, 1), 30);
    EXPECT_EQ(Apply(curve, 50), 100);
    EXPECT_EQ(Apply(curve, 127), 60);
    EXPECT_EQ(Apply(curve, 25), 64);
}

TEST(VelocityCurve, WhatIsOutOfRangeIsBroughtIntoIt) {
    const VelocityCurve wild{.shape = static_cast<Shape>(9),
                             .fixed = 0,
                             .least = 100,
                             .greatest = 50,
                             .firstY = -5,
                             .middleX = 0,
                             .middleY = 400,
                             .lastY = 128};
    EXPECT_EQ(wild.Kept(),
              (VelocityCurve{
                  .fixed = 1, .least = 100, .greatest = 100, .firstY = 1, .middleX = 2, .middleY = 127, .lastY = 127}));
}

TEST(VelocityMap, RemembersTheLastTouches) {
    VelocityMap map;
    map.SetCurve({.shape = Shape::kFixed, .fixed = 70});
    EXPECT_EQ(map.Play(0), 0);
    EXPECT_EQ(map.GetTouchCount(), 0U);
    for (int i = 1; i <= 20; ++i) {
        EXPECT_EQ(map.Play(static_cast<std::uint8_t>(i)), 70);
    }
    EXPECT_EQ(map.GetTouchCount(), 20U);
    EXPECT_EQ(map.GetTouches()[3].in, 20);
    EXPECT_EQ(map.GetTouches()[4].in, 5);
    EXPECT_EQ(map.GetTouches()[4].out, 70);
}

TEST_F(VelocityInput, MapsNotesOfTheKeyboardAndNeitherReleasesNorPressureNorOtherKeys) {
    Set({.shape = Shape::kFixed, .fixed = 90});
    SignalLog log(*rig.engine);
    rig.GetKeyboard().Deliver(0x93, 60, 10);
    rig.GetKeyboard().Deliver(0xA3, 60, 11);
    rig.GetKeyboard().Deliver(0x83, 60, 12);
    rig.GetKeyboard().Deliver(0x93, 61, 0);
    rig.engine->PlayNoteOn(62, 13);
    EXPECT_THAT(log.TakeMessages(), ElementsAre("90 3c 5a", "a0 3c 0b", "80 3c 0c", "80 3d 00", "90 3e 0d"));
}

TEST_F(VelocityInput, IsKeptInTheSettingsWhereItIsNotTheDefault) {
    const auto path = rig.folder / "user" / "Kivora.ini";
    ASSERT_TRUE(rig.engine->SaveSettings());
    EXPECT_EQ(ReadFileBytes(path).find("Velocity curve"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_VelocityCurve"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_Screen"), std::string::npos);
    const VelocityCurve wanted{.shape = Shape::kDrawn,
                               .fixed = 1,
                               .least = 2,
                               .greatest = 120,
                               .firstY = 3,
                               .middleX = 4,
                               .middleY = 5,
                               .lastY = 6};
    Set(wanted);
    rig.engine->WithExtras([](auto& extras) { extras.heightIsVelocity = false; });
    ASSERT_TRUE(rig.engine->SaveSettings());
    Set({});
    rig.engine->WithExtras([](auto& extras) { extras.heightIsVelocity = true; });
    ASSERT_TRUE(rig.engine->LoadSettings());
    rig.engine->WithExtras([&wanted](auto& extras) {
        EXPECT_EQ(extras.velocity.GetCurve(), wanted);
        EXPECT_FALSE(extras.heightIsVelocity);
    });
}
