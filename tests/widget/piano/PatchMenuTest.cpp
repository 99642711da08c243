#include <gtest/gtest.h>
#include <algorithm>
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
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

std::optional<int> ChooseBy(QGMPatchMenu& menu, const QPoint& point, const std::function<void()>& user) {
    QTimer::singleShot(0, &menu, user);
    return menu.choose(point);
}

TEST(PatchMenu, ReturnsTheChosenProgram) {
    for (const int program : {0, 40, 127, -1}) {
        QGMPatchMenu menu(0, 5);
        const auto chosen = ChooseBy(menu, QPoint(10, 10), [&] {
            menu.setActiveAction(ActionOf(menu, program));
            QTest::keyClick(&menu, Qt::Key_Return);
        });
        EXPECT_EQ(chosen, program);
    }
}

TEST(PatchMenu, ClosingWithoutAChoiceReturnsNothing) {
    QGMPatchMenu menu(0, 5);
    EXPECT_EQ(ChooseBy(menu, QPoint(10, 10), [&] { QTest::keyClick(&menu, Qt::Key_Escape); }), std::nullopt);
}

/// Works the menu while it is open, then closes it.
void WhileOpen(QGMPatchMenu& menu, const std::function<void()>& user, const QPoint& point = QPoint(10, 10)) {
    EXPECT_EQ(ChooseBy(menu, point,
                       [&] {
                           user();
                           menu.close();
                       }),
              std::nullopt);
}

TEST(PatchMenu, OpensAtTheCurrentProgramsFamilyWithThatProgramActive) {
    for (const int current : {0, 48, 127, -1}) {
        QGMPatchMenu menu(0, current);
        WhileOpen(menu, [&] {
            ASSERT_NE(menu.activeAction(), nullptr);
            EXPECT_EQ(menu.activeAction()->data().toInt(), current);
            EXPECT_EQ(menu.shownFamily(), std::max(current, 0) / 8);
            EXPECT_TRUE(menu.rect().contains(menu.programRect(current)));
        });
    }
}

TEST(PatchMenu, EveryProgramIsReachedByKeysAndThenInSight) {
    QGMPatchMenu menu(0, 0);
    WhileOpen(menu, [&] {
        for (int place = 1; place <= 129; ++place) {
            QTest::keyClick(&menu, Qt::Key_Down);
            const int expected = place == 128 ? -1 : place % 129;
            ASSERT_EQ(menu.activeAction()->data().toInt(), expected);
            ASSERT_TRUE(menu.rect().contains(menu.programRect(expected)));
        }
        QTest::keyClick(&menu, Qt::Key_Up);
        EXPECT_EQ(menu.activeAction()->data().toInt(), -1);
        QTest::keyClick(&menu, Qt::Key_Home);
        QTest::keyClick(&menu, Qt::Key_Right);
        EXPECT_EQ(menu.activeAction()->data().toInt(), 8);
        QTest::keyClick(&menu, Qt::Key_Left);
        QTest::keyClick(&menu, Qt::Key_Left);
        EXPECT_EQ(menu.activeAction()->data().toInt(), 120);
        QTest::keyClick(&menu, Qt::Key_End);
        EXPECT_EQ(menu.activeAction()->data().toInt(), -1);
    });
}

TEST(PatchMenu, AClickOnAFamilyThenOnAProgramChooses) {
    QGMPatchMenu menu(0, 5);
    const auto chosen = ChooseBy(menu, QPoint(10, 10), [&] {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(6).center());
        EXPECT_EQ(menu.shownFamily(), 6);
        EXPECT_TRUE(menu.isVisible());
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.programRect(49).center());
    });
    EXPECT_EQ(chosen, 49);
}

TEST(PatchMenu, TheDrumKitIsChosenByAClick) {
    QGMPatchMenu menu(0, 5);
    EXPECT_EQ(ChooseBy(menu, QPoint(10, 10),
                       [&] { QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.programRect(-1).center()); }),
              -1);
}

TEST(PatchMenu, APointerThatRestsOnAFamilyShowsItAndOneThatPassesDoesNot) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        QTest::mouseMove(&menu, menu.familyRect(9).center());
        QTest::mouseMove(&menu, menu.programRect(2).center());
        EXPECT_EQ(menu.shownFamily(), 0);
        EXPECT_EQ(menu.activeAction()->data().toInt(), 2);
        QTest::mouseMove(&menu, menu.familyRect(9).center());
        EXPECT_TRUE(QTest::qWaitFor([&] { return menu.shownFamily() == 9; }));
    });
}

TEST(PatchMenu, TheReleaseOfTheButtonThatOpenedItChoosesNothing) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        QMouseEvent release(QEvent::MouseButtonRelease, menu.programRect(2).center(), QCursor::pos(), Qt::RightButton,
                            {}, {});
        QApplication::sendEvent(&menu, &release);
        EXPECT_TRUE(menu.isVisible());
    });
}

TEST(PatchMenu, NamesAreEnglishWhereTheyAreNotToBeTranslated) {
    QGMPatchMenu menu(0, 5);
    menu.setTranslated(false);
    EXPECT_EQ(ActionOf(menu, 48)->text(), "049 String Ensemble 1");
    EXPECT_EQ(ActionOf(menu, -1)->text(), "Standard Drum Kit");
}

TEST(PatchMenu, LeavesWhatItIsNotToCoverFree) {
    QGMPatchMenu menu(0, 5);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect display(screen.left() + 100, screen.top() + 60, 250, 80);
    menu.setAvoided(display);
    WhileOpen(
        menu,
        [&] {
            EXPECT_FALSE(menu.geometry().intersects(display));
            EXPECT_TRUE(screen.contains(menu.geometry()));
        },
        display.center());
}

TEST(PatchMenuPlace, IsInsideTheScreenAndBesideTheDisplayOnEveryScreen) {
    const QSize menu(500, 240);
    for (const QSize& size :
         {QSize(800, 600), QSize(1024, 600), QSize(911, 512), QSize(1093, 614), QSize(1920, 1080)}) {
        const QRect room(QPoint(0, 0), size);
        const double scale = std::min(1.0, size.width() / 1180.0);
        const int top = (size.height() - static_cast<int>(520 * scale)) / 2;
        const QRect display(static_cast<int>(268 * scale), top + static_cast<int>(56 * scale),
                            static_cast<int>(428 * scale), static_cast<int>(124 * scale));
        for (const QPoint& wanted : {display.center(), display.topLeft(), display.bottomRight() + QPoint(0, 60)}) {
            const QRect place(PatchMenuLayout::Place(menu, wanted, display, room), menu);
            EXPECT_TRUE(room.contains(place)) << size.width();
            EXPECT_FALSE(place.intersects(display)) << size.width();
        }
    }
    EXPECT_EQ(PatchMenuLayout::Place(menu, {30, 40}, {}, QRect(0, 0, 800, 600)), QPoint(30, 40));
}

TEST(PatchMenu, WhatIsTypedIsSearchedForInNamesAndNumbers) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        QTest::keyClicks(&menu, "STRING ens");
        EXPECT_EQ(menu.query(), "STRING ens");
        EXPECT_EQ(menu.shownPrograms(), (std::vector<int>{48, 49}));
        EXPECT_EQ(menu.activeAction()->data().toInt(), 48);
        EXPECT_TRUE(menu.rect().contains(menu.programRect(49)));
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_EQ(menu.activeAction()->data().toInt(), 48) << "round what is found";
        QTest::keyClick(&menu, Qt::Key_Escape);
        EXPECT_EQ(menu.query(), "");
        EXPECT_EQ(menu.shownFamily(), 6);
        QTest::keyClicks(&menu, "12");
        EXPECT_EQ(menu.shownPrograms(), (std::vector<int>{11, 119, 120, 121, 122, 123, 124, 125, 126, 127}));
        EXPECT_TRUE(menu.programRect(127).isNull());
        QTest::keyClick(&menu, Qt::Key_End);
        EXPECT_EQ(menu.activeAction()->data().toInt(), 127);
        EXPECT_TRUE(menu.rect().contains(menu.programRect(127)));
        QTest::keyClick(&menu, Qt::Key_Backspace);
        QTest::keyClick(&menu, Qt::Key_Backspace);
        QTest::keyClick(&menu, Qt::Key_Backspace);
        EXPECT_EQ(menu.shownFamily(), 15);
        QTest::keyClicks(&menu, "drum");
        EXPECT_EQ(menu.shownPrograms().back(), -1);
    });
}

TEST(PatchMenu, EnterChoosesWhatIsFoundAndNothingWhereNothingIs) {
    QGMPatchMenu menu(0, 5);
    EXPECT_EQ(ChooseBy(menu, QPoint(10, 10),
                       [&] {
                           QTest::keyClicks(&menu, "kalimbax");
                           EXPECT_EQ(menu.shownPrograms(), std::vector<int>{});
                           for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab}) {
                               QTest::keyClick(&menu, key);
                               ASSERT_TRUE(menu.isVisible());
                               EXPECT_EQ(menu.activeAction(), nullptr);
                           }
                           QTest::keyClick(&menu, Qt::Key_Backspace);
                           QTest::keyClick(&menu, Qt::Key_Return);
                       }),
              108);
}

TEST(PatchMenu, EnterChoosesNothingFromAListThatIsEmpty) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        for (const int list : {16, 17}) {
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(list).center());
            ASSERT_EQ(menu.shownFamily(), list);
            QTest::keyClick(&menu, Qt::Key_Return);
            QTest::keyClick(&menu, Qt::Key_Return);
            ASSERT_TRUE(menu.isVisible());
        }
    });
    EXPECT_EQ(ChooseBy(menu, QPoint(10, 10),
                       [&] {
                           QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(17).center());
                           QTest::mouseMove(&menu, menu.programRect(-1).center());
                           QTest::keyClick(&menu, Qt::Key_Return);
                       }),
              -1)
        << "which is in sight below every list";
}

TEST(PatchMenu, APointerThatRestsOnAFamilyLeavesWhatIsTyped) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        QTest::mouseMove(&menu, menu.familyRect(9).center());
        QTest::keyClicks(&menu, "violin");
        QTest::mouseMove(&menu, menu.familyRect(9).center() + QPoint(3, 0));
        QTimer passed;
        passed.setSingleShot(true);
        passed.start(80);  // begun later than the menu's own
        EXPECT_TRUE(QTest::qWaitFor([&] { return !passed.isActive(); }));
        EXPECT_EQ(menu.query(), "violin");
        EXPECT_EQ(menu.shownFamily(), 18);
    });
}

TEST(PatchMenu, TellsScreenReadersWhatIsFoundAndWhatIsAFavorite) {
    QGMPatchMenu menu(0, 5);
    WhileOpen(menu, [&] {
        QTest::keyClicks(&menu, "string ens");
        EXPECT_EQ(menu.accessibleDescription(), "Search: string ens. Found: 2.");
        QTest::keyClicks(&menu, "x");
        EXPECT_EQ(menu.accessibleDescription(), "Search: string ensx. Found: 0.");
        QTest::keyClick(&menu, Qt::Key_Escape);
        EXPECT_EQ(menu.accessibleDescription(), "");
        QTest::keyClicks(&menu, "041*");
        EXPECT_EQ(menu.accessibleDescription(), "041 Violin: added to the favorites.");
        QTest::keyClicks(&menu, "*");
        EXPECT_EQ(menu.accessibleDescription(), "041 Violin: taken from the favorites.");
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(3).center());
        EXPECT_EQ(menu.accessibleDescription(), "");
    });
}

TEST(PatchMenu, TheListsOfThePlayerAreLikeFamilies) {
    QGMPatchMenu menu(0, 120);
    menu.setLastUsed({30, -1, 2});
    menu.setFavorites({4, 90});
    std::vector<int> heard;
    QObject::connect(&menu, &QGMPatchMenu::programAuditioned, [&](int program) { heard.push_back(program); });
    WhileOpen(menu, [&] {
        QTest::keyClick(&menu, Qt::Key_Right);
        EXPECT_EQ(menu.shownFamily(), 16);
        EXPECT_EQ(menu.shownPrograms(), (std::vector<int>{30, -1, 2}));
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Right);
        EXPECT_EQ(menu.shownFamily(), 17);
        QTest::keyClick(&menu, Qt::Key_Right);
        EXPECT_EQ(menu.shownFamily(), 0);
        EXPECT_EQ(heard, (std::vector<int>{30, -1, 2, 4, 4}));
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(17).center());
        EXPECT_TRUE(menu.rect().contains(menu.programRect(90)));
        QTest::mouseMove(&menu, menu.programRect(90).center());
        EXPECT_EQ(heard.size(), 5U) << "the pointer passes in silence";
    });
}

TEST(PatchMenu, AStarMakesAFavoriteAndTakesItBack) {
    QGMPatchMenu menu(0, 5);
    std::vector<std::pair<int, bool>> changes;
    QObject::connect(&menu, &QGMPatchMenu::favoriteChanged,
                     [&](int program, bool on) { changes.emplace_back(program, on); });
    WhileOpen(menu, [&] {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.starRect(3).center());
        EXPECT_TRUE(menu.isVisible()) << "nothing is chosen by it";
        QTest::keyClicks(&menu, "*");
        QTest::keyClicks(&menu, "*");
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.familyRect(17).center());
        EXPECT_EQ(menu.shownPrograms(), std::vector<int>{3});
        EXPECT_FALSE(menu.grab().isNull());
    });
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes.front(), std::pair(3, true));
    EXPECT_EQ(changes[1].first, changes[2].first);
    EXPECT_TRUE(changes[1].second != changes[2].second);
}

}  // namespace
