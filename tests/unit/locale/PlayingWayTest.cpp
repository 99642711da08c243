#include "locale/PlayingWay.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

#include "locale/Locale.h"
#include "support/SystemLayout.h"
#include "unit/locale/LocaleFixture.h"

namespace {
using Kivora::CLocalizedKeyMap;
using Kivora::CoversLayout;
using Kivora::IsPlayedByPlace;
using KivoraTest::SystemLayout;
using NK::Piano::EPCKeyWay;

struct TCase {
    std::string layout;
    std::string variant;
    bool byPlace;           ///< automatically, with the program in English
    bool byPlaceInRussian;  ///< the same in Russian
};

std::ostream& operator<<(std::ostream& out, const TCase& layout) {
    return out << layout.layout << '(' << layout.variant << ')';
}

const TCase kCases[] = {
    {"us", "", false, false},         {"us", "dvorak", false, false}, {"us", "colemak", false, false},
    {"us", "intl", false, false},     {"gb", "", false, false},       {"pl", "", false, true},
    {"ru", "", true, false},          {"ru", "legacy", true, true},   {"ru", "phonetic", true, true},
    {"ru", "typewriter", true, true}, {"de", "", true, true},         {"fr", "", true, true},
    {"es", "", true, true},           {"it", "", true, true},         {"pt", "", true, true},
    {"br", "", true, true},           {"se", "", true, true},         {"cz", "", true, true},
    {"tr", "", true, true},           {"ua", "", true, true},         {"gr", "", true, true},
    {"il", "", true, true},           {"jp", "", true, true},         {"by", "", true, true},
    {"bg", "phonetic", true, true},   {"th", "", true, true},         {"epo", "", true, true},
};

class WayOfLayout : public LocaleFixture, public testing::WithParamInterface<TCase> {};

TEST_P(WayOfLayout, IsAsTypedWhereThatPlaysWhatThePlacesDoOrTheLayoutIsEnglish) {
    const NK::TKeyboardLayout layout = SystemLayout(GetParam().layout, GetParam().variant);
    Kivora::SetLocale("en_US", false);
    EXPECT_EQ(IsPlayedByPlace(EPCKeyWay::kAutomatic, Kivora::GetLocalizedKeyMap(), &layout), GetParam().byPlace);
    Kivora::SetLocale("ru_RU", false);
    EXPECT_EQ(IsPlayedByPlace(EPCKeyWay::kAutomatic, Kivora::GetLocalizedKeyMap(), &layout),
              GetParam().byPlaceInRussian);
}

INSTANTIATE_TEST_SUITE_P(OfTheSystem, WayOfLayout, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.layout + test.param.variant; });

TEST(PlayingWay, TheUsersChoiceHoldsOnEveryLayout) {
    const NK::TKeyboardLayout us = SystemLayout("us");
    const NK::TKeyboardLayout greek = SystemLayout("gr");
    const CLocalizedKeyMap map;
    for (const NK::TKeyboardLayout* layout : {&us, &greek, static_cast<const NK::TKeyboardLayout*>(nullptr)}) {
        EXPECT_TRUE(IsPlayedByPlace(EPCKeyWay::kByPlace, map, layout));
        EXPECT_FALSE(IsPlayedByPlace(EPCKeyWay::kAsTyped, map, layout));
    }
}

TEST(PlayingWay, WithoutALayoutItIsAsTyped) {
    EXPECT_FALSE(IsPlayedByPlace(EPCKeyWay::kAutomatic, CLocalizedKeyMap(), nullptr));
}

TEST(PlayingWay, ALayoutOfUnknownLanguageGoesByWhatItTypes) {
    const CLocalizedKeyMap map;
    NK::TKeyboardLayout own = SystemLayout("us");
    own.language = NK::kLanguageUnknown;
    EXPECT_FALSE(IsPlayedByPlace(EPCKeyWay::kAutomatic, map, &own));
    std::swap(own.keys[52], own.keys[53]);
    EXPECT_TRUE(IsPlayedByPlace(EPCKeyWay::kAutomatic, map, &own));
}

TEST(PlayingWay, ALayoutOfAFewKeysIsAProgramsAndTypes) {
    NK::TKeyboardLayout few;
    EXPECT_FALSE(IsPlayedByPlace(EPCKeyWay::kAutomatic, CLocalizedKeyMap(), &few));
    few.keys[10].character = U'z';
    few.keys[11].character = U'q';
    few.keys[12].character = U',';
    EXPECT_FALSE(IsPlayedByPlace(EPCKeyWay::kAutomatic, CLocalizedKeyMap(), &few));
    EXPECT_TRUE(IsPlayedByPlace(EPCKeyWay::kByPlace, CLocalizedKeyMap(), &few)) << "who wants it so";
}

TEST(PlayingWay, ADeadKeyIsNotCovered) {
    NK::TKeyboardLayout own = SystemLayout("us");
    EXPECT_TRUE(CoversLayout(CLocalizedKeyMap(), own));
    own.keys[52].isDead = true;
    EXPECT_FALSE(CoversLayout(CLocalizedKeyMap(), own));
}

}  // namespace
