#include "locale/LocalizedKeyMap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nk/nk_translate.h"
#include "piano/PCKeyTable.h"
#include "piano/PCKeyTexts.h"

namespace {
using Kivora::CLocalizedKeyMap;
using Kivora::KeyToCharacter;
using Kivora::PlayingKeyToCharacter;

constexpr std::uint16_t kEnglishUS = 0x0409;
constexpr std::uint16_t kRussian = 0x0419;
constexpr std::uint16_t kFrench = 0x040C;

// What a Russian PC keyboard types on the keys of kSources.
constexpr wchar_t kSources[] =
    L"-=!@#$%^&*()_+[{]};:'\"\\|,<.>/?qwertyuiopasdfghjklzxcvbnmQWERTYUIOPASDFGHJKLZXCVBNM`~";
constexpr wchar_t kRussianKeys[] =
    L"-=!\"№;%:?*()_+хХъЪжЖэЭ\\/бБюЮ.,йцукенгшщзфывапролдячсмитьЙЦУКЕНГШЩЗФЫВАПРОЛДЯЧСМИТЬёЁ";

NK::CString ToRussian(const char* source) {
    const std::wstring sources = kSources;
    const std::size_t at = sources.find(static_cast<wchar_t>(source[0]));
    return at == std::wstring::npos ? NK::CString(source) : NK::CString(std::wstring(1, kRussianKeys[at]));
}

CLocalizedKeyMap RussianMap() {
    CLocalizedKeyMap map;
    map.Build(ToRussian);
    return map;
}

int NoteOf(const CLocalizedKeyMap& map, int keyCode, bool shift, std::uint16_t language) {
    const NK::Piano::TPCKeyEntry* entry =
        NK::Piano::FindPCKeyEntry(PlayingKeyToCharacter(map, keyCode, shift, language), shift);
    return entry == nullptr ? -1 : entry->note;
}

TEST(LocalizedKeyMap, AsksForThe92CharactersInTheirOrder) {
    std::string asked;
    CLocalizedKeyMap map;
    map.Build([&](const char* source) {
        asked += source;
        return NK::CString(source);
    });
    EXPECT_EQ(asked, "1234567890-=!@#$%^&*()_+[{]};:'\"\\|,<.>/?abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
    EXPECT_EQ(asked.size(), 92U);
}

TEST(LocalizedKeyMap, TranslationEqualToItsSourceMakesNoEntry) {
    CLocalizedKeyMap map;
    map.Build([](const char* source) { return NK::CString(source); });
    EXPECT_EQ(map.GetSize(), 0U);
}

TEST(LocalizedKeyMap, TakesTheFirstCharacterOfATranslation) {
    CLocalizedKeyMap map;
    map.Build(
        [](const char* source) { return std::string(source) == "q" ? NK::CString(L"йцу") : NK::CString(source); });
    EXPECT_EQ(map.GetSize(), 1U);
    EXPECT_EQ(map.Find(L'й'), 'q');
    EXPECT_EQ(map.Find(L'ц'), L'ц');
}

TEST(LocalizedKeyMap, EmptyTranslationMakesNoEntry) {
    CLocalizedKeyMap map;
    map.Build([](const char*) { return NK::CString(); });
    EXPECT_EQ(map.GetSize(), 0U);
}

TEST(LocalizedKeyMap, BuildingAnewForgetsTheLanguageBefore) {
    CLocalizedKeyMap map = RussianMap();
    EXPECT_EQ(map.Find(L'й'), 'q');
    map.Build([](const char* source) { return NK::CString(source); });
    EXPECT_EQ(map.Find(L'й'), L'й');
}

TEST(LocalizedKeyMap, BuildsThroughTheTranslationHookInItsContext) {
    NK::SetTranslateFunction([](const char* context, const char* source, const char*) {
        const bool isQ = std::string(context) == "Localized Keyboard" && std::string(source) == "q";
        return isQ ? NK::CString(L"a") : NK::CString(source);
    });
    CLocalizedKeyMap map;
    map.Build();
    NK::SetTranslateFunction(nullptr);
    EXPECT_EQ(map.Find('a'), 'q');
    EXPECT_EQ(map.GetSize(), 1U);
}

TEST(KeyToCharacter, CodeBelow128WithoutTheFlagIsUnchanged) {
    EXPECT_EQ(KeyToCharacter(RussianMap(), '.', false, kRussian), '.');
}

TEST(KeyToCharacter, CodeBelow128IsUnchangedUnderNeutralDefaultAndEnglishLanguages) {
    const CLocalizedKeyMap map = RussianMap();
    for (const int language : {0x0000, 0x0400, 0x0800, 0x0409, 0x0809, 0x0C09, 0x1009, 0x1409, 0x1809, 0x1C09, 0x2009,
                               0x2409, 0x2809, 0x2C09, 0x3009, 0x3409, 0x007F}) {
        EXPECT_EQ(KeyToCharacter(map, '.', true, static_cast<std::uint16_t>(language)), '.') << language;
    }
}

TEST(KeyToCharacter, CodeBelow128IsLookedUpUnderOtherLanguages) {
    const CLocalizedKeyMap map = RussianMap();
    EXPECT_EQ(KeyToCharacter(map, '.', true, kRussian), '/');
    EXPECT_EQ(KeyToCharacter(map, ',', true, kRussian), '?');
    EXPECT_EQ(KeyToCharacter(map, '"', true, kRussian), '@');
    EXPECT_EQ(KeyToCharacter(map, '5', true, kRussian), '5');
}

TEST(KeyToCharacter, CodeFrom128IsLookedUpWhateverTheFlagAndTheLanguage) {
    const CLocalizedKeyMap map = RussianMap();
    EXPECT_EQ(KeyToCharacter(map, L'й', false, kEnglishUS), 'q');
    EXPECT_EQ(KeyToCharacter(map, L'Й', true, kRussian), 'Q');
    EXPECT_EQ(KeyToCharacter(map, L'ü', true, kRussian), L'ü');
}

TEST(PlayingKey, LetterOnTheQKeyOfANonEnglishLayoutPlays72) {
    CLocalizedKeyMap map;
    map.Build([](const char* source) { return NK::CString(source[0] == 'q' ? "a" : source); });
    EXPECT_EQ(NoteOf(map, 'A', false, kFrench), 72);
}

TEST(PlayingKey, WithoutATranslationEntryTheLayoutsOwnCharacterIsLookedUp) {
    const CLocalizedKeyMap empty;
    EXPECT_EQ(NoteOf(empty, 'Q', false, kFrench), 72);
    EXPECT_EQ(NoteOf(empty, L'Й', false, kRussian), -1);
}

TEST(PlayingKey, EveryRussianKeyPlaysAsTheUSKeyItSitsOn) {
    const CLocalizedKeyMap map = RussianMap();
    const std::wstring unshifted = L"-=[];'\\,./qwertyuiopasdfghjklzxcvbnm";
    for (const wchar_t us : unshifted) {
        const wchar_t russian = kRussianKeys[std::wstring(kSources).find(us)];
        // Qt's code of a letter key is the upper-case letter.
        const int code = russian >= L'а' && russian <= L'я' ? russian - 32 : russian;
        EXPECT_EQ(NoteOf(map, code, false, kRussian), NK::Piano::GetPCKeyEntry(static_cast<int>(us)).note)
            << static_cast<char>(us);
    }
}

TEST(PlayingKey, ShiftedRussianLettersPlayAsTheShiftedUSKeys) {
    const CLocalizedKeyMap map = RussianMap();
    for (const auto& [russian, us] : std::vector<std::pair<wchar_t, char>>{
             {L'Й', 'Q'}, {L'Х', '{'}, {L'Ъ', '}'}, {L'Ж', ':'}, {L'Б', '<'}, {L'Ю', '>'}, {L',', '?'}, {L'"', '@'}}) {
        EXPECT_EQ(PlayingKeyToCharacter(map, russian, true, kRussian), us) << us;
    }
}

TEST(PlayingKey, CodesOfKeysThatTypeNothingPlayNothing) {
    for (const int code : {0x01000020, 0x01000004, 0x01001103, 0, -1}) {
        EXPECT_EQ(NoteOf(RussianMap(), code, false, kRussian), -1) << code;
    }
}

}  // namespace
