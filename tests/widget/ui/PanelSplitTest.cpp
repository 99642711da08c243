// The mark above the piano by which the split point is moved.
#include <QAccessible>

#include "support/SynthModel.h"
#include "ui/parts/NoticeLine.h"
#include "ui/SplitMark.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;

namespace {

class PanelSplit : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        Click("voice-mode-split");
        rig.TakeWritten();
    }
    SplitMark& Mark() { return Find<SplitMark>("split-mark"); }
    QPoint Handle() { return {qRound(Mark().handleX()), 6}; }
    /// Where the mark stands when this is the first key of the main voice.
    int LeftOf(BYTE note) { return qRound(Piano().keyRect(note).left()); }
    void DragTo(int x) {
        const QPoint from = Handle();
        QTest::mousePress(&Mark(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 4; ++step) {
            QMouseEvent move(QEvent::MouseMove, QPointF(from.x() + (x - from.x()) * step / 4.0, 6),
                             Mark().mapToGlobal(QPointF(0, 0)), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(&Mark(), &move);
        }
        QTest::mouseRelease(&Mark(), Qt::LeftButton, {}, QPoint(x, 6));
    }
    void Show25Keys() {
        for (QAction* action : window->findChildren<QAction*>()) {
            if (action->text() == "25 Keys") {
                action->trigger();
            }
        }
        ASSERT_EQ(Piano().GetKeyCount(), 25);
    }
    void ExpectSplitAt(int note) {
        EXPECT_EQ(Engine().GetSplitPoint(), note);
        EXPECT_EQ(Mark().value(), note);
        EXPECT_EQ(Piano().splitMainPartStartKey(), note);
    }
};

TEST_F(PanelSplit, IsThereInSplitModeAndStandsBeforeMiddleC) {
    EXPECT_TRUE(Mark().isVisible());
    ExpectSplitAt(60);
    EXPECT_EQ(Handle().x(), LeftOf(60));
    for (const char* mode : {"voice-mode-dual", "voice-mode-single"}) {
        Click(mode);
        EXPECT_FALSE(Mark().isVisible()) << mode;
    }
}

TEST_F(PanelSplit, IsDraggedFromKeyToKeyAndTheKeysPlayTheirVoice) {
    for (const BYTE note : std::initializer_list<BYTE>{48, 49, 77, 55}) {
        DragTo(LeftOf(note));
        ExpectSplitAt(note);
        rig.TakeWritten();
        Engine().PlayNoteOn(static_cast<BYTE>(note - 1), 100);
        EXPECT_EQ(rig.TakeWritten().front().substr(0, 2), "92") << int(note);
        Engine().PlayNoteOn(note, 100);
        EXPECT_EQ(rig.TakeWritten().front().substr(0, 2), "90") << int(note);
    }
    DragTo(-500);
    ExpectSplitAt(36);
    DragTo(5000);
    ExpectSplitAt(96);
}

TEST_F(PanelSplit, OneThatAPresetHidesGivesTheFocusToThePanel) {
    Click("voice-mode-single");
    ASSERT_TRUE(Engine().SavePreset(L"single"));
    Click("voice-mode-split");
    Mark().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(Mark().hasFocus());
    ASSERT_TRUE(controls->LoadPreset(L"single", false));
    ASSERT_FALSE(Mark().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), panel);
}

TEST_F(PanelSplit, APressAtTheFirstKeyMovesNothingUntilItIsDragged) {
    Show25Keys();
    ExpectSplitAt(60);
    for (const int offset : {3, 8}) {  // the cap is drawn whole, from the piano's end on
        const QPoint from = Handle() + QPoint(offset, 0);
        QTest::mousePress(&Mark(), Qt::LeftButton, {}, from);
        EXPECT_TRUE(Mark().isSliderDown()) << offset;
        const auto moveTo = [&](int x) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 6), Mark().mapToGlobal(QPointF(x, 6)), Qt::NoButton,
                             Qt::LeftButton, {});
            QApplication::sendEvent(&Mark(), &move);
        };
        moveTo(from.x() + 1);
        ExpectSplitAt(60);
        moveTo(from.x() + LeftOf(64) - LeftOf(60));
        ExpectSplitAt(64);
        moveTo(from.x());
        ExpectSplitAt(60);
        QTest::mouseRelease(&Mark(), Qt::LeftButton, {}, from);
        ExpectSplitAt(60);
    }
}

TEST_F(PanelSplit, IsGraspedWhereItIsDrawnWhenItsKeyIsOutOfSight) {
    Show25Keys();
    Engine().SetSplitPoint(100);
    const int end = Mark().width();
    QTest::mousePress(&Mark(), Qt::LeftButton, {}, {end - 13, 6});
    EXPECT_TRUE(Mark().isSliderDown());
    QTest::mouseRelease(&Mark(), Qt::LeftButton, {}, {end - 13, 6});
    ExpectSplitAt(100);
}

TEST_F(PanelSplit, IsDraggedByAFingerThatMeetsItNearly) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const QPoint from = Handle() + QPoint(15, 0);
    QTest::touchEvent(window->windowHandle(), screen.get())
        .press(0, Mark().mapTo(window.get(), from), window->windowHandle());
    const QPoint to = from + QPoint(LeftOf(48) - LeftOf(60), 0);
    QTest::touchEvent(window->windowHandle(), screen.get())
        .move(0, Mark().mapTo(window.get(), to), window->windowHandle());
    ExpectSplitAt(48);
    QTest::touchEvent(window->windowHandle(), screen.get())
        .release(0, Mark().mapTo(window.get(), to), window->windowHandle());
    EXPECT_FALSE(Mark().isSliderDown());
}

TEST_F(PanelSplit, APressBesideTheHandleMovesNothing) {
    QTest::mouseClick(&Mark(), Qt::LeftButton, {}, {LeftOf(72), 6});
    QTest::mouseDClick(&Mark(), Qt::LeftButton, {}, {LeftOf(72), 6});
    ExpectSplitAt(60);
}

TEST_F(PanelSplit, GoesByKeysAndHomeOrADoubleClickBringsItBack) {
    Mark().setFocus(Qt::TabFocusReason);
    Type(Qt::Key_Left);
    ExpectSplitAt(59);
    Type(Qt::Key_PageDown);
    ExpectSplitAt(47);
    Type(Qt::Key_Right);
    ExpectSplitAt(48);
    Type(Qt::Key_End);
    ExpectSplitAt(48);
    Type(Qt::Key_Home);
    ExpectSplitAt(60);
    DragTo(LeftOf(72));
    QTest::mouseDClick(&Mark(), Qt::LeftButton, {}, Handle());
    ExpectSplitAt(60);
    rig.TakeWritten();
    Press(Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), std::vector<std::string>{"90 3c 50"}) << "other keys play";
    Release(Qt::Key_Z);
}

TEST_F(PanelSplit, MovingItWhileKeysAreHeldLeavesNothingHanging) {
    SynthModel synth;
    rig.GetDevice(kSynth).onWrite = [&synth](const LibMidi::MIDIEvent& event) { synth.Play(event); };
    for (const BYTE note : std::initializer_list<BYTE>{50, 58, 62, 70}) {
        Engine().PlayNoteOn(note, 100);
    }
    DragTo(LeftOf(55));
    DragTo(LeftOf(66));
    for (const BYTE note : std::initializer_list<BYTE>{50, 58, 62, 70}) {
        Engine().PlayNoteOff(note);
    }
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsSounding());
    rig.GetDevice(kSynth).onWrite = nullptr;
}

TEST_F(PanelSplit, FollowsWhatAPresetSets) {
    DragTo(LeftOf(50));
    ASSERT_TRUE(Engine().SavePreset(L"low"));
    Engine().SetSplitPoint(70);
    ExpectSplitAt(70);
    ASSERT_TRUE(controls->LoadPreset(L"low", false));
    ExpectSplitAt(50);
}

TEST_F(PanelSplit, ShowsEachHalfInTheColourOfItsVoice) {
    const QImage picture = panel->grab().toImage();
    const int y = qRound((Mark().y() + Mark().height() - 2) * picture.devicePixelRatio());
    const QColor bass = picture.pixelColor(qRound(100 * picture.devicePixelRatio()), y);
    const QColor main = picture.pixelColor(qRound(1000 * picture.devicePixelRatio()), y);
    EXPECT_GT(bass.red(), bass.blue() + 100) << "amber";
    EXPECT_GT(main.green(), main.red() + 80) << "green";
}

TEST_F(PanelSplit, CoversNoLetterAboveTheKeys) {
    constexpr int kLetters = 11;  // of the hints, from above, as far as they stand on their line
    for (const int note : {60, 61, 62, 65}) {
        Engine().SetSplitPoint(note);
        QImage picture(Mark().size(), QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        Mark().render(&picture, {}, {}, QWidget::DrawChildren);
        for (int y = 0; y < kLetters; ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                ASSERT_EQ(picture.pixelColor(x, y).alpha(), 0) << note << " at " << x << ", " << y;
            }
        }
        EXPECT_NE(picture.pixelColor(qRound(Mark().handleX()), kLetters + 3).alpha(), 0);
    }
}

TEST_F(PanelSplit, IsASliderForScreenReadersThatNamesItsNote) {
    QAccessibleInterface* const mark = QAccessible::queryAccessibleInterface(&Mark());
    EXPECT_EQ(mark->role(), QAccessible::Slider);
    EXPECT_EQ(mark->text(QAccessible::Name), "Split point");
    EXPECT_EQ(mark->text(QAccessible::Description), "C4");
    ASSERT_NE(mark->valueInterface(), nullptr);
    mark->valueInterface()->setCurrentValue(55);
    ExpectSplitAt(55);
    EXPECT_EQ(mark->text(QAccessible::Description), "G3");
}

TEST_F(PanelSplit, TheOctaveShiftThatIsOfferedReachesTheBass) {
    auto& line = Find<NoticeLine>("display-notice");
    Engine().SetSplitPoint(40);
    Click("voice-mode-split");
    ASSERT_FALSE(line.isHidden());
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_EQ(Label("octave-value"),
              "\xE2\x88\x92"
              "2");
    EXPECT_TRUE(line.isHidden());
    Click("octave-up");
    Click("voice-mode-split");
    EXPECT_FALSE(line.isHidden()) << "the lowest key plays note 48";
    Engine().SetSplitPoint(49);
    EXPECT_TRUE(line.isHidden());
    Engine().SetSplitPoint(20);
    Click("voice-mode-split");
    EXPECT_TRUE(line.isHidden()) << "no shift reaches it";
}

TEST_F(PanelSplit, TheOfferIsRenewedWhenTheSplitMovesWhileItIsShown) {
    auto& line = Find<NoticeLine>("display-notice");
    Engine().SetSplitPoint(55);
    Click("voice-mode-split");
    ASSERT_FALSE(line.isHidden());
    Engine().SetSplitPoint(40);
    ASSERT_FALSE(line.isHidden());
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_EQ(Label("octave-value"),
              "\xE2\x88\x92"
              "2");
    Click("octave-up");
    Click("octave-up");
    Engine().SetSplitPoint(50);
    EXPECT_TRUE(line.isHidden()) << "it comes by the key only";
    Click("voice-mode-split");
    ASSERT_FALSE(line.isHidden());
    Engine().SetSplitPoint(20);
    EXPECT_TRUE(line.isHidden()) << "no shift reaches it";
}

TEST_F(PanelSplit, StandsOverItsKeyAtEveryScale) {
    DragTo(LeftOf(65));
    for (const double scale : {0.68, 1.25}) {
        panel->setPanelScale(scale);
        window->setFixedSize(panel->sizeHint());
        QApplication::processEvents();
        EXPECT_NEAR(Mark().x() + Mark().handleX(), Piano().x() + Piano().keyRect(65).left(), 1.0) << scale;
        DragTo(LeftOf(65));
        ExpectSplitAt(65);
    }
}

}  // namespace
