// A user's data folder of the test's own, with no language chosen in it yet.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/TemporaryFolder.h"

class LocaleFixture : public testing::Test {
protected:
    LocaleFixture() : former_(std::getenv("XDG_DATA_HOME") != nullptr ? std::getenv("XDG_DATA_HOME") : "") {
        setenv("XDG_DATA_HOME", folder_.GetPath().c_str(), 1);
    }
    ~LocaleFixture() override {
        if (former_.empty()) {
            unsetenv("XDG_DATA_HOME");
        } else {
            setenv("XDG_DATA_HOME", former_.c_str(), 1);
        }
    }

    std::filesystem::path GetFile() const { return folder_ / "Brennholt" / "Kivora" / "Locale.ini"; }
    std::string Read() const {
        std::ifstream file(GetFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& text) const {
        std::filesystem::create_directories(GetFile().parent_path());
        std::ofstream(GetFile()) << text;
    }

    KivoraTest::CTemporaryFolder folder_;

private:
    std::string former_;
};
