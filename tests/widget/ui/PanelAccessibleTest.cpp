// What a screen reader is told of the panel.
#include "widget/ui/PanelRig.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QComboBox>

#include "support/AccessibleChanges.h"
#include "ui/parts/PanelLabel.h"

using namespace KivoraTest;

namespace {

class PanelAccessible : public PanelTest {
protected:
    static QString Text(QWidget& widget, QAccessible::Text kind = QAccessible::Name) {
        QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(&widget);
        return found != nullptr ? found->text(kind) : QString();
    }
    QString Spoken(const char* name) { return Text(Find(name)) + " | " + Text(Find(name), QAccessible::Description); }
};

TEST_F(PanelAccessible, EveryControlHasANameInBothLanguages) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        EXPECT_FALSE(Text(*panel).isEmpty());
        int reached = 0;
        for (QWidget* widget : panel->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || widget->window() != window.get() ||
                widget->objectName().isEmpty()) {
                continue;
            }
            ++reached;
            EXPECT_FALSE(Text(*widget).isEmpty()) << locale << " " << widget->objectName().toStdString();
        }
        EXPECT_GE(reached, 35);
    }
}

TEST_F(PanelAccessible, RolesAndStatesOfTheControls) {
    const auto interface = [&](const char* name) { return QAccessible::queryAccessibleInterface(&Find(name)); };
    EXPECT_EQ(interface("reset")->role(), QAccessible::Button);
    EXPECT_TRUE(interface("voice-mode-single")->state().checkable);
    EXPECT_TRUE(interface("voice-mode-single")->state().checked);
    EXPECT_FALSE(interface("voice-mode-dual")->state().checked);
    EXPECT_TRUE(interface("patch2")->state().disabled);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(Find("arp1").findChild<QComboBox*>("rangeCombo"))->role(),
              QAccessible::ComboBox);
    EXPECT_NE(interface("jog")->role(), QAccessible::NoRole);
    EXPECT_EQ(interface("display-tempo")->role(), QAccessible::StaticText);
    EXPECT_EQ(interface("piano")->childCount(), 61);
}

TEST_F(PanelAccessible, TheArpeggiatorsTellTheirVoice) {
    EXPECT_EQ(Spoken("arp1"), "Arpeggiator 1 | Primary voice arpeggiator");
    EXPECT_EQ(Spoken("arp2"), "Arpeggiator 2 | Secondary voice arpeggiator");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Spoken("arp2"), "Арпеджиатор 2 | Арпеджиатор второго голоса");
}

TEST_F(PanelAccessible, TheTextsOfTheDisplaysAreTold) {
    Engine().SetTempo(133);
    controls->SetPatch(19, 0);
    ASSERT_TRUE(Engine().SavePreset(L"Cathedral"));
    for (PanelLabel* label : panel->findChildren<PanelLabel*>()) {
        if (label->objectName().isEmpty() || label->text().isEmpty()) {
            continue;
        }
        const QString spoken = Text(*label) + " | " + Text(*label, QAccessible::Description);
        EXPECT_TRUE(spoken.contains(label->text()))
            << label->objectName().toStdString() << ": " << spoken.toStdString();
    }
    EXPECT_TRUE(Spoken("display-tempo").contains("133"));
    EXPECT_TRUE(Spoken("display-patch1-line2").contains("Church Organ"));
    EXPECT_TRUE(Spoken("display-preset-name").contains("Cathedral"));
}

TEST_F(PanelAccessible, TheFiguresOnTheKeysAreTold) {
    controls->SetPatch(19, 0);
    Engine().VolumeDown(0);
    Engine().SetTempo(133);
    for (const char* name : {"patch1", "transpose1", "volume1", "tempo"}) {
        EXPECT_TRUE(Spoken(name).contains(Button(name).text())) << Spoken(name).toStdString();
    }
}

TEST_F(PanelAccessible, AKeyThatLightsIsPressed) {
    QAccessibleInterface* const key = QAccessible::queryAccessibleInterface(&Piano())->child(60 - 36);
    Press(Qt::Key_Z);
    Show();
    EXPECT_EQ(key->text(QAccessible::Name), "C4");
    EXPECT_TRUE(key->state().pressed);
    Release(Qt::Key_Z);
    Show();
    EXPECT_FALSE(key->state().pressed);
}

TEST_F(PanelAccessible, EachChangeOfAKeyThatLightsIsTold) {
    using testing::IsSupersetOf;
    AccessibleChanges changes;
    Click("voice-mode-dual");
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Single checked-", "Dual checked+", "Patch of voice 2 disabled-"}));
    Click("voice-mode-single");
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Single checked+", "Dual checked-", "Patch of voice 2 disabled+"}));
    Click("metronome");
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Metronome checked+"}));
    Engine().SetMetronome(false);
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Metronome checked-"}));
    Click("volume1");
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Patch of voice 1 checked-", "Volume of voice 1 checked+"}));
    QTest::mouseClick(Find("arp1").findChild<QAbstractButton*>("btnLastVelocity"), Qt::LeftButton);
    EXPECT_THAT(changes.Take(), IsSupersetOf({"Velocity Last checked+"}));
    Press(Qt::Key_Z);
    Show();
    EXPECT_THAT(changes.Take(), IsSupersetOf({"C4 pressed+"}));
    Release(Qt::Key_Z);
    Show();
    EXPECT_THAT(changes.Take(), IsSupersetOf({"C4 pressed-"}));
}

TEST_F(PanelAccessible, PressingAKeyOfThePianoPlaysIt) {
    QAccessibleInterface* const key = QAccessible::queryAccessibleInterface(&Piano())->child(64 - 36);
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(rig.TakeWritten().front().substr(0, 5), "90 40");
    Wait([&] {
        const std::vector<std::string> written = rig.TakeWritten();
        return !written.empty() && written.front().substr(0, 5) == "80 40";
    });
}

}  // namespace
