// What is done when the process ends though main() has not returned.
#include "app/EmergencyEnd.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

using Kivora::EmergencyEnd;

class Emergency : public testing::Test {
protected:
    Emergency() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
    static void Tell() { std::fputs("acted\n", stderr); }
};

TEST_F(Emergency, ActsOnExitAndEndsTheProcess) {
    EXPECT_EXIT(
        {
            const EmergencyEnd end(Tell);
            std::exit(0);
        },
        testing::ExitedWithCode(EXIT_FAILURE), "^acted\n$");
}

TEST_F(Emergency, DoesNothingAtTheOrdinaryEnd) {
    EXPECT_EXIT(
        {
            { const EmergencyEnd end(Tell); }
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^$");
}

TEST_F(Emergency, DoesNothingForAnotherThread) {
    EXPECT_EXIT(
        {
            const EmergencyEnd end(Tell);
            std::thread([] { std::exit(3); }).join();
        },
        testing::ExitedWithCode(3), "^$");
}

}  // namespace
