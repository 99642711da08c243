// The dialog of how hard keys sound, and the heights of the screen's piano.
#include "widget/ui/PanelRig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>

#include "engine/EngineExtras.h"
#include "ui/dialogs/VelocityGraph.h"
#include "ui/dialogs/VelocitySettings.h"
#include "widget/ui/DialogParts.h"

using namespace KivoraTest;
using Kivora::VelocityCurve;

namespace {

using Shape = VelocityCurve::Shape;

class PanelVelocity : public PanelTest {
protected:
    VelocityCurve Curve() {
        return Engine().WithExtras([](auto& extras) { return extras.velocity.GetCurve(); });
    }
};

}  // namespace

TEST_F(PanelVelocity, TheDialogShowsWhatIsInForceAndSetsItAtOnce) {
    Engine().WithExtras([](auto& extras) { extras.velocity.SetCurve({.shape = Shape::kHard, .least = 9}); });
    VelocitySettings dialog(*controls);
    EXPECT_EQ(In<QComboBox>(dialog, "velocityShape").currentText(), "Hard");
    EXPECT_EQ(In<QSpinBox>(dialog, "velocityLeast").value(), 9);
    EXPECT_FALSE(In<QSpinBox>(dialog, "velocityFixed").isEnabled());
    EXPECT_FALSE(In<QSpinBox>(dialog, "velocityMiddleX").isEnabled());
    In<QComboBox>(dialog, "velocityShape").setCurrentIndex(3);
    EXPECT_TRUE(In<QSpinBox>(dialog, "velocityFixed").isEnabled());
    In<QSpinBox>(dialog, "velocityFixed").setValue(77);
    EXPECT_EQ(Curve(), (VelocityCurve{.shape = Shape::kFixed, .fixed = 77, .least = 9}));
    In<QSpinBox>(dialog, "velocityLeast").setValue(127);
    In<QSpinBox>(dialog, "velocityGreatest").setValue(5);
    EXPECT_EQ(In<QSpinBox>(dialog, "velocityGreatest").value(), 127) << "not below the smallest";
    const VelocityCurve before = Curve();
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Curve(), before) << "another language changes nothing";
}

TEST_F(PanelVelocity, PointsAreMovedWithTheMouseAndByTheirNumbers) {
    VelocitySettings dialog(*controls);
    dialog.show();
    QApplication::processEvents();
    In<QComboBox>(dialog, "velocityShape").setCurrentIndex(4);
    auto& graph = In<VelocityGraph>(dialog, "velocityGraph");
    const auto drag = [&graph](int in, int out, int toIn, int toOut) {
        QTest::mousePress(&graph, Qt::LeftButton, {}, graph.placeOf(in, out).toPoint());
        QTest::mouseMove(&graph, graph.placeOf(toIn, toOut).toPoint());
        QTest::mouseRelease(&graph, Qt::LeftButton, {}, graph.placeOf(toIn, toOut).toPoint());
    };
    drag(64, 64, 40, 100);
    EXPECT_NEAR(Curve().middleX, 40, 1);
    EXPECT_NEAR(Curve().middleY, 100, 1);
    EXPECT_EQ(In<QSpinBox>(dialog, "velocityMiddleX").value(), Curve().middleX);
    drag(1, 1, 90, 30);
    EXPECT_NEAR(Curve().firstY, 30, 1);
    drag(127, 127, 127, 90);
    EXPECT_NEAR(Curve().lastY, 90, 1);
    In<QSpinBox>(dialog, "velocityMiddleY").setValue(12);
    EXPECT_EQ(Curve().middleY, 12);
    const VelocityCurve before = Curve();
    drag(80, 5, 10, 100);
    EXPECT_EQ(Curve(), before) << "no point is there";
}

TEST_F(PanelVelocity, TheLastNotesAreDots) {
    Engine().SetInputPortByName(kKeyboard);
    VelocitySettings dialog(*controls);
    auto& graph = In<VelocityGraph>(dialog, "velocityGraph");
    EXPECT_TRUE(graph.dots().empty());
    rig.GetKeyboard().Deliver(0x90, 60, 33);
    dialog.showTouches();
    EXPECT_EQ(graph.dots(), std::vector<QPoint>{QPoint(33, 33)});
}

TEST_F(PanelVelocity, TheHeightOfAClickIsTheVelocityUnlessItIsSwitchedOff) {
    const auto click = [this](int y) {
        rig.TakeWritten();
        QTest::mouseClick(&Piano(), Qt::LeftButton, {}, {5, y});
        return rig.TakeWritten().at(0);
    };
    const std::string soft = click(20);
    EXPECT_NE(soft, click(160));
    VelocitySettings dialog(*controls);
    auto& height = In<QCheckBox>(dialog, "velocityHeight");
    EXPECT_TRUE(height.isChecked());
    height.setChecked(false);
    EXPECT_EQ(click(20), "90 24 50");
    EXPECT_EQ(click(160), "90 24 50");
}
