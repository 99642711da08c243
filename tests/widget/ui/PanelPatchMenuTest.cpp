// The patch menu on the panel: what is heard while it is open, what it remembers and finds.
#include <gmock/gmock.h>

#include "engine/EngineExtras.h"
#include "QtWidgets/piano/QGMPatchMenu.h"
#include "support/SynthModel.h"
#include "ui/PatchTexts.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class PanelPatchMenu : public PanelTest {
protected:
    /// Opens the menu of the first voice and works it.
    void WithMenu(const std::function<void(QGMPatchMenu& menu)>& user) {
        bool opened = false;
        OnPopUp([&](QWidget& popUp) {
            opened = true;
            user(*qobject_cast<QGMPatchMenu*>(&popUp));
        });
        panel->patch1ButtonMenu(QPoint(1, 1));
        EXPECT_TRUE(opened);
        rig.RunPlayer();
    }
    std::vector<int> LastUsed() {
        return Engine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.patches.GetLastUsed(); });
    }
};

TEST_F(PanelPatchMenu, AnArrowKeyLetsThePatchBeHeardAndEscapeTakesItBack) {
    SynthModel synth;
    rig.GetDevice(kSynth).onWrite = [&synth](const LibMidi::MIDIEvent& event) { synth.Play(event); };
    WithMenu([&](QGMPatchMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_EQ(Engine().GetPatch(0), 1);
        const auto written = rig.TakeWritten();
        EXPECT_THAT(written, Contains("c0 01"));
        EXPECT_THAT(written, Contains("90 3c 50"));
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_THAT(rig.TakeWritten(), Contains("80 3c 00")) << "one after the other";
        EXPECT_TRUE(QTest::qWaitFor([&] {
            rig.RunPlayer();
            return !synth.IsSounding();
        })) << "and each for a moment";
        QTest::keyClick(&menu, Qt::Key_End);
        QTest::keyClick(&menu, Qt::Key_Escape);
    });
    EXPECT_EQ(Engine().GetPatch(0), 0);
    EXPECT_FALSE(synth.IsSounding());
    EXPECT_THAT(LastUsed(), IsEmpty());
    rig.GetDevice(kSynth).onWrite = nullptr;
}

TEST_F(PanelPatchMenu, WhatWasHeardLastIsChosenAndRemembered) {
    WithMenu([](QGMPatchMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Right);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    EXPECT_EQ(Engine().GetPatch(0), 8);
    EXPECT_THAT(LastUsed(), ElementsAre(8));
    WithMenu([](QGMPatchMenu& menu) {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(16).center());
        EXPECT_EQ(menu.shownPrograms(), std::vector<int>{8});
    });
}

TEST_F(PanelPatchMenu, WhileARecordingRunsNothingIsHeardBeforeItIsChosen) {
    ASSERT_TRUE(controls->StartRecording());
    rig.TakeWritten();
    WithMenu([&](QGMPatchMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_THAT(rig.TakeWritten(), IsEmpty());
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    EXPECT_EQ(Engine().GetPatch(0), 1);
    Engine().StopRecording();
}

TEST_F(PanelPatchMenu, OnlyTheVoiceThatIsChosenIsHeard) {
    controls->SetVoiceMode(true, false);
    controls->SetPatch(40, 1);
    rig.TakeWritten();
    WithMenu([&](QGMPatchMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        const auto written = rig.TakeWritten();
        EXPECT_THAT(written, Contains("90 3c 50"));
        EXPECT_THAT(written, testing::Not(Contains(testing::StartsWith("91"))));
        QTest::keyClick(&menu, Qt::Key_Escape);
    });
}

TEST_F(PanelPatchMenu, AnArpeggioGetsNoNoteOfIt) {
    controls->SetArpeggiating(true);
    rig.TakeWritten();
    WithMenu([&](QGMPatchMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_THAT(rig.TakeWritten(), testing::Each(testing::Not(testing::StartsWith("90"))));
        EXPECT_EQ(Engine().GetPatch(0), 1);
    });
}

TEST_F(PanelPatchMenu, FindsByTheNamesOfBothLanguagesAndByNumber) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        EXPECT_THAT(PatchTexts::SearchTexts().at(40).toStdString(),
                    AllOf(HasSubstr("Violin"), HasSubstr("Скрипка"), HasSubstr("Strings"), HasSubstr("Струнные")));
        WithMenu([&](QGMPatchMenu& menu) {
            QTest::keyClicks(&menu, "violin");
            EXPECT_THAT(menu.shownPrograms(), ElementsAre(40)) << locale;
            QTest::keyClick(&menu, Qt::Key_Escape);
            EXPECT_TRUE(menu.isVisible());
            for (const QChar letter : QStringLiteral("скрипка")) {
                QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
                QApplication::sendEvent(&menu, &press);
            }
            EXPECT_THAT(menu.shownPrograms(), Contains(40)) << locale;
            QTest::keyClick(&menu, Qt::Key_Escape);
            QTest::keyClicks(&menu, "041");
            EXPECT_THAT(menu.shownPrograms(), ElementsAre(40)) << locale;
        });
    }
}

TEST_F(PanelPatchMenu, AFavoriteIsKept) {
    WithMenu([](QGMPatchMenu& menu) { QTest::keyClicks(&menu, "*"); });
    EXPECT_THAT(Engine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.patches.GetFavorites(); }),
                ElementsAre(0));
    WithMenu([](QGMPatchMenu& menu) {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(17).center());
        EXPECT_EQ(menu.shownPrograms(), std::vector<int>{0});
    });
}

}  // namespace
