// The computer keyboard on the panel: what plays, what changes values, where keys and the focus go.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <memory>
#include <QAbstractSlider>
#include <QComboBox>

#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "support/SynthModel.h"
#include "ui/parts/PanelKey.h"

using namespace KivoraTest;

namespace {

using Written = std::vector<std::string>;

class PanelKeys : public PanelTest {
protected:
    QPianoPCKeyHelpBar& HintBar() { return Find<QPianoPCKeyHelpBar>("hint-bar"); }
    /// As a key that the system repeats sends it.
    bool SendKey(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, bool autoRepeat) {
        QKeyEvent event(type, key, modifiers, QString(), autoRepeat);
        QApplication::sendEvent(panel, &event);
        return event.isAccepted();
    }
    /// The controls that Tab reaches, in its order, by object name.
    std::vector<std::string> TabOrder() {
        panel->setFocus();
        std::vector<std::string> names;
        do {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QWidget* const focused = QApplication::focusWidget();
            if (focused == nullptr || focused == panel) {
                break;
            }
            const QWidget* const parent = focused->parentWidget();
            names.push_back((parent == panel ? "" : parent->objectName().toStdString() + "/") +
                            focused->objectName().toStdString());
        } while (names.size() < 100);
        return names;
    }
};

TEST_F(PanelKeys, ZPlays60AtTheThreeLevels) {
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 3c 50", "80 3c 00"}));
    Type(Qt::Key_Z, Qt::ShiftModifier);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 3c 7f", "80 3c 00"}));
    Type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 3c 28", "80 3c 00"}));
}

TEST_F(PanelKeys, WithCtrlTheActiveLayoutsCharacterCountsNotTheLatinOneOfAnother) {
    constexpr quint32 kCyrillicYa = 0x06D1;  // on the key of Z
    const auto playQ = [&] {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Q, Qt::ControlModifier, 0, kCyrillicYa, 0);
            QApplication::sendEvent(panel, &event);
        }
        return rig.TakeWritten();
    };
    EXPECT_EQ(playQ(), (Written{"90 48 28", "80 48 00"})) << "no localized keyboard in English";
    Kivora::SetLocale("ru_RU", false);
    EXPECT_EQ(playQ(), (Written{"90 3c 28", "80 3c 00"}));
}

TEST_F(PanelKeys, KeysWithoutANoteAreLeftToOthers) {
    EXPECT_TRUE(SendKey(QEvent::KeyPress, Qt::Key_Z, {}, false));
    EXPECT_TRUE(SendKey(QEvent::KeyRelease, Qt::Key_Z, {}, false));
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_A, {}, false));
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_Insert, {}, false));
    EXPECT_FALSE(SendKey(QEvent::KeyRelease, Qt::Key_A, {}, false));
}

TEST_F(PanelKeys, NothingIsPlayedWhileAnotherWindowIsActive) {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, kWaitMs));
    EXPECT_FALSE(SendKey(QEvent::KeyPress, Qt::Key_Z, {}, false));
    EXPECT_EQ(rig.TakeWritten(), Written{});
}

/// A key as the system tells it: with the code of its place and the time in ms.
class PlacedKey {
public:
    PlacedKey(KivoraWidget& panel, Qt::Key key, quint32 scanCode) : panel_(panel), key_(key), scanCode_(scanCode) {}
    void Press(quint64 timeMs) { Send(QEvent::KeyPress, timeMs); }
    void Release(quint64 timeMs) { Send(QEvent::KeyRelease, timeMs); }

private:
    void Send(QEvent::Type type, quint64 timeMs) {
        QKeyEvent event(type, key_, {}, scanCode_, 0, 0);
        event.setTimestamp(timeMs);
        QApplication::sendEvent(&panel_, &event);
    }

    KivoraWidget& panel_;
    Qt::Key key_;
    quint32 scanCode_;
};

TEST_F(PanelKeys, ARepeatedKeyPlaysOnce) {
    SendKey(QEvent::KeyPress, Qt::Key_Z, {}, false);
    for (int i = 0; i < 5; ++i) {
        SendKey(QEvent::KeyRelease, Qt::Key_Z, {}, true);
        SendKey(QEvent::KeyPress, Qt::Key_Z, {}, true);
    }
    SendKey(QEvent::KeyRelease, Qt::Key_Z, {}, false);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 3c 50", "80 3c 00"}));
}

TEST_F(PanelKeys, SpaceIsThePedalAndEscapeAndDeleteArePanic) {
    Press(Qt::Key_Space);
    EXPECT_EQ(rig.TakeWritten(), (Written{"b0 40 7f", "b1 40 7f", "b2 40 7f"}));
    Release(Qt::Key_Space);
    EXPECT_EQ(rig.TakeWritten(), (Written{"b0 40 00", "b1 40 00", "b2 40 00"}));
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Delete}) {
        Type(key);
        const Written written = rig.TakeWritten();
        EXPECT_NE(std::find(written.begin(), written.end(), "ff"), written.end());
    }
}

TEST_F(PanelKeys, AltWithMinusAndPlusActsAsTheValueKeysRepeatsIncluded) {
    Click("tempo");
    Engine().SetTempo(100);
    rig.TakeWritten();
    for (const int key : {Qt::Key_Equal, Qt::Key_Plus}) {
        EXPECT_TRUE(SendKey(QEvent::KeyPress, key, Qt::AltModifier, false));
        EXPECT_TRUE(SendKey(QEvent::KeyPress, key, Qt::AltModifier, true));
        EXPECT_TRUE(SendKey(QEvent::KeyPress, key, Qt::AltModifier, true));
        SendKey(QEvent::KeyRelease, key, Qt::AltModifier, false);
    }
    EXPECT_EQ(Engine().GetTempo(), 106);
    EXPECT_TRUE(Find<PanelKey>("plus").isOn());
    for (const int key : {Qt::Key_Minus, Qt::Key_Underscore}) {
        SendKey(QEvent::KeyPress, key, Qt::AltModifier, false);
        SendKey(QEvent::KeyPress, key, Qt::AltModifier, true);
        SendKey(QEvent::KeyRelease, key, Qt::AltModifier, false);
    }
    EXPECT_EQ(Engine().GetTempo(), 102);
    EXPECT_TRUE(Find<PanelKey>("minus").isOn());
    SendKey(QEvent::KeyPress, Qt::Key_Z, Qt::AltModifier, false);
    SendKey(QEvent::KeyRelease, Qt::Key_Z, Qt::AltModifier, false);
    EXPECT_EQ(rig.TakeWritten(), Written{}) << "with ALT no key plays";
}

TEST_F(PanelKeys, TheOctaveKeysShiftTheKeysAndTheHintBarTogether) {
    EXPECT_EQ(Label("octave-value"), "0");
    EXPECT_EQ(HintBar().label(60), "Z");
    EXPECT_EQ(HintBar().label(72), "Q");
    EXPECT_EQ(HintBar().label(73), "2");
    Click("octave-up");
    EXPECT_EQ(Label("octave-value"), "+1");
    EXPECT_EQ(HintBar().octaveShift(), 12);
    EXPECT_EQ(HintBar().label(72), "Z");
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 48 50", "80 48 00"}));
    Click("octave-down");
    Click("octave-down");
    EXPECT_EQ(Label("octave-value"),
              "\xE2\x88\x92"
              "1");
    EXPECT_EQ(HintBar().octaveShift(), -12);
    EXPECT_EQ(HintBar().label(48), "Z");
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 30 50", "80 30 00"}));
}

TEST_F(PanelKeys, TheOctaveShiftGoesFromMinusThreeToPlusThreeOctaves) {
    for (int i = 0; i < 5; ++i) {
        Click("octave-up");
    }
    EXPECT_EQ(HintBar().octaveShift(), 36);
    EXPECT_EQ(Label("octave-value"), "+3");
    Type(Qt::Key_BracketRight);  // 91 + 36 is one of the 128 notes
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 7f 50", "80 7f 00"}));
    for (int i = 0; i < 9; ++i) {
        Click("octave-down");
    }
    EXPECT_EQ(HintBar().octaveShift(), -36);
    EXPECT_EQ(Label("octave-value"),
              "\xE2\x88\x92"
              "3");
    Type(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 18 50", "80 18 00"}));
}

TEST_F(PanelKeys, TheOctaveKeysEndTheKeysThatAreHeld) {
    Press(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), Written{"90 3c 50"});
    Click("octave-up");
    EXPECT_EQ(rig.TakeWritten(), Written{"80 3c 00"});
    Release(Qt::Key_Z);
}

TEST_F(PanelKeys, TabGoesThroughTheControlsInReadingOrder) {
    std::vector<std::string> expected = {"voice-mode-single",
                                         "voice-mode-dual",
                                         "voice-mode-split",
                                         "record-view",
                                         "tempo",
                                         "metronome",
                                         "octave-down",
                                         "octave-up",
                                         "patch1",
                                         "transpose1",
                                         "volume1",
                                         "patch2",
                                         "transpose2",
                                         "volume2",
                                         "jog",
                                         "minus",
                                         "plus",
                                         "preset-load",
                                         "preset-save",
                                         "arpeggio-on",
                                         "arpeggio-view"};
    for (const char* pane : {"arp1/", "arp2/"}) {
        for (const char* control :
             {"onOffButton", "directionCombo", "rangeCombo", "noteStepCombo", "durationPcSlider", "btnLastVelocity"}) {
            expected.push_back(std::string(pane) + control);
        }
    }
    for (const char* name : {"reset", "settings", "help", "about", "piano"}) {
        expected.emplace_back(name);
    }
    Click("voice-mode-dual");
    EXPECT_EQ(TabOrder(), expected);

    Click("record-view");
    panel->recordingStateChanged();
    controls->StartRecording();
    std::vector<std::string> recorder = expected;
    std::replace(recorder.begin(), recorder.end(), std::string("tempo"), std::string("record"));
    std::replace(recorder.begin(), recorder.end(), std::string("metronome"), std::string("stop"));
    EXPECT_EQ(TabOrder(), recorder);
    Engine().StopRecording();
}

TEST_F(PanelKeys, BackTabGoesTheOtherWay) {
    Click("voice-mode-dual");
    const std::vector<std::string> forth = TabOrder();
    panel->setFocus();
    QTest::keyClick(panel, Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), forth.back());
}

TEST_F(PanelKeys, AClickNeverTakesTheFocus) {
    Click("voice-mode-dual");
    for (QWidget* control : panel->findChildren<QWidget*>()) {
        if (!control->isVisible() || control->objectName() == "piano" || control->isWindow() ||
            qobject_cast<QComboBox*>(control) != nullptr || control->objectName().contains("about") ||
            control->objectName().contains("help") || control->window() != window.get()) {
            continue;
        }
        panel->setFocus();
        QTest::mousePress(control, Qt::LeftButton);
        EXPECT_EQ(QApplication::focusWidget(), panel) << control->objectName().toStdString();
        QTest::mouseRelease(control, Qt::LeftButton, {}, QPoint(-100, -100));
        EXPECT_EQ(QApplication::focusWidget(), panel) << control->objectName().toStdString();
    }
    QTest::mouseClick(&Piano(), Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), panel);
}

TEST_F(PanelKeys, PlayingKeysAndSpaceReachThePanelFromEveryControl) {
    Click("voice-mode-dual");
    const std::vector<std::string> names = TabOrder();
    ASSERT_GT(names.size(), 30u);
    panel->setFocus();
    controls->SetVoiceMode(false, false);
    for (std::size_t i = 0; i < names.size(); ++i) {
        controls->SetVoiceMode(true, false);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        controls->SetVoiceMode(false, false);
        QWidget* const focused = QApplication::focusWidget();
        rig.TakeWritten();
        Type(Qt::Key_Z);
        EXPECT_EQ(rig.TakeWritten(), (Written{"90 3c 50", "80 3c 00"})) << names[i];
        if (focused != &Piano()) {
            Type(Qt::Key_Space);
            EXPECT_EQ(rig.TakeWritten(),
                      (Written{"b0 40 7f", "b1 40 7f", "b2 40 7f", "b0 40 00", "b1 40 00", "b2 40 00"}))
                << names[i];
        }
        EXPECT_EQ(QApplication::focusWidget(), focused) << names[i];
    }
}

TEST_F(PanelKeys, OnThePianoSpacePlaysTheCursorsKey) {
    Piano().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(Piano().isCursorShown());
    Type(Qt::Key_Home);
    const auto note = Piano().cursorNote();
    ASSERT_NE(note, QPiano::kNoKey);
    rig.TakeWritten();
    Type(Qt::Key_Space);
    const Written written = rig.TakeWritten();
    ASSERT_EQ(written.size(), 2u);
    EXPECT_EQ(written[0].substr(0, 2), "90");
    EXPECT_EQ(written[1].substr(0, 2), "80");
}

TEST_F(PanelKeys, ThePedalGoesUpWhenTheFocusMovesToThePianoUnderIt) {
    Find("about").setFocus(Qt::TabFocusReason);
    Press(Qt::Key_Space);
    EXPECT_EQ(rig.TakeWritten(), (Written{"b0 40 7f", "b1 40 7f", "b2 40 7f"}));
    Type(Qt::Key_Tab);
    ASSERT_TRUE(Piano().isCursorShown());
    Release(Qt::Key_Space);
    EXPECT_EQ(rig.TakeWritten(), (Written{"b0 40 00", "b1 40 00", "b2 40 00"}));
}

TEST_F(PanelKeys, EnterWorksTheFocusedControl) {
    Button("voice-mode-split").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Return);
    EXPECT_TRUE(Engine().IsSplit());
    Button("volume1").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Enter);
    EXPECT_TRUE(Button("volume1").isChecked());
    const int volume = Engine().GetVolume(0);
    Find("jog").setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Down);
    EXPECT_EQ(Engine().GetVolume(0), volume - 3) << "the arrow keys turn the dial";
    Type(Qt::Key_Up);
    EXPECT_EQ(Engine().GetVolume(0), volume);
}

TEST_F(PanelKeys, WhatIsHeldEndsWhenTheWindowLosesTheKeyboard) {
    Press(Qt::Key_Z);
    Press(Qt::Key_Space);
    QTest::mousePress(&Piano(), Qt::LeftButton, {}, Piano().keyRect(90).center().toPoint());
    rig.TakeWritten();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, kWaitMs));
    const Written written = rig.TakeWritten();
    for (const char* message : {"80 3c 00", "b0 40 00", "80 5a 00"}) {
        EXPECT_EQ(std::count(written.begin(), written.end(), message), 1) << message;
    }
}

/// What a synthesizer would be sounding.
class PanelHeld : public PanelKeys {
protected:
    PanelHeld() {
        rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) { synth.Play(event); };
    }
    ~PanelHeld() override {
        CloseWindow();
        rig.GetDevice(kSynth).onWrite = nullptr;
    }
    bool IsSilent() {
        rig.RunPlayer();
        return !synth.IsSounding() && !synth.IsPedalDown();
    }
    /// As a key that the system repeats without the flag: a release and a press with one time stamp.
    bool SendTimedKey(QEvent::Type type, int key, quint64 timeMs) {
        QKeyEvent event(type, key, Qt::NoModifier, kScanCode, 0, 0);
        event.setTimestamp(timeMs);
        event.ignore();
        QApplication::sendEvent(QApplication::focusWidget(), &event);
        return event.isAccepted();
    }
    void ActivateAnother() {
        other = std::make_unique<QWidget>();
        other->show();
        other->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(other.get(), kWaitMs));
    }

    static constexpr quint32 kScanCode = 75;
    SynthModel synth;
    std::unique_ptr<QWidget> other;
};

TEST_F(PanelHeld, AKeyThatOvertakesTheReleaseOfAnotherOneOfItsNoteSounds) {
    PlacedKey comma(*panel, Qt::Key_Comma, 59);
    PlacedKey q(*panel, Qt::Key_Q, 24);
    comma.Press(1000);
    rig.RunPlayer();
    comma.Release(2000);
    q.Press(2003);
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsPressed(0, 72));
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 48 50", "80 48 00", "90 48 50"}));
    q.Release(3000);
    Wait([&] {
        rig.RunPlayer();
        return !synth.IsSounding();
    });
}

TEST_F(PanelHeld, AKeyThatChattersSounds) {
    PlacedKey z(*panel, Qt::Key_Z, 52);
    for (quint64 time = 1000; time < 2000; time += 100) {
        z.Press(time);
        rig.RunPlayer();
        z.Release(time + 50);
        z.Press(time + 52);
        z.Release(time + 54);
        z.Press(time + 56);
        rig.RunPlayer();
        EXPECT_TRUE(synth.IsPressed(0, 60)) << time;
        z.Release(time + 90);
        Wait([&] {
            rig.RunPlayer();
            return !synth.IsSounding();
        });
    }
}

TEST_F(PanelHeld, AChangeOfTheLanguageMeanwhileLeavesNothing) {
    for (const char* locale : {"ru_RU", "en_US"}) {
        Press(Qt::Key_Z);
        Press(Qt::Key_BracketLeft);
        Press(Qt::Key_Space);
        const QPoint key = Piano().keyRect(90).center().toPoint();
        QTest::mousePress(&Piano(), Qt::LeftButton, {}, key);
        ASSERT_FALSE(IsSilent());
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        QTest::mouseRelease(&Piano(), Qt::LeftButton, {}, key);
        Release(Qt::Key_Space);
        Release(Qt::Key_BracketLeft);
        Release(Qt::Key_Z);
        EXPECT_TRUE(IsSilent()) << locale;
        Type(Qt::Key_X);
        EXPECT_TRUE(IsSilent()) << locale;
    }
}

TEST_F(PanelHeld, ALetterOfTheOtherLanguageEndsWhatItBegan) {
    const int cyrillic = 0x042F;  // the letter on the key of Z, as the other layout sends it
    Kivora::SetLocale("ru_RU", false);
    SendKey(QEvent::KeyPress, cyrillic, {}, false);
    ASSERT_FALSE(IsSilent());
    Kivora::SetLocale("en_US", false);
    SendKey(QEvent::KeyRelease, cyrillic, {}, false);
    EXPECT_TRUE(IsSilent());
}

TEST_F(PanelHeld, AValueKeyUnderTheMouseStopsWhenTheWindowLosesTheKeyboard) {
    Click("tempo");
    QTest::mousePress(&Find("plus"), Qt::LeftButton);
    ASSERT_TRUE(Button("plus").isDown());
    ActivateAnother();
    EXPECT_FALSE(Button("plus").isDown());
    const int tempo = Engine().GetTempo();
    QTest::mouseRelease(&Find("plus"), Qt::LeftButton);
    EXPECT_EQ(Engine().GetTempo(), tempo);
}

TEST_F(PanelHeld, AValueKeyUnderTheMouseStopsWhenADialogOrAMenuTakesItsRelease) {
    Click("tempo");
    const auto release = [&] {
        EXPECT_FALSE(Button("plus").isDown());
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {},
                            Find("plus").mapTo(window.get(), Find("plus").rect().center()));
    };
    const auto hold = [&] {
        QTest::mousePress(&Find("plus"), Qt::LeftButton);
        ASSERT_TRUE(Button("plus").isDown());
    };
    ModalAnswers answers;
    answers.Then([&](QDialog& dialog) {
        release();
        dialog.reject();
    });
    hold();
    Type(Qt::Key_F2);
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_FALSE(Button("plus").isDown());

    hold();
    Type(Qt::Key_F10);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    release();
    while (QWidget* const popUp = QApplication::activePopupWidget()) {
        popUp->close();
    }
    EXPECT_FALSE(Button("plus").isDown());
}

TEST_F(PanelHeld, TheGateUnderTheMouseIsLetGoWhenTheWindowLosesTheKeyboard) {
    auto* const gate = Find("arp1").findChild<QAbstractSlider*>("durationPcSlider");
    QTest::mousePress(gate, Qt::LeftButton, {}, QPoint(gate->width() - 5, gate->height() / 2));
    ASSERT_TRUE(gate->isSliderDown());
    ActivateAnother();
    EXPECT_FALSE(gate->isSliderDown());
}

TEST_F(PanelHeld, AShortcutActsOnceHoweverLongItsKeyIsHeld) {
    EXPECT_FALSE(SendTimedKey(QEvent::ShortcutOverride, Qt::Key_F8, 1000)) << "a press is a shortcut";
    for (quint64 timeMs = 1500; timeMs < 1700; timeMs += 40) {
        SendTimedKey(QEvent::KeyRelease, Qt::Key_F8, timeMs);
        EXPECT_TRUE(SendTimedKey(QEvent::ShortcutOverride, Qt::Key_F8, timeMs)) << "a repeat is none";
    }
    SendTimedKey(QEvent::KeyRelease, Qt::Key_F8, 1700);
    EXPECT_FALSE(SendTimedKey(QEvent::ShortcutOverride, Qt::Key_F8, 1800)) << "another press";
    QKeyEvent flagged(QEvent::ShortcutOverride, Qt::Key_F8, Qt::NoModifier, QString(), true);
    flagged.ignore();
    QApplication::sendEvent(panel, &flagged);
    EXPECT_TRUE(flagged.isAccepted());
}

TEST_F(PanelHeld, EnterHeldOnASwitchActsOnceAndOnAValueKeyGoesOn) {
    const auto hold = [&](const char* name) {
        Button(name).setFocus(Qt::TabFocusReason);
        SendTimedKey(QEvent::KeyPress, Qt::Key_Return, 1000);
        for (quint64 timeMs = 1500; timeMs < 1620; timeMs += 40) {
            SendTimedKey(QEvent::KeyRelease, Qt::Key_Return, timeMs);
            SendTimedKey(QEvent::KeyPress, Qt::Key_Return, timeMs);
        }
        SendTimedKey(QEvent::KeyRelease, Qt::Key_Return, 1700);
    };
    hold("metronome");
    EXPECT_TRUE(Engine().IsMetronomeOn());
    hold("metronome");
    EXPECT_FALSE(Engine().IsMetronomeOn());
    Click("tempo");
    const int tempo = Engine().GetTempo();
    hold("plus");
    EXPECT_EQ(Engine().GetTempo(), tempo + 4);
}

TEST_F(PanelKeys, HintsStandOverTheKeysThatTheyPlay) {
    for (BYTE note = 60; note <= 91; ++note) {
        const QPoint centre = HintBar().mapTo(panel, QPointF(HintBar().centreOf(note), 0)).toPoint();
        EXPECT_NEAR(Piano().mapFrom(panel, QPointF(centre)).x(), Piano().keyRect(note).center().x(), 1.0)
            << HintBar().label(note).toStdString();
    }
}

}  // namespace
