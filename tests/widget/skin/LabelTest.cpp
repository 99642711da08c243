#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <string>
#include <vector>

#include "QtWidgets/skin/QClickableLabel.h"

namespace {

class Label : public testing::Test {
protected:
    Label() {
        label.resize(50, 20);
        const auto log = [this](const std::string& text) { emitted.push_back(text); };
        const auto text = [](QPoint point) { return std::to_string(point.x()) + "," + std::to_string(point.y()); };
        QObject::connect(&label, qOverload<>(&QClickableLabel::clicked), [=] { log("clicked"); });
        QObject::connect(&label, qOverload<bool>(&QClickableLabel::clicked),
                         [=](bool on) { log(on ? "clicked true" : "clicked false"); });
        QObject::connect(&label, qOverload<QPoint>(&QClickableLabel::clicked),
                         [=](QPoint point) { log("clicked " + text(point)); });
        QObject::connect(&label, qOverload<>(&QClickableLabel::rightClicked), [=] { log("right"); });
        QObject::connect(&label, qOverload<bool>(&QClickableLabel::rightClicked),
                         [=](bool on) { log(on ? "right true" : "right false"); });
        QObject::connect(&label, qOverload<QPoint>(&QClickableLabel::rightClicked),
                         [=](QPoint point) { log("right " + text(point)); });
        label.show();
    }
    QClickableLabel label;
    std::vector<std::string> emitted;
};

using Strings = std::vector<std::string>;

TEST_F(Label, TheLeftButtonReportsThreeSignalsOnRelease) {
    QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(7, 8));
    EXPECT_EQ(emitted, Strings{});
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(7, 8));
    EXPECT_EQ(emitted, (Strings{"clicked", "clicked true", "clicked 7,8"}));
}

TEST_F(Label, TheRightButtonReportsThreeSignalsOnRelease) {
    QTest::mouseClick(&label, Qt::RightButton, {}, QPoint(3, 4));
    EXPECT_EQ(emitted, (Strings{"right", "right true", "right 3,4"}));
}

TEST_F(Label, OtherButtonsReportNothing) {
    QTest::mouseClick(&label, Qt::MiddleButton);
    EXPECT_EQ(emitted, Strings{});
}

}  // namespace
