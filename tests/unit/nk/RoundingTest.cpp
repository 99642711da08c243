#include <gtest/gtest.h>

#include "nk/nk_rounding.h"

using NK::RoundHalfDown;

TEST(RoundHalfDown, ToTheNearestAndExactHalvesDown) {
    EXPECT_EQ(RoundHalfDown(0.0), 0);
    EXPECT_EQ(RoundHalfDown(0.5), 0);
    EXPECT_EQ(RoundHalfDown(0.51), 1);
    EXPECT_EQ(RoundHalfDown(2.5), 2);
    EXPECT_EQ(RoundHalfDown(2.7), 3);
    EXPECT_EQ(RoundHalfDown(127.49), 127);
}
