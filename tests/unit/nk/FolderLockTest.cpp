#include "nk/nk_folder_lock.h"

#include <gtest/gtest.h>

#include <functional>

#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

using FolderLock = KivoraTest::CTempFolderTest;

class Sleeper : public CSleeper {
public:
    void Sleep(std::uint32_t milliseconds) override {
        slept += milliseconds;
        if (onSleep) {
            onSleep();
        }
    }

    std::function<void()> onSleep;
    std::uint32_t slept = 0;
};

TEST_F(FolderLock, HasOneOwnerAtATimeAndLeavesNothing) {
    Sleeper sleeper;
    auto first = CFolderLock::Take(Path(""), sleeper);
    ASSERT_TRUE(first);
    EXPECT_EQ(sleeper.slept, 0U);
    EXPECT_FALSE(CFolderLock::Take(Path(""), sleeper));
    EXPECT_EQ(sleeper.slept, CFolderLock::kLimitMs);
    first.reset();
    EXPECT_TRUE(CFolderLock::Take(Path(""), sleeper));
    EXPECT_EQ(sleeper.slept, CFolderLock::kLimitMs);
    EXPECT_EQ(CountEntries(), 0);
}

TEST_F(FolderLock, IsWaitedFor) {
    auto first = CFolderLock::Take(Path(""));
    Sleeper sleeper;
    sleeper.onSleep = [&] { first.reset(); };
    EXPECT_TRUE(CFolderLock::Take(Path(""), sleeper));
}

TEST_F(FolderLock, NeedsAFolder) {
    WriteBytes("file", "");
    Sleeper sleeper;
    EXPECT_FALSE(CFolderLock::Take(Path("missing"), sleeper));
    EXPECT_FALSE(CFolderLock::Take(Path("file"), sleeper));
    EXPECT_EQ(sleeper.slept, 0U);
}

}  // namespace
