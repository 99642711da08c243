#include "nk/nk_critical_section.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <tuple>

#include "nk/nk_exception.h"
#include "support/WaitUntil.h"

namespace {

class CriticalSectionParameters
    : public testing::TestWithParam<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>> {};

TEST_P(CriticalSectionParameters, AZeroIsRefused) {
    const auto [sleepMs, attempts, reserve] = GetParam();
    try {
        const CCriticalSection section(sleepMs, attempts, reserve);
        FAIL() << "no exception";
    } catch (const NK::CException& exception) {
        EXPECT_STREQ(exception.what(), "Bad critical section initialization parameters.");
    }
}
INSTANTIATE_TEST_SUITE_P(Zeros, CriticalSectionParameters,
                         testing::Values(std::tuple(0U, 100U, 100U), std::tuple(1U, 0U, 100U),
                                         std::tuple(1U, 100U, 0U)));

TEST(CriticalSection, IsRecursive) NK_NO_THREAD_SAFETY_ANALYSIS {
    CCriticalSection section;
    section.Lock();
    section.Lock();
    EXPECT_TRUE(section.TryLock());
    section.Unlock();
    section.Unlock();
    bool freeForAnother = true;
    std::thread([&]() NK_NO_THREAD_SAFETY_ANALYSIS { freeForAnother = section.TryLock(); }).join();
    EXPECT_FALSE(freeForAnother) << "one of the three holds was left";
    section.Unlock();
    std::thread([&]() NK_NO_THREAD_SAFETY_ANALYSIS {
        freeForAnother = section.TryLock();
        if (freeForAnother) {
            section.Unlock();
        }
    }).join();
    EXPECT_TRUE(freeForAnother);
}

TEST(CriticalSection, TryLockSleepsAfterEachOfItsAttemptsAndGivesUpAfterTheLast) NK_NO_THREAD_SAFETY_ANALYSIS {
    constexpr std::uint32_t kSleepMs = 20;
    constexpr std::uint32_t kAttempts = 3;
    CCriticalSection section(kSleepMs, kAttempts, 100);
    section.Lock();
    bool taken = true;
    const auto begun = std::chrono::steady_clock::now();
    std::thread([&]() NK_NO_THREAD_SAFETY_ANALYSIS { taken = section.TryLock(); }).join();
    EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(kSleepMs * kAttempts));
    EXPECT_FALSE(taken);
    section.Unlock();
}

TEST(CriticalSection, TryLockSucceedsWhenTheHolderLetsGoMeanwhile) NK_NO_THREAD_SAFETY_ANALYSIS {
    CCriticalSection section(1, 1'000'000, 100);
    section.Lock();
    std::atomic<bool> trying{false};
    bool taken = false;
    std::thread other([&]() NK_NO_THREAD_SAFETY_ANALYSIS {
        trying = true;
        taken = section.TryLock();
        if (taken) {
            section.Unlock();
        }
    });
    EXPECT_TRUE(KivoraTest::WaitUntil([&] { return trying.load(); }));
    section.Unlock();
    other.join();
    EXPECT_TRUE(taken);
}

TEST(CriticalSection, KeepsTwoThreadsApart) {
    CCriticalSection section;
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < 20'000; ++i) {
            const CLockGuard guard(section);
            ++counter;
        }
    };
    std::thread first(count);
    std::thread second(count);
    first.join();
    second.join();
    EXPECT_EQ(counter, 40'000);
}

TEST(GlobalLock, IsRecursiveAndKeepsTwoThreadsApart) {
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < 20'000; ++i) {
            const NK::CGlobalLockGuard outer;
            NK::GlobalLock();
            ++counter;
            NK::GlobalUnlock();
        }
    };
    std::thread first(count);
    std::thread second(count);
    first.join();
    second.join();
    EXPECT_EQ(counter, 40'000);
}

}  // namespace
