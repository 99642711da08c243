#include "nk/nk_priority_service.h"

#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <thread>

#include "nk/platform/platform_priority.h"

namespace {

constexpr std::int32_t kNoThread = -1;  // for which the system refuses everything
constexpr int kLowest = 0;
constexpr int kAboveNormal = 4;
constexpr int kHighest = 6;

struct Asked {
    std::int32_t tid = 0;
    std::uint32_t priority = 0;
    std::int32_t nice = 0;
};
Asked asked;
bool grants = true;

/// A service that keeps what it was asked for, installed for a test.
class PriorityService : public testing::Test {
protected:
    PriorityService() {
        asked = {};
        grants = true;
        static constexpr NK::TPriorityService kService{[](std::int32_t tid, std::uint32_t priority) {
                                                           asked = {tid, priority, 0};
                                                           return grants;
                                                       },
                                                       [](std::int32_t tid, std::int32_t nice) {
                                                           asked = {tid, 0, nice};
                                                           return grants;
                                                       }};
        NK::SetPriorityService(&kService);
    }
    ~PriorityService() override { NK::SetPriorityService(nullptr); }
};

/// In a process that may not go before others.
[[noreturn]] void AskForNiceWithoutRights() {
    const rlimit none{};
    setrlimit(RLIMIT_NICE, &none);
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0) {
        _exit(2);
    }
    const bool agreed = NK::Platform::SetCallersPriority(kAboveNormal);
    _exit(agreed && asked.tid == gettid() && asked.nice == -5 ? 0 : 1);
}

TEST_F(PriorityService, IsAskedForRealTimeThatTheSystemRefuses) {
    EXPECT_TRUE(NK::Platform::SetThreadPriority(kNoThread, kHighest));
    EXPECT_EQ(asked.tid, kNoThread);
    EXPECT_EQ(asked.priority, 15U);
}

TEST_F(PriorityService, IsAskedForANiceValueThatTheSystemRefuses) {
    EXPECT_EXIT(AskForNiceWithoutRights(), testing::ExitedWithCode(0), "");
}

TEST_F(PriorityService, MayRefuse) {
    grants = false;
    EXPECT_FALSE(NK::Platform::SetThreadPriority(kNoThread, kHighest));
    EXPECT_EQ(asked.priority, 15U);
}

TEST_F(PriorityService, IsNotAskedForWhatTheSystemGives) {
    // The lowest, which it gives to every process, for the rest of the thread's life.
    bool isGiven = false;
    std::thread([&] { isGiven = NK::Platform::SetCallersPriority(kLowest); }).join();
    EXPECT_TRUE(isGiven);
    EXPECT_EQ(asked.tid, 0);
}

TEST_F(PriorityService, WithoutOneWhatTheSystemRefusesIsRefused) {
    NK::SetPriorityService(nullptr);
    EXPECT_FALSE(NK::Platform::SetThreadPriority(kNoThread, kHighest));
    EXPECT_EQ(asked.tid, 0);
}

}  // namespace
