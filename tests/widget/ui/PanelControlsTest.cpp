// The keys, the focus ring, the fitted texts and the combo boxes of the panel.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QtTest/QTest>
#include <vector>

#include "ui/parts/FocusRing.h"
#include "ui/parts/PanelCombo.h"
#include "ui/parts/PanelControlKeys.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/PanelText.h"

namespace {

constexpr QColor kDisplay(83, 255, 149);

/// A panel that notes the keys that reach it.
class KeyPanel : public QWidget {
public:
    KeyPanel() {
        resize(400, 100);
        button.setGeometry(10, 10, 60, 20);
        combo.setGeometry(100, 10, 62, 20);
        combo.addItems({"zero", "one", "two"});
        combo.setSkin(&face, kDisplay);
        slider.setGeometry(200, 10, 100, 20);
        slider.setValue(50);
        for (QWidget* control : std::initializer_list<QWidget*>{&button, &combo, &slider}) {
            keys.watch(control);
        }
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
    void keyPressEvent(QKeyEvent* event) override { pressed.push_back(event->key()); }
    void keyReleaseEvent(QKeyEvent* event) override { released.push_back(event->key()); }

    std::vector<int> pressed;
    std::vector<int> released;
    PanelControlKeys keys;
    QPixmap face{":/Resources/Combo_62.png"};
    QPushButton button{this};
    PanelCombo combo{this};
    QSlider slider{Qt::Horizontal, this};
};

using Keys = std::vector<int>;

TEST(PanelControlKeys, SpaceAndPlayingKeysGoToThePanel) {
    KeyPanel panel;
    QSignalSpy clicks(&panel.button, &QAbstractButton::clicked);
    for (QWidget* control : std::initializer_list<QWidget*>{&panel.button, &panel.combo, &panel.slider}) {
        control->setFocus(Qt::TabFocusReason);
        for (const int key : {Qt::Key_Space, Qt::Key_Z, Qt::Key_T, Qt::Key_Escape}) {
            QTest::keyClick(control, static_cast<Qt::Key>(key));
        }
        const Keys keys{Qt::Key_Space, Qt::Key_Z, Qt::Key_T, Qt::Key_Escape};
        EXPECT_EQ(std::exchange(panel.pressed, {}), keys);
        EXPECT_EQ(std::exchange(panel.released, {}), keys);
    }
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(panel.combo.currentText(), "zero");
    EXPECT_EQ(panel.slider.value(), 50);
}

TEST(PanelControlKeys, EnterClicksAButtonOnce) {
    KeyPanel panel;
    QSignalSpy clicks(&panel.button, &QAbstractButton::clicked);
    QTest::keyClick(&panel.button, Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 1);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(&panel.button, &repeat);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_EQ(panel.pressed, Keys{});
}

TEST(PanelControlKeys, EnterOpensAComboBox) {
    KeyPanel panel;
    QTest::keyClick(&panel.combo, Qt::Key_Enter);
    EXPECT_TRUE(panel.combo.view()->isVisible());
    QTest::keyClick(panel.combo.view(), Qt::Key_Down);
    QTest::keyClick(panel.combo.view(), Qt::Key_Return);
    EXPECT_FALSE(panel.combo.view()->isVisible());
    EXPECT_EQ(panel.combo.currentText(), "one");
}

TEST(PanelControlKeys, ArrowKeysWorkWhatHasAValue) {
    KeyPanel panel;
    QTest::keyClick(&panel.combo, Qt::Key_Down);
    EXPECT_EQ(panel.combo.currentText(), "one");
    QTest::keyClick(&panel.slider, Qt::Key_Right);
    EXPECT_EQ(panel.slider.value(), 51);
    EXPECT_EQ(panel.pressed, Keys{});
    QTest::keyClick(&panel.button, Qt::Key_Right);
    EXPECT_EQ(panel.pressed, Keys{Qt::Key_Right});
}

TEST(FocusRing, StandsAroundTheFocusedControl) {
    KeyPanel panel;
    FocusRing ring(&panel);
    panel.button.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(ring.control(), &panel.button);
    EXPECT_TRUE(ring.isVisible());
    EXPECT_TRUE(ring.geometry().contains(panel.button.geometry().adjusted(-3, -3, 3, 3)));
    const QImage picture = panel.grab().toImage();
    EXPECT_GT(picture.pixelColor(8, 20).lightness(), 240);  // 2 px from the button's left edge
    EXPECT_LT(picture.pixelColor(6, 20).lightness(), 128);
    panel.button.move(30, 40);
    EXPECT_TRUE(ring.geometry().contains(panel.button.geometry()));
    panel.button.clearFocus();
    EXPECT_FALSE(ring.isVisible());
}

TEST(FocusRing, LetsTheMouseThrough) {
    KeyPanel panel;
    FocusRing ring(&panel);
    panel.button.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(panel.childAt(panel.button.geometry().center()), &panel.button);
}

TEST(FocusRing, IsNotForThePanelItself) {
    KeyPanel panel;
    FocusRing ring(&panel);
    panel.setFocusPolicy(Qt::StrongFocus);
    panel.button.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(ring.isVisible());
    panel.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(ring.control(), nullptr);
    EXPECT_FALSE(ring.isVisible());
}

TEST(FocusRing, IsNotForOneThatShowsTheFocusItself) {
    KeyPanel panel;
    FocusRing ring(&panel);
    ring.exclude(&panel.slider);
    panel.slider.setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(ring.isVisible());
    panel.combo.setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(ring.isVisible());
}

TEST(PanelTexts, WidthsGrowInStepsOfHalfAPixel) {
    const auto width = [](double pixels) {
        return PanelText::AtSize(PanelText::kPatchName, "Acoustic Grand Piano", pixels).Width();
    };
    for (const double pixels : {13.0, 13.5, 19.5, 20.0}) {
        EXPECT_NEAR(width(pixels) / pixels, width(40.0) / 40.0, 0.1) << pixels;
    }
}

TEST(PanelTexts, ATextIsShrunkAndThenCutShort) {
    const QString text("Chromatic Percussion");
    const auto width = [&](double pixels) { return PanelText::AtSize(PanelText::kPatchName, text, pixels).Width(); };
    EXPECT_EQ(PanelText::Fit(PanelText::kPatchName, text, width(20.0)).text, text);
    EXPECT_DOUBLE_EQ(PanelText::Fit(PanelText::kPatchName, text, width(20.0)).Width(), width(20.0));
    const PanelText::Fitted smaller = PanelText::Fit(PanelText::kPatchName, text, width(16.5));
    EXPECT_EQ(smaller.text, text);
    EXPECT_DOUBLE_EQ(smaller.Width(), width(16.5));
    const PanelText::Fitted cut = PanelText::Fit(PanelText::kPatchName, text, width(13.0) - 5);
    EXPECT_TRUE(cut.text.endsWith(QChar(0x2026)));
    EXPECT_LE(cut.Width(), width(13.0) - 5);
}

TEST(PanelLabel, DrawsItsTextOverItsGlass) {
    PanelLabel label(PanelText::kGateFigure.Colored(Qt::white));
    label.resize(36, 20);
    label.setAlignment(Qt::AlignCenter);
    QPixmap face(36, 20);
    face.fill(Qt::black);
    label.setGlass(&face);
    const QImage bare = label.grab().toImage();
    label.setText("88");
    EXPECT_EQ(label.fittedText().text, "88");
    const QImage picture = label.grab().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::black));
    EXPECT_NE(picture, bare);
}

TEST(PanelCombo, TheFaceShowsTheCurrentText) {
    KeyPanel panel;
    const QImage zero = panel.combo.grab().toImage();
    panel.combo.setCurrentIndex(1);
    EXPECT_NE(panel.combo.grab().toImage(), zero);
    EXPECT_EQ(panel.combo.fittedText(), "one");
}

TEST(PanelCombo, TheListIsDarkWithTheCurrentRowLit) {
    KeyPanel panel;
    panel.combo.setCurrentIndex(1);
    QTest::mouseClick(&panel.combo, Qt::LeftButton);
    QAbstractItemView& list = *panel.combo.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
    EXPECT_GE(list.window()->mapToGlobal(QPoint()).y(), panel.mapToGlobal(panel.combo.geometry().bottomLeft()).y());
    const QRect row = list.visualRect(panel.combo.model()->index(1, 0));
    EXPECT_EQ(row.height(), 20);
    const QImage picture = list.viewport()->grab().toImage();
    EXPECT_EQ(picture.pixelColor(row.right() - 2, row.center().y()), kDisplay);
    EXPECT_EQ(picture.pixelColor(row.right() - 2, 10), QColor(0x17, 0x18, 0x1A));
    panel.combo.hidePopup();
}

}  // namespace
