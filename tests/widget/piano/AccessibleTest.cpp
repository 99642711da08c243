#include <QAccessible>

#include "PianoFixture.h"
#include "QtWidgets/piano/QPianoAccessible.h"
#include "support/AccessibleChanges.h"

namespace {

class PianoAccessibleTest : public PianoTest {
protected:
    PianoAccessibleTest() : interface_(QAccessible::queryAccessibleInterface(&piano_)) {
        piano_.show();
        EXPECT_NE(interface_, nullptr);
    }
    QAccessibleInterface* Key(BYTE note) { return interface_->child(note - piano_.GetFirstNote()); }

    QAccessibleInterface* interface_;
};

TEST_F(PianoAccessibleTest, ThePianoHasAChildForEveryVisibleKey) {
    EXPECT_EQ(interface_->childCount(), 12);
    for (int i = 0; i < 12; ++i) {
        QAccessibleInterface* key = interface_->child(i);
        ASSERT_NE(key, nullptr);
        EXPECT_TRUE(key->isValid());
        EXPECT_EQ(key->parent(), interface_);
        EXPECT_EQ(interface_->indexOfChild(key), i);
        EXPECT_EQ(interface_->child(i), key) << "one object a key";
        EXPECT_EQ(key->role(), QAccessible::Button);
        EXPECT_EQ(key->childCount(), 0);
    }
    EXPECT_EQ(interface_->child(12), nullptr);
    EXPECT_EQ(interface_->child(-1), nullptr);
}

TEST_F(PianoAccessibleTest, Names) {
    EXPECT_EQ(interface_->text(QAccessible::Name), "Piano keyboard");
    EXPECT_EQ(Key(60)->text(QAccessible::Name), "C4");
    EXPECT_EQ(Key(61)->text(QAccessible::Name), "C#4");
    piano_.setOctaves_0_11(true);
    EXPECT_EQ(Key(60)->text(QAccessible::Name), "C5");
    piano_.setAccessibleName("My keys");
    EXPECT_EQ(interface_->text(QAccessible::Name), "My keys");
}

TEST_F(PianoAccessibleTest, LitKeyIsPressed) {
    EXPECT_FALSE(Key(64)->state().pressed);
    piano_.PressKey(64);
    EXPECT_TRUE(Key(64)->state().pressed);
    piano_.ReleaseKey(64);
    EXPECT_FALSE(Key(64)->state().pressed);
}

TEST_F(PianoAccessibleTest, EachChangeOfALitKeyIsToldOnce) {
    KivoraTest::AccessibleChanges changes;
    piano_.PressKey(64);
    EXPECT_EQ(changes.Take(), CSignals{"E4 pressed+"});
    piano_.PressKey(64);
    EXPECT_EQ(changes.Take(), CSignals{});
    piano_.ReleaseKey(64);
    EXPECT_EQ(changes.Take(), CSignals{"E4 pressed-"});
    piano_.PressKey(30);
    EXPECT_EQ(changes.Take(), CSignals{}) << "not shown";
    piano_.PressKey(60);
    piano_.PressKey(71);
    changes.Take();
    piano_.ReleaseAll();
    EXPECT_EQ(changes.Take(), (CSignals{"C4 pressed-", "B4 pressed-"}));
}

TEST_F(PianoAccessibleTest, WhileItIsQuietKeysThatLightAreNotTold) {
    KivoraTest::AccessibleChanges changes;
    QPianoAccessible::setQuiet(true);
    piano_.PressKey(64);
    EXPECT_EQ(changes.Take(), CSignals{});
    EXPECT_TRUE(Key(64)->state().pressed) << "who asks is told";
    QPianoAccessible::setQuiet(false);
    piano_.ReleaseKey(64);
    EXPECT_EQ(changes.Take(), CSignals{"E4 pressed-"});
}

TEST_F(PianoAccessibleTest, PressActionPlaysTheKeyForAMoment) {
    QAccessibleActionInterface* action = Key(64)->actionInterface();
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(action->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    action->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(Signals(), (CSignals{"pressed 64", "pressed 64 100"}));
    EXPECT_TRUE(Key(64)->state().pressed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !piano_.IsPressed(64); }, 20000));
    EXPECT_EQ(Signals(), CSignals{"released 64"});
}

TEST_F(PianoAccessibleTest, HidingEndsWhatTheActionPlays) {
    Key(64)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    Signals();
    piano_.hide();
    EXPECT_EQ(Signals(), CSignals{"released 64"});
}

TEST_F(PianoAccessibleTest, KeysLieWhereTheyAreDrawn) {
    const QPoint onBlack = piano_.mapToGlobal(QPoint(15, 10));
    EXPECT_EQ(interface_->childAt(onBlack.x(), onBlack.y()), Key(61));
    EXPECT_TRUE(Key(61)->rect().contains(onBlack));
    EXPECT_EQ(Key(62)->rect(), QRect(piano_.mapToGlobal(QPoint(20, 0)), QSize(20, 100)));
    const QPoint outside = piano_.mapToGlobal(QPoint(5, 500));
    EXPECT_EQ(interface_->childAt(outside.x(), outside.y()), nullptr);
}

TEST_F(PianoAccessibleTest, CursorIsTheFocus) {
    ShowWithCursor();
    Type(Qt::Key_Home);
    Type(Qt::Key_Right);
    EXPECT_EQ(interface_->focusChild(), Key(61));
    EXPECT_TRUE(Key(61)->state().focused);
    EXPECT_FALSE(Key(60)->state().focused);
}

TEST_F(PianoAccessibleTest, KeyThatIsNoLongerShownIsInvalid) {
    QAccessibleInterface* key = Key(60);
    piano_.SetKeys(72, 12);
    EXPECT_FALSE(key->isValid());
    EXPECT_TRUE(key->state().invalid);
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(piano_.IsPressed(60));
    EXPECT_EQ(Key(72)->text(QAccessible::Name), "C5");
    EXPECT_EQ(interface_->indexOfChild(key), -1);
}

TEST(PianoAccessible, InterfacesGoWithTheirPiano) {
    QAccessible::Id id = 0;
    {
        QPiano piano;
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&piano);
        id = QAccessible::uniqueId(interface->child(3));
        EXPECT_NE(QAccessible::accessibleInterface(id), nullptr);
    }
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

}  // namespace
