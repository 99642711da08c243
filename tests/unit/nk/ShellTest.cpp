#include "nk/nk_shell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

namespace {

/// A folder that is the whole search path, with an opener of the test's in it.
class Shell : public testing::Test {
protected:
    Shell() : path_(std::getenv("PATH")) { setenv("PATH", folder_.GetPath().c_str(), 1); }
    ~Shell() override { setenv("PATH", path_.c_str(), 1); }
    void Install(const std::string& lines) const {
        const std::filesystem::path opener = folder_ / "xdg-open";
        std::ofstream(opener) << "#!/bin/sh\n" << lines << "\n";
        chmod(opener.c_str(), 0700);
    }
    /// As the shell takes it.
    std::string Path(const std::string& name) const { return '"' + (folder_ / name).native() + '"'; }
    std::string ReadResult() const { return KivoraTest::ReadFileBytes(folder_ / "result"); }

    const KivoraTest::CTemporaryFolder folder_;

private:
    std::string path_;
};

TEST_F(Shell, HandsTheTargetOverUnchanged) {
    Install("printf '%s|%s' \"$#\" \"$1\" > " + Path("result"));
    EXPECT_TRUE(NK::OpenWithShell(L"/h\u00E9lp/a b; $(exit 1) 'c'/index.html"));
    EXPECT_EQ(ReadResult(), "1|/h\xC3\xA9lp/a b; $(exit 1) 'c'/index.html");
}

TEST_F(Shell, AFileWhoseNameLooksLikeAnOptionIsAFile) {
    Install("printf '%s' \"$1\" > " + Path("result"));
    EXPECT_TRUE(NK::OpenWithShell(L"--version"));
    EXPECT_EQ(ReadResult(), "./--version");
}

TEST_F(Shell, ReportsTheOpenersFailure) {
    Install("exit 4");
    EXPECT_FALSE(NK::OpenWithShell(L"/nothing"));
}

TEST_F(Shell, ReportsAMissingOpener) {
    EXPECT_FALSE(NK::OpenWithShell(L"/nothing"));
}

TEST_F(Shell, ReportsAnEmptyTarget) {
    Install("exit 0");
    EXPECT_FALSE(NK::OpenWithShell(L""));
}

TEST_F(Shell, AnOpenerThatStaysIsASuccess) {
    Install("echo $$ > " + Path("result") + "; while [ ! -e " + Path("release") + " ]; do read -r x < /dev/null; done");
    EXPECT_TRUE(NK::OpenWithShell(L"/slow"));
    std::ofstream(folder_ / "release") << "now";
    const std::string process = "/proc/" + std::to_string(std::stoi(ReadResult()));
    EXPECT_TRUE(KivoraTest::WaitUntil([&] {
        NK::OpenWithShell(L"");
        return !std::filesystem::exists(process);
    })) << "a later call reaps it";
}

}  // namespace
