// The window on screens that are smaller than the panel or of another scale.
#include "app/ScreenFit.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QBackingStore>
#include <QScreen>
#include <QtTest/QTest>
#include <QWindow>

#include "app/MainWindow.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "support/FatalLog.h"
#include "ui/EmbeddedFonts.h"
#include "ui/KivoraWidget.h"
#include "unit/engine/EngineRig.h"

namespace {

using Kivora::MainWindow;

constexpr QSize kDesign(1180, 520);
constexpr int kWaitMs = 30000;

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
    EXPECT_EQ(window->minimumSize(), window->size());
    EXPECT_EQ(window->maximumSize(), window->size());
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

}  // namespace
