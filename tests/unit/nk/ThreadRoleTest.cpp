#include "nk/nk_thread_role.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(ThreadRole, HasAName) {
    EXPECT_STREQ(NK::GetThreadRoleName(NK::ThreadRole::gui), "gui");
    EXPECT_STREQ(NK::GetThreadRoleName(NK::ThreadRole::inputTimer), "input-timer");
    EXPECT_STREQ(NK::GetThreadRoleName(NK::ThreadRole::none), "none");
}

#ifndef NDEBUG
TEST(ThreadRole, BelongsToOneThread) {
    EXPECT_EQ(NK::GetThreadRole(), NK::ThreadRole::none);
    std::thread([] {
        NK_REGISTER_THREAD_ROLE(tick);
        EXPECT_EQ(NK::GetThreadRole(), NK::ThreadRole::tick);
        NK_ASSERT_THREAD_ROLE(tick);
    }).join();
    EXPECT_EQ(NK::GetThreadRole(), NK::ThreadRole::none);
    NK_ASSERT_THREAD_ROLE(gui);
}

TEST(ThreadRoleDeathTest, AnotherThreadsCodeEndsTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            NK_REGISTER_THREAD_ROLE(player);
            NK_ASSERT_THREAD_ROLE(gui);
        },
        "for the gui thread, called on the player thread");
}
#else
TEST(ThreadRole, IsNotEvenEvaluatedInReleaseBuilds) {
    constexpr bool isNothing = (NK_REGISTER_THREAD_ROLE(nobody), NK_ASSERT_THREAD_ROLE(nobody), true);
    EXPECT_TRUE(isNothing);
}
#endif

}  // namespace
