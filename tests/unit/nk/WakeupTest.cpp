#include "nk/nk_wakeup.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "nk/nk_sleep.h"

namespace {

using NK::CWakeup;

constexpr std::int64_t kMs = 1'000'000;

TEST(Wakeup, OneThatComesWhileNobodyWaitsEndsTheNextWait) {
    CWakeup wakeup;
    wakeup.Wake();
    wakeup.Wake();
    wakeup.WaitUntil(CWakeup::kNever);
    EXPECT_FALSE(wakeup.Take()) << "several count as one";
    wakeup.Wake();
    EXPECT_TRUE(wakeup.Take());
    EXPECT_FALSE(wakeup.Take());
}

TEST(Wakeup, AWaitEndsAtItsTimeAndNotBefore) {
    CWakeup wakeup;
    const std::int64_t untilNs = CWakeup::NowNs() + 5 * kMs;
    while (CWakeup::NowNs() < untilNs) {
        wakeup.WaitUntil(untilNs);
    }
    wakeup.WaitUntil(CWakeup::NowNs() - kMs);
    wakeup.WaitUntil(-1);
    EXPECT_FALSE(wakeup.Take());
}

TEST(Wakeup, NoneIsLost) {
    constexpr int kTurns = 100'000;
    CWakeup here;
    CWakeup there;
    std::atomic<int> turn{0};
    const auto play = [&turn](CWakeup& own, CWakeup& other, int parity) {
        while (turn < kTurns) {
            if (turn % 2 == parity) {
                ++turn;
                other.Wake();
            } else {
                own.WaitUntil(CWakeup::kNever);
            }
        }
        other.Wake();
    };
    std::thread opponent([&] { play(there, here, 1); });
    play(here, there, 0);
    opponent.join();
    EXPECT_EQ(turn, kTurns);
}

TEST(Wakeup, ASleeperThatKnowsOnlySleepingSleepsAMillisecondUnlessWoken) {
    struct CSleeper : NK::CSleeper {
        void Sleep(std::uint32_t milliseconds) override { slept += milliseconds; }
        std::uint32_t slept = 0;
    } sleeper;
    CWakeup wakeup;
    sleeper.Wait(wakeup, CWakeup::kNever);
    EXPECT_EQ(sleeper.slept, 1U);
    wakeup.Wake();
    sleeper.Wait(wakeup, CWakeup::kNever);
    EXPECT_EQ(sleeper.slept, 1U);
}

}  // namespace
