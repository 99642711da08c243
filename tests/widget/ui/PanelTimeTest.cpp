// The metronome that is heard, the tapped tempo, and the latch, from the panel and its menu.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QMenu>
#include <QSpinBox>

#include "engine/values/ClickSettings.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "ui/dialogs/LatchAndSwing.h"
#include "ui/dialogs/MetronomeSettings.h"
#include "widget/ui/DialogParts.h"

using namespace KivoraTest;
using Kivora::ClickSettings;
using NK::MIDI::ArpeggiatorSettings;

namespace {

class PanelTime : public PanelTest {
protected:
    void Hear() { Engine().SetClick({.sound = ClickSettings::Sound::kOutput}); }
    ArpeggiatorSettings Settings(int index) {
        return Engine().WithArpeggiator(index, [](auto& arpeggiator) { return arpeggiator.GetSettings(); });
    }
    QAction& Entry(const QKeySequence& shortcut) {
        const auto entries = Find<QMenu>("panel-menu").actions();
        const auto found = std::find_if(entries.begin(), entries.end(),
                                        [&](const QAction* entry) { return entry->shortcut() == shortcut; });
        if (found == entries.end()) {
            throw std::runtime_error(shortcut.toString().toStdString());
        }
        return **found;
    }
};

}  // namespace

TEST_F(PanelTime, TheTapKeyStandsOnThePanelWhileTheMetronomeIsHeard) {
    EXPECT_FALSE(Find("tap").isVisible());
    Hear();
    EXPECT_TRUE(Find("tap").isVisible());
    Click("record-view");
    EXPECT_FALSE(Find("tap").isVisible());
    Click("record-view");
    EXPECT_TRUE(Find("tap").isVisible());
    Engine().SetClick({});
    EXPECT_FALSE(Find("tap").isVisible());
}

TEST_F(PanelTime, TappingSetsTheTempo) {
    Hear();
    for (int i = 0; i < 4; ++i) {
        Click("tap");
        rig.time.AdvanceMs(400);
    }
    EXPECT_EQ(Engine().GetTempo(), 150);
    EXPECT_EQ(Caption("tempo"), "150");
    rig.time.AdvanceMs(10000);
    Type(Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(Engine().GetTempo(), 150);
    rig.time.AdvanceMs(2000);
    Entry(Qt::ALT | Qt::Key_T).trigger();
    EXPECT_EQ(Engine().GetTempo(), 40) << "the slowest there is";
}

TEST_F(PanelTime, LatchIsSwitchedForBothAndShown) {
    QAction& latch = Entry(Qt::ALT | Qt::Key_L);
    latch.trigger();
    EXPECT_TRUE(Settings(0).latch);
    EXPECT_TRUE(Settings(1).latch);
    EXPECT_TRUE(latch.isChecked());
    Type(Qt::Key_L, Qt::AltModifier);
    EXPECT_FALSE(Settings(0).latch);
    EXPECT_FALSE(Settings(1).latch);
    EXPECT_FALSE(latch.isChecked());
}

TEST_F(PanelTime, TheDialogOfTheMetronomeShowsWhatIsInForceAndSetsItAtOnce) {
    Engine().SetClick({.sound = ClickSettings::Sound::kSynth, .barNote = 50, .loudness = 90, .beatsPerBar = 3});
    MetronomeSettings dialog(*controls);
    auto& sound = In<QComboBox>(dialog, "clickSound");
    EXPECT_EQ(sound.currentIndex(), 2);
    EXPECT_EQ(In<QComboBox>(dialog, "clickBarNote").currentText(), "Note 50");
    EXPECT_EQ(In<QComboBox>(dialog, "clickBeatNote").currentText(), "Low wood block");
    EXPECT_EQ(In<QSpinBox>(dialog, "clickLoudness").value(), 90);
    sound.setCurrentIndex(1);
    In<QComboBox>(dialog, "clickBarNote").setCurrentIndex(5);
    In<QSpinBox>(dialog, "clickBeats").setValue(7);
    In<QComboBox>(dialog, "clickCountIn").setCurrentIndex(2);
    EXPECT_EQ(Engine().GetClick(), (ClickSettings{.sound = ClickSettings::Sound::kOutput,
                                                  .barNote = 56,
                                                  .beatNote = 77,
                                                  .loudness = 90,
                                                  .beatsPerBar = 7,
                                                  .countInBars = 2}));
    EXPECT_TRUE(In<QSpinBox>(dialog, "clickLoudness").isEnabled());
    sound.setCurrentIndex(0);
    EXPECT_FALSE(In<QSpinBox>(dialog, "clickLoudness").isEnabled());
    EXPECT_TRUE(In<QSpinBox>(dialog, "clickBeats").isEnabled()) << "the lamps have beats";
    const ClickSettings before = Engine().GetClick();
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(dialog.windowTitle(), QString::fromUtf8("Метроном"));
    EXPECT_EQ(Engine().GetClick(), before) << "another language changes nothing";
}

TEST_F(PanelTime, TheDialogOfLatchAndSwingSetsEachArpeggiator) {
    Engine().WithArpeggiator(1, [](auto& arpeggiator) { arpeggiator.SetSwing(60); });
    LatchAndSwing dialog(*controls);
    EXPECT_EQ(In<QSpinBox>(dialog, "swing1").value(), 50);
    EXPECT_EQ(In<QSpinBox>(dialog, "swing2").value(), 60);
    In<QCheckBox>(dialog, "latch2").setChecked(true);
    In<QSpinBox>(dialog, "swing1").setValue(67);
    EXPECT_FALSE(Settings(0).latch);
    EXPECT_TRUE(Settings(1).latch);
    EXPECT_EQ(Settings(0).swing, 67);
    EXPECT_EQ(In<QSpinBox>(dialog, "swing1").accessibleName(), "Arpeggiator 1: Swing:");
}
