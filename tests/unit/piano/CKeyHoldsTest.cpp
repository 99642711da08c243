#include "piano/CKeyHolds.h"

#include <gtest/gtest.h>

#include "piano/CAutoRepeatFilter.h"

namespace {

using NK::Piano::CKeyHolds;
using NK::Piano::kRepeatSettleMs;

constexpr std::uint32_t kZ = 52;
constexpr std::uint32_t kX = 53;

TEST(CKeyHolds, AHoldLastsFromThePressToTheRelease) {
    CKeyHolds holds;
    holds.Press(kZ, 1000);
    holds.Press(kX, 1010);
    holds.Release(kZ, 1300);
    EXPECT_EQ(holds.GetHeldMs(kZ), 300U);
    EXPECT_FALSE(holds.GetHeldMs(kX));
    holds.Release(kX, 1500);
    EXPECT_EQ(holds.GetHeldMs(kX), 490U);
}

TEST(CKeyHolds, RepeatsHoldOn) {
    CKeyHolds holds;
    holds.Press(kZ, 1000);
    holds.Release(kZ, 1500);
    holds.Press(kZ, 1500);
    holds.Press(kZ, 1540);
    holds.Release(kZ, 1600);
    holds.Press(kZ, 1600 + kRepeatSettleMs);
    holds.Release(kZ, 1700);
    EXPECT_EQ(holds.GetHeldMs(kZ), 700U);
}

TEST(CKeyHolds, AKeyThatWasUpForLongerIsStruckAnew) {
    CKeyHolds holds;
    holds.Press(kZ, 1000);
    holds.Release(kZ, 1500);
    holds.Press(kZ, 1500 + kRepeatSettleMs + 1);
    EXPECT_FALSE(holds.GetHeldMs(kZ));
    holds.Release(kZ, 1600);
    EXPECT_EQ(holds.GetHeldMs(kZ), 100U - kRepeatSettleMs - 1);
}

TEST(CKeyHolds, AReleaseWhosePressWasElsewhereTellsNothing) {
    CKeyHolds holds;
    holds.Release(kZ, 1000);
    EXPECT_FALSE(holds.GetHeldMs(kZ));
    holds.Press(kZ, 2000);
    holds.Release(kZ, 2100);
    holds.Release(kZ, 2300);
    EXPECT_FALSE(holds.GetHeldMs(kZ));
}

TEST(CKeyHolds, TheFirstRepeatThatIsSeenOfAHeldKeyBeginsNoHold) {
    CKeyHolds holds;
    for (std::uint32_t timeMs = 5000; timeMs < 5100; timeMs += 30) {
        holds.Release(kZ, timeMs);
        EXPECT_FALSE(holds.GetHeldMs(kZ)) << timeMs;
        holds.Press(kZ, timeMs);
    }
}

TEST(CKeyHolds, TimesWrapAround) {
    CKeyHolds holds;
    holds.Press(kZ, 0xFFFFFFF0U);
    holds.Release(kZ, 16);
    EXPECT_EQ(holds.GetHeldMs(kZ), 32U);
}

TEST(CKeyHolds, AScanCodeThatNoServerHasIsNotFollowed) {
    CKeyHolds holds;
    holds.Press(256, 1000);
    holds.Release(256, 1100);
    EXPECT_FALSE(holds.GetHeldMs(256));
}

}  // namespace
