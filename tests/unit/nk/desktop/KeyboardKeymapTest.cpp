// What the keys type in the layouts of a keymap.
#include <gtest/gtest.h>

#include "nk/desktop/nk_keyboard_layout.h"
#include "support/SystemLayout.h"

namespace {

using KivoraTest::SystemKeymap;
using KivoraTest::SystemLayout;

constexpr std::uint32_t kScan2 = 11;
constexpr std::uint32_t kScanMinus = 20;
constexpr std::uint32_t kScanEqual = 21;
constexpr std::uint32_t kScanW = 25;
constexpr std::uint32_t kScanBracket = 34;
constexpr std::uint32_t kScanSemicolon = 47;
constexpr std::uint32_t kScanZ = 52;
constexpr std::uint32_t kScanM = 58;
constexpr std::uint32_t kScanReturn = 36;
constexpr std::uint32_t kScanISO = 94;

TEST(KeyboardKeymap, TellsWhatEachKeyTypesAloneAndWithShift) {
    const NK::TKeyboardLayout us = SystemLayout("us");
    EXPECT_EQ(us[kScanZ], (NK::TKeyboardLayout::TKey{U'z', U'Z', false}));
    EXPECT_EQ(us[kScan2], (NK::TKeyboardLayout::TKey{U'2', U'@', false}));
    const NK::TKeyboardLayout french = SystemLayout("fr");
    EXPECT_EQ(french[kScanZ].character, U'w');
    EXPECT_EQ(french[kScan2], (NK::TKeyboardLayout::TKey{U'é', U'2', false}));
    EXPECT_EQ(french[kScanISO].character, U'<');
    EXPECT_EQ(SystemLayout("gr")[kScanW].character, U'ς');
    EXPECT_EQ(SystemLayout("il")[kScanZ].character, U'ז');
}

TEST(KeyboardKeymap, TellsTheAccentOfADeadKey) {
    const NK::TKeyboardLayout german = SystemLayout("de");
    EXPECT_EQ(german[kScanEqual], (NK::TKeyboardLayout::TKey{U'\u00B4', U'`', true}));
    EXPECT_EQ(german[kScanMinus], (NK::TKeyboardLayout::TKey{U'ß', U'?', false}));
    EXPECT_EQ(SystemLayout("br")[kScanBracket], (NK::TKeyboardLayout::TKey{U'\u00B4', U'`', true}));
}

TEST(KeyboardKeymap, AKeyThatPrintsNothingTypesNothing) {
    const NK::TKeyboardLayout us = SystemLayout("us");
    EXPECT_EQ(us[kScanReturn], NK::TKeyboardLayout::TKey());
    EXPECT_EQ(us[0], NK::TKeyboardLayout::TKey());
    EXPECT_EQ(us[256], NK::TKeyboardLayout::TKey());
    EXPECT_EQ(us[0xFFFFFFFF], NK::TKeyboardLayout::TKey());
}

TEST(KeyboardKeymap, WhatIsNoCharacterTypesNothing) {
    const std::string keymap = R"(xkb_keymap {
        xkb_keycodes { minimum = 8; maximum = 255; <Q> = 24; <W> = 25; <E> = 26; };
        xkb_types { type "ONE_LEVEL" { modifiers = none; }; };
        xkb_compatibility { };
        xkb_symbols { key <Q> { [ 0x100d800 ] }; key <W> { [ 0x1000085 ] }; key <E> { [ 0x101d15f ] }; };
    };)";
    const std::vector<NK::TKeyboardLayout> layouts = NK::ReadKeyboardLayouts(keymap);
    ASSERT_EQ(layouts.size(), 1U);
    EXPECT_EQ(layouts[0][24].character, 0U) << "half of a pair";
    EXPECT_EQ(layouts[0][25].character, 0U) << "a control code";
    EXPECT_EQ(layouts[0][26].character, U'\U0001D15F');
}

TEST(KeyboardKeymap, TellsTheLayoutsOfOneMapApart) {
    const std::vector<NK::TKeyboardLayout> layouts = NK::ReadKeyboardLayouts(SystemKeymap("us,gr,ru,de", ",,,"));
    ASSERT_EQ(layouts.size(), 4U);
    EXPECT_EQ(layouts[0][kScanZ].character, U'z');
    EXPECT_EQ(layouts[1][kScanZ].character, U'ζ');
    EXPECT_EQ(layouts[2][kScanZ].character, U'я');
    EXPECT_EQ(layouts[3][kScanZ].character, U'y');
    EXPECT_EQ(layouts[0].language, NK::kLanguageEnglishUs);
    EXPECT_EQ(layouts[1].language, NK::kLanguageUnknown);
    EXPECT_EQ(layouts[2].language, NK::kLanguageRussian);
}

TEST(KeyboardKeymap, TellsTheLatinLetterOfAnotherLayoutOnTheKey) {
    const std::vector<NK::TKeyboardLayout> layouts = NK::ReadKeyboardLayouts(SystemKeymap("fr,gr,us,ru", ",,,"));
    ASSERT_EQ(layouts.size(), 4U);
    for (const std::size_t number : {1U, 3U}) {
        EXPECT_TRUE(layouts[number].HasLatinLettersBeside());
        EXPECT_EQ(layouts[number][kScanZ].latin, 'w') << "the first layout's";
        EXPECT_EQ(layouts[number][kScanSemicolon].latin, 'm');
        EXPECT_EQ(layouts[number][kScanM].latin, 'm') << "that of the first one with a letter there";
        EXPECT_EQ(layouts[number][kScan2].latin, 0);
    }
    for (const std::size_t number : {0U, 2U}) {
        EXPECT_FALSE(layouts[number].HasLatinLettersBeside());
    }
    EXPECT_FALSE(SystemLayout("gr").HasLatinLettersBeside());
}

TEST(KeyboardKeymap, AMapThatCannotBeCompiledHasNoLayouts) {
    EXPECT_TRUE(NK::ReadKeyboardLayouts("").empty());
    EXPECT_TRUE(NK::ReadKeyboardLayouts("xkb_keymap {").empty());
    EXPECT_TRUE(NK::ReadKeyboardLayouts("xkb_keymap { xkb_symbols { include \"nowhere\" }; };").empty());
    std::string cut = SystemKeymap("de");
    cut.resize(cut.size() / 2);
    EXPECT_TRUE(NK::ReadKeyboardLayouts(cut).empty());
    EXPECT_TRUE(NK::ReadKeyboardLayouts(std::string(100000, '\xFF')).empty());
}

TEST(KeyboardKeymap, TellsWhetherLatinLettersAreTyped) {
    for (const char* latin : {"us", "de", "fr", "tr", "cz", "pl", "jp"}) {
        EXPECT_TRUE(SystemLayout(latin).TypesLatinLetters()) << latin;
    }
    for (const char* other : {"ru", "ua", "gr", "il", "ara", "th", "am", "ge", "bg", "rs"}) {
        EXPECT_FALSE(SystemLayout(other).TypesLatinLetters()) << other;
    }
}

}  // namespace
