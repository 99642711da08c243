#include <gtest/gtest.h>

#include "midi/MIDINotes.h"

using NK::MIDI::FoldNote;

TEST(FoldNote, NotesInRangeStay) {
    EXPECT_EQ(FoldNote(0), 0);
    EXPECT_EQ(FoldNote(127), 127);
}

TEST(FoldNote, NotesBelowMoveUpByOctaves) {
    EXPECT_EQ(FoldNote(-1), 11);
    EXPECT_EQ(FoldNote(-12), 0);
    EXPECT_EQ(FoldNote(-13), 11);
    EXPECT_EQ(FoldNote(-120), 0);
}

TEST(FoldNote, NotesAboveMoveDownByOctaves) {
    EXPECT_EQ(FoldNote(128), 116);
    EXPECT_EQ(FoldNote(139), 127);
    EXPECT_EQ(FoldNote(140), 116);
    EXPECT_EQ(FoldNote(247), 127);
}

TEST(FoldNote, EveryNoteKeepsItsPitchClassAndMovesNoFurtherThanItMust) {
    for (int note = -300; note <= 400; ++note) {
        const int folded = FoldNote(note);
        EXPECT_EQ((folded - note) % 12, 0) << note;
        EXPECT_TRUE(folded >= 0 && folded <= 127) << note;
        EXPECT_TRUE(note < 0 || note > 127 || folded == note) << note;
        EXPECT_TRUE(note >= 0 || folded < 12) << note;
        EXPECT_TRUE(note <= 127 || folded > 115) << note;
    }
}
