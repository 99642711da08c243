// What is held on the panel when releases go elsewhere.
#include "widget/ui/PanelRig.h"

#include <QAbstractSlider>

#include "nk/desktop/nk_pressed_input.h"

using namespace KivoraTest;

namespace {

using Written = std::vector<std::string>;

class PanelLetsGo : public PanelTest {
protected:
    /// A drag that goes on with the right button, as Qt sends it.
    static void DragWithTheRightButton(QWidget& control, const QPoint& from, const QPoint& to) {
        for (const QPoint& at : {from, to}) {
            QMouseEvent move(QEvent::MouseMove, at, control.mapToGlobal(at), Qt::NoButton, Qt::RightButton,
                             Qt::NoModifier);
            QApplication::sendEvent(&control, &move);
        }
    }
    /// Presses the control, lets the release go elsewhere in that way, and drags on.
    void ExpectLetGo(const char* name, const QPoint& at, const std::function<void()>& way) {
        SCOPED_TRACE(name);
        auto& control = Find<QAbstractSlider>(name);
        QTest::mousePress(&control, Qt::LeftButton, {}, at);
        EXPECT_TRUE(control.isSliderDown());
        way();
        EXPECT_FALSE(control.isSliderDown());
        const int value = control.value();
        DragWithTheRightButton(control, at, at + QPoint(12, 12));
        EXPECT_EQ(control.value(), value);
        QTest::mouseRelease(&control, Qt::LeftButton, {}, at);
    }
    /// Every dial and slider of the panel, by a way of losing the release.
    void ExpectAllLetGo(const std::function<void()>& way) {
        ExpectLetGo("jog", QPoint(20, 40), way);
        const auto& gate = Find<QAbstractSlider>("durationPcSlider");
        // The handle stands where the value is.
        const int x = 5 + (gate.width() - 10) * (gate.value() - gate.minimum()) / (gate.maximum() - gate.minimum());
        ExpectLetGo("durationPcSlider", QPoint(x, gate.height() / 2), way);
    }
};

TEST_F(PanelLetsGo, ADialogLetsGoOfDialsAndSliders) {
    ModalAnswers answers;
    ExpectAllLetGo([&] {
        answers.Refuse();
        panel->settingsClicked();
    });
    EXPECT_TRUE(answers.AllGiven());
}

TEST_F(PanelLetsGo, ABoxThatComesByItselfLetsGoOfThem) {
    ModalAnswers answers;
    ExpectAllLetGo([&] {
        answers.Refuse();
        QDialog box(window.get());
        box.exec();
    });
}

TEST_F(PanelLetsGo, AMenuLetsGoOfThem) {
    ExpectAllLetGo([&] {
        OnPopUp([](QWidget&) {});
        Type(Qt::Key_F10);
        Wait([] { return QApplication::activePopupWidget() == nullptr; });
    });
}

TEST_F(PanelLetsGo, HidingLetsGoOfThem) {
    ExpectAllLetGo([&] {
        panel->hide();
        panel->show();
    });
}

TEST_F(PanelLetsGo, AControlThatIsHiddenAloneIsLetGoOf) {
    auto& gate = Find<QAbstractSlider>("durationPcSlider");
    gate.setSliderDown(true);
    auto& jog = Find<QAbstractSlider>("jog");
    jog.setSliderDown(true);
    Click("arpeggio-view");
    EXPECT_FALSE(gate.isVisible());
    EXPECT_FALSE(gate.isSliderDown());
    EXPECT_TRUE(jog.isSliderDown());
    jog.setSliderDown(false);
}

TEST_F(PanelLetsGo, LosingTheKeyboardLetsGoOfThem) {
    ExpectAllLetGo([&] {
        QWidget other;
        other.show();
        other.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other, kWaitMs));
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), kWaitMs));
    });
}

TEST_F(PanelLetsGo, WhatIsUpIsEndedThoughNoReleaseWasTold) {
    constexpr quint32 kZ = 52;
    constexpr quint32 kSpace = 65;
    const auto press = [&](Qt::Key key, quint32 scanCode) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, scanCode, 0, 0);
        QApplication::sendEvent(panel, &event);
    };
    press(Qt::Key_Z, kZ);
    press(Qt::Key_Space, kSpace);
    QTest::mousePress(&Find("jog"), Qt::LeftButton, {}, QPoint(20, 40));
    QTest::mousePress(&Button("plus"), Qt::LeftButton);
    rig.TakeWritten();
    NK::TPressedInput down;
    down.keys.set(kZ).set(kSpace);
    down.buttons = 1;
    panel->releaseAllBut(down);
    EXPECT_EQ(rig.TakeWritten(), Written{});
    EXPECT_TRUE(Button("plus").isDown());
    down.keys.reset(kZ);
    panel->releaseAllBut(down);
    EXPECT_EQ(rig.TakeWritten(), Written{"80 3c 00"});
    EXPECT_TRUE(Find<QAbstractSlider>("jog").isSliderDown());
    panel->releaseAllBut({});
    EXPECT_EQ(rig.TakeWritten(), (Written{"b0 40 00", "b1 40 00", "b2 40 00"}));
    EXPECT_FALSE(Find<QAbstractSlider>("jog").isSliderDown());
    EXPECT_FALSE(Button("plus").isDown());
}

}  // namespace
