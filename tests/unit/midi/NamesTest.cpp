#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "midi/GMNames.h"
#include "midi/NoteNames.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"

using namespace NK;
using namespace NK::MIDI;

namespace {

CString ShowRequest(const char* context, const char* text, const char* comment) {
    return CString(context) + L"/" + CString(text) + L"/" + CString(comment == nullptr ? "-" : comment);
}

class Names : public testing::Test {
protected:
    ~Names() override { SetTranslateFunction(nullptr); }
};

std::wstring Wide(const CString& text) {
    return std::wstring(text.View());
}

}  // namespace

TEST_F(Names, PitchClassesWithSharpsAndFlats) {
    const wchar_t* sharps[] = {L"C", L"C#", L"D", L"D#", L"E", L"F", L"F#", L"G", L"G#", L"A", L"A#", L"B"};
    const wchar_t* flats[] = {L"C", L"Db", L"D", L"Eb", L"E", L"F", L"Gb", L"G", L"Ab", L"A", L"Bb", L"B"};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(Wide(GetPitchClassName(i, false)), sharps[i]);
        EXPECT_EQ(Wide(GetPitchClassName(i, true)), flats[i]);
        EXPECT_EQ(Wide(GetNoteName(i + 60, false, false)), sharps[i]);
        EXPECT_EQ(Wide(GetNoteName(i + 60, true, true)), flats[i]);
        EXPECT_EQ(Wide(GetNoteName(i + 60, true, false)), sharps[i]);
        EXPECT_EQ(CString(GetPitchClassText(i, true)), flats[i]);
    }
}

TEST_F(Names, APitchClassAboveElevenIsAnError) {
    EXPECT_EQ(Wide(GetPitchClassName(12, false)), L"ERROR");
    EXPECT_EQ(Wide(GetPitchClassName(-1, true)), L"ERROR");
    EXPECT_EQ(GetPitchClassText(12, false), nullptr);
}

TEST_F(Names, NotesWithOctave) {
    EXPECT_EQ(Wide(GetNoteNameWithOctave(61, false, -1, true)), L"Db4");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(61, false, -1, false)), L"C#4");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(0, false, -1, false)), L"C-1");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(60, true, 0, false)), L"C5");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(127, false, -1, false)), L"G9");
}

TEST_F(Names, NotesOf128AndMoreAreInvalid) {
    EXPECT_EQ(Wide(GetNoteName(128, false, false)), L"INVALID NOTE NUMBER: 128");
    EXPECT_EQ(Wide(GetNoteName(255, true, true)), L"INVALID NOTE NUMBER: 255");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(128, false, -1, false)), L"INVALID NOTE NUMBER: 128");
}

TEST_F(Names, ProgramsAtTheEndsAndBeyond) {
    EXPECT_EQ(Wide(GetGMProgramName(0)), L"Acoustic Grand Piano");
    EXPECT_EQ(Wide(GetGMProgramName(127)), L"Gunshot");
    EXPECT_EQ(Wide(GetGMProgramName(128)), L"INVALID PATCH NUMBER: 128");
    EXPECT_EQ(Wide(GetGMProgramName(-1)), L"INVALID PATCH NUMBER: -1");
    EXPECT_EQ(GetGMProgramText(128), nullptr);
    EXPECT_EQ(Wide(GetDrumKitName()), L"Standard Drum Kit");
    EXPECT_STREQ(GetDrumKitText(), "Standard Drum Kit");
}

// The names that later lists changed, and the first of each family, which shows that none is missing.
TEST_F(Names, ProgramsKeepTheirOwnNames) {
    const std::pair<int, const char*> names[] = {{4, "Rhodes Piano"},
                                                 {5, "Chorused Piano"},
                                                 {8, "Celesta"},
                                                 {16, "Hammond Organ"},
                                                 {24, "Acoustic Guitar (nylon)"},
                                                 {32, "Acoustic Bass"},
                                                 {40, "Violin"},
                                                 {48, "String Ensemble 1"},
                                                 {50, "SynthStrings 1"},
                                                 {53, "Voice Oohs"},
                                                 {56, "Trumpet"},
                                                 {64, "Soprano Sax"},
                                                 {72, "Piccolo"},
                                                 {80, "Lead 1 (square)"},
                                                 {82, "Lead 3 (calliope lead)"},
                                                 {87, "Lead 8 (bass + lead)"},
                                                 {88, "Pad 1 (new age)"},
                                                 {96, "FX 1 (rain)"},
                                                 {103, "FX 8 (sci-fi)"},
                                                 {104, "Sitar"},
                                                 {111, "Shanai"},
                                                 {112, "Tinkle Bell"},
                                                 {120, "Guitar Fret Noise"}};
    for (const auto& [program, name] : names) {
        EXPECT_STREQ(GetGMProgramText(program), name);
    }
    for (int program = 0; program < 128; ++program) {
        ASSERT_NE(GetGMProgramText(program), nullptr);
        EXPECT_GE(std::strlen(GetGMProgramText(program)), 4U);
    }
}

TEST_F(Names, PassThroughTheTranslationInTheirContexts) {
    SetTranslateFunction(&ShowRequest);
    EXPECT_EQ(Wide(GetPitchClassName(1, false)), L"Note name/C#/-");
    EXPECT_EQ(Wide(GetNoteName(61, false, true)), L"Note name/Db/-");
    EXPECT_EQ(Wide(GetNoteName(61, true, true)), L"One-letter note name/Db/-");
    EXPECT_EQ(Wide(GetNoteNameWithOctave(60, true, -1, false)), L"One-letter note name/C/-4");
    EXPECT_EQ(Wide(GetGMProgramName(40)), L"GM/Violin/-");
    EXPECT_EQ(Wide(GetDrumKitName()), L"GM/Standard Drum Kit/-");
    EXPECT_EQ(Wide(GetNoteName(200, false, false)), L"INVALID NOTE NUMBER: 200");
    wchar_t buffer[64];
    ToString({0x90, 1, 60, 1}, buffer, 64);
    EXPECT_EQ(std::wstring(buffer), L"Note ON Note name/C/-");
}

TEST_F(Names, MarksYieldTheirTexts) {
    EXPECT_STREQ(KIVORA_TR_NOOP("Note name", "C"), "C");
    const struct {
        const char* text;
        const char* comment;
    } marked = KIVORA_TR_NOOP_COMMENT("Note name", "A", "the pitch");
    EXPECT_STREQ(marked.text, "A");
    EXPECT_STREQ(marked.comment, "the pitch");
}
