#include "nk/nk_file_content.h"

#include <algorithm>
#include <cerrno>

#include "nk/nk_disk_file.h"
#include "nk/nk_file_failure.h"

namespace NK {

std::optional<std::string> ReadFileContent(const CString& path, std::size_t maxBytes) {
    constexpr std::size_t kChunk = 1024 * 1024;
    CDiskFile file(path, CDiskFile::kRead);
    if (!file.IsOpen()) {
        return std::nullopt;
    }
    errno = 0;
    std::string content;
    while (!file.IsEOF() && content.size() <= maxBytes) {
        const std::size_t at = content.size();
        const std::size_t wanted = std::min(kChunk, maxBytes + 1 - at);
        content.resize(at + wanted);
        content.resize(at + file.Read(content.data() + at, 1, wanted));
        if (content.size() < at + wanted && !file.IsEOF()) {
            SetFileFailure(path, errno);
            return std::nullopt;
        }
    }
    if (content.size() > maxBytes) {
        SetFileFailure(path, kErrorTooLarge);
        return std::nullopt;
    }
    return content;
}

}  // namespace NK
