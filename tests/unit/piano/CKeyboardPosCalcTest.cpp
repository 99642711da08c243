#include "piano/CKeyboardPosCalc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nk/nk_exception.h"
#include "support/AllocationCounter.h"

namespace {
using NK::Piano::CKeyboardPosCalc;

constexpr char kNoWhiteKeys[] = "Number of white keys on keyboard display cannot be zero.";

template <class TOperation>
std::string TextThrownBy(TOperation operation) {
    try {
        operation();
    } catch (const NK::CException& exception) {
        return exception.what();
    }
    return "nothing thrown";
}

TEST(KeyboardPosCalc, DefaultConstructionWithLength720) {
    const CKeyboardPosCalc calc(720);
    EXPECT_EQ(calc.GetFirstNote(), 36);
    EXPECT_EQ(calc.GetLastNote(), 96);
    EXPECT_EQ(calc.GetKeyCount(), 61);
    EXPECT_EQ(calc.GetWhiteKeyCount(), 36U);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 20.0);
    EXPECT_EQ(calc.GetKeyPos(36), 0.0);
    EXPECT_EQ(calc.GetKeyPos(38), 20.0);
    EXPECT_EQ(calc.GetKeyPos(37), 13.75);
    EXPECT_EQ(calc.GetKeyPos(39), 36.25);
    EXPECT_EQ(calc.GetKeyPos(44), 95.0);
    EXPECT_TRUE(calc.IsLayoutChanged());
}

TEST(KeyboardPosCalc, PositionsAccumulateByAddition) {
    const CKeyboardPosCalc calc(1000);
    double edge = 0.0;
    for (int note = 36; note <= 96; ++note) {
        if (calc.IsWhiteKey(static_cast<std::uint8_t>(note))) {
            EXPECT_EQ(calc.GetKeyPos(static_cast<std::uint8_t>(note)), edge) << note;
            edge += calc.GetWhiteKeyWidth();
        }
    }
    EXPECT_NEAR(edge, 1000.0, 1e-9) << "the white keys fill it";
}

TEST(KeyboardPosCalc, WhiteKeysAreThoseOfTheSevenPitchClasses) {
    const CKeyboardPosCalc calc(0, 128, 750);
    const std::string octave = "wbwbwwbwbwbw";
    for (int note = 0; note < 128; ++note) {
        EXPECT_EQ(calc.IsWhiteKey(static_cast<std::uint8_t>(note)), octave[static_cast<std::size_t>(note % 12)] == 'w');
    }
    EXPECT_EQ(calc.GetWhiteKeyCount(), 75U);
}

TEST(KeyboardPosCalc, SameLayoutLeavesTheChangedFlag) {
    CKeyboardPosCalc calc(720);
    calc.ResetLayoutChanged();
    calc.SetLayout(36, 61, 720);
    EXPECT_FALSE(calc.IsLayoutChanged());
    calc.SetLayout(36, 61, 721);
    EXPECT_TRUE(calc.IsLayoutChanged());
}

TEST(KeyboardPosCalc, RangeOfOneBlackKeyThrows) {
    CKeyboardPosCalc calc(720);
    EXPECT_EQ(TextThrownBy([&] { calc.SetRange(61, 61); }), kNoWhiteKeys);
}

TEST(KeyboardPosCalc, EmptyRangeThrows) {
    CKeyboardPosCalc calc(720);
    EXPECT_EQ(TextThrownBy([&] { calc.SetRange(60, 59); }), kNoWhiteKeys);
    EXPECT_EQ(calc.GetKeyCount(), 0);
}

TEST(KeyboardPosCalc, ThrowingLayoutKeepsRangeAndLengthButNotWidthAndPositions) {
    CKeyboardPosCalc calc(720);
    calc.ResetLayoutChanged();
    EXPECT_THROW(calc.SetLayout(61, 1, 100), NK::CException);
    EXPECT_EQ(calc.GetFirstNote(), 61);
    EXPECT_EQ(calc.GetKeyCount(), 1);
    EXPECT_EQ(calc.GetLastNote(), 61);
    EXPECT_EQ(calc.GetLength(), 100);
    EXPECT_EQ(calc.GetWhiteKeyCount(), 0U);
    EXPECT_TRUE(calc.IsLayoutChanged());
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 20.0);
    EXPECT_EQ(calc.GetKeyPos(38), 20.0);
    EXPECT_NO_THROW(calc.SetLayout(61, 1, 100)) << "the same values again are no change";
}

TEST(KeyboardPosCalc, ConstructorThrowsOnARangeWithoutWhiteKeys) {
    EXPECT_EQ(TextThrownBy([] { CKeyboardPosCalc(61, 1, 100); }), kNoWhiteKeys);
}

TEST(KeyboardPosCalc, NeighboursEndAtTheRange) {
    CKeyboardPosCalc calc(720);
    EXPECT_EQ(calc.GetPrevWhiteKey(36), -1);
    EXPECT_EQ(calc.GetNextWhiteKey(96), -1);
    calc.SetRange(60, 72);
    EXPECT_EQ(calc.GetNextWhiteKey(62), 64);
    EXPECT_EQ(calc.GetPrevWhiteKey(62), 60);
    EXPECT_EQ(calc.GetPrevWhiteKey(65), 64);
    EXPECT_EQ(calc.GetNextWhiteKey(61), 62);
    EXPECT_EQ(calc.GetPrevWhiteKey(59), -1);
    EXPECT_EQ(calc.GetNextWhiteKey(59), -1);
    EXPECT_EQ(calc.GetPrevWhiteKey(73), -1);
    EXPECT_EQ(calc.GetNextWhiteKey(73), -1);
    EXPECT_EQ(calc.GetNextWhiteKey(255), -1);
}

TEST(KeyboardPosCalc, RangeBeginningOnABlackKeyGivesItANegativePosition) {
    const CKeyboardPosCalc calc(61, 12, 140);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 20.0);
    EXPECT_EQ(calc.GetKeyPos(61), -6.25);
    EXPECT_EQ(calc.GetKeyPos(62), 0.0);
}

TEST(KeyboardPosCalc, RatioInForceDoesNothingAnotherMovesTheBlackKeysOnly) {
    CKeyboardPosCalc calc(720);
    calc.ResetLayoutChanged();
    calc.SetBlackKeyWidthRatio(0.5);
    EXPECT_EQ(calc.GetKeyPos(37), 13.75);
    calc.SetBlackKeyWidthRatio(0.8);
    EXPECT_DOUBLE_EQ(calc.GetKeyPos(37), 20.0 - 8.0 - 2.0);
    EXPECT_DOUBLE_EQ(calc.GetKeyPos(44), 100.0 - 8.0);
    EXPECT_EQ(calc.GetKeyPos(38), 20.0);
    EXPECT_EQ(calc.GetKeyPos(96), 700.0);
    EXPECT_FALSE(calc.IsLayoutChanged());
}

TEST(KeyboardPosCalc, AssignKeepsTheTargetsRatio) {
    CKeyboardPosCalc source(60, 12, 140);
    source.SetBlackKeyWidthRatio(0.8);
    CKeyboardPosCalc target(720);
    target.ResetLayoutChanged();
    target.Assign(source);
    EXPECT_EQ(target.GetBlackKeyWidthRatio(), 0.5);
    EXPECT_TRUE(target.IsLayoutChanged());
    EXPECT_EQ(target.GetFirstNote(), 60);
    EXPECT_EQ(target.GetLastNote(), 71);
    EXPECT_EQ(target.GetLength(), 140);
    EXPECT_EQ(target.GetKeyPos(61), source.GetKeyPos(61)) << "positions still belong to the source's ratio";
    target.SetLayout(60, 12, 280);
    EXPECT_EQ(target.GetKeyPos(61), 40.0 - 10.0 - 2.5);
}

TEST(KeyboardPosCalc, KeyPositionOfANoteFrom128Throws) {
    const CKeyboardPosCalc calc(720);
    for (const std::uint8_t note : {std::uint8_t{128}, std::uint8_t{255}}) {
        EXPECT_EQ(TextThrownBy([&] { calc.GetKeyPos(note); }), "Bad key index in piano keyboard geometry calculator.");
    }
    EXPECT_NO_THROW(calc.GetKeyPos(0)) << "the displayed range is not checked";
    EXPECT_NO_THROW(calc.GetKeyPos(127));
}

TEST(KeyboardPosCalc, RangePastNote255ComputesNoPositions) {
    CKeyboardPosCalc calc(720);
    EXPECT_NO_THROW(calc.SetLayout(250, 20, 720));
    EXPECT_EQ(calc.GetLastNote(), 13);
    EXPECT_EQ(calc.GetKeyPos(38), 20.0);
}

TEST(KeyboardPosCalc, CountsIncludeNotesFrom128ThoughTheyHaveNoEntry) {
    const CKeyboardPosCalc calc(120, 24, 280);
    EXPECT_EQ(calc.GetWhiteKeyCount(), 14U);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 20.0);
    EXPECT_EQ(calc.GetKeyPos(127), 80.0);
    EXPECT_FALSE(calc.IsWhiteKey(128));
    EXPECT_EQ(calc.GetNextWhiteKey(127), -1);
    EXPECT_EQ(calc.GetPrevWhiteKey(130), 127);
}

TEST(KeyboardPosCalc, CountStaysFullWidthForTheLongestRange) {
    const CKeyboardPosCalc calc(1, 255, 148);
    EXPECT_EQ(calc.GetWhiteKeyCount(), 148U);
}

TEST(KeyboardPosCalc, LengthOfZeroOrLessIsAccepted) {
    CKeyboardPosCalc calc(0);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 0.0);
    calc.SetLayout(36, 61, -36);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), -1.0);
}

TEST(KeyboardPosCalc, RangeSetterIsVirtualAndKeepsTheLength) {
    class CCounting : public CKeyboardPosCalc {
    public:
        using CKeyboardPosCalc::CKeyboardPosCalc;
        void SetRange(std::uint8_t first, std::uint8_t last) override {
            ++calls;
            CKeyboardPosCalc::SetRange(first, last);
        }
        int calls = 0;
    } calc(700);
    CKeyboardPosCalc& base = calc;
    base.SetRange(60, 71);
    EXPECT_EQ(calc.calls, 1);
    EXPECT_EQ(calc.GetWhiteKeyWidth(), 100.0);
}

TEST(KeyboardPosCalc, AllocatesNothing) {
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    CKeyboardPosCalc calc(720);
    calc.SetRange(21, 108);
    calc.SetBlackKeyWidthRatio(0.6);
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
}

}  // namespace
