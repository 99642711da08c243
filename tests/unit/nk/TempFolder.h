// A folder of its own for each test, removed afterwards.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "nk/nk_string.h"

namespace KivoraTest {

class CTempFolderTest : public testing::Test {
protected:
    CTempFolderTest() {
        std::string name = (std::filesystem::temp_directory_path() / "kivora-test-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~CTempFolderTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path Native(const std::string& name) const { return folder_ / name; }
    NK::CString Path(const std::string& name) const { return NK::CString::FromUtf8(Native(name).string()); }

    void WriteBytes(const std::string& name, const std::string& bytes) const {
        std::ofstream(Native(name), std::ios::binary) << bytes;
    }
    std::string ReadBytes(const std::string& name) const {
        std::ifstream stream(Native(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    /// How many entries stand in the folder, temporary files included.
    std::ptrdiff_t CountEntries() const {
        return std::distance(std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator());
    }

    std::filesystem::path folder_;
};

}  // namespace KivoraTest
