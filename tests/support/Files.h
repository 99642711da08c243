// What a test looks at in a folder.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace KivoraTest {

inline void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFileBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Every entry below `folder` with what it holds: a file's bytes, a link's target, "/" for a folder.
inline std::map<std::string, std::string> TakeSnapshot(const std::filesystem::path& folder) {
    std::map<std::string, std::string> entries;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string& content = entries[entry.path().lexically_relative(folder).native()];
        if (entry.is_symlink()) {
            content = std::filesystem::read_symlink(entry.path()).native();
        } else {
            content = entry.is_directory() ? "/" : ReadFileBytes(entry.path());
        }
    }
    return entries;
}

}  // namespace KivoraTest
