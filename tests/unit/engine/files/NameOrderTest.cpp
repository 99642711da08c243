#include "engine/files/NameOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLocale>

using testing::ElementsAre;

namespace {

class NameOrder : public testing::Test {
protected:
    ~NameOrder() override { QLocale::setDefault(QLocale::system()); }

    static std::vector<std::string> Sort(const QLocale& locale, const std::vector<std::string>& names) {
        QLocale::setDefault(locale);
        NK::CStringArray array;
        for (const std::string& name : names) {
            array.Push(NK::CString::FromUtf8(name));
        }
        Kivora::SortByName(array);
        std::vector<std::string> sorted;
        for (const NK::CString& name : array) {
            sorted.push_back(name.ToUtf8());
        }
        return sorted;
    }
};

const QLocale kEnglish(QLocale::English);
const QLocale kGerman(QLocale::German);
const QLocale kSwedish(QLocale::Swedish);
const QLocale kRussian(QLocale::Russian);

}  // namespace

TEST_F(NameOrder, LetterCaseIsIgnored) {
    for (const QLocale& locale : {kEnglish, QLocale::c()}) {
        EXPECT_THAT(Sort(locale, {"b", "C", "a", "B2", "A1"}), ElementsAre("a", "A1", "b", "B2", "C"));
    }
}

TEST_F(NameOrder, NamesThatDifferInCaseOnlyStandByCodePoint) {
    EXPECT_THAT(Sort(kEnglish, {"organ", "ORGAN", "Organ"}), ElementsAre("ORGAN", "Organ", "organ"));
    EXPECT_THAT(Sort(kEnglish, {"Organ", "organ", "ORGAN"}), ElementsAre("ORGAN", "Organ", "organ"));
}

TEST_F(NameOrder, AccentedLettersStandWhereTheLocaleHasThem) {
    EXPECT_THAT(Sort(kGerman, {"Zither", "Ähre", "Bass", "Ahorn"}), ElementsAre("Ahorn", "Ähre", "Bass", "Zither"));
    EXPECT_THAT(Sort(kSwedish, {"Zither", "Ähre", "Bass", "Ahorn"}), ElementsAre("Ahorn", "Bass", "Zither", "Ähre"));
}

TEST_F(NameOrder, YoStandsBehindYeInRussian) {
    EXPECT_THAT(Sort(kRussian, {"Жар", "ёлка", "Яма", "Ель", "арфа"}),
                ElementsAre("арфа", "ёлка", "Ель", "Жар", "Яма"));
}

TEST_F(NameOrder, NothingAndOneNameStayAsTheyAre) {
    EXPECT_THAT(Sort(kEnglish, {}), testing::IsEmpty());
    EXPECT_THAT(Sort(kEnglish, {"a"}), ElementsAre("a"));
}
