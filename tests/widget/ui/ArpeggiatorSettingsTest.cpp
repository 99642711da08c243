#include "ui/arpeggiatorSettings.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest/QTest>
#include <QWheelEvent>

#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "ui/PanelSkin.h"
#include "ui/parts/PanelCombo.h"
#include "ui/parts/PanelLabel.h"
#include "unit/engine/EngineRig.h"
#include "widget/ui/DialogTexts.h"

using NK::MIDI::ArpeggiatorSettings;
using NK::MIDI::CArpeggiator1;

namespace {

class ArpeggiatorPanel : public testing::Test {
protected:
    ArpeggiatorPanel() {
        // A release within that time after the press that opened a list belongs to that press.
        QApplication::setDoubleClickInterval(0);
        rig.CreateOpen();
        controls.emplace(*rig.engine);
        skin.Compose({Kivora::CKivora::GetDefaultUIColor(), Kivora::CKivora::GetDefaultUIDisplayColor(),
                      Kivora::CKivora::GetDefaultUIDisplay2Color(), QPixmap(), 1.0});
        panel.updateSkin(skin);
        panel.show();
    }
    void Attach() { panel.setArpeggiator(&*controls, 0); }
    template <class Change>
    void Set(Change change) {
        rig.engine->WithArpeggiator(0, change);
    }
    ArpeggiatorSettings Settings(int index = 0) {
        return rig.engine->WithArpeggiator(index,
                                           [](const CArpeggiator1& arpeggiator) { return arpeggiator.GetSettings(); });
    }
    bool IsBypassed(int index = 0) {
        return rig.engine->WithArpeggiator(index,
                                           [](const CArpeggiator1& arpeggiator) { return arpeggiator.IsBypassed(); });
    }
    /// The change of language is told by an event.
    static void Speak(const char* locale) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
    }
    template <class Widget>
    Widget& Find(const char* name) {
        auto* const found = panel.findChild<Widget*>(name);
        if (found == nullptr) {
            throw std::runtime_error(name);
        }
        return *found;
    }
    QComboBox& Combo(const char* name) { return Find<QComboBox>(name); }
    QAbstractButton& Button(const char* name) { return Find<QAbstractButton>(name); }
    QAbstractSlider& Gate() { return Find<QAbstractSlider>("durationPcSlider"); }

    static void Click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
    static void Wheel(QWidget& widget, int delta) {
        const QPointF centre = QRectF(widget.rect()).center();
        QWheelEvent event(centre, widget.mapToGlobal(centre), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    }
    static void DragTo(QWidget& widget, int fromX, int toX) {
        QTest::mousePress(&widget, Qt::LeftButton, {}, QPoint(fromX, 10));
        QMouseEvent move(QEvent::MouseMove, QPointF(toX, 10), widget.mapToGlobal(QPointF(toX, 10)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &move);
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, QPoint(toX, 10));
    }
    /// Opens the list by the mouse and clicks the item.
    static void Choose(QComboBox& combo, const QString& text) {
        Click(combo);
        QAbstractItemView& list = *combo.view();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
        const QModelIndex item = combo.model()->index(combo.findText(text), 0);
        ASSERT_TRUE(item.isValid()) << text.toStdString();
        list.scrollTo(item);
        QApplication::processEvents();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(item).center());
    }

    KivoraTest::EngineRig rig;
    std::optional<Kivora::EngineControls> controls;
    PanelSkin skin;
    arpeggiatorSettings panel;
};

TEST_F(ArpeggiatorPanel, AStepOf100TicksSelectsNothing) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, 50); });
    Attach();
    EXPECT_EQ(Combo("noteStepCombo").currentIndex(), -1);
}

TEST_F(ArpeggiatorPanel, AStepThatNoItemShowsIsNotWrittenBack) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, 50); });
    Attach();
    Click(Button("btnLastVelocity"));
    EXPECT_EQ(Settings().noteStep, 100);
    EXPECT_NEAR(Settings().GetDurationPercent(), 50, 1e-9);
    EXPECT_EQ(Settings().velocityMode, ArpeggiatorSettings::kLastVelocity);
    panel.close();
    EXPECT_EQ(Settings().noteStep, 100);
}

TEST_F(ArpeggiatorPanel, TheGateIsWrittenWithoutAStepToo) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, 50); });
    Attach();
    Gate().setValue(30);
    EXPECT_EQ(Settings().noteStep, 100);
    EXPECT_NEAR(Settings().GetDurationPercent(), 30, 1e-9);
}

TEST_F(ArpeggiatorPanel, Range3xStoresCode3And4xStoresCode2) {
    Attach();
    Choose(Combo("rangeCombo"), "3x");
    EXPECT_EQ(Settings().extension, 3);
    Choose(Combo("rangeCombo"), "4x");
    EXPECT_EQ(Settings().extension, 2);
    Choose(Combo("rangeCombo"), "2x");
    EXPECT_EQ(Settings().extension, 1);
    Choose(Combo("rangeCombo"), "1x");
    EXPECT_EQ(Settings().extension, 0);
}

TEST_F(ArpeggiatorPanel, RangeCode2Shows4xAndCode3Shows3x) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetExtension(2); });
    Attach();
    EXPECT_EQ(Combo("rangeCombo").currentText(), "4x");
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetExtension(3); });
    panel.refresh();
    EXPECT_EQ(Combo("rangeCombo").currentText(), "3x");
}

TEST_F(ArpeggiatorPanel, EachStepIsShownAndWritten) {
    Attach();
    const std::vector<std::pair<int, QString>> steps{{384, "1/2"}, {256, "1/2t"}, {192, "1/4"}, {128, "1/4t"},
                                                     {96, "1/8"},  {64, "1/8t"},  {48, "1/16"}, {32, "1/16t"},
                                                     {24, "1/32"}, {16, "1/32t"}};
    for (const auto& [ticks, text] : steps) {
        Set([ticks = ticks](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(ticks, 70); });
        panel.refresh();
        EXPECT_EQ(Combo("noteStepCombo").currentText(), text);
    }
    for (const auto& [ticks, text] : steps) {
        Combo("noteStepCombo").setCurrentIndex(Combo("noteStepCombo").findText(text));
        EXPECT_EQ(Settings().noteStep, ticks);
        EXPECT_NEAR(Settings().GetDurationPercent(), 70, 1e-9);
    }
}

TEST_F(ArpeggiatorPanel, EachDirectionIsShownAndWritten) {
    Attach();
    const QStringList names{"Up", "Down", "Up-Down", "Down-Up", "Random", "Lowest Note", "Highest Note"};
    QComboBox& combo = Combo("directionCombo");
    for (int code = 0; code < names.size(); ++code) {
        Set([code](CArpeggiator1& arpeggiator) { arpeggiator.SetDirection(code); });
        panel.refresh();
        EXPECT_EQ(combo.currentText(), names[code]);
        EXPECT_EQ(Button("btnRepeat").isEnabled(), code == 2 || code == 3);
    }
    Wheel(combo, 120);
    EXPECT_EQ(combo.currentText(), "Lowest Note");
    EXPECT_EQ(Settings().direction, 5);
    Choose(combo, "Down-Up");
    EXPECT_EQ(Settings().direction, 3);
    EXPECT_TRUE(Button("btnRepeat").isEnabled());
    Choose(combo, "Random");
    EXPECT_FALSE(Button("btnRepeat").isEnabled());
}

TEST_F(ArpeggiatorPanel, ADirectionThatNoItemShowsIsNotWrittenBack) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetDirection(ArpeggiatorSettings::kLastNote); });
    Attach();
    EXPECT_EQ(Combo("directionCombo").currentIndex(), -1);
    Click(Button("btnLastVelocity"));
    EXPECT_EQ(Settings().direction, ArpeggiatorSettings::kLastNote);
}

TEST_F(ArpeggiatorPanel, TheGateIsRoundedWithHalvesDown) {
    for (const auto& [gate, shown] : {std::pair{69.4, 69}, {69.5, 69}, {69.6, 70}, {200.0, 100}, {2.0, 10}}) {
        Set([gate = gate](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, gate); });
        Attach();
        EXPECT_EQ(Gate().value(), shown) << gate;
        EXPECT_EQ(Find<QLabel>("durationPcDisplay").text(), QString::number(shown));
    }
}

TEST_F(ArpeggiatorPanel, AHugeGateShowsTheLongestAndIsNotWrittenBack) {
    for (const double gate : {1e308, std::numeric_limits<double>::infinity()}) {
        Set([gate](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, gate); });
        Attach();
        EXPECT_EQ(Gate().value(), 100) << gate;
        EXPECT_EQ(Find<QLabel>("durationPcDisplay").text(), "100");
        EXPECT_GT(Settings().noteLength, 1e300);
    }
}

TEST_F(ArpeggiatorPanel, LoadingTheControlsWritesNothing) {
    Set([](CArpeggiator1& arpeggiator) {
        arpeggiator.SetNoteStep(96, 12.5);
        arpeggiator.SetVelocityMode(ArpeggiatorSettings::kFixedVelocity);
        arpeggiator.SetDirection(ArpeggiatorSettings::kDownUp);
        arpeggiator.SetExtension(2);
        arpeggiator.SetRepeat(true);
    });
    const ArpeggiatorSettings before = Settings();
    Attach();
    panel.refresh();
    const ArpeggiatorSettings after = Settings();
    EXPECT_EQ(after.noteLength, before.noteLength);
    EXPECT_EQ(after.velocityMode, before.velocityMode);
    EXPECT_EQ(after.direction, before.direction);
    EXPECT_EQ(after.extension, before.extension);
    EXPECT_TRUE(Button("btnRepeat").isChecked());
}

TEST_F(ArpeggiatorPanel, OnIsTheOppositeOfBypassed) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(true); });
    Attach();
    EXPECT_FALSE(Button("onOffButton").isChecked());
    QSignalSpy bypassChanges(&panel, &arpeggiatorSettings::arpeggiatorBypassChanged);
    Click(Button("onOffButton"));
    EXPECT_FALSE(IsBypassed());
    EXPECT_EQ(bypassChanges.count(), 1);
    Click(Button("btnLastVelocity"));
    EXPECT_EQ(bypassChanges.count(), 1);
    Click(Button("onOffButton"));
    EXPECT_TRUE(IsBypassed());
    EXPECT_EQ(bypassChanges.count(), 2);
}

TEST_F(ArpeggiatorPanel, LastChoosesTheLastVelocityAndElseTheKeysOwn) {
    Attach();
    EXPECT_FALSE(Button("btnLastVelocity").isChecked());
    Click(Button("btnLastVelocity"));
    EXPECT_EQ(Settings().velocityMode, 1);
    Click(Button("btnLastVelocity"));
    EXPECT_EQ(Settings().velocityMode, 2);
}

TEST_F(ArpeggiatorPanel, RepeatIsWritten) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetDirection(ArpeggiatorSettings::kUpDown); });
    Attach();
    Click(Button("btnRepeat"));
    EXPECT_TRUE(Settings().repeat);
    Click(Button("btnRepeat"));
    EXPECT_FALSE(Settings().repeat);
}

TEST_F(ArpeggiatorPanel, TheGateFollowsTheSlidersDrag) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(96, 100); });
    Attach();
    DragTo(Gate(), 100, 7);  // the whole travel of 93 pixels
    EXPECT_EQ(Gate().value(), 10);
    EXPECT_NEAR(Settings().GetDurationPercent(), 10, 1e-9);
    EXPECT_EQ(Find<QLabel>("durationPcDisplay").text(), "10");
}

TEST_F(ArpeggiatorPanel, TheWheelMovesTheGate) {
    Attach();
    Gate().setValue(50);
    Wheel(Gate(), 120);
    EXPECT_GT(Gate().value(), 50);
    EXPECT_NEAR(Settings().GetDurationPercent(), Gate().value(), 1e-9);
}

TEST_F(ArpeggiatorPanel, ThePanelOfTheSecondArpeggiatorLeavesTheFirstAlone) {
    panel.setArpeggiator(&*controls, 1);
    const bool before = IsBypassed(0);
    Click(Button("onOffButton"));
    EXPECT_EQ(IsBypassed(0), before);
    Choose(Combo("rangeCombo"), "2x");
    EXPECT_EQ(Settings(1).extension, 1);
    EXPECT_EQ(Settings(0).extension, 0);
}

TEST_F(ArpeggiatorPanel, WithoutAnEngineNothingHappens) {
    Click(Button("onOffButton"));
    Choose(Combo("directionCombo"), "Up-Down");
    EXPECT_TRUE(Button("btnRepeat").isEnabled());
    panel.refresh();
    EXPECT_TRUE(Button("onOffButton").isChecked());
}

TEST_F(ArpeggiatorPanel, TheTabKeyGoesThroughTheControlsInReadingOrder) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetDirection(ArpeggiatorSettings::kUpDown); });
    Attach();
    panel.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    Find<QWidget>("onOffButton").setFocus(Qt::TabFocusReason);
    for (const char* next :
         {"btnRepeat", "directionCombo", "rangeCombo", "noteStepCombo", "durationPcSlider", "btnLastVelocity"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), next);
    }
}

TEST_F(ArpeggiatorPanel, AClickTakesNoFocus) {
    Attach();
    panel.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    QWidget* const before = QApplication::focusWidget();
    Click(Button("onOffButton"));
    EXPECT_EQ(QApplication::focusWidget(), before);
}

TEST_F(ArpeggiatorPanel, TheCaptionNamesThePanel) {
    panel.setCaption("Arpeggiator 2", "Secondary voice arpeggiator");
    EXPECT_EQ(Find<QLabel>("captionLabel").text(), "Arpeggiator 2");
    EXPECT_EQ(Find<QLabel>("captionLabel").toolTip(), "Secondary voice arpeggiator");
    EXPECT_EQ(panel.accessibleName(), "Arpeggiator 2");
    EXPECT_EQ(panel.accessibleDescription(), "Secondary voice arpeggiator");
    EXPECT_EQ(panel.windowTitle(), "Arpeggiator Settings");
}

TEST_F(ArpeggiatorPanel, NoTextIsCutShortInEitherLanguage) {
    Attach();
    for (const char* locale : {"ru_RU", "en_US"}) {
        Speak(locale);
        panel.setCaption(QCoreApplication::translate("KivoraWidget", "Arpeggiator 2"), {});
        for (const PanelLabel* label : panel.findChildren<PanelLabel*>()) {
            EXPECT_EQ(label->fittedText().text.toUpper().toStdString(), label->text().toUpper().toStdString());
        }
        for (PanelCombo* combo : panel.findChildren<PanelCombo*>()) {
            for (int item = 0; item < combo->count(); ++item) {
                combo->setCurrentIndex(item);
                EXPECT_EQ(combo->fittedText().toStdString(), combo->itemText(item).toStdString());
            }
        }
        EXPECT_EQ(NamelessControls(panel), "");
    }
}

TEST_F(ArpeggiatorPanel, AChangeOfLanguageWritesNothing) {
    Set([](CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(100, 12.5); });
    Attach();
    Speak("ru_RU");
    EXPECT_NE(Combo("directionCombo").itemText(0), "Up");
    Speak("en_US");
    EXPECT_EQ(Combo("directionCombo").itemText(0), "Up");
    EXPECT_EQ(Settings().noteStep, 100);
    EXPECT_NEAR(Settings().GetDurationPercent(), 12.5, 1e-9);
}

TEST_F(ArpeggiatorPanel, TextsAndToolTipsAreAsGiven) {
    const auto text = [&](const char* name) { return Find<QLabel>(name).text(); };
    EXPECT_EQ(text("captionLabel"), "Arpeggiator");
    EXPECT_EQ(text("durationPcDisplay"), "100");
    EXPECT_EQ(text("durationPcLabel"), "% Gate");
    EXPECT_EQ(Button("onOffButton").toolTip(), "Enable/disable this arpegiator");
    EXPECT_EQ(Combo("directionCombo").toolTip(), "Order of notes");
    EXPECT_EQ(Combo("rangeCombo").toolTip(), "Extend chord by adding notes from octaves below and above");
    EXPECT_EQ(Gate().toolTip(), "Smaller value: Staccato; bigger value: Legato");
    EXPECT_EQ(Combo("noteStepCombo").toolTip(), "Length of the notes");
    EXPECT_EQ(Button("btnLastVelocity").toolTip(), "On: use last note velocity; Off: use each key's velocity");
    EXPECT_EQ(Button("btnRepeat").toolTip(), "On: repeat lowest and highest notes in Up-Down and Down-Up modes");
    EXPECT_EQ(panel.size(), QSize(284, 102));
}

}  // namespace
