// What every physical key plays as typed on the keyboard layouts of several countries.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"

namespace {

/// The rows of a PC keyboard from its top left, by key code: digits, upper letters, home row with the key left of
/// Enter, lower letters with the key right of the left SHIFT first.
const std::vector<int> kDigitRow = {10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21};
const std::vector<int> kUpperRow = {24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35};
const std::vector<int> kHomeRow = {38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 51};
const std::vector<int> kLowerRow = {94, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61};

constexpr int kSilent = 0;
constexpr int kHigh = 1000;  ///< added to a note that plays at the high level, since its character is a shifted one

struct TLayout {
    const char* name;
    std::vector<int> digitRow;
    std::vector<int> upperRow;
    std::vector<int> homeRow;
    std::vector<int> lowerRow;
    const char* locale = "en_US";  ///< of the program's language
};

std::ostream& operator<<(std::ostream& out, const TLayout& layout) {
    return out << layout.name;
}

const std::vector<int> kUSDigits = {0, 73, 75, 0, 78, 80, 82, 0, 85, 87, 0, 90};
const std::vector<int> kUSUpper = {72, 74, 76, 77, 79, 81, 83, 84, 86, 88, 89, 91};
const std::vector<int> kUSHome = {0, 61, 63, 0, 66, 68, 70, 0, 73, 75, 0, 0};

const TLayout kLayouts[] = {
    {"us", kUSDigits, kUSUpper, kUSHome, {kHigh + 72, 60, 62, 64, 65, 67, 69, 71, 72, 74, 76}},
    // '#' lies left of Enter, '\' right of SHIFT.
    {"gb",
     kUSDigits,
     kUSUpper,
     {0, 61, 63, 0, 66, 68, 70, 0, 73, 75, 0, kHigh + 75},
     {kSilent, 60, 62, 64, 65, 67, 69, 71, 72, 74, 76}},
    // Y and Z change places; the keys of the umlauts, sharp s and the dead accents play nothing.
    {"de",
     {0, 73, 75, 0, 78, 80, 82, 0, 85, 87, kSilent, kSilent},
     {72, 74, 76, 77, 79, 60, 83, 84, 86, 88, kSilent, kHigh + 90},
     {0, 61, 63, 0, 66, 68, 70, 0, 73, kSilent, kSilent, kHigh + 75},
     {kHigh + 72, 81, 62, 64, 65, 67, 69, 71, 72, 74, kSilent}},
    // The digits are typed with SHIFT.
    {"fr",
     {kHigh + 82, kSilent, kHigh + 73, 0, kHigh + 85, 0, kSilent, 0, kSilent, kSilent, kHigh + 87, 90},
     {0, 60, 76, 77, 79, 81, 83, 84, 86, 88, kSilent, kSilent},
     {72, 61, 63, 0, 66, 68, 70, 0, 73, 71, kSilent, kSilent},
     {kHigh + 72, 74, 62, 64, 65, 67, 69, 72, 75, kHigh + 75, kSilent}},
    // With the program in Russian every key plays by its place; the key right of SHIFT types '/'.
    {"ru", kUSDigits, kUSUpper, kUSHome, {kSilent, 60, 62, 64, 65, 67, 69, 71, 72, 74, 76}, "ru_RU"},
};

class Layouts : public testing::TestWithParam<TLayout> {
protected:
    void SetUp() override {
        instrument.AddSetting("ComputerKeys=1");
        ASSERT_TRUE(instrument.Start({"--locale", GetParam().locale}));
    }
    void TearDown() override { EXPECT_EQ(instrument.Close(), 0); }

    /// Presses the keys one after another, which must play these notes and nothing else.
    void ExpectRow(const std::vector<int>& keys, const std::vector<int>& notes) {
        ASSERT_EQ(keys.size(), notes.size());
        for (std::size_t i = 0; i < keys.size(); ++i) {
            ASSERT_TRUE(instrument.Xdotool({"key", QString::number(keys[i])}));
            if (notes[i] == kSilent) {
                continue;
            }
            // A key's messages are out before the next key, whose note-on could overtake the note-off otherwise.
            ASSERT_TRUE(instrument.WaitForNoteMessages(seen_ + 2)) << "key " << keys[i];
            const std::vector<std::string> all = instrument.GetNoteMessages();
            const std::vector<std::string> played(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end());
            EXPECT_EQ(played, MessagesOf(notes[i])) << "key " << keys[i];
            seen_ = all.size();
        }
    }

    InstrumentProcess instrument;

private:
    static std::vector<std::string> MessagesOf(int note) {
        const std::string data = QString::number(note % kHigh, 16).toUpper().toStdString();
        return {"90 " + data + (note > kHigh ? " 7F" : " 50"), "80 " + data + " 00"};
    }

    std::size_t seen_ = 0;
};

TEST_P(Layouts, EveryPhysicalKeyPlaysWhatTheTableSays) {
    const TLayout& layout = GetParam();
    bool ok = false;
    instrument.RunOnDisplay("setxkbmap", {layout.name}, &ok);
    ASSERT_TRUE(ok);
    ExpectRow(kDigitRow, layout.digitRow);
    ExpectRow(kUpperRow, layout.upperRow);
    ExpectRow(kHomeRow, layout.homeRow);
    ExpectRow(kLowerRow, layout.lowerRow);
    ExpectRow({53}, {62});  // whatever the silent keys had played would stand before this
}

TEST(RussianLayout, WithShiftEveryKeyPlaysLoudByItsPlace) {
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start({"--locale", "ru_RU"}));
    bool ok = false;
    instrument.RunOnDisplay("setxkbmap", {"ru"}, &ok);
    ASSERT_TRUE(ok);
    std::vector<std::string> expected;
    ASSERT_TRUE(instrument.Xdotool({"keydown", "50"}));
    const std::vector<int>* rows[] = {&kDigitRow, &kUpperRow, &kHomeRow, &kLowerRow};
    const std::vector<int> lower = {kSilent, 60, 62, 64, 65, 67, 69, 71, 72, 74, 76};
    std::vector<int> home = kUSHome;
    home[10] = 73;  // a US keyboard types the double quote there, which plays the 2 key of a UK one
    const std::vector<int>* notes[] = {&kUSDigits, &kUSUpper, &home, &lower};
    for (std::size_t row = 0; row < std::size(rows); ++row) {
        for (std::size_t i = 0; i < rows[row]->size(); ++i) {
            ASSERT_TRUE(instrument.Xdotool({"key", QString::number((*rows[row])[i])}));
            if (const int note = (*notes[row])[i]; note != kSilent) {
                const std::string data = QString::number(note, 16).toUpper().toStdString();
                expected.push_back("90 " + data + " 7F");
                expected.push_back("80 " + data + " 00");
                ASSERT_TRUE(instrument.WaitForNoteMessages(expected.size())) << "key " << (*rows[row])[i];
            }
        }
    }
    ASSERT_TRUE(instrument.Xdotool({"keyup", "50"}));
    EXPECT_THAT(instrument.GetNoteMessages(), testing::ElementsAreArray(expected));
    EXPECT_EQ(instrument.Close(), 0);
}

// With CTRL held the window system tells the English layout's characters.
TEST(RussianLayout, BesideAnEnglishOneWithCtrlEveryKeyPlaysQuietlyByItsPlace) {
    constexpr std::uint8_t kCtrl = 37;
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start({"--locale", "ru_RU"}));
    bool ok = false;
    instrument.RunOnDisplay("setxkbmap", {"us,ru"}, &ok);
    ASSERT_TRUE(ok);
    instrument.LockLayout(1);
    std::vector<std::string> expected;
    instrument.MoveKey(kCtrl, true);
    const std::vector<int>* rows[] = {&kDigitRow, &kUpperRow, &kHomeRow, &kLowerRow};
    const std::vector<int> lower = {kSilent, 60, 62, 64, 65, 67, 69, 71, 72, 74, 76};
    const std::vector<int>* notes[] = {&kUSDigits, &kUSUpper, &kUSHome, &lower};
    for (std::size_t row = 0; row < std::size(rows); ++row) {
        for (std::size_t i = 0; i < rows[row]->size(); ++i) {
            const auto code = static_cast<std::uint8_t>((*rows[row])[i]);
            instrument.MoveKey(code, true);
            instrument.MoveKey(code, false);
            if (const int note = (*notes[row])[i]; note != kSilent) {
                const std::string data = QString::number(note, 16).toUpper().toStdString();
                expected.push_back("90 " + data + " 28");
                expected.push_back("80 " + data + " 00");
                ASSERT_TRUE(instrument.WaitForNoteMessages(expected.size())) << "key " << int{code};
            }
        }
    }
    instrument.MoveKey(kCtrl, false);
    EXPECT_THAT(instrument.GetNoteMessages(), testing::ElementsAreArray(expected));
    EXPECT_EQ(instrument.Close(), 0);
}

INSTANTIATE_TEST_SUITE_P(Countries, Layouts, testing::ValuesIn(kLayouts),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
