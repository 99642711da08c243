#include "piano/CPianoColors.h"

#include <gtest/gtest.h>

#include <set>

namespace {
using NK::Piano::CPianoColors;
using NK::Piano::GetRainbowColors;
using NK::Piano::GetScriabinColors;

unsigned HexOf(const CPianoColors& colors, int note) {
    const NK::Piano::TKeyColor* color = colors.GetNoteColor(note);
    EXPECT_EQ(color->zero, 0);
    return static_cast<unsigned>(color->red << 16 | color->green << 8 | color->blue);
}

TEST(PianoColors, RainbowNotes60And72AreRed) {
    EXPECT_EQ(HexOf(GetRainbowColors(), 60), 0xFF0000U);
    EXPECT_EQ(HexOf(GetRainbowColors(), 72), 0xFF0000U);
}

TEST(PianoColors, RainbowNote61IsNotTinted) {
    EXPECT_FALSE(GetRainbowColors().GetNoteColor(61)->IsTint());
    EXPECT_TRUE(GetRainbowColors().GetNoteColor(60)->IsTint());
}

TEST(PianoColors, ScriabinNote66) {
    EXPECT_EQ(HexOf(GetScriabinColors(), 66), 0x409FFFU);
}

TEST(PianoColors, RainbowTable) {
    const unsigned table[12] = {0xFF0000, 0, 0xFF7000, 0, 0xFFFF00, 0x00FF00, 0, 0x00A5FF, 0, 0x0000FF, 0, 0x9000FF};
    for (int note = 0; note < 128; ++note) {
        EXPECT_EQ(HexOf(GetRainbowColors(), note), table[note % 12]) << note;
    }
}

TEST(PianoColors, ScriabinTable) {
    const unsigned table[12] = {0xD50000, 0x480BFF, 0xFFFF40, 0x9F009F, 0xAAFFD5, 0x9F001C,
                                0x409FFF, 0xFFAF0B, 0x9F00D5, 0x75FF75, 0x6A0035, 0x75E7FF};
    for (int note = 0; note < 128; ++note) {
        EXPECT_EQ(HexOf(GetScriabinColors(), note), table[note % 12]) << note;
    }
}

TEST(PianoColors, NoSchemeIsMadeTwice) {
    std::set<const CPianoColors*> schemes;
    for (int i = 0; i < 3; ++i) {
        schemes.insert(&GetRainbowColors());
        schemes.insert(&GetScriabinColors());
    }
    EXPECT_EQ(schemes.size(), 2U);
    EXPECT_EQ(GetRainbowColors().GetNoteColor(60), GetRainbowColors().GetNoteColor(72)) << "entries are shared";
}

}  // namespace
