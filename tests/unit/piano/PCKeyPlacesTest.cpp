#include "piano/PCKeyPlaces.h"

#include <gtest/gtest.h>

#include <set>

#include "piano/PCKeyTable.h"

namespace {
using NK::Piano::FindPCKeyPlace;
using NK::Piano::GetScanCodeOfPlace;

TEST(PCKeyPlaces, TheFourRowsAreThoseOfAUSKeyboard) {
    EXPECT_EQ(FindPCKeyPlace(10), '1');
    EXPECT_EQ(FindPCKeyPlace(21), '=');
    EXPECT_EQ(FindPCKeyPlace(24), 'q');
    EXPECT_EQ(FindPCKeyPlace(35), ']');
    EXPECT_EQ(FindPCKeyPlace(38), 'a');
    EXPECT_EQ(FindPCKeyPlace(48), '\'');
    EXPECT_EQ(FindPCKeyPlace(49), '`');
    EXPECT_EQ(FindPCKeyPlace(51), '\\');
    EXPECT_EQ(FindPCKeyPlace(52), 'z');
    EXPECT_EQ(FindPCKeyPlace(61), '/');
}

TEST(PCKeyPlaces, ExtraKeysOfOtherKeyboardsHaveNoCharacter) {
    for (const std::uint32_t extra : {93U, 94U, 97U, 98U, 99U, 100U, 101U, 102U, 129U, 130U, 131U, 132U}) {
        EXPECT_EQ(FindPCKeyPlace(extra), NK::Piano::kExtraPlace) << extra;
    }
}

TEST(PCKeyPlaces, OtherKeysHaveNoPlace) {
    // Escape, Backspace, Tab, Enter, the left SHIFT, the number pad's 2, Space, Caps Lock, cursor keys.
    for (const std::uint32_t other :
         {0U, 8U, 9U, 22U, 23U, 36U, 37U, 50U, 62U, 65U, 66U, 88U, 111U, 250U, 0xFFFFFFFFU}) {
        EXPECT_EQ(FindPCKeyPlace(other), std::nullopt) << other;
    }
}

TEST(PCKeyPlaces, EveryPlayingCharacterHasAPlaceOfItsOwn) {
    std::set<std::uint32_t> scanCodes;
    int playing = 0;
    for (int character = 0; character < 128; ++character) {
        const NK::Piano::TPCKeyEntry& entry = NK::Piano::GetPCKeyEntry(character);
        const bool isUpper = character >= 'A' && character <= 'Z';
        if (entry.note == NK::Piano::TPCKeyEntry::kNone || (entry.shifted != 0 && !isUpper)) {
            continue;
        }
        const std::uint32_t scanCode = GetScanCodeOfPlace(static_cast<char>(character));
        ASSERT_NE(scanCode, 0U) << character;
        EXPECT_EQ(FindPCKeyPlace(scanCode), static_cast<char>(isUpper ? character + 32 : character));
        scanCodes.insert(scanCode);
        playing += isUpper ? 0 : 1;
    }
    EXPECT_EQ(playing, 37);
    EXPECT_EQ(scanCodes.size(), 37U);
    EXPECT_EQ(GetScanCodeOfPlace('@'), 0U);
    EXPECT_EQ(GetScanCodeOfPlace('\0'), 0U);
}

}  // namespace
