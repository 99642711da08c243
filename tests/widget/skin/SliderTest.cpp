#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QtTest/QTest>

#include "QtWidgets/skin/QPixmapSlider.h"
#include "support/FatalLog.h"
#include "widget/skin/Images.h"

namespace {

class Slider : public testing::Test {
protected:
    Slider() {
        slider.setImages(&channel, &handle, &dragged, &disabled);
        slider.setRange(10, 100);
        slider.show();
    }
    void Drag(int fromX, int toX) {
        QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(fromX, 5));
        MoveTo(toX);
    }
    void MoveTo(int x) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, 5), slider.mapToGlobal(QPointF(x, 5)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&slider, &move);
    }
    void Release(int x) { QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(x, 5)); }

    QPixmap channel = PlainPixmap(108, 20, Qt::black);
    QPixmap handle = PlainPixmap(18, 20, Qt::red);
    QPixmap dragged = PlainPixmap(18, 20, Qt::green);
    QPixmap disabled = PlainPixmap(18, 20, Qt::blue);
    QPixmapSlider slider;
};

TEST_F(Slider, TheChannelFixesTheSize) {
    EXPECT_EQ(slider.minimumSize(), QSize(108, 20));
    EXPECT_EQ(slider.maximumSize(), QSize(108, 20));
    EXPECT_TRUE(slider.hasTracking());
}

TEST_F(Slider, TheHandleStandsAtTheValue) {
    slider.setValue(10);
    EXPECT_EQ(ColorAt(slider, 0, 5), QColor(Qt::red));
    EXPECT_EQ(ColorAt(slider, 18, 5), QColor(Qt::black));
    slider.setValue(100);
    EXPECT_EQ(ColorAt(slider, 107, 5), QColor(Qt::red));
    EXPECT_EQ(ColorAt(slider, 89, 5), QColor(Qt::black));
}

TEST_F(Slider, ADragMovesTheValueRelatively) {
    slider.setValue(10);
    Drag(3, 33);  // a travel of 90 pixels spans 90 values
    EXPECT_EQ(slider.value(), 40);
    EXPECT_EQ(ColorAt(slider, 35, 5), QColor(Qt::green));
    Release(33);
    EXPECT_EQ(ColorAt(slider, 35, 5), QColor(Qt::red));
}

TEST_F(Slider, ThePointerBeyondTheEndComesBackToItsOffset) {
    slider.setValue(90);
    Drag(85, 185);
    EXPECT_EQ(slider.value(), 100);
    MoveTo(105);
    EXPECT_EQ(slider.value(), 100);
    MoveTo(85);
    EXPECT_EQ(slider.value(), 90);
    Release(85);
}

TEST_F(Slider, AManyValuedDragKeepsTheUnroundedPosition) {
    slider.setRange(0, 9);  // ten pixels a value
    slider.setValue(0);
    Drag(2, 2);
    for (int x = 3; x <= 47; ++x) {
        MoveTo(x);
    }
    EXPECT_EQ(slider.value(), 4);  // 45 pixels are 4.5 values; the half goes down
    MoveTo(48);
    EXPECT_EQ(slider.value(), 5);
    Release(48);
}

TEST_F(Slider, APressBesideTheHandleDoesNotMoveTheValue) {
    slider.setValue(10);
    Drag(60, 90);
    EXPECT_EQ(slider.value(), 10);
    EXPECT_FALSE(slider.isSliderDown());
    Release(90);
}

TEST_F(Slider, TheRightButtonAndADisabledSliderDoNotDrag) {
    KivoraTest::CFatalLog::Instance().Expect(L"\"MousePress\" not accepted");  // as QTest says
    slider.setValue(10);
    QTest::mousePress(&slider, Qt::RightButton, {}, QPoint(3, 5));
    EXPECT_FALSE(slider.isSliderDown());
    slider.setEnabled(false);
    EXPECT_EQ(ColorAt(slider, 3, 5), QColor(Qt::blue));
    Drag(3, 50);
    EXPECT_EQ(slider.value(), 10);
}

TEST_F(Slider, AnEmptyRangeStandsAtTheStart) {
    slider.setRange(5, 5);
    EXPECT_EQ(ColorAt(slider, 0, 5), QColor(Qt::red));
}

TEST_F(Slider, AHandleAsWideAsTheChannelNeverChangesTheValue) {
    QPixmap wide = PlainPixmap(108, 20, Qt::red);
    slider.setImages(&channel, &wide);
    slider.setValue(55);
    const QSignalSpy changes(&slider, &QAbstractSlider::valueChanged);
    Drag(50, 90);
    MoveTo(1);
    Release(1);
    EXPECT_EQ(slider.value(), 55);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(Slider, NegativeValuesRoundAwayFromZero) {
    slider.setRange(-90, 0);
    slider.setValue(-90);
    Drag(3, 13);
    EXPECT_EQ(slider.value(), -80);
    Release(13);
}

}  // namespace
