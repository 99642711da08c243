#include "QtWidgets/piano/KeyColors.h"

#include <gtest/gtest.h>

namespace {
using KeyColors::Blend;
using KeyColors::Tint;

std::string Hex(const QColor& color) {
    return color.name().toUpper().toStdString();
}

TEST(KeyColors, BlendScalesTheSaturationThenMovesTowardsTheSecondColour) {
    EXPECT_EQ(Hex(Blend(QColor(255, 112, 0), 0.0, 1.0, Qt::white)), "#FF7000");
    EXPECT_EQ(Hex(Blend(QColor(255, 112, 0), 1.0, 1.0, QColor(1, 2, 3))), "#010203");
    EXPECT_EQ(Hex(Blend(QColor(255, 0, 0), 0.0, 0.8, Qt::white)), "#FF3333");
    EXPECT_EQ(Hex(Blend(QColor(200, 100, 0), 0.0, 0.0, Qt::white)), "#C8C8C8") << "the value is kept";
}

TEST(KeyColors, BlendKeepsHueAndValue) {
    const QColor color(106, 37, 53);
    const QColor blended = Blend(color, 0.0, 0.5, Qt::black);
    EXPECT_NEAR(blended.hsvHueF(), color.hsvHueF(), 0.02);
    EXPECT_NEAR(blended.valueF(), color.valueF(), 0.01);
    EXPECT_NEAR(blended.hsvSaturationF(), color.hsvSaturationF() / 2, 0.02);
}

TEST(KeyColors, MainPartTakesMoreOfTheSchemeThanTheBassPart) {
    const NK::Piano::TKeyColor red{255, 0, 0, 0};
    EXPECT_EQ(Hex(Tint(red, false, false)), "#FD6E6C");
    // 0.5 x (255, 153, 153) + 0.5 x (247, 246, 241)
    EXPECT_EQ(Hex(Tint(red, false, true)), "#FBC8C5");
}

TEST(KeyColors, TintsOfTheSchemes) {
    const NK::Piano::CPianoColors& rainbow = NK::Piano::GetRainbowColors();
    EXPECT_EQ(Hex(Tint(*rainbow.GetNoteColor(62), false, false)), "#FDAC6C");
    EXPECT_EQ(Hex(Tint(*rainbow.GetNoteColor(71), false, false)), "#BE6EFB");
    const NK::Piano::CPianoColors& scriabin = NK::Piano::GetScriabinColors();
    EXPECT_EQ(Hex(Tint(*scriabin.GetNoteColor(65), false, false)), "#B9606E");
    EXPECT_EQ(Hex(Tint(*scriabin.GetNoteColor(66), true, false)), "#568BC2");
}

TEST(KeyColors, PureBlackLeavesTheFixedBase) {
    const NK::Piano::TKeyColor black{0, 0, 0, 0};
    EXPECT_EQ(Hex(Tint(black, true, false)), "#303134");
    EXPECT_EQ(Hex(Tint(black, false, true)), "#F7F6F1");
}

TEST(KeyColors, ShineIsDarkerOnALightKeyAndLighterOnADarkOne) {
    const QColor light(0x2F, 0xB5, 0x6E);
    for (const QColor& idle :
         {QColor(0xF7, 0xF6, 0xF1), QColor(0x30, 0x31, 0x34), QColor(255, 255, 0), QColor(0, 0, 200)}) {
        const double before = KeyColors::RelativeLuminance(idle);
        const double after = KeyColors::RelativeLuminance(KeyColors::Shine(idle, light));
        EXPECT_EQ(after<before, before> 0.2) << before;
        EXPECT_GE((std::max(before, after) + 0.05) / (std::min(before, after) + 0.05), 2.5) << before;
    }
    EXPECT_EQ(KeyColors::Shine(QColor(0x30, 0x31, 0x34), light), light) << "as it is where that is enough";
}

}  // namespace
