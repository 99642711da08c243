#include "piano/PCKeyTable.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "piano/PCKeyTexts.h"

namespace {
using NK::Piano::FindPCKeyEntry;
using NK::Piano::GetKeyboardMapSource;
using NK::Piano::GetPCKeyEntry;
using NK::Piano::GetPCKeyHint;
using NK::Piano::TPCKeyEntry;

// The keys of a row and the notes of each: "-" plays nothing.
struct TRow {
    int row;
    int shifted;
    std::string characters;
    std::vector<int> notes;
};

const std::vector<TRow>& Rows() {
    static const std::vector<TRow> rows = {
        {3, 0, "zxcvbnm,./", {60, 62, 64, 65, 67, 69, 71, 72, 74, 76}},
        {3, 1, "ZXCVBNM<>?", {60, 62, 64, 65, 67, 69, 71, 72, 74, 76}},
        {2, 0, "asdfghjkl;'", {255, 61, 63, 255, 66, 68, 70, 255, 73, 75, 255}},
        {2, 1, "ASDFGHJKL:", {255, 61, 63, 255, 66, 68, 70, 255, 73, 75}},
        {1, 0, "qwertyuiop[]", {72, 74, 76, 77, 79, 81, 83, 84, 86, 88, 89, 91}},
        {1, 1, "QWERTYUIOP{}", {72, 74, 76, 77, 79, 81, 83, 84, 86, 88, 89, 91}},
        {0, 0, "1234567890-=", {255, 73, 75, 255, 78, 80, 82, 255, 85, 87, 255, 90}},
        {0, 1, "@\"#%^&()+", {73, 73, 75, 78, 80, 82, 85, 87, 90}},
        {0, 0, "!$*_`~", {255, 255, 255, 255, 255, 255}},
        {255, 0, " \\|\x7F", {255, 255, 255, 255}},
    };
    return rows;
}

TEST(PCKeyTable, EveryPrintableCharacterHasItsEntry) {
    std::string seen;
    for (const TRow& row : Rows()) {
        ASSERT_EQ(row.characters.size(), row.notes.size());
        for (std::size_t i = 0; i < row.characters.size(); ++i) {
            const TPCKeyEntry& entry = GetPCKeyEntry(row.characters[i]);
            EXPECT_EQ(entry.note, row.notes[i]) << row.characters[i];
            EXPECT_EQ(entry.row, row.row) << row.characters[i];
            EXPECT_EQ(entry.shifted, row.shifted) << row.characters[i];
        }
        seen += row.characters;
    }
    EXPECT_EQ(seen.size(), 96U) << "characters 32 to 127, each once";
}

TEST(PCKeyTable, ControlCharactersPlayNothing) {
    for (int character = 0; character < 32; ++character) {
        EXPECT_EQ(GetPCKeyEntry(character), TPCKeyEntry()) << character;
    }
}

TEST(PCKeyTable, OutsideTheTableThereIsNoNote) {
    for (const int character : {-1, 128, 0x0416, 0x01000020}) {
        EXPECT_EQ(GetPCKeyEntry(character).note, TPCKeyEntry::kNone);
        EXPECT_EQ(FindPCKeyEntry(character, false), nullptr);
    }
    EXPECT_EQ(FindPCKeyEntry(0, false), nullptr);
    EXPECT_NE(FindPCKeyEntry(1, false), nullptr);
    EXPECT_NE(FindPCKeyEntry(127, false), nullptr);
}

TEST(PCKeyTable, OnlyShiftSelectsUpperCaseEntries) {
    EXPECT_EQ(FindPCKeyEntry('Z', false)->shifted, 0);
    EXPECT_EQ(FindPCKeyEntry('Z', true)->shifted, 1);
    EXPECT_EQ(FindPCKeyEntry('z', true)->shifted, 0);
    EXPECT_EQ(FindPCKeyEntry('@', false)->shifted, 1) << "not a letter: its own entry";
}

TEST(PCKeyTable, HintsPreferDigitsThenLettersThenPunctuation) {
    EXPECT_EQ(GetPCKeyHint(72), 'Q');
    EXPECT_EQ(GetPCKeyHint(73), '2');
    EXPECT_EQ(GetPCKeyHint(74), 'W');
    EXPECT_EQ(GetPCKeyHint(75), '3');
    EXPECT_EQ(GetPCKeyHint(89), '[');
    EXPECT_EQ(GetPCKeyHint(60), 'Z');
}

TEST(PCKeyTable, HintsOfAllNotes) {
    std::string hints;
    for (int note = 60; note <= 91; ++note) {
        hints += GetPCKeyHint(note);
    }
    EXPECT_EQ(hints, "ZSXDCVGBHNJMQ2W3ER5T6Y7UI9O0P[=]");
    for (int note = 0; note < 128; ++note) {
        if (note < 60 || note > 91) {
            EXPECT_EQ(GetPCKeyHint(note), 0) << note;
        }
    }
    EXPECT_EQ(GetPCKeyHint(255), 0) << "not the mark of the silent keys";
}

TEST(PCKeyTexts, SourcesOfTheLocalizedKeyboard) {
    std::string sources;
    for (const char* source : NK::Piano::kLocalizedKeyboardSources) {
        ASSERT_EQ(std::string(source).size(), 1U);
        sources += source;
    }
    EXPECT_EQ(sources,
              "1234567890-=!@#$%^&*()_+[{]};:'\"\\|,<.>/?abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
}

TEST(PCKeyTexts, UpperCaseLettersAndNineOthersAreTranslatedAsHints) {
    const std::string others = "',./:[\\]`";
    for (int character = 0; character < 128; ++character) {
        const bool translated = std::isupper(character) != 0 ||
                                (character != 0 && others.find(static_cast<char>(character)) != std::string::npos);
        const char* source = GetKeyboardMapSource(static_cast<char>(character));
        EXPECT_EQ(source != nullptr, translated) << character;
        if (source != nullptr) {
            EXPECT_EQ(std::string(source), std::string(1, static_cast<char>(character)));
        }
    }
}

}  // namespace
