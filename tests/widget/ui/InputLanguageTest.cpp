#include "ui/InputLanguage.h"

#include <gtest/gtest.h>

namespace {

using Kivora::GetLanguageOfLocale;

TEST(InputLanguage, EnglishAndRussianGoByTheLanguage) {
    EXPECT_EQ(GetLanguageOfLocale(QLocale("en_IE")), NK::kLanguageEnglishUs);
    EXPECT_EQ(GetLanguageOfLocale(QLocale("ru_UA")), NK::kLanguageRussian);
}

TEST(InputLanguage, OtherLanguagesGoByTheCountrysKeyboard) {
    EXPECT_EQ(GetLanguageOfLocale(QLocale("de_AT")), 0x0C07);
    EXPECT_EQ(GetLanguageOfLocale(QLocale("fr_FR")), 0x040C);
}

TEST(InputLanguage, TheCLocaleIsUnknown) {
    EXPECT_EQ(GetLanguageOfLocale(QLocale::c()), NK::kLanguageUnknown);
}

}  // namespace
