// A program that is killed while it saves, at each of its calls to the system.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>

#include "engine/files/PresetStore.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

using namespace KivoraTest;

namespace {

enum class Outcome { kKilled, kFinished, kFailed, kNotTraceable };

/// Runs `save` in a process of its own and kills it when it enters or leaves the system for the `stop`th time
/// (1-based).
Outcome RunKilledAt(int stop, const std::function<bool()>& save) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(2);
        }
        raise(SIGSTOP);
        _exit(save() ? 0 : 1);
    }
    int status = 0;
    for (int stops = 0; waitpid(child, &status, 0) == child; ++stops) {
        if (WIFEXITED(status)) {
            const int result = WEXITSTATUS(status);
            return result == 0 ? Outcome::kFinished : result == 1 ? Outcome::kFailed : Outcome::kNotTraceable;
        }
        if (stops == stop) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return Outcome::kKilled;
        }
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    }
    return Outcome::kNotTraceable;
}

NK::CIniFile MakePreset(const wchar_t* value) {
    NK::CIniFile file;
    file.SelectOrAddSection(Kivora::PresetStore::kSection);
    file.SetString(L"Key", value);
    return file;
}

}  // namespace

TEST(KilledSave, LeavesTheOldPresetOrTheNewOneAndNothingElseThatIsListed) {
    constexpr int kMostCalls = 2000;
    const std::string oldText = "[KivoraPreset]\nKey=old\n";
    const std::string newText = "[KivoraPreset]\nKey=new\n";
    int sawOld = 0;
    int sawNew = 0;
    Outcome outcome = Outcome::kKilled;
    for (int stop = 1; outcome == Outcome::kKilled; ++stop) {
        ASSERT_LT(stop, kMostCalls);
        const CTemporaryFolder folder;
        const auto path = folder / "Presets/a.kivoraLXPreset";
        WriteFileBytes(path, oldText);
        const auto save = [&folder] {
            NK::CIniFile file = MakePreset(L"new");
            NK::CString setAside;
            Kivora::PresetStore store(NK::CString::FromUtf8(folder.GetPath().native()), L"/nowhere");
            return store.Save(L"a", file, setAside);
        };
        outcome = RunKilledAt(stop, save);
        if (outcome == Outcome::kNotTraceable) {
            GTEST_SKIP() << "the system does not let a process be traced here";
        }
        EXPECT_NE(outcome, Outcome::kFailed);
        const std::string text = ReadFileBytes(path);
        EXPECT_TRUE(text == oldText || text == newText) << "killed at call " << stop << ": " << text;
        ++(text == oldText ? sawOld : sawNew);
        NK::CStringArray names;
        Kivora::PresetStore(NK::CString::FromUtf8(folder.GetPath().native()), L"/nowhere").List(names, false);
        ASSERT_EQ(names.GetSize(), 1U) << "killed at call " << stop;
    }
    EXPECT_EQ(outcome, Outcome::kFinished);
    EXPECT_GT(sawOld, 5);
    EXPECT_GT(sawNew, 1) << "the last calls come after the rename";
}
