#include <QApplication>
#include <QPainter>
#include <QTest>

#include "GoldenPicture.h"
#include "QtWidgets/piano/QPiano.h"

namespace {

const QRect kNameRow(0, 140, 224, 24);

/// The octave from middle C at the size of the product's keys.
class PianoPicture : public testing::Test {
protected:
    PianoPicture() {
        piano_.resize(224, 176);
        piano_.SetKeys(60, 12);
    }
    void ShowCursorOn(BYTE note) {
        piano_.setEnableCursor(true);
        piano_.show();
        piano_.activateWindow();
        piano_.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&piano_));
        QTest::keyClick(&piano_, Qt::Key_Home);
        for (int i = 60; i < note; ++i) {
            QTest::keyClick(&piano_, Qt::Key_Right);
        }
        ASSERT_EQ(piano_.cursorNote(), note);
    }
    void Press(std::initializer_list<BYTE> notes) {
        for (const BYTE note : notes) {
            piano_.PressKey(note);
        }
    }

    QPiano piano_;
};

TEST_F(PianoPicture, Up) {
    EXPECT_TRUE(MatchesGolden(piano_, "up"));
}

TEST_F(PianoPicture, Pressed) {
    Press({60, 63, 67});
    EXPECT_TRUE(MatchesGolden(piano_, "pressed"));
}

TEST_F(PianoPicture, PressedHalfAsDark) {
    piano_.setPressedKeyDarkener(0.5);
    Press({60, 63, 67});
    EXPECT_TRUE(MatchesGolden(piano_, "pressed_half_as_dark"));
}

TEST_F(PianoPicture, CursorOnAWhiteKey) {
    ShowCursorOn(64);
    EXPECT_TRUE(MatchesGolden(piano_, "cursor_white"));
}

TEST_F(PianoPicture, CursorOnABlackKey) {
    ShowCursorOn(66);
    EXPECT_TRUE(MatchesGolden(piano_, "cursor_black"));
}

TEST_F(PianoPicture, CursorOnAPressedTintedKey) {
    piano_.setScriabinColors();
    Press({64});
    ShowCursorOn(64);
    EXPECT_TRUE(MatchesGolden(piano_, "cursor_pressed_scriabin"));
}

TEST_F(PianoPicture, Rainbow) {
    piano_.setRainbowColors();
    EXPECT_TRUE(MatchesGolden(piano_, "rainbow"));
}

TEST_F(PianoPicture, Scriabin) {
    piano_.setScriabinColors();
    EXPECT_TRUE(MatchesGolden(piano_, "scriabin"));
}

TEST_F(PianoPicture, ScriabinPressedWithNames) {
    piano_.setScriabinColors();
    piano_.setNoteNames(true);
    Press({62, 66, 69});
    EXPECT_TRUE(MatchesGolden(piano_, "scriabin_names_pressed", {kNameRow}));
}

TEST_F(PianoPicture, NoteNames) {
    piano_.setNoteNames(true);
    EXPECT_TRUE(MatchesGolden(piano_, "names", {kNameRow}));
}

TEST_F(PianoPicture, BassPart) {
    piano_.setSplitMainPartStartKey(66);
    EXPECT_TRUE(MatchesGolden(piano_, "bass"));
}

TEST_F(PianoPicture, BassPartScriabin) {
    piano_.setSplitMainPartStartKey(66);
    piano_.setScriabinColors();
    EXPECT_TRUE(MatchesGolden(piano_, "bass_scriabin"));
}

TEST_F(PianoPicture, WithoutShadows) {
    piano_.setShadows(false);
    EXPECT_TRUE(MatchesGolden(piano_, "without_shadows"));
}

TEST_F(PianoPicture, LightFromTheRight) {
    piano_.setLeftLight(false);
    Press({60, 63, 67});
    EXPECT_TRUE(MatchesGolden(piano_, "right_light_pressed"));
}

TEST_F(PianoPicture, Vertical) {
    piano_.setVertical(true);
    piano_.resize(176, 224);
    Press({60, 63, 67});
    EXPECT_TRUE(MatchesGolden(piano_, "vertical_pressed"));
}

TEST_F(PianoPicture, NoteNamesAreDrawnOnWhiteKeysOnly) {
    const QImage without = PictureOf(piano_, 1);
    piano_.setNoteNames(true);
    const QImage with = PictureOf(piano_, 1);
    for (BYTE note = 60; note <= 71; ++note) {
        const QRect key = piano_.keyRect(note).toRect();
        const bool differs = with.copy(key) != without.copy(key);
        EXPECT_EQ(differs, !NK::Piano::IsBlackNote(note)) << int{note};
    }
}

TEST_F(PianoPicture, NoteNamesFollowThePressedKey) {
    piano_.setNoteNames(true);
    const auto lowestInk = [&] {
        const QImage picture = PictureOf(piano_, 1);
        for (int y = 165; y > 130; --y) {
            for (int x = 36; x < 60; ++x) {
                if (qGray(picture.pixel(x, y)) < 90) {
                    return y;
                }
            }
        }
        return 0;
    };
    const int before = lowestInk();
    ASSERT_GT(before, 0);
    piano_.PressKey(62);
    EXPECT_EQ(lowestInk(), before + 1);
}

TEST_F(PianoPicture, EveryTextPropertyShows) {
    std::vector<QImage> pictures = {PictureOf(piano_, 1)};
    const auto expectAnother = [&](const char* what) {
        const QImage picture = PictureOf(piano_, 1);
        for (const QImage& other : pictures) {
            EXPECT_FALSE(picture == other) << what;
        }
        pictures.push_back(picture);
    };
    piano_.setNoteNames(true);
    expectAnother("noteNames");
    piano_.setOctaves_0_11(true);
    expectAnother("octaves_0_11");
    piano_.setKeyNamesTransposing(2);
    expectAnother("keyNamesTransposing");
    piano_.setSplitMainPartStartKey(65);
    expectAnother("splitMainPartStartKey");
    piano_.setBassKeyNamesTransposing(5);
    expectAnother("bassKeyNamesTransposing");
    piano_.setSecondaryNoteNames(true);
    expectAnother("secondaryNoteNames");
    piano_.setSecondaryKeyNamesTransposing(4);
    expectAnother("secondaryKeyNamesTransposing");
    TNoteText text;
    text.texts[61] = "one";
    text.texts[62] = "two";
    piano_.setNoteText(text);
    EXPECT_TRUE(PictureOf(piano_, 1) == pictures.back()) << "the fine print is off";
    piano_.setFinePrint(true);
    expectAnother("finePrint");
    piano_.setFinePrintVertically(false);
    expectAnother("finePrintVertically");
    piano_.setFinePrintFont(QFont("Helvetica", 8));
    expectAnother("finePrintFont");
    piano_.setNoteNameFont(QFont("Liberation Serif"));
    expectAnother("noteNameFont");
    piano_.setKeyNamesTransposing(120);
    expectAnother("names outside the range of notes");
}

TEST_F(PianoPicture, ComparisonSeesOneChangedKeyAndALittleChangeOfAllKeys) {
    const QImage up = PictureOf(piano_, 1);
    EXPECT_TRUE(LooksAlike(up, up, {}));
    piano_.PressKey(63);
    EXPECT_FALSE(LooksAlike(PictureOf(piano_, 1), up, {}));
    piano_.ReleaseKey(63);
    piano_.setWhiteColor(QColor(0xE7, 0xE6, 0xE1));
    EXPECT_FALSE(LooksAlike(PictureOf(piano_, 1), up, {}));
    EXPECT_FALSE(LooksAlike(PictureOf(piano_, 2), up, {}));
    QImage spot = up;
    QPainter(&spot).fillRect(10, 10, 2, 2, Qt::red);
    EXPECT_FALSE(LooksAlike(spot, up, {}));
    EXPECT_TRUE(LooksAlike(spot, up, {QRect(10, 10, 2, 2)}));
}

}  // namespace
