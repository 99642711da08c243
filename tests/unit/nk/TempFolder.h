// A folder of its own for each test, and its entries by their names.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>

#include "nk/nk_string.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace KivoraTest {

class CTempFolderTest : public testing::Test {
protected:
    std::filesystem::path Native(const std::string& name) const { return folder_ / name; }
    NK::CString Path(const std::string& name) const { return NK::CString::FromUtf8(Native(name).string()); }

    void WriteBytes(const std::string& name, const std::string& bytes) const { WriteFileBytes(Native(name), bytes); }
    std::string ReadBytes(const std::string& name) const { return ReadFileBytes(Native(name)); }
    /// How many entries stand in the folder, temporary files included.
    std::ptrdiff_t CountEntries() const {
        return std::distance(std::filesystem::directory_iterator(folder_.GetPath()),
                             std::filesystem::directory_iterator());
    }

    const CTemporaryFolder folder_;
};

}  // namespace KivoraTest
