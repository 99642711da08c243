#include "ui/parts/SkinColors.h"

#include <gtest/gtest.h>

namespace {

TEST(SkinColors, TheDefaultsPassUnchanged) {
    EXPECT_EQ(CapColor(QColor(110, 112, 93)), QColor(110, 112, 93));
    EXPECT_EQ(LiftColor(QColor(83, 149, 255)), QColor(83, 149, 255));
    EXPECT_EQ(LiftColor(QColor(83, 255, 149)), QColor(83, 255, 149));
}

TEST(SkinColors, ABrightBodyIsDarkenedToLuma140) {
    EXPECT_EQ(CapColor(Qt::white), QColor(140, 140, 140));
    const QColor yellow = CapColor(Qt::yellow);  // luma 236.6
    EXPECT_EQ(yellow, QColor(151, 151, 0));
}

TEST(SkinColors, ADarkDisplayIsLiftedUntilItIsLegible) {
    for (const QColor& color : {QColor(Qt::black), QColor(0, 0, 128), QColor(128, 0, 0)}) {
        EXPECT_GE(RelativeLuminance(LiftColor(color)), 0.26);
    }
}

TEST(SkinColors, TheLiftStopsAtTheFirstStepThatSuffices) {
    // Grey 139 has luminance 0.258, 143 (step 36) has 0.275.
    EXPECT_EQ(LiftColor(Qt::black), QColor(143, 143, 143));
}

TEST(SkinColors, LuminanceIsThatOfTheStandard) {
    EXPECT_DOUBLE_EQ(RelativeLuminance(Qt::black), 0.0);
    EXPECT_DOUBLE_EQ(RelativeLuminance(Qt::white), 1.0);
    EXPECT_NEAR(RelativeLuminance(Qt::red), 0.2126, 1e-4);
}

}  // namespace
