#include "nk/nk_shell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/WaitUntil.h"

namespace {

/// A folder that is the whole search path, with an opener of the test's in it.
class Shell : public testing::Test {
protected:
    Shell() : path_(std::getenv("PATH")) {
        std::string pattern = testing::TempDir() + "shellXXXXXX";
        folder_ = mkdtemp(pattern.data());
        setenv("PATH", folder_.c_str(), 1);
    }
    ~Shell() override {
        setenv("PATH", path_.c_str(), 1);
        std::filesystem::remove_all(folder_);
    }
    void Install(const std::string& lines) const {
        const std::string opener = folder_ + "/xdg-open";
        std::ofstream(opener) << "#!/bin/sh\n" << lines << "\n";
        chmod(opener.c_str(), 0700);
    }
    std::string ReadResult() const {
        std::ifstream file(folder_ + "/result");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string folder_;

private:
    std::string path_;
};

TEST_F(Shell, HandsTheTargetOverUnchanged) {
    Install("printf '%s|%s' \"$#\" \"$1\" > \"" + folder_ + "/result\"");
    EXPECT_TRUE(NK::OpenWithShell(L"/h\u00E9lp/a b; $(exit 1) 'c'/index.html"));
    EXPECT_EQ(ReadResult(), "1|/h\xC3\xA9lp/a b; $(exit 1) 'c'/index.html");
}

TEST_F(Shell, AFileWhoseNameLooksLikeAnOptionIsAFile) {
    Install("printf '%s' \"$1\" > \"" + folder_ + "/result\"");
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
    Install("echo $$ > \"" + folder_ + "/result\"; while [ ! -e \"" + folder_ +
            "/release\" ]; do read -r x < /dev/null; done");
    EXPECT_TRUE(NK::OpenWithShell(L"/slow"));
    std::ofstream(folder_ + "/release") << "now";
    const std::string process = "/proc/" + std::to_string(std::stoi(ReadResult()));
    EXPECT_TRUE(KivoraTest::WaitUntil([&] {
        NK::OpenWithShell(L"");
        return !std::filesystem::exists(process);
    })) << "a later call reaps it";
}

}  // namespace
