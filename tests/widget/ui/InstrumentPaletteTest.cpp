// That every text and mark of the dialogs can be read, by the contrast of WCAG 2.x.
#include "ui/parts/InstrumentPalette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <QMetaEnum>
#include <QPixmap>
#include <string>

#include "ui/parts/InstrumentColors.h"
#include "ui/parts/SkinColors.h"

namespace {

using namespace InstrumentColors;

constexpr double kLegible = 4.5;
constexpr double kMark = 3.0;

double Contrast(const QColor& one, const QColor& other) {
    const double a = RelativeLuminance(one) + 0.05;
    const double b = RelativeLuminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

std::string Name(QPalette::ColorRole role) {
    return QMetaEnum::fromType<QPalette::ColorRole>().valueToKey(role);
}

class InstrumentPalettes : public testing::TestWithParam<QPalette::ColorGroup> {
protected:
    static void ExpectText(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole ground) {
        const QPalette::ColorGroup group = GetParam();
        EXPECT_GE(Contrast(palette.color(group, text), palette.color(group, ground)), kLegible)
            << Name(text) << " on " << Name(ground) << " in group " << group;
    }
};

TEST_P(InstrumentPalettes, EveryTextIsLegible) {
    for (const QPalette& palette : {InstrumentPalette::Make(), InstrumentPalette::MakeForFields()}) {
        for (const QPalette::ColorRole text : {QPalette::Text, QPalette::PlaceholderText, QPalette::WindowText,
                                               QPalette::ButtonText, QPalette::Link, QPalette::LinkVisited}) {
            for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
                ExpectText(palette, text, ground);
            }
        }
        ExpectText(palette, QPalette::ButtonText, QPalette::Button);
        ExpectText(palette, QPalette::HighlightedText, QPalette::Highlight);
        ExpectText(palette, QPalette::ToolTipText, QPalette::ToolTipBase);
        ExpectText(palette, QPalette::BrightText, QPalette::Window);
    }
}

TEST_P(InstrumentPalettes, WhatIsSelectedStandsOut) {
    const QPalette palette = InstrumentPalette::Make();
    const QColor selected = palette.color(GetParam(), QPalette::Highlight);
    if (GetParam() == QPalette::Disabled) {
        return;  // nothing to choose
    }
    EXPECT_GE(Contrast(selected, palette.color(GetParam(), QPalette::Base)), kMark);
    EXPECT_GE(Contrast(selected, kMenu), kMark);
}

TEST_P(InstrumentPalettes, AreWhole) {
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
        EXPECT_TRUE(InstrumentPalette::Make().isBrushSet(GetParam(), static_cast<QPalette::ColorRole>(role)))
            << Name(static_cast<QPalette::ColorRole>(role));
    }
}

INSTANTIATE_TEST_SUITE_P(Groups, InstrumentPalettes,
                         testing::Values(QPalette::Active, QPalette::Inactive, QPalette::Disabled));

TEST(InstrumentContrast, CaptionsAreLegibleAllOverTheirKey) {
    for (const QColor& cap : {kCapTop.lighter(118), kCap.lighter(118), kCapTop, kCap, kCapBottom, kMenu}) {
        EXPECT_GE(Contrast(kCapText, cap), kLegible) << cap.name().toStdString();
    }
    EXPECT_GE(Contrast(kDimCapText, kCap), kLegible);
}

TEST(InstrumentContrast, MenusAreLegible) {
    EXPECT_GE(Contrast(kText, kMenu), kLegible);
    EXPECT_GE(Contrast(kDimText, kMenu), kLegible);
    EXPECT_GE(Contrast(kLitInk, kFigures), kLegible);
}

TEST(InstrumentContrast, MarksAreSeen) {
    for (const QColor& ground : {kBody, kGlass, kMenu}) {
        for (const QColor& mark : {kEdge, kRing, kFigures, kDimFigures, kWarning, kFailure}) {
            EXPECT_GE(Contrast(mark, ground), kMark)
                << mark.name().toStdString() << " on " << ground.name().toStdString();
        }
    }
    EXPECT_GE(Contrast(kEdge, kGlassBetween), kMark);  // the handle of a scroll bar
}

/// Of some mark's pixels with the ground around it.
double MostContrast(const QImage& mark, const QColor& ground) {
    double most = 0;
    for (int y = 0; y < mark.height(); ++y) {
        for (int x = 0; x < mark.width(); ++x) {
            if (const QColor pixel = mark.pixelColor(x, y); pixel.alpha() == 255) {
                most = std::max(most, Contrast(pixel, ground));
            }
        }
    }
    return most;
}

/// Also between the parts of the mark itself, so that its shape is seen and not only its tile.
TEST(InstrumentContrast, TheMarksOfPresetsAreSeenOnAnyGroundAndWhenSelected) {
    for (const char* name : {":/Resources/Preset_Factory.png", ":/Resources/Preset_User.png"}) {
        const QImage mark = QPixmap(name).toImage();
        ASSERT_FALSE(mark.isNull());
        for (const QColor& ground :
             {kGlass, kFigures, kDimLit, QColor(Qt::white), QColor(Qt::black), QColor(Qt::blue)}) {
            EXPECT_GE(MostContrast(mark, ground), kMark) << name << " on " << ground.name().toStdString();
        }
        const QColor tile = mark.pixelColor(2, 8);
        EXPECT_GE(MostContrast(mark, tile), kMark) << name;
    }
}

TEST(InstrumentContrast, OnlyBlackAndWhiteIsADesktopOfHighContrast) {
    QPalette desktop(QColor(0xEF, 0xEF, 0xEF));
    desktop.setColor(QPalette::Base, Qt::white);
    EXPECT_FALSE(InstrumentPalette::IsHighContrast(desktop));
    EXPECT_FALSE(InstrumentPalette::IsHighContrast(InstrumentPalette::Make()));
    for (const auto& [text, ground] :
         {std::pair{QColor(Qt::white), QColor(Qt::black)}, std::pair{QColor(Qt::black), QColor(Qt::white)}}) {
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base}) {
            desktop.setColor(role, ground);
        }
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text}) {
            desktop.setColor(role, text);
        }
        EXPECT_TRUE(InstrumentPalette::IsHighContrast(desktop));
    }
}

}  // namespace
