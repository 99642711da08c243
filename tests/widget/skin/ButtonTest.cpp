#include <gtest/gtest.h>

#include <array>
#include <QtTest/QTest>

#include "QtWidgets/skin/QPixmapButton.h"
#include "widget/skin/Images.h"

namespace {

constexpr int kWidth = 20;
constexpr int kHeight = 10;
const std::vector<QColor> kColors = {Qt::red, Qt::green, Qt::blue, Qt::yellow};

/// Index of the colour painted in each of the states normal, on, disabled, disabled and on.
std::array<int, 4> PaintedInEachState(QPixmapButton& button) {
    button.setCheckable(true);
    std::array<int, 4> painted{};
    for (std::size_t state = 0; state < painted.size(); ++state) {
        button.setEnabled(state < 2);
        button.setChecked(state % 2 == 1);
        const QColor color = CentreColor(button);
        const auto found = std::find(kColors.begin(), kColors.end(), color);
        painted[state] = found == kColors.end() ? -1 : static_cast<int>(found - kColors.begin());
    }
    return painted;
}

class Sprites : public testing::TestWithParam<Qt::Orientation> {
protected:
    std::array<int, 4> PaintedWith(int frames) {
        std::vector<QColor> colors(kColors.begin(), kColors.begin() + std::max(frames, 1));
        QPixmap sprite = FramesPixmap(colors, kWidth, kHeight, GetParam());
        QPixmapButton button;
        button.setSprite(&sprite, QRect(), GetParam(), frames);
        EXPECT_EQ(button.size(), QSize(kWidth, kHeight));
        return PaintedInEachState(button);
    }
};

TEST_P(Sprites, OneFrameServesAllStates) {
    EXPECT_EQ(PaintedWith(1), (std::array{0, 0, 0, 0}));
}
TEST_P(Sprites, NoFrameCountsAsOne) {
    EXPECT_EQ(PaintedWith(0), (std::array{0, 0, 0, 0}));
}
TEST_P(Sprites, OfTwoFramesTheDisabledStatesUseTheSameTwo) {
    EXPECT_EQ(PaintedWith(2), (std::array{0, 1, 0, 1}));
}
TEST_P(Sprites, OfThreeFramesTheThirdIsForBothDisabledStates) {
    EXPECT_EQ(PaintedWith(3), (std::array{0, 1, 2, 2}));
}
TEST_P(Sprites, FourFramesAreTheFourStates) {
    EXPECT_EQ(PaintedWith(4), (std::array{0, 1, 2, 3}));
}
INSTANTIATE_TEST_SUITE_P(BothWays, Sprites, testing::Values(Qt::Horizontal, Qt::Vertical));

TEST(PixmapButton, ASpritesAreaIsTakenFromTheImage) {
    QPixmap sprite = FramesPixmap({Qt::black, Qt::red, Qt::green}, kWidth, kHeight, Qt::Horizontal);
    QPixmapButton button;
    button.setSprite(&sprite, QRect(kWidth, 0, 2 * kWidth, kHeight), Qt::Horizontal, 2);
    EXPECT_EQ(PaintedInEachState(button), (std::array{0, 1, 0, 1}));
}

TEST(PixmapButton, ANullSpriteDoesNothing) {
    QPixmapButton button;
    button.resize(7, 7);
    button.setSprite(nullptr, QRect(), Qt::Horizontal, 4);
    EXPECT_EQ(button.size(), QSize(7, 7));
}

class SeparateImages : public testing::Test {
protected:
    std::array<int, 4> PaintedWith(int images) {
        std::array<QPixmap*, 4> given{};
        for (int i = 0; i < images; ++i) {
            pixmaps[static_cast<std::size_t>(i)] = PlainPixmap(kWidth, kHeight, kColors[static_cast<std::size_t>(i)]);
            given[static_cast<std::size_t>(i)] = &pixmaps[static_cast<std::size_t>(i)];
        }
        QPixmapButton button;
        button.resize(kWidth, kHeight);
        button.setImages(given[0], given[1], given[2], given[3]);
        return PaintedInEachState(button);
    }
    std::array<QPixmap, 4> pixmaps;
};

TEST_F(SeparateImages, OneServesAllStates) {
    EXPECT_EQ(PaintedWith(1), (std::array{0, 0, 0, 0}));
}
TEST_F(SeparateImages, ExactlyTwoShowZeroWhenDisabledAndOffAndOneWhenDisabledAndOn) {
    EXPECT_EQ(PaintedWith(2), (std::array{0, 1, 0, 1}));
}
TEST_F(SeparateImages, OfThreeTheThirdIsForBothDisabledStates) {
    EXPECT_EQ(PaintedWith(3), (std::array{0, 1, 2, 2}));
}
TEST_F(SeparateImages, FourAreTheFourStates) {
    EXPECT_EQ(PaintedWith(4), (std::array{0, 1, 2, 3}));
}

TEST(PixmapButton, AButtonThatIsNotCheckableIsOnWhileDown) {
    QPixmap normal = PlainPixmap(kWidth, kHeight, Qt::red);
    QPixmap on = PlainPixmap(kWidth, kHeight, Qt::green);
    QPixmapButton button;
    button.resize(kWidth, kHeight);
    button.setImages(&normal, &on);
    button.show();
    EXPECT_EQ(CentreColor(button), QColor(Qt::red));
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_EQ(CentreColor(button), QColor(Qt::green));
    QTest::mouseRelease(&button, Qt::LeftButton);
    EXPECT_EQ(CentreColor(button), QColor(Qt::red));
}

/// Rows that hold a pixel that is not the image's.
std::pair<int, int> CaptionRows(QWidget& button, QColor background) {
    const QImage image = button.grab().toImage();
    int first = image.height();
    int last = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != background) {
                first = std::min(first, y);
                last = y;
                break;
            }
        }
    }
    return {first, last};
}

TEST(PixmapButton, TheCaptionMovesWhileOnAndIsShownOnlyWhenAsked) {
    QPixmap image = PlainPixmap(80, 40, Qt::white);
    QPixmapButton button;
    button.resize(80, 40);
    button.setImages(&image);
    button.setCheckable(true);
    button.setText("HH");
    EXPECT_EQ(CaptionRows(button, Qt::white).second, -1);
    button.setShowCaption(true);
    const auto off = CaptionRows(button, Qt::white);
    ASSERT_GE(off.second, 0);
    button.setCaptionPressedOffset(0, 3);
    button.setChecked(true);
    EXPECT_EQ(CaptionRows(button, Qt::white), (std::pair{off.first + 3, off.second + 3}));
    EXPECT_TRUE(button.property("showCaption").toBool());
}

TEST(PixmapButton, TheCaptionHasTheColourOfButtonTextsAlsoWhenDisabled) {
    QPixmap image = PlainPixmap(80, 40, Qt::black);
    QPixmapButton button;
    button.resize(80, 40);
    button.setImages(&image);
    button.setText("HH");
    button.setShowCaption(true);
    QPalette palette;
    palette.setColor(QPalette::Active, QPalette::ButtonText, Qt::red);
    palette.setColor(QPalette::Inactive, QPalette::ButtonText, Qt::green);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::blue);
    button.setPalette(palette);
    /// The brightest value of each part of the colour.
    const auto brightest = [&button] {
        const QImage picture = button.grab().toImage();
        std::array<int, 3> most{};
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                most = {std::max(most[0], color.red()), std::max(most[1], color.green()),
                        std::max(most[2], color.blue())};
            }
        }
        return most;
    };
    const auto enabled = brightest();
    EXPECT_GT(enabled[0], 128);
    EXPECT_EQ(enabled[1] + enabled[2], 0);
    button.setEnabled(false);
    const auto disabled = brightest();
    EXPECT_GT(disabled[2], 128);
    EXPECT_EQ(disabled[0] + disabled[1], 0);
}

TEST(PixmapButton, ADoubledImageHasHalfItsPixelsAsLogicalSize) {
    QPixmap sprite = FramesPixmap({Qt::red, Qt::green}, 2 * kWidth, 2 * kHeight, Qt::Horizontal);
    sprite.setDevicePixelRatio(2.0);
    QPixmapButton button;
    button.setSprite(&sprite, QRect(), Qt::Horizontal, 2);
    EXPECT_EQ(button.size(), QSize(kWidth, kHeight));
    EXPECT_EQ(PaintedInEachState(button), (std::array{0, 1, 0, 1}));
}

}  // namespace
