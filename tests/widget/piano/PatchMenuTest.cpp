#include <gtest/gtest.h>
#include <QTest>
#include <QTimer>

#include "QtWidgets/piano/QGMPatchMenu.h"

namespace {

QAction* ActionOf(const QGMPatchMenu& menu, int program) {
    for (QAction* action : menu.actions()) {
        if (!action->isSeparator() && action->data().toInt() == program) {
            return action;
        }
    }
    return nullptr;
}

TEST(PatchMenu, Has128Programs16SeparatorsAndTheDrumKit) {
    const QGMPatchMenu menu(0, 5);
    int separators = 0;
    int programs = 0;
    for (const QAction* action : menu.actions()) {
        if (action->isSeparator()) {
            ++separators;
            EXPECT_EQ(programs % 8, 0);
        } else if (action->data().toInt() >= 0) {
            EXPECT_EQ(action->data().toInt(), programs);
            ++programs;
        }
    }
    EXPECT_EQ(separators, 16);
    EXPECT_EQ(programs, 128);
    EXPECT_EQ(menu.actions().size(), 145);
    EXPECT_EQ(menu.actions().last()->text(), "Standard Drum Kit");
    EXPECT_EQ(menu.actions().last()->data().toInt(), -1);
}

TEST(PatchMenu, LabelsAreNumberedFrom001) {
    const QGMPatchMenu menu(0, 0);
    EXPECT_EQ(ActionOf(menu, 0)->text(), "001 Acoustic Grand Piano");
    EXPECT_EQ(ActionOf(menu, 127)->text(), "128 Gunshot");
}

TEST(PatchMenu, OnlyTheCurrentProgramIsChecked) {
    for (const int current : {0, 63, 127, -1}) {
        const QGMPatchMenu menu(1, current);
        for (const QAction* action : menu.actions()) {
            const bool isCurrent = !action->isSeparator() && action->data().toInt() == current;
            EXPECT_EQ(action->isChecked(), isCurrent) << action->text().toStdString();
            EXPECT_EQ(action->isCheckable(), isCurrent) << action->text().toStdString();
        }
        EXPECT_EQ(menu.voice(), 1);
    }
}

std::optional<int> ChooseBy(QGMPatchMenu& menu, const std::function<void()>& user) {
    QTimer::singleShot(0, &menu, user);
    return menu.choose(QPoint(10, 10));
}

TEST(PatchMenu, ReturnsTheChosenProgram) {
    for (const int program : {0, 40, 127, -1}) {
        QGMPatchMenu menu(0, 5);
        const auto chosen = ChooseBy(menu, [&] {
            menu.setActiveAction(ActionOf(menu, program));
            QTest::keyClick(&menu, Qt::Key_Return);
        });
        EXPECT_EQ(chosen, program);
    }
}

TEST(PatchMenu, ClosingWithoutAChoiceReturnsNothing) {
    QGMPatchMenu menu(0, 5);
    EXPECT_EQ(ChooseBy(menu, [&] { QTest::keyClick(&menu, Qt::Key_Escape); }), std::nullopt);
}

}  // namespace
