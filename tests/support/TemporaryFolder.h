// A folder for the files of one test.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace KivoraTest {

/// Made empty, and removed with what it holds.
class CTemporaryFolder {
public:
    CTemporaryFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("kivora-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~CTemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

    const std::filesystem::path& GetPath() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

}  // namespace KivoraTest
