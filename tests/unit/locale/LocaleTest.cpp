#include "locale/Locale.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>

#include "locale/LocaleFile.h"
#include "nk/nk_translate.h"
#include "nk/qt/nk_qt_string.h"
#include "unit/locale/LocaleFixture.h"

namespace {

using Kivora::GetCurrentLocale;
using Kivora::LocaleDisplayName;
using Kivora::LocaleSuffix;
using Kivora::MatchLocale;
using Kivora::SetLocale;

/// Counts how often the application is told that its language changed.
class LanguageChanges : public QObject {
public:
    LanguageChanges() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::LanguageChange ? 1 : 0;
        return false;
    }
    int count = 0;
};

QString Tr(const char* context, const char* text) {
    return QCoreApplication::translate(context, text);
}

class Locale : public LocaleFixture {
protected:
    ~Locale() override { NK::SetTranslateFunction(nullptr); }
};

TEST(MatchLocale, UkrainianRussianGivesRussian) {
    EXPECT_EQ(MatchLocale("ru_UA"), "ru_RU");
}

TEST(MatchLocale, GermanGivesEnglish) {
    EXPECT_EQ(MatchLocale("de_DE"), "en_US");
}

TEST(MatchLocale, BritishGivesEnglish) {
    EXPECT_EQ(MatchLocale("en_GB"), "en_US");
}

TEST(MatchLocale, TheFirstFiveCharactersDecide) {
    EXPECT_EQ(MatchLocale("ru_RU"), "ru_RU");
    EXPECT_EQ(MatchLocale("ru_RU.UTF-8"), "ru_RU");
    EXPECT_EQ(MatchLocale("en_US@x"), "en_US");
}

TEST(MatchLocale, ShortAndOddCodesGiveTheirLanguageOrEnglish) {
    EXPECT_EQ(MatchLocale("ru"), "ru_RU");
    EXPECT_EQ(MatchLocale("rus"), "ru_RU");
    EXPECT_EQ(MatchLocale("r"), "en_US");
    EXPECT_EQ(MatchLocale("RU_RU"), "en_US");
    EXPECT_EQ(MatchLocale("C"), "en_US");
    EXPECT_EQ(MatchLocale(""), "en_US");
}

TEST_F(Locale, EnglishIsNamedInEnglishAndRussianInTheLanguageInForce) {
    SetLocale("en_US", false);
    EXPECT_EQ(LocaleDisplayName("en_US"), "English (United States)");
    EXPECT_EQ(LocaleDisplayName("ru_RU"), "Russian");
    SetLocale("ru_RU", false);
    EXPECT_EQ(LocaleDisplayName("en_GB"), "English (United States)");
    EXPECT_EQ(LocaleDisplayName("ru_RU"), "Русский");
    EXPECT_EQ(LocaleDisplayName("de_DE"), "[Bad locale code]");
}

TEST_F(Locale, SuffixIsEmptyWhereTheCatalogueNamesNone) {
    SetLocale("en_US", false);
    EXPECT_EQ(LocaleSuffix(), "");
    SetLocale("ru_RU", false);
    EXPECT_EQ(LocaleSuffix(), "_ru");
}

TEST_F(Locale, SetLocaleWithTheCurrentLocaleNeitherWritesNorReloads) {
    SetLocale("ru_RU", false);
    const LanguageChanges changes;
    EXPECT_TRUE(SetLocale("ru_UA", true));
    EXPECT_FALSE(std::filesystem::exists(GetFile()));
    EXPECT_EQ(changes.count, 0);
}

TEST_F(Locale, SetLocaleSavesTheCodeThatWasGivenAndCreatesTheFolder) {
    SetLocale("ru_RU", false);
    EXPECT_TRUE(SetLocale("de_DE", true));
    EXPECT_EQ(GetCurrentLocale(), "en_US");
    EXPECT_NE(Read().find("[Locale]\nName=de_DE\n"), std::string::npos) << Read();
}

TEST_F(Locale, SetLocaleWithoutSavingLeavesTheFileAlone) {
    SetLocale("ru_RU", false);
    EXPECT_TRUE(SetLocale("en_US", false));
    EXPECT_FALSE(std::filesystem::exists(GetFile()));
}

TEST_F(Locale, SavingKeepsLinesThatAreNotOurs) {
    Write("; mine\n[Other]\nName=x\n[Locale]\nSize=2\nName=en_US\n");
    SetLocale("en_US", false);
    EXPECT_TRUE(SetLocale("ru_UA", true));
    EXPECT_EQ(Read(), "; mine\n[Other]\nName=x\n[Locale]\nSize=2\nName=ru_UA\n");
}

TEST_F(Locale, ADamagedFileIsKeptAsideBeforeTheFirstSave) {
    Write(std::string(2 * 1024 * 1024, 'x'));
    SetLocale("en_US", false);
    EXPECT_TRUE(SetLocale("ru_RU", true));
    EXPECT_LT(Read().size(), 100U);
    EXPECT_EQ(std::filesystem::file_size(GetFile().string() + ".bad"), 2U * 1024 * 1024);
}

TEST_F(Locale, ASecondDamagedFileDoesNotTakeThePlaceOfTheFirst) {
    SetLocale("en_US", false);
    Write(std::string(2 * 1024 * 1024, 'x'));
    EXPECT_TRUE(SetLocale("ru_RU", true));
    Write(std::string(3 * 1024 * 1024, 'y'));
    EXPECT_TRUE(SetLocale("en_US", true));
    EXPECT_EQ(std::filesystem::file_size(GetFile().string() + ".bad"), 2U * 1024 * 1024);
    EXPECT_EQ(std::filesystem::file_size(GetFile().string() + ".bad2"), 3U * 1024 * 1024);
}

TEST_F(Locale, ALanguageThatCannotBeSavedIsTakenAllTheSame) {
    SetLocale("en_US", false);
    std::ofstream(folder_ / "Brennholt") << "a file where the folder should be";
    EXPECT_FALSE(SetLocale("ru_RU", true));
    EXPECT_EQ(GetCurrentLocale(), "ru_RU");
    EXPECT_EQ(Tr("GM", "Violin"), "Скрипка");
}

TEST_F(Locale, AFileThatCannotBeReadForAMomentIsKept) {
    Write("[Locale]\nName=ru_RU\n");
    const std::filesystem::path file = GetFile().string();
    std::filesystem::rename(file, file.native() + ".hidden");
    std::filesystem::create_symlink("/proc/self/mem", file);
    EXPECT_EQ(Kivora::InitLocale(), Kivora::LocaleFileState::kUnreadable);
    EXPECT_EQ(GetCurrentLocale(), MatchLocale(QLocale::system().name()));
    EXPECT_FALSE(SetLocale(GetCurrentLocale() == "ru_RU" ? "en_US" : "ru_RU", true));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    std::filesystem::rename(file.native() + ".hidden", file);
    EXPECT_EQ(Kivora::InitLocale(), Kivora::LocaleFileState::kGood);
    EXPECT_EQ(GetCurrentLocale(), "ru_RU");
}

TEST_F(Locale, WhatIsNoConfigurationIsSetAside) {
    Write(std::string(100, '\0'));
    SetLocale(MatchLocale(QLocale::system().name()) == "ru_RU" ? "en_US" : "ru_RU", false);
    EXPECT_EQ(Kivora::InitLocale(), Kivora::LocaleFileState::kDamaged);
    EXPECT_EQ(std::filesystem::file_size(GetFile().string() + ".bad"), 100U);
    EXPECT_EQ(Kivora::GetLocaleFileState(), Kivora::LocaleFileState::kGood);
}

TEST_F(Locale, BothCataloguesChangeWithTheLanguage) {
    SetLocale("en_US", false);
    EXPECT_EQ(Tr("GM", "Violin"), "Violin");
    EXPECT_EQ(Tr("QPlatformTheme", "Cancel"), "Cancel");
    const LanguageChanges changes;
    SetLocale("ru_RU", false);
    EXPECT_GT(changes.count, 0);
    EXPECT_EQ(Tr("GM", "Violin"), "Скрипка");
    EXPECT_EQ(Tr("QPlatformTheme", "Cancel"), "Отмена");
    SetLocale("en_US", false);
    EXPECT_EQ(Tr("GM", "Violin"), "Violin");
    EXPECT_EQ(Tr("QPlatformTheme", "Cancel"), "Cancel");
}

TEST_F(Locale, NumbersAreWrittenAsInTheLanguage) {
    SetLocale("en_US", false);
    EXPECT_EQ(QLocale().toString(10.7, 'f', 1), "10.7");
    SetLocale("ru_RU", false);
    EXPECT_EQ(QLocale().toString(10.7, 'f', 1), "10,7");
    SetLocale("en_US", false);
}

TEST_F(Locale, TheLocalizedKeyMapFollowsTheLanguage) {
    Write("[Locale]\nName=en_US\n");
    Kivora::InitLocale();
    SetLocale("ru_RU", false);
    EXPECT_EQ(Kivora::GetLocalizedKeyMap().Find(L'й'), 'q');
    EXPECT_EQ(Kivora::GetLocalizedKeyMap().Find(L'Ю'), '>');
    SetLocale("en_US", false);
    EXPECT_EQ(Kivora::GetLocalizedKeyMap().GetSize(), 0U);
}

TEST_F(Locale, TextsOfLeavesWithoutQtComeFromTheCatalogue) {
    Write("[Locale]\nName=ru_RU\n");
    SetLocale("en_US", false);
    Kivora::InitLocale();
    EXPECT_EQ(NK::Translate("GM", "Violin"), NK::CString(L"Скрипка"));
    EXPECT_EQ(NK::Translate("Keyboard map", "Q", "Letter on the same key on localized keyboard"), NK::CString(L"Й"));
}

TEST_F(Locale, StartTakesTheStoredCodeAndDoesNotWrite) {
    Write("[Locale]\nName=ru_UA\n");
    SetLocale("en_US", false);
    Kivora::InitLocale();
    EXPECT_EQ(GetCurrentLocale(), "ru_RU");
    EXPECT_EQ(Read(), "[Locale]\nName=ru_UA\n");
}

TEST_F(Locale, StartWithoutAStoredCodeTakesTheSystemsAndSavesIt) {
    for (const char* text : {"", "[Locale]\nName=\n", "[Locale]\n"}) {
        Write(text);
        const QString system = QLocale::system().name();
        SetLocale(MatchLocale(system) == "ru_RU" ? "en_US" : "ru_RU", false);
        Kivora::InitLocale();
        EXPECT_EQ(GetCurrentLocale(), MatchLocale(system));
        EXPECT_EQ(NK::ToQt(Kivora::LoadLocaleCode()), system);
    }
}

TEST_F(Locale, ACatalogueIsEmbeddedForEveryLocale) {
    for (const char* locale : Kivora::kSupportedLocales) {
        EXPECT_TRUE(QFile::exists(QString(":/Translations/kivora_%1.qm").arg(locale))) << locale;
        EXPECT_TRUE(QFile::exists(":/Translations/qt_" + QString(locale).left(2) + ".qm")) << locale;
        EXPECT_LE(QString(locale).size(), Kivora::kMaxLocaleCodeLength);
    }
}

}  // namespace
