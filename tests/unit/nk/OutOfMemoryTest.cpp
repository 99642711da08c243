// Files while memory runs out, at each allocation by turns.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <optional>
#include <string>

#include "nk/nk_atomic_save.h"
#include "nk/nk_exception.h"
#include "nk/nk_file_content.h"
#include "nk/nk_ini_file.h"
#include "support/AllocationCounter.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;
using KivoraTest::CFailingAllocation;

enum class Outcome { kTrue, kFalse, kThrown };

class OutOfMemory : public KivoraTest::CTempFolderTest {
protected:
    /// Carries `operation` out again and again, its first allocation failing, its second and so on, until none does,
    /// and looks at what each has left behind. Returns how many failed.
    static std::uint64_t FailEach(const std::function<bool()>& operation, const std::function<void(Outcome)>& look) {
        constexpr std::uint64_t kMost = 10000;
        for (std::uint64_t number = 1; number <= kMost; ++number) {
            SCOPED_TRACE(number);
            Outcome outcome = Outcome::kThrown;
            bool hasFailed = false;
            {
                const CFailingAllocation failing(number);
                try {
                    outcome = operation() ? Outcome::kTrue : Outcome::kFalse;
                } catch (const std::bad_alloc&) {
                } catch (const CMemoryException&) {
                }
                hasFailed = failing.HasFailed();
            }
            look(outcome);
            if (!hasFailed) {
                return number - 1;
            }
        }
        ADD_FAILURE() << "It allocates without end.";
        return kMost;
    }

    static constexpr const char* kOld = "[Old]\nKey=a value that is longer than a string holds in itself\n";
    static constexpr const char* kNew = "[New]\nKey=another value that is longer than a string holds in itself\n";
};

TEST_F(OutOfMemory, ASaveLeavesTheOldFileOrTheNewOneAndNothingElse) {
    const CString path = Path("settings.ini");
    const auto save = [&path] {
        return SaveAtomically(path, [](CFile& file) {
            const std::string text = kNew;
            return file.Write(text.data(), 1, text.size()) == text.size();
        });
    };
    WriteBytes("settings.ini", kOld);
    const std::uint64_t failed = FailEach(save, [this](Outcome outcome) {
        EXPECT_EQ(ReadBytes("settings.ini"), outcome == Outcome::kTrue ? kNew : kOld);
        EXPECT_EQ(CountEntries(), 1);
        WriteBytes("settings.ini", kOld);
    });
    EXPECT_GT(failed, 5U);
}

TEST_F(OutOfMemory, AWriterThatGivesUpEndsNothing) {
    const CString path = Path("settings.ini");
    WriteBytes("settings.ini", kOld);
    const std::uint64_t failed = FailEach([&path] { return SaveAtomically(path, [](CFile&) { return false; }); },
                                          [this](Outcome outcome) {
                                              EXPECT_NE(outcome, Outcome::kTrue);
                                              EXPECT_EQ(ReadBytes("settings.ini"), kOld);
                                          });
    EXPECT_GT(failed, 5U);
}

TEST_F(OutOfMemory, AConfigurationThatIsNotReadIsNotTakenForAnAbsentOne) {
    const CString path = Path("settings.ini");
    WriteBytes("settings.ini", kOld);
    CIniFile::LoadResult result = CIniFile::LoadResult::kAbsent;
    const auto load = [&] {
        CIniFile file;
        try {
            const bool loaded = file.Load(path);
            result = file.GetLoadResult();
            return loaded;
        } catch (...) {
            result = file.GetLoadResult();
            throw;
        }
    };
    const std::uint64_t failed = FailEach(load, [&](Outcome outcome) {
        EXPECT_NE(result, CIniFile::LoadResult::kAbsent);
        EXPECT_TRUE(outcome != Outcome::kTrue || result == CIniFile::LoadResult::kLoaded);
        EXPECT_EQ(ReadBytes("settings.ini"), kOld);
    });
    EXPECT_GT(failed, 3U);
}

TEST_F(OutOfMemory, AFileIsReadAsAWholeOrNotAtAll) {
    const CString path = Path("settings.ini");
    WriteBytes("settings.ini", kOld);
    std::optional<std::string> content;
    const auto read = [&] {
        content.reset();
        content = ReadFileContent(path, 1000);
        return content.has_value();
    };
    const std::uint64_t failed = FailEach(read, [&](Outcome outcome) {
        EXPECT_EQ(content.has_value(), outcome == Outcome::kTrue);
        EXPECT_EQ(content.value_or(kOld), kOld);
    });
    EXPECT_GT(failed, 1U);
}

}  // namespace
