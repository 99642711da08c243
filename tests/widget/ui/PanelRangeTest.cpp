// How many keys the piano shows, and how the octave shift scrolls it.
#include <QAccessible>
#include <QAction>
#include <QMenu>

#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "support/Files.h"
#include "ui/parts/PianoRange.h"
#include "ui/parts/ViewSettings.h"
#include "ui/SplitMark.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;

namespace {

using Range = std::pair<int, int>;

class PanelRange : public PanelTest {
protected:
    void Choose(int keys) {
        for (QMenu* menu : Find<QMenu>("panel-menu").findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->text() == QString("%1 Keys").arg(keys)) {
                    return action->trigger();
                }
            }
        }
        ADD_FAILURE() << keys;
    }
    QPianoPCKeyHelpBar& Hints() { return Find<QPianoPCKeyHelpBar>("hint-bar"); }
    Range Shown() { return {Piano().GetFirstNote(), Piano().GetLastNote()}; }
    void ExpectAllAgree() {
        EXPECT_EQ(Hints().firstNote(), Piano().GetFirstNote());
        EXPECT_EQ(Hints().keyCount(), Piano().GetKeyCount());
        const BYTE note = static_cast<BYTE>(Piano().GetFirstNote() + 12);
        EXPECT_NEAR(Hints().x() + Hints().centreOf(note), Piano().x() + Piano().keyRect(note).center().x(), 1.0);
        QAccessibleInterface* const piano = QAccessible::queryAccessibleInterface(&Piano());
        EXPECT_EQ(piano->childCount(), Piano().GetKeyCount());
    }
    NK::CString ViewPath() { return NK::CString::FromUtf8((rig.folder / "user/View.ini").string()); }
};

TEST_F(PanelRange, ShowsThePianosOfTheUsualSizes) {
    EXPECT_EQ(Shown(), Range(36, 96));
    const std::map<int, Range> expected{{25, {60, 84}},  {37, {48, 84}},  {49, {36, 84}},
                                        {76, {28, 103}}, {88, {21, 108}}, {61, {36, 96}}};
    for (const auto& [keys, range] : expected) {
        Choose(keys);
        EXPECT_EQ(Shown(), range);
        EXPECT_EQ(Piano().GetKeyCount(), keys);
        ExpectAllAgree();
    }
}

TEST_F(PanelRange, TheChoiceIsKeptAndTheDefaultIsNotWritten) {
    panel->setWantedScale(1.25);
    EXPECT_EQ(ReadFileBytes(rig.folder / "user/View.ini").find("PianoKeys"), std::string::npos);
    panel->setWantedScale(1.0);
    Choose(88);
    EXPECT_EQ(ViewSettings::Read(ViewPath()).pianoKeys, 88);
    CloseWindow();
    ShowPanel();
    EXPECT_EQ(Shown(), Range(21, 108)) << "at the next start";
    Choose(61);
    EXPECT_EQ(ViewSettings::Read(ViewPath()).pianoKeys, 61);
    WriteFileBytes(rig.folder / "user/View.ini", "[View]\nPianoKeys=62\n");
    EXPECT_EQ(ViewSettings::Read(ViewPath()).pianoKeys, 61);
}

TEST_F(PanelRange, TheOctaveShiftScrollsItByAsLittleAsBringsTheComputersKeysOntoIt) {
    Choose(25);
    Click("octave-down");
    EXPECT_EQ(Shown(), Range(48, 72));
    ExpectAllAgree();
    Click("octave-up");
    EXPECT_EQ(Shown(), Range(60, 84));
    for (int i = 0; i < 3; ++i) {
        Click("octave-up");
    }
    EXPECT_EQ(Shown(), Range(96, 120));
    for (const int keys : PianoRange::kSizes) {
        for (int octave = -3; octave <= 3; ++octave) {
            const PianoRange range = PianoRange::Of(keys, octave * 12);
            EXPECT_EQ(range.count, keys);
            EXPECT_LE(range.first + range.count, 128);
            EXPECT_FALSE(NK::Piano::IsBlackNote(range.first));
            EXPECT_FALSE(NK::Piano::IsBlackNote(static_cast<BYTE>(range.first + keys - 1)));
            if (keys == PianoRange::kDefaultKeys) {
                EXPECT_EQ(range, PianoRange()) << "as it is designed";
            } else {
                EXPECT_LE(range.first, 60 + octave * 12) << keys << " " << octave;
                EXPECT_GE(range.first + keys - 1, 76 + octave * 12) << keys << " " << octave;
            }
        }
    }
}

TEST_F(PanelRange, OfSixtyOneKeysThePanelLooksTheSameAfterOthersWereShown) {
    Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
    const QImage before = panel->grab().toImage();
    Choose(88);
    QApplication::processEvents();
    EXPECT_NE(panel->grab().toImage(), before);
    Choose(61);
    QApplication::processEvents();
    EXPECT_EQ(panel->grab().toImage(), before);
}

TEST_F(PanelRange, AKeyUnderTheMouseEndsWhenOtherKeysCome) {
    const QPoint place = Piano().keyRect(60).toRect().center() + QPoint(0, 50);
    QTest::mousePress(&Piano(), Qt::LeftButton, {}, place);
    ASSERT_EQ(rig.TakeWritten().size(), 1U);
    Choose(88);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{"80 3c 00"});
    QTest::mouseRelease(&Piano(), Qt::LeftButton, {}, place);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{});
}

TEST_F(PanelRange, EveryKeyIsPlayedByTheMouseAndAGlissandoPlaysEachWhiteKey) {
    Choose(88);
    const int y = Piano().height() - 20;
    const auto moveTo = [&](double x) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, y), Piano().mapToGlobal(QPointF(x, y)), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(&Piano(), &move);
    };
    QTest::mousePress(&Piano(), Qt::LeftButton, {}, {2, y});
    for (int x = 2; x < Piano().width(); x += 5) {
        moveTo(x);
    }
    QTest::mouseRelease(&Piano(), Qt::LeftButton, {}, {Piano().width() - 2, y});
    int struck = 0;
    for (const std::string& line : rig.TakeWritten()) {
        struck += line.starts_with("90") ? 1 : 0;
    }
    EXPECT_EQ(struck, 52);
    for (BYTE note = 21; note <= 108; ++note) {
        const QRectF key = Piano().keyRect(note);
        EXPECT_EQ(Piano().keyAt({key.center().x(), key.height() * (NK::Piano::IsBlackNote(note) ? 0.5 : 0.9)}), note);
    }
}

TEST_F(PanelRange, TheSplitMarkFollows) {
    Click("voice-mode-split");
    auto& mark = Find<SplitMark>("split-mark");
    for (const int keys : {88, 37, 61}) {
        Choose(keys);
        EXPECT_NEAR(mark.handleX(), Piano().keyRect(60).left(), 1.0) << keys;
    }
    Choose(25);
    EXPECT_EQ(mark.handleX(), 0.0) << "all that is shown is the main voice's";
    Click("octave-down");
    EXPECT_NEAR(mark.handleX(), Piano().keyRect(60).left(), 1.0);
}

}  // namespace
