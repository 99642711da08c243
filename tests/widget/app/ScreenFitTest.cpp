// The window on screens that are smaller than the panel or of another scale.
#include "app/ScreenFit.h"

#include <gtest/gtest.h>

#include <qpa/qplatformwindow.h>

#include <map>
#include <QAbstractButton>
#include <QApplication>
#include <QBackingStore>
#include <QScreen>
#include <QTimer>
#include <QtMath>
#include <QtTest/QTest>
#include <QWindow>

#include "app/MainWindow.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "support/FatalLog.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/EmbeddedFonts.h"
#include "unit/engine/EngineRig.h"

namespace {

using Kivora::MainWindow;

constexpr QSize kDesign(1180, 520);
constexpr int kWaitMs = 30000;

/// Gives a window one size, whatever its program asks for, as those do who lay windows out side by side.
class Tiler : public QObject {
public:
    Tiler(QWidget& window, const QSize& size) : window_(window), size_(size) {
        window_.installEventFilter(this);
        window_.resize(size_);
    }
    int GetRefused() const { return refused_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize && window_.size() != size_) {
            ++refused_;
            QTimer::singleShot(0, this, [this] { window_.resize(size_); });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& window_;
    const QSize size_;
    int refused_ = 0;
};

class ScreenFitTest : public testing::Test {
protected:
    ScreenFitTest() { Kivora::RegisterEmbeddedFonts(); }

    QScreen* Screen(const QString& name) {
        for (QScreen* screen : QGuiApplication::screens()) {
            if (screen->name() == name) {
                return screen;
            }
        }
        ADD_FAILURE() << "no screen " << name.toStdString();
        return nullptr;
    }
    std::unique_ptr<MainWindow> Open(MainWindow::EPanelSize size = MainWindow::EPanelSize::kFitsScreen) {
        auto window =
            std::make_unique<MainWindow>([this] { return std::make_unique<Kivora::CKivora>(rig_.GetDependencies()); },
                                         MainWindow::Ports::kOpen, nullptr, size);
        window->SetQuiet();
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        return window;
    }
    static void MoveTo(MainWindow& window, QScreen* screen) {
        window.windowHandle()->setScreen(screen);
        window.move(screen->availableGeometry().topLeft());
    }
    /// Nothing of its way onto the screen is to come.
    static void WaitUntilCalm(MainWindow& window) {
        ASSERT_TRUE(Wait([&] { return !window.findChild<QTimer*>("calm-time")->isActive(); }));
    }
    static bool Wait(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, kWaitMs); }

    KivoraTest::EngineRig rig_;
};

TEST_F(ScreenFitTest, OnASmallScreenThePanelIsDrawnSmallerWholeAndInProportion) {
    const auto window = Open();
    EXPECT_EQ(window->size(), kDesign);
    MoveTo(*window, Screen("small"));
    ASSERT_TRUE(Wait([&] { return window->size() != kDesign; }));
    // The platform's window frames count.
    EXPECT_EQ(window->frameGeometry().width(), 1024);
    EXPECT_EQ(window->height(), window->width() * kDesign.height() / kDesign.width());
    EXPECT_EQ(window->GetPanel()->size(), window->size());
    EXPECT_TRUE(window->screen()->availableGeometry().contains(window->frameGeometry()));
    for (const QWidget* widget : window->GetPanel()->findChildren<QWidget*>()) {
        if (widget->window() == window.get()) {
            const QRect place(widget->mapTo(window->GetPanel(), QPoint()), widget->size());
            EXPECT_TRUE(window->GetPanel()->rect().contains(place)) << widget->objectName().toStdString();
        }
    }

    MoveTo(*window, Screen("large"));
    ASSERT_TRUE(Wait([&] { return window->size() == kDesign; }));
    EXPECT_EQ(window->GetPanel()->panelScale(), 1.0);
}

TEST_F(ScreenFitTest, ASizeThatIsChosenIsShownAsFarAsThereIsRoomAndKept) {
    {
        const auto window = Open();
        window->GetPanel()->setWantedScale(1.25);
        EXPECT_EQ(window->size(), QSize(1475, 650));
        EXPECT_EQ(window->GetPanel()->size(), window->size());
        MoveTo(*window, Screen("small"));
        ASSERT_TRUE(Wait([&] { return window->frameGeometry().width() == 1024; })) << "no more room";
        MoveTo(*window, Screen("large"));
        ASSERT_TRUE(Wait([&] { return window->size() == QSize(1475, 650); })) << "and there is again";
        window->GetPanel()->setWantedScale(0.75);
        EXPECT_EQ(window->size(), QSize(885, 390));
    }
    const auto window = Open();
    EXPECT_EQ(window->size(), QSize(885, 390)) << "at the next start";
}

TEST_F(ScreenFitTest, AWindowThatIsPulledTakesThePanelWithItAndKeepsItsProportion) {
    const auto window = Open();
    WaitUntilCalm(*window);
    window->resize(1475, 900);
    EXPECT_DOUBLE_EQ(window->GetPanel()->panelScale(), 1.25) << "at once";
    EXPECT_TRUE(Wait([&] { return window->size() == QSize(1475, 650); })) << "once it stands still";
    EXPECT_TRUE(Wait([&] { return window->GetPanel()->geometry() == QRect(QPoint(), window->size()); }));
    EXPECT_TRUE(Wait([&] { return window->GetPanel()->wantedScale() == 1.25; })) << "once it has kept that";
    window->resize(100, 100);
    EXPECT_TRUE(Wait([&] { return window->size() == QSize(590, 260); })) << "and no smaller";
}

TEST_F(ScreenFitTest, AWindowThatFillsTheScreenHasThePanelInItsMiddle) {
    const auto window = Open();
    WaitUntilCalm(*window);
    window->showMaximized();
    ASSERT_TRUE(Wait([&] { return window->GetPanel()->panelScale() > 1.0; }));
    ASSERT_TRUE(Wait([&] { return window->GetPanel()->size() == window->GetPanel()->sizeHint(); }));
    EXPECT_TRUE(window->rect().contains(window->GetPanel()->geometry()));
    EXPECT_NEAR(window->GetPanel()->geometry().center().x(), window->rect().center().x(), 1);
    EXPECT_NEAR(window->GetPanel()->geometry().center().y(), window->rect().center().y(), 1);
    window->showNormal();
    EXPECT_TRUE(Wait([&] { return window->size() == kDesign && window->GetPanel()->panelScale() == 1.0; }));
    EXPECT_EQ(window->GetPanel()->wantedScale(), 1.0);
}

TEST_F(ScreenFitTest, ASizeThatIsForcedOnTheWindowIsNobodysWish) {
    constexpr QSize kTile(800, 700);
    {
        const auto window = Open();
        WaitUntilCalm(*window);
        const auto tiler = std::make_unique<Tiler>(*window, kTile);
        ASSERT_TRUE(Wait([&] { return tiler->GetRefused() >= 2; })) << "the panel's proportion was asked for";
        ASSERT_TRUE(Wait([&] { return window->size() == kTile; }));
        WaitUntilCalm(*window);
        EXPECT_EQ(window->size(), kTile);
        EXPECT_EQ(window->GetPanel()->width(), kTile.width()) << "as large as it has room";
        EXPECT_EQ(window->GetPanel()->wantedScale(), 1.0);
        window->GetPanel()->setWantedScale(1.25);
        WaitUntilCalm(*window);
        EXPECT_EQ(window->size(), kTile);
        EXPECT_EQ(window->GetPanel()->wantedScale(), 1.25) << "a size of the menu is";
    }
    const auto window = Open();
    EXPECT_EQ(window->size(), QSize(1475, 650)) << "at the next start";
}

TEST_F(ScreenFitTest, WherePullingComesInManyStepsASizeThatComesAtOnceIsNobodysWish) {
    const auto window = Open(MainWindow::EPanelSize::kAsDesigned);
    window->setMinimumSize(0, 0);
    window->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    Kivora::ScreenFit fit(*window, *window->GetPanel(), Kivora::ScreenFit::EPull::kManySteps);
    WaitUntilCalm(*window);
    window->resize(885, 700);
    ASSERT_TRUE(Wait([&] { return window->size() == QSize(885, 390); })) << "in proportion";
    WaitUntilCalm(*window);
    EXPECT_EQ(window->size(), QSize(885, 390));
    EXPECT_EQ(window->GetPanel()->wantedScale(), 1.0);
    for (const int width : {1000, 1200, 1475}) {
        window->resize(width, 900);
    }
    EXPECT_TRUE(Wait([&] { return window->GetPanel()->wantedScale() == 1.25; }));
    EXPECT_EQ(window->size(), QSize(1475, 650));
}

TEST_F(ScreenFitTest, AtAScaleBetweenTheWholeOnesNoPixelSticksOut) {
    const auto window = Open();
    window->GetPanel()->setWantedScale(4.0);
    MoveTo(*window, Screen("between"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 1.5; }));
    ASSERT_TRUE(Wait([&] { return window->width() < window->screen()->availableGeometry().width(); }));
    WaitUntilCalm(*window);
    const QSize pixels = window->windowHandle()
                             ->handle()
                             ->geometry()
                             .marginsAdded(window->windowHandle()->handle()->frameMargins())
                             .size();
    EXPECT_LE(pixels.width(), 1366);
    EXPECT_GE(pixels.width(), 1366 - 3) << "and hardly any is lost";
}

TEST_F(ScreenFitTest, PicturesAreTakenOfThePanelAsDesigned) {
    const auto window = Open(MainWindow::EPanelSize::kAsDesigned);
    MoveTo(*window, Screen("small"));
    QTest::qWait(0);
    EXPECT_EQ(window->size(), kDesign);
    EXPECT_EQ(window->GetPanel()->panelScale(), 1.0);
}

TEST_F(ScreenFitTest, AFinerScreenShowsTheSamePanelInMorePixels) {
    const auto window = Open();
    auto* const lamp = window->findChild<QBlinkingLed*>("midi-led");
    ASSERT_TRUE(Wait([&] { return !lamp->isLit(); }));
    const QImage coarse = window->grab().toImage();
    MoveTo(*window, Screen("fine"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 2.0; }));
    const auto shown = [&] {
        const auto* const pixels = dynamic_cast<const QImage*>(window->backingStore()->paintDevice());
        return pixels != nullptr ? pixels->size() : QSize();
    };
    ASSERT_TRUE(Wait([&] { return shown() == kDesign * 2; }));
    EXPECT_EQ(window->size(), kDesign);
    ASSERT_TRUE(Wait([&] { return window->windowHandle()->size() == kDesign; })) << "cut at first";
    // The picture is as fine as the screen: no block of 2 x 2 pixels in the texts would differ otherwise.
    const QImage fine = window->grab().toImage();
    ASSERT_EQ(fine.size(), kDesign * 2);
    int finer = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 180; ++x) {
            finer += fine.pixel(2 * x, 2 * y) != fine.pixel(2 * x + 1, 2 * y + 1) ? 1 : 0;
        }
    }
    EXPECT_GT(finer, 500) << "the brand is drawn in the screen's own pixels";

    MoveTo(*window, Screen("large"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 1.0 && shown() == kDesign; }));
    EXPECT_EQ(window->grab().toImage(), coarse) << "as it was";
}

/// As where text becomes larger on the desktop, or the window is pulled to such a screen, and back.
TEST_F(ScreenFitTest, AChangeToAScaleBetweenTheWholeOnesShowsTheSamePanelAnew) {
    const auto window = Open();
    auto* const lamp = window->findChild<QBlinkingLed*>("midi-led");
    window->GetPanel()->setWantedScale(0.75);  // has room on either screen
    WaitUntilCalm(*window);
    const QSize size = window->size();
    ASSERT_TRUE(Wait([&] { return !lamp->isLit(); }));
    const QImage before = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    std::map<const QWidget*, QRect> places;
    for (const QWidget* part : window->GetPanel()->findChildren<QWidget*>()) {
        places[part] = part->geometry();
    }
    const auto shown = [&] {
        const auto* const pixels = dynamic_cast<const QImage*>(window->backingStore()->paintDevice());
        return pixels != nullptr ? pixels->convertToFormat(QImage::Format_RGB32) : QImage();
    };

    MoveTo(*window, Screen("between"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 1.5; }));
    WaitUntilCalm(*window);
    EXPECT_EQ(window->size(), size) << "neither cut nor grown";
    ASSERT_TRUE(Wait([&] { return window->windowHandle()->size() == size; }));
    for (const auto& [part, place] : places) {
        EXPECT_EQ(part->geometry(), place) << part->objectName().toStdString();
    }
    const QSize pixels(qCeil(size.width() * 1.5), qCeil(size.height() * 1.5));
    ASSERT_TRUE(Wait([&] { return shown().size() == pixels && !lamp->isLit(); }));
    // Painted anew in every part: what is on the screen is what would be painted now.
    QImage fresh(pixels, QImage::Format_RGB32);
    fresh.setDevicePixelRatio(1.5);
    ASSERT_TRUE(Wait([&] {
        window->render(&fresh);
        return shown() == fresh;
    }));
    EXPECT_NE(fresh, before.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)) << "and not stretched";

    MoveTo(*window, Screen("large"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 1.0; }));
    WaitUntilCalm(*window);
    EXPECT_EQ(window->size(), size);
    EXPECT_TRUE(Wait([&] { return shown() == before; })) << "as it was";
}

TEST_F(ScreenFitTest, APanelOfTwiceTheSizeIsAsSharpAsOneOnAFinerScreen) {
    const auto window = Open();
    auto* const lamp = window->findChild<QBlinkingLed*>("midi-led");
    MoveTo(*window, Screen("fine"));
    ASSERT_TRUE(Wait([&] { return window->grab().size() == kDesign * 2 && !lamp->isLit(); }));
    const QImage fine = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    MoveTo(*window, Screen("large"));
    ASSERT_TRUE(Wait([&] { return window->devicePixelRatioF() == 1.0; }));
    WaitUntilCalm(*window);
    KivoraWidget& panel = *window->GetPanel();
    panel.setPanelScale(2.0);  // more than the screen has room for
    panel.resize(panel.sizeHint());
    const QImage large = panel.grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(large.size(), fine.size());
    // Of the plates and the pictures of keys and dials; texts stand on other parts of a pixel.
    constexpr int kBarelySeen = 24;
    int different = 0;
    for (int y = 0; y < large.height(); ++y) {
        for (int x = 0; x < large.width(); ++x) {
            const QColor a(large.pixel(x, y));
            const QColor b(fine.pixel(x, y));
            different += std::abs(a.lightness() - b.lightness()) > kBarelySeen ? 1 : 0;
        }
    }
    EXPECT_LT(different, large.width() * large.height() / 200);
}

}  // namespace
