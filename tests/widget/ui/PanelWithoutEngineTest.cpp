// The panel of a program whose MIDI could not be set up.
#include "widget/ui/PanelRig.h"

#include <QMenu>
#include <QMetaMethod>

#include "ui/ParameterEditor.h"

using namespace KivoraTest;

namespace {

class PanelWithoutEngine : public PanelTest {
protected:
    void SetUp() override { ShowPanel(); }
};

TEST_F(PanelWithoutEngine, ShowsTheErrorTexts) {
    for (const char* name : {"patch1", "patch2"}) {
        EXPECT_EQ(Caption(name), "Err") << name;
    }
    EXPECT_EQ(Label("display-patch1-line1"), "Error");
    EXPECT_EQ(Label("display-patch1-line2"), "Error: pointer to the engine is NULL");
    EXPECT_EQ(Caption("transpose1"), "");
    EXPECT_EQ(Caption("volume1"), "");
    EXPECT_EQ(Label("display-velocity"), "--");
    EXPECT_EQ(Label("display-sustain"), "OFF");
    EXPECT_EQ(Label("record-time"), "00:00");
}

TEST_F(PanelWithoutEngine, EverySlotIsSafe) {
    ModalAnswers answers;
    const QMetaObject& meta = KivoraWidget::staticMetaObject;
    int called = 0;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() != QMetaMethod::Slot || method.access() != QMetaMethod::Public) {
            continue;
        }
        ++called;
        const BYTE byte = 60;
        const int message = 0x40403C90;
        const QPoint point(5, 5);
        bool done = false;
        switch (method.parameterCount()) {
            case 0:
                done = method.invoke(panel, Qt::DirectConnection);
                break;
            case 1:
                done = method.parameterTypeName(0) == "int"
                           ? method.invoke(panel, Qt::DirectConnection, Q_ARG(int, message))
                           : method.invoke(panel, Qt::DirectConnection, Q_ARG(QPoint, point));
                break;
            default:
                done = method.invoke(panel, Qt::DirectConnection, Q_ARG(BYTE, byte), Q_ARG(BYTE, byte));
                break;
        }
        EXPECT_TRUE(done) << method.methodSignature().toStdString();
        QApplication::processEvents();
    }
    EXPECT_EQ(called, 57);
    EXPECT_EQ(Caption("patch1"), "Err");
}

TEST_F(PanelWithoutEngine, EveryControlCanBeClickedAndEveryKeyTyped) {
    ModalAnswers answers;
    for (QAbstractButton* button : panel->findChildren<QAbstractButton*>()) {
        QTest::mouseClick(button, Qt::LeftButton);
        QApplication::processEvents();
    }
    for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Space, Qt::Key_Escape, Qt::Key_Delete}) {
        Type(key);
    }
    Type(Qt::Key_Minus, Qt::AltModifier);
    QTest::mouseClick(&Piano(), Qt::LeftButton);
    EXPECT_EQ(Caption("patch1"), "Err");
    EXPECT_TRUE(Button("voice-mode-single").isChecked());
}

TEST_F(PanelWithoutEngine, TheMenusEntriesAreSafe) {
    ModalAnswers answers;
    Type(Qt::Key_F10);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QApplication::activePopupWidget()->close();
    for (QAction* action : Find<QMenu>("panel-menu").actions()) {
        if (action->menu() == nullptr && !action->isSeparator()) {
            action->trigger();
            QApplication::processEvents();
        }
    }
    EXPECT_FALSE(window->isVisible()) << "the last entry quits";
}

TEST_F(PanelWithoutEngine, TheLanguageChanges) {
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    EXPECT_EQ(Caption("about"), "О программе");
    EXPECT_EQ(Caption("patch1"), "Err");
}

TEST(ParameterEditor, WithoutAnEngineNothingIsEditedAndTheSecondVoiceIsSlot1) {
    ParameterEditor editor(nullptr);
    EXPECT_FALSE(editor.HasSecondVoice());
    EXPECT_EQ(editor.SecondarySlot(), 1);
    for (int mode = 0; mode <= 6; ++mode) {
        editor.SetMode(static_cast<ParameterEditor::EMode>(mode));
        editor.StepUp();
        editor.StepDown();
        EXPECT_EQ(static_cast<int>(editor.GetMode()), mode);
    }
}

TEST(ParameterEditor, TheSecondaryVoiceIsSlot1ButInSplitModeSlot2) {
    EngineRig rig;
    Kivora::EngineControls controls(rig.CreateOpen());
    const ParameterEditor editor(&controls);
    EXPECT_EQ(editor.SecondarySlot(), 1);
    rig.engine->SetSplit(true);
    EXPECT_EQ(editor.SecondarySlot(), 2);
    EXPECT_TRUE(editor.HasSecondVoice());
    rig.engine->SetDual(true);
    EXPECT_EQ(editor.SecondarySlot(), 1) << "dual mode is asked first";
    rig.engine->SetSplit(false);
    rig.engine->SetDual(false);
    EXPECT_FALSE(editor.HasSecondVoice());
}

}  // namespace
