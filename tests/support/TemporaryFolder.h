// A folder for the files of one test.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace KivoraTest {

/// Made empty and for nobody else, and removed with what it holds. Throws std::system_error where it cannot be made.
class CTemporaryFolder {
public:
    CTemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kivora-test-XXXXXX").native();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), name);
        }
        path_ = name;
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
