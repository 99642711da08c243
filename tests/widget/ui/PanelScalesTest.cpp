// The panel at the scale of the screen that QT_SCALE_FACTOR tells, and at scales of its own: whole, without gaps, and
// the same whether painted whole or in parts.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <QBackingStore>
#include <QImage>
#include <QPalette>

#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/PanelScale.h"

using namespace KivoraTest;

namespace {

constexpr QColor kBehind(255, 0, 255);  // nothing on the panel comes near it
constexpr int kNoneOfIt = 12;           // of 255
constexpr int kRounding = 16;           // of 255

class PanelScales : public PanelTest {
protected:
    /// A window whose own ground would be seen through every gap.
    void SetUp() override {
        CreateEngine();
        CreateWindow();
        QPalette palette = window->palette();
        palette.setColor(QPalette::Window, kBehind);
        window->setPalette(palette);
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), kWaitMs));
        QApplication::processEvents();
    }
    void SetScale(double scale) {
        panel->setPanelScale(scale);
        window->setFixedSize(panel->sizeHint());
        QApplication::processEvents();
    }
    /// What the screen shows.
    QImage Shown() {
        Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
        QApplication::processEvents();
        const auto* const pixels = dynamic_cast<const QImage*>(window->backingStore()->paintDevice());
        return pixels != nullptr ? pixels->copy().convertToFormat(QImage::Format_RGB32) : QImage();
    }
    /// The same, all of it painted anew at once.
    QImage ShownWhole() {
        window->update();
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            widget->update();
        }
        return Shown();
    }
    /// Of all captions and figures that are seen now, in the design's pixels.
    std::map<const QWidget*, double> SizesOfTexts() const {
        std::map<const QWidget*, double> sizes;
        for (const PanelKey* key : panel->findChildren<PanelKey*>()) {
            sizes[key] = key->fittedCaption().Size();
        }
        for (const PanelLabel* label : panel->findChildren<PanelLabel*>()) {
            sizes[label] = label->fittedText().Size();
        }
        return sizes;
    }
    void PaintInParts() {
        for (QBlinkingLed* lamp : panel->findChildren<QBlinkingLed*>()) {
            lamp->update();
            QApplication::processEvents();
        }
        for (const char* name : {"tempo", "patch1", "plus", "voice-mode-dual", "octave-value", "jog", "piano",
                                 "wheel-pitch", "pedal-soft", "wheel-strip"}) {
            Find(name).update();
            QApplication::processEvents();
        }
        for (int i = 0; i < 200; ++i) {  // places and sizes of all kinds
            panel->update(i * 37 % 1180, i * 53 % 520, 1 + i * 7 % 90, 1 + i * 11 % 60);
            QApplication::processEvents();
        }
    }
    /// Where the window's ground is seen: how often, and where last.
    static std::string GapsIn(const QImage& picture) {
        int gaps = 0;
        std::string last;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                if (std::min(qRed(pixel), qBlue(pixel)) - qGreen(pixel) > kNoneOfIt) {
                    ++gaps;
                    last = std::to_string(x) + ", " + std::to_string(y) + " " + QColor(pixel).name().toStdString();
                }
            }
        }
        return gaps == 0 ? "" : std::to_string(gaps) + ", the last at " + last;
    }
    /// Pixels that are not the same in both but for the rounding of what is interpolated.
    static int DifferencesOf(const QImage& a, const QImage& b) {
        EXPECT_EQ(a.size(), b.size());
        int differences = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const QRgb p = a.pixel(x, y);
                const QRgb q = b.pixel(x, y);
                const int off = std::max(
                    {std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
                differences += off > kRounding ? 1 : 0;
            }
        }
        return differences;
    }
    void ExpectSound(const std::string& what) {
        const QImage whole = ShownWhole();
        EXPECT_GE(whole.width(), static_cast<int>(panel->width() * window->devicePixelRatioF())) << what;
        EXPECT_EQ(GapsIn(whole), "") << what;
        PaintInParts();
        const QImage parts = Shown();
        EXPECT_EQ(GapsIn(parts), "") << what << ", in parts";
        EXPECT_EQ(DifferencesOf(whole, parts), 0) << what << ", in parts";
    }
};

TEST_F(PanelScales, HasNoGapsWhetherPaintedWholeOrInParts) {
    ExpectSound("as designed");
}

TEST_F(PanelScales, HasNoGapsWhereItIsDrawnSmaller) {
    for (const QSize& room : {QSize(1024, 560), QSize(910, 480), QSize(800, 560), QSize(1092, 580), QSize(1179, 519)}) {
        SetScale(PanelScale::FitInto(room));
        EXPECT_LE(panel->sizeHint().width(), room.width());
        EXPECT_LE(panel->sizeHint().height(), room.height());
        ExpectSound(std::to_string(room.width()) + " x " + std::to_string(room.height()));
    }
}

TEST_F(PanelScales, HasTextsOfTheSameSizeWhateverItsOwn) {
    for (const char* const locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        SetScale(1.0);
        const std::map<const QWidget*, double> designed = SizesOfTexts();
        EXPECT_GT(designed.size(), 40U);
        for (const double scale : {0.95, 0.9, 0.87, 0.8, 0.75, 0.7, 0.68}) {
            SetScale(scale);
            for (const auto& [widget, size] : SizesOfTexts()) {
                EXPECT_EQ(size, designed.at(widget))
                    << locale << " at " << scale << ": " << widget->objectName().toStdString();
            }
        }
    }
}

TEST_F(PanelScales, HasNoGapsWhereItIsDrawnLarger) {
    for (const double scale : {1.25, 1.337}) {
        SetScale(scale);
        ExpectSound(std::to_string(scale));
    }
}

TEST_F(PanelScales, HasNoGapsBesideTheWheels) {
    Type(Qt::Key_W, Qt::AltModifier);
    ASSERT_TRUE(Find("wheel-strip").isVisible());
    controls->SetWheel(Kivora::EWheel::kPitch, 12'345);
    for (const double scale : {1.0, 0.87, 1.337}) {
        SetScale(scale);
        ExpectSound(std::to_string(scale));
    }
}

TEST_F(PanelScales, IsAsBeforeWhenItIsDrawnLargeAgain) {
    const QImage before = ShownWhole();
    SetScale(0.7);
    EXPECT_NE(ShownWhole().size(), before.size());
    SetScale(1.0);
    EXPECT_EQ(DifferencesOf(ShownWhole(), before), 0);
}

TEST_F(PanelScales, PlaysAndShowsItsFocusWhereItIsDrawnSmaller) {
    SetScale(PanelScale::FitInto(QSize(800, 560)));
    Click("voice-mode-dual");
    EXPECT_TRUE(Engine().IsDual());
    rig.TakeWritten();
    for (const BYTE note : std::initializer_list<BYTE>{36, 61, 77, 96}) {
        const QRectF key = Piano().keyRect(note);
        EXPECT_EQ(Piano().keyAt(QPointF(key.center().x(), key.height() * 0.4)), note);
    }
    QTest::mousePress(&Piano(), Qt::LeftButton, {}, Piano().keyRect(77).toRect().center() + QPoint(0, 20));
    EXPECT_TRUE(Piano().isVisible());
    QTest::mouseRelease(&Piano(), Qt::LeftButton, {}, Piano().keyRect(77).toRect().center() + QPoint(0, 20));
    Find("plus").setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(Find("plus").hasFocus());
    const auto& bar = Find<QPianoPCKeyHelpBar>("hint-bar");
    QApplication::processEvents();
    EXPECT_NEAR(bar.centreOf(60), Piano().keyRect(60).center().x(), 1.5) << "hints follow their keys";
    QWidget* const slider = Find("arp1").findChild<QWidget*>("durationPcSlider");
    EXPECT_NEAR(slider->width(), 108 * panel->panelScale(), 1.0);
    EXPECT_NEAR(Find("arp1").width(), 284 * panel->panelScale(), 1.0);
}

TEST(PanelScale, GrowsAsFarAsItIsWantedAndThereIsRoom) {
    EXPECT_EQ(PanelScale::FitInto(QSize(4000, 3000), 2.0), 2.0);
    EXPECT_DOUBLE_EQ(PanelScale::FitInto(QSize(1475, 3000), 2.0), 1.25);
    EXPECT_EQ(PanelScale::FitInto(QSize(), 2.0), 2.0);
    EXPECT_EQ(PanelScale::SizeAt(0.75), QSize(885, 390));
}

TEST(PanelScale, FitsWholeAndInProportionAndNeverGrows) {
    EXPECT_EQ(PanelScale::FitInto(QSize(1180, 520)), 1.0);
    EXPECT_EQ(PanelScale::FitInto(QSize(4000, 3000)), 1.0);
    EXPECT_DOUBLE_EQ(PanelScale::FitInto(QSize(590, 3000)), 0.5);
    EXPECT_DOUBLE_EQ(PanelScale::FitInto(QSize(3000, 130)), 0.25);
    EXPECT_EQ(PanelScale::FitInto(QSize()), 1.0) << "no screen";
}

}  // namespace
