// The boxes that come by themselves, while somebody plays.
#include "ui/parts/UnaskedBox.h"

#include <gmock/gmock.h>

#include <QPointer>

#include "engine/EngineControls.h"
#include "ui/parts/MessageBoxes.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

namespace {

class PanelUnaskedBox : public PanelTest {
protected:
    /// A box with Yes and No over the panel, whose first second is not over.
    void Ask() {
        box = UnaskedBox::show(
            MessageBoxes::Make(panel, QMessageBox::Warning, "Warning", "Save?", QMessageBox::Yes | QMessageBox::No),
            *panel, [this](QMessageBox::StandardButton button) { answers.push_back(button); });
        box->activateWindow();
        Wait([this] { return QApplication::activeWindow() == box; });  // as where the system gives it the keyboard
        ASSERT_TRUE(UnaskedBox::isActive());
    }
    void AskAndWait() {
        Ask();
        EndDeafTime(*box);
    }
    QAbstractButton& No() { return *box->button(QMessageBox::No); }
    bool IsOpen() {
        QApplication::processEvents();
        return box && box->isVisible();
    }

    QPointer<QMessageBox> box;
    std::vector<QMessageBox::StandardButton> answers;
};

}  // namespace

TEST_F(PanelUnaskedBox, NothingIsItsDefault) {
    AskAndWait();
    for (const QAbstractButton* button : box->buttons()) {
        const auto* const push = qobject_cast<const QPushButton*>(button);
        ASSERT_NE(push, nullptr);
        EXPECT_FALSE(push->isDefault());
        EXPECT_FALSE(push->hasFocus());
    }
    Type(Qt::Key_Return);
    Type(Qt::Key_Enter);
    Type(Qt::Key_Space);
    EXPECT_TRUE(IsOpen());
}

TEST_F(PanelUnaskedBox, EscapeAndTheCloseButtonDecideNothing) {
    AskAndWait();
    Type(Qt::Key_Escape);
    EXPECT_FALSE(IsOpen());
    AskAndWait();
    box->close();
    EXPECT_FALSE(IsOpen());
    EXPECT_THAT(answers, ElementsAre(QMessageBox::NoButton, QMessageBox::NoButton));
}

TEST_F(PanelUnaskedBox, NotesGoOnAndBeginUnderneathAndNoLetterActs) {
    Press(Qt::Key_Z);
    rig.TakeWritten();
    AskAndWait();
    EXPECT_THAT(rig.TakeWritten(), Not(Contains(StartsWith("8")))) << "what is held goes on";
    Release(Qt::Key_Z);
    Wait([&] { return rig.TakeWritten() == std::vector<std::string>{"80 3c 00"}; });
    Press(Qt::Key_N);
    EXPECT_THAT(rig.TakeWritten(), Contains(StartsWith("90 45")));
    Release(Qt::Key_N);
    Wait([&] { return rig.TakeWritten() == std::vector<std::string>{"80 45 00"}; });
    Press(Qt::Key_Y);
    Release(Qt::Key_Y);
    EXPECT_TRUE(IsOpen());
}

TEST_F(PanelUnaskedBox, SpaceIsThePedalUnlessAButtonHasTheFocus) {
    AskAndWait();
    Press(Qt::Key_Space);
    EXPECT_THAT(rig.TakeWritten(), Contains("b0 40 7f"));
    Release(Qt::Key_Space);
    EXPECT_THAT(rig.TakeWritten(), Contains("b0 40 00"));
    EXPECT_TRUE(IsOpen());
    No().setFocus();
    Type(Qt::Key_Space);
    EXPECT_FALSE(IsOpen());
    EXPECT_THAT(answers, ElementsAre(QMessageBox::No));
}

TEST_F(PanelUnaskedBox, EnterPressesTheButtonThatHasTheFocus) {
    AskAndWait();
    No().setFocus();
    Type(Qt::Key_Return);
    EXPECT_FALSE(IsOpen());
    EXPECT_THAT(answers, ElementsAre(QMessageBox::No));
}

TEST_F(PanelUnaskedBox, AClickChooses) {
    AskAndWait();
    QTest::mouseClick(&No(), Qt::LeftButton);
    EXPECT_FALSE(IsOpen());
    EXPECT_THAT(answers, ElementsAre(QMessageBox::No));
}

TEST_F(PanelUnaskedBox, InItsFirstSecondNothingActs) {
    Ask();
    No().setFocus();
    Type(Qt::Key_Space);
    Type(Qt::Key_Return);
    Type(Qt::Key_Escape);
    Type(Qt::Key_N, Qt::AltModifier);
    QTest::mouseClick(&No(), Qt::LeftButton);
    EXPECT_TRUE(IsOpen());
    EXPECT_THAT(answers, ElementsAre());
}

TEST_F(PanelUnaskedBox, AKeyThatIsHeldOnFromBeforeDoesNothing) {
    AskAndWait();
    No().setFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        // As X11 repeats a held key: a release and a press at one moment, without the flag.
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, 65, 0, 0);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, 65, 0, 0);
        release.setTimestamp(5000);
        press.setTimestamp(5000);
        QApplication::sendEvent(&No(), &release);
        QApplication::sendEvent(&No(), &press);
        QKeyEvent flagged(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&No(), &flagged);
    }
    EXPECT_TRUE(IsOpen());
    EXPECT_THAT(answers, ElementsAre());
}

TEST_F(PanelUnaskedBox, WhatIsHeldEndsWhenTheKeyboardGoesElsewhere) {
    AskAndWait();
    Press(Qt::Key_Z);
    EXPECT_THAT(rig.TakeWritten(), Contains(StartsWith("90 3c")));
    QWidget other;
    other.show();
    other.activateWindow();
    Wait([&] { return QApplication::activeWindow() == &other; });
    EXPECT_THAT(rig.TakeWritten(), Contains("80 3c 00"));
}

TEST_F(PanelUnaskedBox, ItWaitsUntilNoDialogIsOpen) {
    const auto show = [&] {
        return UnaskedBox::show(MessageBoxes::Make(panel, QMessageBox::Warning, "Warning", "Lost."), *panel);
    };
    QDialog dialog(panel);
    QPointer<QMessageBox> withdrawn;
    QTimer::singleShot(0, &dialog, [&] {
        box = show();
        withdrawn = show();
        QDialog question(&dialog);
        QTimer::singleShot(0, &question, &QDialog::reject);
        question.exec();
        EXPECT_FALSE(IsOpen()) << "it could not be answered over a dialog";
        UnaskedBox::withdraw(*withdrawn);
        dialog.reject();
    });
    dialog.exec();
    EXPECT_TRUE(QTest::qWaitFor([this] { return IsOpen(); }, kWaitMs));
    EXPECT_FALSE(withdrawn && withdrawn->isVisible());
    EndDeafTime(*box);
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    EXPECT_FALSE(IsOpen());
}

TEST_F(PanelUnaskedBox, ABoxThatTheProgramWaitsForIsAsCareful) {
    const auto shown = MessageBoxes::Make(panel, QMessageBox::Question, "Warning", "Save?",
                                          QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    QTimer::singleShot(0, shown.get(), [&] {
        Wait([&] { return QApplication::activeWindow() == shown.get(); });
        EndDeafTime(*shown);
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_S, Qt::Key_Space, Qt::Key_Return}) {
            Type(key);
            EXPECT_TRUE(shown->isVisible()) << key;
        }
        EXPECT_FALSE(UnaskedBox::isActive());
        Type(Qt::Key_Escape);
    });
    EXPECT_EQ(UnaskedBox::exec(*shown), QMessageBox::NoButton);
}
