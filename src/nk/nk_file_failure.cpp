#include "nk/nk_file_failure.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

constexpr const char* kContext = "Files";

/// The system's own words for what files meet most; the catalogues translate them.
constexpr const char* kTranslated[] = {
    KIVORA_TR_NOOP("Files", "Operation not permitted"),
    KIVORA_TR_NOOP("Files", "No such file or directory"),
    KIVORA_TR_NOOP("Files", "Input/output error"),
    KIVORA_TR_NOOP("Files", "Permission denied"),
    KIVORA_TR_NOOP("Files", "File exists"),
    KIVORA_TR_NOOP("Files", "Not a directory"),
    KIVORA_TR_NOOP("Files", "Is a directory"),
    KIVORA_TR_NOOP("Files", "Too many open files in system"),
    KIVORA_TR_NOOP("Files", "Too many open files"),
    KIVORA_TR_NOOP("Files", "Text file busy"),
    KIVORA_TR_NOOP("Files", "File too large"),
    KIVORA_TR_NOOP("Files", "No space left on device"),
    KIVORA_TR_NOOP("Files", "Read-only file system"),
    KIVORA_TR_NOOP("Files", "File name too long"),
    KIVORA_TR_NOOP("Files", "Too many levels of symbolic links"),
    KIVORA_TR_NOOP("Files", "Stale file handle"),
    KIVORA_TR_NOOP("Files", "Disk quota exceeded"),
    KIVORA_TR_NOOP("Files", "Device or resource busy"),
    KIVORA_TR_NOOP("Files", "Transport endpoint is not connected"),
    KIVORA_TR_NOOP("Files", "Host is down"),
};

/// Of the last failure. Nothing in it has a destructor, so that it is there for what runs at the end of the process,
/// when the objects of the thread are gone.
struct Record {
    std::array<wchar_t, 4096> path;  ///< with a zero at its end; a longer one is cut
    int error;
};
constinit thread_local Record record{};

}  // namespace

FileFailure GetFileFailure() {
    return {CString(record.path.data()), record.error};
}

void ForgetFileFailure() noexcept {
    record.path.front() = L'\0';
    record.error = 0;
}

void SetFileFailure(const CString& path, int error) noexcept {
    const std::size_t length = std::min<std::size_t>(path.GetLength(), record.path.size() - 1);
    std::copy_n(path.c_str(), length, record.path.begin());
    record.path[length] = L'\0';
    record.error = error;
}

CString DescribeFileError(int error) {
    switch (error) {
        case 0:
        case kErrorUnknown:
            return {};
        case kErrorNoRegularFile:
            return Translate(kContext, KIVORA_TR_NOOP("Files", "It is no regular file"));
        case kErrorTooLarge:
            return Translate(kContext, KIVORA_TR_NOOP("Files", "It is too large"));
        default:
            break;
    }
    const char* const text = Platform::GetErrorText(error);
    const bool isTranslated = std::any_of(std::begin(kTranslated), std::end(kTranslated), [text](const char* known) {
        return text != nullptr && std::strcmp(text, known) == 0;
    });
    return isTranslated ? Translate(kContext, text) : CString::FromUtf8(Platform::GetLocalErrorText(error));
}

}  // namespace NK
