// The strip of wheels and pedals beside the piano.
#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QWheelEvent>

#include <functional>
#include <map>

#include "engine/PanelWheels.h"
#include "nk/desktop/nk_pressed_input.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "support/Files.h"
#include "support/SynthModel.h"
#include "ui/parts/PanelGeometry.h"
#include "ui/parts/StripWheel.h"
#include "ui/parts/ViewSettings.h"
#include "ui/SplitMark.h"
#include "ui/WheelStrip.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;
using Kivora::PanelWheels;

namespace {

constexpr const char* kWheels[] = {"wheel-pitch", "wheel-modulation", "wheel-expression"};
constexpr const char* kPedals[] = {"pedal-soft", "pedal-sostenuto", "pedal-sustain"};

class PanelStrip : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) { synth.Play(event); };
        Switch();
        rig.TakeWritten();
    }
    void TearDown() override { rig.GetDevice(kSynth).onWrite = nullptr; }

    QAction& Entry(const QString& text) {
        for (QAction* action : Find<QMenu>("panel-menu").findChildren<QAction*>()) {
            if (action->text().remove('&') == text) {
                return *action;
            }
        }
        throw std::runtime_error(text.toStdString());
    }
    void Switch() {
        Entry("Show beside the Piano").trigger();
        QApplication::processEvents();
    }
    WheelStrip& Strip() { return Find<WheelStrip>("wheel-strip"); }
    StripWheel& Wheel(const char* name) { return Find<StripWheel>(name); }
    StripWheel& Pitch() { return Wheel("wheel-pitch"); }
    int Bend() {
        rig.RunPlayer();
        return synth.GetControls(0).wheel;
    }
    int Value(int controller) {
        rig.RunPlayer();
        return synth.GetControls(0).controller[static_cast<std::size_t>(controller)];
    }
    static QPoint Middle(const QWidget& widget) { return widget.rect().center(); }
    static void MoveTo(QWidget& widget, double y) {
        QMouseEvent move(QEvent::MouseMove, QPointF(widget.width() / 2.0, y),
                         widget.mapToGlobal(QPointF(widget.width() / 2.0, y)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&widget, &move);
    }
    /// Takes the wheel in its middle and turns it by so many pixels, up where that is more than 0.
    static void Drag(StripWheel& wheel, double up) {
        const QPoint from = Middle(wheel);
        QTest::mousePress(&wheel, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 4; ++step) {
            MoveTo(wheel, from.y() - up * step / 4.0);
        }
    }
    static void LetGo(StripWheel& wheel) { QTest::mouseRelease(&wheel, Qt::LeftButton, {}, Middle(wheel)); }
    void ExpectCentred(const char* when) {
        EXPECT_EQ(Bend(), PanelWheels::kPitchCentre) << when;
        EXPECT_EQ(Pitch().value(), 0) << when;
        EXPECT_FALSE(Pitch().isSliderDown()) << when;
    }
    void SendKey(QEvent::Type type, Qt::Key key, quint64 timeMs, bool repeat = false) {
        constexpr quint32 kScanCode = 111;
        QKeyEvent event(type, key, Qt::NoModifier, kScanCode, 0, 0, QString(), repeat);
        event.setTimestamp(timeMs);
        QApplication::sendEvent(&Pitch(), &event);
    }
    NK::CString ViewPath() { return NK::CString::FromUtf8((rig.folder / "user/View.ini").string()); }

    SynthModel synth;
};

TEST_F(PanelStrip, IsOffUntilItIsWantedAndThePanelIsAsDesignedAgainAfterIt) {
    Switch();
    EXPECT_FALSE(Strip().isVisible());
    Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
    const QImage before = panel->grab().toImage();
    EXPECT_EQ(Piano().geometry(), PanelGeometry::kPiano);
    Switch();
    EXPECT_TRUE(Strip().isVisible());
    EXPECT_EQ(Piano().geometry(), PanelGeometry::BesideStrip(PanelGeometry::kPiano));
    EXPECT_NE(panel->grab().toImage(), before);
    Switch();
    EXPECT_EQ(Piano().geometry(), PanelGeometry::kPiano);
    EXPECT_EQ(panel->grab().toImage(), before);
}

TEST_F(PanelStrip, TheChoiceIsKeptAndTheDefaultIsNotWritten) {
    EXPECT_TRUE(ViewSettings::Read(ViewPath()).showsWheels);
    CloseWindow();
    ShowPanel();
    EXPECT_TRUE(Strip().isVisible()) << "at the next start";
    CloseWindow();
    WriteFileBytes(rig.folder / "user/View.ini", "[View]\nLater=7\n");
    ShowPanel();
    EXPECT_FALSE(Strip().isVisible());
    panel->setWantedScale(1.25);
    EXPECT_EQ(ReadFileBytes(rig.folder / "user/View.ini").find("Wheels"), std::string::npos);
    Type(Qt::Key_W, Qt::AltModifier);
    EXPECT_TRUE(ViewSettings::Read(ViewPath()).showsWheels);
    EXPECT_NE(ReadFileBytes(rig.folder / "user/View.ini").find("Later=7"), std::string::npos);
    Type(Qt::Key_W, Qt::AltModifier);
    EXPECT_FALSE(ViewSettings::Read(ViewPath()).showsWheels);
}

TEST_F(PanelStrip, EverythingAboveTheKeysFollowsThem) {
    Click("voice-mode-split");
    for (const double scale : {1.0, 0.68, 1.25}) {
        panel->setPanelScale(scale);
        window->setFixedSize(panel->sizeHint());
        QApplication::processEvents();
        const auto& hints = Find<QPianoPCKeyHelpBar>("hint-bar");
        const auto& mark = Find<SplitMark>("split-mark");
        EXPECT_NEAR(hints.x() + hints.centreOf(60), Piano().x() + Piano().keyRect(60).center().x(), 1.0) << scale;
        EXPECT_NEAR(mark.x() + mark.handleX(), Piano().x() + Piano().keyRect(60).left(), 1.0) << scale;
        EXPECT_LT(Strip().geometry().right(), Piano().x()) << scale;
        EXPECT_EQ(Strip().geometry().bottom(), Piano().geometry().bottom()) << scale;
        Drag(Wheel("wheel-modulation"), 500.0);
        LetGo(Wheel("wheel-modulation"));
        EXPECT_EQ(Value(1), 127) << scale;
        Drag(Wheel("wheel-modulation"), -500.0);
        LetGo(Wheel("wheel-modulation"));
        EXPECT_EQ(Value(1), 0) << scale;
    }
}

TEST_F(PanelStrip, ThePitchIsBentFromItsCentreAndSpringsBack) {
    Drag(Pitch(), 0.0);
    EXPECT_EQ(Bend(), PanelWheels::kPitchCentre) << "taken and not turned";
    LetGo(Pitch());
    Drag(Pitch(), 10.0);
    EXPECT_GT(Bend(), PanelWheels::kPitchCentre);
    EXPECT_LT(Bend(), PanelWheels::kPitchCentre + 2000);
    const int little = Bend();
    MoveTo(Pitch(), Middle(Pitch()).y() - 10.5);
    EXPECT_GT(Bend(), little) << "less than a pixel";
    EXPECT_LT(Bend(), little + 128) << "in 14 bits";
    MoveTo(Pitch(), -1000);
    EXPECT_EQ(Bend(), PanelWheels::kPitchHighest);
    MoveTo(Pitch(), 1000);
    EXPECT_EQ(Bend(), 0);
    LetGo(Pitch());
    ExpectCentred("let go");
    QTest::mouseDClick(&Pitch(), Qt::LeftButton, {}, Middle(Pitch()));
    MoveTo(Pitch(), 0.0);
    EXPECT_EQ(Bend(), PanelWheels::kPitchHighest) << "the second press of a double click takes it too";
    LetGo(Pitch());
    ExpectCentred("after a double click");
}

TEST_F(PanelStrip, WhateverEndsAHoldCentresThePitch) {
    const std::vector<std::pair<const char*, std::function<void()>>> ways{
        {"a panic", [this] { Type(Qt::Key_F12); }},
        {"the strip is hidden",
         [this] {
             Switch();
             Switch();
         }},
        {"the panel is hidden",
         [this] {
             panel->hide();
             panel->show();
         }},
        {"another window is active",
         [this] {
             QWidget other;
             other.show();
             other.activateWindow();
             ASSERT_TRUE(QTest::qWaitForWindowActive(&other, kWaitMs));
             window->activateWindow();
             ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), kWaitMs));
         }},
        {"a menu",
         [this] {
             OnPopUp([](QWidget&) {});
             Type(Qt::Key_F10);
             Wait([] { return QApplication::activePopupWidget() == nullptr; });
         }},
        {"a dialog",
         [this] {
             ModalAnswers answers;
             answers.Refuse();
             panel->settingsClicked();
         }},
        {"the grab of the mouse is lost",
         [this] {
             QEvent lost(QEvent::UngrabMouse);
             QApplication::sendEvent(&Pitch(), &lost);
         }},
        {"the button is up", [this] { panel->releaseAllBut({}); }},
        {"the pointer moves without a button",
         [this] {
             QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), Pitch().mapToGlobal(QPointF(5, 5)), Qt::NoButton,
                              Qt::NoButton, {});
             QApplication::sendEvent(&Pitch(), &move);
         }},
        {"it is disabled",
         [this] {
             Pitch().setEnabled(false);
             Pitch().setEnabled(true);
         }},
    };
    for (const auto& [name, way] : ways) {
        Drag(Pitch(), 30.0);
        ASSERT_GT(Bend(), PanelWheels::kPitchCentre) << name;
        way();
        ExpectCentred(name);
        MoveTo(Pitch(), 0.0);
        ExpectCentred(name);
        LetGo(Pitch());
        QApplication::processEvents();
    }
    Drag(Pitch(), 30.0);
    CloseWindow();
    EXPECT_EQ(Bend(), PanelWheels::kPitchCentre) << "the window is closed";
}

TEST_F(PanelStrip, ATakeThatIsStoppedWhileThePitchIsBentEndsInItsCentre) {
    ASSERT_TRUE(controls->StartRecording());
    Drag(Pitch(), 30.0);
    ASSERT_GT(Bend(), PanelWheels::kPitchCentre);
    ModalAnswers answers;
    answers.Refuse();
    panel->onStopRecording();
    int last = -1;
    Engine().GetCapture()->GetCaptured().Visit(0, [&last](const LibMidi::CapturedEvent& event) {
        last = event.message.status == 0xE0 ? event.message.GetPitchWheel() : last;
    });
    EXPECT_EQ(last, PanelWheels::kPitchCentre);
    LetGo(Pitch());
}

TEST_F(PanelStrip, TheOtherWheelsStayAndADoubleClickBringsThemToRest) {
    Drag(Wheel("wheel-modulation"), 30.0);
    LetGo(Wheel("wheel-modulation"));
    Drag(Wheel("wheel-expression"), -30.0);
    LetGo(Wheel("wheel-expression"));
    EXPECT_NEAR(Value(1), 32, 2);
    EXPECT_NEAR(Value(11), 95, 2);
    for (const char* name : {"wheel-modulation", "wheel-expression"}) {
        QTest::mouseDClick(&Wheel(name), Qt::LeftButton, {}, Middle(Wheel(name)));
        QTest::mouseRelease(&Wheel(name), Qt::LeftButton, {}, Middle(Wheel(name)));
    }
    EXPECT_EQ(Value(1), 0);
    EXPECT_EQ(Value(11), 127);
}

TEST_F(PanelStrip, TheWheelOfTheMouseTurnsThoseThatStay) {
    const auto turn = [&](const char* name, int angle) {
        auto& wheel = Wheel(name);
        QWheelEvent event(QPointF(Middle(wheel)), wheel.mapToGlobal(QPointF(Middle(wheel))), {}, QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&wheel, &event);
    };
    turn("wheel-modulation", 240);
    EXPECT_EQ(Value(1), 8);
    for (int i = 0; i < 8; ++i) {
        turn("wheel-modulation", -15);
    }
    EXPECT_EQ(Value(1), 4) << "in parts of a notch";
    turn("wheel-expression", -120);
    EXPECT_EQ(Value(11), 123);
    turn("wheel-pitch", 480);
    ExpectCentred("the wheel of a mouse is not let go of");
}

TEST_F(PanelStrip, KeysTurnThoseThatStay) {
    Wheel("wheel-modulation").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Up);
    EXPECT_EQ(Value(1), 1);
    Type(Qt::Key_PageUp);
    EXPECT_EQ(Value(1), 17);
    Type(Qt::Key_Left);
    EXPECT_EQ(Value(1), 16);
    Type(Qt::Key_End);
    EXPECT_EQ(Value(1), 127);
    Type(Qt::Key_Home);
    EXPECT_EQ(Value(1), 0);
    Wheel("wheel-expression").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_PageDown);
    EXPECT_EQ(Value(11), 111);
    Type(Qt::Key_End);
    EXPECT_EQ(Value(11), 0);
    Type(Qt::Key_Home);
    EXPECT_EQ(Value(11), 127);
    rig.TakeWritten();
    Press(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{"90 3c 50"}) << "other keys play";
    Release(Qt::Key_Z);
}

TEST_F(PanelStrip, AHeldArrowBendsFurtherWithEachRepeatAndSpringsBackAtItsRelease) {
    Pitch().setFocus(Qt::TabFocusReason);
    SendKey(QEvent::KeyPress, Qt::Key_Up, 1000);
    const int first = Bend();
    EXPECT_GT(first, PanelWheels::kPitchCentre);
    SendKey(QEvent::KeyRelease, Qt::Key_Up, 1030, true);
    SendKey(QEvent::KeyPress, Qt::Key_Up, 1030, true);
    const int second = Bend();
    EXPECT_GT(second, first);
    rig.TakeWritten();
    for (quint64 time = 1060; time < 1600; time += 30) {  // as most repeats come on X11
        SendKey(QEvent::KeyRelease, Qt::Key_Up, time);
        SendKey(QEvent::KeyPress, Qt::Key_Up, time, true);
        EXPECT_GE(Bend(), second) << "it does not spring back between";
    }
    EXPECT_EQ(Bend(), PanelWheels::kPitchHighest);
    SendKey(QEvent::KeyRelease, Qt::Key_Up, 1630);
    Wait([&] { return Bend() == PanelWheels::kPitchCentre; });
    ExpectCentred("released");
    SendKey(QEvent::KeyPress, Qt::Key_PageDown, 2000);
    EXPECT_EQ(Bend(), 0);
    SendKey(QEvent::KeyPress, Qt::Key_Home, 2010);
    ExpectCentred("home");
    SendKey(QEvent::KeyRelease, Qt::Key_PageDown, 2020);
    ExpectCentred("home");
}

TEST_F(PanelStrip, AHeldArrowIsHeldForAsLongAsTheServerSaysSoWhateverTheMouseDoes) {
    constexpr std::size_t kScanCode = 111;
    Pitch().setFocus(Qt::TabFocusReason);
    SendKey(QEvent::KeyPress, Qt::Key_PageUp, 1000);
    NK::TPressedInput down;
    down.keys.set(kScanCode);
    panel->releaseAllBut(down);
    EXPECT_EQ(Bend(), PanelWheels::kPitchHighest);
    down.keys.reset();
    down.buttons = 1;
    panel->releaseAllBut(down);
    ExpectCentred("the key is up");
}

TEST_F(PanelStrip, AFingerHoldsTheWheelWhileTheServerIsAsked) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QWindow* const handle = window->windowHandle();
    const QPoint place = Pitch().mapTo(window.get(), Middle(Pitch()));
    QTest::touchEvent(handle, screen.get()).press(0, place, handle);
    QTest::touchEvent(handle, screen.get()).move(0, place - QPoint(0, 30), handle);
    const int bent = Bend();
    EXPECT_GT(bent, PanelWheels::kPitchCentre);
    panel->releaseAllBut({});
    EXPECT_EQ(Bend(), bent);
    QTest::touchEvent(handle, screen.get()).release(0, place, handle);
    ExpectCentred("the finger is lifted");
}

TEST_F(PanelStrip, AHeldArrowEndsWithTheFocus) {
    Pitch().setFocus(Qt::TabFocusReason);
    Press(Qt::Key_Down);
    EXPECT_LT(Bend(), PanelWheels::kPitchCentre);
    Wheel("wheel-modulation").setFocus(Qt::TabFocusReason);
    ExpectCentred("the focus is elsewhere");
    Release(Qt::Key_Down);
    ExpectCentred("the focus is elsewhere");
}

TEST_F(PanelStrip, AHiddenWheelGivesTheFocusToThePanel) {
    Pitch().setFocus(Qt::TabFocusReason);
    Switch();
    EXPECT_EQ(QApplication::focusWidget(), panel);
}

TEST_F(PanelStrip, PedalsStayDownUntilTheyArePressedAgain) {
    const std::map<const char*, int> pedals{{"pedal-soft", 67}, {"pedal-sostenuto", 66}, {"pedal-sustain", 64}};
    for (const auto& [name, controller] : pedals) {
        Click(name);
        EXPECT_EQ(Value(controller), 127) << name;
        QApplication::processEvents();
        EXPECT_TRUE(Button(name).isChecked()) << name;
    }
    Click("pedal-soft");
    EXPECT_EQ(Value(67), 0);
    Button("pedal-soft").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Return);
    EXPECT_EQ(Value(67), 127);
    Switch();
    for (const auto& [name, controller] : pedals) {
        EXPECT_EQ(Value(controller), 0) << name << ": out of sight";
    }
    QApplication::processEvents();
    for (const char* name : kPedals) {
        EXPECT_FALSE(Button(name).isChecked()) << name;
    }
}

TEST_F(PanelStrip, AHiddenStripLeavesTheFootOnItsPedal) {
    Press(Qt::Key_Space);
    QApplication::processEvents();
    EXPECT_TRUE(Button("pedal-sustain").isChecked());
    Switch();
    EXPECT_EQ(Value(64), 127);
    Release(Qt::Key_Space);
    EXPECT_EQ(Value(64), 0);
}

TEST_F(PanelStrip, AHiddenStripLeavesSpaceOnThePedalThatItHadPressedToo) {
    Click("pedal-sustain");
    QApplication::processEvents();
    Press(Qt::Key_Space);
    QApplication::processEvents();
    Switch();
    EXPECT_EQ(Value(64), 127) << "Space is held";
    Release(Qt::Key_Space);
    EXPECT_EQ(Value(64), 0);
}

TEST_F(PanelStrip, ThePedalGoesUpWithTheLastThatHoldsIt) {
    Click("pedal-sustain");
    Press(Qt::Key_Space);
    Release(Qt::Key_Space);
    QApplication::processEvents();
    EXPECT_EQ(Value(64), 127) << "it was pressed on the strip";
    EXPECT_TRUE(Button("pedal-sustain").isChecked());
    Press(Qt::Key_Space);
    Click("pedal-sustain");
    QApplication::processEvents();
    EXPECT_EQ(Value(64), 127) << "Space is held";
    EXPECT_TRUE(Button("pedal-sustain").isChecked());
    Release(Qt::Key_Space);
    QApplication::processEvents();
    EXPECT_EQ(Value(64), 0);
    EXPECT_FALSE(Button("pedal-sustain").isChecked());
}

TEST_F(PanelStrip, APedalThatWasPressedBeforeASilenceIsLiftedWhenTheStripIsHidden) {
    Click("pedal-sustain");
    controls->AllNotesOff();
    QApplication::processEvents();
    EXPECT_EQ(Value(64), 127);
    Switch();
    EXPECT_EQ(Value(64), 0);
}

TEST_F(PanelStrip, FollowsWhatAKeyboardMovesAndSendsNothingOfIt) {
    Engine().SetInputPortByName(kKeyboard);
    rig.GetKeyboard().Deliver(0xE5, 0x7F, 0x7F);
    rig.GetKeyboard().Deliver(0xB5, 1, 60);
    rig.GetKeyboard().Deliver(0xB5, 11, 61);
    rig.GetKeyboard().Deliver(0xB5, 67, 127);
    rig.GetKeyboard().Deliver(0xB5, 64, 127);
    rig.TakeWritten();
    QApplication::processEvents();
    EXPECT_EQ(Pitch().value(), 8191);
    EXPECT_EQ(Wheel("wheel-modulation").value(), 60);
    EXPECT_EQ(Wheel("wheel-expression").value(), 61);
    EXPECT_TRUE(Button("pedal-soft").isChecked());
    EXPECT_TRUE(Button("pedal-sustain").isChecked());
    EXPECT_FALSE(Button("pedal-sostenuto").isChecked());
    Switch();
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{}) << "it is the keyboard's";
    Switch();
    rig.GetKeyboard().Deliver(0xB5, 121, 0);
    QApplication::processEvents();
    EXPECT_FALSE(Button("pedal-sustain").isChecked());
    EXPECT_EQ(Pitch().value(), 0);
    EXPECT_EQ(Wheel("wheel-modulation").value(), 0);
    EXPECT_EQ(Wheel("wheel-expression").value(), 127);
    EXPECT_FALSE(Button("pedal-soft").isChecked());
}

TEST_F(PanelStrip, OneThatIsHeldDoesNotFollow) {
    Engine().SetInputPortByName(kKeyboard);
    Drag(Wheel("wheel-modulation"), 30.0);
    const int held = Wheel("wheel-modulation").value();
    rig.GetKeyboard().Deliver(0xB5, 1, 127);
    QApplication::processEvents();
    EXPECT_EQ(Wheel("wheel-modulation").value(), held);
    LetGo(Wheel("wheel-modulation"));
    EXPECT_EQ(Wheel("wheel-modulation").value(), 127) << "once it is let go of";
    Drag(Pitch(), 0.0);
    rig.GetKeyboard().Deliver(0xE5, 0, 0);
    QApplication::processEvents();
    ASSERT_EQ(Bend(), 0);
    LetGo(Pitch());
    ExpectCentred("let go of");
}

TEST_F(PanelStrip, APanicIsShown) {
    Drag(Wheel("wheel-modulation"), 30.0);
    LetGo(Wheel("wheel-modulation"));
    Click("pedal-sustain");
    Click("reset");
    QApplication::processEvents();
    EXPECT_EQ(Value(1), 0);
    EXPECT_EQ(Wheel("wheel-modulation").value(), 0);
    EXPECT_FALSE(Button("pedal-sustain").isChecked());
}

TEST_F(PanelStrip, AFingerOnTheWheelBendsWhileOthersPlay) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QWindow* const handle = window->windowHandle();
    const auto at = [&](QWidget& widget, const QPoint& place) { return widget.mapTo(window.get(), place); };
    const QPoint wheel = Middle(Pitch());
    const QPoint key(qRound(Piano().keyRect(60).center().x()), Piano().height() - 20);
    QTest::touchEvent(handle, screen.get()).press(0, at(Pitch(), wheel), handle);
    QTest::touchEvent(handle, screen.get())
        .move(0, at(Pitch(), wheel - QPoint(0, 30)), handle)
        .press(1, at(Piano(), key), handle);
    EXPECT_GT(Bend(), PanelWheels::kPitchCentre);
    EXPECT_TRUE(synth.IsPressed(0, 60));
    const int bent = Bend();
    QTest::touchEvent(handle, screen.get())
        .move(0, at(Pitch(), wheel - QPoint(0, 40)), handle)
        .stationary(1)
        .press(2, at(Button("pedal-soft"), Middle(Button("pedal-soft"))), handle);
    EXPECT_GT(Bend(), bent);
    EXPECT_EQ(Value(67), 127);
    QTest::touchEvent(handle, screen.get())
        .stationary(0)
        .release(1, at(Piano(), key), handle)
        .release(2, at(Button("pedal-soft"), Middle(Button("pedal-soft"))), handle);
    EXPECT_GT(Bend(), bent);
    EXPECT_FALSE(synth.IsPressed(0, 60));
    QTest::touchEvent(handle, screen.get()).release(0, at(Pitch(), wheel - QPoint(0, 40)), handle);
    ExpectCentred("the finger is lifted");
}

TEST_F(PanelStrip, IsWhollyReachedByTabBeforeThePiano) {
    Find("about").setFocus(Qt::TabFocusReason);
    for (const char* name : {kWheels[0], kWheels[1], kWheels[2], kPedals[0], kPedals[1], kPedals[2], "piano"}) {
        Type(Qt::Key_Tab);
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
    }
}

TEST_F(PanelStrip, ScreenReadersAreToldWhatItIsInBothLanguages) {
    QAccessibleInterface* const pitch = QAccessible::queryAccessibleInterface(&Pitch());
    EXPECT_EQ(pitch->role(), QAccessible::Slider);
    EXPECT_EQ(pitch->text(QAccessible::Name), "Pitch bend");
    EXPECT_EQ(pitch->text(QAccessible::Description), "0%");
    Drag(Pitch(), 1000.0);
    EXPECT_EQ(pitch->text(QAccessible::Description), "100%");
    LetGo(Pitch());
    ASSERT_NE(pitch->valueInterface(), nullptr);
    pitch->valueInterface()->setCurrentValue(5000);
    ExpectCentred("nothing would let go of it");
    QAccessibleInterface* const expression = QAccessible::queryAccessibleInterface(&Wheel("wheel-expression"));
    expression->valueInterface()->setCurrentValue(64);
    EXPECT_EQ(Value(11), 64);
    EXPECT_EQ(expression->text(QAccessible::Description), "50%");
    QAccessibleInterface* const soft = QAccessible::queryAccessibleInterface(&Button("pedal-soft"));
    EXPECT_TRUE(soft->state().checkable);
    std::vector<QString> names;
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        for (QWidget* control : Strip().controls()) {
            names.push_back(control->accessibleName());
            EXPECT_TRUE(control->toolTip().startsWith(control->accessibleName())) << locale;
        }
    }
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NE(names[i], names[i + 6]);
    }
}

TEST_F(PanelStrip, TheBendRangeIsChosenInTheMenu) {
    Entry(QString(QChar(0xB1)) + "12").trigger();
    EXPECT_EQ(controls->GetBendRange(), 12);
    EXPECT_EQ(Value(6), 12);
    OnPopUp([&](QWidget&) {
        EXPECT_TRUE(Entry(QString(QChar(0xB1)) + "12").isChecked());
        EXPECT_FALSE(Entry(QString(QChar(0xB1)) + "2").isChecked());
    });
    Type(Qt::Key_F10);
    Wait([] { return QApplication::activePopupWidget() == nullptr; });
}

}  // namespace
