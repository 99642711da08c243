// What the panel shows of the engine, and the controls of the metronome, the arpeggio and the views.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <map>
#include <thread>

#include "midi/TMIDIMessage.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/MainDisplay.h"
#include "ui/parts/PanelKey.h"

using namespace KivoraTest;

namespace {

int Word(std::uint8_t status, std::uint8_t channel, std::uint8_t data1, std::uint8_t data2) {
    return static_cast<int>(NK::MIDI::TMIDIMessage{status, channel, data1, data2}.ToWord());
}

class PanelStatus : public PanelTest {
protected:
    QBlinkingLed& Lamp(const char* name) { return Find<QBlinkingLed>(name); }
    bool IsWritten(const std::string& message) {
        const std::vector<std::string> written = rig.TakeWritten();
        return std::find(written.begin(), written.end(), message) != written.end();
    }
};

TEST_F(PanelStatus, TheVelocityIsUnknownUntilANoteIsPlayed) {
    EXPECT_EQ(Label("display-velocity"), "--");
    panel->MIDIMessageSent(Word(0x90, 1, 64, 93));
    EXPECT_EQ(Label("display-velocity"), "93");
    panel->MIDIMessageSent(Word(0x90, 1, 65, 127));
    EXPECT_EQ(Label("display-velocity"), "127");
}

TEST_F(PanelStatus, ANoteOnWithVelocity0DoesNotChangeTheVelocity) {
    panel->MIDIMessageSent(Word(0x90, 1, 64, 0));
    EXPECT_EQ(Label("display-velocity"), "--");
    panel->MIDIMessageSent(Word(0x90, 1, 64, 93));
    EXPECT_TRUE(Piano().IsPressed(64));
    panel->MIDIMessageSent(Word(0x90, 1, 64, 0));
    EXPECT_EQ(Label("display-velocity"), "93");
    EXPECT_FALSE(Piano().IsPressed(64));
    panel->MIDIMessageSent(Word(0x80, 1, 64, 50));
    EXPECT_EQ(Label("display-velocity"), "93");
}

TEST_F(PanelStatus, Controller64ShowsTheSustainPedal) {
    EXPECT_EQ(Label("display-sustain"), "OFF");
    panel->MIDIMessageSent(Word(0xB0, 1, 64, 1));
    EXPECT_EQ(Label("display-sustain"), "ON");
    panel->MIDIMessageSent(Word(0xB0, 1, 64, 0));
    EXPECT_EQ(Label("display-sustain"), "OFF");
    panel->MIDIMessageSent(Word(0xB0, 1, 65, 127));
    EXPECT_EQ(Label("display-sustain"), "OFF") << "another controller";
    panel->MIDIMessageSent(Word(0xA0, 1, 64, 127));
    EXPECT_EQ(Label("display-sustain"), "OFF") << "not a controller";
}

TEST_F(PanelStatus, AResetOfTheControllersLiftsThePedalOnTheDisplay) {
    Engine().SetInputPortByName(kKeyboard);
    rig.GetKeyboard().Deliver(0xB0, 64, 127);
    Show();
    EXPECT_EQ(Label("display-sustain"), "ON");
    rig.GetKeyboard().Deliver(0xB0, 121, 0);
    Show();
    EXPECT_EQ(Label("display-sustain"), "OFF");
    rig.GetKeyboard().Deliver({{0, 0xB0, 121, 0}, {0, 0xB0, 64, 127}});
    Show();
    EXPECT_EQ(Label("display-sustain"), "ON") << "pressed again since";
    rig.GetKeyboard().Deliver({{0, 0xB0, 64, 100}, {0, 0xB0, 121, 0}});
    Show();
    EXPECT_EQ(Label("display-sustain"), "OFF");
}

TEST_F(PanelStatus, EveryMessageMakesTheMIDILampBlink) {
    for (const int status : {0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xFF}) {
        Wait([&] { return !Lamp("midi-led").isLit(); });
        panel->MIDIMessageSent(Word(static_cast<std::uint8_t>(status), 1, 0, 0));
        EXPECT_TRUE(Lamp("midi-led").isLit()) << status;
    }
}

TEST_F(PanelStatus, WhatTheEnginePlaysIsShown) {
    Wait([&] { return !Lamp("midi-led").isLit(); });
    Press(Qt::Key_Z);
    Press(Qt::Key_Space);
    EXPECT_FALSE(Lamp("midi-led").isLit()) << "display waits for its turn of the event loop";
    Show();
    EXPECT_TRUE(Lamp("midi-led").isLit());
    EXPECT_TRUE(Piano().IsPressed(60));
    EXPECT_EQ(Label("display-velocity"), "80");
    EXPECT_EQ(Label("display-sustain"), "ON");
    Release(Qt::Key_Space);
    Release(Qt::Key_Z);
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
    EXPECT_EQ(Label("display-sustain"), "OFF");
}

TEST_F(PanelStatus, AKeyOfAnExternalKeyboardIsShownThoughItsThreadIsNotTheWindows) {
    Engine().SetInputPortByName(kKeyboard);
    std::thread input([&] { rig.GetKeyboard().Deliver(0x90, 67, 55); });
    input.join();
    EXPECT_FALSE(Piano().IsPressed(67));
    QApplication::processEvents();
    EXPECT_TRUE(Piano().IsPressed(67));
    EXPECT_EQ(Label("display-velocity"), "55");
}

TEST_F(PanelStatus, DevicesThatABackendTellsOfOnItsThreadAreListedAndOpened) {
    rig.backend.follows = true;
    Engine().CloseInputPort();
    Engine().SetSavedInputPortName(L"New keys");
    rig.backend.Plug(L"New keys", LibMidi::kInput);
    std::thread backend([this] { rig.backend.tell(); });
    backend.join();
    EXPECT_EQ(Engine().GetInputPortNames().Find(L"New keys"), -1) << "it waits for the window's thread";
    QApplication::processEvents();
    EXPECT_GE(Engine().GetInputPortNames().Find(L"New keys"), 0);
    EXPECT_GE(Engine().GetInputPortIndex(), 0);
    EXPECT_EQ(Label("display-notice"), "The MIDI keyboard is connected again: New keys");
}

TEST_F(PanelStatus, ThePianoForwardsWhatTheMousePlays) {
    const QPoint low = Piano().keyRect(64).center().toPoint() + QPoint(0, 60);
    QTest::mousePress(&Piano(), Qt::LeftButton, {}, low);
    std::vector<std::string> written = rig.TakeWritten();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].substr(0, 5), "90 40");
    QMouseEvent move(QEvent::MouseMove, low + QPointF(0, -90), Piano().mapToGlobal(low + QPointF(0, -90)), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(&Piano(), &move);
    written = rig.TakeWritten();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].substr(0, 5), "a0 40");
    QTest::mouseRelease(&Piano(), Qt::LeftButton, {}, low);
    written = rig.TakeWritten();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].substr(0, 5), "80 40");
}

TEST_F(PanelStatus, ThePresetLabelShowsThePresetsName) {
    EXPECT_EQ(Label("display-preset-name"), "Previous Settings");
    ASSERT_TRUE(Engine().SavePreset(L"Warm Pad"));
    EXPECT_EQ(Label("display-preset-name"), "Warm Pad");
}

TEST_F(PanelStatus, ALoadedPresetIsShownWhole) {
    Click("voice-mode-split");
    controls->SetPatch(19, 0);
    Engine().SetTempo(133);
    ASSERT_TRUE(Engine().SavePreset(L"Organ and bass"));
    Click("voice-mode-single");
    controls->SetPatch(0, 0);
    Engine().SetTempo(60);
    ASSERT_TRUE(controls->LoadPreset(L"Organ and bass", false));
    EXPECT_EQ(Label("display-preset-name"), "Organ and bass");
    EXPECT_TRUE(Button("voice-mode-split").isChecked());
    EXPECT_EQ(Caption("patch1"), "20");
    EXPECT_EQ(Caption("patch2"), "33");
    EXPECT_EQ(Caption("tempo"), std::to_string(Engine().GetTempo()));
    EXPECT_EQ(Piano().splitMainPartStartKey(), 60);
}

TEST_F(PanelStatus, TheEnginesSignalsRefreshTheirDisplays) {
    Engine().SetTempo(97);
    EXPECT_EQ(Caption("tempo"), "97");
    EXPECT_EQ(Label("display-tempo"), "97");
    Engine().VolumeDown(0);
    EXPECT_EQ(Caption("volume1"), std::to_string(Engine().GetVolume(0)));
    EXPECT_EQ(Label("display-volume1"), std::to_string(Engine().GetVolume(0)));
    Engine().TransposeUp(0);
    EXPECT_EQ(Caption("transpose1"), "1");
    EXPECT_EQ(Label("display-transpose1"), "1");
    Engine().SetPatch(11, 0);
    EXPECT_EQ(Caption("patch1"), "12");
    Engine().SetMetronome(true);
    EXPECT_TRUE(Button("metronome").isChecked());
    Engine().SetMetronome(false);
    EXPECT_FALSE(Button("metronome").isChecked());
    Engine().SetArpeggiating(true);
    EXPECT_TRUE(Button("arpeggio-on").isChecked());
    Engine().SetArpeggiating(false);
    EXPECT_FALSE(Button("arpeggio-on").isChecked());
}

TEST_F(PanelStatus, TheKeyboardFollowsTheDisplaySettings) {
    EXPECT_FALSE(Piano().noteNames());
    Engine().SetShowNoteNames(true);
    EXPECT_TRUE(Piano().noteNames());
    Engine().SetShowNoteNames(false);
    EXPECT_FALSE(Piano().noteNames());
    const QImage plain = Piano().grab().toImage();
    Piano().setRainbowColors();
    const QImage rainbow = Piano().grab().toImage();
    Piano().setScriabinColors();
    const QImage scriabin = Piano().grab().toImage();
    ASSERT_NE(plain, rainbow);
    ASSERT_NE(rainbow, scriabin);
    Engine().SetKeyboardColoring(1);
    EXPECT_EQ(Piano().grab().toImage(), rainbow);
    Engine().SetKeyboardColoring(2);
    EXPECT_EQ(Piano().grab().toImage(), scriabin);
    Engine().SetKeyboardColoring(0);
    EXPECT_EQ(Piano().grab().toImage(), plain);
    Engine().SetKeyboardColoring(1);
    Engine().SetKeyboardColoring(3);
    EXPECT_EQ(Piano().grab().toImage(), plain) << "any other number";
}

TEST_F(PanelStatus, TheHintBarFollowsTheKeyNameSetting) {
    auto& bar = Find<QPianoPCKeyHelpBar>("hint-bar");
    EXPECT_TRUE(bar.translateKeyNames());
    Engine().SetTranslateKeyNames(false);
    EXPECT_FALSE(bar.translateKeyNames());
    Engine().SetTranslateKeyNames(true);
    EXPECT_TRUE(bar.translateKeyNames());
}

TEST_F(PanelStatus, TheHintBarShowsThePianosRange) {
    auto& bar = Find<QPianoPCKeyHelpBar>("hint-bar");
    EXPECT_EQ(bar.firstNote(), Piano().GetFirstNote());
    EXPECT_EQ(bar.keyCount(), Piano().GetKeyCount());
    EXPECT_EQ(bar.width(), Piano().width());
    EXPECT_EQ(bar.x(), Piano().x());
}

TEST_F(PanelStatus, TheMetronomeKeySwitchesTheMetronome) {
    Click("metronome");
    EXPECT_TRUE(Engine().IsMetronomeOn());
    EXPECT_TRUE(Button("metronome").isChecked());
    Click("metronome");
    EXPECT_FALSE(Engine().IsMetronomeOn());
    EXPECT_FALSE(Button("metronome").isChecked());
}

TEST_F(PanelStatus, BarAndBeatLampsBlinkAtTheirSignals) {
    panel->onBar();
    EXPECT_TRUE(Lamp("tempo-led-bar").isLit());
    EXPECT_FALSE(Lamp("tempo-led-beat").isLit());
    Wait([&] { return !Lamp("tempo-led-bar").isLit(); });
    emit Engine().Beat();
    EXPECT_TRUE(Lamp("tempo-led-beat").isLit());
    EXPECT_FALSE(Lamp("tempo-led-bar").isLit());
    emit Engine().Bar();
    EXPECT_TRUE(Lamp("tempo-led-bar").isLit());
}

TEST_F(PanelStatus, WithTheMetronomeOnTheLampsBlink) {
    Click("metronome");
    Wait([&] { return Lamp("tempo-led-bar").isLit() && Lamp("tempo-led-beat").isLit(); });
}

TEST_F(PanelStatus, TheArpeggioKeySwitchesArpeggiation) {
    Press(Qt::Key_Z);
    rig.TakeWritten();
    Click("arpeggio-on");
    EXPECT_TRUE(Engine().IsArpeggiating());
    EXPECT_TRUE(Button("arpeggio-on").isChecked());
    EXPECT_TRUE(IsWritten("b0 7b 00"));
    Click("arpeggio-on");
    EXPECT_FALSE(Engine().IsArpeggiating());
    EXPECT_FALSE(Button("arpeggio-on").isChecked());
}

TEST_F(PanelStatus, AnArpeggiatorsSwitchEndsAllNotes) {
    for (const char* pane : {"arp1", "arp2"}) {
        rig.TakeWritten();
        auto* const button = Find<arpeggiatorSettings>(pane).findChild<QAbstractButton*>("onOffButton");
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_TRUE(IsWritten("b0 7b 00")) << pane;
    }
}

TEST_F(PanelStatus, TheArpeggiatorPanesShowTheirOwnArpeggiators) {
    for (const int index : {0, 1}) {
        Engine().WithArpeggiator(index,
                                 [&](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(index == 0); });
    }
    panel->updateEffectWidgets();
    EXPECT_FALSE(Find("arp1").findChild<QAbstractButton*>("onOffButton")->isChecked());
    EXPECT_TRUE(Find("arp2").findChild<QAbstractButton*>("onOffButton")->isChecked());
}

TEST_F(PanelStatus, TheLeftPaneShowsTheMetronomeOrTheRecorder) {
    const auto visible = [&](std::initializer_list<const char*> names) {
        return std::all_of(names.begin(), names.end(), [&](const char* name) { return Find(name).isVisible(); });
    };
    const auto hidden = [&](std::initializer_list<const char*> names) {
        return std::none_of(names.begin(), names.end(), [&](const char* name) { return Find(name).isVisible(); });
    };
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(visible({"tempo", "metronome"}));
        EXPECT_TRUE(hidden({"record-time", "record", "stop"}));
        EXPECT_FALSE(Button("record-view").isChecked());
        Click("record-view");
        EXPECT_TRUE(hidden({"tempo", "metronome"}));
        EXPECT_TRUE(visible({"record-time", "record", "stop"}));
        EXPECT_TRUE(Button("record-view").isChecked());
        EXPECT_TRUE(visible({"tempo-led-bar", "tempo-led-beat", "display-tempo"})) << "in both views";
        Click("record-view");
    }
}

TEST_F(PanelStatus, TheRightPaneShowsTheArpeggiatorsOrTheCardOfTheKeys) {
    EXPECT_TRUE(Find("arp1").isVisible());
    EXPECT_TRUE(Find("arp2").isVisible());
    EXPECT_TRUE(Button("arpeggio-view").isChecked());
    const QRect bay(872, 78, 292, 214);
    const QImage arpeggiators = panel->grab(bay).toImage();
    Click("arpeggio-view");
    EXPECT_FALSE(Find("arp1").isVisible());
    EXPECT_FALSE(Find("arp2").isVisible());
    EXPECT_FALSE(Button("arpeggio-view").isChecked());
    EXPECT_NE(panel->grab(bay).toImage(), arpeggiators);
    EXPECT_TRUE(Find("arpeggio-on").isVisible());
    Click("arpeggio-view");
    EXPECT_TRUE(Find("arp1").isVisible());
    EXPECT_EQ(panel->grab(bay).toImage(), arpeggiators);
}

TEST_F(PanelStatus, ResetSilencesAndResets) {
    Press(Qt::Key_Z);
    Press(Qt::Key_Space);
    Show();
    ASSERT_TRUE(Piano().IsPressed(60));
    rig.TakeWritten();
    Click("reset");
    const std::vector<std::string> written = rig.TakeWritten();
    for (const char* message : {"80 3c 00", "b0 40 00", "b0 7b 00", "ff"}) {
        EXPECT_NE(std::find(written.begin(), written.end(), message), written.end()) << message;
    }
    Show();
    EXPECT_FALSE(Piano().IsPressed(60));
    EXPECT_EQ(Label("display-sustain"), "OFF");
    Release(Qt::Key_Space);
    Release(Qt::Key_Z);
}

TEST_F(PanelStatus, ChangingTheLanguageRetranslatesEverythingAndBackAgain) {
    const auto texts = [&] {
        std::map<std::string, std::string> all;
        for (QWidget* widget : panel->findChildren<QWidget*>()) {
            const std::string name = widget->objectName().toStdString();
            if (auto* const button = qobject_cast<QAbstractButton*>(widget)) {
                all[name + " caption"] = button->text().toStdString();
            } else if (auto* const label = qobject_cast<QLabel*>(widget)) {
                all[name + " text"] = label->text().toStdString();
            }
            all[name + " tool tip"] = widget->toolTip().toStdString();
            all[name + " name"] = widget->accessibleName().toStdString();
        }
        return all;
    };
    Wait([&] { return !Lamp("midi-led").isLit(); });
    const auto english = texts();
    const QImage picture = panel->grab().toImage();
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Caption("about"), "О программе");
    EXPECT_EQ(Caption("voice-mode-single"), Button("voice-mode-single").accessibleName().toStdString());
    int translated = 0;
    for (const auto& [name, text] : texts()) {
        const bool hasWords = std::any_of(text.begin(), text.end(), [](char c) { return std::isalpha(c) != 0; });
        const bool hasLatinName = text.find("MIDI") != std::string::npos || text.find("Home") != std::string::npos ||
                                  text.find("Page Up") != std::string::npos;
        if (hasWords && !hasLatinName) {
            ADD_FAILURE() << name << " is still \"" << text << "\"";
        }
        translated += english.at(name) != text ? 1 : 0;
    }
    EXPECT_GT(translated, 80);
    for (const QRect& plate : {QRect(14, 46, 236, 20), QRect(258, 198, 448, 20), QRect(714, 236, 148, 20),
                               QRect(870, 46, 130, 28), QRect(14, 304, 1152, 12), QRect(268, 56, 428, 18)}) {
        EXPECT_NE(panel->grab(plate).toImage(), picture.copy(plate)) << plate.x() << ", " << plate.y();
    }
    Kivora::SetLocale("en_US", false);
    QApplication::processEvents();
    EXPECT_EQ(texts(), english);
    EXPECT_EQ(panel->grab().toImage(), picture);
}

TEST_F(PanelStatus, TheOctavesAreNamedFromTheCatalogue) {
    EXPECT_EQ(QCoreApplication::translate("Octave names", "GREAT"), "GREAT");
    const QRect names(14, 304, 1152, 12);
    const QImage english = panel->grab(names).toImage();
    Kivora::SetLocale("ru_RU", false);
    EXPECT_NE(QCoreApplication::translate("Octave names", "GREAT"), "GREAT");
    EXPECT_NE(QCoreApplication::translate("Octave names", "SMALL"), "SMALL");
    QApplication::processEvents();
    EXPECT_NE(panel->grab(names).toImage(), english);
}

/// Counts the paint events of a widget and its children.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) : widget_(widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        count += watched == &widget_ && event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;

private:
    QWidget& widget_;
};

TEST_F(PanelStatus, ANoteDoesNotPaintTheDisplayThatStaysAsItIs) {
    panel->MIDIMessageSent(Word(0x90, 1, 64, 93));
    QApplication::processEvents();
    PaintCounter display(Find<MainDisplay>("main-display"));
    PaintCounter piano(Piano());
    panel->MIDIMessageSent(Word(0x80, 1, 64, 0));
    panel->MIDIMessageSent(Word(0x90, 1, 65, 93));
    QApplication::processEvents();
    EXPECT_GE(piano.count, 1);
    EXPECT_EQ(display.count, 0);
    panel->MIDIMessageSent(Word(0x90, 1, 65, 94));
    QApplication::processEvents();
    EXPECT_GE(display.count, 1) << "another velocity";
}

TEST_F(PanelStatus, TheDisplaysLegendsFollowWhatTheyTell) {
    auto& display = Find<MainDisplay>("main-display");
    const auto picture = [&](const QRect& area) {
        QApplication::processEvents();
        return display.grab(area).toImage();
    };
    const QRect transpose(266, 4, 76, 15);
    const QRect secondBadge(10, 65, 18, 38);
    const QRect sustain(300, 106, 78, 16);
    const QRect corner(2, 2, 6, 6);

    const QImage english = picture(transpose);
    Kivora::SetLocale("ru_RU", false);
    EXPECT_NE(picture(transpose), english);
    Kivora::SetLocale("en_US", false);
    EXPECT_EQ(picture(transpose), english);

    const QImage pale = picture(secondBadge);
    display.setVoice(1, MainDisplay::Voice{});
    EXPECT_NE(picture(secondBadge), pale);

    const QImage off = picture(sustain);
    panel->MIDIMessageSent(Word(0xB0, 1, 64, 127));
    EXPECT_NE(picture(sustain), off) << "it stands beside its figure";

    const QImage glass = picture(corner);
    display.setGlass(nullptr, Qt::white);
    EXPECT_NE(picture(corner), glass);
}

TEST_F(PanelStatus, AFloodOfMessagesIsPaintedOnceATurnAndDoesNotStarveTheWindow) {
    Engine().SetInputPortByName(kKeyboard);
    PaintCounter piano(Piano());
    QApplication::processEvents();
    piano.count = 0;
    constexpr int kMessages = 3000;
    constexpr int kBatch = 100;
    for (int sent = 0; sent < kMessages; sent += kBatch) {
        std::thread input([&] {
            for (int i = 0; i < kBatch; ++i) {
                rig.GetKeyboard().Deliver(i % 2 == 0 ? 0x90 : 0x80, static_cast<std::uint8_t>(36 + (sent + i) / 2 % 60),
                                          100);
            }
        });
        input.join();
        rig.RunPlayer();
        const int before = piano.count;
        QApplication::processEvents();
        EXPECT_LE(piano.count - before, 1) << "one turn of the event loop";
    }
    EXPECT_GE(piano.count, 1);
}

TEST_F(PanelStatus, TheWindowClosesUnderAFloodOfMessages) {
    Engine().SetInputPortByName(kKeyboard);
    std::atomic<int> delivered = 0;
    std::atomic<bool> closed = false;
    std::thread input([&] {
        while (!closed) {
            rig.GetKeyboard().Deliver(delivered % 2 == 0 ? 0x90 : 0x80, 60, 100);
            ++delivered;
            std::this_thread::yield();
        }
    });
    while (delivered < 100) {
        QApplication::processEvents();
    }
    CloseWindow();
    const int atTheClose = delivered;
    while (delivered < atTheClose + 100) {
        QApplication::processEvents();
    }
    closed = true;
    input.join();
}

TEST_F(PanelStatus, AllThatWaitsForTheDisplayIsShownInOneTurn) {
    Engine().SetInputPortByName(kKeyboard);
    std::thread input([&] {
        for (int i = 0; i < 100000; ++i) {
            emit Engine().OnMIDIEvent(
                Word(i % 2 == 0 ? 0x90 : 0x80, 1, static_cast<std::uint8_t>(36 + i / 2 % 61), 99));
        }
        emit Engine().OnMIDIEvent(Word(0x90, 1, 50, 33));
    });
    input.join();
    bool reached = false;
    QTimer::singleShot(0, qApp, [&] { reached = true; });
    QApplication::processEvents();
    EXPECT_TRUE(reached) << "other events get their turn";
    EXPECT_TRUE(Piano().IsPressed(50));
    EXPECT_EQ(Label("display-velocity"), "33");
}

}  // namespace
