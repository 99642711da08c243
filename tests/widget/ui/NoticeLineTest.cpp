// The line of the display that says what is wrong.
#include <gtest/gtest.h>

#include <QMainWindow>
#include <QtTest/QTest>

#include "ui/MainDisplay.h"
#include "ui/parts/NoticeLine.h"

namespace {

using Topic = NoticeLine::Topic;

class Notices : public testing::Test {
protected:
    Notices() {
        display.resize(428, 124);
        display.show();
    }
    std::string Text() const { return line.isVisible() ? line.text().toStdString() : "hidden"; }

    MainDisplay display;
    NoticeLine& line = *display.notice();
};

TEST_F(Notices, TheMostUrgentOneIsShownAndTheOthersComeAfterIt) {
    EXPECT_EQ(Text(), "hidden");
    line.tell(Topic::kHint, "a hint");
    EXPECT_EQ(Text(), "a hint");
    line.tell(Topic::kSound, "no sound");
    EXPECT_EQ(Text(), "no sound");
    line.tell(Topic::kInput, "no keyboard");
    EXPECT_EQ(Text(), "no sound");
    line.withdraw(Topic::kSound);
    EXPECT_EQ(Text(), "no keyboard");
    line.withdraw(Topic::kSound);
    line.withdraw(Topic::kHint);
    EXPECT_EQ(Text(), "no keyboard");
    line.withdraw(Topic::kInput);
    EXPECT_EQ(Text(), "hidden");
}

TEST_F(Notices, APressDoesWhatTheShownOneIsFor) {
    int hints = 0;
    int sounds = 0;
    line.tell(Topic::kHint, "a hint", [&] {
        ++hints;
        line.withdraw(Topic::kHint);
    });
    line.tell(Topic::kSound, "no sound", [&] { ++sounds; });
    QTest::mouseClick(&line, Qt::LeftButton);
    QTest::mouseClick(&line, Qt::RightButton);
    EXPECT_EQ(sounds, 1);
    EXPECT_EQ(hints, 0);
    line.withdraw(Topic::kSound);
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_EQ(hints, 1);
    EXPECT_EQ(Text(), "hidden");
    line.tell(Topic::kInput, "no keyboard");
    QTest::mouseClick(&line, Qt::LeftButton);
    EXPECT_EQ(Text(), "no keyboard") << "nothing to do";
}

TEST_F(Notices, ANameWithMarkupIsShownAsItIs) {
    line.tell(Topic::kSound, "<img src=x> is lost");
    EXPECT_EQ(line.textFormat(), Qt::PlainText);
    EXPECT_EQ(line.toolTip(), "<img src=x> is lost");
    EXPECT_EQ(line.accessibleName(), "<img src=x> is lost");
}

}  // namespace
