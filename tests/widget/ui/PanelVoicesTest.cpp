// Voice modes, the parameter that the value keys change, and the texts of the voices.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <QMenu>
#include <QMetaMethod>

#include "nk/nk_exception.h"
#include "QtWidgets/piano/QGMPatchMenu.h"
#include "QtWidgets/skin/QJogDial.h"
#include "ui/parts/NoticeLine.h"
#include "ui/parts/PanelKey.h"

using namespace KivoraTest;

namespace {

constexpr const char* kParameterKeys[] = {"patch1",  "patch2",  "transpose1", "transpose2",
                                          "volume1", "volume2", "tempo"};

class PanelVoices : public PanelTest {
protected:
    /// The names of the parameter keys that are checked.
    std::string Checked() {
        std::string names;
        for (const char* name : kParameterKeys) {
            names += Button(name).isChecked() ? (names.empty() ? "" : " ") + std::string(name) : "";
        }
        return names;
    }
    std::string CheckedMode() {
        std::string names;
        for (const char* name : {"voice-mode-single", "voice-mode-dual", "voice-mode-split"}) {
            names += Button(name).isChecked() ? (names.empty() ? "" : " ") + std::string(name) : "";
        }
        return names;
    }
    void ExpectSecondaryEnabled(bool enabled) {
        for (const char* name : {"patch2", "transpose2", "volume2", "display-patch2"}) {
            EXPECT_EQ(Find(name).isEnabled(), enabled) << name;
        }
    }
};

TEST_F(PanelVoices, TheEditModeStartsAtThePrimaryPatch) {
    EXPECT_EQ(Checked(), "patch1");
}

TEST_F(PanelVoices, EachParameterKeyChecksItselfAlone) {
    Click("voice-mode-dual");
    for (const char* name : kParameterKeys) {
        Click(name);
        EXPECT_EQ(Checked(), name);
        Click(name);
        EXPECT_EQ(Checked(), name) << "a second click";
    }
}

TEST_F(PanelVoices, InSingleModeTheSecondVoicesKeysCannotBeClicked) {
    ExpectSecondaryEnabled(false);
    for (const char* name : {"patch2", "transpose2", "volume2"}) {
        Click(name);
        EXPECT_EQ(Checked(), "patch1") << name;
    }
    Click("voice-mode-dual");
    ExpectSecondaryEnabled(true);
    Click("voice-mode-single");
    ExpectSecondaryEnabled(false);
    Click("voice-mode-split");
    ExpectSecondaryEnabled(true);
}

TEST_F(PanelVoices, LeavingDualModeFallsBackToThePrimaryParameter) {
    const std::map<std::string, std::string> fallBacks = {
        {"patch2", "patch1"}, {"transpose2", "transpose1"}, {"volume2", "volume1"}};
    for (const char* mode : {"voice-mode-dual", "voice-mode-split"}) {
        for (const auto& [secondary, primary] : fallBacks) {
            Click(mode);
            Click(secondary.c_str());
            ASSERT_EQ(Checked(), secondary);
            Click("voice-mode-single");
            EXPECT_EQ(Checked(), primary);
        }
    }
}

TEST_F(PanelVoices, TheEditModeSurvivesChangesOfTheVoiceMode) {
    for (const char* name : {"patch1", "transpose1", "volume1", "tempo"}) {
        Click(name);
        for (const char* mode : {"voice-mode-dual", "voice-mode-split", "voice-mode-single"}) {
            Click(mode);
            EXPECT_EQ(Checked(), name) << mode;
        }
    }
    Click("voice-mode-dual");
    Click("volume2");
    Click("voice-mode-split");
    EXPECT_EQ(Checked(), "volume2") << "there is a second voice all the time";
}

struct Parameter {
    const char* key;
    std::function<int(Kivora::CKivora&, int slot)> get;
    bool secondary;
    int step;
};

const Parameter kParameters[] = {
    {"patch1", [](auto& engine, int slot) { return engine.GetPatch(slot); }, false, 1},
    {"patch2", [](auto& engine, int slot) { return engine.GetPatch(slot); }, true, 1},
    {"transpose1", [](auto& engine, int slot) { return engine.GetTranspose(slot); }, false, 1},
    {"transpose2", [](auto& engine, int slot) { return engine.GetTranspose(slot); }, true, 1},
    {"volume1", [](auto& engine, int slot) { return engine.GetVolume(slot); }, false, 3},
    {"volume2", [](auto& engine, int slot) { return engine.GetVolume(slot); }, true, 3},
    {"tempo", [](auto& engine, int) { return engine.GetTempo(); }, false, 1},
};

TEST_F(PanelVoices, PlusAndMinusChangeTheParameterBeingEditedAndNoOther) {
    for (const bool split : {false, true}) {
        Click(split ? "voice-mode-split" : "voice-mode-dual");
        for (int slot = 0; slot < 3; ++slot) {
            controls->SetPatch(10, slot);
            for (int i = 0; i < 5; ++i) {
                Engine().VolumeDown(slot);
            }
        }
        for (const Parameter& edited : kParameters) {
            Click(edited.key);
            const int slot = !edited.secondary ? 0 : split ? 2 : 1;
            const auto values = [&] {
                std::vector<int> all;
                for (const Parameter& parameter : kParameters) {
                    for (const int any : {0, 1, 2}) {
                        all.push_back(parameter.secondary ? 0 : parameter.get(Engine(), any));
                    }
                }
                return all;
            };
            const int before = edited.get(Engine(), slot);
            const std::vector<int> allBefore = values();
            Click("plus");
            EXPECT_EQ(edited.get(Engine(), slot), before + edited.step) << edited.key << " split " << split;
            EXPECT_NE(values(), allBefore);
            Click("minus");
            EXPECT_EQ(edited.get(Engine(), slot), before) << edited.key;
            EXPECT_EQ(values(), allBefore) << edited.key << ": nothing else has changed";
        }
    }
}

TEST_F(PanelVoices, PlusInVolumeModeAddsThreeAndStopsAt127) {
    Click("volume1");
    for (int i = 0; i < 4; ++i) {
        Click("minus");
    }
    const int before = Engine().GetVolume(0);
    Click("plus");
    EXPECT_EQ(Engine().GetVolume(0), before + 3);
    for (int i = 0; i < 50; ++i) {
        Click("plus");
    }
    EXPECT_EQ(Engine().GetVolume(0), 127);
    EXPECT_EQ(Caption("volume1"), "127");
    EXPECT_EQ(Label("display-volume1"), "127");
}

TEST_F(PanelVoices, TheJogDialStepsAsTheValueKeysDo) {
    Click("tempo");
    auto& dial = Find<QJogDial>("jog");
    const int before = Engine().GetTempo();
    emit dial.jogRight();
    EXPECT_EQ(Engine().GetTempo(), before + 1);
    emit dial.jogLeft();
    emit dial.jogLeft();
    EXPECT_EQ(Engine().GetTempo(), before - 1);
}

TEST_F(PanelVoices, TheJogDialTurnsByTheMouse) {
    Click("tempo");
    const int before = Engine().GetTempo();
    auto& dial = Find("jog");
    const QPointF centre = QRectF(dial.rect()).center();
    const auto at = [&](double degrees) {
        return centre + 40 * QPointF(std::sin(degrees * M_PI / 180), -std::cos(degrees * M_PI / 180));
    };
    QTest::mousePress(&dial, Qt::LeftButton, {}, at(0).toPoint());
    for (double degrees = 2; degrees <= 90; degrees += 2) {
        QMouseEvent move(QEvent::MouseMove, at(degrees), dial.mapToGlobal(at(degrees)), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(&dial, &move);
    }
    QTest::mouseRelease(&dial, Qt::LeftButton, {}, at(90).toPoint());
    EXPECT_GT(Engine().GetTempo(), before);
}

TEST_F(PanelVoices, TheValueKeysBlinkWhateverStepsTheValue) {
    auto& plus = Find<PanelKey>("plus");
    auto& minus = Find<PanelKey>("minus");
    const QImage up = plus.grab().toImage();
    emit Find<QJogDial>("jog").jogRight();
    EXPECT_TRUE(plus.isOn());
    EXPECT_FALSE(minus.isOn());
    EXPECT_NE(plus.grab().toImage(), up);
    Wait([&] { return !plus.isOn(); });
    EXPECT_EQ(plus.grab().toImage(), up);
    emit Find<QJogDial>("jog").jogLeft();
    EXPECT_TRUE(minus.isOn());
    Wait([&] { return !minus.isOn(); });
}

TEST_F(PanelVoices, AValueKeyHeldByTheMouseGoesOnStepping) {
    Click("tempo");
    Engine().SetTempo(100);
    QTest::mousePress(&Find("plus"), Qt::LeftButton);
    Wait([&] { return Engine().GetTempo() >= 106; });
    EXPECT_TRUE(Button("plus").isDown());
    QTest::mouseRelease(&Find("plus"), Qt::LeftButton);
    const int released = Engine().GetTempo();
    Wait([&] { return !Find<PanelKey>("plus").isOn(); });
    EXPECT_EQ(Engine().GetTempo(), released);
}

TEST_F(PanelVoices, TheVoiceModeKeysSetTheFlagsExclusively) {
    EXPECT_EQ(CheckedMode(), "voice-mode-single");
    EXPECT_EQ(Label("display-mode"), "SINGLE");
    Click("voice-mode-dual");
    EXPECT_TRUE(Engine().IsDual());
    EXPECT_FALSE(Engine().IsSplit());
    EXPECT_EQ(CheckedMode(), "voice-mode-dual");
    EXPECT_EQ(Label("display-mode"), "DUAL");
    Click("voice-mode-split");
    EXPECT_FALSE(Engine().IsDual());
    EXPECT_TRUE(Engine().IsSplit());
    EXPECT_EQ(CheckedMode(), "voice-mode-split");
    EXPECT_EQ(Label("display-mode"), "SPLIT");
    Click("voice-mode-split");
    EXPECT_EQ(CheckedMode(), "voice-mode-split") << "a second click";
    Click("voice-mode-single");
    EXPECT_FALSE(Engine().IsDual());
    EXPECT_FALSE(Engine().IsSplit());
    EXPECT_EQ(CheckedMode(), "voice-mode-single");
    Click("voice-mode-single");
    EXPECT_EQ(CheckedMode(), "voice-mode-single") << "a second click";
}

TEST_F(PanelVoices, AChangeOfTheVoiceModeEndsAllNotes) {
    for (const char* mode : {"voice-mode-dual", "voice-mode-split", "voice-mode-single"}) {
        Press(Qt::Key_Z);
        Show();
        EXPECT_TRUE(Piano().IsPressed(60));
        rig.TakeWritten();
        Click(mode);
        const std::vector<std::string> written = rig.TakeWritten();
        EXPECT_NE(std::find(written.begin(), written.end(), "b0 7b 00"), written.end()) << mode;
        EXPECT_FALSE(Piano().IsPressed(60)) << mode;
        Release(Qt::Key_Z);
    }
}

TEST_F(PanelVoices, SplitModeMakesTheNotesBelow60TheBassPart) {
    EXPECT_EQ(Piano().splitMainPartStartKey(), 0);
    Click("voice-mode-split");
    EXPECT_EQ(Piano().splitMainPartStartKey(), 60);
    Click("voice-mode-dual");
    EXPECT_EQ(Piano().splitMainPartStartKey(), 0);
}

TEST_F(PanelVoices, TheParameterKeysShowTheVoicesOfTheMode) {
    controls->SetPatch(0, 0);
    controls->SetPatch(48, 1);
    controls->SetPatch(32, 2);
    controls->TransposeUp(1);
    controls->TransposeDown(2);
    Engine().VolumeDown(1);
    Engine().VolumeDown(2);
    Engine().VolumeDown(2);
    const auto texts = [&] {
        std::vector<std::string> all;
        for (const char* name : {"patch1", "patch2", "transpose1", "transpose2", "volume1", "volume2"}) {
            all.push_back(Caption(name));
        }
        return all;
    };
    const auto number = [](int value) { return std::to_string(value); };
    using Texts = std::vector<std::string>;
    const std::string volume1 = number(Engine().GetVolume(0));
    EXPECT_EQ(texts(), (Texts{"1", "", "0", "", volume1, ""}));
    Click("voice-mode-dual");
    EXPECT_EQ(texts(), (Texts{"1", "49", "0", "1", volume1, number(Engine().GetVolume(1))}));
    Click("voice-mode-split");
    EXPECT_EQ(texts(), (Texts{"1", "33", "0", "-1", volume1, number(Engine().GetVolume(2))}));
    EXPECT_EQ(Label("display-transpose2"),
              "\xE2\x88\x92"
              "1")
        << "the display has a true minus sign";
    Click("voice-mode-single");
    EXPECT_EQ(texts(), (Texts{"1", "", "0", "", volume1, ""}));
}

TEST_F(PanelVoices, ProgramsAreShownFromOneTo128AndTheDrumKitAsDK) {
    controls->SetPatch(127, 0);
    EXPECT_EQ(Caption("patch1"), "128");
    Click("plus");
    EXPECT_EQ(Engine().GetPatch(0), -1);
    EXPECT_EQ(Caption("patch1"), "DK");
    EXPECT_EQ(Label("display-patch1-line1"), "Percussions");
    EXPECT_EQ(Label("display-patch1-line2"), "Standard Drum Kit");
    Click("plus");
    EXPECT_EQ(Caption("patch1"), "1");
    Click("minus");
    EXPECT_EQ(Caption("patch1"), "DK");
    Click("voice-mode-split");
    controls->SetPatch(-1, 2);
    EXPECT_EQ(Caption("patch2"), "DK");
    EXPECT_EQ(Label("display-patch2-line1"), "Percussions");
    EXPECT_EQ(Label("display-patch2-line2"), "Standard Drum Kit");
}

TEST_F(PanelVoices, TheDisplayNamesThePatchesOfBothVoices) {
    controls->SetPatch(0, 0);
    controls->SetPatch(48, 1);
    EXPECT_EQ(Label("display-patch1-line1"), "Piano");
    EXPECT_EQ(Label("display-patch1-line2"), "Acoustic Grand Piano");
    EXPECT_EQ(Label("display-patch2-line1"), "");
    EXPECT_EQ(Label("display-patch2-line2"), "");
    Click("voice-mode-dual");
    EXPECT_EQ(Label("display-patch2-line1"), "Ensemble");
    EXPECT_EQ(Label("display-patch2-line2"), "String Ensemble 1");
}

TEST_F(PanelVoices, PatchNamesFollowTheTranslationSetting) {
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    controls->SetPatch(0, 0);
    const std::string russian = Label("display-patch1-line2");
    EXPECT_NE(russian, "Acoustic Grand Piano");
    Engine().SetTranslatePatchNames(false);
    EXPECT_EQ(Label("display-patch1-line2"), "Acoustic Grand Piano");
    EXPECT_EQ(Label("display-patch1-line1"), "Piano");
    Engine().SetTranslatePatchNames(true);
    EXPECT_EQ(Label("display-patch1-line2"), russian);
}

TEST_F(PanelVoices, AProgramAbove127IsRefusedByTheNameDisplay) {
    EXPECT_THROW(controls->SetPatch(128, 0), NK::CException);
    try {
        panel->patchChanged();
        FAIL();
    } catch (const NK::CException& error) {
        EXPECT_STREQ(error.GetMessage(), L"Invalid MIDI patch number.");
    }
    EXPECT_NO_THROW(controls->SetPatch(127, 0));
    EXPECT_EQ(Label("display-patch1-line2"), "Gunshot");
}

TEST_F(PanelVoices, ClickingThePatchNamesChoosesTheirParameters) {
    Click("volume1");
    Click("display-patch2");
    EXPECT_EQ(Checked(), "volume1") << "there is no second voice";
    Click("display-patch1");
    EXPECT_EQ(Checked(), "patch1");
    for (const char* mode : {"voice-mode-dual", "voice-mode-split"}) {
        Click(mode);
        Click("display-patch2");
        EXPECT_EQ(Checked(), "patch2") << mode;
        Click("display-patch1");
        EXPECT_EQ(Checked(), "patch1") << mode;
    }
}

TEST_F(PanelVoices, RightClickOpensThePatchMenuOfItsVoice) {
    controls->SetPatch(5, 0);
    controls->SetPatch(6, 1);
    controls->SetPatch(7, 2);
    const struct {
        const char* mode;
        const char* widget;
        int slot;
    } cases[] = {{"voice-mode-single", "patch1", 0},       {"voice-mode-single", "display-patch1", 0},
                 {"voice-mode-dual", "patch2", 1},         {"voice-mode-dual", "display-patch2", 1},
                 {"voice-mode-split", "patch2", 2},        {"voice-mode-split", "display-patch2", 2},
                 {"voice-mode-split", "display-patch1", 0}};
    for (const auto& test : cases) {
        Click(test.mode);
        QWidget& widget = Find(test.widget);
        int opened = 0;
        OnPopUp([&](QWidget& popUp) {
            ++opened;
            auto* const menu = qobject_cast<QGMPatchMenu*>(&popUp);
            ASSERT_NE(menu, nullptr);
            EXPECT_EQ(menu->voice(), test.slot);
            int checked = 0;
            for (const QAction* action : menu->actions()) {
                if (action->isChecked()) {
                    ++checked;
                    EXPECT_EQ(action->data().toInt(), Engine().GetPatch(test.slot));
                }
            }
            EXPECT_EQ(checked, 1);
            menu->close();
        });
        RightClick(widget, QPoint(10, 10));
        EXPECT_EQ(opened, 1) << test.widget;
        QApplication::processEvents();
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
}

TEST_F(PanelVoices, ThePatchMenuOpensAtTheClickedPoint) {
    const QFont usual = QApplication::font("QMenu");
    QFont tiny = usual;  // so that the whole menu fits the screen beside the point
    tiny.setPixelSize(1);
    QApplication::setFont(tiny, "QMenu");
    const QPoint point(30, 12);
    const QPoint expected = Find("patch1").mapToGlobal(point);
    OnPopUp([&](QWidget& popUp) {
        EXPECT_EQ(popUp.x(), expected.x());
        popUp.close();
    });
    panel->patch1ButtonMenu(point);
    QApplication::setFont(usual, "QMenu");
}

TEST_F(PanelVoices, OnlyADifferentChoiceSetsThePatch) {
    controls->SetPatch(5, 0);
    SignalLog log(Engine());
    const auto choose = [&](int program) {
        OnPopUp([program](QWidget& popUp) {
            for (QAction* action : popUp.actions()) {
                if (!action->isSeparator() && action->data().toInt() == program) {
                    qobject_cast<QMenu*>(&popUp)->setActiveAction(action);
                    QTest::keyClick(&popUp, Qt::Key_Return);
                    return;
                }
            }
        });
        panel->patch1ButtonMenu(QPoint(1, 1));
    };
    choose(5);
    EXPECT_EQ(Engine().GetPatch(0), 5);
    EXPECT_EQ(log.Take(), std::vector<std::string>{});
    choose(9);
    EXPECT_EQ(Engine().GetPatch(0), 9);
    EXPECT_EQ(log.Take(), std::vector<std::string>{"PatchChanged"});
    choose(-1);
    EXPECT_EQ(Engine().GetPatch(0), -1);
    EXPECT_EQ(Caption("patch1"), "DK");
}

TEST_F(PanelVoices, AMenuClosedWithoutAChoiceChangesNothing) {
    SignalLog log(Engine());
    const int before = Engine().GetPatch(0);
    OnPopUp([](QWidget& popUp) { QTest::keyClick(&popUp, Qt::Key_Escape); });
    panel->patch1Menu(QPoint(1, 1));
    EXPECT_EQ(Engine().GetPatch(0), before);
    EXPECT_EQ(log.Take(), std::vector<std::string>{});
}

TEST_F(PanelVoices, TheSlotsStandInTheirOrder) {
    const std::vector<std::string> slotNames = {
        "loadLanguageFiles()",
        "aboutClicked()",
        "settingsClicked()",
        "stepUpClicked()",
        "stepDownClicked()",
        "timerTick()",
        "resetClicked()",
        "helpClicked()",
        "MIDIMessageSent(int)",
        "synthSet()",
        "patchChanged()",
        "presetChanged()",
        "updateKeyNames()",
        "updateKeyboardDisplay()",
        "updateTempo()",
        "updateStatusDisplay()",
        "UIKeyPressed(BYTE,BYTE)",
        "UIKeyReleased(BYTE)",
        "UIAfterTouch(BYTE,BYTE)",
        "vm1Clicked()",
        "vm2Clicked()",
        "vmSClicked()",
        "updateVoiceModeButtons()",
        "updateKeyboardKeyLayout()",
        "tempoClicked()",
        "patch1Clicked()",
        "patch2Clicked()",
        "patch1Menu(QPoint)",
        "patch1ButtonMenu(QPoint)",
        "patch2Menu(QPoint)",
        "patch2ButtonMenu(QPoint)",
        "transpose1Clicked()",
        "transpose2Clicked()",
        "volume1Clicked()",
        "volume2Clicked()",
        "updateEditMode()",
        "updateVoiceParameters()",
        "patch1NameClicked()",
        "patch2NameClicked()",
        "savePatchClicked()",
        "loadPatchClicked()",
        "updateSkin()",
        "updateLeftPane()",
        "recordingStateChanged()",
        "onRecord()",
        "onStartRecording()",
        "onStopRecording()",
        "onRecordView()",
        "updateRightPane()",
        "onArpeggiator()",
        "onArpeggiatorView()",
        "arpeggiatingChanged()",
        "onMetronomeSwitch()",
        "updateMetronome()",
        "onBar()",
        "onBeat()",
        "updateEffectWidgets()",
    };
    const QMetaObject& meta = KivoraWidget::staticMetaObject;
    for (std::size_t i = 0; i < slotNames.size(); ++i) {
        const QMetaMethod method = meta.method(meta.methodOffset() + static_cast<int>(i));
        EXPECT_EQ(method.methodSignature().toStdString(), slotNames[i]);
        EXPECT_EQ(method.methodType(), QMetaMethod::Slot);
        EXPECT_EQ(method.access(), QMetaMethod::Public);
    }
}

TEST_F(PanelVoices, SplitOffersTheOctaveShiftThatBringsTheBassToTheComputerKeys) {
    auto& line = Find<NoticeLine>("display-notice");
    EXPECT_TRUE(line.isHidden());
    Click("voice-mode-split");
    ASSERT_FALSE(line.isHidden());
    EXPECT_NE(line.text().indexOf("octave shift"), -1);
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_EQ(Label("octave-value"),
              "\xE2\x88\x92"
              "1");
    EXPECT_TRUE(line.isHidden()) << "it is done";
    Click("voice-mode-single");
    Click("voice-mode-split");
    EXPECT_TRUE(line.isHidden()) << "computer keys play the bass";
    Click("octave-up");
    Click("voice-mode-split");
    EXPECT_FALSE(line.isHidden());
    Click("voice-mode-dual");
    EXPECT_TRUE(line.isHidden()) << "no split, no bass";
    Click("octave-up");
    Click("octave-up");
    Click("voice-mode-split");
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_TRUE(line.isHidden()) << "the shift that the line names, from any other";
}

}  // namespace
