#include "nk/nk_sleeping_timer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "nk/nk_wakeup.h"
#include "support/AllocationCounter.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;
using Clock = std::chrono::steady_clock;

class CCountingListener : public NK::CTimerListener {
public:
    void OnTimer(std::uint32_t timerId) override {
        lastId = timerId;
        if (onTick) {
            onTick();
        }
        ++ticks;
    }
    std::atomic<std::uint32_t> lastId{0};
    std::atomic<int> ticks{0};
    std::function<void()> onTick;
};

constexpr int kLevel = NK::CThread::kLevelNormal;

TEST(SleepingTimer, RunsAsSoonAsItExistsAndHandsItsIdOver) {
    CCountingListener listener;
    NK::CThreadSleepingTimer timer(&listener, 42, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return listener.ticks >= 10; }));
    EXPECT_EQ(listener.lastId, 42U);
    EXPECT_TRUE(timer.IsRunning());
}

TEST(SleepingTimer, ACallThatLastsAPeriodIsFollowedByAWholeOneWithout) {
    constexpr std::int64_t kPeriodNs = 5'000'000;
    CCountingListener listener;
    std::atomic<std::int64_t> endNs{0};
    std::atomic<int> tooSoon{0};
    listener.onTick = [&] {
        const std::int64_t beginNs = NK::CWakeup::NowNs();
        tooSoon += beginNs - endNs < kPeriodNs ? 1 : 0;
        while (NK::CWakeup::NowNs() < beginNs + kPeriodNs) {
        }
        endNs = NK::CWakeup::NowNs();
    };
    const NK::CThreadSleepingTimer timer(&listener, 0, kPeriodNs / 1'000'000, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return listener.ticks >= 10; }));
    EXPECT_EQ(tooSoon, 0);
}

TEST(SleepingTimer, CallsNothingWhileDisabled) {
    CCountingListener silent;
    CCountingListener witness;
    const NK::CThreadSleepingTimer disabled(&silent, 0, 1, false, kLevel);
    const NK::CThreadSleepingTimer enabled(&witness, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return witness.ticks >= 50; }));
    EXPECT_EQ(silent.ticks, 0);
}

TEST(SleepingTimer, MayHaveNoListener) {
    CCountingListener witness;
    const NK::CThreadSleepingTimer deaf(nullptr, 0, 0, true, kLevel);
    const NK::CThreadSleepingTimer enabled(&witness, 0, 1, true, kLevel);
    EXPECT_TRUE(WaitUntil([&] { return witness.ticks >= 10; }));
}

TEST(SleepingTimer, PeriodZeroCallsInATightLoop) {
    constexpr int kMany = 20'000;
    CCountingListener tight;
    CCountingListener witness;
    const NK::CThreadSleepingTimer everyMs(&witness, 0, 1, true, kLevel);
    const NK::CThreadSleepingTimer always(&tight, 0, 0, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return tight.ticks >= kMany; }));
    EXPECT_LT(witness.ticks, kMany / 4) << "a sleep in each round would let the other timer keep up";
}

TEST(SleepingTimer, EnablingSwallowsTheTickInProgressAndTakesOneFullPeriod) {
    constexpr std::uint32_t kPeriodMs = 200;
    CCountingListener listener;
    CCountingListener witness;
    Clock::time_point called;
    listener.onTick = [&] {
        if (listener.ticks == 0) {
            called = Clock::now();
        }
    };
    NK::CThreadSleepingTimer timer(&listener, 0, kPeriodMs, false, kLevel);
    const NK::CThreadSleepingTimer everyMs(&witness, 0, 1, true, kLevel);
    // So far into the period that a tick at its end would come too early.
    ASSERT_TRUE(WaitUntil([&] { return witness.ticks >= 80; }));
    const Clock::time_point enabled = Clock::now();
    timer.SetEnabled(true);
    ASSERT_TRUE(WaitUntil([&] { return listener.ticks >= 1; }));
    EXPECT_GE(called - enabled, std::chrono::milliseconds(kPeriodMs));
}

TEST(SleepingTimer, EnablingCutsTheSleepInProgressShort) {
    constexpr std::uint32_t kPeriodMs = 400;
    constexpr std::uint32_t kSteadyMs = 320;
    CCountingListener listener;
    CCountingListener steady;
    CCountingListener witness;
    std::atomic<int> steadyTicks{-1};
    listener.onTick = [&] {
        if (listener.ticks == 0) {
            steadyTicks = steady.ticks.load();
        }
    };
    NK::CThreadSleepingTimer timer(&listener, 0, kPeriodMs, false, kLevel);
    const NK::CThreadSleepingTimer other(&steady, 0, kSteadyMs, true, kLevel);
    const NK::CThreadSleepingTimer everyMs(&witness, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return witness.ticks >= 40; }));
    timer.SetEnabled(true);
    ASSERT_TRUE(WaitUntil([&] { return steadyTicks >= 0; }));
    EXPECT_EQ(steadyTicks, 1) << "the rest of the period and a whole one would be two";
}

TEST(SleepingTimer, SettingTheSameAgainSwallowsNothing) {
    CCountingListener listener;
    NK::CThreadSleepingTimer timer(&listener, 0, 1, true, kLevel);
    // A swallowed tick after each call would leave none.
    ASSERT_TRUE(WaitUntil([&] {
        timer.SetEnabled(true);
        return listener.ticks >= 20;
    }));
}

TEST(SleepingTimer, IsDisabledAndEnabledAgain) {
    CCountingListener listener;
    CCountingListener witness;
    const NK::CThreadSleepingTimer other(&witness, 0, 1, true, kLevel);
    NK::CThreadSleepingTimer timer(&listener, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return listener.ticks >= 3; }));
    timer.SetEnabled(false);
    const int before = listener.ticks;
    const int witnessed = witness.ticks;
    ASSERT_TRUE(WaitUntil([&] { return witness.ticks >= witnessed + 50; }));
    EXPECT_LE(listener.ticks, before + 1) << "at most the call that was in progress";
    timer.SetEnabled(true);
    ASSERT_TRUE(WaitUntil([&] { return listener.ticks >= before + 5; }));
}

TEST(SleepingTimer, ItsDestructorWaitsForACallInProgress) {
    std::atomic<bool> inside{false};
    std::atomic<bool> destroying{false};
    std::atomic<bool> left{false};
    CCountingListener listener;
    listener.onTick = [&] {
        inside = true;
        WaitUntil([&] { return destroying.load(); });
        // Long enough for a destructor that does not wait to have returned.
        for (int turn = 0; turn < 100; ++turn) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        left = true;
    };
    auto timer = std::make_unique<NK::CThreadSleepingTimer>(&listener, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return inside.load(); }));
    destroying = true;
    timer.reset();
    EXPECT_TRUE(left);
}

TEST(SleepingTimer, IsCreatedAndDestroyedAtOnce) {
    CCountingListener listener;
    for (int i = 0; i < 200; ++i) {
        const NK::CThreadSleepingTimer timer(&listener, 0, i % 2 == 0 ? 1 : 1000, true, kLevel);
    }
    const int after = listener.ticks;
    CCountingListener witness;
    const NK::CThreadSleepingTimer timer(&witness, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return witness.ticks >= 20; }));
    EXPECT_EQ(listener.ticks, after);
}

TEST(SleepingTimer, AListenerMayDeleteItsTimer) {
    for (int i = 0; i < 20; ++i) {
        std::atomic<bool> deleted{false};
        std::unique_ptr<NK::CThreadSleepingTimer> timer;
        CCountingListener listener;
        listener.onTick = [&] {
            timer.reset();
            deleted = true;
        };
        timer = std::make_unique<NK::CThreadSleepingTimer>(&listener, 0, 1, false, kLevel);
        timer->SetEnabled(true);
        ASSERT_TRUE(WaitUntil([&] { return deleted && listener.ticks == 1; }));
    }
}

TEST(SleepingTimer, ATickAllocatesNothing) {
    CCountingListener listener;
    std::atomic<std::int64_t> allocated{-1};
    std::uint64_t atFirst = 0;
    listener.onTick = [&] {
        if (listener.ticks == 1) {
            atFirst = KivoraTest::GetAllocationCount();
        }
        if (listener.ticks == 50) {
            allocated = static_cast<std::int64_t>(KivoraTest::GetAllocationCount() - atFirst);
        }
    };
    const NK::CThreadSleepingTimer timer(&listener, 0, 1, true, kLevel);
    ASSERT_TRUE(WaitUntil([&] { return allocated >= 0; }));
    EXPECT_EQ(allocated, 0);
}

}  // namespace
