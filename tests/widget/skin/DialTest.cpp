#include <gtest/gtest.h>

#include <QtTest/QTest>

#include "QtWidgets/skin/QPixmapDial.h"
#include "widget/skin/Images.h"

namespace {

/// Opens what a test looks at.
class OpenDial : public QPixmapDial {
public:
    void MoveTo(int x, int y) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, y), mapToGlobal(QPointF(x, y)), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(this, &move);
    }
};

class Dial : public testing::Test {
protected:
    Dial() {
        dial.resize(40, 40);
        dial.setRange(0, 127);
        dial.show();
    }
    OpenDial dial;
};

std::vector<QColor> Greys(int count) {
    std::vector<QColor> colors;
    for (int i = 0; i < count; ++i) {
        colors.emplace_back(i, 255 - i, 0);
    }
    return colors;
}

TEST_F(Dial, DefaultsAreAsDocumented) {
    EXPECT_EQ(dial.zeroAngle(), -150.0);
    EXPECT_EQ(dial.maxAngle(), 150.0);
    EXPECT_TRUE(dial.virtualSlider());
    EXPECT_TRUE(dial.virtualSliderVertical());
    EXPECT_EQ(dial.virtualHeight(), 100);
    EXPECT_EQ(dial.nFrames(), 64);
    EXPECT_FALSE(dial.wrapping());
}

TEST_F(Dial, AnAutoStripOf64By4096Has64SquareFrames) {
    const std::vector<QColor> colors = Greys(64);
    QPixmap strip = FramesPixmap(colors, 64, 64, Qt::Vertical);
    ASSERT_EQ(strip.size(), QSize(64, 4096));
    dial.setImage(&strip, QPixmapDial::AutoStrip);
    EXPECT_EQ(dial.nFrames(), 64);
    for (const auto& [value, frame] : {std::pair{0, 0}, {64, 32}, {127, 63}}) {
        dial.setValue(value);
        EXPECT_EQ(CentreColor(dial), colors[static_cast<std::size_t>(frame)]) << value;
    }
}

TEST_F(Dial, StripsRunBothWays) {
    const std::vector<QColor> colors = Greys(8);
    QPixmap horizontal = FramesPixmap(colors, 16, 16, Qt::Horizontal);
    QPixmap vertical = FramesPixmap(colors, 16, 16, Qt::Vertical);
    dial.setValue(127);
    for (const auto mode : {QPixmapDial::HorizontalStrip, QPixmapDial::AutoStrip}) {
        dial.setImage(&horizontal, mode);
        EXPECT_EQ(dial.nFrames(), 8);
        EXPECT_EQ(CentreColor(dial), colors[7]);
    }
    dial.setImage(&vertical, QPixmapDial::VerticalStrip);
    EXPECT_EQ(dial.nFrames(), 8);
    EXPECT_EQ(CentreColor(dial), colors[7]);
}

TEST_F(Dial, AnEmptyRangeShowsFrameZero) {
    const std::vector<QColor> colors = Greys(8);
    QPixmap strip = FramesPixmap(colors, 16, 16, Qt::Horizontal);
    dial.setImage(&strip, QPixmapDial::HorizontalStrip);
    dial.setRange(3, 3);
    EXPECT_EQ(CentreColor(dial), colors[0]);
}

QPixmap TopHalfRed() {
    QPixmap image = PlainPixmap(40, 40, Qt::blue);
    QPainter(&image).fillRect(0, 0, 40, 20, Qt::red);
    return image;
}

TEST_F(Dial, RotateWholeTurnsByTheValuesAngle) {
    QPixmap image = TopHalfRed();
    dial.setImage(&image, QPixmapDial::RotateWhole);
    dial.setAngles(0.0, 180.0);
    dial.setValue(0);
    EXPECT_EQ(ColorAt(dial, 20, 8), QColor(Qt::red));
    dial.setValue(127);
    EXPECT_EQ(ColorAt(dial, 20, 8), QColor(Qt::blue));
    EXPECT_EQ(ColorAt(dial, 20, 32), QColor(Qt::red));
}

TEST_F(Dial, AnEmptyRangeShowsTheZeroAngle) {
    QPixmap image = TopHalfRed();
    dial.setImage(&image, QPixmapDial::RotateWhole);
    dial.setAngles(180.0, 0.0);
    dial.setRange(7, 7);
    EXPECT_EQ(ColorAt(dial, 20, 32), QColor(Qt::red));
}

TEST_F(Dial, TheLowerHalfTurnsOverTheFixedUpperHalf) {
    QPixmap image(40, 80);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.fillRect(0, 0, 40, 40, Qt::blue);
        painter.fillRect(10, 40, 20, 12, Qt::red);
    }
    dial.setImage(&image, QPixmapDial::FixedTopRotatingBottom);
    dial.setAngles(0.0, 180.0);
    dial.setValue(0);
    EXPECT_EQ(ColorAt(dial, 20, 5), QColor(Qt::red));
    EXPECT_EQ(ColorAt(dial, 20, 35), QColor(Qt::blue));
    dial.setValue(127);
    EXPECT_EQ(ColorAt(dial, 20, 5), QColor(Qt::blue));
    EXPECT_EQ(ColorAt(dial, 20, 35), QColor(Qt::red));
    EXPECT_EQ(ColorAt(dial, 3, 20), QColor(Qt::blue));
}

TEST_F(Dial, NothingIsDrawnWithoutAnImageOrInAnUnknownMode) {
    QPixmap image = PlainPixmap(40, 40, Qt::red);
    const QColor bare = CentreColor(dial);
    dial.setImage(&image, static_cast<QPixmapDial::PixmapMode>(9));
    EXPECT_EQ(CentreColor(dial), bare);
    dial.setImage(nullptr, QPixmapDial::RotateWhole);
    EXPECT_EQ(CentreColor(dial), bare);
}

TEST_F(Dial, DraggingUpRaisesTheValueByTheVirtualHeight) {
    dial.setRange(0, 100);
    dial.setValue(50);
    QTest::mousePress(&dial, Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(dial.cursor().shape(), Qt::SizeVerCursor);
    dial.MoveTo(35, 10);
    EXPECT_EQ(dial.value(), 60);
    dial.MoveTo(35, 45);
    EXPECT_EQ(dial.value(), 25);
    QTest::mouseRelease(&dial, Qt::LeftButton, {}, QPoint(35, 45));
    EXPECT_EQ(dial.cursor().shape(), Qt::ArrowCursor);
    dial.MoveTo(20, 0);
    EXPECT_EQ(dial.value(), 25);
}

TEST_F(Dial, TheDragIsTruncatedOnce) {
    dial.setRange(0, 127);
    dial.setValue(10);
    QTest::mousePress(&dial, Qt::LeftButton, {}, QPoint(20, 20));
    dial.MoveTo(20, 19);
    EXPECT_EQ(dial.value(), 11);  // 11.27
    dial.MoveTo(20, 21);
    EXPECT_EQ(dial.value(), 8);  // 8.73
}

TEST_F(Dial, DraggingRightLowersTheValueInTheHorizontalDrag) {
    dial.setRange(0, 100);
    dial.setValue(50);
    dial.setVirtualSliderVertical(false);
    QTest::mousePress(&dial, Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(dial.cursor().shape(), Qt::SizeHorCursor);
    dial.MoveTo(30, 0);
    EXPECT_EQ(dial.value(), 40);
    QTest::mouseRelease(&dial, Qt::LeftButton, {}, QPoint(30, 0));
}

TEST_F(Dial, OtherButtonsDoNotDrag) {
    dial.setValue(50);
    QTest::mousePress(&dial, Qt::RightButton, {}, QPoint(20, 20));
    dial.MoveTo(20, 0);
    EXPECT_EQ(dial.value(), 50);
}

}  // namespace
