// A save that is killed at any of its system calls leaves the old file or the new one.
#include <gtest/gtest.h>

#include <string>

#include "nk/nk_atomic_save.h"
#include "support/KillAtSystemCall.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;
using KivoraTest::EndOfRun;

using KilledSave = KivoraTest::CTempFolderTest;

TEST_F(KilledSave, LeavesTheOldFileOrTheNewOneWhereverItIsKilled) {
    const std::string oldText(10000, 'o');
    const std::string newText(20000, 'n');
    int oldFiles = 0;
    int newFiles = 0;
    EndOfRun end = EndOfRun::kKilled;
    for (int number = 1; end == EndOfRun::kKilled; ++number) {
        WriteBytes("a", oldText);
        end = KivoraTest::KillAtSystemCall(number, [&](const std::function<void()>& begin) {
            begin();
            SaveAtomically(Path("a"), [&](CFile& file) {
                return file.Write(newText.data(), 1, newText.size()) == newText.size();
            });
        });
        if (end == EndOfRun::kNotAllowed) {
            GTEST_SKIP() << "this machine lets no process be traced";
        }
        const std::string found = ReadBytes("a");
        // What the killed save left is looked at by the next, which would have more calls than this one each time.
        std::filesystem::remove_all(folder_.GetPath());
        std::filesystem::create_directory(folder_.GetPath());
        ASSERT_TRUE(found == oldText || found == newText) << number;
        ++(found == oldText ? oldFiles : newFiles);
    }
    EXPECT_GT(oldFiles, 5);
    EXPECT_GT(newFiles, 1);
}

}  // namespace
